#include "LxBuffer/GenDCDescriptor.h"

#include <algorithm>
#include <map>
#include <string>
#include <utility>

namespace LxDetail::GenDC
{

namespace
{

constexpr uint8_t Signature[4] = {'G', 'N', 'D', 'C'};
constexpr uint8_t Major = 1;
constexpr uint16_t ContainerHeader = 0x1000;
constexpr uint16_t ComponentHeader = 0x2000;
constexpr uint16_t PartHeaders = 0x4;      // the upper four bits of all parts
constexpr uint16_t LastFlatPart = 0x4203;  // from ImagePart on these are two-dimensional
constexpr uint16_t InvalidComponent = 1;
constexpr uint16_t HasInvalidComponent = 2;

// The bytes of the headers without their tables.
constexpr uint64_t ContainerSize = 56;
constexpr uint64_t ComponentSize = 48;
constexpr uint64_t PartSize = 40;
constexpr uint64_t ImagePartSize = 56;
constexpr uint64_t OffsetSize = 8;

// More than any device has; a descriptor that claims more is broken.
constexpr uint32_t MostComponents = 4096;
constexpr uint32_t MostParts = 65536;

LxResult Broken(const std::string &aWhat)
{
    return LxResult(LxResultCode::InvalidDataFormat, "The GenDC container is broken: " + aWhat + ".");
}

bool IsInside(uint64_t aOffset, uint64_t aSize, uint64_t aEnd)
{
    return aOffset <= aEnd && aSize <= aEnd - aOffset;
}

/// A range of bytes.
struct Range
{
    uint64_t mBegin = 0;
    uint64_t mSize = 0;

    bool operator<(const Range &aOther) const { return mBegin < aOther.mBegin; }
};

bool HaveOverlap(std::vector<Range> &aRanges)
{
    std::sort(aRanges.begin(), aRanges.end());
    return std::adjacent_find(aRanges.begin(), aRanges.end(), [](const Range &aFirst, const Range &aSecond) {
               return aSecond.mBegin - aFirst.mBegin < aFirst.mSize;
           }) != aRanges.end();
}

// Bytes of an image whose lines follow one another without filling up to whole bytes; 0 when that exceeds 64 bits.
uint64_t GetRunOnSize(const Part &aPart)
{
    uint64_t bits = 0;
    if (__builtin_mul_overflow(uint64_t{aPart.mSizeX} * aPart.mSizeY, LxPixelTypeGetBitsPerPixel(aPart.mFormat), &bits))
    {
        return 0;
    }
    return bits / 8 + (bits % 8 ? 1 : 0);
}

uint64_t GetImageSize(const Part &aPart)
{
    return LxPixelTypeGetImageSize(aPart.mFormat, aPart.mSizeX, aPart.mSizeY, aPart.mPaddingX, aPart.mPaddingY);
}

// Whether the data of an image part are shorter than its geometry says, in whichever way its lines may lie.
bool IsTooShort(const Part &aPart)
{
    if (aPart.mSizeX == 0 || aPart.mSizeY == 0 || LxPixelTypeGetBitsPerPixel(aPart.mFormat) == 0) {
        return false;
    }
    const uint64_t runOn = GetRunOnSize(aPart);
    if (runOn == 0 || runOn > aPart.mDataSize) {
        return true;
    }
    const bool padded = aPart.mPaddingX != 0 || aPart.mPaddingY != 0;
    return padded && GetImageSize(aPart) > aPart.mDataSize;
}

/// Reads a container. Every number comes through here, byte by byte: nothing in a buffer is aligned.
class Reader
{
public:
    explicit Reader(std::span<const uint8_t> aBytes) : mBytes(aBytes) {}

    LxResult Read(Descriptor &aDescriptor)
    {
        if (LxResult result = ReadContainer(aDescriptor); !result.IsOK()) {
            return result;
        }
        aDescriptor.mComponents.resize(Get(52, 4));
        for (size_t i = 0; i < aDescriptor.mComponents.size(); ++i) {
            const uint64_t offset = Get(ContainerSize + i * OffsetSize, 8);
            if (LxResult result = ReadComponent(offset, aDescriptor.mComponents[i]); !result.IsOK()) {
                return result;
            }
        }
        if (HaveOverlap(mHeaders)) {
            return Broken("headers overlap");
        }
        return HaveOverlap(mData) ? Broken("the data of parts overlap") : LxResult();
    }

private:
    uint64_t Get(uint64_t aOffset, unsigned aSize) const
    {
        uint64_t value = 0;
        for (unsigned i = aSize; i > 0; --i) {
            value = value << 8 | mBytes[aOffset + i - 1];
        }
        return value;
    }

    template <class T>
    T Get(uint64_t aOffset) const
    {
        return static_cast<T>(Get(aOffset, sizeof(T)));
    }

