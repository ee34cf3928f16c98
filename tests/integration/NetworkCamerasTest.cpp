// Whole road of an application on cameras that are processes of their own on a real network: found, connected, read,
// streamed, lost and regained, through the public interface only.

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <string>
#include <thread>

#include "CameraProcess.h"
#include "LxBufferReceive/LxStream.h"
#include "LxDevice/LxDeviceGEV.h"
#include "LxGenICam/LxGenParameterArray.h"
#include "LxSystem/LxDeviceInfoGEV.h"
#include "LxSystem/LxNetworkAdapter.h"
#include "LxSystem/LxSystem.h"
#include "NetworkCameras.h"
#include "RunningTime.h"
#include "WaitFor.h"
#include "Wire.h"

namespace
{

constexpr RunningTime::Milliseconds longestAnswer(2000);

struct Kind
{
    const char *mName;
    std::vector<std::string> (*mCommand)();
};

class NetworkCamera : public testing::TestWithParam<Kind>
{
};

}  // namespace

TEST_P(NetworkCamera, IsFoundConnectedReadAndStreamed)
{
    CameraProcess camera(GetParam().mCommand());
    ASSERT_TRUE(camera.Start());
    LxSystem system;
    const LxDeviceInfoGEV *info = FindAt(system, "lo");
    ASSERT_NE(info, nullptr);
    EXPECT_EQ(info->GetIPAddress(), LxString("127.0.0.1"));
    EXPECT_TRUE(info->IsConfigurationValid());
    EXPECT_FALSE(info->GetModelName().IsEmpty());

    int access = LxAccessUnknown;
    EXPECT_TRUE(LxDeviceGEV::GetAccessType(info->GetIPAddress(), &access).IsOK());
    EXPECT_EQ(access, LxAccessOpen);
    const auto device = Connect(info);
    ASSERT_NE(device, nullptr);
    EXPECT_TRUE(LxDeviceGEV::GetAccessType(info->GetIPAddress(), &access).IsOK());
    EXPECT_EQ(access, LxAccessControl);

    uint32_t privilege = 0;
    EXPECT_TRUE(device->ReadRegister(0x0A00, privilege).IsOK());
    EXPECT_EQ(privilege, 2u);
    LxGenParameterArray *parameters = device->GetParameters();
    ASSERT_NE(parameters, nullptr);
    EXPECT_GT(parameters->GetCount(), 10u);
    int64_t width = 0;
    int64_t height = 0;
    ASSERT_TRUE(parameters->GetIntegerValue("Width", width).IsOK());
    ASSERT_TRUE(parameters->GetIntegerValue("Height", height).IsOK());

    LxStream stream;
    ASSERT_TRUE(stream.Open(device.get()).IsOK());
    ASSERT_TRUE(stream.Start().IsOK());
    EXPECT_GE(TakeFrames(stream, 10), static_cast<uint64_t>(10 * width * height));
    EXPECT_TRUE(stream.Stop().IsOK());
}

TEST_P(NetworkCamera, ThatAnotherApplicationControlsIsRefusedWithTheReason)
{
    CameraProcess camera(GetParam().mCommand());
    ASSERT_TRUE(camera.Start());
    LxSystem system;
    const LxDeviceInfoGEV *info = FindAt(system, "lo");
    ASSERT_NE(info, nullptr);
    const auto other = Connect(info);
    ASSERT_NE(other, nullptr);

    std::unique_ptr<LxDevice> device;
    const LxResult result = LxSystem::Connect(info, LxDeviceAccess::Control, device);
    EXPECT_TRUE(result == LxResultCode::AccessDenied) << result.GetCodeString().GetAscii();
    EXPECT_NE(result.GetDescription().GetString().find("control"), std::string::npos)
        << result.GetDescription().GetAscii();
    EXPECT_EQ(device, nullptr);
    uint32_t value = 0;
    EXPECT_TRUE(other->ReadRegister(0x0A00, value).IsOK()) << "the holder is not disturbed";
    EXPECT_EQ(value, 2u);
}

