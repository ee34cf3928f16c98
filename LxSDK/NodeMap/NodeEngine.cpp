#include "NodeMap/NodeEngine.h"

#include <algorithm>
#include <cctype>
#include <cfloat>
#include <cstdint>
#include <mutex>
#include <utility>

#include "NodeMap/Arv.h"

namespace LxDetail
{

LxResult Contradiction(const std::string &aProblem)
{
    return LxResult(LxResultCode::GenICamError, "The camera's XML description contradicts itself. " + aProblem + ".");
}

namespace
{

LxResult WrongKind(const NodeDescription &aNode)
{
    return Contradiction("Node \"" + aNode.mTexts.mName + "\" is not of the kind that is needed there");
}

LxGenType FindType(ArvGcNode *aNode)
{
    // the order matters: an enumeration is an integer and a string too, number registers are registers too
    return !aNode                         ? LxGenTypeUndefined
           : ARV_IS_GC_ENUMERATION(aNode) ? LxGenTypeEnum
           : ARV_IS_GC_BOOLEAN(aNode)     ? LxGenTypeBoolean
           : ARV_IS_GC_COMMAND(aNode)     ? LxGenTypeCommand
           : ARV_IS_GC_CATEGORY(aNode)    ? LxGenTypeUndefined
           : ARV_IS_GC_INTEGER(aNode)     ? LxGenTypeInteger
           : ARV_IS_GC_FLOAT(aNode)       ? LxGenTypeFloat
           : ARV_IS_GC_STRING(aNode)      ? LxGenTypeString
           : ARV_IS_GC_REGISTER(aNode)    ? LxGenTypeRegister
                                          : LxGenTypeUndefined;
}

// The engine has no limit for the node because the XML gives none.
bool IsUnbound(const GError *aError)
{
    return aError->domain == ARV_GC_ERROR && aError->code == ARV_GC_ERROR_PROPERTY_NOT_DEFINED;
}

}  // namespace

NodeEngine::NodeEngine(std::shared_ptr<RegisterPort> aPort) : mPort(std::move(aPort))
{
    mTarget.mPort = mPort.get();
}

NodeEngine::~NodeEngine() = default;

LxResult NodeEngine::Load(const std::string &aXML)
{
    if (LxResult result = LoadArv(); !result.IsOK()) {
        return result;
    }
    if (LxResult result = mXML.Parse(aXML); !result.IsOK()) {
        return result;
    }
    const std::string &xml = mXML.GetEngineXML();
    {
        std::lock_guard lock(ArvParserMutex());
        mDevice = MakeIoDevice(&mTarget);
        mGenICam.reset(arv_gc_new(mDevice.get(), xml.data(), xml.size()));
    }
    if (!mGenICam) {
        return LxResult(LxResultCode::GenICamError, "The camera's XML description cannot be interpreted.");
    }
    arv_gc_set_register_cache_policy(mGenICam.get(), ARV_REGISTER_CACHE_POLICY_DISABLE);
    arv_gc_set_range_check_policy(mGenICam.get(), ARV_RANGE_CHECK_POLICY_DISABLE);
    arv_gc_set_access_check_policy(mGenICam.get(), ARV_ACCESS_CHECK_POLICY_DISABLE);
    const size_t count = mXML.GetNodes().size();
    mNodes.resize(count);
    mTypes.resize(count);
    for (NodeIndex i = 0; i < count; ++i) {
        mNodes[i] = arv_gc_get_node(mGenICam.get(), GenApiXML::GetEngineName(i).c_str());
        mTypes[i] = FindType(mNodes[i]);
    }
    return LxResult();
}

void NodeEngine::NoteChange(NodeIndex aNode)
{
    // a chain without a circle, or writing had failed
    for (NodeIndex node = aNode; node != NoNode; node = GetNode(node).mTarget) {
        mChanged.push_back(node);
        const auto &copies = GetNode(node).mCopies;
        mChanged.insert(mChanged.end(), copies.begin(), copies.end());
    }
}

void NodeEngine::Notify(const std::vector<NodeIndex> &aNodes)
{
    if (mLock.IsHeldByCaller()) {
        mChanged.insert(mChanged.end(), aNodes.begin(), aNodes.end());
    }
    else {
        mNotify(aNodes);
    }
}

std::vector<bool> NodeEngine::GetAffected(const std::vector<NodeIndex> &aNodes) const
{
    std::vector<bool> affected(mXML.GetNodes().size());
    std::vector<NodeIndex> open;
    const auto add = [&](NodeIndex aNode) {
        if (!affected[aNode]) {
            affected[aNode] = true;
            open.push_back(aNode);
        }
    };
    std::for_each(aNodes.begin(), aNodes.end(), add);
    while (!open.empty()) {
        const NodeIndex node = open.back();
        open.pop_back();
        const auto &dependents = GetNode(node).mDependents;
        std::for_each(dependents.begin(), dependents.end(), add);
    }
    return affected;
}

// One call of the engine, which must be given a node without problems.
template <class Operation>
LxResult NodeEngine::Call(NodeIndex aNode, const Operation &aOperation)
{
    const NodeDescription &node = GetNode(aNode);
    if (!node.mValueProblem.empty()) {
        return Contradiction(node.mValueProblem);
    }
    if (!node.mLengthRefs.empty()) {
        if (LxResult result = CheckLengths(node); !result.IsOK()) {
            return result;
        }
    }
    LxResult portError;
    std::swap(portError, mTarget.mError);  // an access may end up here again, through a hook of a simulated device
    ArvError error;
    aOperation(error.Out());
    std::swap(portError, mTarget.mError);
    // the port's own word first: the engine changes some errors and loses others
    if (!portError.IsOK()) {
        return portError;
    }
    return error.IsSet() ? Explain(error.ToResult()) : LxResult();
}

LxResult NodeEngine::CheckLengths(const NodeDescription &aNode)
{
    for (const NodeIndex index : aNode.mLengthRefs) {
        int64_t length = 0;
        if (LxResult result = GetInteger(index, length); !result.IsOK()) {
            return result;
        }
        if (length < 1 || length > MaxRegisterLength) {
            return LxResult(LxResultCode::GenICamError, "The length of the register, " + std::to_string(length) +
                                                            " bytes, is not between 1 byte and 16 MiB.");
        }
    }
    return LxResult();
}

// The engine knows its nodes by number; people do not.
LxResult NodeEngine::Explain(const LxResult &aResult) const
{
    const std::string text = aResult.GetDescription().GetString();
    std::string out;
    for (size_t i = 0; i < text.size();) {
        size_t end = i + 1;
        while (end < text.size() && std::isdigit(static_cast<unsigned char>(text[end]))) {
            ++end;
        }
        const bool starts = text[i] == 'N' && (i == 0 || !std::isalnum(static_cast<unsigned char>(text[i - 1])));
        const bool ends = end == text.size() || !std::isalnum(static_cast<unsigned char>(text[end]));
        if (starts && ends && end > i + 1 && end - i < 10) {
            const unsigned long index = std::stoul(text.substr(i + 1, end - i - 1));
            if (index < mXML.GetNodes().size()) {
                out += GetNode(static_cast<NodeIndex>(index)).mTexts.mName;
                i = end;
                continue;
            }
        }
        out += text[i++];
    }
    return LxResult(aResult.GetCode(), out);
}

LxResult NodeEngine::GetInteger(NodeIndex aNode, int64_t &aValue)
{
    ArvGcNode *node = GetEngineNode(aNode);
    if (!ARV_IS_GC_INTEGER(node)) {
        return WrongKind(GetNode(aNode));
    }
    int64_t value = 0;
    LxResult result =
        Call(aNode, [&](GError **aError) { value = arv_gc_integer_get_value(ARV_GC_INTEGER(node), aError); });
    if (result.IsOK()) {
        aValue = value;
    }
    return result;
}

LxResult NodeEngine::SetInteger(NodeIndex aNode, int64_t aValue)
{
    ArvGcNode *node = GetEngineNode(aNode);
    if (!ARV_IS_GC_INTEGER(node)) {
        return WrongKind(GetNode(aNode));
    }
    LxResult result =
        Call(aNode, [&](GError **aError) { arv_gc_integer_set_value(ARV_GC_INTEGER(node), aValue, aError); });
    for (const NodeIndex copy : GetNode(aNode).mCopies) {
        if (!result.IsOK()) {
            break;
        }
        result = SetInteger(copy, aValue);
    }
    return result;
}

// A limit of the node itself, narrowed by that of the node behind it.
template <class Value, class Engine>
LxResult NodeEngine::GetLimit(NodeIndex aNode, bool aIsMin, Value &aLimit, const Engine &aEngine)
{
    const NodeDescription &description = GetNode(aNode);
    if (!description.mLimitProblem.empty()) {
        return Contradiction(description.mLimitProblem);
    }
    Value limit = aLimit;
    bool unbound = false;
    LxResult result = Call(aNode, [&](GError **aError) {
        const Value value = aEngine(GetEngineNode(aNode), aError);
        unbound = *aError && IsUnbound(*aError);
        limit = *aError ? limit : value;
    });
    if (unbound) {
        result = LxResult();
    }
    const bool hasOwn = aIsMin ? description.mHasMin : description.mHasMax;
    if (result.IsOK() && hasOwn && description.mTarget != NoNode && description.mKind == NodeKind::Value) {
        Value behind = aLimit;
        // a limit behind that cannot be told does not narrow
        const LxResult narrowed = GetLimit(description.mTarget, aIsMin, behind, aEngine);
        if (narrowed.IsOK()) {
            limit = aIsMin ? std::max(limit, behind) : std::min(limit, behind);
        }
        else if (!mPort->GetState().IsOK() || narrowed == LxResultCode::Timeout) {
            result = narrowed;
        }
    }
    if (result.IsOK()) {
        aLimit = limit;
    }
    return result;
}

LxResult NodeEngine::GetIntegerMin(NodeIndex aNode, int64_t &aMin)
{
    aMin = INT64_MIN;
    return GetLimit(aNode, true, aMin, [](ArvGcNode *aEngineNode, GError **aError) -> int64_t {
        return ARV_IS_GC_INTEGER(aEngineNode) ? arv_gc_integer_get_min(ARV_GC_INTEGER(aEngineNode), aError) : INT64_MIN;
    });
}

LxResult NodeEngine::GetIntegerMax(NodeIndex aNode, int64_t &aMax)
{
    aMax = INT64_MAX;
    return GetLimit(aNode, false, aMax, [](ArvGcNode *aEngineNode, GError **aError) -> int64_t {
        return ARV_IS_GC_INTEGER(aEngineNode) ? arv_gc_integer_get_max(ARV_GC_INTEGER(aEngineNode), aError) : INT64_MAX;
    });
}

LxResult NodeEngine::GetIntegerIncrement(NodeIndex aNode, int64_t &aIncrement)
{
    aIncrement = 1;
    if (const std::string &problem = GetNode(aNode).mLimitProblem; !problem.empty()) {
        return Contradiction(problem);
    }
    bool unbound = false;
    LxResult result = Call(aNode, [&](GError **aError) {
        const int64_t increment = arv_gc_integer_get_inc(ARV_GC_INTEGER(GetEngineNode(aNode)), aError);
        unbound = *aError && IsUnbound(*aError);
        aIncrement = *aError ? 1 : std::max<int64_t>(1, increment);
    });
    return unbound ? LxResult() : result;
}

LxResult NodeEngine::GetFloat(NodeIndex aNode, double &aValue)
{
    ArvGcNode *node = GetEngineNode(aNode);
    if (!ARV_IS_GC_FLOAT(node)) {
        return WrongKind(GetNode(aNode));
    }
    double value = 0;
    LxResult result = Call(aNode, [&](GError **aError) { value = arv_gc_float_get_value(ARV_GC_FLOAT(node), aError); });
    if (result.IsOK()) {
        aValue = value;
    }
    return result;
}

LxResult NodeEngine::SetFloat(NodeIndex aNode, double aValue)
{
    ArvGcNode *node = GetEngineNode(aNode);
    return Call(aNode, [&](GError **aError) { arv_gc_float_set_value(ARV_GC_FLOAT(node), aValue, aError); });
}

LxResult NodeEngine::GetFloatMin(NodeIndex aNode, double &aMin)
{
    aMin = -DBL_MAX;
    return GetLimit(aNode, true, aMin, [](ArvGcNode *aEngineNode, GError **aError) {
        return ARV_IS_GC_FLOAT(aEngineNode)     ? arv_gc_float_get_min(ARV_GC_FLOAT(aEngineNode), aError)
               : ARV_IS_GC_INTEGER(aEngineNode) ? arv_gc_integer_get_min(ARV_GC_INTEGER(aEngineNode), aError)
                                                : -DBL_MAX;
    });
}

LxResult NodeEngine::GetFloatMax(NodeIndex aNode, double &aMax)
{
    aMax = DBL_MAX;
    return GetLimit(aNode, false, aMax, [](ArvGcNode *aEngineNode, GError **aError) {
        return ARV_IS_GC_FLOAT(aEngineNode)     ? arv_gc_float_get_max(ARV_GC_FLOAT(aEngineNode), aError)
               : ARV_IS_GC_INTEGER(aEngineNode) ? arv_gc_integer_get_max(ARV_GC_INTEGER(aEngineNode), aError)
                                                : DBL_MAX;
    });
}

LxResult NodeEngine::GetBoolean(NodeIndex aNode, bool &aValue)
{
    ArvGcNode *node = GetEngineNode(aNode);
    gboolean value = FALSE;
    LxResult result =
        Call(aNode, [&](GError **aError) { value = arv_gc_boolean_get_value(ARV_GC_BOOLEAN(node), aError); });
    if (result.IsOK()) {
        aValue = value != FALSE;
    }
    return result;
}

LxResult NodeEngine::SetBoolean(NodeIndex aNode, bool aValue)
{
    ArvGcNode *node = GetEngineNode(aNode);
    return Call(aNode, [&](GError **aError) { arv_gc_boolean_set_value(ARV_GC_BOOLEAN(node), aValue, aError); });
}

LxResult NodeEngine::GetString(NodeIndex aNode, std::string &aValue)
{
    ArvGcNode *node = GetEngineNode(aNode);
    return Call(aNode, [&](GError **aError) {
        const char *text = arv_gc_string_get_value(ARV_GC_STRING(node), aError);
        if (!*aError) {
            aValue = text ? text : "";
        }
    });
}

LxResult NodeEngine::SetString(NodeIndex aNode, const std::string &aValue)
{
    ArvGcNode *node = GetEngineNode(aNode);
    return Call(aNode, [&](GError **aError) { arv_gc_string_set_value(ARV_GC_STRING(node), aValue.c_str(), aError); });
}

LxResult NodeEngine::GetMaxLength(NodeIndex aNode, int64_t &aMaxLength)
{
    ArvGcNode *node = GetEngineNode(aNode);
    return Call(aNode, [&](GError **aError) {
        const gint64 length = arv_gc_string_get_max_length(ARV_GC_STRING(node), aError);
        if (!*aError) {
            aMaxLength = length;
        }
    });
}

LxResult NodeEngine::GetLength(NodeIndex aNode, int64_t &aLength)
{
    ArvGcNode *node = GetEngineNode(aNode);
    return Call(aNode, [&](GError **aError) {
        const guint64 length = arv_gc_register_get_length(ARV_GC_REGISTER(node), aError);
        if (!*aError) {
            aLength = static_cast<int64_t>(length);
        }
    });
}

LxResult NodeEngine::GetBytes(NodeIndex aNode, uint8_t *aData, int64_t aLength)
{
    ArvGcNode *node = GetEngineNode(aNode);
    return Call(aNode, [&](GError **aError) {
        arv_gc_register_get(ARV_GC_REGISTER(node), aData, static_cast<guint64>(aLength), aError);
    });
}

LxResult NodeEngine::SetBytes(NodeIndex aNode, const uint8_t *aData, int64_t aLength)
{
    ArvGcNode *node = GetEngineNode(aNode);
    return Call(aNode, [&](GError **aError) {
        arv_gc_register_set(ARV_GC_REGISTER(node), aData, static_cast<guint64>(aLength), aError);
    });
}

LxResult NodeEngine::Execute(NodeIndex aNode)
{
    ArvGcNode *node = GetEngineNode(aNode);
    return Call(aNode, [&](GError **aError) { arv_gc_command_execute(ARV_GC_COMMAND(node), aError); });
}

LxResult NodeEngine::IsDone(NodeIndex aNode, bool &aDone)
{
    const NodeDescription &node = GetNode(aNode);
    aDone = true;
    if (node.mTarget == NoNode) {
        return node.mValueProblem.empty() ? LxResult() : Contradiction(node.mValueProblem);
    }
    bool readable = false;
    LxResult result = IsReadable(GetNode(node.mTarget).mAccess, readable);
    if (!result.IsOK() || !readable) {
        return result;
    }
    int64_t commandValue = node.mCommandValue;
    if (node.mCommandValueNode != NoNode) {
        result = GetInteger(node.mCommandValueNode, commandValue);
    }
    int64_t value = 0;
    if (result.IsOK()) {
        result = GetInteger(node.mTarget, value);
    }
    if (result.IsOK()) {
        aDone = value != commandValue;
    }
    return result;
}

}  // namespace LxDetail