    LxResult ReadContainer(Descriptor &aDescriptor)
    {
        if (mBytes.size() < ContainerSize || !std::equal(std::begin(Signature), std::end(Signature), mBytes.begin())) {
            return LxResult(LxResultCode::InvalidDataFormat, "The data are no GenDC container.");
        }
        if (mBytes[4] != Major) {
            return LxResult(LxResultCode::NotSupported,
                            "GenDC containers of version " + std::to_string(mBytes[4]) + " cannot be read.");
        }
        const auto headerSize = Get<uint32_t>(12);
        mDescriptorSize = Get<uint32_t>(48);
        const auto count = Get<uint32_t>(52);
        if (Get<uint16_t>(8) != ContainerHeader) {
            return Broken("its header is of another kind");
        }
        if (count == 0 || count > MostComponents) {
            return Broken("it claims " + std::to_string(count) + " components");
        }
        if (headerSize < ContainerSize + count * OffsetSize || headerSize > mDescriptorSize ||
            mDescriptorSize > mBytes.size()) {
            return Broken("the sizes of its headers do not fit");
        }
        aDescriptor.mID = Get(16, 8);
        aDescriptor.mDataSize = mSection.mSize = Get(32, 8);
        aDescriptor.mDataOffset = mSection.mBegin = Get(40, 8);
        if (mSection.mBegin < mDescriptorSize || !IsInside(mSection.mBegin, mSection.mSize, mBytes.size())) {
            return Broken("its data do not lie in the memory");
        }
        if (Get<uint16_t>(24) != 0) {
            return LxResult(LxResultCode::BufferIncomplete,
                            "The descriptor of the GenDC container is a preliminary one.");
        }
        mHeaders.push_back({0, headerSize});
        return LxResult();
    }

    LxResult ReadComponent(uint64_t aOffset, Component &aComponent)
    {
        if (!IsInside(aOffset, ComponentSize, mDescriptorSize)) {
            return Broken("a component does not lie in the descriptor");
        }
        const auto headerSize = Get<uint32_t>(aOffset + 4);
        const auto count = Get<uint16_t>(aOffset + 46);
        if (Get<uint16_t>(aOffset) != ComponentHeader) {
            return Broken("the header of a component is of another kind");
        }
        if (count == 0 || headerSize < ComponentSize + count * OffsetSize ||
            !IsInside(aOffset, headerSize, mDescriptorSize)) {
            return Broken("the size of a component's header does not fit");
        }
        mPartCount += count;
        if (mPartCount > MostParts) {
            return Broken("it has too many parts");
        }
        mHeaders.push_back({aOffset, headerSize});
        aComponent.mIsInvalid = (Get<uint16_t>(aOffset + 2) & InvalidComponent) != 0;
        aComponent.mTimestamp = Get(aOffset + 24, 8);
        aComponent.mTypeID = Get(aOffset + 32, 8);
        aComponent.mFormat = static_cast<LxPixelType>(Get<uint32_t>(aOffset + 40));
        aComponent.mParts.resize(count);
        for (uint64_t i = 0; i < count; ++i) {
            const uint64_t offset = Get(aOffset + ComponentSize + i * OffsetSize, 8);
            if (LxResult result = ReadPart(offset, aComponent.mIsInvalid, aComponent.mParts[i]); !result.IsOK()) {
                return result;
            }
        }
        return LxResult();
    }

    LxResult ReadPart(uint64_t aOffset, bool aIsInvalid, Part &aPart)
    {
        if (!IsInside(aOffset, PartSize, mDescriptorSize)) {
            return Broken("a part does not lie in the descriptor");
        }
        const auto headerSize = Get<uint32_t>(aOffset + 4);
        aPart.mHeaderType = Get<uint16_t>(aOffset);
        const bool isFlat = aPart.mHeaderType >= ImagePart && aPart.mHeaderType <= LastFlatPart;
        if (aPart.mHeaderType >> 12 != PartHeaders) {
            return Broken("the header of a part is of another kind");
        }
        if (headerSize < (isFlat ? ImagePartSize : PartSize) || !IsInside(aOffset, headerSize, mDescriptorSize)) {
            return Broken("the size of a part's header does not fit");
        }
        aPart.mFormat = static_cast<LxPixelType>(Get<uint32_t>(aOffset + 8));
        aPart.mFlowID = Get<uint16_t>(aOffset + 14);
        aPart.mDataSize = Get(aOffset + 24, 8);
        aPart.mDataOffset = Get(aOffset + 32, 8);
        if (isFlat) {
            aPart.mSizeX = Get<uint32_t>(aOffset + 40);
            aPart.mSizeY = Get<uint32_t>(aOffset + 44);
            aPart.mPaddingX = Get<uint16_t>(aOffset + 48);
            aPart.mPaddingY = Get<uint16_t>(aOffset + 50);
        }
        // Components may share a part; anything else that overlaps is an error.
        const auto [known, isNew] = mParts.emplace(aOffset, false);
        if (isNew) {
            mHeaders.push_back({aOffset, headerSize});
        }
        // The data of other flows lie elsewhere, those of invalid components nowhere.
        if (known->second || aIsInvalid || aPart.mFlowID != 0) {
            return LxResult();
        }
        known->second = true;
        if (aPart.mDataOffset < mSection.mBegin ||
            !IsInside(aPart.mDataOffset, aPart.mDataSize, mSection.mBegin + mSection.mSize))
        {
            return Broken("the data of a part do not lie in the container");
        }
        if (aPart.mHeaderType == ImagePart && IsTooShort(aPart)) {
            return Broken("an image is larger than its data");
        }
        if (aPart.mDataSize != 0) {
            mData.push_back({aPart.mDataOffset, aPart.mDataSize});
        }
        return LxResult();
    }

