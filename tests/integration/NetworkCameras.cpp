#include "NetworkCameras.h"

#include <gtest/gtest.h>

#include "CameraProcess.h"
#include "LxSystem/LxInterface.h"
#include "LxSystem/LxSystem.h"
#include "WaitFor.h"

const LxInterface *FindInterface(const LxSystem &aSystem, const std::string &aName)
{
    for (uint32_t i = 0; i < aSystem.GetInterfaceCount(); ++i) {
        const LxInterface *interface = aSystem.GetInterface(i);
        if (interface->GetDisplayID().GetString().find(aName) != std::string::npos) {
            return interface;
        }
    }
    return nullptr;
}

const LxDeviceInfoGEV *FindAt(LxSystem &aSystem, const std::string &aInterface)
{
    const LxDeviceInfoGEV *found = nullptr;
    aSystem.SetDetectionTimeout(100);
    WaitFor([&] {
        aSystem.Find();
        const LxInterface *interface = FindInterface(aSystem, aInterface);
        found = interface ? dynamic_cast<const LxDeviceInfoGEV *>(interface->GetDeviceInfo(0)) : nullptr;
        return found != nullptr;
    });
    return found;
}

uint64_t TakeFrames(LxStream &aStream, int aCount)
{
    uint64_t bytes = 0;
    for (int taken = 0; taken < aCount;) {
        std::shared_ptr<const LxBuffer> buffer;
        const LxResult result = aStream.RetrieveBuffer(buffer, 10000);
        if (!result.IsOK()) {
            ADD_FAILURE() << result.GetCodeString().GetAscii() << ' ' << result.GetDescription().GetAscii();
            return 0;
        }
        if (buffer->GetStatus() == LxBufferStatus::Complete && buffer->GetImage()) {
            bytes += buffer->GetImage()->GetDataSize();
            ++taken;
        }
    }
    return bytes;
}

std::unique_ptr<LxDeviceGEV> Connect(const LxDeviceInfo *aInfo)
{
    std::unique_ptr<LxDevice> device;
    const LxResult result = LxSystem::Connect(aInfo, LxDeviceAccess::Control, device);
    EXPECT_TRUE(result.IsOK()) << result.GetCodeString().GetAscii() << ' ' << result.GetDescription().GetAscii();
    return std::unique_ptr<LxDeviceGEV>(dynamic_cast<LxDeviceGEV *>(device.release()));
}

std::vector<std::string> EmulatorBehind(const Wire &aWire, const std::string &aIP, const std::string &aMAC)
{
    std::vector<std::string> command = {"ip", "netns", "exec", aWire.GetNamespace()};
    command.push_back(EmulatorCommand().front());
    for (const std::string &argument :
         {std::string("--interface"), aWire.GetFarEnd(), std::string("--ip"), aIP, std::string("--mask"),
          std::string("255.255.255.0"), std::string("--mac"), aMAC})
    {
        command.push_back(argument);
    }
    return command;
}

void ExpectStreams(const LxDeviceInfo *aInfo)
{
    const auto device = Connect(aInfo);
    ASSERT_NE(device, nullptr);
    LxStream stream;
    ASSERT_TRUE(stream.Open(device.get()).IsOK());
    ASSERT_TRUE(stream.Start().IsOK());
    EXPECT_GT(TakeFrames(stream, 5), 0u);
    EXPECT_TRUE(stream.Stop().IsOK());
}
