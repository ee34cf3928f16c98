// Ports, and what their faults become at the features.

#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <numeric>
#include <thread>

#include "TestCamera.h"
#include "WaitFor.h"

using LxDetail::FaultPort;
using LxDetail::MemoryPort;

TEST(MemoryPort, SpansAdjoiningBlocks)
{
    MemoryPort port;
    port.Map(0x100, 4);
    port.Map(0x104, 4, false);
    const uint8_t bytes[4] = {1, 2, 3, 4};
    EXPECT_TRUE(port.Write(0x100, bytes, 4).IsOK());
    EXPECT_EQ(port.Write(0x102, bytes, 4), LxResultCode::WriteProtected);
    EXPECT_EQ(port.Write(0x104, bytes, 1), LxResultCode::WriteProtected);
    EXPECT_TRUE(port.Poke(0x104, bytes, 4)) << "the device itself may";
    uint8_t back[8] = {};
    EXPECT_TRUE(port.Read(0x100, back, 8).IsOK());
    EXPECT_EQ(port.Peek64(0x100), 0x0102030401020304u) << "nothing of the refused write is there";
    EXPECT_EQ(back[4], 1);
}

TEST(MemoryPort, RefusesAddressesThatAreNotMapped)
{
    MemoryPort port;
    uint8_t bytes[8] = {};
    EXPECT_EQ(port.Read(0, bytes, 1), LxResultCode::InvalidAddress);
    port.Map(0x100, 4);
    for (const uint64_t address : {uint64_t(0), uint64_t(0xFF), uint64_t(0x101), uint64_t(0x104), UINT64_MAX}) {
        EXPECT_EQ(port.Read(address, bytes, 4), LxResultCode::InvalidAddress) << address;
        EXPECT_EQ(port.Write(address, bytes, 4), LxResultCode::InvalidAddress) << address;
        EXPECT_FALSE(port.Peek(address, bytes, 4));
        EXPECT_FALSE(port.Poke(address, bytes, 4));
    }
    EXPECT_EQ(port.Read(0x101, bytes, 4).GetDescription(), LxString("There is no register at 0x00000104."));
    EXPECT_EQ(port.Peek32(0x200), 0u);
}

TEST(MemoryPort, NumbersAreBigEndianAndTextsFilled)
{
    MemoryPort port;
    port.Map(0, 16);
    port.Poke32(0, 0x01020304);
    port.Poke64(8, 0x0102030405060708);
    uint8_t byte = 0;
    EXPECT_TRUE(port.Peek(0, &byte, 1));
    EXPECT_EQ(byte, 1);
    EXPECT_EQ(port.Peek64(8), 0x0102030405060708u);
    port.PokeString(0, 16, "abcdefghijklmnopqrst");
    EXPECT_EQ(port.PeekString(0, 16), "abcdefghijklmnop");
    port.PokeString(0, 16, "x");
    EXPECT_EQ(port.PeekString(0, 16), "x");
    EXPECT_EQ(port.Peek64(8), 0u);
}

TEST(MemoryPort, HooksSeeTheAccessesOfTheirRange)
{
    MemoryPort port;
    port.Map(0x100, 16);
    int reads = 0;
    int writes = 0;
    port.OnRead(0x104, 4, [&](MemoryPort &aPort, uint64_t aAddress, uint32_t aLength) {
        ++reads;
        EXPECT_EQ(aAddress, 0x104u);
        EXPECT_EQ(aLength, 4u);
        aPort.Poke32(0x104, 77);
        return LxResult();
    });
    port.OnWrite(0x108, 4, [&](MemoryPort &, uint64_t, uint32_t) {
        ++writes;
        return LxResult(LxResultCode::Busy);
    });
    uint32_t value = 0;
    EXPECT_TRUE(port.Read(0x100, &value, 4).IsOK());
    EXPECT_TRUE(port.Write(0x100, &value, 4).IsOK());
    EXPECT_EQ(reads + writes, 0);
    EXPECT_TRUE(port.Read(0x104, &value, 4).IsOK());
    EXPECT_EQ(reads, 1);
    EXPECT_EQ(port.Peek32(0x104), 77u);
    value = 0xFFFFFFFF;
    EXPECT_EQ(port.Write(0x106, &value, 4), LxResultCode::Busy) << "overlaps";
    EXPECT_EQ(writes, 1);
    EXPECT_EQ(port.Peek32(0x108), 0xFFFF0000u) << "a failing hook does not undo the write";
    EXPECT_EQ(port.GetState(), LxResultCode::OK);
    EXPECT_TRUE(port.IsWritable());
}

