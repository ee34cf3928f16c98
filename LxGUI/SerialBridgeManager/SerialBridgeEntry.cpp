#include "LxGUI/SerialBridgeManager/SerialBridgeEntry.h"

#include <algorithm>

#include "LxDevice/ILxDeviceAdapter.h"

void SerialBridgeEntry::Reset(Type aType)
{
    mName = LxString();
    if (mBridge) {
        mBridge->Stop();
        mBridge.reset();
    }
    ForgetBaudRates();
    mType = aType;
    if (aType != Inactive) {
        mBridge = std::make_unique<LxSerialBridge>();
    }
}

LxResult SerialBridgeEntry::StartCameraLink(LxDeviceSerial aPort)
{
    const LxString id = mAdapter->GetUniqueID().GetString() + "-" + GetPortName().GetString();
    const LxResult result = mBridge->Start(id, mAdapter, aPort);
    if (result.IsOK()) {
        mName = mBridge->GetName();
        TakeBaudRates();
    }
    return result;
}

LxResult SerialBridgeEntry::OpenCOMPort(const LxString &aName)
{
    LxSerialPortConfiguration configuration;
    if (!GetCOMPort().IsEmpty()) {
        configuration = mBridge->GetSerialPortConfiguration();
    }
    Reset(COMPortLink);  // the old bridge holds the device's port
    const LxResult result = mBridge->Start(aName, configuration, mAdapter, mPort);
    if (result.IsOK()) {
        mName = mBridge->GetName();
        TakeBaudRates();
    }
    return result;
}

void SerialBridgeEntry::ForgetBaudRates()
{
    mBaudRatesKnown = false;
    mBaudRates.fill(false);
}

void SerialBridgeEntry::TakeBaudRates()
{
    ForgetBaudRates();
    const uint32_t count = mBridge->GetSupportedBaudRateCount();
    mBaudRatesKnown = count > 0;
    for (uint32_t i = 0; i < count; ++i) {
        const auto rate =
            std::find(StandardBaudRates.begin(), StandardBaudRates.end(), mBridge->GetSupportedBaudRate(i));
        if (rate != StandardBaudRates.end()) {
            mBaudRates[static_cast<size_t>(rate - StandardBaudRates.begin())] = true;
        }
    }
}

std::vector<uint32_t> SerialBridgeEntry::GetBaudRates() const
{
    std::vector<uint32_t> rates;
    for (uint32_t i = 0; mBaudRatesKnown && i < mBridge->GetSupportedBaudRateCount(); ++i) {
        rates.push_back(mBridge->GetSupportedBaudRate(i));
    }
    return rates;
}