TEST_P(NetworkCamera, KilledWhileStreamingIsStreamedAgainWhenItIsBack)
{
    CameraProcess camera(GetParam().mCommand());
    ASSERT_TRUE(camera.Start());
    LxSystem system;
    const auto device = Connect(FindAt(system, "lo"));
    ASSERT_NE(device, nullptr);
    LxStream stream;
    ASSERT_TRUE(stream.Open(device.get()).IsOK());
    ASSERT_TRUE(stream.Start().IsOK());
    ASSERT_GT(TakeFrames(stream, 5), 0u);

    camera.Kill();
    ASSERT_TRUE(WaitFor([&] { return !device->IsConnected(); }));
    const RunningTime asked;
    uint32_t value = 0;
    EXPECT_FALSE(device->ReadRegister(0, value).IsOK());
    EXPECT_LT(asked.Get(), longestAnswer) << "the library's own retries are longer";

    ASSERT_TRUE(camera.Start());
    ASSERT_TRUE(WaitFor([&] { return device->IsConnected(); }));
    EXPECT_TRUE(WaitFor([&] {
        std::shared_ptr<const LxBuffer> buffer;
        return stream.RetrieveBuffer(buffer, 100).IsOK();
    }));
}

TEST_P(NetworkCamera, KilledWhileItsRegistersAreReadIsReadAgainWhenItIsBack)
{
    CameraProcess camera(GetParam().mCommand());
    ASSERT_TRUE(camera.Start());
    LxSystem system;
    const auto device = Connect(FindAt(system, "lo"));
    ASSERT_NE(device, nullptr);
    LxGenParameterArray *parameters = device->GetParameters();
    std::atomic<bool> stop{false};
    std::atomic<int> good{0};
    std::atomic<int> bad{0};
    const auto read = [&](const auto &aRead) {
        while (!stop) {
            const LxResult result = aRead();
            if (result.IsOK()) {
                ++good;
            }
            else {
                EXPECT_FALSE(result.GetDescription().IsEmpty()) << result.GetCodeString().GetAscii();
                ++bad;
                std::this_thread::yield();
            }
        }
    };
    std::thread registers([&] {
        read([&] {
            uint32_t value = 0;
            return device->ReadRegister(0x0A00, value);
        });
    });
    std::thread features([&] {
        read([&] {
            int64_t width = 0;
            return parameters->GetIntegerValue("Width", width);
        });
    });
    EXPECT_TRUE(WaitFor([&] { return good > 20; }));

    camera.Kill();
    EXPECT_TRUE(WaitFor([&] { return !device->IsConnected(); }));
    int before = bad;
    EXPECT_TRUE(WaitFor([&] { return bad > before + 20; })) << "reads go on and fail";
    EXPECT_TRUE(camera.Start());
    EXPECT_TRUE(WaitFor([&] { return device->IsConnected(); }));
    before = good;
    EXPECT_TRUE(WaitFor([&] { return good > before + 20; })) << "the same readers succeed again";
    stop = true;
    registers.join();
    features.join();
}

TEST_P(NetworkCamera, FrozenAnswersAtOnceUntilItGoesOn)
{
    CameraProcess camera(GetParam().mCommand());
    ASSERT_TRUE(camera.Start());
    LxSystem system;
    const auto device = Connect(FindAt(system, "lo"));
    ASSERT_NE(device, nullptr);
    LxGenParameterArray *parameters = device->GetParameters();
    int64_t width = 0;
    ASSERT_TRUE(parameters->GetIntegerValue("Width", width).IsOK());

    std::atomic<bool> stop{false};
    std::thread reader([&] {
        while (!stop) {
            uint32_t value = 0;
            device->ReadRegister(0, value);
            std::this_thread::yield();
        }
    });
    camera.Freeze();
    ASSERT_TRUE(WaitFor([&] { return parameters->GetAccessMode() != 0; }));
    const RunningTime asked;
    for (int i = 0; i < 100; ++i) {
        EXPECT_FALSE(parameters->GetIntegerValue("Width", width).IsOK());
    }
    EXPECT_LT(asked.Get(), longestAnswer) << "a hundred reads, while another thread may be stuck in one";
    camera.Thaw();
    EXPECT_TRUE(WaitFor([&] { return parameters->GetIntegerValue("Width", width).IsOK(); }));
    stop = true;
    reader.join();
}

INSTANTIATE_TEST_SUITE_P(Cameras, NetworkCamera,
                         testing::Values(Kind{"Emulator", [] { return EmulatorCommand(); }},
                                         Kind{"FakeCamera", [] { return FakeCameraCommand(); }}),
                         [](const auto &aInfo) { return aInfo.param.mName; });

