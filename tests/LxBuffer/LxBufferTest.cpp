#include "LxBuffer/LxBuffer.h"

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <utility>

namespace
{

class EmptyContainer : public ILxGenDCContainer
{
public:
    uint32_t GetComponentCount() const override { return 0; }
    const ILxGenDCComponent *GetComponent(uint32_t) const override { return nullptr; }
};

class EmptyUnit : public ILxH264AccessUnit
{
public:
    const void *GetDataPointer() const override { return nullptr; }
    uint64_t GetDataSize() const override { return 0; }
};

}  // namespace

TEST(LxBuffer, CarriesNothingAtFirst)
{
    for (const auto type : {LxPayloadType::None, LxPayloadType::GenDC, LxPayloadType::H264, LxPayloadType::Raw}) {
        LxBuffer buffer(type);
        EXPECT_EQ(buffer.GetPayloadType(), type);
        EXPECT_EQ(buffer.GetImage(), nullptr);
        EXPECT_EQ(std::as_const(buffer).GetImage(), nullptr);
        EXPECT_EQ(buffer.GetGenDC(), nullptr);
        EXPECT_EQ(buffer.GetH264AccessUnit(), nullptr);
        EXPECT_EQ(buffer.GetDataPointer(), nullptr);
        EXPECT_EQ(buffer.GetStatus(), LxBufferStatus::Complete);
        EXPECT_EQ(buffer.GetBlockID(), 0u);
        EXPECT_EQ(buffer.GetTimestamp(), 0u);
        EXPECT_EQ(buffer.GetReceptionTime(), 0u);
    }
    EXPECT_EQ(LxBuffer().GetPayloadType(), LxPayloadType::None);
}

TEST(LxBuffer, ImageBufferHasAnEmptyImageFromTheStart)
{
    LxBuffer buffer(LxPayloadType::Image);
    ASSERT_NE(buffer.GetImage(), nullptr);
    EXPECT_EQ(buffer.GetImage(), std::as_const(buffer).GetImage());
    EXPECT_EQ(buffer.GetImage()->GetWidth(), 0u);
    EXPECT_EQ(buffer.GetDataPointer(), nullptr);
}

TEST(LxBuffer, DataPointerIsThatOfTheImage)
{
    LxBuffer buffer(LxPayloadType::Image);
    ASSERT_TRUE(buffer.GetImage()->Alloc(4, 4, LxPixelType::Mono8).IsOK());
    ASSERT_NE(buffer.GetDataPointer(), nullptr);
    EXPECT_EQ(buffer.GetDataPointer(), buffer.GetImage()->GetDataPointer());
    EXPECT_EQ(std::as_const(buffer).GetDataPointer(), buffer.GetImage()->GetDataPointer());
}

TEST(LxBuffer, FreeAndDetachEmptyItAndKeepItsImageObject)
{
    std::array<uint8_t, 4> memory = {};
    for (const auto release : {&LxBuffer::Free, &LxBuffer::Detach}) {
        LxBuffer buffer(LxPayloadType::Image);
        LxImage *const image = buffer.GetImage();
        ASSERT_TRUE(image->Alloc(4, 4, LxPixelType::Mono8).IsOK());
        (buffer.*release)();
        EXPECT_EQ(buffer.GetDataPointer(), nullptr);
        EXPECT_EQ(buffer.GetImage(), image);
        EXPECT_EQ(image->GetWidth(), 0u);
        ASSERT_TRUE(image->Attach(memory.data(), 2, 2, LxPixelType::Mono8).IsOK());
        EXPECT_EQ(buffer.GetDataPointer(), memory.data());
        (buffer.*release)();
        EXPECT_EQ(buffer.GetDataPointer(), nullptr);
    }
}

TEST(LxBuffer, FreeAndDetachDoNothingToAnEmptyBuffer)
{
    LxBuffer buffer;
    buffer.Free();
    buffer.Detach();
    EXPECT_EQ(buffer.GetImage(), nullptr);
}

