#include "LxCodec/Libav.h"

#include <dlfcn.h>

#include <optional>

namespace LxDetail
{

namespace
{

template <typename Function>
bool Find(void *aLibrary, const char *aName, Function &aFunction)
{
    aFunction = reinterpret_cast<Function>(dlsym(aLibrary, aName));
    return aFunction != nullptr;
}

std::optional<Libav> LoadLibraries()
{
    // never unloaded: threads of theirs may run to the end of the process
    void *const codec = dlopen("libavcodec.so." AV_STRINGIFY(LIBAVCODEC_VERSION_MAJOR), RTLD_NOW | RTLD_LOCAL);
    void *const scale = dlopen("libswscale.so." AV_STRINGIFY(LIBSWSCALE_VERSION_MAJOR), RTLD_NOW | RTLD_LOCAL);
    if (!codec || !scale) {
        return std::nullopt;
    }
    Libav libav;
    bool isComplete = true;
#define LX_FIND(name) isComplete = Find(codec, #name, libav.name) && isComplete;
    LX_LIBAVCODEC_FUNCTIONS(LX_FIND)
#undef LX_FIND
#define LX_FIND(name) isComplete = Find(scale, #name, libav.name) && isComplete;
    LX_LIBSWSCALE_FUNCTIONS(LX_FIND)
#undef LX_FIND
    return isComplete ? std::optional(libav) : std::nullopt;
}

}  // namespace

const Libav *Libav::Load()
{
    static const std::optional<Libav> libav = LoadLibraries();
    return libav ? &*libav : nullptr;
}

}  // namespace LxDetail
