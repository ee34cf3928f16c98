#pragma once

// Internal: what the descriptors of a USB device say about USB3 Vision.

#include <cstdint>
#include <optional>
#include <span>

namespace LxDetail
{

/// Bits of U3VDescriptor::mSpeeds.
constexpr uint8_t u3vSpeedLow = 0x01;
constexpr uint8_t u3vSpeedFull = 0x02;
constexpr uint8_t u3vSpeedHigh = 0x04;
constexpr uint8_t u3vSpeedSuper = 0x08;
constexpr uint8_t u3vSpeedSuperPlus = 0x10;

/// The device-info descriptor of a USB3 Vision device, and the strings of its device descriptor. String indices are 0
/// where there is no string.
struct U3VDescriptor
{
    uint16_t mGenCPMajor = 0;
    uint16_t mGenCPMinor = 0;
    uint16_t mU3VMajor = 0;
    uint16_t mU3VMinor = 0;
    uint8_t mGUID = 0;
    uint8_t mVendorName = 0;
    uint8_t mModelName = 0;
    uint8_t mFamilyName = 0;
    uint8_t mVersion = 0;
    uint8_t mManufacturerInfo = 0;
    uint8_t mSerialNumber = 0;
    uint8_t mUserDefinedName = 0;
    uint8_t mSpeeds = 0;
    uint8_t mUSBManufacturer = 0;
    uint8_t mUSBProduct = 0;
    uint8_t mUSBSerialNumber = 0;

    bool operator==(const U3VDescriptor &) const = default;
};

/// Reads the device descriptor and the configurations behind it, as in the sysfs file "descriptors". Nothing when the
/// device is no USB3 Vision device, or when the bytes are cut short or make no sense before it can be told.
std::optional<U3VDescriptor> ParseU3VDescriptor(std::span<const uint8_t> aDescriptors);

}  // namespace LxDetail
