#include "LxBuffer/LxGenDCContainer.h"

#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "LxBuffer/GenDCDescriptor.h"
#include "LxBuffer/LxBuffer.h"

namespace
{

namespace GenDC = LxDetail::GenDC;
using Bytes = std::vector<uint8_t>;

/// One Mono8 image of 3 x 2 pixels with a byte of padding behind each line, byte by byte as the standard lays it out.
const Bytes Mono8Container = {
    0x47, 0x4E, 0x44, 0x43, 0x01, 0x01, 0x00, 0x00,  // 0x00 signature, version
    0x00, 0x10, 0x00, 0x00, 0x40, 0x00, 0x00, 0x00,  // 0x08 header type, flags, header size
    0x07, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,  // 0x10 ID
    0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,  // 0x18 variable fields
    0x08, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,  // 0x20 data size
    0xB0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,  // 0x28 data offset
    0xB0, 0x00, 0x00, 0x00, 0x01, 0x00, 0x00, 0x00,  // 0x30 descriptor size, component count
    0x40, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,  // 0x38 component offset
    0x00, 0x20, 0x00, 0x00, 0x38, 0x00, 0x00, 0x00,  // 0x40 component: header type, flags, header size
    0x00, 0x00, 0x00, 0x00, 0x01, 0x00, 0x00, 0x00,  // 0x48 group, source, region
    0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,  // 0x50 region offset
    0x00, 0xCA, 0x9A, 0x3B, 0x00, 0x00, 0x00, 0x00,  // 0x58 timestamp
    0x01, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,  // 0x60 type ID
    0x01, 0x00, 0x08, 0x01, 0x00, 0x00, 0x01, 0x00,  // 0x68 format, part count
    0x78, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,  // 0x70 part offset
    0x00, 0x42, 0x00, 0x00, 0x38, 0x00, 0x00, 0x00,  // 0x78 part: header type, flags, header size
    0x01, 0x00, 0x08, 0x01, 0x00, 0x00, 0x00, 0x00,  // 0x80 format, flow
    0xB0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,  // 0x88 flow offset
    0x08, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,  // 0x90 data size
    0xB0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,  // 0x98 data offset
    0x03, 0x00, 0x00, 0x00, 0x02, 0x00, 0x00, 0x00,  // 0xA0 size
    0x01, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,  // 0xA8 paddings
    0x10, 0x20, 0x30, 0xEE, 0x40, 0x50, 0x60, 0xEE,  // 0xB0 two lines
};

using Container = std::shared_ptr<const LxGenDCContainer>;

/// Parses a copy in memory of exactly its size, so that the address sanitizer sees every byte read beyond it.
LxResult Parse(const Bytes &aBytes, Container &aContainer)
{
    const std::shared_ptr<uint8_t[]> memory(new uint8_t[aBytes.size()]);
    std::copy(aBytes.begin(), aBytes.end(), memory.get());
    return LxGenDCContainer::Parse({memory, memory.get()}, aBytes.size(), aContainer);
}

LxResult Parse(const Bytes &aBytes)
{
    Container container;
    const LxResult result = Parse(aBytes, container);
    EXPECT_EQ(container != nullptr, result.IsOK());
    EXPECT_TRUE(result.IsOK() || !result.GetDescription().IsEmpty());
    return result;
}

Bytes With(Bytes aBytes, size_t aOffset, uint64_t aValue, size_t aSize)
{
    for (size_t i = 0; i < aSize; ++i) {
        aBytes[aOffset + i] = static_cast<uint8_t>(aValue >> 8 * i);
    }
    return aBytes;
}

const ILxGenDCImage *FirstImage(const ILxGenDCContainer &aContainer)
{
    return aContainer.GetComponent(0)->GetPart(0)->GetImage();
}

GenDC::Part ImagePart(LxPixelType aFormat, uint32_t aWidth, uint32_t aHeight, uint64_t aSize)
{
    GenDC::Part part;
    part.mFormat = aFormat;
    part.mSizeX = aWidth;
    part.mSizeY = aHeight;
    part.mDataSize = aSize;
    return part;
}

GenDC::Component ComponentOf(std::vector<GenDC::Part> aParts)
{
    GenDC::Component component;
    component.mFormat = aParts[0].mFormat;
    component.mParts = std::move(aParts);
    return component;
}

Bytes Make(GenDC::Descriptor aDescriptor)
{
    Bytes bytes = GenDC::Build(aDescriptor);
    bytes.resize(bytes.size() + aDescriptor.mDataSize);
    return bytes;
}

}  // namespace

