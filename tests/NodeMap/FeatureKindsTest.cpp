// Each kind of feature: values, limits, texts.

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

#include "TestCamera.h"

namespace
{

std::string Text(LxGenParameter &aFeature, LxResult (LxGenParameter::*aGet)(LxString &) const)
{
    LxString text;
    EXPECT_TRUE((aFeature.*aGet)(text).IsOK());
    return text.GetString();
}

std::string Entry(const std::string &aName, int aValue, const std::string &aMore = "")
{
    return Node("EnumEntry", aName, aMore + "<Value>" + std::to_string(aValue) + "</Value>");
}

std::string DoubleReg(const std::string &aName, unsigned aAddress, unsigned aLength = 8)
{
    return Node("FloatReg", aName,
                "<Address>" + std::to_string(aAddress) + "</Address><Length>" + std::to_string(aLength) +
                    "</Length><AccessMode>RW</AccessMode><pPort>Device</pPort><Endianess>BigEndian</Endianess>");
}

std::string TextReg(const std::string &aName, unsigned aAddress, unsigned aLength)
{
    return Node("StringReg", aName,
                "<Address>" + std::to_string(aAddress) + "</Address><Length>" + std::to_string(aLength) +
                    "</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>");
}

}  // namespace

TEST(Attributes, AreThoseOfTheXML)
{
    const TestCamera camera(
        "Cat", Node("Category", "Cat",
                    "<ToolTip>cat tip</ToolTip><Description>cat text</Description><DisplayName>The Cat</DisplayName>"
                    "<Visibility>Guru</Visibility><pFeature>A</pFeature><pFeature>B</pFeature>") +
                   "<Integer Name=\"A\" NameSpace=\"Standard\"><ToolTip>tip &lt;b&gt; \xC2\xB5s</ToolTip>"
                   "<Description>\n  text  \n</Description><DisplayName>Display A</DisplayName>"
                   "<Visibility>Expert</Visibility><Value>1</Value></Integer>" +
                   Node("Integer", "B", "<Value>2</Value>"));
    LxGenParameter &a = camera["A"];
    EXPECT_EQ(Text(a, &LxGenParameter::GetName), "A");
    EXPECT_EQ(Text(a, &LxGenParameter::GetDisplayName), "Display A");
    EXPECT_EQ(Text(a, &LxGenParameter::GetToolTip), "tip <b> \xC2\xB5s");
    EXPECT_EQ(Text(a, &LxGenParameter::GetDescription), "text");
    EXPECT_EQ(Text(a, &LxGenParameter::GetCategory), "Root\\Cat");
    LxGenVisibility visibility = LxGenVisibilityUndefined;
    LxGenNameSpace nameSpace = LxGenNameSpaceUndefined;
    EXPECT_TRUE(a.GetVisibility(visibility).IsOK());
    EXPECT_TRUE(a.GetNameSpace(nameSpace).IsOK());
    EXPECT_EQ(visibility, LxGenVisibilityExpert);
    EXPECT_EQ(nameSpace, LxGenNameSpaceStandard);
    EXPECT_FALSE(a.IsVisible(LxGenVisibilityBeginner));
    EXPECT_TRUE(a.IsVisible(LxGenVisibilityExpert));
    EXPECT_TRUE(a.IsVisible(LxGenVisibilityGuru));

    LxGenParameter &b = camera["B"];
    EXPECT_EQ(Text(b, &LxGenParameter::GetDisplayName), "B");
    EXPECT_EQ(Text(b, &LxGenParameter::GetToolTip), "");
    EXPECT_TRUE(b.GetVisibility(visibility).IsOK());
    EXPECT_EQ(visibility, LxGenVisibilityBeginner);
    EXPECT_TRUE(b.GetNameSpace(nameSpace).IsOK());
    EXPECT_EQ(nameSpace, LxGenNameSpaceCustom) << "a missing NameSpace means Custom";

    const LxGenCategory *category = camera.mParameters->GetCategory("Root\\Cat");
    ASSERT_NE(category, nullptr);
    EXPECT_EQ(category, camera.mParameters->GetCategory("Cat")) << "also found by its bare name";
    LxString text;
    EXPECT_TRUE(category->GetName(text).IsOK());
    EXPECT_EQ(text, LxString("Cat"));
    EXPECT_TRUE(category->GetDisplayName(text).IsOK());
    EXPECT_EQ(text, LxString("The Cat"));
    EXPECT_TRUE(category->GetToolTip(text).IsOK());
    EXPECT_EQ(text, LxString("cat tip"));
    EXPECT_TRUE(category->GetDescription(text).IsOK());
    EXPECT_EQ(text, LxString("cat text"));
    EXPECT_TRUE(category->GetVisibility(visibility).IsOK());
    EXPECT_EQ(visibility, LxGenVisibilityGuru);
    EXPECT_TRUE(category->GetNameSpace(nameSpace).IsOK());
    EXPECT_EQ(nameSpace, LxGenNameSpaceCustom);
    EXPECT_FALSE(category->IsVisible(LxGenVisibilityExpert));
    EXPECT_TRUE(category->IsVisible(LxGenVisibilityGuru));
    EXPECT_TRUE(category->IsImplemented());
    EXPECT_EQ(camera.mParameters->GetCategory("Nothing"), nullptr);
    EXPECT_EQ(camera.mPort->GetReadCount(), 0u) << "attributes never ask the device";
}

