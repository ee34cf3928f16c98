#pragma once

#include <gtest/gtest.h>
#include <hwy/highway.h>

#include <cstdint>
#include <string>
#include <vector>

#include "LxCodec/ConversionKernels.h"
#include "LxCodec/ProcessorTargets.h"

/// The kinds of vector units that this machine has, scalar code last.
inline std::vector<int64_t> GetVectorTargets()
{
    std::vector<int64_t> targets;
    for (const int64_t target : {HWY_AVX3, HWY_AVX2, HWY_SSE4, HWY_NEON}) {
        if ((LxDetail::GetProcessorTargets() & target) != 0) {
            targets.push_back(target);
        }
    }
    targets.push_back(HWY_SCALAR);
    return targets;
}

/// The name of a parameterised test for one of them.
inline std::string NameOf(const testing::TestParamInfo<int64_t> &aInfo)
{
    return aInfo.param == HWY_SCALAR ? "Scalar" : hwy::TargetName(aInfo.param);
}

/// Lets conversion use the kernels for one kind only, as long as the object lives. Not while a conversion runs.
class OnVectorTarget
{
public:
    explicit OnVectorTarget(int64_t aTarget) { LxDetail::UseVectorTargets(aTarget); }
    ~OnVectorTarget() { LxDetail::UseVectorTargets(LxDetail::GetProcessorTargets()); }
    OnVectorTarget(const OnVectorTarget &) = delete;
    OnVectorTarget &operator=(const OnVectorTarget &) = delete;
};