    const std::span<const uint8_t> mBytes;
    uint64_t mDescriptorSize = 0;
    Range mSection;
    uint32_t mPartCount = 0;
    std::map<uint64_t, bool> mParts;  // by offset: whether the data have been checked
    std::vector<Range> mHeaders;
    std::vector<Range> mData;
};

}  // namespace

bool Part::IsImage() const
{
    const uint64_t size = mHeaderType == ImagePart && mFlowID == 0 ? GetImageSize(*this) : 0;
    return size != 0 && size <= mDataSize;
}

LxResult Parse(std::span<const uint8_t> aContainer, Descriptor &aDescriptor)
{
    Descriptor descriptor;
    const LxResult result = Reader(aContainer).Read(descriptor);
    if (result.IsOK()) {
        aDescriptor = std::move(descriptor);
    }
    return result;
}

std::vector<uint8_t> Build(Descriptor &aDescriptor)
{
    uint64_t size = ContainerSize + aDescriptor.mComponents.size() * OffsetSize;
    bool hasInvalid = false;
    for (const Component &component : aDescriptor.mComponents) {
        size += ComponentSize + component.mParts.size() * (OffsetSize + ImagePartSize);
        hasInvalid = hasInvalid || component.mIsInvalid;
    }
    std::vector<uint8_t> bytes(size);
    const auto put = [&bytes](uint64_t aOffset, uint64_t aValue, unsigned aSize) {
        for (unsigned i = 0; i < aSize; ++i) {
            bytes[aOffset + i] = static_cast<uint8_t>(aValue >> 8 * i);
        }
    };
    uint64_t position = ContainerSize + aDescriptor.mComponents.size() * OffsetSize;
    uint64_t data = size;
    std::copy(std::begin(Signature), std::end(Signature), bytes.begin());
    put(4, Major, 1);
    put(5, 1, 1);
    put(8, ContainerHeader, 2);
    put(10, hasInvalid ? HasInvalidComponent : 0, 2);
    put(12, position, 4);
    put(16, aDescriptor.mID, 8);
    put(40, size, 8);
    put(48, size, 4);
    put(52, aDescriptor.mComponents.size(), 4);
    uint64_t entry = ContainerSize;
    for (Component &component : aDescriptor.mComponents) {
        put(entry, position, 8);
        entry += OffsetSize;
        const uint64_t header = position;
        const uint64_t headerSize = ComponentSize + component.mParts.size() * OffsetSize;
        put(header, ComponentHeader, 2);
        put(header + 2, component.mIsInvalid ? InvalidComponent : 0, 2);
        put(header + 4, headerSize, 4);
        put(header + 24, component.mTimestamp, 8);
        put(header + 32, component.mTypeID, 8);
        put(header + 40, static_cast<uint32_t>(component.mFormat), 4);
        put(header + 46, component.mParts.size(), 2);
        position += headerSize;
        uint64_t partEntry = header + ComponentSize;
        for (Part &part : component.mParts) {
            put(partEntry, position, 8);
            partEntry += OffsetSize;
            part.mDataOffset = data;
            data += part.mDataSize;
            put(position, part.mHeaderType, 2);
            put(position + 4, ImagePartSize, 4);
            put(position + 8, static_cast<uint32_t>(part.mFormat), 4);
            put(position + 14, part.mFlowID, 2);
            put(position + 16, part.mDataOffset, 8);
            put(position + 24, part.mDataSize, 8);
            put(position + 32, part.mDataOffset, 8);
            put(position + 40, part.mSizeX, 4);
            put(position + 44, part.mSizeY, 4);
            put(position + 48, part.mPaddingX, 2);
            put(position + 50, part.mPaddingY, 2);
            position += ImagePartSize;
        }
    }
    aDescriptor.mDataOffset = size;
    aDescriptor.mDataSize = data - size;
    put(32, aDescriptor.mDataSize, 8);
    return bytes;
}

}  // namespace LxDetail::GenDC