TEST(Attributes, NonsenseVisibilityIsInvisible)
{
    const TestCamera camera("A", Node("Integer", "A", "<Visibility>Wizard</Visibility><Value>1</Value>"));
    LxGenVisibility visibility = LxGenVisibilityUndefined;
    EXPECT_TRUE(camera["A"].GetVisibility(visibility).IsOK());
    EXPECT_EQ(visibility, LxGenVisibilityInvisible);
}

TEST(Array, ListsFeaturesInTheOrderOfTheCategories)
{
    const TestCamera camera("Cat2 A Cat1 Missing",
                            Node("Category", "Cat1", "<pFeature>B</pFeature><pFeature>A</pFeature>") +
                                Node("Category", "Cat2", "<pFeature>C</pFeature><pFeature>Sub</pFeature>") +
                                Node("Category", "Sub", "<pFeature>D</pFeature>") +
                                Node("Integer", "A", "<Value>1</Value>") + Node("Integer", "B", "<Value>1</Value>") +
                                Node("Integer", "C", "<Value>1</Value>") + Node("Integer", "D", "<Value>1</Value>") +
                                Node("Integer", "Unlisted", "<Value>1</Value>"));
    LxGenParameterArray &array = *camera.mParameters;
    ASSERT_EQ(array.GetCount(), 4u);
    std::string names;
    for (uint32_t i = 0; i < array.GetCount(); ++i) {
        names += Text(*array[i], &LxGenParameter::GetCategory) + "|" + Text(*array[i], &LxGenParameter::GetName) + " ";
    }
    EXPECT_EQ(names, "Root\\Cat2|C Root\\Cat2\\Sub|D Root|A Root\\Cat1|B ");
    EXPECT_EQ(array[4], nullptr);
    EXPECT_EQ(array.Get("Unlisted"), nullptr);
    EXPECT_EQ(array.Get("Cat1"), nullptr);
    EXPECT_EQ(array.GetFloat("A"), nullptr);
    EXPECT_NE(array.GetInteger("A"), nullptr);
}

TEST(Kinds, HaveTheirTypes)
{
    const TestCamera camera(
        "I R M F FR E B S SR C X SK ISK CV ICV",
        Node("Integer", "I", "<Value>1</Value>") + Reg("R", 0x1000) +
            Node("MaskedIntReg", "M",
                 "<Address>0x1000</Address><Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>"
                 "<LSB>31</LSB><MSB>24</MSB><Endianess>BigEndian</Endianess>") +
            Node("Float", "F", "<Value>1.5</Value>") + DoubleReg("FR", 0x1010) +
            Node("Enumeration", "E", Entry("One", 1) + "<Value>1</Value>") + Node("Boolean", "B", "<Value>1</Value>") +
            Node("String", "S", "<Value>text</Value>") + TextReg("SR", 0x1020, 16) +
            Node("Command", "C", "<pValue>R</pValue><CommandValue>1</CommandValue>") +
            Node("Register", "X",
                 "<Address>0x1040</Address><Length>8</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>") +
            Node("SwissKnife", "SK", "<pVariable Name=\"V\">R</pVariable><Formula>V/2</Formula>") +
            Node("IntSwissKnife", "ISK", "<pVariable Name=\"V\">R</pVariable><Formula>V+1</Formula>") +
            Node("Converter", "CV",
                 "<FormulaTo>FROM*10</FormulaTo><FormulaFrom>TO/10</FormulaFrom><pValue>R</pValue>") +
            Node("IntConverter", "ICV",
                 "<FormulaTo>FROM*10</FormulaTo><FormulaFrom>TO/10</FormulaFrom><pValue>R</pValue>"));
    const auto type = [&](const char *aName) {
        LxGenType value = LxGenTypeUndefined;
        EXPECT_TRUE(camera[aName].GetType(value).IsOK());
        return value;
    };
    for (const char *name : {"I", "R", "M", "ISK", "ICV"}) {
        EXPECT_EQ(type(name), LxGenTypeInteger) << name;
    }
    for (const char *name : {"F", "FR", "SK", "CV"}) {
        EXPECT_EQ(type(name), LxGenTypeFloat) << name;
    }
    EXPECT_EQ(type("E"), LxGenTypeEnum);
    EXPECT_EQ(type("B"), LxGenTypeBoolean);
    EXPECT_EQ(type("S"), LxGenTypeString);
    EXPECT_EQ(type("SR"), LxGenTypeString);
    EXPECT_EQ(type("C"), LxGenTypeCommand);
    EXPECT_EQ(type("X"), LxGenTypeRegister);

    camera.mMemory->Poke32(0x1000, 0x05000007);
    EXPECT_EQ(camera.Get("R"), 0x05000007);
    EXPECT_EQ(camera.Get("M"), 7);
    EXPECT_EQ(camera.Get("ISK"), 0x05000008);
    EXPECT_DOUBLE_EQ(camera.GetFloat("SK"), 0x05000007 / 2.0);
    camera.mMemory->Poke32(0x1000, 25);
    EXPECT_DOUBLE_EQ(camera.GetFloat("CV"), 2.5);
    EXPECT_TRUE(camera.Float("CV").SetValue(3.2).IsOK());
    EXPECT_EQ(camera.mMemory->Peek32(0x1000), 32u);
    EXPECT_TRUE(camera.Int("ICV").SetValue(7).IsOK());
    EXPECT_EQ(camera.Get("R"), 70);
    EXPECT_TRUE(camera.Int("M").SetValue(9).IsOK());
    EXPECT_EQ(camera.mMemory->Peek32(0x1000), 9u);
}

