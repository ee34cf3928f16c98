// Descriptions that are wrong: a clear error, or a feature that fails, and never more than that.

#include <gtest/gtest.h>

#include <cfloat>
#include <functional>

#include "AskEverything.h"
#include "TestCamera.h"

namespace
{

LxResult Create(const std::string &aXML)
{
    auto port = std::make_shared<LxDetail::MemoryPort>();
    port->Map(0x1000, 0x1000);
    std::unique_ptr<LxDetail::NodeMap> nodeMap;
    const LxResult result = LxDetail::NodeMap::Create(port, aXML, nodeMap);
    EXPECT_EQ(result.IsOK(), nodeMap != nullptr);
    return result;
}

std::string Describe(const LxResult &aResult)
{
    return aResult.GetCodeString().GetString() + ": " + aResult.GetDescription().GetString();
}

}  // namespace

TEST(BrokenXML, IsRefusedWithTheReason)
{
    EXPECT_EQ(Describe(Create("")),
              "GENICAM_ERROR: The camera's XML description is broken: No document element found "
              "at byte 0.");
    EXPECT_EQ(Create("hello"), LxResultCode::GenICamError);
    EXPECT_EQ(Create(std::string("\0\1\2\3", 4)), LxResultCode::GenICamError);
    EXPECT_EQ(Create("<RegisterDescription>"), LxResultCode::GenICamError);
    EXPECT_EQ(Create("<RegisterDescription></RegisterDescriptio>"), LxResultCode::GenICamError);
    EXPECT_EQ(Describe(Create("<html></html>")),
              "GENICAM_ERROR: The camera's XML description is broken: it is no register description.");
    EXPECT_EQ(Describe(Create("<RegisterDescription></RegisterDescription>")),
              "GENICAM_ERROR: The camera's XML description is broken: it has no category \"Root\".");
    EXPECT_EQ(Create("<RegisterDescription><Integer Name=\"Root\"/></RegisterDescription>"),
              LxResultCode::GenICamError);
    EXPECT_TRUE(Create("<RegisterDescription><Category Name=\"Root\"/></RegisterDescription>").IsOK());
}

TEST(BrokenXML, TruncatedAtAnyByteIsRefused)
{
    const std::string xml = CameraXML("A", Reg("R", 0x1000) + Integer("A", "R", "<ToolTip><![CDATA[x]]></ToolTip>"));
    for (size_t length = 0; length < xml.find_last_of('>'); ++length) {
        EXPECT_EQ(Create(xml.substr(0, length)), LxResultCode::GenICamError) << length;
    }
    EXPECT_TRUE(Create(xml).IsOK());
}

TEST(BrokenXML, TooLargeOrTooDeepIsRefused)
{
    EXPECT_EQ(Describe(Create(std::string((64u << 20) + 1, ' '))),
              "GENICAM_ERROR: The camera's XML description is broken: it is larger than 64 MiB.");
    std::string deep = "<RegisterDescription>";
    for (int i = 0; i < 100000; ++i) {
        deep += "<Group>";
    }
    for (int i = 0; i < 100000; ++i) {
        deep += "</Group>";
    }
    EXPECT_EQ(Describe(Create(deep + "</RegisterDescription>")),
              "GENICAM_ERROR: The camera's XML description is broken: its elements are nested too deeply.");
}

TEST(BrokenXML, EntitiesAreNotExpanded)
{
    const std::string xml = "<?xml version=\"1.0\"?><!DOCTYPE x [<!ENTITY a \"aaaa\"><!ENTITY b \"&a;&a;&a;\">]>" +
                            CameraXML("A", Node("Integer", "A", "<ToolTip>&b;</ToolTip><Value>1</Value>"))
                                .substr(std::string("<?xml version=\"1.0\" encoding=\"utf-8\"?>\n").size());
    EXPECT_TRUE(Create(xml).IsOK());
}

TEST(BrokenXML, BytesThatAreNoTextInTipsDoNotMatter)
{
    const TestCamera camera("A", Node("Integer", "A", "<ToolTip>\xB5 \x01 \xFF</ToolTip><Value>7\x02</Value>"));
    camera.Get("A");
    LxString tip;
    EXPECT_TRUE(camera["A"].GetToolTip(tip).IsOK());
}

TEST(BrokenXML, UTF16IsRead)
{
    const std::string plain = CameraXML("A", Node("Integer", "A", "<Value>5</Value>")).substr(39);
    std::string wide = "\xFF\xFE";
    for (const char c : plain) {
        wide += c;
        wide += '\0';
    }
    EXPECT_TRUE(Create(wide).IsOK());
}

