#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <random>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "LxCodec/BandPool.h"
#include "LxCodec/LxBufferConverter.h"

namespace
{

constexpr uint32_t kWidth = 403;
constexpr uint32_t kHeight = 517;

void FillRandomly(LxImage &aImage)
{
    std::minstd_rand random(7);
    auto *const bytes = static_cast<uint8_t *>(aImage.GetDataPointer());
    for (uint64_t i = 0; i < aImage.GetDataSize(); ++i) {
        bytes[i] = static_cast<uint8_t>(random());
    }
}

std::vector<uint8_t> BytesOf(const LxBuffer &aBuffer)
{
    const auto *const bytes = static_cast<const uint8_t *>(aBuffer.GetDataPointer());
    return std::vector<uint8_t>(bytes, bytes + aBuffer.GetImage()->GetDataSize());
}

const LxPixelType kTypes[] = {
    LxPixelType::Mono8,
    LxPixelType::Mono12p,
    LxPixelType::BayerRG8,
    LxPixelType::BayerGB12Packed,
    LxPixelType::RGB8,
    LxPixelType::RGB10_Planar,
    LxPixelType::YUV422_8,
    LxPixelType::BGRa8,
    LxPixelType::RGB10p32,
    LxPixelType::YCbCr411_8,
    LxPixelType::YCbCr420_8_YY_CbCr_Semiplanar,
};

}  // namespace

TEST(LxBufferConverterThreads, AnyNumberGivesTheSameBytes)
{
    for (const LxPixelType type : kTypes) {
        SCOPED_TRACE(LxPixelTypeToString(type).GetAscii());
        LxImage input;
        ASSERT_TRUE(input.Alloc(kWidth, kHeight, type).IsOK());
        FillRandomly(input);
        LxBuffer expected(LxPayloadType::Image);
        ASSERT_TRUE(LxBufferConverter(0).Convert(&input, &expected, true, false).IsOK());
        for (const int threads : {1, 2, 3, 1000, -1}) {
            LxBufferConverter converter(threads);
            EXPECT_EQ(converter.GetThreadCount(), threads);
            LxBuffer output(LxPayloadType::Image);
            ASSERT_TRUE(converter.Convert(&input, &output, true, false).IsOK());
            EXPECT_EQ(BytesOf(output), BytesOf(expected)) << threads;
        }
    }
}

TEST(LxBufferConverterThreads, NumberMayChangeBetweenConversions)
{
    LxImage input;
    ASSERT_TRUE(input.Alloc(kWidth, kHeight, LxPixelType::BayerGR8).IsOK());
    FillRandomly(input);
    LxBufferConverter converter;
    EXPECT_EQ(converter.GetThreadCount(), -1);
    LxBuffer output(LxPayloadType::Image);
    ASSERT_TRUE(converter.Convert(&input, &output, true, false).IsOK());
    const std::vector<uint8_t> expected = BytesOf(output);
    for (const int threads : {4, 0, 2, 2, -1, 5}) {
        converter.SetThreadCount(threads);
        EXPECT_EQ(converter.GetThreadCount(), threads);
        std::memset(output.GetDataPointer(), 0, output.GetImage()->GetDataSize());
        ASSERT_TRUE(converter.Convert(&input, &output, false, false).IsOK());
        EXPECT_EQ(BytesOf(output), expected) << threads;
    }
}

TEST(LxBufferConverterThreads, SmallAndLargeImagesFollowEachOther)
{
    LxBufferConverter converter(4);
    LxBuffer output(LxPayloadType::Image);
    for (const uint32_t size : {1u, 500u, 3u, 300u, 700u}) {
        LxImage input;
        ASSERT_TRUE(input.Alloc(size, size, LxPixelType::Mono8).IsOK());
        std::memset(input.GetDataPointer(), static_cast<int>(size % 251), input.GetDataSize());
        ASSERT_TRUE(converter.Convert(&input, &output, true, false).IsOK());
        const std::vector<uint8_t> bytes = BytesOf(output);
        ASSERT_EQ(bytes.size(), uint64_t{4} * size * size);
        size_t wrong = 0;
        for (size_t i = 0; i < bytes.size(); ++i) {
            wrong += bytes[i] != (i % 4 == 3 ? 255 : size % 251);
        }
        EXPECT_EQ(wrong, 0u) << size;
    }
}

TEST(LxBufferConverterThreads, DifferentConvertersAreIndependent)
{
    LxImage input;
    ASSERT_TRUE(input.Alloc(kWidth, kHeight, LxPixelType::BayerBG12p).IsOK());
    FillRandomly(input);
    LxBuffer expected(LxPayloadType::Image);
    ASSERT_TRUE(LxBufferConverter(0).Convert(&input, &expected, true, false).IsOK());
    std::atomic<int> good = 0;
    std::vector<std::thread> users;
    for (int i = 0; i < 4; ++i) {
        users.emplace_back([&] {
            LxBufferConverter converter(3);
            LxBuffer output(LxPayloadType::Image);
            for (int round = 0; round < 3; ++round) {
                if (converter.Convert(&input, &output, true, false).IsOK() && BytesOf(output) == BytesOf(expected)) {
                    ++good;
                }
            }
        });
    }
    for (std::thread &user : users) {
        user.join();
    }
    EXPECT_EQ(good, 12);
}