TEST(Integer, ChecksRangeAndIncrementBeforeWriting)
{
    const TestCamera camera(
        "A", Reg("AReg", 0x1000) + Integer("A", "AReg", "<Min>10</Min><Max>50</Max><Inc>4</Inc><Unit>px</Unit>"));
    int64_t value = 0;
    EXPECT_TRUE(camera.Int("A").GetMin(value).IsOK());
    EXPECT_EQ(value, 10);
    EXPECT_TRUE(camera.Int("A").GetMax(value).IsOK());
    EXPECT_EQ(value, 50);
    EXPECT_TRUE(camera.Int("A").GetIncrement(value).IsOK());
    EXPECT_EQ(value, 4);
    LxString unit;
    EXPECT_TRUE(camera.Int("A").GetUnit(unit).IsOK());
    EXPECT_EQ(unit, LxString("px"));

    EXPECT_TRUE(camera.Int("A").SetValue(10).IsOK());
    EXPECT_TRUE(camera.Int("A").SetValue(50).IsOK());
    for (const int64_t wrong : {INT64_MIN, int64_t(9), int64_t(51), int64_t(12), INT64_MAX}) {
        const LxResult result = camera.Int("A").SetValue(wrong);
        EXPECT_EQ(result, LxResultCode::OutOfRange) << wrong;
        EXPECT_FALSE(result.GetDescription().IsEmpty());
    }
    EXPECT_EQ(camera.mPort->GetWriteCount(), 2u);
    EXPECT_EQ(camera.mMemory->Peek32(0x1000), 50u);
    EXPECT_EQ(camera.Int("A").SetValue(60).GetDescription(), LxString("The value 60 is above the maximum of 50."));
}

TEST(Integer, LimitsOfTheRegisterNarrowItsOwn)
{
    const TestCamera camera("A B", Node("IntReg", "Byte",
                                        "<Address>0x1000</Address><Length>1</Length><AccessMode>RW</AccessMode>"
                                        "<pPort>Device</pPort><Endianess>BigEndian</Endianess>") +
                                       Integer("A", "Byte", "<Min>-5</Min><Max>1000</Max>") + Integer("B", "Byte"));
    int64_t value = 0;
    EXPECT_TRUE(camera.Int("A").GetMax(value).IsOK());
    EXPECT_EQ(value, 255);
    EXPECT_TRUE(camera.Int("A").GetMin(value).IsOK());
    EXPECT_EQ(value, 0);
    EXPECT_EQ(camera.Int("A").SetValue(300), LxResultCode::OutOfRange);
    EXPECT_TRUE(camera.Int("B").GetMax(value).IsOK());
    EXPECT_EQ(value, 255);
}

TEST(Integer, LimitsMayComeFromOtherNodes)
{
    const TestCamera camera("A", Reg("AReg", 0x1000) + Reg("MaxReg", 0x1004, "RO") + Reg("IncReg", 0x1008, "RO") +
                                     Integer("A", "AReg", "<pMax>MaxReg</pMax><pInc>IncReg</pInc>"));
    camera.mMemory->Poke32(0x1004, 100);
    camera.mMemory->Poke32(0x1008, 10);
    EXPECT_TRUE(camera.Int("A").SetValue(100).IsOK());
    EXPECT_EQ(camera.Int("A").SetValue(95), LxResultCode::OutOfRange);
    EXPECT_EQ(camera.Int("A").SetValue(110), LxResultCode::OutOfRange);
    camera.mMemory->Poke32(0x1004, 200);
    EXPECT_TRUE(camera.Int("A").SetValue(110).IsOK()) << "limits are read afresh";
    camera.mMemory->Poke32(0x1008, 0);
    int64_t increment = 0;
    EXPECT_TRUE(camera.Int("A").GetIncrement(increment).IsOK());
    EXPECT_EQ(increment, 1) << "an increment below 1 is none";
}

TEST(Integer, FormulasAndCellsAreUnbound)
{
    const TestCamera camera("Cell Knife", Node("Integer", "Cell", "<Value>-3</Value>") +
                                              Node("IntSwissKnife", "Knife", "<Formula>1+1</Formula>"));
    for (const char *name : {"Cell", "Knife"}) {
        int64_t value = 0;
        EXPECT_TRUE(camera.Int(name).GetMin(value).IsOK()) << name;
        EXPECT_EQ(value, INT64_MIN) << name;
        EXPECT_TRUE(camera.Int(name).GetMax(value).IsOK()) << name;
        EXPECT_EQ(value, INT64_MAX) << name;
        EXPECT_TRUE(camera.Int(name).GetIncrement(value).IsOK()) << name;
        EXPECT_EQ(value, 1) << name;
    }
    EXPECT_EQ(camera.Get("Cell"), -3);
    EXPECT_TRUE(camera.Int("Cell").SetValue(INT64_MIN).IsOK());
    EXPECT_EQ(camera.Get("Cell"), INT64_MIN);
    EXPECT_EQ(camera.Get("Knife"), 2);
    EXPECT_EQ(camera.Int("Knife").SetValue(1), LxResultCode::NotWritable);
}

