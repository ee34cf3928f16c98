// The descriptors of a USB device, on arbitrary bytes.

#include "LxSystem/U3VDescriptor.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *aData, size_t aSize)
{
    LxDetail::ParseU3VDescriptor({aData, aSize});
    return 0;
}
