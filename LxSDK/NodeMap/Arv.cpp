#include "NodeMap/Arv.h"

#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>
#include <string>

namespace LxDetail
{

namespace
{

struct Library
{
    Library()
    {
        // never unloaded: GObject keeps what it knows of its types
        mHandle = dlopen("libaravis-0.8.so.0", RTLD_LAZY | RTLD_LOCAL);
        if (!mHandle) {
            const char *reason = dlerror();
            mReason = reason ? reason : "";
        }
    }

    void *mHandle;
    std::string mReason;
};

const Library &GetLibrary()
{
    static const Library library;
    return library;
}

}  // namespace

LxResult LoadArv()
{
    const Library &library = GetLibrary();
    return library.mHandle ? LxResult()
                           : LxResult(LxResultCode::Unavailable,
                                      "The library that talks to cameras cannot be loaded: " + library.mReason + '.');
}

void *FindArv(const char *aName)
{
    void *const library = GetLibrary().mHandle;
    void *const function = library ? dlsym(library, aName) : nullptr;
    if (!function) {
        std::fprintf(stderr, "LxSDK: libaravis has no %s\n", aName);
        std::abort();
    }
    return function;
}

}  // namespace LxDetail
