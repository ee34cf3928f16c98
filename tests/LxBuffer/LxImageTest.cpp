#include "LxBuffer/LxImage.h"

#include <gtest/gtest.h>

#include <array>
#include <cinttypes>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "LimitedMemory.h"

namespace
{

const uint32_t Most = 0xFFFFFFFF;

// Everything that an image says about itself.
auto StateOf(const LxImage &aImage)
{
    return std::tuple(aImage.GetDataPointer(), aImage.GetDataSize(), aImage.GetWidth(), aImage.GetHeight(),
                      aImage.GetPixelType(), aImage.GetPaddingX(), aImage.GetPaddingY(), aImage.GetOffsetX(),
                      aImage.GetOffsetY());
}

void ExpectEmpty(const LxImage &aImage)
{
    EXPECT_EQ(StateOf(aImage), StateOf(LxImage()));
    EXPECT_EQ(aImage.GetDataPointer(), nullptr);
    EXPECT_EQ(aImage.GetDataSize(), 0u);
}

void Fill(LxImage &aImage, int aByte)
{
    std::memset(aImage.GetDataPointer(), aByte, aImage.GetDataSize());
}

// What the kernel says of the piece of memory that an address lies in: pairs of letters.
std::string FlagsOfMemoryAt(const void *aAddress)
{
    std::ifstream maps("/proc/self/smaps");
    const auto address = reinterpret_cast<uintptr_t>(aAddress);
    bool isIt = false;
    for (std::string line; std::getline(maps, line);) {
        uintptr_t first = 0;
        uintptr_t end = 0;
        if (std::sscanf(line.c_str(), "%" SCNxPTR "-%" SCNxPTR " ", &first, &end) == 2) {
            isIt = first <= address && address < end;
        }
        else if (isIt && line.rfind("VmFlags:", 0) == 0) {
            return line;
        }
    }
    return {};
}

uint8_t FirstByte(const LxImage &aImage)
{
    return *static_cast<const uint8_t *>(aImage.GetDataPointer());
}

}  // namespace

TEST(LxImage, IsEmptyAtFirst)
{
    const LxImage image;
    ExpectEmpty(image);
    EXPECT_EQ(image.GetWidth(), 0u);
    EXPECT_EQ(image.GetPixelType(), LxPixelType::None);
}

TEST(LxImage, AllocGivesWritableMemoryOfTheGeometry)
{
    LxImage image;
    ASSERT_TRUE(image.Alloc(5, 3, LxPixelType::Mono10p, 2, 1).IsOK());
    EXPECT_EQ(image.GetWidth(), 5u);
    EXPECT_EQ(image.GetHeight(), 3u);
    EXPECT_EQ(image.GetPixelType(), LxPixelType::Mono10p);
    EXPECT_EQ(image.GetPaddingX(), 2u);
    EXPECT_EQ(image.GetPaddingY(), 1u);
    EXPECT_EQ(image.GetDataSize(), 28u);
    ASSERT_NE(image.GetDataPointer(), nullptr);
    EXPECT_EQ(reinterpret_cast<uintptr_t>(image.GetDataPointer()) % 64, 0u);
    Fill(image, 0x5A);
}

// Of a large image no pass waits for the addresses of thousands of small pages.
TEST(LxImage, AllocAsksForHugePagesForALargeImage)
{
    if (!std::filesystem::exists("/sys/kernel/mm/transparent_hugepage")) {
        GTEST_SKIP() << "this kernel has no transparent huge pages";
    }
    LxImage image;
    ASSERT_TRUE(image.Alloc(2048, 1536, LxPixelType::Mono8).IsOK());
    EXPECT_EQ(reinterpret_cast<uintptr_t>(image.GetDataPointer()) % (2u << 20), 0u);
    EXPECT_NE(FlagsOfMemoryAt(image.GetDataPointer()).find(" hg"), std::string::npos);
    Fill(image, 0x5A);
}