TEST(Integer, RepresentationAndUnitComeFromTheNodeBehindWhenItHasNone)
{
    const TestCamera camera("A B C", Reg("Hex", 0x1000, "RW",
                                         "<Unit>ticks</Unit>"
                                         "<Representation>HexNumber</Representation>") +
                                         Integer("A", "Hex") +
                                         Integer("B", "Hex", "<Unit>s</Unit><Representation>Linear</Representation>") +
                                         Node("Integer", "C", "<Value>1</Value>"));
    int representation = -1;
    LxString unit;
    EXPECT_TRUE(camera.Int("A").GetRepresentation(representation).IsOK());
    EXPECT_EQ(representation, LxGenRepresentationHexNumber);
    EXPECT_TRUE(camera.Int("A").GetUnit(unit).IsOK());
    EXPECT_EQ(unit, LxString("ticks"));
    EXPECT_TRUE(camera.Int("B").GetRepresentation(representation).IsOK());
    EXPECT_EQ(representation, LxGenRepresentationLinear);
    EXPECT_TRUE(camera.Int("B").GetUnit(unit).IsOK());
    EXPECT_EQ(unit, LxString("s"));
    EXPECT_TRUE(camera.Int("C").GetRepresentation(representation).IsOK());
    EXPECT_EQ(representation, LxGenRepresentationPureNumber);
}

TEST(String, AConstantIsKeptAsItIsUnlessItIsNoText)
{
    const TestCamera camera("Text Broken",
                            Node("String", "Text", "<Value>Gr\xC3\xBC\xC3\x9F &lt;&amp;&gt; 20 %</Value>") +
                                Node("String", "Broken", "<Value>a\xC3(z</Value>"));
    EXPECT_EQ(camera["Text"].ToString(), LxString("Gr\xC3\xBC\xC3\x9F <&> 20 %"));
    EXPECT_EQ(camera["Broken"].ToString(), LxString("a (z"));
}

TEST(Integer, TextGoesBothWays)
{
    const TestCamera camera("Dec Hex Ip Mac", Node("Integer", "Dec", "<Value>-5</Value>") +
                                                  Node("Integer", "Hex",
                                                       "<Value>171</Value><Representation>HexNumber"
                                                       "</Representation>") +
                                                  Node("Integer", "Ip",
                                                       "<Value>3232235521</Value><Representation>IPV4Address"
                                                       "</Representation>") +
                                                  Node("Integer", "Mac",
                                                       "<Value>187723572702975</Value><Representation>MACAddress"
                                                       "</Representation>"));
    EXPECT_EQ(camera["Dec"].ToString(), LxString("-5"));
    EXPECT_EQ(camera["Hex"].ToString(), LxString("0xAB"));
    EXPECT_EQ(camera["Ip"].ToString(), LxString("192.168.0.1"));
    EXPECT_EQ(camera["Mac"].ToString(), LxString("AA:BB:CC:DD:EE:FF"));
    for (const char *name : {"Dec", "Hex", "Ip", "Mac"}) {
        const LxString before = camera[name].ToString();
        const int64_t value = camera.Get(name);
        EXPECT_TRUE(camera.Int(name).SetValue(1).IsOK());
        EXPECT_TRUE(camera[name].FromString(before).IsOK()) << name;
        EXPECT_EQ(camera.Get(name), value) << name;
    }
    EXPECT_TRUE(camera["Dec"].FromString(" 0x10 ").IsOK());
    EXPECT_EQ(camera.Get("Dec"), 16);
    EXPECT_TRUE(camera["Dec"].FromString("+7").IsOK());
    EXPECT_EQ(camera.Get("Dec"), 7);
    for (const char *wrong : {"", " ", "x", "1 2", "0x", "--1", "+-1", "1.5", "1.2.3.256", "9223372036854775808",
                              "0x10000000000000000", "AA:BB:CC:DD:EE:FG", "AA.BB"})
    {
        EXPECT_EQ(camera["Dec"].FromString(wrong), LxResultCode::InvalidParameter) << wrong;
    }
    EXPECT_TRUE(camera["Dec"].FromString("-9223372036854775808").IsOK());
    EXPECT_EQ(camera.Get("Dec"), INT64_MIN);
    EXPECT_TRUE(camera.Int("Ip").SetValue(0x1FFFFFFFF).IsOK());
    EXPECT_EQ(camera["Ip"].ToString(), LxString("8589934591")) << "no address";
    EXPECT_TRUE(camera.Int("Mac").SetValue(-1).IsOK());
    EXPECT_EQ(camera["Mac"].ToString(), LxString("-1"));
}

TEST(Float, ChecksLimitsAndRefusesWhatIsNoNumber)
{
    const TestCamera camera(
        "F", DoubleReg("FReg", 0x1000) + Node("Float", "F",
                                              "<pValue>FReg</pValue><Min>0.5</Min><Max>10</Max><Unit>us</Unit>"
                                              "<Representation>Logarithmic</Representation>"));
    double value = 0;
    EXPECT_TRUE(camera.Float("F").GetMin(value).IsOK());
    EXPECT_DOUBLE_EQ(value, 0.5);
    EXPECT_TRUE(camera.Float("F").GetMax(value).IsOK());
    EXPECT_DOUBLE_EQ(value, 10);
    EXPECT_TRUE(camera.Float("F").SetValue(2.25).IsOK());
    EXPECT_DOUBLE_EQ(camera.GetFloat("F"), 2.25);
    for (const double wrong : {0.4, 10.1, double(NAN), double(INFINITY), -double(INFINITY)}) {
        EXPECT_EQ(camera.Float("F").SetValue(wrong), LxResultCode::OutOfRange) << wrong;
    }
    EXPECT_EQ(camera.mPort->GetWriteCount(), 1u);
    LxString unit;
    int representation = 0;
    EXPECT_TRUE(camera.Float("F").GetUnit(unit).IsOK());
    EXPECT_EQ(unit, LxString("us"));
    EXPECT_TRUE(camera.Float("F").GetRepresentation(representation).IsOK());
    EXPECT_EQ(representation, LxGenRepresentationLogarithmic);
}

