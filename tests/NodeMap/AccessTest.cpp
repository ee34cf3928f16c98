// Access modes, availability and locks (GenApi standard).

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "TestCamera.h"

namespace
{

// The state in the standard's words, after a check that the four answers agree.
std::string State(const LxGenParameter &aFeature)
{
    const bool implemented = aFeature.IsImplemented();
    const bool available = aFeature.IsAvailable();
    const bool readable = aFeature.IsReadable();
    const bool writable = aFeature.IsWritable();
    EXPECT_TRUE(implemented || !available);
    EXPECT_EQ(available, readable || writable);
    return !implemented ? "NI" : !available ? "NA" : readable && writable ? "RW" : readable ? "RO" : "WO";
}

// Node content that gives the access mode.
std::string Access(const std::string &aMode)
{
    return aMode == "NI"   ? "<pIsImplemented>Zero</pIsImplemented>"
           : aMode == "NA" ? "<pIsAvailable>Zero</pIsAvailable>"
                           : "<ImposedAccessMode>" + aMode + "</ImposedAccessMode>";
}

const std::string Constants = Node("Integer", "Zero", "<Value>0</Value>") + Node("Integer", "One", "<Value>1</Value>");

}  // namespace

TEST(Access, CombinesWithTheNodeBehind)
{
    const char *const modes[] = {"NI", "NA", "WO", "RO", "RW"};
    const char *const table[5][5] = {{"NI", "NI", "NI", "NI", "NI"},
                                     {"NI", "NA", "NA", "NA", "NA"},
                                     {"NI", "NA", "WO", "NA", "WO"},
                                     {"NI", "NA", "NA", "RO", "RO"},
                                     {"NI", "NA", "WO", "RO", "RW"}};
    for (int front = 0; front < 5; ++front) {
        for (int behind = 0; behind < 5; ++behind) {
            const TestCamera camera("A", Constants + Reg("AReg", 0x1000, "RW", Access(modes[behind])) +
                                             Integer("A", "AReg", Access(modes[front])));
            EXPECT_EQ(State(camera["A"]), table[front][behind]) << modes[front] << " on " << modes[behind];
        }
    }
}

TEST(Access, IsThatOfTheRegister)
{
    const TestCamera camera(
        "R W RW None",
        Reg("RReg", 0x1000, "RO") + Reg("WReg", 0x1004, "WO") + Reg("RWReg", 0x1008, "RW") +
            Node("IntReg", "NoneReg", "<Address>0x1000</Address><Length>4</Length><pPort>Device</pPort>") +
            Integer("R", "RReg") + Integer("W", "WReg") + Integer("RW", "RWReg") + Integer("None", "NoneReg"));
    EXPECT_EQ(State(camera["R"]), "RO");
    EXPECT_EQ(State(camera["W"]), "WO");
    EXPECT_EQ(State(camera["RW"]), "RW");
    EXPECT_EQ(State(camera["None"]), "RO") << "the standard's default";
    EXPECT_EQ(camera.mPort->GetReadCount(), 0u) << "nothing of this depends on the device";
    int64_t value = 0;
    EXPECT_EQ(camera.Int("W").GetValue(value), LxResultCode::NotReadable);
    EXPECT_TRUE(camera.Int("W").SetValue(3).IsOK());
    EXPECT_EQ(camera["W"].ToString(), LxString(""));
    EXPECT_EQ(camera.Int("R").SetValue(3), LxResultCode::NotWritable);
    EXPECT_EQ(camera.Int("R").SetValue(3).GetDescription(), LxString("The feature can only be read."));
}

TEST(Access, FollowsTheWholeChain)
{
    const TestCamera camera("Top", Reg("Flag", 0x1004) +
                                       Reg("Bottom", 0x1000, "RW", "<pIsAvailable>Flag</pIsAvailable>") +
                                       Integer("Middle", "Bottom") + Integer("Top", "Middle"));
    EXPECT_EQ(State(camera["Top"]), "NA");
    int64_t value = 0;
    EXPECT_EQ(camera.Int("Top").GetValue(value), LxResultCode::NotReadable);
    EXPECT_EQ(camera.Int("Top").SetValue(1), LxResultCode::NotWritable);
    camera.mMemory->Poke32(0x1004, 1);
    EXPECT_EQ(State(camera["Top"]), "RW") << "asked at every access, never remembered";
    EXPECT_TRUE(camera.Int("Top").SetValue(1).IsOK());
}