TEST(LxGenDCContainer, ReadsTheImageOfTheStandardsLayout)
{
    Container container;
    ASSERT_TRUE(Parse(Mono8Container, container).IsOK());
    EXPECT_EQ(container->GetID(), 7u);
    EXPECT_EQ(container->GetSize(), Mono8Container.size());
    ASSERT_EQ(container->GetComponentCount(), 1u);
    EXPECT_EQ(container->GetComponent(1), nullptr);
    const ILxGenDCComponent *component = container->GetComponent(0);
    ASSERT_NE(component, nullptr);
    EXPECT_EQ(component->GetTypeID(), GenDC::Intensity);
    ASSERT_EQ(component->GetPartCount(), 1u);
    EXPECT_EQ(component->GetPart(1), nullptr);
    EXPECT_EQ(component->GetPart(0)->GetHeaderType(), 0x4200);
    const ILxGenDCImage *image = component->GetPart(0)->GetImage();
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->GetWidth(), 3u);
    EXPECT_EQ(image->GetHeight(), 2u);
    EXPECT_EQ(image->GetPixelType(), LxPixelType::Mono8);
    EXPECT_EQ(image->GetPaddingX(), 1u);
    EXPECT_EQ(image->GetPaddingY(), 0u);
    ASSERT_EQ(image->GetDataSize(), 8u);
    const Bytes lines(Mono8Container.end() - 8, Mono8Container.end());
    EXPECT_EQ(std::memcmp(image->GetDataPointer(), lines.data(), 8), 0);
}

TEST(LxGenDCContainer, KeepsTheMemoryThatItReads)
{
    auto memory = std::make_shared<const Bytes>(Mono8Container);
    Container container;
    ASSERT_TRUE(LxGenDCContainer::Parse({memory, memory->data()}, memory->size(), container).IsOK());
    EXPECT_EQ(memory.use_count(), 2);
    EXPECT_EQ(static_cast<const uint8_t *>(FirstImage(*container)->GetDataPointer()), memory->data() + 0xB0);
    LxBuffer buffer(LxPayloadType::GenDC);
    buffer.SetGenDC(container);
    container.reset();
    EXPECT_EQ(memory.use_count(), 2);
    EXPECT_EQ(FirstImage(*buffer.GetGenDC())->GetWidth(), 3u);
    buffer.Free();
    EXPECT_EQ(memory.use_count(), 1);
}

TEST(LxGenDCContainer, RefusesMemoryThatIsNone)
{
    Container container;
    EXPECT_EQ(LxGenDCContainer::Parse(nullptr, 100, container), LxResultCode::InvalidArgument);
    EXPECT_EQ(Parse({}), LxResultCode::InvalidDataFormat);
    EXPECT_EQ(Parse(Bytes(184, 0)), LxResultCode::InvalidDataFormat);
}

TEST(LxGenDCContainer, AFailureKeepsTheContainerThatWasThere)
{
    Container container;
    ASSERT_TRUE(Parse(Mono8Container, container).IsOK());
    const Container before = container;
    EXPECT_FALSE(Parse(Bytes(10), container).IsOK());
    EXPECT_EQ(container, before);
}

TEST(LxGenDCContainer, RefusesAContainerCutAnywhere)
{
    for (size_t size = 0; size < Mono8Container.size(); ++size) {
        EXPECT_EQ(Parse(Bytes(Mono8Container.begin(), Mono8Container.begin() + static_cast<std::ptrdiff_t>(size))),
                  LxResultCode::InvalidDataFormat)
            << size;
    }
}

TEST(LxGenDCContainer, BytesBehindTheContainerDoNotMatter)
{
    Bytes longer = Mono8Container;
    longer.resize(longer.size() + 100, 0x47);
    Container container;
    ASSERT_TRUE(Parse(longer, container).IsOK());
    EXPECT_EQ(container->GetSize(), Mono8Container.size());
}

