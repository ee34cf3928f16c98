// Preloaded into test programs by script/soak: threads are held up, at random, right after they have handed something
// to another thread or process, as happens on a busy machine. What comes "at once" otherwise comes late then, and a
// test that takes it for granted fails in minutes instead of once in a thousand runs.
//
// HANDOVER_SEED (default 1) chooses the sequence. Programs whose name does not end in "Test" run undisturbed.

#include <dlfcn.h>
#include <errno.h>
#include <pthread.h>
#include <sys/socket.h>
#include <sys/uio.h>
#include <time.h>
#include <unistd.h>

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace
{

constexpr uint32_t LongestDelay = 3000;   // us
constexpr uint32_t LongestStart = 20000;  // us

uint32_t GetSeed()
{
    const char *text = getenv("HANDOVER_SEED");
    return text ? static_cast<uint32_t>(strtoul(text, nullptr, 10)) : 1;
}

bool IsTest()
{
    const size_t length = strlen(program_invocation_short_name);
    return length > 4 && strcmp(program_invocation_short_name + length - 4, "Test") == 0;
}

/// A number of the thread's own sequence.
uint32_t GetRandom()
{
    static std::atomic<uint32_t> threads{0};
    thread_local uint32_t state = (GetSeed() * 2654435761u + ++threads * 40503u) | 1;
    state ^= state << 13;
    state ^= state >> 17;
    state ^= state << 5;
    return state;
}

/// One call in aOneIn takes up to aLongest microseconds longer.
void Delay(uint32_t aOneIn, uint32_t aLongest)
{
    static const bool isTest = IsTest();
    if (!isTest || GetRandom() % aOneIn != 0) {
        return;
    }
    const int error = errno;
    const timespec delay = {0, static_cast<long>(GetRandom() % aLongest) * 1000};
    nanosleep(&delay, nullptr);
    errno = error;
}

template <typename Function>
Function *GetNext(const char *aName, const char *aVersion = nullptr)
{
    void *next = aVersion ? dlvsym(RTLD_NEXT, aName, aVersion) : nullptr;
    return reinterpret_cast<Function *>(next ? next : dlsym(RTLD_NEXT, aName));
}

struct ThreadStart
{
    void *(*mRun)(void *);
    void *mArgument;
};

void *RunLate(void *aStart)
{
    const std::unique_ptr<ThreadStart> start(static_cast<ThreadStart *>(aStart));
    Delay(3, LongestStart);
    return start->mRun(start->mArgument);
}

}  // namespace

/// A function of the C library that takes longer, one call in ONE_IN.
#define LX_HOLD_UP_AFTER(ONE_IN, RESULT, NAME, VERSION, PARAMETERS, ...)     \
    RESULT NAME PARAMETERS                                                   \
    {                                                                        \
        static const auto next = GetNext<RESULT PARAMETERS>(#NAME, VERSION); \
        const RESULT result = next(__VA_ARGS__);                             \
        Delay(ONE_IN, LongestDelay);                                         \
        return result;                                                       \
    }

#pragma GCC visibility push(default)  // what is hidden stands in for nothing
extern "C" {

LX_HOLD_UP_AFTER(4, ssize_t, write, nullptr, (int aFile, const void *aData, size_t aSize), aFile, aData, aSize)
LX_HOLD_UP_AFTER(4, ssize_t, writev, nullptr, (int aFile, const iovec *aParts, int aCount), aFile, aParts, aCount)
LX_HOLD_UP_AFTER(4, ssize_t, send, nullptr, (int aSocket, const void *aData, size_t aSize, int aFlags), aSocket, aData,
                 aSize, aFlags)
LX_HOLD_UP_AFTER(4, ssize_t, sendto, nullptr,
                 (int aSocket, const void *aData, size_t aSize, int aFlags, const sockaddr *aTo, socklen_t aLength),
                 aSocket, aData, aSize, aFlags, aTo, aLength)
LX_HOLD_UP_AFTER(4, ssize_t, sendmsg, nullptr, (int aSocket, const msghdr *aMessage, int aFlags), aSocket, aMessage,
                 aFlags)
// the first version that knows conditions of today's layout
LX_HOLD_UP_AFTER(4, int, pthread_cond_signal, "GLIBC_2.3.2", (pthread_cond_t * aCondition), aCondition)
LX_HOLD_UP_AFTER(4, int, pthread_cond_broadcast, "GLIBC_2.3.2", (pthread_cond_t * aCondition), aCondition)
LX_HOLD_UP_AFTER(16, int, pthread_mutex_unlock, nullptr, (pthread_mutex_t * aMutex), aMutex)

int pthread_create(pthread_t *aThread, const pthread_attr_t *aAttributes, void *(*aRun)(void *), void *aArgument)
{
    static const auto next = GetNext<decltype(pthread_create)>("pthread_create");
    auto start = std::make_unique<ThreadStart>(ThreadStart{aRun, aArgument});
    const int result = next(aThread, aAttributes, &RunLate, start.get());
    if (result == 0) {
        static_cast<void>(start.release());  // the thread's
    }
    return result;
}

}  // extern "C"
#pragma GCC visibility pop
