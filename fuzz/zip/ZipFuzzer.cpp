// The reader of ZIP files, on arbitrary bytes.

#include <cstdint>
#include <cstdlib>

#include "LxCameraBridge/ZipFile.h"

using namespace LxDetail;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *aData, size_t aSize)
{
    constexpr size_t largest = 1 << 16;
    const std::string bytes(reinterpret_cast<const char *>(aData), aSize);
    IsZip(bytes);
    std::string content;
    if (!ExtractZip(bytes, largest, content).IsOK()) {
        return 0;
    }
    std::string again;
    if (content.size() > largest || !ExtractZip(MakeZip("camera.xml", content), largest, again).IsOK() ||
        again != content) {
        std::abort();
    }
    return 0;
}
