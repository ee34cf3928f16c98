// Takes any text for a Kelvra camera file. One that is accepted has features that all work.

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

#include "AskEverything.h"
#include "LxCameraBridge/CameraFile.h"
#include "LxGenICam/LxGenParameterArray.h"
#include "NodeMap/MemoryPort.h"
#include "NodeMap/NodeMap.h"

using namespace LxDetail;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *aData, size_t aSize)
{
    const std::string text(reinterpret_cast<const char *>(aData), aSize);
    CameraFile file;
    const LxResult parsed = ParseCameraFile(text, "camera.yml", file);
    if (!parsed.IsOK()) {
        if (parsed.GetDescription().GetString().substr(0, 10) != "camera.yml") {
            std::abort();
        }
        return 0;
    }
    std::unique_ptr<NodeMap> nodes;
    auto port = std::make_shared<MemoryPort>();
    port->Map(0, 0x10000);
    const LxResult result = NodeMap::Create(port, MakeCameraFileXML(file), nodes);
    if (!result.IsOK()) {
        std::fprintf(stderr, "%s\n%s\n", result.GetDescription().GetAscii(), text.c_str());
        std::abort();
    }
    for (const CameraFileFeature &feature : file.mFeatures) {
        LxGenParameter *parameter = nodes->GetParameters()->Get(feature.mName);
        if (parameter == nullptr) {
            std::fprintf(stderr, "no feature %s\n%s\n", feature.mName.c_str(), text.c_str());
            std::abort();
        }
        AskEverything(*parameter);
    }
    return 0;
}
