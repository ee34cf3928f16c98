// Linked into the tests that draw by OpenGL where leaks are looked for. Mesa unloads its driver before that happens,
// and what a library that has gone never freed can no longer be told by its name, as the list of known leaks does.
#include <dlfcn.h>
#include <glob.h>

namespace
{

[[gnu::constructor]] void KeepOpenGLDriver()
{
    glob_t drivers = {};
    if (glob("/usr/lib/*/dri/swrast_dri.so", 0, nullptr, &drivers) == 0) {
        for (size_t i = 0; i < drivers.gl_pathc; ++i) {
            dlopen(drivers.gl_pathv[i], RTLD_LAZY | RTLD_LOCAL | RTLD_NODELETE);
        }
    }
    globfree(&drivers);
}

}  // namespace
