#include "LxSerial/LxSerialBridge.h"

#include <algorithm>
#include <mutex>
#include <vector>

#include "LxBase/LxStringList.h"
#include "LxSerial/BridgedPort.h"
#include "LxSerial/ComLink.h"
#include "LxSerial/OfferedPort.h"
#include "LxSerial/PortSpeed.h"

using LxDetail::BridgedPort;
using LxDetail::ComLink;
using LxDetail::OfferedPort;
using LxDetail::PortSpeed;

class LX_NO_EXPORT LxSerialBridge::Data
{
public:
    LxResult CheckIdle() const
    {
        return mStarted ? LxResult(LxResultCode::AlreadyOpen, "The bridge is started already.") : LxResult();
    }
    LxResult OpenDevice(ILxDeviceAdapter *aAdapter, LxDeviceSerial aPort)
    {
        mDevice.mSent = 0;
        mDevice.mReceived = 0;
        mSpeed = PortSpeed(aAdapter, aPort);
        return mDevice.mPort.Open(aAdapter, aPort);
    }
    bool IsSupported(uint32_t aBaudRate) const
    {
        return std::find(mRates.begin(), mRates.end(), aBaudRate) != mRates.end();
    }
    bool IsCOMPortOpen() const { return mLink && mLink->IsOpen(); }
    void Stop();

    BridgedPort mDevice;
    mutable std::mutex mMutex;  // guards all members below, also while the device is asked
    bool mStarted = false;
    LxString mName;
    PortSpeed mSpeed{nullptr, LxDeviceSerial::Invalid};
    std::vector<uint32_t> mRates;
    LxSerialPortConfiguration mConfiguration;
    uint32_t mHardCodedBaudRate = 0;
    std::unique_ptr<ComLink> mLink;         // bridge to a COM port
    std::shared_ptr<OfferedPort> mOffered;  // Camera Link bridge with a port
    bool mRegistered = false;               // Camera Link bridge
};

void LxSerialBridge::Data::Stop()
{
    if (mRegistered) {
        LxDetail::UnregisterCameraLinkPort(mName);
    }
    mRegistered = false;
    if (mOffered) {
        mOffered->End();
    }
    mOffered.reset();
    mLink.reset();
    mDevice.mPort.Close();
    mSpeed = PortSpeed(nullptr, LxDeviceSerial::Invalid);
    mRates.clear();
    mName = LxString();
    mConfiguration = LxSerialPortConfiguration();
    mHardCodedBaudRate = 0;
    mStarted = false;
}

void LxSerialBridge::SetCOMPortPath(const LxString &aCOMPort, const LxString &aPath)
{
    LxDetail::SetComPortPath(aCOMPort.GetString(), aPath.GetString());
}

void LxSerialBridge::GetCOMPortNames(LxStringList &aNames)
{
    aNames.Clear();
    for (const std::string &name : LxDetail::GetComPortNames()) {
        aNames.Add(name);
    }
}

LxSerialBridge::LxSerialBridge() : mData(std::make_unique<Data>()) {}

LxSerialBridge::~LxSerialBridge()
{
    Stop();
}

LxResult LxSerialBridge::Start(const LxString &aCOMPort, const LxSerialPortConfiguration &aConfiguration,
                               ILxDeviceAdapter *aAdapter, LxDeviceSerial aPort)
{
    std::lock_guard lock(mData->mMutex);
    LxResult result = mData->CheckIdle();
    if (result.IsOK() && !aConfiguration.IsValid()) {
        result = LxResult(LxResultCode::InvalidArgument, "The configuration of the COM port is not valid.");
    }
    if (result.IsOK()) {
        result = mData->OpenDevice(aAdapter, aPort);
    }
    if (!result.IsOK()) {
        return result;
    }
    mData->mLink = std::make_unique<ComLink>(mData->mDevice);
    result = mData->mLink->Start(aCOMPort, aConfiguration);
    if (!result.IsOK()) {
        mData->Stop();
        return result;
    }
    mData->mStarted = true;
    mData->mName = aCOMPort;
    mData->mConfiguration = aConfiguration;
    mData->mRates = mData->mSpeed.GetSupported();
    if (mData->IsSupported(aConfiguration.mBaudRate)) {
        mData->mSpeed.Set(aConfiguration.mBaudRate);
    }
    return LxResult();
}

