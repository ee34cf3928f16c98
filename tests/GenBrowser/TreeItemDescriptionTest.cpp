#include "TreeItemTest.h"

#include <QtCore/QLocale>

namespace
{

// Descriptions

QString Footer(const QString &aName, const QString &aType)
{
    return "<p>Feature Name: <b>" + aName + "</b><br/>Type: <b>" + aType +
           "</b><br/>Name Space: <b>Standard</b><br/>Visibility: <b>Beginner</b></p>";
}

TEST(TreeItemDescription, OfAnIntegerHasRangeAndIncrement)
{
    FakeInteger feature("Width");
    feature.mMin = 0;
    feature.mMax = 65535;
    feature.mIncrement = 4;
    EXPECT_EQ(Item(feature).Description(),
              "<h3>The Width</h3><p>about Width</p><p>Unbound unsigned 16 bits integer<br/>Increment: <b>4</b></p>" +
                  Footer("Width", "Integer"));
    feature.mMin = 1;
    EXPECT_EQ(Item(feature).Description(),
              "<h3>The Width</h3><p>about Width</p><p>Min: <b>1</b> Max: <b>65535</b><br/>Increment: <b>4</b></p>" +
                  Footer("Width", "Integer"));
    feature.mRepresentation = LxGenRepresentationHexNumber;
    EXPECT_TRUE(Item(feature).Description().contains("Min: <b>1</b> Max: <b>ffff</b><br/>Increment: <b>4</b>"));
}

TEST(TreeItemDescription, OfAnAddressHasNoRange)
{
    FakeInteger ip("GevSCDA");
    ip.mAttributes.mDescription = "";
    EXPECT_EQ(Item(ip).Description(), "<h3>The GevSCDA</h3>" + Footer("GevSCDA", "Integer"));
    FakeInteger mac("GevMACAddress");
    mac.mAttributes.mDescription = "";
    EXPECT_EQ(Item(mac).Description(), "<h3>The GevMACAddress</h3>" + Footer("GevMACAddress", "Integer"));
}

TEST(TreeItemDescription, OfAFloatHasItsLimitsInTheLocale)
{
    FakeFloat feature("Exposure");
    feature.mMin = 0.5;
    EXPECT_EQ(Item(feature).Description(),
              "<h3>The Exposure</h3><p>about Exposure</p><p>Min: <b>" + QLocale().toString(0.5, 'g', 6) +
                  "</b> Max: <b>" + QLocale().toString(1e6, 'g', 6) + "</b></p>" + Footer("Exposure", "Float"));
}

TEST(TreeItemDescription, OfStringsAndRegistersHasTheirLengths)
{
    FakeString text("Name");
    EXPECT_EQ(Item(text).Description(),
              "<h3>The Name</h3><p>about Name</p><p>Max Length: <b>16</b> bytes</p>" + Footer("Name", "String"));
    FakeRegister bytes("Lut");
    EXPECT_EQ(Item(bytes).Description(),
              "<h3>The Lut</h3><p>about Lut</p><p>This feature can only be accessed programmatically.<br/>Length: "
              "<b>64</b> bytes</p>" +
                  Footer("Lut", "Register"));
}

TEST(TreeItemDescription, OfBooleansAndCommandsHasNoLimits)
{
    FakeBoolean boolean("Flag");
    EXPECT_EQ(Item(boolean).Description(), "<h3>The Flag</h3><p>about Flag</p>" + Footer("Flag", "Boolean"));
    FakeCommand command("Go");
    EXPECT_EQ(Item(command).Description(), "<h3>The Go</h3><p>about Go</p>" + Footer("Go", "Command"));
}

TEST(TreeItemDescription, OfAnEnumerationEndsWithItsEntries)
{
    FakeEnum feature("Mode");
    feature.Add("Off", 0).mDescription = "nothing %1";
    feature.mEntries.push_back(nullptr);
    FakeEntry &on = feature.Add("On", 255);
    on.mNameSpace = LxGenNameSpaceCustom;
    on.mVisibility = LxGenVisibilityGuru;
    EXPECT_EQ(Item(feature).Description(),
              "<h3>The Mode</h3><p>about Mode</p>" + Footer("Mode", "Enum") +
                  "<h4>The Off</h4><p>nothing %1</p><p>Enum Entry Name: <b>Off</b><br/>Enum Entry Value: <b>0 "
                  "(0x0)</b><br/>Name Space: <b>Standard</b><br/>Visibility: <b>Beginner</b></p>"
                  "<h4>The On</h4><p>Enum Entry Name: <b>On</b><br/>Enum Entry Value: <b>255 (0xff)</b><br/>Name "
                  "Space: <b>Custom</b><br/>Visibility: <b>Guru</b></p>");
}

TEST(TreeItemDescription, NamesTheSelectors)
{
    FakeInteger first("LineSelector");
    FakeInteger second("CounterSelector");
    FakeBoolean feature("Flag");
    feature.mAttributes.mDescription = "";
    feature.mAttributes.mSelecting = {&first};
    EXPECT_EQ(Item(feature).Description(),
              "<h3>The Flag</h3>Selector: <b>LineSelector</b>\n\n" + Footer("Flag", "Boolean"));
    feature.mAttributes.mSelecting = {&first, &second};
    EXPECT_EQ(
        Item(feature).Description(),
        "<h3>The Flag</h3>Selectors: <b>LineSelector</b>, <b>CounterSelector</b>\n\n" + Footer("Flag", "Boolean"));
}

TEST(TreeItemDescription, TakesTheTextsOfTheDeviceAsRichText)
{
    FakeCommand command("Go");
    command.mAttributes.mDescription = "<i>a</i> & b";
    EXPECT_TRUE(Item(command).Description().contains("<p><i>a</i> & b</p>"));
}

TEST(TreeItemDescription, OfACategory)
{
    FakeCategory category("Image");
    category.mDescription = "all about it";
    const GenBrowserTreeItem item(nullptr, nullptr, &category, LxGenVisibilityGuru, false);
    EXPECT_EQ(item.Description(),
              "<h3>The Image</h3></b><p>all about it</p><p>Feature Name: <b>Image</b><br/>Type: "
              "<b>Category</b><br/>Name Space: <b>Standard</b><br/></p>");
}

}  // namespace
