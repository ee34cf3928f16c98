// Takes any bytes for a camera's XML description and asks its features everything.

#include <glib.h>

#include <cstdint>
#include <memory>
#include <string>

#include "AskEverything.h"
#include "LxGenICam/LxGenParameterArray.h"
#include "NodeMap/MemoryPort.h"
#include "NodeMap/NodeMap.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *aData, size_t aSize)
{
    // what the engine complains about on stderr has not been checked well enough before
    static const auto previous =
        g_log_set_always_fatal(static_cast<GLogLevelFlags>(G_LOG_FATAL_MASK | G_LOG_LEVEL_CRITICAL));
    static_cast<void>(previous);
    auto port = std::make_shared<LxDetail::MemoryPort>();
    port->Map(0x1000, 0x1000);
    for (uint64_t address = 0x1000; address < 0x2000; address += 4) {
        port->Poke32(address, static_cast<uint32_t>(address));
    }
    std::unique_ptr<LxDetail::NodeMap> nodeMap;
    const std::string xml(reinterpret_cast<const char *>(aData), aSize);
    if (LxDetail::NodeMap::Create(port, xml, nodeMap).IsOK()) {
        LxGenParameterArray &features = *nodeMap->GetParameters();
        for (uint32_t i = 0; i < features.GetCount(); ++i) {
            AskEverything(*features[i]);
        }
        features.Poll();
    }
    return 0;
}