TEST(BrokenXML, DanglingReferencesFailInTheFeature)
{
    const TestCamera camera(
        "Value Min Impl Avail Lock Var Entry Reg Good",
        Node("Integer", "Value", "<pValue>Nothing</pValue>") +
            Node("Integer", "Min", "<Value>1</Value><pMin>Nothing</pMin>") +
            Node("Integer", "Impl", "<Value>1</Value><pIsImplemented>Nothing</pIsImplemented>") +
            Node("Integer", "Avail", "<Value>1</Value><pIsAvailable>Nothing</pIsAvailable>") +
            Node("Integer", "Lock", "<Value>1</Value><pIsLocked>Nothing</pIsLocked>") +
            Node("IntSwissKnife", "Var", "<pVariable Name=\"X\">Nothing</pVariable><Formula>X</Formula>") +
            Node("Enumeration", "Entry",
                 Node("EnumEntry", "E", "<Value>1</Value><pIsAvailable>Nothing</pIsAvailable>") + "<Value>1</Value>") +
            Node("IntReg", "Reg",
                 "<pAddress>Nothing</pAddress><Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>") +
            Node("Integer", "Good", "<Value>1</Value>"));
    int64_t value = 0;
    bool answer = true;
    EXPECT_EQ(Describe(camera.Int("Value").GetValue(value)),
              "GENICAM_ERROR: The camera's XML description contradicts itself. Node \"Value\": pValue names "
              "\"Nothing\", which does not exist.");
    EXPECT_EQ(camera.Int("Value").SetValue(1), LxResultCode::GenICamError);
    EXPECT_EQ(camera.Int("Min").GetMin(value), LxResultCode::GenICamError);
    EXPECT_EQ(camera.Int("Min").SetValue(1), LxResultCode::GenICamError);
    EXPECT_TRUE(camera.Int("Min").GetValue(value).IsOK());
    EXPECT_EQ(camera["Impl"].IsImplemented(answer), LxResultCode::GenICamError);
    EXPECT_EQ(camera.Int("Impl").GetValue(value), LxResultCode::GenICamError);
    EXPECT_EQ(camera["Avail"].IsAvailable(answer), LxResultCode::GenICamError);
    EXPECT_EQ(camera["Lock"].IsWritable(answer), LxResultCode::GenICamError);
    EXPECT_EQ(camera.Int("Var").GetValue(value), LxResultCode::GenICamError);
    EXPECT_EQ(camera.Enum("Entry").SetValue(1), LxResultCode::GenICamError);
    EXPECT_EQ(camera.Int("Reg").GetValue(value), LxResultCode::GenICamError);
    EXPECT_EQ(camera.Get("Good"), 1);
}

TEST(BrokenXML, CirclesOfValuesFailInTheFeature)
{
    const TestCamera camera(
        "Self A B C Knife Conv Index Sees Length Enum Cmd",
        Node("Integer", "Self", "<pValue>Self</pValue>") + Integer("A", "B") + Integer("B", "C") + Integer("C", "A") +
            Node("SwissKnife", "Knife", "<pVariable Name=\"X\">Conv</pVariable><Formula>X</Formula>") +
            Node("Converter", "Conv",
                 "<pVariable Name=\"X\">Knife</pVariable><FormulaTo>FROM</FormulaTo><FormulaFrom>TO</FormulaFrom>"
                 "<Value>1</Value>") +
            Node("IntReg", "Index",
                 "<Address>0x1000</Address><pIndex Offset=\"4\">Index</pIndex><Length>4</Length>"
                 "<AccessMode>RW</AccessMode><pPort>Device</pPort>") +
            Node("Integer", "Sees", "<Value>1</Value><pMax>A</pMax>") +
            Node("Register", "Length",
                 "<Address>0x1000</Address><pLength>LengthReg</pLength><AccessMode>RW</AccessMode>"
                 "<pPort>Device</pPort>") +
            Node("IntReg", "LengthReg",
                 "<Address>0x1000</Address><pLength>LengthReg</pLength><AccessMode>RW</AccessMode>"
                 "<pPort>Device</pPort>") +
            Node("Enumeration", "Enum", Node("EnumEntry", "E", "<Value>1</Value>") + "<pValue>Enum</pValue>") +
            Node("Command", "Cmd", "<pValue>Cmd</pValue><pCommandValue>Cmd</pCommandValue>"));
    int64_t value = 0;
    double real = 0;
    bool answer = false;
    for (const char *name : {"Self", "A", "B", "C", "Index"}) {
        EXPECT_EQ(camera.Int(name).GetValue(value), LxResultCode::GenICamError) << name;
        EXPECT_EQ(camera.Int(name).SetValue(1), LxResultCode::GenICamError) << name;
        EXPECT_EQ(camera.Int(name).GetMax(value), LxResultCode::GenICamError) << name;
    }
    EXPECT_EQ(Describe(camera.Int("Self").GetValue(value)),
              "GENICAM_ERROR: The camera's XML description contradicts itself. Node \"Self\": its value depends on "
              "itself through \"Self\".");
    EXPECT_EQ(camera["A"].IsAvailable(answer), LxResultCode::GenICamError);
    EXPECT_EQ(camera.Float("Knife").GetValue(real), LxResultCode::GenICamError);
    EXPECT_EQ(camera.Float("Conv").GetValue(real), LxResultCode::GenICamError);
    EXPECT_EQ(camera.Int("Sees").GetMax(value), LxResultCode::GenICamError);
    EXPECT_EQ(camera.Get("Sees"), 1);
    EXPECT_EQ(camera.Register("Length").GetLength(value), LxResultCode::GenICamError);
    EXPECT_EQ(camera.Enum("Enum").GetValue(value), LxResultCode::GenICamError);
    EXPECT_EQ(camera.Command("Cmd").Execute(), LxResultCode::GenICamError);
    EXPECT_EQ(camera.Command("Cmd").IsDone(answer), LxResultCode::GenICamError);
}

