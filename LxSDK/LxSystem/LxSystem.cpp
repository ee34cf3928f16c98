#include "LxSystem/LxSystem.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <mutex>
#include <thread>
#include <vector>

#include "LxBase/SinkList.h"
#include "LxDevice/DeviceBackend.h"
#include "LxSDKVersion.h"
#include "LxSystem/LxDeviceInfo.h"
#include "LxSystem/LxSystemEventSink.h"
#include "LxSystem/Search.h"

namespace
{

using LxDetail::DeviceBackend;
using LxDetail::DeviceBackends;
using LxDetail::DeviceScanner;

// A search among devices that are known at once still takes this long, so that a thread that searches in a loop does
// not spin.
constexpr std::chrono::milliseconds shortestSearch(30);

// Runs an operation of the public interface; what it throws becomes its result.
template <class Operation>
LxResult Guard(const Operation &aOperation) noexcept
{
    try {
        return aOperation();
    }
    catch (const std::bad_alloc &) {
        return LxResultCode::NoMemory;
    }
    catch (const std::exception &error) {
        return LxResult(LxResultCode::Failed, error.what());
    }
    catch (...) {
        return LxResultCode::Failed;
    }
}

}  // namespace

class LX_NO_EXPORT LxSystem::Data
{
public:
    /// A backend that was active at some time during the life of the system. It stays, because what its scanner handed
    /// out must; only its interfaces are no longer listed when the backend has gone.
    struct Source
    {
        std::shared_ptr<DeviceBackend> mBackend;
        std::unique_ptr<DeviceScanner> mScanner;
        bool mActive = true;
    };

    Data()
    {
        // what fails here fails again, and is told, in the first search
        static_cast<void>(Guard([this] {
            Update();
            return LxResult();
        }));
    }

    /// Takes over which backends are active and which interfaces they have.
    void Update();
    std::vector<DeviceScanner *> GetActiveScanners() const;
    LxResult Find();
    LxResult FindDevice(const LxString &aAddress, const LxDeviceInfo **aFound);
    void Report(const LxInterface *aInterface, const LxDeviceInfo *aInfo);

    std::atomic<uint32_t> mTimeout{1000};
    std::atomic<bool> mSubnetBroadcast{false};
    LxDetail::SinkList<LxSystemEventSink> mSinks;

    mutable std::mutex mInterfacesMutex;  // guards mInterfaces
    std::vector<const LxInterface *> mInterfaces;

    std::mutex mSearchMutex;  // held during a search; guards mSources
    std::vector<Source> mSources;
    std::atomic<std::thread::id> mSearcher{};  // the thread inside a search

    std::mutex mCancelMutex;  // guards mFinding, and setting mCancel against the start and end of Find()
    bool mFinding = false;
    LxDetail::CancelEvent mCancel;
    const LxDetail::CancelEvent mNever;

private:
    // Marks the calling thread as the one that searches.
    struct Searching
    {
        explicit Searching(Data &aData) : mData(aData), mLock(aData.mSearchMutex)
        {
            mData.mSearcher = std::this_thread::get_id();
        }
        ~Searching() { mData.mSearcher = std::thread::id(); }
        Searching(const Searching &) = delete;
        Searching &operator=(const Searching &) = delete;

        Data &mData;
        const std::lock_guard<std::mutex> mLock;
    };

    // Lets CancelFind() act for as long as it lives.
    struct Finding
    {
        explicit Finding(Data &aData) : mData(aData)
        {
            const std::lock_guard lock(mData.mCancelMutex);
            mData.mFinding = true;
        }
        ~Finding()
        {
            const std::lock_guard lock(mData.mCancelMutex);
            mData.mFinding = false;
            mData.mCancel.Reset();
        }
        Finding(const Finding &) = delete;
        Finding &operator=(const Finding &) = delete;

        Data &mData;
    };

    LxResult RefuseNested() const;
};

void LxSystem::Data::Update()
{
    const auto backends = DeviceBackends::Get();
    for (Source &source : mSources) {
        source.mActive = std::find(backends.begin(), backends.end(), source.mBackend) != backends.end();
    }
    for (const auto &backend : backends) {
        const bool known = std::any_of(mSources.begin(), mSources.end(),
                                       [&backend](const Source &aSource) { return aSource.mBackend == backend; });
        if (!known) {
            if (auto scanner = backend->CreateScanner()) {
                mSources.push_back({backend, std::move(scanner), true});
            }
        }
    }
    // in the order in which the backends are asked
    std::stable_sort(mSources.begin(), mSources.end(), [&backends](const Source &aLeft, const Source &aRight) {
        return std::find(backends.begin(), backends.end(), aLeft.mBackend) <
               std::find(backends.begin(), backends.end(), aRight.mBackend);
    });

    std::vector<const LxInterface *> interfaces;
    for (DeviceScanner *scanner : GetActiveScanners()) {
        scanner->UpdateInterfaces();
        const auto some = scanner->GetInterfaces();
        interfaces.insert(interfaces.end(), some.begin(), some.end());
    }
    const std::lock_guard lock(mInterfacesMutex);
    mInterfaces = std::move(interfaces);
}

std::vector<DeviceScanner *> LxSystem::Data::GetActiveScanners() const
{
    std::vector<DeviceScanner *> scanners;
    for (const Source &source : mSources) {
        if (source.mActive) {
            scanners.push_back(source.mScanner.get());
        }
    }
    return scanners;
}

LxResult LxSystem::Data::RefuseNested() const
{
    if (mSearcher == std::this_thread::get_id()) {
        return LxResult(LxResultCode::InvalidState, "A search cannot be started from within OnDeviceFound().");
    }
    return LxResult();
}