TEST(FaultPort, FailsWhatItIsToldTo)
{
    const auto memory = std::make_shared<MemoryPort>();
    memory->Map(0, 0x100);
    FaultPort port(memory);
    uint8_t bytes[16] = {};
    port.FailRange(0x10, 4, LxResultCode::Busy);
    port.FailRange(0x10, 4, LxResultCode::AccessDenied);
    port.FailRange(0x20, 4, LxResultCode::WriteProtected, FaultPort::Access::Write);
    port.FailRange(0x30, 4, LxResultCode::NotSupported, FaultPort::Access::Read);
    EXPECT_EQ(port.Read(0x10, bytes, 1), LxResultCode::Busy) << "the first rule wins";
    EXPECT_EQ(port.Write(0xC, bytes, 5), LxResultCode::Busy) << "overlaps";
    EXPECT_TRUE(port.Read(0xC, bytes, 4).IsOK());
    EXPECT_TRUE(port.Read(0x14, bytes, 4).IsOK());
    EXPECT_TRUE(port.Read(0x20, bytes, 4).IsOK());
    EXPECT_EQ(port.Write(0x20, bytes, 4), LxResultCode::WriteProtected);
    EXPECT_EQ(port.Read(0x30, bytes, 4), LxResultCode::NotSupported);
    EXPECT_TRUE(port.Write(0x30, bytes, 4).IsOK());
    EXPECT_EQ(port.GetReadCount(), 5u);
    EXPECT_EQ(port.GetWriteCount(), 3u);

    port.ClearFailures();
    EXPECT_TRUE(port.Read(0x10, bytes, 4).IsOK());
    port.FailCall(2, LxResultCode::Timeout);
    EXPECT_TRUE(port.Read(0, bytes, 4).IsOK());
    EXPECT_EQ(port.Write(0, bytes, 4), LxResultCode::Timeout);
    EXPECT_TRUE(port.Read(0, bytes, 4).IsOK()) << "once";
    port.FailAll(LxResultCode::ProtocolError);
    EXPECT_EQ(port.Read(0, bytes, 4), LxResultCode::ProtocolError);
    EXPECT_EQ(port.Write(0x80, bytes, 4), LxResultCode::ProtocolError);
    port.ClearFailures();
    EXPECT_EQ(port.Read(0x1000, bytes, 4), LxResultCode::InvalidAddress) << "the inner port's own errors";
    EXPECT_TRUE(port.GetState().IsOK());
}

TEST(FaultPort, VanishesAndReturns)
{
    const auto memory = std::make_shared<MemoryPort>();
    memory->Map(0, 0x100);
    FaultPort port(memory);
    CountingStateSink sink;
    port.AddStateSink(&sink);
    uint8_t bytes[4] = {};
    port.Vanish();
    EXPECT_EQ(sink.mChanges, 1);
    EXPECT_EQ(port.GetState(), LxResultCode::NotConnected);
    EXPECT_EQ(port.Read(0, bytes, 4), LxResultCode::NotConnected);
    port.Return();
    EXPECT_EQ(sink.mChanges, 2);
    EXPECT_TRUE(port.GetState().IsOK());
    EXPECT_TRUE(port.Read(0, bytes, 4).IsOK());
    port.SetState(LxResultCode::Timeout);
    EXPECT_EQ(sink.mChanges, 3);
    EXPECT_EQ(port.GetState(), LxResultCode::Timeout);
    EXPECT_EQ(port.Write(0, bytes, 4), LxResultCode::Timeout);
    port.SetState(LxResult());
    port.RemoveStateSink(&sink);
    port.Vanish();
    EXPECT_EQ(sink.mChanges, 4);
    EXPECT_EQ(sink.mNews, 4);
}

