#pragma once

// A camera of a few registers, described by an XML that the test writes.

#include <atomic>
#include <memory>
#include <string>

#include "LxGenICam/LxGenBoolean.h"
#include "LxGenICam/LxGenCategory.h"
#include "LxGenICam/LxGenCommand.h"
#include "LxGenICam/LxGenEnum.h"
#include "LxGenICam/LxGenEventSink.h"
#include "LxGenICam/LxGenFloat.h"
#include "LxGenICam/LxGenInteger.h"
#include "LxGenICam/LxGenParameterArray.h"
#include "LxGenICam/LxGenParameterList.h"
#include "LxGenICam/LxGenRegister.h"
#include "LxGenICam/LxGenString.h"
#include "NodeMap/FaultPort.h"
#include "NodeMap/MemoryPort.h"
#include "NodeMap/NodeMap.h"

/// A whole register description around some nodes. The features are the names for the Root category, with blanks
/// between them.
std::string CameraXML(const std::string &aFeatures, const std::string &aNodes);
/// An element with a name and content.
std::string Node(const std::string &aKind, const std::string &aName, const std::string &aContent = "");
/// A big-endian 32-bit IntReg.
std::string Reg(const std::string &aName, unsigned aAddress, const std::string &aMode = "RW",
                const std::string &aMore = "");
/// An Integer on a node.
std::string Integer(const std::string &aName, const std::string &aTarget, const std::string &aMore = "");

/// Registers at 0x1000 to 0x1FFF, all zero at first, and the node map on them.
struct TestCamera
{
    TestCamera(const std::string &aFeatures, const std::string &aNodes);

    LxGenParameter &operator[](const std::string &aName) const;
    LxGenInteger &Int(const std::string &aName) const;
    LxGenFloat &Float(const std::string &aName) const;
    LxGenEnum &Enum(const std::string &aName) const;
    LxGenBoolean &Boolean(const std::string &aName) const;
    LxGenString &String(const std::string &aName) const;
    LxGenCommand &Command(const std::string &aName) const;
    LxGenRegister &Register(const std::string &aName) const;

    /// Values that must be readable; a failure is reported.
    int64_t Get(const std::string &aName) const;
    double GetFloat(const std::string &aName) const;

    std::shared_ptr<LxDetail::MemoryPort> mMemory = std::make_shared<LxDetail::MemoryPort>();
    std::shared_ptr<LxDetail::FaultPort> mPort = std::make_shared<LxDetail::FaultPort>(mMemory);
    std::unique_ptr<LxDetail::NodeMap> mNodeMap;
    LxGenParameterArray *mParameters = nullptr;
};

/// Counts what a port says about its state.
struct CountingStateSink : LxDetail::PortStateSink
{
    void OnPortStateChange() override { ++mChanges; }
    void OnPortStateNews() override { ++mNews; }

    int mChanges = 0;
    int mNews = 0;
};

/// Counts notifications.
struct CountingSink : LxGenEventSink
{
    void OnParameterUpdate(LxGenParameter *aParameter) override
    {
        mLast = aParameter;
        ++mCount;
    }
    int Take() { return mCount.exchange(0); }

    std::atomic<int> mCount{0};
    std::atomic<LxGenParameter *> mLast{nullptr};
};
