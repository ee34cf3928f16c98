// Who is notified of what, and when.

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>

#include "TestCamera.h"

namespace
{

// A sink for every feature; tells which were notified.
class Sinks
{
public:
    explicit Sinks(const TestCamera &aCamera) : mCamera(aCamera)
    {
        LxGenParameterArray &array = *aCamera.mParameters;
        for (uint32_t i = 0; i < array.GetCount(); ++i) {
            mSinks.push_back(std::make_unique<CountingSink>());
            EXPECT_TRUE(array[i]->RegisterEventSink(mSinks.back().get()).IsOK());
        }
    }
    ~Sinks()
    {
        for (uint32_t i = 0; i < mSinks.size(); ++i) {
            EXPECT_TRUE((*mCamera.mParameters)[i]->UnregisterEventSink(mSinks[i].get()).IsOK());
        }
    }
    /// The names of those that were notified since the last call, in the order of the array.
    std::string Take()
    {
        std::string names;
        for (uint32_t i = 0; i < mSinks.size(); ++i) {
            const int count = mSinks[i]->Take();
            EXPECT_LE(count, 1) << "one notification for one event";
            if (count > 0) {
                LxString name;
                (*mCamera.mParameters)[i]->GetName(name);
                EXPECT_EQ(mSinks[i]->mLast, (*mCamera.mParameters)[i]);
                names += (names.empty() ? "" : " ") + name.GetString();
            }
        }
        return names;
    }

private:
    const TestCamera &mCamera;
    std::vector<std::unique_ptr<CountingSink>> mSinks;
};

}  // namespace

TEST(Notification, AWriteReachesAllThatDependsOnTheFeature)
{
    const TestCamera camera(
        "A SameReg Formula Conv Limited Avail Locked Indexed Invalidated Other SharesLimit",
        Reg("R", 0x1000) + Reg("Limit", 0x1004) + Integer("A", "R", "<pMax>Limit</pMax>") + Integer("SameReg", "R") +
            Node("SwissKnife", "Formula", "<pVariable Name=\"V\">A</pVariable><Formula>V*2</Formula>") +
            Node("Converter", "Conv",
                 "<FormulaTo>FROM</FormulaTo><FormulaFrom>TO</FormulaFrom><pValue>SameReg</pValue>") +
            Node("Integer", "Limited", "<Value>0</Value><pMin>R</pMin>") +
            Node("Integer", "Avail", "<Value>0</Value><pIsAvailable>A</pIsAvailable>") +
            Node("Integer", "Locked", "<Value>0</Value><pIsLocked>R</pIsLocked>") +
            Node("IntReg", "Indexed",
                 "<Address>0x1100</Address><pIndex Offset=\"4\">A</pIndex><Length>4</Length><AccessMode>RW</AccessMode>"
                 "<pPort>Device</pPort>") +
            Reg("Invalidated", 0x1200, "RW", "<pInvalidator>A</pInvalidator>") +
            Node("Integer", "Other", "<Value>0</Value>") +
            Node("Integer", "SharesLimit",
                 "<Value>0</Value>"
                 "<pMax>Limit</pMax>"));
    Sinks sinks(camera);
    camera.mMemory->Poke32(0x1004, 100);
    EXPECT_TRUE(camera.Int("A").SetValue(1).IsOK());
    EXPECT_EQ(sinks.Take(), "A SameReg Formula Conv Limited Avail Locked Indexed Invalidated")
        << "not what merely names the same limit";
    EXPECT_TRUE(camera.Int("Other").SetValue(1).IsOK());
    EXPECT_EQ(sinks.Take(), "Other");
    EXPECT_EQ(camera.Int("A").SetValue(1000), LxResultCode::OutOfRange);
    EXPECT_EQ(sinks.Take(), "") << "a write that failed changed nothing";
    camera.Get("A");
    EXPECT_EQ(sinks.Take(), "") << "reading never notifies";
    camera.mNodeMap->NotifyFeature("Limit");
    EXPECT_EQ(sinks.Take(), "A Formula Avail Indexed Invalidated SharesLimit") << "behind the engine's back";
    camera.mNodeMap->NotifyFeature("Nothing");
    EXPECT_EQ(sinks.Take(), "");
    camera.mNodeMap->NotifyAll();
    EXPECT_EQ(sinks.Take(), "A SameReg Formula Conv Limited Avail Locked Indexed Invalidated Other SharesLimit");
}