TEST(BrokenXML, LimitsThatNameEachOtherAreNoCircle)
{
    // the usual way to say that an offset and a size fill the sensor together
    const TestCamera camera(
        "Width OffsetX",
        Reg("W", 0x1000) + Reg("X", 0x1004) + Integer("Width", "W", "<pMax>WidthMax</pMax>") +
            Integer("OffsetX", "X", "<pMax>OffsetMax</pMax>") +
            Node("IntSwissKnife", "WidthMax", "<pVariable Name=\"O\">OffsetX</pVariable><Formula>640-O</Formula>") +
            Node("IntSwissKnife", "OffsetMax", "<pVariable Name=\"W\">Width</pVariable><Formula>640-W</Formula>"));
    EXPECT_TRUE(camera.Int("Width").SetValue(600).IsOK());
    EXPECT_EQ(camera.Int("OffsetX").SetValue(41), LxResultCode::OutOfRange);
    EXPECT_TRUE(camera.Int("OffsetX").SetValue(40).IsOK());
    EXPECT_EQ(camera.Int("Width").SetValue(601), LxResultCode::OutOfRange);
}

TEST(BrokenXML, InvalidatorsAndConditionsThatNameEachOtherAreNoCircle)
{
    const TestCamera camera("A B", Reg("A", 0x1000, "RW",
                                       "<pInvalidator>B</pInvalidator>"
                                       "<pIsAvailable>B</pIsAvailable>") +
                                       Reg("B", 0x1004, "RW",
                                           "<pInvalidator>A</pInvalidator>"
                                           "<pIsLocked>A</pIsLocked>"));
    CountingSink sink;
    camera["A"].RegisterEventSink(&sink);
    EXPECT_TRUE(camera.Int("B").SetValue(1).IsOK());
    EXPECT_EQ(sink.Take(), 1);
    EXPECT_TRUE(camera.Int("A").SetValue(1).IsOK());
    EXPECT_FALSE(camera["B"].IsWritable());
    camera["A"].UnregisterEventSink(&sink);
}

TEST(BrokenXML, CirclesOfCategoriesEnd)
{
    const TestCamera camera("Cat", Node("Category", "Cat", "<pFeature>Sub</pFeature><pFeature>A</pFeature>") +
                                       Node("Category", "Sub",
                                            "<pFeature>Cat</pFeature><pFeature>Root</pFeature>"
                                            "<pFeature>Sub</pFeature><pFeature>A</pFeature>") +
                                       Node("Integer", "A", "<Value>1</Value>"));
    ASSERT_EQ(camera.mParameters->GetCount(), 1u);
    LxString path;
    EXPECT_TRUE(camera["A"].GetCategory(path).IsOK());
    EXPECT_EQ(path, LxString("Root\\Cat\\Sub"));
}

