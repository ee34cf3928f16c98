#include "NodeMap/GenApiXML.h"

#include <algorithm>
#include <cstring>
#include <pugixml.hpp>
#include <string_view>
#include <utility>

#include "LxPersistence/ConfigurationText.h"
#include "NodeMap/GenApiElements.h"

namespace LxDetail
{

namespace
{

constexpr size_t MaxSize = 64u << 20;  // bytes; real descriptions have some hundred kilobytes
constexpr int MaxNesting = 64;         // elements in elements; the schema needs six
constexpr int MaxCategoryDepth = 64;
constexpr size_t MaxFormulaVariables = 256;

LxResult Broken(const std::string &aReason)
{
    return LxResult(LxResultCode::GenICamError, "The camera's XML description is broken: " + aReason);
}

// Elements with a value of their own that the node engine needs.
constexpr const char *EngineElements[] = {
    "Value",        "Address",    "Length",       "LSB",          "MSB",      "Bit",        "Sign",
    "Endianess",    "AccessMode", "Min",          "Max",          "Inc",      "OnValue",    "OffValue",
    "CommandValue", "Formula",    "FormulaTo",    "FormulaFrom",  "Constant", "Expression", "IsLinear",
    "Slope",        "ChunkID",    "ValueIndexed", "ValueDefault",
};
// Elements that name a node and that the node engine needs.
constexpr const char *EngineReferences[] = {
    "pValue", "pAddress", "pLength", "pPort",         "pIndex",        "pVariable",
    "pMin",   "pMax",     "pInc",    "pCommandValue", "pValueIndexed", "pValueDefault",
};
constexpr const char *EngineAttributes[] = {
    "Name", "Offset", "pOffset", "Index", "SchemaMajorVersion", "SchemaMinorVersion", "SchemaSubMinorVersion"};

template <size_t N>
bool Contains(const char *const (&aList)[N], std::string_view aName)
{
    return std::find(std::begin(aList), std::end(aList), aName) != std::end(aList);
}

}  // namespace

/// Reads the elements of one XML into a GenApiXML, and turns them into what the engine needs.
class GenApiXML::Reader
{
public:
    explicit Reader(GenApiXML &aXML) : mXML(aXML) {}

    LxResult Read(const std::string &aText)
    {
        if (aText.size() > MaxSize) {
            return Broken("it is larger than 64 MiB.");
        }
        const auto parsed = mDocument.load_buffer(aText.data(), aText.size(), pugi::parse_default);
        if (!parsed) {
            return Broken(std::string(parsed.description()) + " at byte " + std::to_string(parsed.offset) + ".");
        }
        const pugi::xml_node root = mDocument.document_element();
        if (std::strcmp(root.name(), "RegisterDescription") != 0) {
            return Broken("it is no register description.");
        }
        if (IsTooNested(root)) {
            return Broken("its elements are nested too deeply.");
        }
        CollectNodes(root);
        for (NodeIndex i = 0; i < mElements.size(); ++i) {
            ReadNode(i);
        }
        WriteEngineXML(root);
        return LxResult();
    }

private:
    static bool IsTooNested(const pugi::xml_node &aRoot)
    {
        int depth = 0;
        for (pugi::xml_node node = aRoot; node;) {
            if (node.first_child()) {
                node = node.first_child();
                if (++depth > MaxNesting) {
                    return true;
                }
                continue;
            }
            while (node && node != aRoot && !node.next_sibling()) {
                node = node.parent();
                --depth;
            }
            if (!node || node == aRoot) {
                break;
            }
            node = node.next_sibling();
        }
        return false;
    }

    void CollectNodes(const pugi::xml_node &aParent)
    {
        for (const pugi::xml_node &element : aParent.children()) {
            const std::string_view tag = element.name();
            if (tag == "Group" || tag == "StructReg") {
                CollectNodes(element);
                continue;
            }
            const Tag *known = FindTag(tag);
            const std::string name(Trim(element.attribute("Name").value()));
            if (!known || name.empty()) {
                continue;
            }
            NodeDescription node;
            node.mKind = known->mKind;
            // of two nodes of one name the last counts
            mXML.mIndexes[name] = static_cast<NodeIndex>(mElements.size());
            mElements.push_back(element);
            mGives.push_back(known->mGives);
            mXML.mNodes.push_back(std::move(node));
        }
    }