TEST(Float, IsUnboundWithoutLimits)
{
    const TestCamera camera("Cell Reg Knife", Node("Float", "Cell", "<Value>1.25</Value>") + DoubleReg("Reg", 0x1000) +
                                                  Node("SwissKnife", "Knife", "<Formula>1.5*2</Formula>"));
    for (const char *name : {"Cell", "Reg", "Knife"}) {
        double value = 0;
        EXPECT_TRUE(camera.Float(name).GetMin(value).IsOK()) << name;
        EXPECT_DOUBLE_EQ(value, -DBL_MAX) << name;
        EXPECT_TRUE(camera.Float(name).GetMax(value).IsOK()) << name;
        EXPECT_DOUBLE_EQ(value, DBL_MAX) << name;
    }
    EXPECT_TRUE(camera.Float("Cell").SetValue(-1e300).IsOK());
    EXPECT_DOUBLE_EQ(camera.GetFloat("Cell"), -1e300);
}

TEST(Float, TextGoesBothWays)
{
    const TestCamera camera("F", Node("Float", "F", "<Value>0</Value>"));
    for (const double value : {0.0, 0.1, -2.5, 1e300, 1.0 / 3, 12345678.9, 5e-324}) {
        EXPECT_TRUE(camera.Float("F").SetValue(value).IsOK());
        const LxString text = camera["F"].ToString();
        EXPECT_TRUE(camera.Float("F").SetValue(7).IsOK());
        EXPECT_TRUE(camera["F"].FromString(text).IsOK()) << text.GetAscii();
        EXPECT_EQ(camera.GetFloat("F"), value) << text.GetAscii();
    }
    EXPECT_TRUE(camera["F"].FromString(" +1.5e3 ").IsOK());
    EXPECT_DOUBLE_EQ(camera.GetFloat("F"), 1500);
    for (const char *wrong : {"", "1,5", "nan", "inf", "1e999", "x", "1.5x"}) {
        EXPECT_EQ(camera["F"].FromString(wrong), LxResultCode::InvalidParameter) << wrong;
    }
}

TEST(Boolean, HasItsOwnOnAndOffValues)
{
    const TestCamera camera("B", Reg("BReg", 0x1000) + Node("Boolean", "B",
                                                            "<pValue>BReg</pValue><OnValue>5</OnValue>"
                                                            "<OffValue>3</OffValue>"));
    bool value = true;
    EXPECT_TRUE(camera.Boolean("B").GetValue(value).IsOK());
    EXPECT_FALSE(value) << "neither the one nor the other is off";
    EXPECT_TRUE(camera.Boolean("B").SetValue(true).IsOK());
    EXPECT_EQ(camera.mMemory->Peek32(0x1000), 5u);
    EXPECT_EQ(camera["B"].ToString(), LxString("True"));
    EXPECT_TRUE(camera["B"].FromString("false").IsOK());
    EXPECT_EQ(camera.mMemory->Peek32(0x1000), 3u);
    EXPECT_EQ(camera["B"].ToString(), LxString("False"));
    EXPECT_TRUE(camera["B"].FromString(" 1 ").IsOK());
    EXPECT_TRUE(camera.Boolean("B").GetValue(value).IsOK());
    EXPECT_TRUE(value);
    EXPECT_EQ(camera["B"].FromString("yes"), LxResultCode::InvalidParameter);
    EXPECT_EQ(camera["B"].FromString(""), LxResultCode::InvalidParameter);
}

TEST(String, KnowsItsLength)
{
    const TestCamera camera("S Cell", TextReg("SReg", 0x1000, 8) + Node("String", "S", "<pValue>SReg</pValue>") +
                                          Node("String", "Cell", "<Value>constant</Value>"));
    int64_t length = 0;
    EXPECT_TRUE(camera.String("S").GetMaxLength(length).IsOK());
    EXPECT_EQ(length, 8);
    EXPECT_TRUE(camera.String("Cell").GetMaxLength(length).IsOK());
    EXPECT_EQ(length, INT64_MAX);
    LxString text;
    EXPECT_TRUE(camera.String("S").GetValue(text).IsOK());
    EXPECT_EQ(text, LxString(""));
    EXPECT_TRUE(camera.String("S").SetValue("12345678").IsOK());
    EXPECT_TRUE(camera.String("S").GetValue(text).IsOK());
    EXPECT_EQ(text, LxString("12345678")) << "the whole register, without a terminating zero";
    EXPECT_EQ(camera.String("S").SetValue("123456789"), LxResultCode::TooLong);
    EXPECT_TRUE(camera.String("S").SetValue("\xC2\xB5m").IsOK());
    EXPECT_EQ(camera["S"].ToString(), LxString("\xC2\xB5m")) << "a shorter text leaves nothing of the longer one";
    EXPECT_TRUE(camera["S"].FromString("ab").IsOK());
    EXPECT_EQ(camera.mMemory->PeekString(0x1000, 8), "ab");
    EXPECT_TRUE(camera["S"].FromString("").IsOK());
    EXPECT_EQ(camera["S"].ToString(), LxString(""));
    EXPECT_EQ(camera.String("S").SetValue(LxString(std::string("a\0b", 3))), LxResultCode::InvalidParameter);
    EXPECT_EQ(camera["Cell"].ToString(), LxString("constant"));
}