TEST(FaultPort, PassesOnTheStateOfThePortBehind)
{
    const auto inner = std::make_shared<FaultPort>(std::make_shared<MemoryPort>());
    FaultPort port(inner);
    CountingStateSink sink;
    port.AddStateSink(&sink);
    inner->Vanish();
    EXPECT_EQ(sink.mChanges, 1);
    EXPECT_EQ(sink.mNews, 1);
    EXPECT_EQ(port.GetState(), LxResultCode::NotConnected);
    port.RemoveStateSink(&sink);
}

TEST(FaultPort, FreezesUntilItsTimeoutOrThawing)
{
    const auto memory = std::make_shared<MemoryPort>();
    memory->Map(0, 0x100);
    FaultPort port(memory);
    uint8_t bytes[4] = {};
    port.Freeze(std::chrono::milliseconds(20));
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(port.Read(0, bytes, 4), LxResultCode::Timeout);
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(20));
    port.Freeze(std::chrono::hours(1));
    auto thawed = std::async(std::launch::async, [&] {
        uint8_t own[4] = {};
        return port.Read(0, own, 4);
    });
    ASSERT_TRUE(WaitFor([&] { return port.GetReadCount() == 2; }));
    port.Thaw();
    EXPECT_TRUE(thawed.get().IsOK());
    port.Freeze(std::chrono::hours(1));
    auto gone = std::async(std::launch::async, [&] {
        uint8_t own[4] = {};
        return port.Write(0, own, 4);
    });
    ASSERT_TRUE(WaitFor([&] { return port.GetWriteCount() == 1; }));
    port.Vanish();
    EXPECT_EQ(gone.get(), LxResultCode::NotConnected);
    port.Return();
    port.Thaw();
    port.SetDelay(std::chrono::milliseconds(10));
    const auto delayed = std::chrono::steady_clock::now();
    EXPECT_TRUE(port.Read(0, bytes, 4).IsOK());
    EXPECT_GE(std::chrono::steady_clock::now() - delayed, std::chrono::milliseconds(10));
}

TEST(Faults, KeepTheirCodeAndTextOnTheWayToTheFeature)
{
    const TestCamera camera(
        "Top B E S F X",
        Reg("Bottom", 0x1000) + Integer("Middle", "Bottom") + Integer("Top", "Middle") +
            Node("Boolean", "B", "<pValue>Bottom</pValue>") +
            Node("Enumeration", "E", Node("EnumEntry", "No", "<Value>0</Value>") + "<pValue>Bottom</pValue>") +
            Node("StringReg", "S",
                 "<Address>0x1000</Address><Length>4</Length>"
                 "<AccessMode>RW</AccessMode><pPort>Device</pPort>") +
            Node("Converter", "F",
                 "<FormulaTo>FROM</FormulaTo><FormulaFrom>TO</FormulaFrom>"
                 "<pValue>Bottom</pValue>") +
            Node("Register", "X",
                 "<Address>0x1000</Address><Length>4</Length>"
                 "<AccessMode>RW</AccessMode><pPort>Device</pPort>"));
    for (const uint32_t code :
         {uint32_t(LxResultCode::Timeout), uint32_t(LxResultCode::NotConnected), uint32_t(LxResultCode::AccessDenied),
          uint32_t(LxResultCode::WriteProtected), uint32_t(LxResultCode::InvalidAddress), uint32_t(LxResultCode::Busy),
          uint32_t(0x81234567)})
    {
        camera.mPort->FailAll(LxResult(code, "[x] injected % failure \xC3\xA4"));
        const auto check = [&](const LxResult &aResult) {
            EXPECT_EQ(aResult.GetCode(), code);
            EXPECT_EQ(aResult.GetDescription(), LxString("[x] injected % failure \xC3\xA4"));
        };
        int64_t integer = 5;
        bool boolean = true;
        double real = 5;
        LxString text = "unchanged";
        uint8_t bytes[4] = {};
        check(camera.Int("Top").GetValue(integer));
        check(camera.Int("Top").SetValue(1));
        check(camera.Boolean("B").GetValue(boolean));
        check(camera.Boolean("B").SetValue(false));
        check(camera.Enum("E").GetValue(integer));
        check(camera.Enum("E").GetValue(text));
        check(camera.Enum("E").SetValue("No"));
        check(camera.String("S").GetValue(text));
        check(camera.String("S").SetValue("x"));
        check(camera.Float("F").GetValue(real));
        check(camera.Float("F").SetValue(1));
        check(camera.Register("X").Get(bytes, 4));
        check(camera.Register("X").Set(bytes, 4));
        EXPECT_EQ(integer, 5);
        EXPECT_TRUE(boolean);
        EXPECT_EQ(real, 5);
        EXPECT_EQ(text, LxString("unchanged"));
        camera.mPort->ClearFailures();
    }
    EXPECT_EQ(camera.Get("Top"), 0) << "and it is all right again";
}

