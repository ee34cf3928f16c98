#include "NodeMap/NodeMap.h"

#include <mutex>
#include <unordered_map>
#include <utility>
#include <vector>

#include "LxBase/LxLifetime.h"
#include "LxGenICam/LxGenCategory.h"
#include "NodeMap/Feature.h"
#include "NodeMap/NodeEngine.h"

namespace LxDetail
{

namespace
{

class Category : public LxGenCategory
{
public:
    Category(NodeEngine &aEngine, NodeIndex aNode) : mEngine(aEngine), mDescription(aEngine.GetNode(aNode)) {}

    using LxGenCategory::IsImplemented;

    LxResult GetName(LxString &aName) const override { return Give(aName, mDescription.mTexts.mName); }
    LxResult GetDisplayName(LxString &aName) const override { return Give(aName, mDescription.mTexts.mDisplayName); }
    LxResult GetToolTip(LxString &aToolTip) const override { return Give(aToolTip, mDescription.mTexts.mToolTip); }
    LxResult GetDescription(LxString &aText) const override { return Give(aText, mDescription.mTexts.mDescription); }
    LxResult GetVisibility(LxGenVisibility &aVisibility) const override
    {
        return Give(aVisibility, mDescription.mTexts.mVisibility);
    }
    LxResult GetNameSpace(LxGenNameSpace &aNameSpace) const override
    {
        return Give(aNameSpace, mDescription.mTexts.mNameSpace);
    }
    LxResult IsImplemented(bool &aImplemented) const override
    {
        const NodeAccess &access = mDescription.mAccess;
        if (access.mImplemented.empty() && access.mProblem.empty()) {
            return Give(aImplemented, true);
        }
        aImplemented = false;
        return mEngine.Run([&] { return mEngine.IsImplemented(access, aImplemented); });
    }

private:
    NodeEngine &mEngine;
    const NodeDescription &mDescription;
};

}  // namespace

class NodeMap::Data : public LxGenParameterArray, private PortStateSink
{
public:
    Data(std::shared_ptr<RegisterPort> aPort, std::string aXML) : mXML(std::move(aXML)), mEngine(std::move(aPort)) {}
    ~Data() override { mEngine.GetPort().RemoveStateSink(this); }

    LxResult Load();

    uint32_t GetCount() const override { return static_cast<uint32_t>(mFeatures.size()); }
    LxGenParameter *operator[](uint32_t aIndex) const override
    {
        return aIndex < mFeatures.size() ? mFeatures[aIndex]->GetParameter() : nullptr;
    }
    LxGenParameter *Get(const LxString &aName) const override
    {
        const Feature *feature = GetFeature(mEngine.GetXML().Find(aName.GetString()));
        return feature ? const_cast<Feature *>(feature)->GetParameter() : nullptr;
    }
    LxGenCategory *GetCategory(const LxString &aPath) const override
    {
        const auto found = mCategoriesByPath.find(aPath.GetString());
        return found == mCategoriesByPath.end() ? nullptr : found->second;
    }
    int GetAccessMode() const override { return mEngine.GetPort().GetState().IsOK() ? 0 : 1; }
    void InvalidateCache() override;
    LxResult Poll() override;

    void NotifyAll();
    void NotifyAffected(const std::vector<NodeIndex> &aNodes);

    const std::string mXML;
    NodeEngine mEngine;

private:
    Feature *GetFeature(NodeIndex aNode) const { return aNode == NoNode ? nullptr : mFeaturesByNode[aNode]; }
    void Connect();
    void OnPortStateChange() override { mEngine.UpdateState(); }
    void OnPortStateNews() override { NotifyAll(); }
    LxResult ReadSnapshot(Feature &aFeature, std::string &aSnapshot);

