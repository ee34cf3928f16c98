#include "Backends/Simulation/SimulatedCameraData.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdio>
#include <cstring>

#include "Backends/Simulation/SimulatedXML.h"
#include "LxBuffer/LxPixelType.h"

namespace LxDetail
{

using namespace std::chrono_literals;
namespace R = SimulatedRegister;

namespace
{

constexpr uint64_t XMLAddress = 0x100000;
constexpr uint64_t FirstHookedAddress = R::ActionDeviceKey;
constexpr uint64_t FirstSettingAddress = R::SensorWidth;
constexpr double MaxFrameRate = 1000.0;
constexpr double ReadoutTime = 20.0;           // us that an exposure ends before the next may begin
constexpr double LinkBytesPerSecond = 1.25e9;  // 10 Gbit/s
constexpr auto CommandTime = 200ms;            // of the commands that take time

uint64_t GetLastAddress()
{
    return GetSimulatedRegisters().back().GetEnd();
}

/// The registers that overlap a range.
template <class Function>
void ForEachRegister(uint64_t aAddress, uint64_t aLength, Function aFunction)
{
    const auto &registers = GetSimulatedRegisters();
    auto spec = std::upper_bound(registers.begin(), registers.end(), aAddress,
                                 [](uint64_t aValue, const RegisterSpec &aSpec) { return aValue < aSpec.GetEnd(); });
    for (; spec != registers.end() && spec->mAddress < aAddress + aLength; ++spec) {
        aFunction(*spec);
    }
}

/// The elements of a register that overlap a range, by address.
template <class Function>
void ForEachElement(const RegisterSpec &aSpec, uint64_t aAddress, uint64_t aLength, Function aFunction)
{
    for (uint32_t i = 0; i < aSpec.mCount; ++i) {
        const uint64_t element = aSpec.mAddress + uint64_t(i) * aSpec.mLength;
        if (element < aAddress + aLength && aAddress < element + aSpec.mLength) {
            aFunction(element);
        }
    }
}

LxResult Refuse(const RegisterSpec &aSpec, const char *aReason)
{
    return LxResult(LxResultCode::InvalidParameter, std::string(aSpec.mName) + ": " + aReason);
}

}  // namespace

SimulatedCamera::Data::Data(const SimulatedCameraIdentity &aIdentity) : mIdentity(aIdentity), mShadow(GetLastAddress())
{
    std::vector<std::string> categories = {"DeviceControl",          "ImageFormatControl", "AcquisitionControl",
                                           "AnalogControl",          "LUTControl",         "DigitalIOControl",
                                           "CounterAndTimerControl", "UserSetControl",     "TransportLayerControl",
                                           "SimulationControl"};
    if (!aIdentity.mUSB3Vision) {
        categories.emplace_back("TransportLayerControl\\GigEVision");
    }
    mXML = MakeSimulatedXML(aIdentity.mVendor, aIdentity.mModel, categories, GetSimulatedRegisterNodes(),
                            aIdentity.mModules);
    ReadPixelFormats();
    MapRegisters();
    WriteIdentity();
    Derive();
    mUserSets.fill(SaveSettings());

    const uint64_t length = GetLastAddress() - FirstHookedAddress;
    mPort->OnRead(FirstHookedAddress, length,
                  [this](MemoryPort &, uint64_t aAddress, uint32_t aLength) { return OnRead(aAddress, aLength); });
    mPort->OnWrite(FirstHookedAddress, length,
                   [this](MemoryPort &, uint64_t aAddress, uint32_t aLength) { return OnWrite(aAddress, aLength); });
}

void SimulatedCamera::Data::MapRegisters()
{
    for (const RegisterSpec &spec : GetSimulatedRegisters()) {
        mPort->Map(spec.mAddress, uint64_t(spec.mLength) * spec.mCount, spec.mAccess != RegisterAccess::RO);
        ForEachElement(spec, spec.mAddress, spec.GetEnd() - spec.mAddress, [&](uint64_t aElement) {
            switch (spec.mKind) {
                case RegisterKind::Float:
                    SetFloat(aElement, spec.mDefault);
                    break;
                case RegisterKind::Int:
                case RegisterKind::Signed:
                case RegisterKind::Command:
                    if (spec.mLength == 8) {
                        Set64(aElement, static_cast<uint64_t>(spec.mDefault));
                    }
                    else {
                        Set(aElement, static_cast<uint32_t>(static_cast<int64_t>(spec.mDefault)));
                    }
                    break;
                case RegisterKind::String:
                case RegisterKind::Bytes:
                    break;
            }
        });
    }
    for (uint32_t i = 0; i < 256; ++i) {
        Set(R::LUTValue + 4 * i, i);
    }
}

void SimulatedCamera::Data::WriteIdentity()
{
    mPort->Poke64(R::GevMACAddress, mIdentity.mMACAddress);
    mPort->Poke32(R::GevCurrentIPAddress, mIdentity.mIPAddress);
    mPort->Poke32(R::GevCurrentSubnetMask, mIdentity.mSubnetMask);
    mPort->Poke32(R::GevCurrentDefaultGateway, mIdentity.mDefaultGateway);
    Set(R::DeviceTLType, mIdentity.mUSB3Vision ? 2 : 0);
    mPort->PokeString(R::DeviceVendorName, 32, mIdentity.mVendor);
    mPort->PokeString(R::DeviceModelName, 32, mIdentity.mModel);
    mPort->PokeString(R::DeviceVersion, 32, mIdentity.mVersion);
    mPort->PokeString(R::DeviceManufacturerInfo, 48, mIdentity.mManufacturerInfo);
    mPort->PokeString(R::DeviceSerialNumber, 16, mIdentity.mSerialNumber);
    mPort->PokeString(R::DeviceUserID, 16, mIdentity.mUserName);
    mPort->PokeString(R::DeviceFirmwareVersion, 32, mIdentity.mVersion);
    mPort->PokeString(R::DeviceFamilyName, 32, "Simulation");
    mPort->PokeString(R::SimString, 32, "Hello");
    for (uint32_t i = 0; i < 3; ++i) {
        static const char *const texts[] = {"alpha", "beta", "gamma"};
        mPort->PokeString(R::SimArrayText + 16 * i, 16, texts[i]);
    }
    for (uint32_t i = 0; i < 12; ++i) {
        Set(R::SimArrayValue + 4 * i, (i / 4 + 1) * 100 + i % 4);
    }
    Remember(R::SimString, 32);
    Remember(R::SimArrayText, 48);

    mPort->Map(XMLAddress, (mXML.size() + 3) / 4 * 4, false);
    mPort->Poke(XMLAddress, mXML.data(), static_cast<uint32_t>(mXML.size()));
    char url[80];
    std::snprintf(url, sizeof(url), "Local:LxSimulatedCamera.xml;%llX;%zX", static_cast<unsigned long long>(XMLAddress),
                  mXML.size());
    mPort->PokeString(R::GevFirstURL, 512, url);
}

void SimulatedCamera::Data::ReadPixelFormats()
{
    // The XML says which formats there are.
    size_t at = mXML.find("<Enumeration Name=\"PixelFormat\"");
    const size_t end = mXML.find("</Enumeration>", at);
    static const std::string tag = "<Value>";
    for (at = mXML.find(tag, at); at < end; at = mXML.find(tag, at + 1)) {
        mPixelFormats.insert(static_cast<uint32_t>(std::stoul(mXML.substr(at + tag.size(), 12), nullptr, 0)));
    }
}

double SimulatedCamera::Data::GetFloat(uint64_t aAddress) const
{
    return std::bit_cast<double>(mPort->Peek64(aAddress));
}

void SimulatedCamera::Data::Set(uint64_t aAddress, uint32_t aValue)
{
    mPort->Poke32(aAddress, aValue);
    Remember(aAddress, 4);
}

void SimulatedCamera::Data::Set64(uint64_t aAddress, uint64_t aValue)
{
    mPort->Poke64(aAddress, aValue);
    Remember(aAddress, 8);
}

void SimulatedCamera::Data::SetFloat(uint64_t aAddress, double aValue)
{
    Set64(aAddress, std::bit_cast<uint64_t>(aValue));
}

void SimulatedCamera::Data::Remember(uint64_t aAddress, uint32_t aLength)
{
    mPort->Peek(aAddress, mShadow.data() + aAddress, aLength);
}

LxResult SimulatedCamera::Data::OnRead(uint64_t aAddress, uint32_t aLength)
{
    std::lock_guard lock(mMutex);
    const Clock::time_point now = Clock::now();
    Update(now);
    LxResult result;
    ForEachRegister(aAddress, aLength, [&](const RegisterSpec &aSpec) {
        if (aSpec.mAccess == RegisterAccess::WO) {
            result = LxResult(LxResultCode::NotSupported, std::string(aSpec.mName) + " can only be written.");
        }
        switch (aSpec.mAddress) {
            case R::SimFailing:
                result = LxResult(LxResultCode::InvalidParameter, "SimFailing fails on purpose.");
                break;
            case R::SimFailingRead:
                result = LxResult(LxResultCode::Busy, "SimFailingRead fails on purpose.");
                break;
            case R::SimFailingEnumeration:
                result = LxResult(LxResultCode::InvalidAddress, "SimFailingEnumeration fails on purpose.");
                break;
            default:
                Refresh(aSpec, now);
                break;
        }
    });
    return result;
}

LxResult SimulatedCamera::Data::OnWrite(uint64_t aAddress, uint32_t aLength)
{
    std::function<void(bool)> listener;
    bool acquiring = false;
    {
        std::lock_guard lock(mMutex);
        Update(Clock::now());
        LxResult result;
        ForEachRegister(aAddress, aLength, [&](const RegisterSpec &aSpec) {
            ForEachElement(aSpec, aAddress, aLength, [&](uint64_t aElement) {
                if (result.IsOK()) {
                    result = Check(aSpec, aElement);
                }
            });
        });
        if (!result.IsOK()) {
            mPort->Poke(aAddress, mShadow.data() + aAddress, aLength);
            return result;
        }
        Remember(aAddress, aLength);
        ForEachRegister(aAddress, aLength, [&](const RegisterSpec &aSpec) {
            ForEachElement(aSpec, aAddress, aLength, [&](uint64_t aElement) { Apply(aSpec, aElement); });
        });
        if (mNotify) {
            mNotify = false;
            listener = mListener;
            acquiring = mAcquiring;
        }
    }
    if (listener) {
        listener(acquiring);
    }
    return LxResult();
}

LxResult SimulatedCamera::Data::Check(const RegisterSpec &aSpec, uint64_t aElement) const
{
    const uint32_t raw = Get(aElement);
    double value = raw;
    switch (aSpec.mKind) {
        case RegisterKind::Float:
            value = GetFloat(aElement);
            if (!std::isfinite(value)) {
                return Refuse(aSpec, "The value is no number.");
            }
            break;
        case RegisterKind::Signed:
            value = static_cast<int32_t>(raw);
            break;
        default:
            break;
    }
    if (value < aSpec.mMin || value > aSpec.mMax) {  // false for a limit that is NaN
        return Refuse(aSpec, "The value is out of range.");
    }
    switch (aSpec.mAddress) {
        case R::AcquisitionFrameRate:
            return value > GetFloat(R::AcquisitionFrameRateMax) * 1.000001 ? Refuse(aSpec, "The value is out of range.")
                                                                           : LxResult();
        case R::ExposureTime:
            return value > GetFloat(R::ExposureTimeMax) * 1.000001 ? Refuse(aSpec, "The value is out of range.")
                                                                   : LxResult();
        case R::SimIntegerStep:
            return raw % 10 != 0 ? Refuse(aSpec, "The value is no multiple of 10.") : LxResult();
        case R::SimSwitched:
            return Get(R::SimAvailable) == 0 ? LxResult(LxResultCode::Busy, "SimSwitched is not available.")
                                             : LxResult();
        case R::SimLocked:
            return Get(R::SimLock) != 0 ? LxResult(LxResultCode::WriteProtected, "SimLocked is locked.") : LxResult();
        case R::SimFailing:
            return LxResult(LxResultCode::InvalidParameter, "SimFailing fails on purpose.");
        case R::SimFailingWrite:
            return LxResult(LxResultCode::WriteProtected, "SimFailingWrite fails on purpose.");
        case R::SimFailingEnumeration:
            return LxResult(LxResultCode::InvalidAddress, "SimFailingEnumeration fails on purpose.");
        case R::SimCommandFailing:
            return LxResult(LxResultCode::NotSupported, "SimCommandFailing fails on purpose.");
        case R::AcquisitionStart:
            return mPending.count(R::UserSetLoad) + mPending.count(R::DeviceReset) != 0
                       ? LxResult(LxResultCode::Busy, "The camera is loading its settings.")
                       : LxResult();
        case R::UserSetSave:
            return Get(R::UserSetSelector) == 0
                       ? LxResult(LxResultCode::WriteProtected, "The default set cannot be changed.")
                       : LxResult();
        default:
            return CheckGeometry(aSpec, raw);
    }
}

LxResult SimulatedCamera::Data::CheckGeometry(const RegisterSpec &aSpec, uint32_t aValue) const
{
    // Settings that change the size of the pictures wait for the end of the acquisition.
    static const uint64_t locked[] = {R::Width,           R::Height,          R::PixelFormat, R::BinningHorizontal,
                                      R::BinningVertical, R::AcquisitionMode, R::UserSetLoad};
    if (mAcquiring && std::find(std::begin(locked), std::end(locked), aSpec.mAddress) != std::end(locked)) {
        return LxResult(LxResultCode::WriteProtected,
                        std::string(aSpec.mName) + " cannot be changed while the camera acquires.");
    }
    switch (aSpec.mAddress) {
        case R::Width:
            return aValue % 4 != 0 || aValue > Get(R::WidthMax) - Get(R::OffsetX)
                       ? Refuse(aSpec, "The value is out of range or no multiple of 4.")
                       : LxResult();
        case R::Height:
            return aValue % 2 != 0 || aValue > Get(R::HeightMax) - Get(R::OffsetY)
                       ? Refuse(aSpec, "The value is out of range or no multiple of 2.")
                       : LxResult();
        case R::OffsetX:
            return aValue % 4 != 0 || aValue > Get(R::WidthMax) - Get(R::Width)
                       ? Refuse(aSpec, "The value is out of range or no multiple of 4.")
                       : LxResult();
        case R::OffsetY:
            return aValue % 2 != 0 || aValue > Get(R::HeightMax) - Get(R::Height)
                       ? Refuse(aSpec, "The value is out of range or no multiple of 2.")
                       : LxResult();
        case R::BinningHorizontal:
        case R::BinningVertical:
            return aValue == 3 ? Refuse(aSpec, "Binning is 1, 2 or 4.") : LxResult();
        case R::PixelFormat:
            return mPixelFormats.count(aValue) == 0 ? Refuse(aSpec, "The camera does not have this format.")
                                                    : LxResult();
        default:
            return LxResult();
    }
}

void SimulatedCamera::Data::Apply(const RegisterSpec &aSpec, uint64_t aElement)
{
    if (aSpec.mKind == RegisterKind::Command) {
        if (Get(aElement) == 1) {
            Execute(aSpec.mAddress, static_cast<uint32_t>((aElement - aSpec.mAddress) / aSpec.mLength));
        }
        if (mPending.count(aElement) == 0) {
            Set(aElement, 0);
        }
        return;
    }
    switch (aSpec.mAddress) {
        case R::GevTimestampControl: {
            const uint32_t control = Get(aElement);
            if ((control & 2) != 0) {
                Execute(R::TimestampLatch, 0);
            }
            if ((control & 1) != 0) {
                Execute(R::TimestampReset, 0);
            }
            break;
        }
        case R::GainAuto:
        case R::ExposureAuto:
        case R::BalanceWhiteAuto:
            mPending.erase(aElement);
            if (Get(aElement) != 0) {
                mPending[aElement] = Clock::now() + CommandTime;
            }
            break;
        default:
            Derive();
            break;
    }
    mWake.notify_all();
}

void SimulatedCamera::Data::Execute(uint64_t aCommand, uint32_t aIndex)
{
    const Clock::time_point now = Clock::now();
    switch (aCommand) {
        case R::AcquisitionStart:
            StartAcquisition();
            break;
        case R::AcquisitionStop:
        case R::AcquisitionAbort:
            StopAcquisition();
            break;
        case R::TriggerSoftware:
            if (aIndex == 0 && mAcquiring && Get(R::TriggerMode) == 1 && Get(R::TriggerSource) == 0) {
                ++mTriggers;
                mTriggered = now;
                CountFrame(2);
                mWake.notify_all();
            }
            break;
        case R::TimestampLatch:
            Set64(R::GevTimestampValue, GetTimestamp(now));
            break;
        case R::TimestampReset:
            mClockZero = now;
            break;
        case R::CounterReset:
            Set(R::CounterValue + 4 * aIndex, 0);
            break;
        case R::DeviceReset:
            StopAcquisition();
            mPending[aCommand] = now + CommandTime;
            break;
        case R::UserSetLoad:
        case R::UserSetSave:
        case R::SimCommand:
            mPending[aCommand] = now + CommandTime;
            break;
        default:
            break;
    }
}

void SimulatedCamera::Data::Update(Clock::time_point aNow)
{
    for (auto pending = mPending.begin(); pending != mPending.end();) {
        if (pending->second > aNow) {
            ++pending;
            continue;
        }
        const uint64_t address = pending->first;
        pending = mPending.erase(pending);
        Complete(address);
    }
}

void SimulatedCamera::Data::Complete(uint64_t aAddress)
{
    // What the automatic functions find: the scene as it was designed.
    const bool once = Get(aAddress) == 1;
    switch (aAddress) {
        case R::DeviceReset:
            Restart();
            Set(aAddress, 0);
            break;
        case R::UserSetLoad:
            LoadSettings(mUserSets[std::min<size_t>(Get(R::UserSetSelector), UserSetCount - 1)]);
            Set(aAddress, 0);
            break;
        case R::UserSetSave:
            mUserSets[std::min<size_t>(Get(R::UserSetSelector), UserSetCount - 1)] = SaveSettings();
            Set(aAddress, 0);
            break;
        case R::SimCommand:
            Set(R::SimCommandCount, Get(R::SimCommandCount) + 1);
            Set(aAddress, 0);
            break;
        case R::GainAuto:
            SetFloat(R::Gain, std::clamp(-20.0 * std::log10(GetFloat(R::ExposureTime) / 10000.0), 0.0, 24.0));
            break;
        case R::ExposureAuto:
            SetFloat(R::ExposureTime, std::clamp(10000.0 / std::pow(10.0, GetFloat(R::Gain) / 20.0), 10.0,
                                                 GetFloat(R::ExposureTimeMax)));
            break;
        case R::BalanceWhiteAuto:
            for (uint64_t i = 0; i < 3; ++i) {
                SetFloat(R::BalanceRatio + 8 * i, 1.0);
            }
            break;
        default:
            break;
    }
    if (once && (aAddress == R::GainAuto || aAddress == R::ExposureAuto || aAddress == R::BalanceWhiteAuto)) {
        Set(aAddress, 0);
    }
}

void SimulatedCamera::Data::Derive()
{
    const auto fit = [this](uint64_t aMax, uint64_t aSize, uint64_t aOffset, uint32_t aSensor, uint32_t aStep) {
        Set(aMax, aSensor);
        const uint32_t size = std::min(Get(aSize), aSensor) / aStep * aStep;
        const uint32_t offset = std::min(Get(aOffset), aSensor - size) / aStep * aStep;
        Set(aSize, size);
        Set(aOffset, offset);
    };
    fit(R::WidthMax, R::Width, R::OffsetX, Get(R::SensorWidth) / std::max(Get(R::BinningHorizontal), 1u), 4);
    fit(R::HeightMax, R::Height, R::OffsetY, Get(R::SensorHeight) / std::max(Get(R::BinningVertical), 1u), 2);

    const auto format = static_cast<LxPixelType>(Get(R::PixelFormat));
    const PixelEncoder encoder(format);
    Set(R::PixelSize, LxPixelTypeGetBitsPerPixel(format));
    Set(R::PixelColorFilter, encoder.GetColorFilter());
    Set(R::PixelDynamicRangeMax, (1u << encoder.GetBitsPerSample()) - 1);
    uint64_t payload = LxPixelTypeGetImageSize(format, Get(R::Width), Get(R::Height));
    if (mPayloadType == LxPayloadType::GenDC) {
        payload += MakeGenDCDescriptor(0).size();
    }
    Set64(R::PayloadSize, payload);

    const double maxRate = std::min(MaxFrameRate, LinkBytesPerSecond / static_cast<double>(payload));
    SetFloat(R::AcquisitionFrameRateMax, maxRate);
    SetFloat(R::AcquisitionFrameRate, std::min(GetFloat(R::AcquisitionFrameRate), maxRate));
    const double rate = Get(R::AcquisitionFrameRateEnable) != 0 ? GetFloat(R::AcquisitionFrameRate) : maxRate;
    const double maxExposure = 1e6 / rate - ReadoutTime;
    SetFloat(R::ExposureTimeMax, maxExposure);
    SetFloat(R::ExposureTime, std::min(GetFloat(R::ExposureTime), maxExposure));
}

void SimulatedCamera::Data::Refresh(const RegisterSpec &aSpec, Clock::time_point aNow)
{
    const double seconds = std::chrono::duration<double>(aNow - mStarted).count();
    switch (aSpec.mAddress) {
        case R::Timestamp:
            Set64(R::Timestamp, GetTimestamp(aNow));
            break;
        case R::DeviceTemperature:
            SetFloat(R::DeviceTemperature, 45.0 + 3.0 * std::sin(seconds / 20.0) + (mAcquiring ? 4.0 : 0.0));
            SetFloat(R::DeviceTemperature + 8, 38.0 + 1.5 * std::sin(seconds / 35.0));
            break;
        case R::AcquisitionStatus: {
            const bool waiting = mAcquiring && Get(R::TriggerMode) == 1 && mTriggers == 0;
            Set(R::AcquisitionStatus, waiting ? 1 : 0);
            Set(R::AcquisitionStatus + 4, mAcquiring ? 1 : 0);
            Set(R::AcquisitionStatus + 8, mAcquiring && !waiting ? 1 : 0);
            break;
        }
        case R::LineStatus:
        case R::LineStatusAll: {
            const uint32_t levels = GetLineLevels();
            Set(R::LineStatusAll, levels);
            for (uint32_t i = 0; i < 3; ++i) {
                Set(R::LineStatus + 4 * i, levels >> i & 1);
            }
            break;
        }
        case R::CounterStatus:
            for (uint32_t i = 0; i < 2; ++i) {
                const bool complete = Get(R::CounterValue + 4 * i) >= Get(R::CounterDuration + 4 * i);
                Set(R::CounterStatus + 4 * i, Get(R::CounterEventSource + 4 * i) == 0 ? 0 : complete ? 2 : 1);
            }
            break;
        case R::GevSCPS:
            Set(R::GevSCPS, Get(R::GevSCPS) & 0x7FFFFFFF);  // the bit that fires a test packet clears itself
            break;
        case R::SimUptime:
            Set64(R::SimUptime, static_cast<uint64_t>(seconds));
            break;
        default:
            break;
    }
}

uint32_t SimulatedCamera::Data::GetLineLevels() const
{
    uint32_t levels = 0;
    for (uint32_t i = 0; i < 3; ++i) {
        bool level = false;
        if (Get(R::LineMode + 4 * i) == 1) {
            const uint32_t source = Get(R::LineSource + 4 * i);
            level = source == 1 ? mAcquiring : source >= 2 && Get(R::UserOutputValue + 4 * (source - 2)) != 0;
        }
        level = level != (Get(R::LineInverter + 4 * i) != 0);
        levels |= (level ? 1u : 0u) << i;
    }
    return levels;
}

uint64_t SimulatedCamera::Data::GetTimestamp(Clock::time_point aNow) const
{
    return static_cast<uint64_t>(
        std::max<int64_t>(0, std::chrono::duration_cast<std::chrono::nanoseconds>(aNow - mClockZero).count()));
}

void SimulatedCamera::Data::Restart()
{
    LoadSettings(mUserSets[std::min<size_t>(Get(R::UserSetDefault), UserSetCount - 1)]);
    mClockZero = Clock::now();
}

std::vector<uint8_t> SimulatedCamera::Data::SaveSettings() const
{
    return mShadow;
}

void SimulatedCamera::Data::LoadSettings(const std::vector<uint8_t> &aSettings)
{
    for (const RegisterSpec &spec : GetSimulatedRegisters()) {
        if (spec.mAddress < FirstSettingAddress || spec.mAccess != RegisterAccess::RW ||
            spec.mKind == RegisterKind::Command || spec.mAddress == R::UserSetSelector ||
            spec.mAddress == R::UserSetDefault || spec.mAddress == R::SimCommandCount)
        {
            continue;
        }
        const auto length = static_cast<uint32_t>(spec.GetEnd() - spec.mAddress);
        mPort->Poke(spec.mAddress, aSettings.data() + spec.mAddress, length);
        Remember(spec.mAddress, length);
    }
    Derive();
    mWake.notify_all();
}

}  // namespace LxDetail