TEST(LxGenDCContainer, RefusesWhatItsNumbersCannotMean)
{
    struct Case
    {
        const char *mName;
        size_t mOffset;
        uint64_t mValue;
        size_t mSize;
        LxResultCode mCode = LxResultCode::InvalidDataFormat;
    };
    constexpr uint64_t all = UINT64_MAX;
    const Case cases[] = {
        {"signature", 0, 0x44444E47, 4},
        {"another major version", 4, 2, 1, LxResultCode::NotSupported},
        {"a version of 0", 4, 0, 1, LxResultCode::NotSupported},
        {"container header type", 8, 0x2000, 2},
        {"container header size 0", 12, 0, 4},
        {"container header without its table", 12, 56, 4},
        {"container header larger than the descriptor", 12, 0xB1, 4},
        {"container header reaching into the component", 12, 0x48, 4},
        {"container header of 4 GB", 12, 0xFFFFFFFF, 4},
        {"preliminary", 24, 1, 2, LxResultCode::BufferIncomplete},
        {"data size beyond the end", 0x20, 9, 8},
        {"data size of 64 bits", 0x20, all, 8},
        {"data within the descriptor", 0x28, 0xAF, 8},
        {"data behind the end", 0x28, 0xB9, 8},
        {"negative data offset", 0x28, all, 8},
        {"data offset whose sum overflows", 0x28, all - 7, 8},
        {"descriptor size 0", 0x30, 0, 4},
        {"descriptor smaller than a part", 0x30, 0xAF, 4},
        {"descriptor larger than the memory", 0x30, 0xB9, 4},
        {"descriptor of 4 GB", 0x30, 0xFFFFFFFF, 4},
        {"no component", 0x34, 0, 4},
        {"a component too many", 0x34, 2, 4},
        {"most components", 0x34, 0xFFFFFFFF, 4},
        {"component in the container header", 0x38, 8, 8},
        {"component at the start", 0x38, 0, 8},
        {"negative component offset", 0x38, all, 8},
        {"component far away", 0x38, 0x7FFFFFFFFFFFFFFF, 8},
        {"component at the end of the descriptor", 0x38, 0xB0, 8},
        {"component where a part is", 0x38, 0x78, 8},
        {"component header type", 0x40, 0x4200, 2},
        {"component header size 0", 0x44, 0, 4},
        {"component header without its table", 0x44, 48, 4},
        {"component header reaching into the part", 0x44, 0x40, 4},
        {"component header of 4 GB", 0x44, 0xFFFFFFFF, 4},
        {"no part", 0x6E, 0, 2},
        {"a part too many", 0x6E, 2, 2},
        {"most parts", 0x6E, 0xFFFF, 2},
        {"part that is the component", 0x70, 0x40, 8},
        {"part that is its own offset", 0x70, 0x70, 8},
        {"negative part offset", 0x70, all, 8},
        {"part at the end of the descriptor", 0x70, 0xB0, 8},
        {"part reaching out of the descriptor", 0x70, 0x80, 8},
        {"part header type", 0x78, 0x2000, 2},
        {"part header size 0", 0x7C, 0, 4},
        {"part header too short for an image", 0x7C, 48, 4},
        {"part header reaching out of the descriptor", 0x7C, 64, 4},
        {"part header of 4 GB", 0x7C, 0xFFFFFFFF, 4},
        {"part data shorter than the image", 0x90, 7, 8},
        {"part data longer than the container", 0x90, 9, 8},
        {"part data of 64 bits", 0x90, all, 8},
        {"part data within the descriptor", 0x98, 0xA8, 8},
        {"part data behind the end", 0x98, 0xB8, 8},
        {"negative part data offset", 0x98, all, 8},
        {"width", 0xA0, 4, 4},
        {"largest width", 0xA0, 0xFFFFFFFF, 4},
        {"height", 0xA4, 3, 4},
        {"largest height", 0xA4, 0xFFFFFFFF, 4},
        {"largest width and height", 0xA0, all, 8},
        {"padding of lines", 0xA8, 0xFFFF, 2},
        {"padding of the image", 0xAA, 0xFFFF, 2},
        {"a format with more bits", 0x80, static_cast<uint32_t>(LxPixelType::Mono16), 4},
    };
    for (const Case &one : cases) {
        EXPECT_EQ(Parse(With(Mono8Container, one.mOffset, one.mValue, one.mSize)), one.mCode) << one.mName;
    }
}