TEST(Notification, ASelectorReachesWhatItSelects)
{
    const TestCamera camera(
        "Sel Gain GainText",
        Node("Integer", "Sel", "<Value>0</Value><pSelected>Gain</pSelected>") +
            Node("Integer", "Gain", "<Value>0</Value>") +
            Node("IntSwissKnife", "GainText", "<pVariable Name=\"G\">Gain</pVariable><Formula>G</Formula>"));
    Sinks sinks(camera);
    EXPECT_TRUE(camera.Int("Sel").SetValue(1).IsOK());
    EXPECT_EQ(sinks.Take(), "Sel Gain GainText");
    EXPECT_TRUE(camera.Int("Gain").SetValue(1).IsOK());
    EXPECT_EQ(sinks.Take(), "Gain GainText");
}

TEST(Notification, EveryKindOfWriteNotifies)
{
    const TestCamera camera(
        "E B C F S X", Reg("R", 0x1000) +
                           Node("Enumeration", "E", Node("EnumEntry", "No", "<Value>0</Value>") + "<Value>0</Value>") +
                           Node("Boolean", "B", "<Value>0</Value>") +
                           Node("Command", "C", "<pValue>R</pValue><CommandValue>1</CommandValue>") +
                           Node("Float", "F", "<Value>0</Value>") + Node("String", "S", "<Value>x</Value>") +
                           Node("Register", "X",
                                "<Address>0x1010</Address><Length>4</Length>"
                                "<AccessMode>RW</AccessMode><pPort>Device</pPort>"));
    Sinks sinks(camera);
    EXPECT_TRUE(camera.Enum("E").SetValue("No").IsOK());
    EXPECT_EQ(sinks.Take(), "E");
    EXPECT_TRUE(camera.Boolean("B").SetValue(true).IsOK());
    EXPECT_EQ(sinks.Take(), "B");
    EXPECT_TRUE(camera.Command("C").Execute().IsOK());
    EXPECT_EQ(sinks.Take(), "C");
    EXPECT_TRUE(camera.Float("F").SetValue(1).IsOK());
    EXPECT_EQ(sinks.Take(), "F");
    EXPECT_TRUE(camera.String("S").SetValue("y").IsOK());
    EXPECT_EQ(sinks.Take(), "S");
    const uint8_t bytes[4] = {};
    EXPECT_TRUE(camera.Register("X").Set(bytes, 4).IsOK());
    EXPECT_EQ(sinks.Take(), "X");
    camera.mPort->FailAll(LxResult(LxResultCode::Busy, "busy"));
    EXPECT_EQ(camera.Command("C").Execute(), LxResultCode::Busy);
    EXPECT_EQ(sinks.Take(), "");
}

TEST(Notification, IsHeardOncePerSink)
{
    const TestCamera camera("A", Node("Integer", "A", "<Value>0</Value>"));
    CountingSink one;
    CountingSink two;
    EXPECT_EQ(camera["A"].RegisterEventSink(nullptr), LxResultCode::InvalidArgument);
    EXPECT_TRUE(camera["A"].RegisterEventSink(&one).IsOK());
    EXPECT_TRUE(camera["A"].RegisterEventSink(&one).IsOK()) << "again changes nothing";
    EXPECT_TRUE(camera["A"].RegisterEventSink(&two).IsOK());
    EXPECT_TRUE(camera.Int("A").SetValue(1).IsOK());
    EXPECT_EQ(one.Take(), 1);
    EXPECT_EQ(two.Take(), 1);
    EXPECT_TRUE(camera["A"].UnregisterEventSink(&one).IsOK());
    EXPECT_EQ(camera["A"].UnregisterEventSink(&one), LxResultCode::NotFound);
    EXPECT_TRUE(camera.Int("A").SetValue(2).IsOK());
    EXPECT_EQ(one.Take(), 0);
    EXPECT_EQ(two.Take(), 1);
    EXPECT_TRUE(camera["A"].UnregisterEventSink(&two).IsOK());
}