TEST(BrokenXML, ChainsAndFansWithoutEndFail)
{
    std::string chain;
    for (int i = 0; i < 20000; ++i) {
        chain += Integer("N" + std::to_string(i), "N" + std::to_string(i + 1));
    }
    chain += Node("Integer", "N20000", "<Value>1</Value>");
    std::string fan;
    for (int i = 0; i < 64; ++i) {
        const std::string next = "F" + std::to_string(i + 1);
        fan += Node("IntSwissKnife", "F" + std::to_string(i),
                    "<pVariable Name=\"A\">" + next + "</pVariable><pVariable Name=\"B\">" + next +
                        "</pVariable><Formula>A+B</Formula>");
    }
    fan += Node("Integer", "F64", "<Value>1</Value>");
    const TestCamera camera("N0 N19950 F0 F60", chain + fan);
    int64_t value = 0;
    EXPECT_EQ(camera.Int("N0").GetValue(value), LxResultCode::GenICamError);
    EXPECT_EQ(camera.Get("N19950"), 1);
    EXPECT_EQ(camera.Int("F0").GetValue(value), LxResultCode::GenICamError);
    EXPECT_EQ(camera.Get("F60"), 16);
}

TEST(BrokenXML, LengthsWithoutMeasureFail)
{
    std::string nodes = Reg("Len", 0x1F00);
    std::string names;
    const auto add = [&](const std::string &aKind, const std::string &aLength) {
        const std::string name = "X" + std::to_string(nodes.size());
        nodes += Node(aKind, name,
                      "<Address>0x1000</Address>" + aLength + "<AccessMode>RW</AccessMode><pPort>Device</pPort>");
        names += name + " ";
    };
    for (const char *kind : {"IntReg", "FloatReg", "StringReg", "Register", "MaskedIntReg"}) {
        for (const char *length : {"<Length>-1</Length>", "<Length>0</Length>", "<Length>0x7FFFFFFFFFFFFFFF</Length>",
                                   "<Length>x</Length>", "<pLength>Len</pLength>"})
        {
            add(kind, length);
        }
    }
    const TestCamera camera(names, nodes);
    ASSERT_EQ(camera.mParameters->GetCount(), 25u);
    for (const uint32_t length : {0u, 0xFFFFFFFFu}) {
        camera.mMemory->Poke32(0x1F00, length);
        for (uint32_t i = 0; i < camera.mParameters->GetCount(); ++i) {
            LxGenParameter &feature = *(*camera.mParameters)[i];
            AskEverything(feature);
            EXPECT_EQ(feature.ToString(), LxString(dynamic_cast<LxGenRegister *>(&feature) ? "{Register}" : ""));
        }
    }
}

TEST(BrokenXML, OddLengthsOfNumbersDoNoHarm)
{
    std::string nodes;
    std::string names;
    for (const char *kind : {"IntReg", "FloatReg", "MaskedIntReg"}) {
        for (int length = 1; length <= 64; length += length < 12 ? 1 : 26) {
            for (const char *order : {"BigEndian", "LittleEndian"}) {
                const std::string name = "X" + std::to_string(nodes.size());
                nodes += Node(kind, name,
                              "<Address>0x1000</Address><Length>" + std::to_string(length) +
                                  "</Length><AccessMode>RW</AccessMode><pPort>Device</pPort><Endianess>" + order +
                                  "</Endianess><LSB>0</LSB><MSB>7</MSB><Sign>Signed</Sign>");
                names += name + " ";
            }
        }
    }
    const TestCamera camera(names, nodes);
    for (uint32_t i = 0; i < camera.mParameters->GetCount(); ++i) {
        AskEverything(*(*camera.mParameters)[i]);
    }
}

TEST(BrokenXML, OddBitsOfMaskedRegistersDoNoHarm)
{
    std::string nodes;
    std::string names;
    for (const char *lsb : {"-1", "0", "31", "32", "63", "64", "99999999999", "x"}) {
        for (const char *msb : {"-1", "0", "31", "32", "64", "-99999999999"}) {
            for (const char *order : {"BigEndian", "LittleEndian"}) {
                for (const char *sign : {"Signed", "Unsigned"}) {
                    const std::string name = "X" + std::to_string(nodes.size());
                    nodes += Node("MaskedIntReg", name,
                                  std::string("<Address>0x1000</Address><Length>4</Length><AccessMode>RW</AccessMode>"
                                              "<pPort>Device</pPort><Endianess>") +
                                      order + "</Endianess><LSB>" + lsb + "</LSB><MSB>" + msb + "</MSB><Sign>" + sign +
                                      "</Sign>");
                    names += name + " ";
                }
            }
        }
    }
    const TestCamera camera(names, nodes);
    for (uint32_t i = 0; i < camera.mParameters->GetCount(); ++i) {
        AskEverything(*(*camera.mParameters)[i]);
    }
}