TEST(LxGenDCContainer, TakesWhatMayDiffer)
{
    struct Case
    {
        const char *mName;
        size_t mOffset;
        uint64_t mValue;
        size_t mSize;
        bool mHasImage = true;
    };
    const Case cases[] = {
        {"a newer minor version", 5, 9, 1},
        {"unknown flags", 10, 0xFFFC, 2},
        {"reserved bytes", 26, 0xFFFFFFFF, 4},
        {"a negative time", 0x58, UINT64_MAX, 8},
        {"an unknown kind of component", 0x60, 0xFF00, 8},
        {"an unknown kind of part", 0x78, 0x4FFF, 2, false},
        {"a compressed part", 0x78, 0x4201, 2, false},
        {"an invalid component", 0x42, 1, 2, false},
        {"another flow", 0x86, 3, 2, false},
        {"a part without data", 0x78, 0x41F0, 2, false},
        {"width 0", 0xA0, 0, 4, false},
        {"height 0", 0xA4, 0, 4, false},
        {"no format", 0x80, 0, 4, false},
    };
    for (const Case &one : cases) {
        Container container;
        ASSERT_TRUE(Parse(With(Mono8Container, one.mOffset, one.mValue, one.mSize), container).IsOK()) << one.mName;
        EXPECT_EQ(FirstImage(*container) != nullptr, one.mHasImage) << one.mName;
    }
}

TEST(LxGenDCContainer, DataOfNoBytesMayBeAtTheEnd)
{
    Bytes bytes = With(With(Mono8Container, 0x78, 0x41F0, 2), 0x90, 0, 8);
    EXPECT_TRUE(Parse(With(bytes, 0x98, 0xB8, 8)).IsOK());
    EXPECT_EQ(Parse(With(With(bytes, 0x98, 0xB8, 8), 0x90, 1, 8)), LxResultCode::InvalidDataFormat);
}

TEST(LxGenDCContainer, AnInvalidComponentMaySayAnythingOfItsData)
{
    const Bytes invalid = With(Mono8Container, 0x42, 1, 2);
    EXPECT_TRUE(Parse(With(With(invalid, 0x90, 0, 8), 0x98, 0xB8, 8)).IsOK());
    EXPECT_TRUE(Parse(With(invalid, 0x98, UINT64_MAX, 8)).IsOK());
}

TEST(LxGenDCContainer, HandsOutTheImagesOfSeveralComponents)
{
    GenDC::Descriptor descriptor;
    GenDC::Part metadata;
    metadata.mHeaderType = 0x4000;
    metadata.mDataSize = 20;
    descriptor.mComponents.push_back(ComponentOf({metadata}));
    descriptor.mComponents[0].mTypeID = GenDC::Metadata;
    descriptor.mComponents.push_back(
        ComponentOf({ImagePart(LxPixelType::Mono8, 4, 3, 12), ImagePart(LxPixelType::Mono12p, 4, 2, 12)}));
    descriptor.mComponents.push_back(ComponentOf({ImagePart(LxPixelType::RGB8, 2, 2, 12)}));
    descriptor.mComponents[2].mIsInvalid = true;
    Container container;
    ASSERT_TRUE(Parse(Make(descriptor), container).IsOK());
    ASSERT_EQ(container->GetComponentCount(), 3u);
    EXPECT_EQ(container->GetComponent(0)->GetTypeID(), GenDC::Metadata);
    EXPECT_EQ(container->GetComponent(0)->GetPart(0)->GetImage(), nullptr);
    ASSERT_NE(container->GetComponent(1)->GetPart(0)->GetImage(), nullptr);
    ASSERT_NE(container->GetComponent(1)->GetPart(1)->GetImage(), nullptr);
    EXPECT_EQ(container->GetComponent(1)->GetPart(1)->GetImage()->GetPixelType(), LxPixelType::Mono12p);
    EXPECT_EQ(container->GetComponent(2)->GetPart(0)->GetImage(), nullptr);
}

TEST(LxGenDCContainer, RefusesPartsWhoseDataOverlap)
{
    GenDC::Descriptor descriptor;
    descriptor.mComponents.push_back(
        ComponentOf({ImagePart(LxPixelType::Mono8, 4, 2, 8), ImagePart(LxPixelType::Mono8, 4, 2, 8)}));
    const Bytes bytes = Make(descriptor);
    ASSERT_TRUE(Parse(bytes).IsOK());
    const size_t second = 64 + 48 + 2 * 8 + 56;
    for (const uint64_t offset : {bytes.size() - 9, bytes.size() - 16}) {
        EXPECT_EQ(Parse(With(bytes, second + 32, offset, 8)), LxResultCode::InvalidDataFormat);
    }
}

