#pragma once

// Internal: the descriptor of a GenDC container as values (EMVA GenICam Generic Data Container 1.1).

#include <cstdint>
#include <span>
#include <vector>

#include "LxBase/LxResult.h"
#include "LxBuffer/LxPixelType.h"

namespace LxDetail::GenDC
{

/// Header types of parts (table "Header types").
inline constexpr uint16_t ImagePart = 0x4200;  ///< Two-dimensional, not compressed.

/// Type IDs of components: the numbers of the SFNC feature ComponentIDValue.
inline constexpr uint64_t Intensity = 1;
inline constexpr uint64_t Metadata = 0x8001;

/// One block of data. The last four values belong to two-dimensional parts and are 0 in others.
struct Part
{
    uint16_t mHeaderType = ImagePart;
    LxPixelType mFormat = LxPixelType::None;
    uint16_t mFlowID = 0;
    uint64_t mDataSize = 0;
    uint64_t mDataOffset = 0;  ///< From the first byte of the descriptor.
    uint32_t mSizeX = 0;
    uint32_t mSizeY = 0;
    uint16_t mPaddingX = 0;
    uint16_t mPaddingY = 0;

    bool operator==(const Part &) const = default;

    /// Whether the part can be shown as an image: a 0x4200 part of the linear container whose lines lie as an image's
    /// do. Lines of a packed format that begin within a byte do not.
    bool IsImage() const;
};

/// The parts of one kind and source.
struct Component
{
    bool mIsInvalid = false;  ///< The device gives no data for it; its parts must not be shown.
    uint64_t mTypeID = Intensity;
    LxPixelType mFormat = LxPixelType::None;
    uint64_t mTimestamp = 0;  ///< In nanoseconds.
    std::vector<Part> mParts;

    bool operator==(const Component &) const = default;
};

struct Descriptor
{
    uint64_t mID = 0;          ///< Grows by one from container to container.
    uint64_t mDataOffset = 0;  ///< Of the data section, from the first byte of the descriptor.
    uint64_t mDataSize = 0;
    std::vector<Component> mComponents;

    bool operator==(const Descriptor &) const = default;
};

/// Reads the descriptor of a container. Its numbers are believed only where they fit the memory and one another: after
/// success every part of a valid component lies in aContainer, and every image has the bytes that its geometry needs.
/// Takes time and memory in proportion to the size of the descriptor. The results are those of
/// LxGenDCContainer::Parse(); on failure aDescriptor is as it was.
LxResult Parse(std::span<const uint8_t> aContainer, Descriptor &aDescriptor);

/// Puts the data of the parts one behind the other behind the descriptor, sets the offsets and the size of the data
/// section accordingly and writes the descriptor (version 1.1). Flow offsets are those of a single flow.
std::vector<uint8_t> Build(Descriptor &aDescriptor);

}  // namespace LxDetail::GenDC