TEST(Register, ReadsAndWritesItsBytes)
{
    const TestCamera camera("X", Node("Register", "X",
                                      "<Address>0x1000</Address><Length>6</Length><AccessMode>RW</AccessMode>"
                                      "<pPort>Device</pPort>"));
    int64_t length = 0;
    EXPECT_TRUE(camera.Register("X").GetLength(length).IsOK());
    EXPECT_EQ(length, 6);
    const uint8_t bytes[7] = {1, 2, 3, 4, 5, 6, 7};
    EXPECT_EQ(camera.Register("X").Set(bytes, 5), LxResultCode::SizeMismatch);
    EXPECT_EQ(camera.Register("X").Set(bytes, 7), LxResultCode::SizeMismatch);
    EXPECT_EQ(camera.Register("X").Set(nullptr, 6), LxResultCode::SizeMismatch);
    EXPECT_TRUE(camera.Register("X").Set(bytes, 6).IsOK());
    uint8_t back[8] = {};
    EXPECT_EQ(camera.Register("X").Get(back, 5), LxResultCode::BufferTooSmall);
    EXPECT_EQ(camera.Register("X").Get(nullptr, 6), LxResultCode::BufferTooSmall);
    EXPECT_TRUE(camera.Register("X").Get(back, 8).IsOK());
    EXPECT_EQ(std::vector<uint8_t>(back, back + 8), (std::vector<uint8_t>{1, 2, 3, 4, 5, 6, 0, 0}));
    EXPECT_EQ(camera["X"].ToString(), LxString("{Register}"));
    EXPECT_EQ(camera["X"].FromString("0102"), LxResultCode::NotSupported);
}

TEST(Enumeration, ListsItsEntriesInDocumentOrder)
{
    const TestCamera camera(
        "E", Reg("EReg", 0x1000) + Node("Enumeration", "E",
                                        Entry("Zebra", 7, "<DisplayName>The Zebra</DisplayName>") +
                                            "<EnumEntry Name=\"Ant\" NameSpace=\"Standard\"><ToolTip>tip</ToolTip>"
                                            "<Description>text</Description><Visibility>Guru</Visibility>"
                                            "<Value>0x10</Value></EnumEntry>" +
                                            Entry("E", 2) + "<pValue>EReg</pValue>"));
    LxGenEnum &feature = camera.Enum("E");
    int64_t count = 0;
    EXPECT_TRUE(feature.GetEntriesCount(count).IsOK());
    ASSERT_EQ(count, 3);
    std::string names;
    for (int64_t i = 0; i < count; ++i) {
        const LxGenEnumEntry *entry = nullptr;
        ASSERT_TRUE(feature.GetEntryByIndex(i, &entry).IsOK());
        LxString name;
        EXPECT_TRUE(entry->GetName(name).IsOK());
        names += name.GetString() + " ";
    }
    EXPECT_EQ(names, "Zebra Ant E ") << "an entry may be called like a feature";
    const LxGenEnumEntry *entry = nullptr;
    EXPECT_EQ(feature.GetEntryByIndex(3, &entry), LxResultCode::OutOfRange);
    EXPECT_EQ(entry, nullptr);
    EXPECT_EQ(feature.GetEntryByIndex(-1, &entry), LxResultCode::OutOfRange);
    EXPECT_EQ(feature.GetEntryByIndex(0, nullptr), LxResultCode::InvalidArgument);
    ASSERT_TRUE(feature.GetEntryByValue(16, &entry).IsOK());
    LxString text;
    EXPECT_TRUE(entry->GetDisplayName(text).IsOK());
    EXPECT_EQ(text, LxString("Ant"));
    EXPECT_TRUE(entry->GetToolTip(text).IsOK());
    EXPECT_EQ(text, LxString("tip"));
    EXPECT_TRUE(entry->GetDescription(text).IsOK());
    EXPECT_EQ(text, LxString("text"));
    LxGenNameSpace nameSpace = LxGenNameSpaceUndefined;
    EXPECT_TRUE(entry->GetNameSpace(nameSpace).IsOK());
    EXPECT_EQ(nameSpace, LxGenNameSpaceStandard);
    EXPECT_FALSE(entry->IsVisible(LxGenVisibilityExpert));
    EXPECT_TRUE(entry->IsVisible(LxGenVisibilityGuru));
    int64_t value = 0;
    EXPECT_TRUE(entry->GetValue(value).IsOK());
    EXPECT_EQ(value, 16);
    EXPECT_EQ(feature.GetEntryByValue(1, &entry), LxResultCode::NotFound);
    EXPECT_EQ(entry, nullptr);
    EXPECT_TRUE(feature.GetEntryByName("Zebra", &entry).IsOK());
    EXPECT_EQ(feature.GetEntryByName("zebra", &entry), LxResultCode::NotFound);
    EXPECT_EQ(entry, nullptr);
}

TEST(Enumeration, IsSetByNumberNameAndText)
{
    const TestCamera camera(
        "E",
        Reg("EReg", 0x1000) + Node("Enumeration", "E", Entry("Off", 0) + Entry("On", 8) + "<pValue>EReg</pValue>"));
    LxGenEnum &feature = camera.Enum("E");
    EXPECT_TRUE(feature.SetValue(8).IsOK());
    EXPECT_EQ(camera.mMemory->Peek32(0x1000), 8u);
    LxString name;
    EXPECT_TRUE(feature.GetValue(name).IsOK());
    EXPECT_EQ(name, LxString("On"));
    EXPECT_TRUE(feature.SetValue("Off").IsOK());
    EXPECT_EQ(feature.ToString(), LxString("Off"));
    EXPECT_TRUE(feature.FromString("On").IsOK());
    EXPECT_EQ(feature.ToString(), LxString("On"));
    EXPECT_TRUE(feature.FromString("0").IsOK());
    EXPECT_EQ(feature.ToString(), LxString("Off"));
    EXPECT_EQ(feature.SetValue(1), LxResultCode::NotFound);
    EXPECT_EQ(feature.SetValue("Auto"), LxResultCode::NotFound);
    EXPECT_EQ(feature.FromString("Auto"), LxResultCode::InvalidParameter);
    camera.mMemory->Poke32(0x1000, 99);
    int64_t value = 0;
    EXPECT_TRUE(feature.GetValue(value).IsOK());
    EXPECT_EQ(value, 99);
    const LxResult result = feature.GetValue(name);
    EXPECT_EQ(result, LxResultCode::NotFound);
    EXPECT_EQ(result.GetDescription(), LxString("No entry has the value 99."));
    EXPECT_EQ(feature.ToString(), LxString(""));
}

