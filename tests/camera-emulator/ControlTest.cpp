// Registers, memory, privileges, heartbeat.

#include <array>
#include <atomic>

#include "Backends/Simulation/SimulatedRegisters.h"
#include "EmulatorClient.h"
#include "WaitFor.h"

namespace LxEmulator
{
namespace
{

namespace Register = LxDetail::SimulatedRegister;
using namespace std::chrono_literals;

constexpr uint32_t CCP = 0x0A00;

class ControlTest : public testing::Test
{
protected:
    void SetUp() override
    {
        const LxResult result = mCamera.Start();
        ASSERT_TRUE(result.IsOK()) << result.GetDescription().GetAscii();
        mClient.emplace();
    }

    EmulatedCamera mCamera{MakeOptions()};
    std::optional<EmulatorClient> mClient;
};

TEST_F(ControlTest, ReadsOneAndSeveralRegisters)
{
    EXPECT_EQ(3000u, mClient->ReadRegister(0x0938));
    const Ack ack = mClient->Ask(0x0080, Words({0x0938, 0x0904, Register::Width}));
    EXPECT_EQ(0, ack.mStatus);
    EXPECT_EQ(Words({3000, 1, mCamera.GetCamera().GetWidth()}), ack.mPayload);
}

TEST_F(ControlTest, ReadsAsManyRegistersAsADatagramHolds)
{
    Bytes payload;
    for (int i = 0; i < 135; ++i) {
        const Bytes word = Words({0x0904});
        payload.insert(payload.end(), word.begin(), word.end());
    }
    const Ack ack = mClient->Ask(0x0080, payload);
    EXPECT_EQ(0, ack.mStatus);
    EXPECT_EQ(540u, ack.mPayload.size());
}

TEST_F(ControlTest, ConcatenatedReadsEndAtTheFirstFailure)
{
    const Ack ack = mClient->Ask(0x0080, Words({0x0938, 0x00FFFFFC, 0x0904}));
    EXPECT_EQ(0x8003, ack.mStatus);
    EXPECT_EQ(Words({3000}), ack.mPayload);
}

TEST_F(ControlTest, WritesSeveralRegistersAndNamesTheOneThatFails)
{
    mClient->TakeControl();
    Ack ack = mClient->Ask(0x0082, Words({Register::Width, 64, Register::Height, 32}));
    EXPECT_EQ(0, ack.mStatus);
    EXPECT_EQ(Words({2}), ack.mPayload);
    EXPECT_EQ(64u, mCamera.GetCamera().GetWidth());
    EXPECT_EQ(32u, mCamera.GetCamera().GetHeight());
    ack = mClient->Ask(0x0082, Words({Register::Width, 128, 0x0000, 1, Register::Height, 48}));
    EXPECT_EQ(0x8004, ack.mStatus);
    EXPECT_EQ(Words({1}), ack.mPayload);
    EXPECT_EQ(128u, mCamera.GetCamera().GetWidth());
    EXPECT_EQ(32u, mCamera.GetCamera().GetHeight()) << "those behind it are not written";
}

TEST_F(ControlTest, ReadsTheXMLFromWhereTheURLSays)
{
    Bytes url;
    ASSERT_EQ(0, mClient->ReadMemory(0x0200, 512, url));
    const std::string text(url.begin(), url.end());
    unsigned address = 0;
    unsigned size = 0;
    ASSERT_EQ(2, std::sscanf(text.c_str(), "Local:%*[^;];%x;%x", &address, &size)) << text.c_str();
    std::string xml;
    while (xml.size() < size) {
        Bytes part;
        const auto count = static_cast<uint16_t>(std::min<size_t>(512, (size - xml.size() + 3) / 4 * 4));
        ASSERT_EQ(0, mClient->ReadMemory(static_cast<uint32_t>(address + xml.size()), count, part));
        ASSERT_EQ(count, part.size());
        xml.append(part.begin(), part.end());
    }
    xml.resize(size);
    EXPECT_EQ(mCamera.GetCamera().GetXML(), xml);
}

TEST_F(ControlTest, WritesMemory)
{
    mClient->TakeControl();
    const std::string name = "front camera";
    EXPECT_EQ(0, mClient->WriteMemory(Register::DeviceUserID, Bytes(name.begin(), name.end())));
    Bytes read;
    EXPECT_EQ(0, mClient->ReadMemory(Register::DeviceUserID, 16, read));
    EXPECT_EQ(name, std::string(reinterpret_cast<const char *>(read.data())));
    const Ack ack = mClient->Ask(0x0086, Words({Register::SimRegister, 1, 2}));
    EXPECT_EQ(Words({8}), ack.mPayload) << "the bytes that were written";
}

TEST_F(ControlTest, AlignmentAndSizesAreChecked)
{
    uint32_t value = 0;
    Bytes data;
    mClient->TakeControl();
    EXPECT_EQ(0x8005, mClient->ReadRegister(0x0002, value));
    EXPECT_EQ(0x8005, mClient->WriteRegister(Register::Width + 1, 64));
    EXPECT_EQ(0x8005, mClient->ReadMemory(0x0202, 4, data));
    EXPECT_EQ(0x8005, mClient->WriteMemory(Register::SimRegister + 2, Bytes(4)));
    EXPECT_EQ(0x8002, mClient->ReadMemory(0x0200, 0, data));
    EXPECT_EQ(0x8002, mClient->ReadMemory(0x0200, 3, data));
    EXPECT_EQ(0x8002, mClient->ReadMemory(0x0200, 540, data)) << "does not fit an acknowledge";
    EXPECT_EQ(0, mClient->ReadMemory(0x100000, 536, data));
    EXPECT_EQ(536u, data.size());
    EXPECT_EQ(0x8002, mClient->WriteMemory(Register::SimRegister, Bytes(3)));
    EXPECT_EQ(0x8002, mClient->WriteMemory(Register::SimRegister, {}));
    EXPECT_EQ(0x8002, mClient->Ask(0x0080, {}).mStatus);
    EXPECT_EQ(0x8002, mClient->Ask(0x0080, Bytes(6)).mStatus);
    EXPECT_EQ(0x8002, mClient->Ask(0x0082, Bytes(12)).mStatus);
    EXPECT_EQ(0x8002, mClient->Ask(0x0084, Bytes(4)).mStatus);
    EXPECT_EQ(0x8002, mClient->Ask(0x0086, Bytes(2)).mStatus);
}

TEST_F(ControlTest, RegistersThatAreNotThereOrReadOnlySaySo)
{
    uint32_t value = 0;
    Bytes data;
    mClient->TakeControl();
    EXPECT_EQ(0x8003, mClient->ReadRegister(0xFFFFFFFC, value));
    EXPECT_EQ(0x8003, mClient->WriteRegister(0xFFFFFFFC, 0));
    EXPECT_EQ(0x8003, mClient->ReadMemory(0xFFFFFFFC, 512, data)) << "runs over the end of the address space";
    EXPECT_EQ(0x8004, mClient->WriteRegister(0x0000, 0));
    EXPECT_EQ(0x8004, mClient->WriteMemory(0x0200, Bytes(8)));
    EXPECT_EQ(0x8002, mClient->WriteRegister(Register::Width, 3)) << "a value that the camera refuses";
    EXPECT_EQ(0x8004, mClient->WriteMemory(CCP, Words({2}))) << "control is taken with WRITEREG only";
}

TEST_F(ControlTest, UnknownCommandsAreNotImplemented)
{
    EXPECT_EQ(0x8001, mClient->Ask(0x0100, Bytes(12)).mStatus) << "ACTION";
    EXPECT_EQ(0x8001, mClient->Ask(0x7ABC, {}).mStatus);
}

TEST_F(ControlTest, CommandsThatWantNoAnswerGetNone)
{
    mClient->TakeControl();
    mClient->SendBytes(EmulatorClient::MakeCommand(0x0082, mClient->NextId(), Words({Register::Width, 64}), 0x00));
    mClient->SendBytes(EmulatorClient::MakeCommand(0x7ABC, mClient->NextId(), {}, 0x00));
    EXPECT_TRUE(mClient->IsSilent());
    EXPECT_EQ(64u, mCamera.GetCamera().GetWidth()) << "but are carried out";
}

TEST_F(ControlTest, MalformedDatagramsAreIgnored)
{
    mClient->SendBytes({});
    mClient->SendBytes({0x42, 0x01, 0x00, 0x80});
    Bytes command = EmulatorClient::MakeCommand(0x0080, 7, Words({CCP}));
    command[0] = 0x43;
    mClient->SendBytes(command);
    command = EmulatorClient::MakeCommand(0x0080, 0, Words({CCP}));
    mClient->SendBytes(command);
    command = EmulatorClient::MakeCommand(0x0080, 7, Words({CCP}));
    Put16(&command[4], 400);
    mClient->SendBytes(command);
    EXPECT_TRUE(mClient->IsSilent());
    EXPECT_EQ(5u, mCamera.GetControlStatistics().mInvalid);
}

TEST_F(ControlTest, RepeatedCommandIsAnsweredAgainButExecutedOnce)
{
    std::atomic<int> writes{0};
    mCamera.GetCamera().GetPort()->OnWrite(Register::SimInteger, 4, [&writes](auto &, uint64_t, uint32_t) {
        ++writes;
        return LxResult();
    });
    mClient->TakeControl();
    const uint16_t id = mClient->NextId();
    const Bytes command = EmulatorClient::MakeCommand(0x0082, id, Words({Register::SimInteger, 5}));
    for (int i = 0; i < 3; ++i) {
        mClient->SendBytes(command);
        const auto ack = mClient->Receive();
        ASSERT_TRUE(ack);
        EXPECT_EQ(id, ack->mId);
        EXPECT_EQ(0, ack->mStatus);
    }
    EXPECT_EQ(1, writes);
    EXPECT_EQ(2u, mCamera.GetControlStatistics().mRepeats);
    EXPECT_EQ(0, mClient->WriteRegister(Register::SimInteger, 5));
    EXPECT_EQ(2, writes) << "another id is another command";
}

// ---- Privileges ---------------------------------------------------------------------------------------------------

TEST_F(ControlTest, PrivilegeMatrix)
{
    enum Who
    {
        Nobody,
        Other,
        Self,
    };
    struct Row
    {
        Who mHolder;
        uint32_t mMode;
        uint16_t mRead;
        uint16_t mWrite;
        uint16_t mTake;
        uint16_t mRelease;
    };
    constexpr uint16_t ok = 0;
    constexpr uint16_t denied = 0x8006;
    const std::vector<Row> rows = {
        {Nobody, 0, ok, denied, ok, ok},
        {Self, 2, ok, ok, ok, ok},
        {Self, 1, ok, ok, ok, ok},
        {Other, 2, ok, denied, denied, denied},
        {Other, 1, denied, denied, denied, denied},
    };
    EmulatorClient other;
    for (const Row &row : rows) {
        SCOPED_TRACE(testing::Message() << "holder " << row.mHolder << " mode " << row.mMode);
        const auto prepare = [&] {
            mCamera.OverrideControl(0);
            if (row.mHolder != Nobody) {
                (row.mHolder == Self ? *mClient : other).TakeControl(row.mMode);
            }
        };
        prepare();
        uint32_t value = 0;
        Bytes data;
        EXPECT_EQ(row.mRead, mClient->ReadRegister(CCP, value));
        EXPECT_EQ(row.mRead == ok ? row.mMode : 0, value);
        EXPECT_EQ(row.mRead, mClient->ReadMemory(0x0200, 4, data));
        EXPECT_EQ(row.mWrite, mClient->WriteRegister(Register::SimInteger, 1));
        EXPECT_EQ(row.mWrite, mClient->WriteMemory(Register::SimRegister, Bytes(4)));
        EXPECT_EQ(row.mTake, mClient->WriteRegister(CCP, 2));
        prepare();
        EXPECT_EQ(row.mTake, mClient->WriteRegister(CCP, 1));
        prepare();
        EXPECT_EQ(row.mRelease, mClient->WriteRegister(CCP, 0));
    }
}

TEST_F(ControlTest, ShowsWhoIsInControl)
{
    mClient->TakeControl();
    EXPECT_EQ(2u, mClient->ReadRegister(CCP));
    EXPECT_EQ(mClient->GetLocal().mPort, mClient->ReadRegister(0x0A04));
    EXPECT_EQ(Loopback, mClient->ReadRegister(0x0A14));
    EXPECT_EQ(0, mClient->WriteRegister(CCP, 0));
    EXPECT_EQ(0u, mClient->ReadRegister(0x0A04));
    EXPECT_EQ(0u, mClient->ReadRegister(0x0A14));
}

TEST_F(ControlTest, SwitchoverHandsControlToWhoKnowsTheKey)
{
    EmulatorClient other;
    mClient->TakeControl(2 | 4);
    ASSERT_EQ(0, mClient->WriteRegister(0x095C, 0x1234));
    EXPECT_EQ(0x8006, other.WriteRegister(CCP, 0x43210002));
    EXPECT_EQ(0, other.WriteRegister(CCP, 0x12340002));
    EXPECT_EQ(0, other.WriteRegister(Register::SimInteger, 1));
    EXPECT_EQ(0x8006, mClient->WriteRegister(Register::SimInteger, 1));
}

TEST_F(ControlTest, AnotherApplicationTakesControlAway)
{
    mClient->TakeControl();
    mCamera.OverrideControl(2);
    EXPECT_EQ(0x8006, mClient->WriteRegister(Register::SimInteger, 1));
    EXPECT_EQ(2u, mClient->ReadRegister(CCP));
    mCamera.OverrideControl(1);
    uint32_t value = 0;
    EXPECT_EQ(0x8006, mClient->ReadRegister(CCP, value));
    mCamera.OverrideControl(0);
    mClient->TakeControl();
}

// ---- Heartbeat ----------------------------------------------------------------------------------------------------

TEST_F(ControlTest, SilentApplicationLosesControl)
{
    mClient->TakeControl();
    const auto start = std::chrono::steady_clock::now();
    ASSERT_EQ(0, mClient->WriteRegister(0x0938, 500));
    EmulatorClient other;
    ASSERT_TRUE(WaitFor([&] { return other.ReadRegister(CCP) == 0; }));
    EXPECT_GE(std::chrono::steady_clock::now() - start, 500ms);
    EXPECT_EQ(1u, mCamera.GetControlStatistics().mExpired);
    EXPECT_EQ(0x8006, mClient->WriteRegister(Register::SimInteger, 1));
    other.TakeControl();
}

TEST_F(ControlTest, AnyAccessKeepsControl)
{
    mClient->TakeControl();
    ASSERT_EQ(0, mClient->WriteRegister(0x0938, 3000));  // a halt of the machine takes less
    const auto end = std::chrono::steady_clock::now() + 6200ms;
    EXPECT_TRUE(WaitFor([&] {
        Bytes data;
        EXPECT_EQ(0, mClient->ReadMemory(0x0200, 4, data));
        return std::chrono::steady_clock::now() > end;
    }));
    EXPECT_EQ(0, mClient->WriteRegister(Register::SimInteger, 1));
    EXPECT_EQ(0u, mCamera.GetControlStatistics().mExpired);
}

TEST_F(ControlTest, HeartbeatCanBeSwitchedOff)
{
    mClient->TakeControl();
    ASSERT_EQ(0, mClient->WriteRegister(0x0954, 1));
    ASSERT_EQ(0, mClient->WriteRegister(0x0938, 500));
    EmulatorClient other;
    const auto end = std::chrono::steady_clock::now() + 1000ms;
    EXPECT_TRUE(WaitFor([&] { return other.ReadRegister(CCP) != 2 || std::chrono::steady_clock::now() > end; }));
    EXPECT_EQ(2u, other.ReadRegister(CCP));
    ASSERT_EQ(0, mClient->WriteRegister(0x0954, 0));
    EXPECT_TRUE(WaitFor([&] { return other.ReadRegister(CCP) == 0; })) << "and on again";
}

}  // namespace
}  // namespace LxEmulator
