#include <cstdint>
#include <cstdlib>

#include "LxPersistence/LxConfigurationReader.h"
#include "LxPersistence/LxConfigurationWriter.h"

// Whatever the reader takes must come back unchanged through the writer.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *aData, size_t aSize)
{
    LxConfigurationReader reader;
    if (!reader.LoadFromString(LxString(std::string(reinterpret_cast<const char *>(aData), aSize))).IsOK()) {
        return 0;
    }
    LxConfigurationWriter writer;
    const LxStringList names = reader.GetNames();
    for (size_t i = 0; i < names.GetSize(); ++i) {
        LxPropertyList list;
        if (!reader.Restore(names.GetItem(i), &list).IsOK()) {
            std::abort();
        }
        writer.Store(&list, names.GetItem(i));
    }
    LxConfigurationReader again;
    if (!again.LoadFromString(writer.SaveToString()).IsOK()) {
        std::abort();
    }
    return 0;
}
