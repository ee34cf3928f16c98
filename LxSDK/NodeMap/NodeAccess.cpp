// The part of NodeEngine that answers questions about access (GenApi standard, access modes).

#include <string>

#include "NodeMap/Arv.h"
#include "NodeMap/NodeEngine.h"

namespace LxDetail
{

// Whether a node's value is not 0.
LxResult NodeEngine::GetCondition(NodeIndex aNode, bool &aValue)
{
    ArvGcNode *node = GetEngineNode(aNode);
    if (ARV_IS_GC_BOOLEAN(node)) {
        return GetBoolean(aNode, aValue);
    }
    if (ARV_IS_GC_FLOAT(node) && !ARV_IS_GC_INTEGER(node)) {
        double value = 0;
        LxResult result = GetFloat(aNode, value);
        aValue = value != 0;
        return result;
    }
    int64_t value = 0;
    LxResult result = GetInteger(aNode, value);
    aValue = value != 0;
    return result;
}

LxResult NodeEngine::AreAll(const std::vector<NodeIndex> &aNodes, bool aWanted, bool &aResult)
{
    for (const NodeIndex node : aNodes) {
        bool value = false;
        LxResult result = GetCondition(node, value);
        if (!result.IsOK()) {
            return result;
        }
        if (value != aWanted) {
            aResult = false;
            return LxResult();
        }
    }
    aResult = true;
    return LxResult();
}

LxResult NodeEngine::IsImplemented(const NodeAccess &aAccess, bool &aImplemented)
{
    aImplemented = false;
    return aAccess.mProblem.empty() ? AreAll(aAccess.mImplemented, true, aImplemented)
                                    : Contradiction(aAccess.mProblem);
}

LxResult NodeEngine::IsAvailable(const NodeAccess &aAccess, bool &aAvailable)
{
    aAvailable = false;
    bool implemented = false;
    LxResult result = IsImplemented(aAccess, implemented);
    if (!result.IsOK() || !implemented || (!aAccess.mReadable && !aAccess.mWritable)) {
        return result;
    }
    result = AreAll(aAccess.mAvailable, true, aAvailable);
    if (result.IsOK() && aAvailable && !aAccess.mReadable) {
        // what can only be written cannot be used at all while it is locked
        return AreAll(aAccess.mLocked, false, aAvailable);
    }
    return result;
}

LxResult NodeEngine::IsReadable(const NodeAccess &aAccess, bool &aReadable)
{
    LxResult result = IsAvailable(aAccess, aReadable);
    aReadable = aReadable && aAccess.mReadable;
    return result;
}

LxResult NodeEngine::IsWritable(const NodeAccess &aAccess, bool &aWritable)
{
    LxResult result = IsAvailable(aAccess, aWritable);
    aWritable = aWritable && aAccess.mWritable && mPort->IsWritable();
    // of what can only be written the lock has been asked
    return result.IsOK() && aWritable && aAccess.mReadable ? AreAll(aAccess.mLocked, false, aWritable) : result;
}

LxResult NodeEngine::CheckReadable(NodeIndex aNode)
{
    const NodeAccess &access = GetNode(aNode).mAccess;
    if (!access.mReadable) {
        return LxResult(LxResultCode::NotReadable, "The feature can only be written.");
    }
    if (access.mImplemented.empty() && access.mAvailable.empty() && access.mProblem.empty()) {
        return LxResult();
    }
    bool readable = false;
    LxResult result = IsReadable(access, readable);
    return !result.IsOK() || readable
               ? result
               : LxResult(LxResultCode::NotReadable, "The feature is not available at the moment.");
}

LxResult NodeEngine::CheckWritable(NodeIndex aNode)
{
    const NodeAccess &access = GetNode(aNode).mAccess;
    bool available = false;
    if (LxResult result = IsAvailable(access, available); !result.IsOK()) {
        return result;
    }
    std::string reason;
    bool locked = false;
    if (!access.mWritable) {
        reason = "The feature can only be read.";
    }
    else if (!mPort->IsWritable()) {
        reason = "The feature cannot be written because the application does not control the device.";
    }
    else if (!available) {
        reason = "The feature is not available at the moment.";
    }
    else if (!access.mLocked.empty()) {
        bool unlocked = false;
        if (LxResult result = AreAll(access.mLocked, false, unlocked); !result.IsOK()) {
            return result;
        }
        locked = !unlocked;
    }
    if (locked) {
        reason = "The feature is locked at the moment.";
    }
    return reason.empty() ? LxResult() : LxResult(LxResultCode::NotWritable, reason);
}

}  // namespace LxDetail