TEST(LxImage, AllocKeepsMemoryThatFits)
{
    LxImage image;
    ASSERT_TRUE(image.Alloc(100, 100, LxPixelType::BGRa8).IsOK());
    Fill(image, 0x11);
    const void *const memory = image.GetDataPointer();

    ASSERT_TRUE(image.Alloc(100, 100, LxPixelType::BGRa8).IsOK());
    EXPECT_EQ(image.GetDataPointer(), memory);
    ASSERT_TRUE(image.Alloc(10, 10, LxPixelType::Mono8).IsOK());
    EXPECT_EQ(image.GetDataPointer(), memory);
    EXPECT_EQ(image.GetDataSize(), 100u);
    EXPECT_EQ(FirstByte(image), 0x11);
    ASSERT_TRUE(image.Alloc(50, 200, LxPixelType::RGBa8).IsOK());
    EXPECT_EQ(image.GetDataPointer(), memory);
    EXPECT_EQ(image.GetDataSize(), 40000u);
}

TEST(LxImage, AllocGetsMoreMemoryWhenWhatItHasDoesNotFit)
{
    LxImage image;
    ASSERT_TRUE(image.Alloc(10, 10, LxPixelType::Mono8).IsOK());
    ASSERT_TRUE(image.Alloc(10, 10, LxPixelType::Mono8, 0, 1).IsOK());
    EXPECT_EQ(image.GetDataSize(), 101u);
    Fill(image, 0x22);
}

TEST(LxImage, AllocRefusesGeometryWithoutASizeAndKeepsTheImage)
{
    LxImage image;
    ASSERT_TRUE(image.Alloc(4, 3, LxPixelType::RGB8, 2, 1).IsOK());
    image.SetOffset(7, 8);
    Fill(image, 0x33);
    const auto before = StateOf(image);
    const LxPixelType rgb8 = LxPixelType::RGB8;
    const std::vector<std::tuple<uint32_t, uint32_t, LxPixelType, uint32_t, uint32_t>> refused = {
        {0, 3, rgb8, 0, 0},
        {4, 0, rgb8, 0, 0},
        {4, 3, LxPixelType::None, 0, 0},
        {4, 3, static_cast<LxPixelType>(0x0100FFFF), 0, 0},  // no bits per pixel
        {4, 3, LxPixelType::RGB8_Planar, 1, 0},              // padding of a planar format
        {4, 3, LxPixelType::RGB8_Planar, 0, 1},
        {Most, Most, LxPixelType::BGRa8, 0, 0},  // exceeds 64 bits
        {Most, Most, LxPixelType::Mono8, Most, Most},
        {Most, Most, LxPixelType::Mono8, 0, 0},  // exceeds 2^40 bytes
        {1u << 20, 1u << 20, LxPixelType::Mono8, 0, 1},
        {1, Most, LxPixelType::Mono8, Most, 0},
    };
    for (const auto &[width, height, type, paddingX, paddingY] : refused) {
        const LxResult result = image.Alloc(width, height, type, paddingX, paddingY);
        EXPECT_EQ(result, LxResultCode::InvalidArgument) << width << " x " << height;
        EXPECT_FALSE(result.GetDescription().IsEmpty());
        EXPECT_EQ(StateOf(image), before);
        EXPECT_EQ(FirstByte(image), 0x33);
    }
}

TEST(LxImage, AllocWithoutMemoryKeepsTheImage)
{
    LxImage image;
    ASSERT_TRUE(image.Alloc(4, 3, LxPixelType::RGB8).IsOK());
    Fill(image, 0x44);
    const auto before = StateOf(image);
    LxResult result;
    {
        const LimitedMemory limit;
        result = image.Alloc(1u << 16, 1u << 16, LxPixelType::BGRa8);
    }
    EXPECT_EQ(result, LxResultCode::NoMemory);
    EXPECT_FALSE(result.GetDescription().IsEmpty());
    EXPECT_EQ(StateOf(image), before);
    EXPECT_EQ(FirstByte(image), 0x44);
}

