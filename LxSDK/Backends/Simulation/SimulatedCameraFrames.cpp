// The part of SimulatedCamera::Data that acquires and draws.

#include <algorithm>
#include <cmath>

#include "Backends/Simulation/SimulatedCameraData.h"
#include "LxBuffer/GenDCDescriptor.h"

namespace LxDetail
{

using namespace std::chrono_literals;
namespace R = SimulatedRegister;

namespace
{

constexpr double DesignedExposureTime = 10000.0;  // us at which the scene is neither dark nor bright
constexpr auto StopPollInterval = 10ms;

std::chrono::steady_clock::duration Microseconds(double aTime)
{
    return std::chrono::duration_cast<std::chrono::steady_clock::duration>(
        std::chrono::duration<double, std::micro>(aTime));
}

}  // namespace

void SimulatedCamera::Data::StartAcquisition()
{
    if (mAcquiring) {
        return;
    }
    switch (Get(R::AcquisitionMode)) {
        case 1:
            mRemaining = 1;
            break;
        case 2:
            mRemaining = Get(R::AcquisitionFrameCount);
            break;
        default:
            mRemaining = UINT64_MAX;
            break;
    }
    mAcquiring = true;
    ++mAcquisitions;
    mTriggers = 0;
    mNextFrame = Clock::now() + Microseconds(GetFloat(R::ExposureTime));
    mNotify = true;
    mWake.notify_all();
}

void SimulatedCamera::Data::StopAcquisition()
{
    if (mAcquiring) {
        mAcquiring = false;
        mNotify = true;
        mWake.notify_all();
    }
}

void SimulatedCamera::Data::AbortAcquisition()
{
    std::function<void(bool)> listener;
    {
        std::lock_guard lock(mMutex);
        StopAcquisition();
        if (mNotify) {
            mNotify = false;
            listener = mListener;
        }
    }
    if (listener) {
        listener(false);
    }
}

double SimulatedCamera::Data::GetEffectiveFrameRate() const
{
    const double limit = std::min(GetFloat(R::AcquisitionFrameRateMax), 1e6 / (GetFloat(R::ExposureTime) + 20.0));
    return Get(R::AcquisitionFrameRateEnable) != 0 ? std::min(GetFloat(R::AcquisitionFrameRate), limit) : limit;
}

void SimulatedCamera::Data::CountFrame(uint32_t aSource)
{
    for (uint64_t i = 0; i < 2; ++i) {
        if (Get(R::CounterEventSource + 4 * i) == aSource) {
            Set(R::CounterValue + 4 * i, Get(R::CounterValue + 4 * i) + 1);
        }
    }
}

bool SimulatedCamera::Data::WaitForFrame(const std::atomic<bool> &aStop)
{
    std::unique_lock lock(mMutex);
    for (;;) {
        if (aStop || !mAcquiring) {
            return false;
        }
        const Clock::time_point now = Clock::now();
        Update(now);
        const bool triggered = Get(R::TriggerMode) == 1;
        const auto period = Microseconds(1e6 / GetEffectiveFrameRate());
        Clock::time_point due = mNextFrame;
        if (triggered) {
            due = mTriggers > 0 ? std::max(mTriggered + Microseconds(GetFloat(R::TriggerDelay)), mNextFrame)
                                : Clock::time_point::max();
        }
        else {
            // A slower setting was replaced by a quicker one.
            due = std::min(due, now + period);
        }
        if (due > now) {
            // aStop wakes nobody, so that it is looked at now and then.
            mWake.wait_until(lock, std::min(due, now + StopPollInterval));
            continue;
        }
        // A consumer that is late misses pictures, as it would with a camera.
        mNextFrame = due + period < now ? now : due + period;
        if (triggered) {
            --mTriggers;
            mNextFrame = now + period;
        }
        CountFrame(1);
        if (--mRemaining == 0) {
            mAcquiring = false;
        }
        return true;
    }
}

PatternSettings SimulatedCamera::Data::GetPatternSettings() const
{
    PatternSettings settings;
    settings.mWidth = Get(R::Width);
    settings.mHeight = Get(R::Height);
    settings.mOffsetX = Get(R::OffsetX);
    settings.mOffsetY = Get(R::OffsetY);
    settings.mBinningX = std::max(Get(R::BinningHorizontal), 1u);
    settings.mBinningY = std::max(Get(R::BinningVertical), 1u);
    settings.mReverseX = Get(R::ReverseX) != 0;
    settings.mReverseY = Get(R::ReverseY) != 0;
    settings.mPixelType = static_cast<LxPixelType>(Get(R::PixelFormat));
    settings.mPattern = static_cast<TestPattern>(Get(R::TestPattern));
    const bool color = Get(R::PixelColorFilter) != 0 || (Get(R::PixelFormat) >> 24) == 2;
    for (uint64_t i = 0; i < 3; ++i) {
        double gain = GetFloat(R::Gain);
        if (color) {
            gain += GetFloat(R::Gain + 8 * (i + 1));
        }
        settings.mGain[i] = std::pow(10.0, gain / 20.0) * GetFloat(R::ExposureTime) / DesignedExposureTime *
                            (color ? GetFloat(R::BalanceRatio + 8 * i) : 1.0);
    }
    settings.mBlackLevel = GetFloat(R::BlackLevel) / 256.0;
    settings.mGamma = Get(R::GammaEnable) != 0 ? GetFloat(R::Gamma) : 1.0;
    if (Get(R::LUTEnable) != 0) {
        for (uint32_t i = 0; i < 256; ++i) {
            settings.mLookUpTable.push_back(static_cast<uint8_t>(Get(R::LUTValue + 4 * i)));
        }
    }
    return settings;
}

void SimulatedCamera::Data::SetPayloadType(LxPayloadType aType)
{
    mPayloadType = aType;
    Derive();
}

std::vector<uint8_t> SimulatedCamera::Data::MakeGenDCDescriptor(uint64_t aNumber) const
{
    GenDC::Part part;
    part.mFormat = static_cast<LxPixelType>(Get(R::PixelFormat));
    part.mSizeX = Get(R::Width);
    part.mSizeY = Get(R::Height);
    part.mDataSize = LxPixelTypeGetImageSize(part.mFormat, part.mSizeX, part.mSizeY);
    GenDC::Component component;
    component.mFormat = part.mFormat;
    component.mTimestamp = GetTimestamp(Clock::now());
    component.mParts.push_back(part);
    GenDC::Descriptor descriptor;
    descriptor.mID = aNumber;
    descriptor.mComponents.push_back(std::move(component));
    return GenDC::Build(descriptor);
}

void SimulatedCamera::Data::DrawFrame(uint64_t aNumber, uint8_t *aData, uint64_t aSize)
{
    PatternSettings settings;
    std::vector<uint8_t> descriptor;
    {
        std::lock_guard lock(mMutex);
        Update(Clock::now());
        settings = GetPatternSettings();
        if (mPayloadType == LxPayloadType::GenDC) {
            descriptor = MakeGenDCDescriptor(aNumber);
        }
    }
    const uint64_t head = std::min<uint64_t>(descriptor.size(), aSize);
    std::copy_n(descriptor.begin(), head, aData);
    std::lock_guard lock(mDrawMutex);
    mGenerator.SetSettings(settings);
    mGenerator.Draw(aNumber, aData + head, aSize - head);
}

}  // namespace LxDetail