TEST(Enumeration, RefusesEntriesThatAreNotAvailable)
{
    const TestCamera camera(
        "E", Reg("EReg", 0x1000) + Reg("Flag", 0x1004) +
                 Node("Enumeration", "E",
                      Entry("Always", 0) + Entry("Maybe", 1, "<pIsAvailable>Flag</pIsAvailable>") +
                          Entry("Here", 2, "<pIsImplemented>Flag</pIsImplemented>") +
                          Entry("Hidden", 3, "<Visibility>Invisible</Visibility>") + "<pValue>EReg</pValue>"));
    LxGenEnum &feature = camera.Enum("E");
    const LxGenEnumEntry *entry = nullptr;
    for (const int64_t value : {1, 2}) {
        ASSERT_TRUE(feature.GetEntryByValue(value, &entry).IsOK());
        EXPECT_FALSE(entry->IsAvailable());
        EXPECT_EQ(feature.SetValue(value), LxResultCode::NotAvailable);
    }
    EXPECT_EQ(camera.mPort->GetWriteCount(), 0u);
    camera.mMemory->Poke32(0x1004, 1);
    for (const int64_t value : {1, 2}) {
        ASSERT_TRUE(feature.GetEntryByValue(value, &entry).IsOK());
        EXPECT_TRUE(entry->IsAvailable());
        EXPECT_TRUE(feature.SetValue(value).IsOK());
    }
    EXPECT_TRUE(feature.SetValue("Hidden").IsOK()) << "visibility is for people only";
    ASSERT_TRUE(feature.GetEntryByName("Hidden", &entry).IsOK());
    EXPECT_FALSE(entry->IsVisible(LxGenVisibilityGuru));
    camera.mPort->FailRange(0x1004, 4, LxResult(LxResultCode::AccessDenied, "no"));
    bool available = true;
    ASSERT_TRUE(feature.GetEntryByValue(1, &entry).IsOK());
    EXPECT_EQ(entry->IsAvailable(available), LxResultCode::AccessDenied);
    EXPECT_FALSE(entry->IsAvailable());
    EXPECT_EQ(feature.SetValue(1), LxResultCode::AccessDenied);
}

TEST(Command, IsDoneWhenTheDeviceClearsIt)
{
    const TestCamera camera("C W Cell",
                            Reg("CReg", 0x1000) + Reg("WReg", 0x1004, "WO") +
                                Node("Command", "C", "<pValue>CReg</pValue><CommandValue>7</CommandValue>") +
                                Node("Command", "W", "<pValue>WReg</pValue><CommandValue>1</CommandValue>") +
                                Node("Command", "Cell", "<Value>0</Value><CommandValue>1</CommandValue>"));
    bool done = false;
    EXPECT_TRUE(camera.Command("C").IsDone(done).IsOK());
    EXPECT_TRUE(done);
    EXPECT_TRUE(camera.Command("C").Execute().IsOK());
    EXPECT_EQ(camera.mMemory->Peek32(0x1000), 7u);
    EXPECT_TRUE(camera.Command("C").IsDone(done).IsOK());
    EXPECT_FALSE(done);
    camera.mMemory->Poke32(0x1000, 0);
    EXPECT_TRUE(camera.Command("C").IsDone(done).IsOK());
    EXPECT_TRUE(done);

    EXPECT_TRUE(camera.Command("W").Execute().IsOK());
    EXPECT_EQ(camera.mMemory->Peek32(0x1004), 1u);
    EXPECT_TRUE(camera.Command("W").IsDone(done).IsOK());
    EXPECT_TRUE(done) << "write-only";
    EXPECT_TRUE(camera.Command("Cell").Execute().IsOK());
    EXPECT_TRUE(camera.Command("Cell").IsDone(done).IsOK());
    EXPECT_TRUE(done) << "nobody would ever clear it";
    EXPECT_EQ(camera["C"].ToString(), LxString("{Command}"));
    EXPECT_EQ(camera["C"].FromString("1"), LxResultCode::NotSupported);
    camera.mPort->FailRange(0x1000, 4, LxResult(LxResultCode::Busy, "busy"));
    EXPECT_EQ(camera.Command("C").IsDone(done), LxResultCode::Busy);
    EXPECT_EQ(camera.Command("C").Execute(), LxResultCode::Busy);
}

TEST(Command, MayTakeItsValueFromANode)
{
    const TestCamera camera("C", Reg("CReg", 0x1000) + Node("Integer", "Magic", "<Value>77</Value>") +
                                     Node("Command", "C", "<pValue>CReg</pValue><pCommandValue>Magic</pCommandValue>"));
    bool done = true;
    EXPECT_TRUE(camera.Command("C").Execute().IsOK());
    EXPECT_EQ(camera.mMemory->Peek32(0x1000), 77u);
    EXPECT_TRUE(camera.Command("C").IsDone(done).IsOK());
    EXPECT_FALSE(done);
}

