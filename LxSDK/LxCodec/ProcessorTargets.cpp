#include "LxCodec/ProcessorTargets.h"

#include <hwy/detect_targets.h>

#if HWY_ARCH_X86
#include <cpuid.h>
#endif

namespace LxDetail
{

#if HWY_ARCH_X86
namespace
{

// clang 14 does not know it by name.
bool HasHalfFloats()
{
    unsigned a = 0, b = 0, c = 0, d = 0;
    return __get_cpuid(1, &a, &b, &c, &d) != 0 && (c & bit_F16C) != 0;
}

}  // namespace
#endif

int64_t GetProcessorTargets()
{
    int64_t targets = 0;
#if HWY_ARCH_X86
    // what the compiler may use for each target (hwy/ops/set_macros-inl.h), the system's part included
    __builtin_cpu_init();
    if (__builtin_cpu_supports("sse4.1") && __builtin_cpu_supports("sse4.2") && __builtin_cpu_supports("pclmul") &&
        __builtin_cpu_supports("aes"))
    {
        targets |= HWY_SSE4;
    }
    if (targets != 0 && __builtin_cpu_supports("avx2") && __builtin_cpu_supports("bmi") &&
        __builtin_cpu_supports("bmi2") && __builtin_cpu_supports("fma") && HasHalfFloats())
    {
        targets |= HWY_AVX2;
    }
    if ((targets & HWY_AVX2) != 0 && __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512vl") &&
        __builtin_cpu_supports("avx512dq") && __builtin_cpu_supports("avx512bw"))
    {
        targets |= HWY_AVX3;
    }
#elif HWY_ARCH_ARM_A64
    targets |= HWY_NEON;  // part of the architecture
#endif
    return targets;
}

}  // namespace LxDetail
