#pragma once

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <vector>

#include "LxDevice/ILxDeviceAdapter.h"
#include "LxDevice/SerialPortSource.h"

/// A serial port whose other side is the test. Thread-safe.
class ScriptedPort : public LxDetail::SerialPortChannel
{
public:
    explicit ScriptedPort(LxDeviceSerial aPort) : mPort(aPort) {}

    const LxDeviceSerial mPort;

    /// Bytes for the window to receive.
    void Deliver(const std::string &aBytes)
    {
        const std::lock_guard lock(mMutex);
        mReceived.insert(mReceived.end(), aBytes.begin(), aBytes.end());
        mChanged.notify_all();
    }
    /// From now on every read gets as many bytes as it can take: 0, 1, ... 255, 0, ...
    void Flood(bool aFlood)
    {
        const std::lock_guard lock(mMutex);
        mFlood = aFlood;
        mChanged.notify_all();
    }
    /// What is written comes back, without every n-th byte if that is not 0.
    void LoopBack(unsigned aLossPeriod = 0)
    {
        mLossPeriod = aLossPeriod;
        mLoopback = true;
    }
    void FailReads(const LxResult &aResult)
    {
        const std::lock_guard lock(mMutex);
        mReadResult = aResult;
        mChanged.notify_all();
    }
    void FailWrites(const LxResult &aResult)
    {
        const std::lock_guard lock(mMutex);
        mWriteResult = aResult;
    }
    /// Called before each write (true) and read (false), on their threads.
    void SetObserver(std::function<void(bool)> aObserver)
    {
        const std::lock_guard lock(mMutex);
        mObserver = std::move(aObserver);
    }
    /// While held, a write does not return.
    void HoldWrites(bool aHold)
    {
        const std::lock_guard lock(mMutex);
        mHold = aHold;
        mChanged.notify_all();
    }

    std::string Written() const
    {
        const std::lock_guard lock(mMutex);
        return mWritten;
    }
    std::vector<uint32_t> WriteSizes() const
    {
        const std::lock_guard lock(mMutex);
        return mWriteSizes;
    }
    bool IsWriting() const { return mWriting > 0; }
    bool IsDrained() const
    {
        const std::lock_guard lock(mMutex);
        return mReceived.empty();
    }
    bool IsClosed() const { return mClosed; }
    int ReadCalls() const { return mReads; }
    uint64_t BytesRead() const { return mBytesRead; }
    /// The capacity and the time-out of the last read.
    std::pair<uint32_t, uint32_t> LastRead() const
    {
        const std::lock_guard lock(mMutex);
        return mLastRead;
    }

    LxResult Write(const uint8_t *aData, uint32_t aCount, uint32_t &aWritten) override
    {
        Observe(true);
        std::unique_lock lock(mMutex);
        ++mWriting;
        mChanged.wait(lock, [this] { return !mHold; });
        --mWriting;
        if (!mWriteResult.IsOK()) {
            aWritten = 0;
            return mWriteResult;
        }
        mWriteSizes.push_back(aCount);
        mWritten.append(reinterpret_cast<const char *>(aData), aCount);
        aWritten = aCount;
        // A line holds little: whoever writes cannot be far ahead of who reads.
        mChanged.wait(lock, [this] {
            return !mLoopback || mReceived.size() < LineCapacity || mFlood || mClosed || !mReadResult.IsOK();
        });
        for (uint32_t i = 0; mLoopback && i < aCount; ++i) {
            if (mLossPeriod == 0 || ++mLooped % mLossPeriod != 0) {
                mReceived.push_back(static_cast<char>(aData[i]));
            }
        }
        mChanged.notify_all();
        return LxResult();
    }
    LxResult Read(uint8_t *aData, uint32_t aCapacity, uint32_t &aRead, uint32_t aTimeout) override
    {
        Observe(false);
        std::unique_lock lock(mMutex);
        ++mReads;
        mLastRead = {aCapacity, aTimeout};
        mChanged.wait_for(lock, std::chrono::milliseconds(aTimeout),
                          [this] { return !mReceived.empty() || mFlood || mClosed || !mReadResult.IsOK(); });
        if (mClosed) {
            return LxResultCode::Aborted;
        }
        if (!mReadResult.IsOK()) {
            return mReadResult;
        }
        if (mFlood) {
            for (aRead = 0; aRead < aCapacity; ++aRead) {
                aData[aRead] = mNextFloodByte++;
            }
        }
        else if (mReceived.empty()) {
            return LxResultCode::SerialTimeout;
        }
        else {
            for (aRead = 0; aRead < aCapacity && !mReceived.empty(); ++aRead) {
                aData[aRead] = static_cast<uint8_t>(mReceived.front());
                mReceived.pop_front();
            }
            mChanged.notify_all();
        }
        mBytesRead += aRead;
        return LxResult();
    }
    void Close() override
    {
        const std::lock_guard lock(mMutex);
        mClosed = true;
        mChanged.notify_all();
    }

private:
    void Observe(bool aWriting)
    {
        std::unique_lock lock(mMutex);
        if (const auto observer = mObserver) {
            lock.unlock();
            observer(aWriting);
        }
    }

