#include "NodeMap/GenApiElements.h"

#include <algorithm>
#include <charconv>
#include <cstring>

namespace LxDetail
{

namespace
{

constexpr size_t MaxFormula = 8192;     // bytes
constexpr int MaxFormulaNesting = 100;  // parentheses

constexpr Tag Tags[] = {
    {"Category", NodeKind::Category, Gives::Nothing},
    {"Integer", NodeKind::Value, Gives::Number},
    {"Float", NodeKind::Value, Gives::Number},
    {"Boolean", NodeKind::Value, Gives::Flag},
    {"Enumeration", NodeKind::Value, Gives::Number},
    {"String", NodeKind::Value, Gives::Text},
    {"Command", NodeKind::Command, Gives::Nothing},
    {"IntReg", NodeKind::Register, Gives::Number},
    {"MaskedIntReg", NodeKind::Register, Gives::Number},
    {"FloatReg", NodeKind::Register, Gives::Number},
    {"StringReg", NodeKind::Register, Gives::Text},
    {"Register", NodeKind::Register, Gives::Nothing},
    {"StructEntry", NodeKind::Register, Gives::Number},
    {"SwissKnife", NodeKind::SwissKnife, Gives::Number},
    {"IntSwissKnife", NodeKind::SwissKnife, Gives::Number},
    {"Converter", NodeKind::Converter, Gives::Number},
    {"IntConverter", NodeKind::Converter, Gives::Number},
    {"Port", NodeKind::Port, Gives::Nothing},
};

LxGenVisibility ParseVisibility(const std::string &aText)
{
    // what is no level is kept from the user
    return aText.empty() || aText == "Beginner" ? LxGenVisibilityBeginner
           : aText == "Expert"                  ? LxGenVisibilityExpert
           : aText == "Guru"                    ? LxGenVisibilityGuru
                                                : LxGenVisibilityInvisible;
}

}  // namespace

const Tag *FindTag(std::string_view aName)
{
    const auto tag = std::find_if(std::begin(Tags), std::end(Tags), [&](const Tag &t) { return aName == t.mName; });
    return tag == std::end(Tags) ? nullptr : tag;
}

std::string_view Trim(std::string_view aText)
{
    const auto isBlank = [](char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; };
    while (!aText.empty() && isBlank(aText.front())) {
        aText.remove_prefix(1);
    }
    while (!aText.empty() && isBlank(aText.back())) {
        aText.remove_suffix(1);
    }
    return aText;
}

std::string Text(const pugi::xml_node &aElement)
{
    // a value may be split into several pieces, by comments or CDATA sections
    std::string text;
    for (const pugi::xml_node &piece : aElement.children()) {
        if (piece.type() == pugi::node_pcdata || piece.type() == pugi::node_cdata) {
            text += piece.value();
        }
    }
    return std::string(Trim(text));
}

std::string ChildText(const pugi::xml_node &aElement, const char *aName)
{
    return Text(aElement.child(aName));
}

bool ParseInteger(std::string_view aText, int64_t &aValue)
{
    const bool negative = !aText.empty() && aText.front() == '-';
    if (!aText.empty() && (aText.front() == '-' || aText.front() == '+')) {
        aText.remove_prefix(1);
    }
    int base = 10;
    if (aText.size() > 2 && aText[0] == '0' && (aText[1] == 'x' || aText[1] == 'X')) {
        base = 16;
        aText.remove_prefix(2);
    }
    uint64_t magnitude = 0;
    const auto [end, error] = std::from_chars(aText.data(), aText.data() + aText.size(), magnitude, base);
    if (error != std::errc() || end != aText.data() + aText.size() || aText.empty()) {
        return false;
    }
    aValue = static_cast<int64_t>(negative ? 0 - magnitude : magnitude);
    return true;
}

int ParseRepresentation(const std::string &aText)
{
    static constexpr const char *names[] = {"Linear",    "Logarithmic", "Boolean",   "PureNumber",
                                            "HexNumber", "IPV4Address", "MACAddress"};
    const auto found = std::find(std::begin(names), std::end(names), aText);
    return found == std::end(names) ? -1 : static_cast<int>(found - std::begin(names));
}

NodeTexts ParseTexts(const pugi::xml_node &aElement)
{
    NodeTexts texts;
    texts.mName = Trim(aElement.attribute("Name").value());
    texts.mDisplayName = ChildText(aElement, "DisplayName");
    if (texts.mDisplayName.empty()) {
        texts.mDisplayName = texts.mName;
    }
    texts.mToolTip = ChildText(aElement, "ToolTip");
    texts.mDescription = ChildText(aElement, "Description");
    texts.mVisibility = ParseVisibility(ChildText(aElement, "Visibility"));
    const bool standard = std::strcmp(aElement.attribute("NameSpace").value(), "Standard") == 0;
    texts.mNameSpace = standard ? LxGenNameSpaceStandard : LxGenNameSpaceCustom;
    return texts;
}

void ApplyAccessMode(const std::string &aMode, NodeAccess &aAccess)
{
    aAccess.mReadable = aAccess.mReadable && (aMode == "RO" || aMode == "RW");
    aAccess.mWritable = aAccess.mWritable && (aMode == "WO" || aMode == "RW");
}

bool IsTooComplex(const std::string &aFormula)
{
    int depth = 0;
    int deepest = 0;
    for (const char c : aFormula) {
        depth += c == '(' ? 1 : c == ')' ? -1 : 0;
        deepest = std::max(deepest, depth);
    }
    return aFormula.size() > MaxFormula || deepest > MaxFormulaNesting;
}

std::string ToPlainText(const std::string &aText)
{
    std::string text = aText;
    std::replace_if(
        text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 32 || c > 126 || c < 0; }, ' ');
    return text;
}

}  // namespace LxDetail