TEST(Faults, InLimitsAndFormulasAreNotSwallowed)
{
    const TestCamera camera("A K", Reg("Max", 0x1004) + Reg("R", 0x1000) + Integer("A", "R", "<pMax>Max</pMax>") +
                                       Node("SwissKnife", "K",
                                            "<pVariable Name=\"M\">Max</pVariable>"
                                            "<pVariable Name=\"R\">R</pVariable>"
                                            "<Formula>M+R</Formula>"));
    camera.mPort->FailRange(0x1004, 4, LxResult(LxResultCode::BadAlignment, "odd"));
    int64_t max = 0;
    double value = 0;
    EXPECT_EQ(camera.Int("A").GetMax(max), LxResultCode::BadAlignment);
    EXPECT_EQ(camera.Int("A").SetValue(1), LxResultCode::BadAlignment);
    EXPECT_EQ(camera.mPort->GetWriteCount(), 0u);
    EXPECT_EQ(camera.Float("K").GetValue(value), LxResultCode::BadAlignment);
}

TEST(Faults, AreOverWhenThePortReturns)
{
    const TestCamera camera("A", Reg("R", 0x1000) + Integer("A", "R"));
    CountingSink sink;
    camera["A"].RegisterEventSink(&sink);
    EXPECT_EQ(camera.mParameters->GetAccessMode(), 0);
    camera.mPort->Vanish();
    EXPECT_EQ(sink.Take(), 1);
    EXPECT_NE(camera.mParameters->GetAccessMode(), 0);
    const uint64_t reads = camera.mPort->GetReadCount();
    int64_t value = 0;
    bool answer = true;
    EXPECT_EQ(camera.Int("A").GetValue(value), LxResultCode::NotConnected);
    EXPECT_EQ(camera.Int("A").GetMin(value), LxResultCode::NotConnected);
    EXPECT_EQ(camera["A"].IsImplemented(answer), LxResultCode::NotConnected);
    EXPECT_EQ(camera.mParameters->Poll(), LxResultCode::NotConnected);
    EXPECT_EQ(camera["A"].ToString(), LxString(""));
    EXPECT_EQ(camera.mPort->GetReadCount(), reads) << "nobody asks a device that is gone";
    LxString text;
    EXPECT_TRUE(camera["A"].GetName(text).IsOK()) << "attributes are still there";
    camera.mPort->Return();
    EXPECT_EQ(sink.Take(), 1);
    EXPECT_EQ(camera.mParameters->GetAccessMode(), 0);
    EXPECT_EQ(camera.Get("A"), 0);
    camera["A"].UnregisterEventSink(&sink);
}

TEST(Faults, ANodeMapMayBeMadeWhileTheDeviceIsGone)
{
    const auto memory = std::make_shared<MemoryPort>();
    const auto port = std::make_shared<FaultPort>(memory);
    memory->Map(0x1000, 4);
    port->Vanish();
    std::unique_ptr<LxDetail::NodeMap> nodeMap;
    ASSERT_TRUE(LxDetail::NodeMap::Create(port, CameraXML("A", Reg("R", 0x1000) + Integer("A", "R")), nodeMap).IsOK());
    int64_t value = 0;
    EXPECT_EQ(nodeMap->GetParameters()->GetIntegerValue("A", value), LxResultCode::NotConnected);
    port->Return();
    EXPECT_TRUE(nodeMap->GetParameters()->GetIntegerValue("A", value).IsOK());
    nodeMap.reset();
    port->Vanish();
}
