#include "LxBase/OtherCopies.h"

namespace
{

[[gnu::constructor]] void CheckLxGUI()
{
    LxDetail::ReportOtherCopies("LxGUI", reinterpret_cast<const void *>(&CheckLxGUI));
}

}  // namespace
