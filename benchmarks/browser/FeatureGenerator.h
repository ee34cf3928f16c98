#pragma once

#include <cstdint>
#include <memory>

#include "NodeMap/FaultPort.h"
#include "NodeMap/MemoryPort.h"
#include "NodeMap/NodeMap.h"

/// A camera of as many features as asked for, of all kinds, fifty to a category, each on a register of its own.
struct GeneratedCamera
{
    explicit GeneratedCamera(int aFeatures);

    /// Gives every register another value; each is allowed where the number is below 1000.
    void SetValues(uint32_t aNumber) const;

    LxGenParameterArray *Parameters() const { return mNodeMap->GetParameters(); }

    std::shared_ptr<LxDetail::MemoryPort> mMemory = std::make_shared<LxDetail::MemoryPort>();
    std::shared_ptr<LxDetail::FaultPort> mPort = std::make_shared<LxDetail::FaultPort>(mMemory);
    std::unique_ptr<LxDetail::NodeMap> mNodeMap;
    int mFeatures;
};
