#pragma once

// Internal: what all features of a node map have in common.

#include <atomic>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "LxBase/SinkList.h"
#include "LxGenICam/LxGenEventSink.h"
#include "LxGenICam/LxGenParameter.h"
#include "LxGenICam/LxGenParameterList.h"
#include "NodeMap/NodeEngine.h"

namespace LxDetail
{

/// Answers with a value from memory.
template <class To, class From>
LxResult Give(To &aTo, const From &aFrom)
{
    aTo = aFrom;
    return LxResult();
}

/// The state of a feature beside its kind: its place, its sinks, what polling saw last.
class FeatureCore
{
public:
    FeatureCore(NodeEngine &aEngine, NodeIndex aNode, std::string aCategory, std::shared_ptr<SinkDomain> aDomain)
        : mEngine(aEngine), mNode(aNode), mCategory(std::move(aCategory)), mSinks(std::move(aDomain))
    {
    }

    const NodeDescription &Description() const { return mEngine.GetNode(mNode); }
    const NodeTexts &Texts() const { return Description().mTexts; }
    const NodeAccess &Access() const { return Description().mAccess; }

    /// Runs a write, after checking that the feature may be written, and notifies when it succeeded.
    template <class Operation>
    LxResult Write(const Operation &aWrite)
    {
        return mEngine.Run([&] {
            LxResult result = mEngine.CheckWritable(mNode);
            if (result.IsOK()) {
                result = aWrite();
            }
            if (result.IsOK()) {
                mEngine.NoteChange(mNode);
            }
            return result;
        });
    }

    /// Runs a read, after checking that the feature may be read.
    template <class Operation>
    LxResult Read(const Operation &aRead) const
    {
        return mEngine.Run([&] {
            LxResult result = mEngine.CheckReadable(mNode);
            return result.IsOK() ? aRead() : result;
        });
    }

    NodeEngine &mEngine;
    const NodeIndex mNode;
    const std::string mCategory;
    std::vector<LxGenParameter *> mSelected;
    std::vector<LxGenParameter *> mSelecting;
    SinkList<LxGenEventSink> mSinks;
    std::atomic<bool> mIsNew{false};       // a sink has come since polling looked last
    std::optional<std::string> mSnapshot;  // what polling saw last; guarded by the node map's lock for snapshots
};

/// A feature as the node map sees it.
class Feature
{
public:
    virtual ~Feature() = default;

    virtual FeatureCore &GetCore() = 0;
    virtual LxGenParameter *GetParameter() = 0;
    /// Value, limits and the like in a form that changes when any of them does; the first error ends it.
    virtual LxResult ReadState(std::string &aState) const = 0;

    void Notify()
    {
        GetCore().mSinks.Notify([this](LxGenEventSink *aSink) { aSink->OnParameterUpdate(GetParameter()); });
    }
};

LxResult FillList(const std::vector<LxGenParameter *> &aFrom, LxGenParameterList &aList);

/// The operations of LxGenParameter that are the same for every kind.
template <class Interface, LxGenType Type>
class FeatureOf : public Interface, public Feature
{
public:
    explicit FeatureOf(NodeEngine &aEngine, NodeIndex aNode, std::string aCategory, std::shared_ptr<SinkDomain> aDomain)
        : mCore(aEngine, aNode, std::move(aCategory), std::move(aDomain))
    {
    }

    using Interface::IsAvailable;
    using Interface::IsImplemented;
    using Interface::IsReadable;
    using Interface::IsWritable;

    FeatureCore &GetCore() override { return mCore; }
    LxGenParameter *GetParameter() override { return this; }

    LxResult GetType(LxGenType &aType) const override { return Give(aType, Type); }
    LxResult GetName(LxString &aName) const override { return Give(aName, mCore.Texts().mName); }
    LxResult GetDisplayName(LxString &aName) const override { return Give(aName, mCore.Texts().mDisplayName); }
    LxResult GetToolTip(LxString &aToolTip) const override { return Give(aToolTip, mCore.Texts().mToolTip); }
    LxResult GetDescription(LxString &aText) const override { return Give(aText, mCore.Texts().mDescription); }
    LxResult GetCategory(LxString &aCategory) const override { return Give(aCategory, mCore.mCategory); }
    LxResult GetVisibility(LxGenVisibility &aVisibility) const override
    {
        return Give(aVisibility, mCore.Texts().mVisibility);
    }
    LxResult GetNameSpace(LxGenNameSpace &aNameSpace) const override
    {
        return Give(aNameSpace, mCore.Texts().mNameSpace);
    }

    LxResult IsImplemented(bool &aImplemented) const override { return Ask<&NodeEngine::IsImplemented>(aImplemented); }
    LxResult IsAvailable(bool &aAvailable) const override { return Ask<&NodeEngine::IsAvailable>(aAvailable); }
    LxResult IsReadable(bool &aReadable) const override { return Ask<&NodeEngine::IsReadable>(aReadable); }
    LxResult IsWritable(bool &aWritable) const override { return Ask<&NodeEngine::IsWritable>(aWritable); }

    LxResult GetSelectedParameters(LxGenParameterList &aList) const override
    {
        return FillList(mCore.mSelected, aList);
    }
    LxResult GetSelectingParameters(LxGenParameterList &aList) const override
    {
        return FillList(mCore.mSelecting, aList);
    }

    LxResult RegisterEventSink(LxGenEventSink *aSink) override
    {
        if (!aSink) {
            return LxResult(LxResultCode::InvalidArgument, "There is no event sink.");
        }
        mCore.mSinks.Add(aSink);
        mCore.mIsNew = true;
        return LxResult();
    }
    LxResult UnregisterEventSink(LxGenEventSink *aSink) override
    {
        return mCore.mSinks.Remove(aSink) ? LxResult()
                                          : LxResult(LxResultCode::NotFound, "The event sink is not registered.");
    }

protected:
    template <LxResult (NodeEngine::*Question)(const NodeAccess &, bool &)>
    LxResult Ask(bool &aAnswer) const
    {
        aAnswer = false;
        return mCore.mEngine.Run([&] { return (mCore.mEngine.*Question)(mCore.Access(), aAnswer); });
    }
    int Representation() const
    {
        const int representation = mCore.Description().mRepresentation;
        return representation < 0 ? static_cast<int>(LxGenRepresentationPureNumber) : representation;
    }

    FeatureCore mCore;
};

/// The feature of a node of the kind, or null when the node is of none.
std::unique_ptr<Feature> MakeFeature(NodeEngine &aEngine, NodeIndex aNode, const std::string &aCategory,
                                     const std::shared_ptr<SinkDomain> &aDomain);

}  // namespace LxDetail