    NodeIndex FindReference(const std::string &aName, const char *aTag, std::string &aProblem) const
    {
        const NodeIndex index = mXML.Find(aName);
        if (index == NoNode && aProblem.empty()) {
            aProblem = std::string(aTag) + " names \"" + aName + "\", which does not exist";
        }
        return index;
    }

    void AddDependency(NodeIndex aNode, NodeIndex aOn)
    {
        if (aOn != NoNode) {
            mXML.mNodes[aOn].mDependents.push_back(aNode);
        }
    }

    // Adds a reference to a list and notes the dependency; one that names nothing, or a node that cannot give what is
    // needed, is a problem.
    void AddReference(NodeIndex aNode, const pugi::xml_node &aElement, std::vector<NodeIndex> &aList,
                      std::string &aProblem)
    {
        const NodeIndex target = FindReference(Text(aElement), aElement.name(), aProblem);
        if (target == NoNode) {
            return;
        }
        const bool isFormula = std::strcmp(aElement.name(), "pVariable") == 0;
        const bool isText = std::strcmp(aElement.name(), "pValue") == 0 && mGives[aNode] == Gives::Text;
        const Gives gives = mGives[target];
        const bool fits =
            isText ? gives == Gives::Text : gives == Gives::Number || (gives == Gives::Flag && !isFormula);
        if (!fits && aProblem.empty()) {
            aProblem = std::string(aElement.name()) + " names \"" + Text(aElement) + "\", which is no " +
                       (isText ? "text" : "number");
        }
        aList.push_back(target);
        AddDependency(aNode, target);
    }

    void ReadAccess(NodeIndex aNode, const pugi::xml_node &aElement, NodeAccess &aAccess)
    {
        for (const pugi::xml_node &child : aElement.children()) {
            const std::string_view tag = child.name();
            if (tag == "pIsImplemented") {
                AddReference(aNode, child, aAccess.mImplemented, aAccess.mProblem);
            }
            else if (tag == "pIsAvailable") {
                AddReference(aNode, child, aAccess.mAvailable, aAccess.mProblem);
            }
            else if (tag == "pIsLocked") {
                AddReference(aNode, child, aAccess.mLocked, aAccess.mProblem);
            }
        }
    }

    void ReadOwnAccessMode(const pugi::xml_node &aElement, NodeDescription &aNode)
    {
        NodeAccess &access = aNode.mOwnAccess;
        if (aNode.mKind == NodeKind::Register) {
            std::string mode = ChildText(aElement, "AccessMode");
            if (mode.empty() && std::strcmp(aElement.name(), "StructEntry") == 0) {
                mode = ChildText(aElement.parent(), "AccessMode");
            }
            ApplyAccessMode(mode.empty() ? "RO" : mode, access);
        }
        else if (aNode.mKind == NodeKind::SwissKnife) {
            access.mWritable = false;
        }
        else if (aNode.mKind == NodeKind::Converter) {
            access.mWritable = !ChildText(aElement, "FormulaTo").empty();
            access.mReadable = !ChildText(aElement, "FormulaFrom").empty();
        }
        const std::string imposed = ChildText(aElement, "ImposedAccessMode");
        if (!imposed.empty()) {
            ApplyAccessMode(imposed, access);
        }
    }

