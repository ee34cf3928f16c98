// The part of GenApiXML that follows references: circles, value chains, access and limits.

#include <algorithm>

#include "NodeMap/GenApiXML.h"

namespace LxDetail
{

namespace
{

constexpr uint32_t MaxDepth = 200;      // nodes read one within the other
constexpr uint64_t MaxReads = 100'000;  // node reads for one value
constexpr size_t MaxProblem = 500;      // bytes of a reason

enum class Visit : uint8_t
{
    New,
    Open,
    Done,
};

std::string Describe(const NodeDescription &aNode, const std::string &aProblem)
{
    const std::string text = "Node \"" + aNode.mTexts.mName + "\": " + aProblem;
    return text.size() > MaxProblem ? text.substr(0, MaxProblem) : text;
}

void AddAll(std::vector<NodeIndex> &aList, const std::vector<NodeIndex> &aMore)
{
    for (const NodeIndex index : aMore) {
        if (std::find(aList.begin(), aList.end(), index) == aList.end()) {
            aList.push_back(index);
        }
    }
}

}  // namespace

void GenApiXML::Analyse()
{
    AnalyseValues();
    for (NodeDescription &node : mNodes) {
        AnalyseLimits(node);
        AnalyseAccess(node);
        for (EnumEntryDescription &entry : node.mEntries) {
            for (const auto *list : {&entry.mAccess.mImplemented, &entry.mAccess.mAvailable}) {
                for (const NodeIndex index : *list) {
                    if (entry.mAccess.mProblem.empty()) {
                        entry.mAccess.mProblem = mNodes[index].mValueProblem;
                    }
                }
            }
        }
        auto &dependents = node.mDependents;
        std::sort(dependents.begin(), dependents.end());
        dependents.erase(std::unique(dependents.begin(), dependents.end()), dependents.end());
    }
}

// Depth first over what reading a value reads. The engine follows these references without any bound, so a node from
// which a circle, a dangling reference or an unreasonable number of reads can be reached must never be given to it.
void GenApiXML::AnalyseValues()
{
    struct Cost
    {
        Visit mVisit = Visit::New;
        uint32_t mDepth = 0;
        uint64_t mReads = 1;
    };
    std::vector<Cost> costs(mNodes.size());
    struct Step
    {
        NodeIndex mNode;
        size_t mNext;
    };
    std::vector<Step> steps;
    for (NodeIndex start = 0; start < mNodes.size(); ++start) {
        if (costs[start].mVisit != Visit::New) {
            continue;
        }
        costs[start].mVisit = Visit::Open;
        steps.push_back({start, 0});
        if (!mNodes[start].mValueProblem.empty()) {
            mNodes[start].mValueProblem = Describe(mNodes[start], mNodes[start].mValueProblem);
        }
        while (!steps.empty()) {
            const NodeIndex index = steps.back().mNode;
            NodeDescription &node = mNodes[index];
            Cost &cost = costs[index];
            if (steps.back().mNext < node.mValueRefs.size()) {
                const NodeIndex child = node.mValueRefs[steps.back().mNext];
                if (costs[child].mVisit == Visit::New) {
                    costs[child].mVisit = Visit::Open;
                    if (!mNodes[child].mValueProblem.empty()) {
                        mNodes[child].mValueProblem = Describe(mNodes[child], mNodes[child].mValueProblem);
                    }
                    steps.push_back({child, 0});
                    continue;
                }
                ++steps.back().mNext;
                if (costs[child].mVisit == Visit::Open) {
                    if (node.mValueProblem.empty()) {
                        node.mValueProblem = Describe(
                            node, "its value depends on itself through \"" + mNodes[child].mTexts.mName + "\"");
                    }
                    continue;
                }
                if (node.mValueProblem.empty()) {
                    node.mValueProblem = mNodes[child].mValueProblem;
                }
                cost.mDepth = std::max(cost.mDepth, costs[child].mDepth + 1);
                cost.mReads = std::min(cost.mReads + costs[child].mReads, MaxReads + 1);
                AddAll(node.mLengthRefs, mNodes[child].mLengthRefs);
                continue;
            }
            if (node.mValueProblem.empty() && (cost.mDepth > MaxDepth || cost.mReads > MaxReads)) {
                node.mValueProblem = Describe(node, "its value depends on too many others");
            }
            cost.mVisit = Visit::Done;
            steps.pop_back();
        }
    }
}

// A limit is that of the node or, where it has none, of the node behind it.
void GenApiXML::AnalyseLimits(NodeDescription &aNode)
{
    if (aNode.mLimitProblem.empty()) {
        aNode.mLimitProblem = aNode.mValueProblem;
    }
    else {
        aNode.mLimitProblem = Describe(aNode, aNode.mLimitProblem);
    }
    std::vector<const NodeDescription *> open = {&aNode};
    for (size_t i = 0; i < open.size() && aNode.mLimitProblem.empty(); ++i) {
        for (const NodeIndex index : open[i]->mLimitRefs) {
            if (aNode.mLimitProblem.empty()) {
                aNode.mLimitProblem = mNodes[index].mValueProblem;
            }
        }
        for (const NodeIndex index : open[i]->mTargets) {
            if (std::find(open.begin(), open.end(), &mNodes[index]) == open.end()) {
                open.push_back(&mNodes[index]);
            }
        }
    }
    // unit and representation of the node behind hold for the number in front of it, too
    for (NodeIndex next = aNode.mTarget; aNode.mValueProblem.empty() && next != NoNode; next = mNodes[next].mTarget) {
        if (mNodes[next].mKind == NodeKind::Converter) {
            break;
        }
        if (aNode.mUnit.empty()) {
            aNode.mUnit = mNodes[next].mUnit;
        }
        if (aNode.mRepresentation < 0) {
            aNode.mRepresentation = mNodes[next].mRepresentation;
        }
    }
}

// GenApi combines the access of a node with the complete result of the node behind pValue: readable (writable) is only
// what both are, implemented and available only what both are, and the lock of either takes writing away.
void GenApiXML::AnalyseAccess(NodeDescription &aNode)
{
    aNode.mAccess = aNode.mOwnAccess;
    NodeAccess &access = aNode.mAccess;
    if (!access.mProblem.empty()) {
        access.mProblem = Describe(aNode, access.mProblem);
    }
    uint32_t depth = 0;
    for (NodeIndex next = aNode.mTarget; next != NoNode; next = mNodes[next].mTarget) {
        if (++depth > MaxDepth) {
            access.mProblem = aNode.mValueProblem;
            return;
        }
        const NodeAccess &behind = mNodes[next].mOwnAccess;
        AddAll(access.mImplemented, behind.mImplemented);
        AddAll(access.mAvailable, behind.mAvailable);
        AddAll(access.mLocked, behind.mLocked);
        access.mReadable = access.mReadable && behind.mReadable;
        access.mWritable = access.mWritable && behind.mWritable;
        if (access.mProblem.empty() && !behind.mProblem.empty()) {
            access.mProblem = Describe(mNodes[next], behind.mProblem);
        }
    }
    for (const auto *list : {&access.mImplemented, &access.mAvailable, &access.mLocked}) {
        for (const NodeIndex index : *list) {
            if (access.mProblem.empty()) {
                access.mProblem = mNodes[index].mValueProblem;
            }
        }
    }
}

}  // namespace LxDetail
