#include "LxBase/OtherCopies.h"

namespace
{

[[gnu::constructor]] void CheckLxSDK()
{
    LxDetail::ReportOtherCopies("LxSDK", reinterpret_cast<const void *>(&CheckLxSDK));
}

}  // namespace
