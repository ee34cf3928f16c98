#include "LxSystem/U3VDescriptor.h"

#include <cstddef>

namespace LxDetail
{

namespace
{

using Bytes = std::span<const uint8_t>;

// USB 3 specification, chapter 9: standard descriptors
constexpr uint8_t typeDevice = 0x01;
constexpr uint8_t typeInterface = 0x04;
constexpr size_t deviceSize = 18;
constexpr size_t interfaceSize = 9;
// USB3 Vision: the control interface and the descriptor in it
constexpr uint8_t classMiscellaneous = 0xEF;
constexpr uint8_t subclassU3V = 0x05;
constexpr uint8_t protocolControl = 0x00;
constexpr uint8_t typeDeviceInfo = 0x24;
constexpr uint8_t subtypeDeviceInfo = 0x01;
constexpr size_t deviceInfoSize = 20;

uint16_t Get16(Bytes aBytes, size_t aOffset)
{
    return static_cast<uint16_t>(aBytes[aOffset] | aBytes[aOffset + 1] << 8);
}

}  // namespace

std::optional<U3VDescriptor> ParseU3VDescriptor(Bytes aDescriptors)
{
    if (aDescriptors.size() < deviceSize || aDescriptors[0] < deviceSize || aDescriptors[1] != typeDevice) {
        return std::nullopt;
    }
    U3VDescriptor result;
    result.mUSBManufacturer = aDescriptors[14];
    result.mUSBProduct = aDescriptors[15];
    result.mUSBSerialNumber = aDescriptors[16];

    bool inControlInterface = false;
    for (Bytes rest = aDescriptors; rest.size() >= 2;) {
        const size_t length = rest[0];
        if (length < 2 || length > rest.size()) {
            return std::nullopt;
        }
        const Bytes descriptor = rest.first(length);
        rest = rest.subspan(length);
        if (descriptor[1] == typeInterface) {
            inControlInterface = length >= interfaceSize && descriptor[5] == classMiscellaneous &&
                                 descriptor[6] == subclassU3V && descriptor[7] == protocolControl;
        }
        else if (inControlInterface && descriptor[1] == typeDeviceInfo && length >= deviceInfoSize &&
                 descriptor[2] == subtypeDeviceInfo)
        {
            result.mGenCPMinor = Get16(descriptor, 3);
            result.mGenCPMajor = Get16(descriptor, 5);
            result.mU3VMinor = Get16(descriptor, 7);
            result.mU3VMajor = Get16(descriptor, 9);
            result.mGUID = descriptor[11];
            result.mVendorName = descriptor[12];
            result.mModelName = descriptor[13];
            result.mFamilyName = descriptor[14];
            result.mVersion = descriptor[15];
            result.mManufacturerInfo = descriptor[16];
            result.mSerialNumber = descriptor[17];
            result.mUserDefinedName = descriptor[18];
            result.mSpeeds = descriptor[19];
            return result;
        }
    }
    return std::nullopt;
}

}  // namespace LxDetail
