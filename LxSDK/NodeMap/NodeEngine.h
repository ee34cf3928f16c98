#pragma once

// Internal: libaravis' arithmetic of nodes, made safe.

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "NodeMap/ArvSupport.h"
#include "NodeMap/GenApiXML.h"
#include "NodeMap/IoDevice.h"
#include "NodeMap/NodeLock.h"

struct _ArvDevice;
struct _ArvGc;
struct _ArvGcNode;

namespace LxDetail
{

/// The GenICamError for a problem of a NodeDescription or NodeAccess.
LxResult Contradiction(const std::string &aProblem);

/// Reads and writes single nodes, and answers questions about their access. Everything goes through Run().
class NodeEngine
{
public:
    explicit NodeEngine(std::shared_ptr<RegisterPort> aPort);
    ~NodeEngine();
    NodeEngine(const NodeEngine &) = delete;
    NodeEngine &operator=(const NodeEngine &) = delete;

    /// To be called once before anything else; reads no register.
    LxResult Load(const std::string &aXML);

    const GenApiXML &GetXML() const { return mXML; }
    const NodeDescription &GetNode(NodeIndex aNode) const { return mXML.GetNodes()[aNode]; }
    RegisterPort &GetPort() const { return *mPort; }
    LxGenType GetType(NodeIndex aNode) const { return mTypes[aNode]; }

    /// Runs an operation, which uses the functions below, as one under the lock; or returns the port's state when that
    /// is not OK. Notifications that came up meanwhile are delivered afterwards, without the lock.
    template <class Operation>
    LxResult Run(const Operation &aOperation)
    {
        LxResult result;
        std::vector<NodeIndex> changed;
        {
            const NodeLock::Guard guard(mLock);
            if (!guard.IsHeld()) {
                return guard.GetState();
            }
            result = aOperation();
            if (guard.IsOutermost()) {
                changed.swap(mChanged);
            }
        }
        if (!changed.empty()) {
            mNotify(changed);
        }
        return result;
    }

    /// Who is told, without the lock, that nodes and what depends on them may have changed.
    void SetNotify(std::function<void(const std::vector<NodeIndex> &)> aNotify) { mNotify = std::move(aNotify); }
    /// Notes that the node, and those that its value is written to, changed. Within Run() only.
    void NoteChange(NodeIndex aNode);
    /// The nodes and all that depend on them.
    std::vector<bool> GetAffected(const std::vector<NodeIndex> &aNodes) const;
    /// Has them told that the nodes changed: at once, or at the end of the caller's Run().
    void Notify(const std::vector<NodeIndex> &aNodes);
    /// To be called after every change of the port's state.
    void UpdateState() { mLock.UpdateState(*mPort); }

    // within Run() only
    LxResult GetInteger(NodeIndex aNode, int64_t &aValue);
    LxResult SetInteger(NodeIndex aNode, int64_t aValue);
    LxResult GetIntegerMin(NodeIndex aNode, int64_t &aMin);
    LxResult GetIntegerMax(NodeIndex aNode, int64_t &aMax);
    LxResult GetIntegerIncrement(NodeIndex aNode, int64_t &aIncrement);
    LxResult GetFloat(NodeIndex aNode, double &aValue);
    LxResult SetFloat(NodeIndex aNode, double aValue);
    LxResult GetFloatMin(NodeIndex aNode, double &aMin);
    LxResult GetFloatMax(NodeIndex aNode, double &aMax);
    LxResult GetBoolean(NodeIndex aNode, bool &aValue);
    LxResult SetBoolean(NodeIndex aNode, bool aValue);
    LxResult GetString(NodeIndex aNode, std::string &aValue);
    LxResult SetString(NodeIndex aNode, const std::string &aValue);
    LxResult GetMaxLength(NodeIndex aNode, int64_t &aMaxLength);
    LxResult GetLength(NodeIndex aNode, int64_t &aLength);
    LxResult GetBytes(NodeIndex aNode, uint8_t *aData, int64_t aLength);
    LxResult SetBytes(NodeIndex aNode, const uint8_t *aData, int64_t aLength);
    LxResult Execute(NodeIndex aNode);
    LxResult IsDone(NodeIndex aNode, bool &aDone);

    LxResult IsImplemented(const NodeAccess &aAccess, bool &aImplemented);
    LxResult IsAvailable(const NodeAccess &aAccess, bool &aAvailable);
    LxResult IsReadable(const NodeAccess &aAccess, bool &aReadable);
    LxResult IsWritable(const NodeAccess &aAccess, bool &aWritable);
    /// OK, or NotReadable with the reason. Asks the device only when the XML makes the access depend on it.
    LxResult CheckReadable(NodeIndex aNode);
    /// OK, or NotWritable with the reason.
    LxResult CheckWritable(NodeIndex aNode);

private:
    template <class Operation>
    LxResult Call(NodeIndex aNode, const Operation &aOperation);
    LxResult CheckLengths(const NodeDescription &aNode);
    LxResult GetCondition(NodeIndex aNode, bool &aValue);
    LxResult AreAll(const std::vector<NodeIndex> &aNodes, bool aWanted, bool &aResult);
    template <class Value, class Engine>
    LxResult GetLimit(NodeIndex aNode, bool aIsMin, Value &aLimit, const Engine &aEngine);
    _ArvGcNode *GetEngineNode(NodeIndex aNode) const { return mNodes[aNode]; }
    LxResult Explain(const LxResult &aResult) const;

    const std::shared_ptr<RegisterPort> mPort;
    GenApiXML mXML;
    NodeLock mLock;  // guards the engine, mTarget and mChanged
    IoTarget mTarget;
    GObjectPtr<_ArvDevice> mDevice;
    GObjectPtr<_ArvGc> mGenICam;
    std::vector<_ArvGcNode *> mNodes;
    std::vector<LxGenType> mTypes;
    std::vector<NodeIndex> mChanged;
    std::function<void(const std::vector<NodeIndex> &)> mNotify;
};

}  // namespace LxDetail