TEST(LxBuffer, FreeDropsContainerAndAccessUnitAndKeepsTheNumbers)
{
    const auto container = std::make_shared<EmptyContainer>();
    const auto unit = std::make_shared<EmptyUnit>();
    LxBuffer buffer(LxPayloadType::GenDC);
    buffer.SetGenDC(container);
    buffer.SetH264AccessUnit(unit);
    buffer.SetBlockID(7);
    buffer.SetStatus(LxBufferStatus::MissingPackets);
    buffer.Free();
    EXPECT_EQ(buffer.GetGenDC(), nullptr);
    EXPECT_EQ(buffer.GetH264AccessUnit(), nullptr);
    EXPECT_EQ(container.use_count(), 1);
    EXPECT_EQ(unit.use_count(), 1);
    EXPECT_EQ(buffer.GetBlockID(), 7u);
    EXPECT_EQ(buffer.GetStatus(), LxBufferStatus::MissingPackets);
}

TEST(LxBuffer, ContainerAndImageMayBothBeThere)
{
    const auto container = std::make_shared<EmptyContainer>();
    LxBuffer buffer(LxPayloadType::GenDC);
    buffer.SetGenDC(container);
    buffer.AddImage();
    ASSERT_NE(buffer.GetImage(), nullptr);
    ASSERT_TRUE(buffer.GetImage()->Alloc(2, 2, LxPixelType::Mono8).IsOK());
    EXPECT_EQ(buffer.GetGenDC(), container.get());
    EXPECT_EQ(buffer.GetPayloadType(), LxPayloadType::GenDC);
    buffer.SetGenDC(nullptr);
    EXPECT_EQ(buffer.GetGenDC(), nullptr);
    EXPECT_NE(buffer.GetDataPointer(), nullptr);
}

TEST(LxBuffer, AddImageKeepsAnImageThatIsThere)
{
    LxBuffer buffer(LxPayloadType::Image);
    LxImage *const image = buffer.GetImage();
    ASSERT_TRUE(image->Alloc(2, 2, LxPixelType::Mono8).IsOK());
    buffer.AddImage();
    EXPECT_EQ(buffer.GetImage(), image);
    EXPECT_EQ(image->GetWidth(), 2u);
}

TEST(LxBuffer, HoldsItsAccessUnit)
{
    LxBuffer buffer(LxPayloadType::H264);
    auto unit = std::make_shared<EmptyUnit>();
    const ILxH264AccessUnit *const pointer = unit.get();
    buffer.SetH264AccessUnit(std::move(unit));
    EXPECT_EQ(buffer.GetH264AccessUnit(), pointer);
    buffer.SetH264AccessUnit(nullptr);
    EXPECT_EQ(buffer.GetH264AccessUnit(), nullptr);
}

TEST(LxBuffer, MovingTakesEverythingAndLeavesAnEmptyBuffer)
{
    const auto container = std::make_shared<EmptyContainer>();
    LxBuffer buffer(LxPayloadType::Image);
    ASSERT_TRUE(buffer.GetImage()->Alloc(2, 2, LxPixelType::Mono8).IsOK());
    buffer.SetGenDC(container);
    buffer.SetBlockID(1);
    buffer.SetTimestamp(2);
    buffer.SetReceptionTime(3);
    buffer.SetStatus(LxBufferStatus::Timeout);
    LxImage *const image = buffer.GetImage();
    const void *const memory = buffer.GetDataPointer();

    LxBuffer moved(std::move(buffer));
    LxBuffer assigned(LxPayloadType::Image);
    assigned = std::move(moved);
    EXPECT_EQ(assigned.GetPayloadType(), LxPayloadType::Image);
    EXPECT_EQ(assigned.GetImage(), image);
    EXPECT_EQ(assigned.GetDataPointer(), memory);
    EXPECT_EQ(assigned.GetGenDC(), container.get());
    EXPECT_EQ(assigned.GetBlockID(), 1u);
    EXPECT_EQ(assigned.GetTimestamp(), 2u);
    EXPECT_EQ(assigned.GetReceptionTime(), 3u);
    EXPECT_EQ(assigned.GetStatus(), LxBufferStatus::Timeout);
    for (LxBuffer *const empty : {&buffer, &moved}) {
        EXPECT_EQ(empty->GetPayloadType(), LxPayloadType::None);
        EXPECT_EQ(empty->GetImage(), nullptr);
        EXPECT_EQ(empty->GetGenDC(), nullptr);
        EXPECT_EQ(empty->GetBlockID(), 0u);
        EXPECT_EQ(empty->GetStatus(), LxBufferStatus::Complete);
    }
}
