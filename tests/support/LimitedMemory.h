#pragma once

#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>

#if defined(__SANITIZE_ADDRESS__)
// Lets an allocation beyond 2 GiB fail as it does on a machine that has no more, instead of ending the program.
extern "C" __attribute__((used, visibility("default"))) inline const char *__asan_default_options()
{
    return "allocator_may_return_null=1:max_allocation_size_mb=2048";
}
#endif

/// While it lives, the program cannot have 2 GiB more addresses than it has, whatever the machine would give. The
/// address sanitizer refuses single allocations beyond 2 GiB instead, the thread sanitizer nothing.
class LimitedMemory
{
public:
    LimitedMemory()
    {
        getrlimit(RLIMIT_AS, &mBefore);
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)  // these need the address space for themselves
        rlimit limit = mBefore;
        rlim_t pages = 0;
        std::ifstream("/proc/self/statm") >> pages;  // of addresses, also those without memory
        limit.rlim_cur =
            std::min(pages * static_cast<rlim_t>(sysconf(_SC_PAGESIZE)) + (rlim_t{2} << 30), mBefore.rlim_cur);
        setrlimit(RLIMIT_AS, &limit);
#endif
    }
    ~LimitedMemory()
    {
        setrlimit(RLIMIT_AS, &mBefore);
    }
    LimitedMemory(const LimitedMemory &) = delete;
    LimitedMemory &operator=(const LimitedMemory &) = delete;

private:
    rlimit mBefore = {};
};
