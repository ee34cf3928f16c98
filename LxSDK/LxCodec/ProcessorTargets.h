#pragma once

// Internal: what the processor can run, without Highway's library, which measures the processor's clock when it is
// loaded: 10 ms of every program's start.

#include <cstdint>

namespace LxDetail
{

/// Those of Highway's targets that VectorKernels.cpp is compiled for and that this machine runs, as bits.
int64_t GetProcessorTargets();

}  // namespace LxDetail
