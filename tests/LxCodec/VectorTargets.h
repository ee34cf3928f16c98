#pragma once

#include <hwy/highway.h>

#include <cstdint>
#include <vector>

/// The kinds of vector units that this machine has, scalar code last.
inline std::vector<int64_t> GetVectorTargets()
{
    hwy::SetSupportedTargetsForTest(0);
    std::vector<int64_t> targets;
    for (const int64_t target : {HWY_AVX3, HWY_AVX2, HWY_SSE4, HWY_NEON}) {
        if ((hwy::SupportedTargets() & target) != 0) {
            targets.push_back(target);
        }
    }
    targets.push_back(HWY_SCALAR);
    return targets;
}

/// Lets conversion use the kernels for one kind only, as long as the object lives. Not while a conversion runs.
class OnVectorTarget
{
public:
    explicit OnVectorTarget(int64_t aTarget) { Set(aTarget); }
    ~OnVectorTarget() { Set(0); }
    OnVectorTarget(const OnVectorTarget &) = delete;
    OnVectorTarget &operator=(const OnVectorTarget &) = delete;

private:
    static void Set(int64_t aTarget)
    {
        hwy::SetSupportedTargetsForTest(aTarget);
        hwy::GetChosenTarget().Update(hwy::SupportedTargets());
    }
};