TEST(LxBufferConverterThreads, AreNotStartedForSmallImagesWhenTheConverterChooses)
{
    const auto listThreads = [] {
        std::set<std::string> names;
        for (const auto &task : std::filesystem::directory_iterator("/proc/self/task")) {
            names.insert(task.path().filename());
        }
        return names;
    };
    // a thread of an earlier converter may be just about to vanish
    const std::set<std::string> before = listThreads();
    const auto hasNewThread = [&] {
        const std::set<std::string> now = listThreads();
        return !std::includes(before.begin(), before.end(), now.begin(), now.end());
    };
    LxBufferConverter converter;
    LxBuffer output(LxPayloadType::Image);
    LxImage input;
    ASSERT_TRUE(input.Alloc(640, 480, LxPixelType::Mono8).IsOK());
    ASSERT_TRUE(converter.Convert(&input, &output, true, false).IsOK());
    EXPECT_FALSE(hasNewThread());
    ASSERT_TRUE(input.Alloc(4096, 3000, LxPixelType::Mono8).IsOK());
    ASSERT_TRUE(converter.Convert(&input, &output, true, false).IsOK());
    EXPECT_EQ(hasNewThread(), std::thread::hardware_concurrency() > 1);
}

TEST(LxBufferConverterThreads, LargeImagesAreTheSameWithAnyNumber)
{
    // written past the caches, in bands that share cache lines
    LxImage input;
    ASSERT_TRUE(input.Alloc(1027, 517, LxPixelType::BayerRG12p).IsOK());
    FillRandomly(input);
    LxBuffer expected(LxPayloadType::Image);
    ASSERT_TRUE(LxBufferConverter(0).Convert(&input, &expected, true, false).IsOK());
    for (const int threads : {2, 3, 16, -1}) {
        LxBuffer output(LxPayloadType::Image);
        ASSERT_TRUE(LxBufferConverter(threads).Convert(&input, &output, true, false).IsOK());
        EXPECT_EQ(BytesOf(output), BytesOf(expected)) << threads;
    }
}

TEST(BandPool, DoesEachPieceOfWorkOnceInEachRun)
{
    LxDetail::BandPool pool;
    for (const uint32_t threads : {1u, 2u, 8u, 3u, 0u}) {
        for (const uint32_t count : {1u, 2u, 8u, 3u, 0u, 40u, 1u}) {
            std::vector<std::atomic<int>> done(40);
            std::atomic<uint32_t> highest = 0;
            pool.Run(threads, count, [&](uint32_t aPiece, uint32_t aThread) {
                ++done[aPiece];
                for (uint32_t seen = highest; seen < aThread && !highest.compare_exchange_weak(seen, aThread);) {
                }
            });
            for (uint32_t i = 0; i < 40; ++i) {
                EXPECT_EQ(done[i], i < count ? 1 : 0);
            }
            EXPECT_LT(highest, std::max(threads, 1u));
        }
    }
}

TEST(BandPool, NoTwoPiecesRunOnOneThreadAtOnce)
{
    LxDetail::BandPool pool;
    std::vector<std::atomic<int>> inside(3);
    std::atomic<bool> good = true;
    for (int round = 0; round < 50; ++round) {
        pool.Run(3, 30, [&](uint32_t, uint32_t aThread) {
            good = good && ++inside[aThread] == 1;
            --inside[aThread];
        });
    }
    EXPECT_TRUE(good);
}

TEST(BandPool, WorksAgainAfterItWasStopped)
{
    LxDetail::BandPool pool;
    for (int round = 0; round < 20; ++round) {
        std::atomic<int> done = 0;
        pool.Run(4, 9, [&done](uint32_t, uint32_t) { ++done; });
        EXPECT_EQ(done, 9);
        if (round % 3 == 0) {
            pool.Stop();
        }
    }
}

TEST(BandPool, HelpersTakePartWhenAPieceWaitsForAnother)
{
    LxDetail::BandPool pool;
    std::mutex mutex;  // guards arrived
    std::condition_variable all;
    int arrived = 0;
    pool.Run(3, 3, [&](uint32_t, uint32_t) {
        std::unique_lock<std::mutex> lock(mutex);
        ++arrived;
        all.notify_all();
        all.wait(lock, [&arrived] { return arrived == 3; });
    });
    EXPECT_EQ(arrived, 3);
}