LxResult LxSerialBridge::Start(const LxString &aPortID, ILxDeviceAdapter *aAdapter, LxDeviceSerial aPort)
{
    std::lock_guard lock(mData->mMutex);
    LxResult result = mData->CheckIdle();
    if (result.IsOK() && (aAdapter == nullptr || aPortID.IsEmpty())) {
        result = LxResult(LxResultCode::InvalidArgument, "There is no device, or the port has no ID.");
    }
    if (result.IsOK() && aPort != LxDeviceSerial::Invalid) {
        result = mData->OpenDevice(aAdapter, aPort);
        mData->mOffered = std::make_shared<OfferedPort>(mData->mDevice, mData->mSpeed);
    }
    if (result.IsOK() && !LxDetail::RegisterCameraLinkPort(aPortID, mData->mOffered)) {
        result = LxResult(LxResultCode::Busy, "The Camera Link port \"" + aPortID.GetString() + "\" exists already.");
    }
    if (!result.IsOK()) {
        if (!mData->mStarted) {
            mData->Stop();
        }
        return result;
    }
    mData->mRegistered = true;
    mData->mStarted = true;
    mData->mName = aPortID;
    mData->mRates = mData->mSpeed.GetSupported();
    return LxResult();
}

LxResult LxSerialBridge::Stop()
{
    std::lock_guard lock(mData->mMutex);
    mData->Stop();
    return LxResult();
}

LxString LxSerialBridge::GetSerialPort() const
{
    std::lock_guard lock(mData->mMutex);
    return mData->IsCOMPortOpen() ? mData->mName : LxString();
}

LxSerialPortConfiguration LxSerialBridge::GetSerialPortConfiguration() const
{
    std::lock_guard lock(mData->mMutex);
    return mData->mConfiguration;
}

LxResult LxSerialBridge::SetSerialPortConfiguration(const LxSerialPortConfiguration &aConfiguration)
{
    std::lock_guard lock(mData->mMutex);
    if (!mData->IsCOMPortOpen()) {
        return LxResult(LxResultCode::InvalidState, "No COM port is open.");
    }
    LxResult result = mData->mLink->SetConfiguration(aConfiguration);
    if (!result.IsOK()) {
        mData->mLink->SetConfiguration(mData->mConfiguration);  // it may have taken a part
        return result;
    }
    mData->mConfiguration = aConfiguration;
    if (mData->IsSupported(aConfiguration.mBaudRate)) {
        result = mData->mSpeed.Set(aConfiguration.mBaudRate);
    }
    return result;
}

LxString LxSerialBridge::GetName() const
{
    std::lock_guard lock(mData->mMutex);
    return mData->mRegistered ? mData->mName : LxString();
}

uint32_t LxSerialBridge::GetSupportedBaudRateCount() const
{
    std::lock_guard lock(mData->mMutex);
    return static_cast<uint32_t>(mData->mRates.size());
}

uint32_t LxSerialBridge::GetSupportedBaudRate(uint32_t aIndex) const
{
    std::lock_guard lock(mData->mMutex);
    return aIndex < mData->mRates.size() ? mData->mRates[aIndex] : 0;
}

uint32_t LxSerialBridge::GetBaudRate() const
{
    std::lock_guard lock(mData->mMutex);
    if (mData->mHardCodedBaudRate != 0) {
        return mData->mHardCodedBaudRate;
    }
    if (const uint32_t rate = mData->mSpeed.Get(); rate != 0) {
        return rate;
    }
    return mData->IsCOMPortOpen() ? mData->mConfiguration.mBaudRate : 0;
}

uint32_t LxSerialBridge::GetHardCodedBaudRate() const
{
    std::lock_guard lock(mData->mMutex);
    return mData->mHardCodedBaudRate;
}

LxResult LxSerialBridge::SetHardCodedBaudRate(uint32_t aBaudRate)
{
    std::lock_guard lock(mData->mMutex);
    if (!mData->mRegistered) {
        return LxResult(LxResultCode::InvalidState, "No Camera Link bridge is started.");
    }
    if (aBaudRate != 0 && !mData->mRates.empty()) {
        if (const LxResult result = mData->mSpeed.Set(aBaudRate); !result.IsOK()) {
            return result;
        }
    }
    mData->mHardCodedBaudRate = aBaudRate;
    if (mData->mOffered) {
        mData->mOffered->SetHardCodedBaudRate(aBaudRate);
    }
    return LxResult();
}

uint64_t LxSerialBridge::GetBytesSentToDevice() const
{
    return mData->mDevice.mSent;
}

uint64_t LxSerialBridge::GetBytesReceivedFromDevice() const
{
    return mData->mDevice.mReceived;
}

void LxSerialBridge::ResetStatistics()
{
    mData->mDevice.mSent = 0;
    mData->mDevice.mReceived = 0;
}
