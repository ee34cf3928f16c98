#pragma once

#include <cstdint>

namespace LxEmulator
{

// Numbers in network byte order.

inline void Put16(uint8_t *aTo, uint64_t aValue)
{
    aTo[0] = static_cast<uint8_t>(aValue >> 8);
    aTo[1] = static_cast<uint8_t>(aValue);
}

inline void Put32(uint8_t *aTo, uint64_t aValue)
{
    Put16(aTo, aValue >> 16);
    Put16(aTo + 2, aValue);
}

inline void Put64(uint8_t *aTo, uint64_t aValue)
{
    Put32(aTo, aValue >> 32);
    Put32(aTo + 4, aValue);
}

inline uint16_t Get16(const uint8_t *aFrom)
{
    return static_cast<uint16_t>(aFrom[0] << 8 | aFrom[1]);
}

inline uint32_t Get32(const uint8_t *aFrom)
{
    return static_cast<uint32_t>(Get16(aFrom)) << 16 | Get16(aFrom + 2);
}

inline uint64_t Get64(const uint8_t *aFrom)
{
    return static_cast<uint64_t>(Get32(aFrom)) << 32 | Get32(aFrom + 4);
}

}  // namespace LxEmulator