TEST(Notification, FromAHookWithinAnAccessComesAfterIt)
{
    // a simulated device changes another feature while a register is written: the sink must run without the node lock
    const TestCamera camera("A B", Reg("R", 0x1000) + Integer("A", "R") + Node("Integer", "B", "<Value>0</Value>"));
    LxDetail::NodeMap &nodeMap = *camera.mNodeMap;
    bool inHook = false;
    camera.mMemory->OnWrite(0x1000, 4, [&](LxDetail::MemoryPort &, uint64_t, uint32_t) {
        inHook = true;
        LxResult result = nodeMap.SetInternalInteger("B", 7);
        inHook = false;
        return result;
    });
    camera.mMemory->OnRead(0x1000, 4, [&](LxDetail::MemoryPort &, uint64_t, uint32_t) {
        inHook = true;
        nodeMap.NotifyFeature("B");
        inHook = false;
        return LxResult();
    });
    struct Sink : CountingSink
    {
        explicit Sink(const bool &aInHook) : mInHook(aInHook) {}
        void OnParameterUpdate(LxGenParameter *aParameter) override
        {
            EXPECT_FALSE(mInHook);
            CountingSink::OnParameterUpdate(aParameter);
        }
        const bool &mInHook;
    } sink(inHook);
    camera["B"].RegisterEventSink(&sink);
    EXPECT_TRUE(camera.Int("A").SetValue(1).IsOK());
    EXPECT_EQ(sink.Take(), 1);
    EXPECT_EQ(camera.Get("B"), 7);
    camera.Get("A");
    EXPECT_EQ(sink.Take(), 1);
    camera["B"].UnregisterEventSink(&sink);
}

TEST(Poll, NotifiesWhatChangedSinceTheLastLook)
{
    const TestCamera camera("A B Limited Avail Cmd",
                            Reg("AReg", 0x1000) + Reg("BReg", 0x1004) + Reg("Max", 0x1008) + Reg("Flag", 0x100C) +
                                Reg("CReg", 0x1010) + Integer("A", "AReg") + Integer("B", "BReg") +
                                Node("Integer", "Limited", "<Value>1</Value><pMax>Max</pMax>") +
                                Node("Integer", "Avail", "<Value>1</Value><pIsAvailable>Flag</pIsAvailable>") +
                                Node("Command", "Cmd", "<pValue>CReg</pValue><CommandValue>1</CommandValue>"));
    Sinks sinks(camera);
    EXPECT_TRUE(camera.mParameters->Poll().IsOK());
    EXPECT_EQ(sinks.Take(), "A B Limited Avail Cmd") << "new sinks have missed what came before";
    EXPECT_TRUE(camera.mParameters->Poll().IsOK());
    EXPECT_EQ(sinks.Take(), "");
    camera.mMemory->Poke32(0x1000, 5);
    EXPECT_TRUE(camera.mParameters->Poll().IsOK());
    EXPECT_EQ(sinks.Take(), "A") << "the value";
    camera.mMemory->Poke32(0x1008, 5);
    EXPECT_TRUE(camera.mParameters->Poll().IsOK());
    EXPECT_EQ(sinks.Take(), "Limited") << "a limit";
    camera.mMemory->Poke32(0x100C, 1);
    EXPECT_TRUE(camera.mParameters->Poll().IsOK());
    EXPECT_EQ(sinks.Take(), "Avail") << "the availability";
    EXPECT_TRUE(camera.Command("Cmd").Execute().IsOK());
    EXPECT_EQ(sinks.Take(), "Cmd");
    EXPECT_TRUE(camera.mParameters->Poll().IsOK());
    sinks.Take();
    camera.mMemory->Poke32(0x1010, 0);
    EXPECT_TRUE(camera.mParameters->Poll().IsOK());
    EXPECT_EQ(sinks.Take(), "Cmd") << "the end of the command";

    camera.mMemory->Poke32(0x1004, 1);
    camera.mParameters->InvalidateCache();
    EXPECT_TRUE(camera.mParameters->Poll().IsOK());
    EXPECT_EQ(sinks.Take(), "") << "there is nothing to compare with";
    camera.mMemory->Poke32(0x1004, 2);
    EXPECT_TRUE(camera.mParameters->Poll().IsOK());
    EXPECT_EQ(sinks.Take(), "B");
}