    const std::shared_ptr<SinkDomain> mSinkDomain = std::make_shared<SinkDomain>();
    std::vector<std::unique_ptr<Feature>> mFeatures;
    std::vector<Feature *> mFeaturesByNode;
    std::vector<std::unique_ptr<Category>> mCategories;
    std::unordered_map<std::string, Category *> mCategoriesByPath;
    std::mutex mSnapshotMutex;  // guards FeatureCore::mSnapshot of all features
};

LxResult NodeMap::Data::Load()
{
    if (LxResult result = mEngine.Load(mXML); !result.IsOK()) {
        return result;
    }
    const GenApiXML &xml = mEngine.GetXML();
    for (const GenApiXML::Place &place : xml.GetCategories()) {
        mCategories.push_back(std::make_unique<Category>(mEngine, place.mNode));
        mCategoriesByPath.emplace(place.mPath, mCategories.back().get());
    }
    // by their bare names too; where a path and a name are the same, the path has been there first
    for (size_t i = 0; i < mCategories.size(); ++i) {
        const NodeIndex node = xml.GetCategories()[i].mNode;
        mCategoriesByPath.emplace(mEngine.GetNode(node).mTexts.mName, mCategories[i].get());
    }
    mFeaturesByNode.resize(xml.GetNodes().size());
    for (const GenApiXML::Place &place : xml.GetFeatures()) {
        if (auto feature = MakeFeature(mEngine, place.mNode, place.mPath, mSinkDomain)) {
            mFeaturesByNode[place.mNode] = feature.get();
            mFeatures.push_back(std::move(feature));
        }
    }
    Connect();
    mEngine.SetNotify([this](const std::vector<NodeIndex> &aNodes) { NotifyAffected(aNodes); });
    mEngine.GetPort().AddStateSink(this);
    mEngine.UpdateState();
    return LxResult();
}

// Connects selectors and what they select.
void NodeMap::Data::Connect()
{
    for (const auto &feature : mFeatures) {
        FeatureCore &core = feature->GetCore();
        for (const NodeIndex node : core.Description().mSelected) {
            if (Feature *selected = GetFeature(node)) {
                core.mSelected.push_back(selected->GetParameter());
                selected->GetCore().mSelecting.push_back(feature->GetParameter());
            }
        }
    }
}

void NodeMap::Data::NotifyAll()
{
    for (const auto &feature : mFeatures) {
        feature->Notify();
    }
}

void NodeMap::Data::NotifyAffected(const std::vector<NodeIndex> &aNodes)
{
    const std::vector<bool> affected = mEngine.GetAffected(aNodes);
    for (const auto &feature : mFeatures) {
        if (affected[feature->GetCore().mNode]) {
            feature->Notify();
        }
    }
}

void NodeMap::Data::InvalidateCache()
{
    std::lock_guard lock(mSnapshotMutex);
    for (const auto &feature : mFeatures) {
        feature->GetCore().mSnapshot.reset();
    }
}

LxResult NodeMap::Data::ReadSnapshot(Feature &aFeature, std::string &aSnapshot)
{
    return mEngine.Run([&] {
        const NodeAccess &access = aFeature.GetCore().Access();
        bool flags[4] = {false, false, false, false};
        LxResult result = mEngine.IsImplemented(access, flags[0]);
        if (result.IsOK()) {
            result = mEngine.IsAvailable(access, flags[1]);
        }
        if (result.IsOK()) {
            result = mEngine.IsWritable(access, flags[2]);
        }
        flags[3] = flags[1] && access.mReadable;
        std::string state;
        if (result.IsOK() && flags[3]) {
            result = aFeature.ReadState(state);
        }
        if (result == LxResultCode::Timeout || result == LxResultCode::NotConnected) {
            return result;
        }
        aSnapshot.clear();
        for (const bool flag : flags) {
            aSnapshot += flag ? '1' : '0';
        }
        // an error is a state like any other: it is news when it comes and when it goes
        aSnapshot += std::to_string(result.GetCode()) + result.GetDescription().GetString() + '\0' + state;
        return LxResult();
    });
}

LxResult NodeMap::Data::Poll()
{
    for (const auto &feature : mFeatures) {
        FeatureCore &core = feature->GetCore();
        if (core.mSinks.IsEmpty()) {
            continue;
        }
        std::string snapshot;
        if (LxResult result = ReadSnapshot(*feature, snapshot); !result.IsOK()) {
            return result;
        }
        bool changed = core.mIsNew.exchange(false);
        {
            std::lock_guard lock(mSnapshotMutex);
            changed = changed || (core.mSnapshot && *core.mSnapshot != snapshot);
            core.mSnapshot = std::move(snapshot);
        }
        if (changed) {
            feature->Notify();
        }
    }
    return LxResult();
}

LxResult NodeMap::Create(std::shared_ptr<RegisterPort> aPort, const std::string &aXML,
                         std::unique_ptr<NodeMap> &aNodeMap)
{
    auto data = std::make_unique<Data>(std::move(aPort), aXML);
    LxResult result = data->Load();
    if (result.IsOK()) {
        aNodeMap.reset(new NodeMap(std::move(data)));
    }
    return result;
}

NodeMap::NodeMap(std::unique_ptr<Data> aData) : mData(std::move(aData)) {}

NodeMap::~NodeMap()
{
    LxLifetime::End(GetParameters());
}

LxGenParameterArray *NodeMap::GetParameters()
{
    return mData.get();
}

const std::string &NodeMap::GetXML() const
{
    return mData->mXML;
}

void NodeMap::NotifyAll()
{
    mData->NotifyAll();
}

void NodeMap::NotifyFeature(const std::string &aName)
{
    const NodeIndex node = mData->mEngine.GetXML().Find(aName);
    if (node != NoNode) {
        mData->mEngine.Notify({node});
    }
}

LxResult NodeMap::SetInternalInteger(const std::string &aName, int64_t aValue)
{
    NodeEngine &engine = mData->mEngine;
    const NodeIndex node = engine.GetXML().Find(aName);
    if (node == NoNode) {
        return LxResult(LxResultCode::NotFound, "The camera has no node \"" + aName + "\".");
    }
    return engine.Run([&] {
        LxResult result = engine.SetInteger(node, aValue);
        if (result.IsOK()) {
            engine.NoteChange(node);
        }
        return result;
    });
}

LxResult NodeMap::GetInternalInteger(const std::string &aName, int64_t &aValue) const
{
    NodeEngine &engine = mData->mEngine;
    const NodeIndex node = engine.GetXML().Find(aName);
    if (node == NoNode) {
        return LxResult(LxResultCode::NotFound, "The camera has no node \"" + aName + "\".");
    }
    return engine.Run([&] { return engine.GetInteger(node, aValue); });
}

}  // namespace LxDetail
