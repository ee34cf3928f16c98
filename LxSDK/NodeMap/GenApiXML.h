#pragma once

// Internal: what a GenICam XML says, read once.

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "LxBase/LxResult.h"
#include "LxGenICam/LxGenTypes.h"

namespace LxDetail
{

enum class NodeKind
{
    Category,
    Register,    // IntReg, MaskedIntReg, FloatReg, StringReg, Register, an entry of a StructReg
    SwissKnife,  // IntSwissKnife too
    Converter,   // IntConverter too
    Command,
    Value,  // Integer, Float, Boolean, Enumeration, String: a value of its own, or that of another node
    Port,
};

/// The index of a node in the description.
using NodeIndex = uint32_t;
constexpr NodeIndex NoNode = 0xFFFFFFFF;
/// In bytes; the engine takes memory for any length without asking.
constexpr int64_t MaxRegisterLength = 16 << 20;

/// The attributes that a user interface shows.
struct NodeTexts
{
    std::string mName;
    std::string mDisplayName;
    std::string mToolTip;
    std::string mDescription;
    LxGenVisibility mVisibility = LxGenVisibilityBeginner;
    LxGenNameSpace mNameSpace = LxGenNameSpaceCustom;
};

/// The nodes that decide about access; what a node has itself, or with its whole value chain.
struct NodeAccess
{
    std::vector<NodeIndex> mImplemented;  // all must not be 0
    std::vector<NodeIndex> mAvailable;    // all must not be 0
    std::vector<NodeIndex> mLocked;       // all must be 0 for writing
    bool mReadable = true;
    bool mWritable = true;
    std::string mProblem;  // why this cannot be told; empty: it can
};

struct EnumEntryDescription
{
    NodeTexts mTexts;
    int64_t mValue = 0;
    NodeAccess mAccess;
};

struct NodeDescription
{
    NodeTexts mTexts;
    NodeKind mKind = NodeKind::Value;
    std::string mUnit;
    int mRepresentation = -1;  // an LxGenRepresentation, -1: none is given
    bool mHasMin = false;
    bool mHasMax = false;
    int64_t mCommandValue = 0;
    NodeIndex mCommandValueNode = NoNode;
    NodeIndex mTarget = NoNode;          // pValue
    std::vector<NodeIndex> mCopies;      // pValueCopy
    std::vector<NodeIndex> mValueRefs;   // what is read to read or write the value
    std::vector<NodeIndex> mTargets;     // pValue, pValueIndexed, pValueDefault
    std::vector<NodeIndex> mLimitRefs;   // pMin, pMax, pInc
    std::vector<NodeIndex> mLengthRefs;  // pLength; after the analysis those of all nodes that are read
    std::vector<NodeIndex> mDependents;  // nodes that name this one in any way that makes them change with it
    std::vector<NodeIndex> mSelected;
    std::vector<NodeIndex> mFeatures;  // of a category
    std::vector<EnumEntryDescription> mEntries;
    NodeAccess mOwnAccess;
    NodeAccess mAccess;         // with the value chain
    std::string mValueProblem;  // why the value cannot be read: dangling or circular references; empty: it can
    std::string mLimitProblem;
};

/// A GenICam XML, checked and taken apart (GenApi standard, schema 1.0 and 1.1).
class GenApiXML
{
public:
    /// A node at a place in the tree of categories ("Root\ImageFormatControl").
    struct Place
    {
        NodeIndex mNode;
        std::string mPath;
    };

    /// GenICamError, with the reason, when the text is no XML, no register description or has no Root category.
    LxResult Parse(const std::string &aXML);

    const std::vector<NodeDescription> &GetNodes() const { return mNodes; }
    NodeIndex Find(const std::string &aName) const;
    /// The categories that Root reaches, Root first, with their own paths.
    const std::vector<Place> &GetCategories() const { return mCategories; }
    /// The nodes that they list, in document order, each once, with the paths of their categories.
    const std::vector<Place> &GetFeatures() const { return mFeatures; }
    /// What the node engine needs of the XML and nothing else, with nodes named by GetEngineName(). The engine has
    /// no defence against malformed text, name clashes, circular or dangling references; none is left in it, except
    /// in nodes that have a value problem.
    const std::string &GetEngineXML() const { return mEngineXML; }
    static std::string GetEngineName(NodeIndex aNode) { return std::string("N").append(std::to_string(aNode)); }

private:
    class Reader;
    void Analyse();
    void AnalyseValues();
    void AnalyseAccess(NodeDescription &aNode);
    void AnalyseLimits(NodeDescription &aNode);
    LxResult WalkCategories();

    std::vector<NodeDescription> mNodes;
    std::unordered_map<std::string, NodeIndex> mIndexes;
    std::vector<Place> mCategories;
    std::vector<Place> mFeatures;
    std::string mEngineXML;
};

}  // namespace LxDetail