    static constexpr size_t LineCapacity = 256;

    mutable std::mutex mMutex;  // guards what is not atomic
    std::function<void(bool)> mObserver;
    std::condition_variable mChanged;
    std::deque<char> mReceived;
    std::string mWritten;
    std::vector<uint32_t> mWriteSizes;
    std::pair<uint32_t, uint32_t> mLastRead;
    LxResult mReadResult;
    LxResult mWriteResult;
    bool mHold = false;
    uint8_t mNextFloodByte = 0;
    unsigned mLooped = 0;
    std::atomic<unsigned> mLossPeriod{0};
    std::atomic<bool> mLoopback{false};
    std::atomic<bool> mFlood{false};
    std::atomic<bool> mClosed{false};
    std::atomic<int> mWriting{0};
    std::atomic<int> mReads{0};
    std::atomic<uint64_t> mBytesRead{0};
};

/// A device with serial ports, each as the test wants it. Used on the GUI thread, like the window.
class SerialDevice : public ILxDeviceAdapter, public LxDetail::SerialPortSource
{
public:
    explicit SerialDevice(std::set<LxDeviceSerial> aPorts = {LxDeviceSerial::Serial0}) : mPorts(std::move(aPorts)) {}

    LxGenParameterArray *GetParameters() override { return mParameters; }
    LxString GetUniqueID() const override { return "scripted"; }
    bool HasSerialPort(LxDeviceSerial aPort) const override { return mPorts.count(aPort) > 0; }
    LxResult OpenSerialPort(LxDeviceSerial aPort, std::shared_ptr<LxDetail::SerialPortChannel> &aChannel) override
    {
        if (!mOpenResult.IsOK()) {
            ++mFailedOpens;
            return mOpenResult;
        }
        mOpened.push_back(std::make_shared<ScriptedPort>(aPort));
        aChannel = mOpened.back();
        return LxResult();
    }

    /// The port that was opened last.
    ScriptedPort &Port() const { return *mOpened.back(); }
    std::vector<LxDeviceSerial> Opened() const
    {
        std::vector<LxDeviceSerial> ports;
        for (const auto &port : mOpened) {
            ports.push_back(port->mPort);
        }
        return ports;
    }
    /// How many ports are open now.
    size_t OpenCount() const
    {
        return static_cast<size_t>(
            std::count_if(mOpened.begin(), mOpened.end(), [](const auto &aPort) { return !aPort->IsClosed(); }));
    }

    std::set<LxDeviceSerial> mPorts;
    LxGenParameterArray *mParameters = nullptr;
    LxResult mOpenResult;
    int mFailedOpens = 0;

private:
    std::vector<std::shared_ptr<ScriptedPort>> mOpened;
};
