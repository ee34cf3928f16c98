#include "LxBufferReceive/BufferPool.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

using LxDetail::BufferPool;

TEST(BufferPoolTest, HandsOutAsManyAsItHas)
{
    BufferPool pool(2);
    auto first = pool.Take();
    auto second = pool.Take();
    EXPECT_NE(first, nullptr);
    EXPECT_NE(second, nullptr);
    EXPECT_EQ(pool.Take(), nullptr);
    const LxBuffer *address = first.get();
    first.reset();
    EXPECT_EQ(pool.Take().get(), address);
}

TEST(BufferPoolTest, MemoryStaysButNumbersAreReset)
{
    BufferPool pool(1);
    auto buffer = pool.Take();
    ASSERT_TRUE(buffer->GetImage()->Alloc(16, 16, LxPixelType::Mono8).IsOK());
    const void *memory = buffer->GetDataPointer();
    buffer->SetBlockID(7);
    buffer->SetTimestamp(8);
    buffer->SetReceptionTime(9);
    buffer->SetStatus(LxBufferStatus::MissingPackets);
    buffer.reset();
    buffer = pool.Take();
    EXPECT_EQ(buffer->GetDataPointer(), memory);
    EXPECT_EQ(buffer->GetBlockID(), 0u);
    EXPECT_EQ(buffer->GetTimestamp(), 0u);
    EXPECT_EQ(buffer->GetReceptionTime(), 0u);
    EXPECT_EQ(buffer->GetStatus(), LxBufferStatus::Complete);
}

TEST(BufferPoolTest, BufferOutlivesThePool)
{
    std::shared_ptr<LxBuffer> buffer;
    {
        BufferPool pool(2);
        buffer = pool.Take();
        ASSERT_TRUE(buffer->GetImage()->Alloc(16, 16, LxPixelType::Mono8).IsOK());
    }
    static_cast<uint8_t *>(buffer->GetDataPointer())[255] = 1;
}

TEST(BufferPoolTest, ThreadsTakeAndReturn)
{
    BufferPool pool(3);
    std::atomic<int> inUse{0};
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            for (int n = 0; n < 2000; ++n) {
                if (auto buffer = pool.Take()) {
                    EXPECT_LE(++inUse, 3);
                    --inUse;
                }
            }
        });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
}