TEST(Access, LockTakesWritingAway)
{
    for (const bool behind : {false, true}) {
        const std::string lock = "<pIsLocked>Lock</pIsLocked>";
        const auto reg = [&](const char *aName, unsigned aAddress, const char *aMode) {
            return Reg(aName, aAddress, aMode, behind ? lock : "");
        };
        const TestCamera camera(
            "RW RO WO", Reg("Lock", 0x1010) + reg("RWReg", 0x1000, "RW") + reg("ROReg", 0x1004, "RO") +
                            reg("WOReg", 0x1008, "WO") + Integer("RW", "RWReg", behind ? "" : lock) +
                            Integer("RO", "ROReg", behind ? "" : lock) + Integer("WO", "WOReg", behind ? "" : lock));
        EXPECT_EQ(State(camera["RW"]), "RW");
        EXPECT_EQ(State(camera["RO"]), "RO");
        EXPECT_EQ(State(camera["WO"]), "WO");
        camera.mMemory->Poke32(0x1010, 2);
        EXPECT_EQ(State(camera["RW"]), "RO");
        EXPECT_EQ(State(camera["RO"]), "RO");
        EXPECT_EQ(State(camera["WO"]), "NA");
        EXPECT_EQ(camera.Int("RW").SetValue(1), LxResultCode::NotWritable);
        EXPECT_EQ(camera.Int("RW").SetValue(1).GetDescription(), LxString("The feature is locked at the moment."));
        EXPECT_EQ(camera.mPort->GetWriteCount(), 0u);
    }
}

TEST(Access, ConditionsMayBeOfAnyNumberKind)
{
    const TestCamera camera("B F E SK",
                            Reg("Flag", 0x1000) + Node("Boolean", "Bool", "<pValue>Flag</pValue><OnValue>5</OnValue>") +
                                Node("Float", "Real", "<pValue>Flag</pValue>") +
                                Node("Enumeration", "Choice",
                                     Node("EnumEntry", "No", "<Value>0</Value>") +
                                         Node("EnumEntry", "Yes", "<Value>5</Value>") + "<pValue>Flag</pValue>") +
                                Node("IntSwissKnife", "Formula",
                                     "<pVariable Name=\"V\">Flag</pVariable>"
                                     "<Formula>V=5</Formula>") +
                                Node("Integer", "B", "<Value>1</Value><pIsAvailable>Bool</pIsAvailable>") +
                                Node("Integer", "F", "<Value>1</Value><pIsAvailable>Real</pIsAvailable>") +
                                Node("Integer", "E", "<Value>1</Value><pIsAvailable>Choice</pIsAvailable>") +
                                Node("Integer", "SK", "<Value>1</Value><pIsAvailable>Formula</pIsAvailable>"));
    for (const char *name : {"B", "F", "E", "SK"}) {
        EXPECT_EQ(State(camera[name]), "NA") << name;
    }
    camera.mMemory->Poke32(0x1000, 5);
    for (const char *name : {"B", "F", "E", "SK"}) {
        EXPECT_EQ(State(camera[name]), "RW") << name;
    }
}

TEST(Access, OfOtherKindsFollowsTheSameRules)
{
    const std::string locked = "<pIsLocked>One</pIsLocked>";
    const TestCamera camera(
        "E B C F S X",
        Constants + Reg("R", 0x1000) +
            Node("Enumeration", "E", Node("EnumEntry", "No", "<Value>0</Value>") + locked + "<pValue>R</pValue>") +
            Node("Boolean", "B", locked + "<pValue>R</pValue>") +
            Node("Command", "C", locked + "<pValue>R</pValue><CommandValue>1</CommandValue>") +
            Node("Float", "F", locked + "<pValue>R</pValue>") + Node("String", "S", locked + "<Value>x</Value>") +
            Node("Register", "X",
                 locked + "<Address>0x1000</Address><Length>4</Length>"
                          "<AccessMode>RW</AccessMode><pPort>Device</pPort>"));
    for (const char *name : {"E", "B", "C", "F", "S", "X"}) {
        EXPECT_EQ(State(camera[name]), "RO") << name;
    }
    const uint8_t bytes[4] = {};
    EXPECT_EQ(camera.Enum("E").SetValue(0), LxResultCode::NotWritable);
    EXPECT_EQ(camera.Enum("E").SetValue(77), LxResultCode::NotWritable) << "before the entry is looked for";
    EXPECT_EQ(camera.Boolean("B").SetValue(true), LxResultCode::NotWritable);
    EXPECT_EQ(camera.Command("C").Execute(), LxResultCode::NotWritable);
    EXPECT_EQ(camera.Float("F").SetValue(1), LxResultCode::NotWritable);
    EXPECT_EQ(camera.String("S").SetValue("y"), LxResultCode::NotWritable);
    EXPECT_EQ(camera.Register("X").Set(bytes, 4), LxResultCode::NotWritable);
    EXPECT_EQ(camera.mPort->GetWriteCount(), 0u);
}

