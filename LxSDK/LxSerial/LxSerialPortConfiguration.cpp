#include "LxSerial/LxSerialPortConfiguration.h"

bool LxSerialPortConfiguration::IsValid() const
{
    return mBaudRate != 0 && static_cast<uint32_t>(mParity) <= static_cast<uint32_t>(LxSerialParity::Odd) &&
           mByteSize >= 5 && mByteSize <= 8 && (mStopBits == 1 || mStopBits == 2);
}