    void ReadNode(NodeIndex aIndex)
    {
        const pugi::xml_node element = mElements[aIndex];
        NodeDescription &node = mXML.mNodes[aIndex];
        node.mTexts = ParseTexts(element);
        node.mUnit = ChildText(element, "Unit");
        node.mRepresentation = ParseRepresentation(ChildText(element, "Representation"));
        ReadAccess(aIndex, element, node.mOwnAccess);
        ReadOwnAccessMode(element, node);
        if (node.mKind == NodeKind::Category) {
            for (const pugi::xml_node &child : element.children("pFeature")) {
                const NodeIndex feature = mXML.Find(Text(child));
                if (feature != NoNode) {
                    node.mFeatures.push_back(feature);
                }
            }
            return;
        }
        ReadReferences(aIndex, element);
        if (std::strcmp(element.name(), "StructEntry") == 0) {
            ReadReferences(aIndex, element.parent());
        }
        const bool isEntry = std::strcmp(element.name(), "StructEntry") == 0;
        if (node.mValueProblem.empty() && node.mKind == NodeKind::Register && !NamesPort(element) &&
            !(isEntry && NamesPort(element.parent())))
        {
            node.mValueProblem = "it names no port";
        }
        if (node.mValueProblem.empty() && !HasValue(element, node)) {
            node.mValueProblem = "it has no value";
        }
        for (const pugi::xml_node &child : element.children("EnumEntry")) {
            EnumEntryDescription entry;
            entry.mTexts = ParseTexts(child);
            if (!ParseInteger(ChildText(child, "Value"), entry.mValue)) {
                entry.mAccess.mProblem = "the entry has no value";
            }
            ReadAccess(aIndex, child, entry.mAccess);
            node.mEntries.push_back(std::move(entry));
        }
        if (node.mKind == NodeKind::Command && node.mCommandValueNode == NoNode &&
            !ParseInteger(ChildText(element, "CommandValue"), node.mCommandValue) && node.mValueProblem.empty())
        {
            node.mValueProblem = "it has no command value";
        }
    }

    // Only numbers may come from a table.
    static bool HasValue(const pugi::xml_node &aElement, const NodeDescription &aNode)
    {
        const std::string_view tag = aElement.name();
        const bool mayHaveTable = tag == "Integer" || tag == "Float" || tag == "Enumeration";
        switch (aNode.mKind) {
            case NodeKind::Converter:
                return aNode.mTarget != NoNode;
            case NodeKind::Value:
            case NodeKind::Command:
                return aNode.mTarget != NoNode || aElement.child("Value") ||
                       (mayHaveTable && (!aNode.mTargets.empty() || aElement.child("ValueDefault")));
            default:
                return true;
        }
    }

    bool NamesPort(const pugi::xml_node &aElement) const
    {
        const NodeIndex port = mXML.Find(ChildText(aElement, "pPort"));
        return port != NoNode && mXML.mNodes[port].mKind == NodeKind::Port;
    }

    NodeIndex AddTarget(NodeDescription &aNode, const pugi::xml_node &aElement)
    {
        const NodeIndex target = mXML.Find(Text(aElement));
        if (target != NoNode) {
            aNode.mTargets.push_back(target);
        }
        return target;
    }