TEST(Access, ConvertersAreAsWritableAsTheirFormulas)
{
    const TestCamera camera("Both From To",
                            Reg("R", 0x1000) +
                                Node("Converter", "Both",
                                     "<FormulaTo>FROM</FormulaTo><FormulaFrom>TO</FormulaFrom>"
                                     "<pValue>R</pValue>") +
                                Node("Converter", "From", "<FormulaFrom>TO</FormulaFrom><pValue>R</pValue>") +
                                Node("Converter", "To", "<FormulaTo>FROM</FormulaTo><pValue>R</pValue>"));
    EXPECT_EQ(State(camera["Both"]), "RW");
    EXPECT_EQ(State(camera["From"]), "RO");
    EXPECT_EQ(State(camera["To"]), "WO");
}

namespace
{

struct ReadOnlyPort : LxDetail::MemoryPort
{
    bool IsWritable() const override { return mIsWritable; }
    bool mIsWritable = false;
};

}  // namespace

TEST(Access, NothingIsWritableWithoutControl)
{
    const auto port = std::make_shared<ReadOnlyPort>();
    port->Map(0x1000, 0x10);
    std::unique_ptr<LxDetail::NodeMap> nodeMap;
    ASSERT_TRUE(LxDetail::NodeMap::Create(port, CameraXML("A", Reg("R", 0x1000) + Integer("A", "R")), nodeMap).IsOK());
    LxGenInteger *feature = nodeMap->GetParameters()->GetInteger("A");
    EXPECT_TRUE(feature->IsReadable());
    EXPECT_FALSE(feature->IsWritable());
    EXPECT_EQ(feature->SetValue(1), LxResultCode::NotWritable);
    port->mIsWritable = true;
    EXPECT_TRUE(feature->IsWritable());
    EXPECT_TRUE(feature->SetValue(1).IsOK());
}

TEST(Access, CategoriesAreImplementedByTheirCondition)
{
    const TestCamera camera(
        "Cat Other", Reg("Flag", 0x1000) +
                         Node("Category", "Cat",
                              "<pIsImplemented>Flag</pIsImplemented>"
                              "<pFeature>A</pFeature>") +
                         Node("Category", "Other", "<pIsImplemented>Nothing</pIsImplemented><pFeature>B</pFeature>") +
                         Node("Integer", "A", "<Value>1</Value>") + Node("Integer", "B", "<Value>1</Value>"));
    const LxGenCategory *category = camera.mParameters->GetCategory("Root\\Cat");
    ASSERT_NE(category, nullptr);
    EXPECT_FALSE(category->IsImplemented());
    camera.mMemory->Poke32(0x1000, 1);
    EXPECT_TRUE(category->IsImplemented());
    bool implemented = true;
    EXPECT_EQ(camera.mParameters->GetCategory("Other")->IsImplemented(implemented), LxResultCode::GenICamError);
    EXPECT_FALSE(implemented);
}

TEST(Access, ErrorsOfTheDeviceAreToldAndTheBoolFormsSayNo)
{
    const TestCamera camera("I A L", Reg("Flag", 0x1000) + Reg("R", 0x1004) +
                                         Integer("I", "R", "<pIsImplemented>Flag</pIsImplemented>") +
                                         Integer("A", "R", "<pIsAvailable>Flag</pIsAvailable>") +
                                         Integer("L", "R", "<pIsLocked>Flag</pIsLocked>"));
    camera.mPort->FailRange(0x1000, 4, LxResult(LxResultCode::AccessDenied, "Go away."));
    bool answer = true;
    EXPECT_EQ(camera["I"].IsImplemented(answer), LxResultCode::AccessDenied);
    EXPECT_FALSE(answer);
    EXPECT_EQ(camera["A"].IsAvailable(answer), LxResultCode::AccessDenied);
    EXPECT_EQ(camera["A"].IsReadable(answer), LxResultCode::AccessDenied);
    EXPECT_EQ(camera["L"].IsWritable(answer), LxResultCode::AccessDenied);
    EXPECT_EQ(camera["L"].IsWritable(answer).GetDescription(), LxString("Go away."));
    EXPECT_TRUE(camera["L"].IsReadable(answer).IsOK());
    EXPECT_TRUE(answer);
    EXPECT_FALSE(camera["I"].IsImplemented());
    EXPECT_FALSE(camera["A"].IsAvailable());
    EXPECT_FALSE(camera["A"].IsReadable());
    EXPECT_FALSE(camera["L"].IsWritable());
    EXPECT_EQ(camera.Int("L").SetValue(1), LxResultCode::AccessDenied);
    int64_t value = 0;
    EXPECT_EQ(camera.Int("A").GetValue(value), LxResultCode::AccessDenied);
}