TEST(LxImage, AttachRefersToTheCallersMemory)
{
    std::array<uint8_t, 45> memory = {};
    LxImage image;
    ASSERT_TRUE(image.Attach(memory.data(), 4, 3, LxPixelType::RGB8, 2, 3).IsOK());
    EXPECT_EQ(image.GetDataPointer(), memory.data());
    EXPECT_EQ(image.GetDataSize(), 45u);
    EXPECT_EQ(image.GetPaddingX(), 2u);
    EXPECT_EQ(image.GetPaddingY(), 3u);
    Fill(image, 0x55);
    EXPECT_EQ(memory[44], 0x55);
}

TEST(LxImage, AttachReplacesMemoryOfItsOwn)
{
    std::array<uint8_t, 4> memory = {};
    LxImage image;
    ASSERT_TRUE(image.Alloc(100, 100, LxPixelType::Mono8).IsOK());
    ASSERT_TRUE(image.Attach(memory.data(), 2, 2, LxPixelType::Mono8).IsOK());
    EXPECT_EQ(image.GetDataPointer(), memory.data());
}

TEST(LxImage, AllocAfterAttachLeavesTheCallersMemoryAlone)
{
    std::array<uint8_t, 4> memory = {1, 2, 3, 4};
    LxImage image;
    ASSERT_TRUE(image.Attach(memory.data(), 2, 2, LxPixelType::Mono8).IsOK());
    ASSERT_TRUE(image.Alloc(1, 1, LxPixelType::Mono8).IsOK());
    EXPECT_NE(image.GetDataPointer(), memory.data());
    Fill(image, 0x66);
    EXPECT_EQ(memory, (std::array<uint8_t, 4>{1, 2, 3, 4}));
}

TEST(LxImage, AttachRefusesBadArgumentsAndKeepsTheImage)
{
    std::array<uint8_t, 64> memory = {};
    LxImage image;
    ASSERT_TRUE(image.Alloc(4, 3, LxPixelType::Mono8).IsOK());
    image.SetOffset(1, 2);
    Fill(image, 0x77);
    const auto before = StateOf(image);
    EXPECT_EQ(image.Attach(nullptr, 4, 3, LxPixelType::Mono8), LxResultCode::InvalidArgument);
    EXPECT_EQ(image.Attach(memory.data(), 0, 3, LxPixelType::Mono8), LxResultCode::InvalidArgument);
    EXPECT_EQ(image.Attach(memory.data(), 4, 0, LxPixelType::Mono8), LxResultCode::InvalidArgument);
    EXPECT_EQ(image.Attach(memory.data(), 4, 3, LxPixelType::None), LxResultCode::InvalidArgument);
    EXPECT_EQ(image.Attach(memory.data(), Most, Most, LxPixelType::BGRa8), LxResultCode::InvalidArgument);
    EXPECT_EQ(image.Attach(memory.data(), 2, 2, LxPixelType::RGB8_Planar, 1), LxResultCode::InvalidArgument);
    EXPECT_EQ(image.AttachSized(nullptr, 64, 4, 3, LxPixelType::Mono8), LxResultCode::InvalidArgument);
    EXPECT_EQ(image.AttachSized(memory.data(), 64, 0, 3, LxPixelType::Mono8), LxResultCode::InvalidArgument);
    EXPECT_EQ(StateOf(image), before);
    EXPECT_EQ(FirstByte(image), 0x77);
}

TEST(LxImage, AttachSizedTakesMemoryThatIsLargeEnough)
{
    std::array<uint8_t, 64> memory = {};
    LxImage image;
    ASSERT_TRUE(image.AttachSized(memory.data(), 64, 4, 3, LxPixelType::Mono8).IsOK());
    EXPECT_EQ(image.GetDataSize(), 64u);
    ASSERT_TRUE(image.AttachSized(memory.data(), 12, 4, 3, LxPixelType::Mono8).IsOK());
    EXPECT_EQ(image.GetDataSize(), 12u);
}