void LxSystem::Data::Report(const LxInterface *aInterface, const LxDeviceInfo *aInfo)
{
    mSinks.Notify([aInterface, aInfo](LxSystemEventSink *aSink) {
        bool reserved = false;
        aSink->OnDeviceFound(aInterface, aInfo, reserved);
    });
}

LxResult LxSystem::Data::Find()
{
    if (const LxResult nested = RefuseNested(); !nested.IsOK()) {
        return nested;
    }
    const Searching searching(*this);
    const Finding finding(*this);
    const auto start = std::chrono::steady_clock::now();
    const uint32_t timeout = mTimeout;
    Update();
    LxDetail::Search search(timeout, mSubnetBroadcast, mCancel,
                            [this](const LxInterface *aInterface, const LxDeviceInfo *aInfo) {
                                if (!mCancel.IsSet()) {
                                    Report(aInterface, aInfo);
                                }
                            });
    for (DeviceScanner *scanner : GetActiveScanners()) {
        if (!mCancel.IsSet()) {
            scanner->Find(search);
        }
    }
    const auto pace = std::min<std::chrono::milliseconds>(std::chrono::milliseconds(timeout), shortestSearch);
    const auto left = start + pace - std::chrono::steady_clock::now();
    mCancel.Wait(std::chrono::ceil<std::chrono::milliseconds>(left));
    return mCancel.IsSet() ? LxResult(LxResultCode::Aborted, "The search was cancelled.") : LxResult();
}

LxResult LxSystem::Data::FindDevice(const LxString &aAddress, const LxDeviceInfo **aFound)
{
    if (const LxResult nested = RefuseNested(); !nested.IsOK()) {
        return nested;
    }
    const Searching searching(*this);
    Update();
    LxResult failure(LxResultCode::NotFound, "No device answers at " + aAddress.GetString() +
                                                 ". Check that it is switched on and connected, and that a network "
                                                 "adapter of this computer is on its subnet.");
    for (DeviceScanner *scanner : GetActiveScanners()) {
        const LxDeviceInfo *info = nullptr;
        const LxResult result = scanner->FindDevice(aAddress, &info);
        if (result.IsOK() && info) {
            *aFound = info;
            Report(info->GetInterface(), info);
            return LxResult();
        }
        if (!result.IsOK() && result != LxResultCode::NotFound) {
            failure = result;
        }
    }
    return failure;
}

LxSystem::LxSystem() : mData(std::make_unique<Data>()) {}

LxSystem::~LxSystem() = default;

void LxSystem::SetDetectionTimeout(uint32_t aTimeout)
{
    mData->mTimeout = aTimeout;
}

uint32_t LxSystem::GetDetectionTimeout() const
{
    return mData->mTimeout;
}

void LxSystem::SetSubnetBroadcastEnabled(bool aEnabled)
{
    mData->mSubnetBroadcast = aEnabled;
}

bool LxSystem::IsSubnetBroadcastEnabled() const
{
    return mData->mSubnetBroadcast;
}

LxResult LxSystem::Find()
{
    return Guard([this] { return mData->Find(); });
}

void LxSystem::CancelFind()
{
    const std::lock_guard lock(mData->mCancelMutex);
    if (mData->mFinding) {
        mData->mCancel.Set();
    }
}

LxResult LxSystem::FindDevice(const LxString &aAddress, const LxDeviceInfo **aFound)
{
    if (!aFound) {
        return LxResult(LxResultCode::InvalidArgument, "There is no place for the device that is found.");
    }
    *aFound = nullptr;
    if (aAddress.IsEmpty()) {
        return LxResult(LxResultCode::InvalidArgument, "The address of the device is empty.");
    }
    return Guard([&] { return mData->FindDevice(aAddress, aFound); });
}

uint32_t LxSystem::GetInterfaceCount() const
{
    const std::lock_guard lock(mData->mInterfacesMutex);
    return static_cast<uint32_t>(mData->mInterfaces.size());
}

const LxInterface *LxSystem::GetInterface(uint32_t aIndex) const
{
    const std::lock_guard lock(mData->mInterfacesMutex);
    return aIndex < mData->mInterfaces.size() ? mData->mInterfaces[aIndex] : nullptr;
}

LxResult LxSystem::RegisterEventSink(LxSystemEventSink *aSink)
{
    if (!aSink) {
        return LxResult(LxResultCode::InvalidArgument, "The event sink is null.");
    }
    return Guard([&] {
        mData->mSinks.Add(aSink);
        return LxResult();
    });
}

LxResult LxSystem::UnregisterEventSink(LxSystemEventSink *aSink)
{
    return Guard([&] {
        return mData->mSinks.Remove(aSink) ? LxResult()
                                           : LxResult(LxResultCode::NotFound, "The event sink is not registered.");
    });
}

LxResult LxSystem::Connect(const LxDeviceInfo *aInfo, LxDeviceAccess aAccess, std::unique_ptr<LxDevice> &aDevice)
{
    aDevice.reset();
    if (!aInfo) {
        return LxResult(LxResultCode::InvalidArgument, "There is no device to connect to.");
    }
    if (aAccess > LxDeviceAccess::ReadOnly) {
        return LxResult(LxResultCode::InvalidArgument, "The kind of access is none of LxDeviceAccess.");
    }
    return Guard([&] {
        for (const auto &backend : DeviceBackends::Get()) {
            const LxResult result = backend->Connect(*aInfo, aAccess, aDevice);
            if (result != LxResultCode::NotSupported) {
                return result;
            }
        }
        return LxResult(LxResultCode::NotSupported, "There is no way to connect to this kind of device.");
    });
}

LxString LxSystem::GetVersion()
{
    return LXSDK_VERSION_STRING;
}

LxString LxSystem::GetTransportLibrary()
{
    return LxString(LxDetail::GetTransportLibrary().c_str());
}