TEST(Selectors, AreKnownInBothDirections)
{
    const TestCamera camera("Sel Gain Offset Flag",
                            Node("Enumeration", "Sel",
                                 Entry("Red", 0) + Entry("Blue", 1) +
                                     "<Value>0</Value><pSelected>Gain</pSelected><pSelected>Offset</pSelected>"
                                     "<pSelected>GainReg</pSelected><pSelected>Nothing</pSelected>") +
                                Node("IntReg", "GainReg",
                                     "<Address>0x1000</Address><pIndex Offset=\"4\">Sel</pIndex><Length>4</Length>"
                                     "<AccessMode>RW</AccessMode><pPort>Device</pPort>"
                                     "<Endianess>BigEndian</Endianess>") +
                                Integer("Gain", "GainReg") + Node("Integer", "Offset", "<Value>0</Value>") +
                                Node("Boolean", "Flag", "<Value>0</Value><pSelected>Offset</pSelected>"));
    LxGenParameterList list;
    EXPECT_TRUE(camera["Sel"].GetSelectedParameters(list).IsOK());
    ASSERT_EQ(list.GetCount(), 2u) << "only features";
    EXPECT_EQ(list.GetFirst(), &camera["Gain"]);
    EXPECT_EQ(list.GetNext(), &camera["Offset"]);
    EXPECT_EQ(list.GetNext(), nullptr);
    EXPECT_TRUE(camera["Offset"].GetSelectingParameters(list).IsOK());
    ASSERT_EQ(list.GetCount(), 2u);
    EXPECT_EQ(list.GetFirst(), &camera["Sel"]);
    EXPECT_EQ(list.GetNext(), &camera["Flag"]);
    EXPECT_TRUE(camera["Gain"].GetSelectedParameters(list).IsOK());
    EXPECT_EQ(list.GetCount(), 0u);
    camera.mMemory->Poke32(0x1000, 11);
    camera.mMemory->Poke32(0x1004, 22);
    EXPECT_EQ(camera.Get("Gain"), 11);
    EXPECT_TRUE(camera.Enum("Sel").SetValue("Blue").IsOK());
    EXPECT_EQ(camera.Get("Gain"), 22);
    EXPECT_TRUE(camera.Enum("Sel").SetValue("Red").IsOK());
    EXPECT_EQ(camera.Get("Gain"), 11) << "values of another index are never remembered";
}

TEST(StructReg, EntriesShareItsRegister)
{
    const TestCamera camera("Low High",
                            "<StructReg Comment=\"x\"><Address>0x1000</Address><Length>4</Length>"
                            "<AccessMode>RW</AccessMode><pPort>Device</pPort><Endianess>BigEndian"
                            "</Endianess>" +
                                Node("StructEntry", "Low", "<LSB>31</LSB><MSB>16</MSB>") +
                                Node("StructEntry", "High", "<AccessMode>RO</AccessMode><Bit>0</Bit>") +
                                "</StructReg>");
    camera.mMemory->Poke32(0x1000, 0x80001234);
    EXPECT_EQ(camera.Get("Low"), 0x1234);
    EXPECT_EQ(camera.Get("High"), 1);
    EXPECT_TRUE(camera.Int("Low").SetValue(0x4321).IsOK());
    EXPECT_EQ(camera.mMemory->Peek32(0x1000), 0x80004321u);
    EXPECT_EQ(camera.Int("High").SetValue(0), LxResultCode::NotWritable);
}

TEST(Copies, AreWrittenToo)
{
    const TestCamera camera("A", Reg("One", 0x1000) + Reg("Two", 0x1004) +
                                     Node("Integer", "A", "<pValue>One</pValue><pValueCopy>Two</pValueCopy>"));
    EXPECT_TRUE(camera.Int("A").SetValue(5).IsOK());
    EXPECT_EQ(camera.mMemory->Peek32(0x1000), 5u);
    EXPECT_EQ(camera.mMemory->Peek32(0x1004), 5u);
}

TEST(InternalNodes, AreReadAndWrittenByName)
{
    const TestCamera camera("Width", Node("Integer", "TLParamsLocked",
                                          "<Visibility>Invisible</Visibility>"
                                          "<Value>0</Value>") +
                                         Reg("WReg", 0x1000) +
                                         Integer("Width", "WReg", "<pIsLocked>TLParamsLocked</pIsLocked>"));
    CountingSink sink;
    camera["Width"].RegisterEventSink(&sink);
    EXPECT_TRUE(camera["Width"].IsWritable());
    EXPECT_TRUE(camera.mNodeMap->SetInternalInteger("TLParamsLocked", 1).IsOK());
    EXPECT_EQ(sink.Take(), 1);
    EXPECT_FALSE(camera["Width"].IsWritable());
    int64_t value = 0;
    EXPECT_TRUE(camera.mNodeMap->GetInternalInteger("TLParamsLocked", value).IsOK());
    EXPECT_EQ(value, 1);
    EXPECT_EQ(camera.mNodeMap->SetInternalInteger("Nothing", 1), LxResultCode::NotFound);
    EXPECT_EQ(camera.mNodeMap->GetInternalInteger("Nothing", value), LxResultCode::NotFound);
    EXPECT_EQ(camera.mNodeMap->SetInternalInteger("Device", 1), LxResultCode::GenICamError);
    EXPECT_TRUE(camera["Width"].UnregisterEventSink(&sink).IsOK());
}