TEST(Poll, ReadsOnlyFeaturesWithSinks)
{
    const TestCamera camera("A B",
                            Reg("AReg", 0x1000) + Reg("BReg", 0x1004) + Integer("A", "AReg") + Integer("B", "BReg"));
    EXPECT_TRUE(camera.mParameters->Poll().IsOK());
    EXPECT_EQ(camera.mPort->GetReadCount(), 0u);
    CountingSink sink;
    camera["A"].RegisterEventSink(&sink);
    EXPECT_TRUE(camera.mParameters->Poll().IsOK());
    EXPECT_EQ(camera.mPort->GetReadCount(), 1u);
    camera["A"].UnregisterEventSink(&sink);
}

TEST(Poll, AFeatureThatFailsKeepsNobodyWaiting)
{
    const TestCamera camera("A B",
                            Reg("AReg", 0x1000) + Reg("BReg", 0x1004) + Integer("A", "AReg") + Integer("B", "BReg"));
    Sinks sinks(camera);
    EXPECT_TRUE(camera.mParameters->Poll().IsOK());
    sinks.Take();
    camera.mPort->FailRange(0x1000, 4, LxResult(LxResultCode::AccessDenied, "no"));
    camera.mMemory->Poke32(0x1004, 1);
    EXPECT_TRUE(camera.mParameters->Poll().IsOK());
    EXPECT_EQ(sinks.Take(), "A B") << "an error that comes is news";
    EXPECT_TRUE(camera.mParameters->Poll().IsOK());
    EXPECT_EQ(sinks.Take(), "");
    camera.mPort->ClearFailures();
    EXPECT_TRUE(camera.mParameters->Poll().IsOK());
    EXPECT_EQ(sinks.Take(), "A") << "and so is its end";
    camera.mPort->FailRange(0x1000, 4, LxResult(LxResultCode::Timeout, "no answer"));
    camera.mMemory->Poke32(0x1004, 2);
    EXPECT_EQ(camera.mParameters->Poll(), LxResultCode::Timeout);
    EXPECT_EQ(sinks.Take(), "") << "a device that does not answer is asked once";
}

TEST(Poll, ReadsEveryKind)
{
    const TestCamera camera(
        "E B F S X W",
        Reg("R", 0x1000) +
            Node("Enumeration", "E", Node("EnumEntry", "No", "<Value>0</Value>") + "<pValue>R</pValue>") +
            Node("Boolean", "B", "<pValue>R</pValue>") + Node("Float", "F", "<pValue>R</pValue>") +
            Node("StringReg", "S",
                 "<Address>0x1000</Address><Length>4</Length>"
                 "<AccessMode>RW</AccessMode><pPort>Device</pPort>") +
            Node("Register", "X",
                 "<Address>0x1000</Address><Length>4</Length>"
                 "<AccessMode>RW</AccessMode><pPort>Device</pPort>") +
            Reg("W", 0x1000, "WO"));
    Sinks sinks(camera);
    EXPECT_TRUE(camera.mParameters->Poll().IsOK());
    sinks.Take();
    camera.mMemory->Poke32(0x1000, 0x01000001);
    EXPECT_TRUE(camera.mParameters->Poll().IsOK());
    EXPECT_EQ(sinks.Take(), "E F S X") << "true only for 1, and what cannot be read does not change";
    camera.mMemory->Poke32(0x1000, 1);
    EXPECT_TRUE(camera.mParameters->Poll().IsOK());
    EXPECT_EQ(sinks.Take(), "E B F S X");
}
