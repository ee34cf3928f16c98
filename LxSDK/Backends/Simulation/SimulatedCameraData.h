#pragma once

// Internal: the state of a simulated camera and what its registers do.

#include <array>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <map>
#include <mutex>
#include <set>
#include <vector>

#include "Backends/Simulation/PatternGenerator.h"
#include "Backends/Simulation/SimulatedCamera.h"
#include "Backends/Simulation/SimulatedRegisters.h"

namespace LxDetail
{

class SimulatedCamera::Data
{
public:
    using Clock = std::chrono::steady_clock;

    explicit Data(const SimulatedCameraIdentity &aIdentity);

    bool WaitForFrame(const std::atomic<bool> &aStop);
    void DrawFrame(uint64_t aNumber, uint8_t *aData, uint64_t aSize);
    void AbortAcquisition();
    void Restart();
    uint64_t GetTimestamp(Clock::time_point aNow) const;
    void SetPayloadType(LxPayloadType aType);

    uint32_t Get(uint64_t aAddress) const { return mPort->Peek32(aAddress); }
    double GetFloat(uint64_t aAddress) const;
    double GetEffectiveFrameRate() const;

    const SimulatedCameraIdentity mIdentity;
    const std::shared_ptr<MemoryPort> mPort = std::make_shared<MemoryPort>();
    std::string mXML;

    mutable std::mutex mMutex;  // guards all members below; the port's own lock is taken inside it
    bool mAcquiring = false;
    uint64_t mAcquisitions = 0;
    LxPayloadType mPayloadType = LxPayloadType::Image;
    std::function<void(bool)> mListener;

private:
    static constexpr size_t UserSetCount = 3;

    void MapRegisters();
    void WriteIdentity();
    void ReadPixelFormats();

    LxResult OnRead(uint64_t aAddress, uint32_t aLength);
    LxResult OnWrite(uint64_t aAddress, uint32_t aLength);
    LxResult Check(const RegisterSpec &aSpec, uint64_t aElement) const;
    LxResult CheckGeometry(const RegisterSpec &aSpec, uint32_t aValue) const;
    void Apply(const RegisterSpec &aSpec, uint64_t aElement);
    void Execute(uint64_t aCommand, uint32_t aIndex);
    /// Brings what the clock drives up to date: commands that take time, automatic functions.
    void Update(Clock::time_point aNow);
    void Complete(uint64_t aAddress);
    /// Recomputes what follows from geometry, format and rate.
    void Derive();
    void Refresh(const RegisterSpec &aSpec, Clock::time_point aNow);

    void Set(uint64_t aAddress, uint32_t aValue);
    void Set64(uint64_t aAddress, uint64_t aValue);
    void SetFloat(uint64_t aAddress, double aValue);
    void Remember(uint64_t aAddress, uint32_t aLength);

    void StartAcquisition();
    void StopAcquisition();
    void CountFrame(uint32_t aSource);
    uint32_t GetLineLevels() const;
    std::vector<uint8_t> SaveSettings() const;
    void LoadSettings(const std::vector<uint8_t> &aSettings);
    PatternSettings GetPatternSettings() const;
    /// The descriptor of a container with one image of the present geometry.
    std::vector<uint8_t> MakeGenDCDescriptor(uint64_t aNumber) const;

    std::set<uint32_t> mPixelFormats;
    std::vector<uint8_t> mShadow;  // the last accepted content of the registers, by address
    std::map<uint64_t, Clock::time_point> mPending;
    std::array<std::vector<uint8_t>, UserSetCount> mUserSets;
    Clock::time_point mStarted = Clock::now();
    Clock::time_point mClockZero = mStarted;

    std::condition_variable mWake;
    Clock::time_point mNextFrame;
    uint64_t mRemaining = 0;  // frames of this acquisition
    uint64_t mTriggers = 0;   // fired and not yet used
    Clock::time_point mTriggered;
    bool mNotify = false;  // mListener is to be called when the lock has been released

    std::mutex mDrawMutex;  // guards mGenerator; never taken together with mMutex
    PatternGenerator mGenerator;
};

}  // namespace LxDetail