TEST(NetworkCameras, ThatAnswersWithErrorCodesSaysWhichAndStaysConnected)
{
    CameraProcess camera(EmulatorCommand());
    ASSERT_TRUE(camera.Start());
    LxSystem system;
    const auto device = Connect(FindAt(system, "lo"));
    ASSERT_NE(device, nullptr);
    constexpr struct
    {
        const char *mStatus;
        LxResultCode mCode;
    } cases[] = {{"0x8001", LxResultCode::NotSupported},   {"0x8002", LxResultCode::InvalidParameter},
                 {"0x8003", LxResultCode::InvalidAddress}, {"0x8004", LxResultCode::WriteProtected},
                 {"0x8005", LxResultCode::BadAlignment},   {"0x8006", LxResultCode::AccessDenied},
                 {"0x8007", LxResultCode::Busy},           {"0x8FFF", LxResultCode::ProtocolError}};
    for (const auto &one : cases) {
        ASSERT_TRUE(camera.Command("status " + std::string(one.mStatus) + " 0xD00 4"));
        uint32_t value = 77;
        const LxResult read = device->ReadRegister(0xD00, value);
        EXPECT_TRUE(read == one.mCode) << one.mStatus << ": " << read.GetCodeString().GetAscii();
        EXPECT_FALSE(read.GetDescription().IsEmpty()) << one.mStatus;
        EXPECT_EQ(value, 77u) << "set on success only";
        const LxResult write = device->WriteRegister(0xD00, 0);
        EXPECT_TRUE(write == one.mCode) << one.mStatus << ": " << write.GetCodeString().GetAscii();
        EXPECT_TRUE(device->ReadRegister(0x0A00, value).IsOK()) << "other registers are not affected";
        EXPECT_TRUE(device->IsConnected());
        ASSERT_TRUE(camera.Command("clear"));
        EXPECT_TRUE(device->ReadRegister(0xD00, value).IsOK());
    }
}

TEST(NetworkCameras, WhoseAnswersAreMalformedAreFoundReadAndStreamedAllTheSame)
{
    CameraProcess camera(EmulatorCommand());
    ASSERT_TRUE(camera.Start());
    LxSystem system;
    const LxDeviceInfoGEV *info = FindAt(system, "lo");
    const auto device = Connect(info);
    ASSERT_NE(device, nullptr);
    for (const char *kind : {"short-header", "wrong-id", "wrong-code", "long-length", "short-length", "garbage"}) {
        ASSERT_TRUE(camera.Command(std::string("corrupt ") + kind + " 2")) << kind;
        uint32_t value = 0;
        EXPECT_TRUE(WaitFor([&] { return device->ReadRegister(0x0A00, value).IsOK(); })) << kind;
        EXPECT_EQ(value, 2u) << kind << ": never a value of a packet that makes no sense";
        ASSERT_TRUE(camera.Command(std::string("corrupt ") + kind + " 2")) << kind;
        EXPECT_EQ(FindAt(system, "lo"), info) << kind;
    }
    ASSERT_TRUE(camera.Command("corrupt unterminated 2"));
    EXPECT_EQ(FindAt(system, "lo"), info);
    EXPECT_LE(info->GetSerialNumber().GetString().size(), 3 * 16u);
    LxStream stream;
    ASSERT_TRUE(stream.Open(device.get()).IsOK());
    ASSERT_TRUE(stream.Start().IsOK());
    EXPECT_GT(TakeFrames(stream, 3), 0u);
}

TEST(NetworkCameras, OnAWrongSubnetIsFoundButNotConnectedAndBothSubnetsAreNamed)
{
    const Wire wire("wrong", "192.168.50.1/24", "");
    CameraProcess camera(EmulatorBehind(wire, "10.9.9.9", "02:00:00:00:00:09"), "");
    ASSERT_TRUE(camera.Start());
    LxSystem system;
    const LxDeviceInfoGEV *info = FindAt(system, wire.GetNearEnd());
    ASSERT_NE(info, nullptr);
    EXPECT_EQ(info->GetIPAddress(), LxString("10.9.9.9"));
    EXPECT_EQ(info->GetMACAddress(), LxString("02:00:00:00:00:09"));
    EXPECT_FALSE(info->IsConfigurationValid());

    std::unique_ptr<LxDevice> device;
    const LxResult result = LxSystem::Connect(info, LxDeviceAccess::Control, device);
    EXPECT_TRUE(result == LxResultCode::Unavailable) << result.GetCodeString().GetAscii();
    const std::string text = result.GetDescription().GetString();
    EXPECT_NE(text.find("10.9.9."), std::string::npos) << text;
    EXPECT_NE(text.find("192.168.50."), std::string::npos) << text;
}

