#pragma once

// Internal: a library notices when it is in a process twice. For ELF systems.

#include <dlfcn.h>
#include <link.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

namespace LxDetail
{

/// What a copy of a library looks for, and what it has found.
struct OtherCopies
{
    std::string mFile;  ///< How the names of its files begin.
    std::string mOwn;
    std::string mOther;

    bool IsCopy(const char *aPath) const
    {
        const char *const slash = std::strrchr(aPath, '/');
        return std::string_view(slash ? slash + 1 : aPath).starts_with(mFile);
    }
    static std::string Resolve(const char *aPath)
    {
        const std::unique_ptr<char, decltype(&std::free)> path(realpath(aPath, nullptr), &std::free);
        return path ? path.get() : aPath;
    }
    static int Look(dl_phdr_info *aInfo, size_t, void *aSearch)
    {
        auto &search = *static_cast<OtherCopies *>(aSearch);
        if (aInfo->dlpi_name && search.IsCopy(aInfo->dlpi_name)) {
            const std::string path = Resolve(aInfo->dlpi_name);
            search.mOther = path != search.mOwn ? path : search.mOther;
        }
        return 0;
    }
};

/// Says on the error output which other file of the same library is loaded, if there is one. Called while the library
/// is loaded, so that the one that comes second says it once.
/// @param aName of the library, without "lib".
/// @param aInside an address inside the calling copy.
inline void ReportOtherCopies(const std::string &aName, const void *aInside)
{
    OtherCopies search{"lib" + aName + ".so", {}, {}};
    Dl_info own = {};
    if (!dladdr(aInside, &own) || !own.dli_fname || !search.IsCopy(own.dli_fname)) {
        return;  // linked into a program
    }
    search.mOwn = OtherCopies::Resolve(own.dli_fname);
    dl_iterate_phdr(OtherCopies::Look, &search);
    if (!search.mOther.empty()) {
        std::fprintf(stderr,
                     "%s: this process has loaded two copies of the library, %s and %s. They share nothing: what comes "
                     "from one must not be given to the other. Load one only.\n",
                     aName.c_str(), search.mOther.c_str(), search.mOwn.c_str());
    }
}

}  // namespace LxDetail
