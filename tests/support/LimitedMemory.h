#pragma once

#include <sys/resource.h>

#if defined(__SANITIZE_ADDRESS__)
// Lets an allocation beyond 2 GiB fail as it does on a machine that has no more, instead of ending the program.
extern "C" __attribute__((used, visibility("default"))) inline const char *__asan_default_options()
{
    return "allocator_may_return_null=1:max_allocation_size_mb=2048";
}
#endif

/// While it lives, the program cannot have 2 GiB more memory than it has, whatever the machine would give.
class LimitedMemory
{
public:
    LimitedMemory()
    {
        getrlimit(RLIMIT_AS, &mBefore);
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)  // these need the address space for themselves
        rlimit limit = mBefore;
        limit.rlim_cur = rlim_t{2} << 30;
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