TEST(NetworkCameras, OnAWrongSubnetGetsAnAddressOnTheRightOneAndStreams)
{
    const Wire wire("given", "192.168.54.1/24", "");
    CameraProcess camera(EmulatorBehind(wire, "10.9.9.9", "02:00:00:00:00:54"), "");
    ASSERT_TRUE(camera.Start());
    LxSystem system;
    const LxDeviceInfoGEV *info = FindAt(system, wire.GetNearEnd());
    ASSERT_NE(info, nullptr);
    EXPECT_FALSE(info->IsConfigurationValid());

    const LxString mask = "255.255.255.0";
    const LxString gateway = "192.168.54.1";
    EXPECT_TRUE(LxDeviceGEV::SetIPConfiguration("02:00:00:00:00:55", "192.168.54.8", mask, gateway) ==
                LxResultCode::NotFound);
    const LxResult result = LxDeviceGEV::SetIPConfiguration(info->GetMACAddress(), "192.168.54.7", mask, gateway);
    EXPECT_TRUE(result.IsOK()) << result.GetCodeString().GetAscii() << ' ' << result.GetDescription().GetAscii();
    ASSERT_TRUE(WaitFor([&] {
        system.Find();
        return info->IsConfigurationValid();
    }));
    EXPECT_EQ(info->GetIPAddress(), LxString("192.168.54.7"));
    EXPECT_EQ(info->GetSubnetMask(), mask);
    EXPECT_EQ(info->GetDefaultGateway(), gateway);
    ExpectStreams(info);
}

TEST(NetworkCameras, TwoOnTwoAdaptersAreFoundAtTheirsAndStreamAtTheSameTime)
{
    const Wire left("left", "192.168.51.1/24", "");
    const Wire right("right", "192.168.52.1/24", "");
    CameraProcess leftCamera(EmulatorBehind(left, "192.168.51.7", "02:00:00:00:00:51"), "");
    CameraProcess rightCamera(EmulatorBehind(right, "192.168.52.7", "02:00:00:00:00:52"), "");
    ASSERT_TRUE(leftCamera.Start());
    ASSERT_TRUE(rightCamera.Start());
    LxSystem system;
    const LxDeviceInfoGEV *leftInfo = FindAt(system, left.GetNearEnd());
    const LxDeviceInfoGEV *rightInfo = FindAt(system, right.GetNearEnd());
    ASSERT_NE(leftInfo, nullptr);
    ASSERT_NE(rightInfo, nullptr);
    EXPECT_EQ(leftInfo->GetIPAddress(), LxString("192.168.51.7"));
    EXPECT_EQ(rightInfo->GetIPAddress(), LxString("192.168.52.7"));
    EXPECT_EQ(leftInfo->GetInterface(), FindInterface(system, left.GetNearEnd()));

    const auto leftDevice = Connect(leftInfo);
    const auto rightDevice = Connect(rightInfo);
    ASSERT_NE(leftDevice, nullptr);
    ASSERT_NE(rightDevice, nullptr);
    LxStream leftStream;
    LxStream rightStream;
    ASSERT_TRUE(leftStream.Open(leftDevice.get()).IsOK());
    ASSERT_TRUE(rightStream.Open(rightDevice.get()).IsOK());
    ASSERT_TRUE(leftStream.Start().IsOK());
    ASSERT_TRUE(rightStream.Start().IsOK());
    std::thread other([&] { EXPECT_GT(TakeFrames(leftStream, 10), 0u); });
    EXPECT_GT(TakeFrames(rightStream, 10), 0u);
    other.join();
}

TEST(NetworkCameras, AtOneAddressBehindAWireIsFoundWithoutASearch)
{
    const Wire wire("direct", "192.168.53.1/24", "");
    CameraProcess camera(EmulatorBehind(wire, "192.168.53.7", "02:00:00:00:00:53"), "");
    ASSERT_TRUE(camera.Start());
    LxSystem system;
    const LxDeviceInfo *info = nullptr;
    ASSERT_TRUE(WaitFor([&] { return system.FindDevice("192.168.53.7", &info).IsOK(); }));
    EXPECT_NE(Connect(info), nullptr);
    EXPECT_TRUE(system.FindDevice("192.168.53.8", &info) == LxResultCode::NotFound);
    EXPECT_EQ(info, nullptr);
}