    // The references and values of an element; those of a formula inside a register, and those that the entries of a
    // StructReg share, count as the node's own.
    void ReadReferences(NodeIndex aIndex, const pugi::xml_node &aElement)
    {
        NodeDescription &node = mXML.mNodes[aIndex];
        size_t variables = 0;
        for (const pugi::xml_node &child : aElement.children()) {
            const std::string_view tag = child.name();
            const bool isVariable = tag == "pVariable" || tag == "Constant" || tag == "Expression";
            if (isVariable && Trim(child.attribute("Name").value()).empty()) {
                node.mValueProblem = "a variable of its formula has no name";
            }
            if (tag == "pValue") {
                AddReference(aIndex, child, node.mValueRefs, node.mValueProblem);
                node.mTarget = AddTarget(node, child);
            }
            else if (tag == "pValueIndexed" || tag == "pValueDefault") {
                AddReference(aIndex, child, node.mValueRefs, node.mValueProblem);
                AddTarget(node, child);
            }
            else if (tag == "pValueCopy") {
                AddReference(aIndex, child, node.mCopies, node.mValueProblem);
            }
            else if (tag == "pVariable" || tag == "pAddress" || tag == "pIndex" || tag == "pCommandValue") {
                AddReference(aIndex, child, node.mValueRefs, node.mValueProblem);
                if (tag == "pCommandValue") {
                    node.mCommandValueNode = mXML.Find(Text(child));
                }
                if (const pugi::xml_attribute offset = child.attribute("pOffset")) {
                    const NodeIndex target =
                        FindReference(std::string(Trim(offset.value())), "pOffset", node.mValueProblem);
                    if (target != NoNode) {
                        node.mValueRefs.push_back(target);
                        AddDependency(aIndex, target);
                    }
                }
                if (tag == "pVariable" && ++variables > MaxFormulaVariables) {
                    node.mValueProblem = "its formula has too many variables";
                }
            }
            else if (tag == "pLength") {
                AddReference(aIndex, child, node.mValueRefs, node.mValueProblem);
                if (const NodeIndex length = mXML.Find(Text(child)); length != NoNode) {
                    node.mLengthRefs.push_back(length);
                }
            }
            else if (tag == "pMin" || tag == "pMax" || tag == "pInc") {
                AddReference(aIndex, child, node.mLimitRefs, node.mLimitProblem);
                node.mHasMin = node.mHasMin || tag == "pMin";
                node.mHasMax = node.mHasMax || tag == "pMax";
            }
            else if (tag == "pInvalidator") {
                AddDependency(aIndex, mXML.Find(Text(child)));
            }
            else if (tag == "pSelected") {
                const NodeIndex selected = mXML.Find(Text(child));
                if (selected != NoNode) {
                    node.mSelected.push_back(selected);
                    AddDependency(selected, aIndex);
                }
            }
            else if (tag == "IntSwissKnife") {
                ReadReferences(aIndex, child);
            }
            else if (tag == "Min" || tag == "Max") {
                (tag == "Min" ? node.mHasMin : node.mHasMax) = true;
            }
            else if (tag == "Length") {
                int64_t length = 0;
                if (!ParseInteger(Text(child), length) || length < 1 || length > MaxRegisterLength) {
                    node.mValueProblem = "its length is not between 1 byte and 16 MiB";
                }
            }
            else if (tag == "Formula" || tag == "FormulaTo" || tag == "FormulaFrom" || tag == "Expression") {
                if (IsTooComplex(Text(child))) {
                    node.mValueProblem = "its formula is too long or nested too deeply";
                }
            }
        }
    }

    // The text of a child as the engine can read it: any where it is a text itself, else ASCII.
    static std::string EngineText(const pugi::xml_node &aElement, const pugi::xml_node &aChild)
    {
        const std::string text = Text(aChild);
        const bool isText = std::strcmp(aElement.name(), "String") == 0 && std::strcmp(aChild.name(), "Value") == 0;
        return isText && IsPlainXMLText(text) ? text : ToPlainText(text);
    }

    // Copies what the engine needs from one element to another.
    void CopyElement(const pugi::xml_node &aFrom, pugi::xml_node aTo) const
    {
        for (const pugi::xml_attribute &attribute : aFrom.attributes()) {
            if (!Contains(EngineAttributes, attribute.name())) {
                continue;
            }
            std::string value = ToPlainText(attribute.value());
            if (std::strcmp(attribute.name(), "pOffset") == 0) {
                const NodeIndex target = mXML.Find(std::string(Trim(attribute.value())));
                if (target == NoNode) {
                    continue;
                }
                value = GetEngineName(target);
            }
            aTo.append_attribute(attribute.name()).set_value(value.c_str());
        }
        for (const pugi::xml_node &child : aFrom.children()) {
            const std::string_view tag = child.name();
            if (tag == "EnumEntry" || tag == "IntSwissKnife") {
                CopyElement(child, aTo.append_child(child.name()));
            }
            else if (Contains(EngineElements, tag)) {
                pugi::xml_node copy = aTo.append_child(child.name());
                CopyElement(child, copy);
                copy.append_child(pugi::node_pcdata).set_value(EngineText(aFrom, child).c_str());
            }
            else if (Contains(EngineReferences, tag)) {
                const NodeIndex target = mXML.Find(Text(child));
                if (target != NoNode) {
                    pugi::xml_node copy = aTo.append_child(child.name());
                    CopyElement(child, copy);
                    copy.append_child(pugi::node_pcdata).set_value(GetEngineName(target).c_str());
                }
            }
        }
    }

