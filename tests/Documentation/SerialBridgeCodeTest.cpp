// The code of docs/serial-bridges.md.

#include <gtest/gtest.h>

#include "LxBase/LxStringList.h"
#include "LxDevice/LxDeviceAdapter.h"
#include "LxSerial/LxSerialBridge.h"

TEST(SerialBridgeCode, NamesOfCOMPorts)
{
    LxSerialBridge::SetCOMPortPath("COM3", "/dev/ttyUSB0");

    LxStringList names;
    LxSerialBridge::GetCOMPortNames(names);
    ASSERT_EQ(names.GetSize(), 1u);
    EXPECT_EQ(names.GetItem(0), LxString("COM3"));
    LxSerialBridge::SetCOMPortPath("COM3", "");
}

TEST(SerialBridgeCode, ABridgeToATerminal)
{
    LxDeviceAdapter adapter(nullptr);
    LxSerialPortConfiguration configuration;
    configuration.mBaudRate = 115200;
    LxSerialBridge bridge;
    LxResult result = bridge.Start("/tmp/bridge", configuration, &adapter, LxDeviceSerial::Serial1);

    EXPECT_EQ(result, LxResultCode::NoSerialPort);  // there is no device behind this adapter
}