TEST(BrokenXML, FormulasThatAreNoneDoNoHarm)
{
    const std::string deep(5000, '(');
    std::string ternary = "1";
    for (int i = 0; i < 1000; ++i) {
        ternary = "1?" + ternary + ":0";
    }
    std::string nodes = Reg("R", 0x1000);
    std::string names;
    for (const std::string &formula : {std::string(""),
                                       std::string("("),
                                       std::string(")"),
                                       std::string("1+"),
                                       std::string("1/0"),
                                       std::string("1%0"),
                                       std::string("&lt;&lt;"),
                                       std::string("1&lt;&lt;1000"),
                                       std::string("1&lt;&lt;(0-1)"),
                                       std::string("1&gt;&gt;64"),
                                       std::string("X"),
                                       std::string("UNKNOWN"),
                                       std::string("SIN"),
                                       std::string("SIN("),
                                       std::string("SIN()"),
                                       std::string("ROUND(1,2,3)"),
                                       std::string("?:"),
                                       std::string("1?2"),
                                       std::string("2**1000"),
                                       std::string("2**(0-1)"),
                                       std::string("(0-9223372036854775807-1)/(0-1)"),
                                       std::string("(0-9223372036854775807-1)%(0-1)"),
                                       std::string("0x"),
                                       std::string("1e999"),
                                       std::string("99999999999999999999999"),
                                       std::string("SQRT(0-1)"),
                                       std::string("LN(0)"),
                                       deep,
                                       deep + "1",
                                       std::string(5000, '-') + "1",
                                       std::string(5000, '~') + "1",
                                       std::string(9000, '1'),
                                       ternary,
                                       std::string("1") + std::string(2000, '+'),
                                       std::string("\xC3\xA4"),
                                       std::string(",")})
    {
        for (const char *kind : {"SwissKnife", "IntSwissKnife"}) {
            const std::string name = "K" + std::to_string(nodes.size());
            nodes += Node(kind, name, "<pVariable Name=\"X\">R</pVariable><Formula>" + formula + "</Formula>");
            names += name + " ";
        }
        for (const char *kind : {"Converter", "IntConverter"}) {
            const std::string name = "C" + std::to_string(nodes.size());
            nodes += Node(kind, name,
                          "<pVariable Name=\"X\">R</pVariable><FormulaTo>" + formula + "</FormulaTo><FormulaFrom>" +
                              formula + "</FormulaFrom><pValue>R</pValue>");
            names += name + " ";
        }
    }
    const TestCamera camera(names, nodes);
    for (uint32_t i = 0; i < camera.mParameters->GetCount(); ++i) {
        AskEverything(*(*camera.mParameters)[i]);
    }
}

TEST(BrokenXML, ExpressionsThatNameEachOtherDoNoHarm)
{
    const TestCamera camera(
        "A B",
        Node("IntSwissKnife", "A",
             "<Expression Name=\"X\">Y</Expression><Expression Name=\"Y\">X</Expression><Formula>X</Formula>") +
            Node("IntSwissKnife", "B",
                 "<Expression Name=\"X\">X+X</Expression><Constant Name=\"X\">1</Constant><Formula>X</Formula>"));
    AskEverything(camera["A"]);
    AskEverything(camera["B"]);
}

TEST(BrokenXML, NodesOfTheWrongKindFailInTheFeature)
{
    const TestCamera camera(
        "IntOnText BoolOnText EnumOnCat FloatOnCmd Avail Index Cmd TextOnInt",
        Node("String", "Text", "<Value>x</Value>") + Node("Category", "Cat") +
            Node("Command", "Command", "<Value>0</Value><CommandValue>1</CommandValue>") +
            Integer("IntOnText", "Text") + Node("Boolean", "BoolOnText", "<pValue>Text</pValue>") +
            Node("Enumeration", "EnumOnCat", Node("EnumEntry", "E", "<Value>1</Value>") + "<pValue>Cat</pValue>") +
            Node("Float", "FloatOnCmd", "<pValue>Command</pValue>") +
            Node("Integer", "Avail", "<Value>1</Value><pIsAvailable>Text</pIsAvailable>") +
            Node("IntReg", "Index",
                 "<Address>0x1000</Address><pIndex Offset=\"4\">Text</pIndex><Length>4</Length>"
                 "<AccessMode>RW</AccessMode><pPort>Text</pPort>") +
            Node("Command", "Cmd", "<pValue>Text</pValue><CommandValue>1</CommandValue>") +
            Node("String", "TextOnInt", "<pValue>IntOnText</pValue>"));
    for (uint32_t i = 0; i < camera.mParameters->GetCount(); ++i) {
        AskEverything(*(*camera.mParameters)[i]);
    }
    int64_t value = 0;
    bool answer = true;
    EXPECT_EQ(camera.Int("IntOnText").GetValue(value), LxResultCode::GenICamError);
    EXPECT_EQ(camera["Avail"].IsAvailable(answer), LxResultCode::GenICamError);
}