TEST(LxGenDCContainer, ComponentsMayShareAPartAndMayNotBeListedTwice)
{
    GenDC::Descriptor descriptor;
    for (int i = 0; i < 2; ++i) {
        descriptor.mComponents.push_back(ComponentOf({ImagePart(LxPixelType::Mono8, 4, 2, 8)}));
    }
    const Bytes bytes = Make(descriptor);
    const size_t first = 56 + 2 * 8;
    const size_t second = first + 48 + 8 + 56;
    Container container;
    ASSERT_TRUE(Parse(With(bytes, second + 48, first + 48 + 8, 8), container).IsOK());
    EXPECT_EQ(container->GetComponent(0)->GetPart(0)->GetImage()->GetDataPointer(),
              container->GetComponent(1)->GetPart(0)->GetImage()->GetDataPointer());
    EXPECT_EQ(Parse(With(bytes, 64, first, 8)), LxResultCode::InvalidDataFormat);
    // what an invalid component says is checked when a valid one says it too
    Bytes shared = With(With(bytes, second + 48, first + 48 + 8, 8), first + 2, 1, 2);
    EXPECT_TRUE(Parse(shared).IsOK());
    EXPECT_EQ(Parse(With(shared, first + 48 + 8 + 32, UINT64_MAX, 8)), LxResultCode::InvalidDataFormat);
}

TEST(LxGenDCContainer, ALineThatBeginsWithinAByteMakesNoImage)
{
    // 3 pixels of 12 bits: 5 bytes a line, or 9 bytes for both lines without a gap
    GenDC::Descriptor descriptor;
    for (const auto &[size, hasImage] : {std::pair{uint64_t{10}, true}, std::pair{uint64_t{9}, false}}) {
        descriptor.mComponents = {ComponentOf({ImagePart(LxPixelType::Mono12p, 3, 2, size)})};
        Container container;
        ASSERT_TRUE(Parse(Make(descriptor), container).IsOK());
        EXPECT_EQ(FirstImage(*container) != nullptr, hasImage) << size;
    }
    descriptor.mComponents = {ComponentOf({ImagePart(LxPixelType::Mono12p, 3, 2, 8)})};
    EXPECT_EQ(Parse(Make(descriptor)), LxResultCode::InvalidDataFormat);
}

TEST(LxGenDCContainer, RefusesMorePartsThanAnyDeviceHas)
{
    GenDC::Descriptor descriptor;
    GenDC::Part part;
    part.mHeaderType = 0x41F0;
    descriptor.mComponents.assign(2, ComponentOf(std::vector<GenDC::Part>(32768, part)));
    EXPECT_TRUE(Parse(Make(descriptor)).IsOK());
    descriptor.mComponents.push_back(ComponentOf({part}));
    EXPECT_EQ(Parse(Make(descriptor)), LxResultCode::InvalidDataFormat);
    descriptor.mComponents.assign(4096, ComponentOf({part}));
    EXPECT_TRUE(Parse(Make(descriptor)).IsOK());
    descriptor.mComponents.assign(4097, ComponentOf({part}));
    EXPECT_EQ(Parse(Make(descriptor)), LxResultCode::InvalidDataFormat);
}

TEST(GenDCDescriptor, WhatIsBuiltIsReadAgain)
{
    GenDC::Descriptor descriptor;
    descriptor.mID = 0x1234567890;
    descriptor.mComponents.push_back(
        ComponentOf({ImagePart(LxPixelType::BayerRG8, 6, 4, 24), ImagePart(LxPixelType::Mono16, 5, 2, 20)}));
    descriptor.mComponents[0].mTimestamp = 99;
    GenDC::Part &padded = descriptor.mComponents[0].mParts[0];
    padded.mPaddingX = 2;
    padded.mPaddingY = 5;
    padded.mDataSize = 4 * 8 + 5;
    Bytes bytes = GenDC::Build(descriptor);
    EXPECT_EQ(descriptor.mDataOffset, bytes.size());
    bytes.resize(bytes.size() + descriptor.mDataSize);
    GenDC::Descriptor read;
    ASSERT_TRUE(GenDC::Parse(bytes, read).IsOK());
    EXPECT_TRUE(read == descriptor);
}
