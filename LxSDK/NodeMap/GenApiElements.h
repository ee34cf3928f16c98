#pragma once

// Internal: single elements of a GenICam XML.

#include <pugixml.hpp>
#include <string>
#include <string_view>

#include "NodeMap/GenApiXML.h"

namespace LxDetail
{

// What other nodes can take from a node.
enum class Gives
{
    Nothing,
    Number,
    Flag,  // a number, but not for formulas
    Text,
};

struct Tag
{
    const char *mName;
    NodeKind mKind;
    Gives mGives;
};

/// What an element stands for; null when it is no node.
const Tag *FindTag(std::string_view aName);

std::string_view Trim(std::string_view aText);
/// The text of an element, without blanks around it.
std::string Text(const pugi::xml_node &aElement);
std::string ChildText(const pugi::xml_node &aElement, const char *aName);
/// Decimal or, behind "0x", hexadecimal, with a sign. False when it is neither.
bool ParseInteger(std::string_view aText, int64_t &aValue);
/// An LxGenRepresentation, or -1.
int ParseRepresentation(const std::string &aText);
NodeTexts ParseTexts(const pugi::xml_node &aElement);
/// Narrows the access to a mode: "RO", "WO", "RW", and anything else for none.
void ApplyAccessMode(const std::string &aMode, NodeAccess &aAccess);
/// Whether a formula is longer or deeper than any real one and could exhaust the engine.
bool IsTooComplex(const std::string &aFormula);
/// The engine reads ASCII only, except in texts; anything else in a number, formula or name of a variable is wrong
/// anyway.
std::string ToPlainText(const std::string &aText);

}  // namespace LxDetail