TEST(LxImage, AttachSizedRefusesMemoryThatIsTooSmallAndKeepsTheImage)
{
    std::array<uint8_t, 64> memory = {};
    LxImage image;
    ASSERT_TRUE(image.Attach(memory.data(), 8, 8, LxPixelType::Mono8).IsOK());
    const auto before = StateOf(image);
    EXPECT_EQ(image.AttachSized(memory.data(), 11, 4, 3, LxPixelType::Mono8), LxResultCode::BufferTooSmall);
    EXPECT_EQ(image.AttachSized(memory.data(), 0, 4, 3, LxPixelType::Mono8), LxResultCode::BufferTooSmall);
    EXPECT_EQ(image.AttachSized(memory.data(), 12, 4, 3, LxPixelType::Mono8, 0, 1), LxResultCode::BufferTooSmall);
    EXPECT_EQ(StateOf(image), before);
}

TEST(LxImage, FreeAndDetachMakeItEmptyWhateverItHolds)
{
    std::array<uint8_t, 4> memory = {1, 2, 3, 4};
    for (const auto release : {&LxImage::Free, &LxImage::Detach}) {
        LxImage image;
        (image.*release)();
        ExpectEmpty(image);
        ASSERT_TRUE(image.Alloc(4, 3, LxPixelType::Mono8, 1, 1).IsOK());
        image.SetOffset(1, 2);
        (image.*release)();
        ExpectEmpty(image);
        ASSERT_TRUE(image.Attach(memory.data(), 2, 2, LxPixelType::Mono8).IsOK());
        (image.*release)();
        ExpectEmpty(image);
        EXPECT_EQ(memory[3], 4);
    }
}

TEST(LxImage, ANewGeometryHasNoOffset)
{
    std::array<uint8_t, 4> memory = {};
    LxImage image;
    ASSERT_TRUE(image.Alloc(2, 2, LxPixelType::Mono8).IsOK());
    image.SetOffset(10, 20);
    EXPECT_EQ(image.GetOffsetX(), 10u);
    EXPECT_EQ(image.GetOffsetY(), 20u);
    ASSERT_TRUE(image.Alloc(2, 2, LxPixelType::Mono8).IsOK());
    EXPECT_EQ(image.GetOffsetX(), 0u);
    image.SetOffset(10, 20);
    ASSERT_TRUE(image.Attach(memory.data(), 2, 2, LxPixelType::Mono8).IsOK());
    EXPECT_EQ(image.GetOffsetY(), 0u);
}

TEST(LxImage, MovingTakesEverythingAndLeavesAnEmptyImage)
{
    LxImage image;
    ASSERT_TRUE(image.Alloc(4, 3, LxPixelType::Mono8, 1, 2).IsOK());
    image.SetOffset(5, 6);
    const auto before = StateOf(image);

    LxImage moved(std::move(image));
    EXPECT_EQ(StateOf(moved), before);
    ExpectEmpty(image);  // NOLINT(bugprone-use-after-move): what is left is asked for
    LxImage assigned;
    ASSERT_TRUE(assigned.Alloc(9, 9, LxPixelType::Mono8).IsOK());
    assigned = std::move(moved);
    EXPECT_EQ(StateOf(assigned), before);
    ExpectEmpty(moved);  // NOLINT(bugprone-use-after-move): what is left is asked for

    ASSERT_TRUE(image.Alloc(2, 2, LxPixelType::Mono8).IsOK());
    Fill(image, 1);
    LxImage &self = assigned;
    assigned = std::move(self);
    EXPECT_EQ(StateOf(assigned), before);
}

TEST(LxImage, MovingAnAttachedImageKeepsReferringToTheMemory)
{
    std::array<uint8_t, 4> memory = {};
    LxImage image;
    ASSERT_TRUE(image.Attach(memory.data(), 2, 2, LxPixelType::Mono8).IsOK());
    const LxImage moved(std::move(image));
    EXPECT_EQ(moved.GetDataPointer(), memory.data());
    ExpectEmpty(image);  // NOLINT(bugprone-use-after-move): what is left is asked for
}