    void WriteEngineXML(const pugi::xml_node &aRoot)
    {
        pugi::xml_document engine;
        pugi::xml_node root = engine.append_child("RegisterDescription");
        for (const pugi::xml_attribute &attribute : aRoot.attributes()) {
            if (Contains(EngineAttributes, attribute.name())) {
                root.append_attribute(attribute.name()).set_value(ToPlainText(attribute.value()).c_str());
            }
        }
        for (NodeIndex i = 0; i < mElements.size(); ++i) {
            if (mXML.mNodes[i].mKind == NodeKind::Category) {
                continue;
            }
            pugi::xml_node parent = root;
            if (std::strcmp(mElements[i].name(), "StructEntry") == 0) {
                // a StructReg for each entry: the shared part is copied
                parent = root.append_child("StructReg");
                CopyElement(mElements[i].parent(), parent);
            }
            pugi::xml_node copy = parent.append_child(mElements[i].name());
            CopyElement(mElements[i], copy);
            copy.attribute("Name").set_value(GetEngineName(i).c_str());
        }
        struct Writer : pugi::xml_writer
        {
            explicit Writer(std::string &aOut) : mOut(aOut) {}
            void write(const void *aData, size_t aSize) override
            {
                mOut.append(static_cast<const char *>(aData), aSize);
            }
            std::string &mOut;
        } writer(mXML.mEngineXML);
        engine.save(writer, "", pugi::format_raw, pugi::encoding_utf8);
    }

    GenApiXML &mXML;
    pugi::xml_document mDocument;
    std::vector<pugi::xml_node> mElements;  // of the nodes
    std::vector<Gives> mGives;              // by the nodes
};

LxResult GenApiXML::Parse(const std::string &aXML)
{
    if (LxResult result = Reader(*this).Read(aXML); !result.IsOK()) {
        return result;
    }
    Analyse();
    return WalkCategories();
}

NodeIndex GenApiXML::Find(const std::string &aName) const
{
    const auto found = mIndexes.find(aName);
    return found == mIndexes.end() ? NoNode : found->second;
}

LxResult GenApiXML::WalkCategories()
{
    const NodeIndex root = Find("Root");
    if (root == NoNode || mNodes[root].mKind != NodeKind::Category) {
        return Broken("it has no category \"Root\".");
    }
    // each category and each feature is listed where it is named first; so a circle of categories ends by itself
    std::vector<bool> seen(mNodes.size());
    struct Level
    {
        NodeIndex mCategory;
        size_t mNext;
        std::string mPath;
    };
    std::vector<Level> levels;
    const auto enter = [&](NodeIndex aCategory, const std::string &aParent) {
        const std::string path = (aParent.empty() ? "" : aParent + "\\") + mNodes[aCategory].mTexts.mName;
        mCategories.push_back({aCategory, path});
        levels.push_back({aCategory, 0, path});
        seen[aCategory] = true;
    };
    enter(root, "");
    while (!levels.empty()) {
        Level &level = levels.back();
        const std::vector<NodeIndex> &features = mNodes[level.mCategory].mFeatures;
        if (level.mNext == features.size()) {
            levels.pop_back();
            continue;
        }
        const NodeIndex node = features[level.mNext++];
        if (seen[node]) {
            continue;
        }
        if (mNodes[node].mKind != NodeKind::Category) {
            seen[node] = true;
            mFeatures.push_back({node, level.mPath});
        }
        else if (levels.size() < MaxCategoryDepth) {
            enter(node, std::string(level.mPath));
        }
    }
    return LxResult();
}

}  // namespace LxDetail