TEST(BrokenXML, EveryLoneNodeDoesNoHarm)
{
    std::string nodes;
    std::string names;
    for (const char *kind :
         {"Integer",       "Float",        "Boolean",      "Enumeration", "String",      "Command",
          "IntReg",        "MaskedIntReg", "FloatReg",     "StringReg",   "Register",    "SwissKnife",
          "IntSwissKnife", "Converter",    "IntConverter", "Port",        "StructEntry", "Category",
          "Node",          "Nonsense",     "EnumEntry",    "Group",       "ConfRom"})
    {
        nodes += Node(kind, std::string("The") + kind);
        names += std::string("The") + kind + " ";
    }
    const TestCamera camera(names, nodes);
    EXPECT_GE(camera.mParameters->GetCount(), 15u);
    for (uint32_t i = 0; i < camera.mParameters->GetCount(); ++i) {
        AskEverything(*(*camera.mParameters)[i]);
    }
}

TEST(BrokenXML, NodesWithoutWhatTheyNeedFail)
{
    const TestCamera camera(
        "NoValue NoCommand NoPort NoTarget NoName NoTable",
        Node("Integer", "NoValue") + Node("Command", "NoCommand", "<Value>0</Value>") +
            Node("IntReg", "NoPort", "<Address>0x1000</Address><Length>4</Length><AccessMode>RW</AccessMode>") +
            Node("Converter", "NoTarget", "<FormulaTo>FROM</FormulaTo><FormulaFrom>TO</FormulaFrom>") +
            Node("IntSwissKnife", "NoName", "<pVariable>NoPort</pVariable><Formula>1</Formula>") +
            Node("Boolean", "NoTable", "<pIndex>NoValue</pIndex><ValueDefault>1</ValueDefault>"));
    int64_t value = 0;
    double real = 0;
    bool boolean = false;
    const std::string start = "The camera's XML description contradicts itself. Node ";
    EXPECT_EQ(camera.Int("NoValue").GetValue(value).GetDescription().GetString(),
              start + "\"NoValue\": it has no value.");
    EXPECT_EQ(camera.Command("NoCommand").Execute().GetDescription().GetString(),
              start + "\"NoCommand\": it has no command value.");
    EXPECT_EQ(camera.Int("NoPort").GetValue(value).GetDescription().GetString(),
              start + "\"NoPort\": it names no port.");
    EXPECT_EQ(camera.Float("NoTarget").GetValue(real), LxResultCode::GenICamError);
    EXPECT_EQ(camera.Int("NoName").GetValue(value), LxResultCode::GenICamError);
    EXPECT_EQ(camera.Boolean("NoTable").GetValue(boolean), LxResultCode::GenICamError);
    EXPECT_EQ(camera.Boolean("NoTable").SetValue(true), LxResultCode::GenICamError);
}

TEST(BrokenXML, OfTwoNodesOfOneNameTheLastCounts)
{
    const TestCamera camera("A", Node("Integer", "A", "<Value>1</Value>") + Node("Integer", "A", "<Value>2</Value>"));
    EXPECT_EQ(camera.mParameters->GetCount(), 1u);
    EXPECT_EQ(camera.Get("A"), 2);
}

TEST(BrokenXML, AFormulaThatFailsInALimitDoesNotForbidWriting)
{
    const TestCamera camera("F", Reg("R", 0x1000) + Node("Converter", "F",
                                                         "<FormulaTo>1000/FROM</FormulaTo>"
                                                         "<FormulaFrom>1000/TO</FormulaFrom><pValue>R</pValue>"));
    EXPECT_TRUE(camera.Float("F").SetValue(10).IsOK());
    EXPECT_EQ(camera.mMemory->Peek32(0x1000), 100u);
    EXPECT_DOUBLE_EQ(camera.GetFloat("F"), 10);
}
