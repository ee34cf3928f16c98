#include "Backends/Simulation/SimulatedSerialPort.h"

#include <algorithm>
#include <atomic>
#include <vector>

#include "Backends/Simulation/SimulationLog.h"

namespace LxDetail
{

using namespace std::chrono_literals;

namespace
{

constexpr uint32_t BitsPerByte = 10;  // with start and stop bit
constexpr uint32_t MostDelivered = 4096;

}  // namespace

/// A port that an application has open.
class SimulatedSerialSession : public SerialPortChannel
{
public:
    SimulatedSerialSession(std::shared_ptr<SimulatedSerialPort> aPort, std::string aName, const void *aOwner)
        : mPort(std::move(aPort)), mName(std::move(aName)), mOwner(aOwner), mCount(SimulationLog::Get().mSerialPorts)
    {
    }
    ~SimulatedSerialSession() override { SimulatedSerialSession::Close(); }

    void Start()
    {
        mThread = std::thread([this] { Run(); });
    }

    LxResult Write(const uint8_t *aData, uint32_t aCount, uint32_t &aWritten) override
    {
        LxResult result;
        if (Begin("SerialWrite", aCount, false, result)) {
            aWritten = mToPeer.Push(aData, aCount, mPort->GetByteTime());
            result = aWritten == aCount ? LxResult() : GetFault(false);
        }
        return result;
    }
    LxResult Read(uint8_t *aData, uint32_t aCapacity, uint32_t &aRead, uint32_t aTimeout) override
    {
        LxResult result;
        if (Begin("SerialRead", aCapacity, true, result)) {
            aRead = mToHost.Pop(aData, aCapacity, std::chrono::milliseconds(aTimeout));
            result = aRead > 0 ? LxResult() : GetFault(true);
            if (aRead == 0 && result.IsOK()) {
                result = LxResult(LxResultCode::SerialTimeout, "No data came from the serial port in time.");
            }
        }
        return result;
    }
    void Close() override
    {
        std::call_once(mClosing, [this] {
            mClosed = true;
            mToHost.Close();
            mToPeer.Close();
            if (mThread.joinable()) {  // it was not refused
                mThread.join();
                mPort->End(this);
                SimulationLog::Get().Record("SerialClose", mName);
            }
        });
    }
    /// The connection has ended.
    void Cut()
    {
        mCut = true;
        mToHost.Close();
        mToPeer.Close();
    }

    bool IsOpen() const { return !mClosed && !mCut; }
    const void *GetOwner() const { return mOwner; }

    SerialQueue mToHost;
    SerialQueue mToPeer;

private:
    /// False when the result is decided already.
    bool Begin(const char *aOperation, uint32_t aCount, bool aReading, LxResult &aResult)
    {
        SimulationLog &log = SimulationLog::Get();
        if (log.IsRecording()) {
            log.Record(aOperation, mName + ", " + std::to_string(aCount));
        }
        if (log.TakeResult(aOperation, aResult)) {
            return false;
        }
        aResult = GetFault(aReading);
        return aResult.IsOK();
    }
    LxResult GetFault(bool aReading) const
    {
        if (mClosed) {
            return LxResult(LxResultCode::Aborted, "The serial port has been closed.");
        }
        if (mCut) {
            return LxResult(LxResultCode::NotConnected, "The device has been disconnected.");
        }
        return mPort->GetFault(aReading);
    }
    void Run()
    {
        std::vector<uint8_t> bytes(MostDelivered);
        while (IsOpen()) {
            if (const uint32_t count = mToPeer.Pop(bytes.data(), MostDelivered, 1h); count > 0) {
                mPort->Deliver(*this, bytes.data(), count);
            }
        }
    }

    const std::shared_ptr<SimulatedSerialPort> mPort;
    const std::string mName;
    const void *const mOwner;
    const SimulationCount mCount;
    std::atomic<bool> mClosed{false};
    std::atomic<bool> mCut{false};
    std::once_flag mClosing;
    std::thread mThread;
};

void SimulatedSerialPort::SetConditions(const LxSimulatedSerialConditions &aConditions)
{
    std::lock_guard lock(mMutex);
    mConditions = aConditions;
    if (const auto session = mSession.lock()) {
        Apply(*session);
        session->mToHost.SetNoise(mConditions.mToHost);
        session->mToPeer.SetNoise(mConditions.mToPeer);
    }
}

LxSimulatedSerialConditions SimulatedSerialPort::GetConditions() const
{
    std::lock_guard lock(mMutex);
    return mConditions;
}

void SimulatedSerialPort::SetPeer(std::shared_ptr<LxSimulatedSerialPeer> aPeer)
{
    {
        std::lock_guard lock(mMutex);
        mPeer = aPeer;
    }
    if (aPeer) {
        aPeer->OnConnected(shared_from_this());
    }
}

void SimulatedSerialPort::SetBaudRate(uint32_t aBaudRate)
{
    std::lock_guard lock(mMutex);
    mBaudRate = aBaudRate;
}

void SimulatedSerialPort::SetLoopback(bool aLoopback)
{
    std::lock_guard lock(mMutex);
    mLoopback = aLoopback;
}

void SimulatedSerialPort::SetLink(const LxResult &aLink)
{
    std::lock_guard lock(mMutex);
    mLink = aLink;
    if (const auto session = mSession.lock()) {
        if (!aLink.IsOK()) {
            session->mToHost.Clear();
            session->mToPeer.Clear();
        }
        Apply(*session);
    }
}

/// With mMutex held.
void SimulatedSerialPort::Apply(SimulatedSerialSession &aSession)
{
    const bool away = !mLink.IsOK();
    aSession.mToHost.SetCapacity(mConditions.mCapacity);
    aSession.mToPeer.SetCapacity(mConditions.mCapacity);
    aSession.mToPeer.SetStalled(mConditions.mStalled);
    aSession.mToHost.SetBroken(away, away || !mConditions.mReadResult.IsOK());
    aSession.mToPeer.SetBroken(away || !mConditions.mWriteResult.IsOK(), false);
}

LxResult SimulatedSerialPort::Open(const std::string &aName, const void *aOwner,
                                   std::shared_ptr<SerialPortChannel> &aChannel)
{
    SimulationLog &log = SimulationLog::Get();
    log.Record("SerialOpen", aName);
    LxResult result;
    if (log.TakeResult("SerialOpen", result) && !result.IsOK()) {
        return result;
    }
    const auto session = std::make_shared<SimulatedSerialSession>(shared_from_this(), aName, aOwner);
    {
        std::lock_guard lock(mMutex);
        if (!mLink.IsOK()) {
            return mLink;
        }
        if (const auto open = mSession.lock(); open && open->IsOpen()) {
            return LxResult(LxResultCode::Busy, "The serial port is open already, here or in another window.");
        }
        Apply(*session);
        session->mToHost.SetNoise(mConditions.mToHost);
        session->mToPeer.SetNoise(mConditions.mToPeer);
        mSession = session;
    }
    session->Start();
    aChannel = session;
    return LxResult();
}

void SimulatedSerialPort::Release(const void *aOwner)
{
    std::lock_guard lock(mMutex);
    if (const auto session = mSession.lock(); session && session->GetOwner() == aOwner) {
        session->Cut();
    }
}

void SimulatedSerialPort::End(const SimulatedSerialSession *aSession)
{
    std::lock_guard lock(mMutex);
    if (mSession.lock().get() == aSession) {
        mSession.reset();
    }
}

uint32_t SimulatedSerialPort::Send(const uint8_t *aData, uint32_t aCount)
{
    std::shared_ptr<SimulatedSerialSession> session;
    std::shared_ptr<LxSimulatedSerialPeer> peer;
    {
        std::lock_guard lock(mMutex);
        session = mSession.lock();
        if (!session || !session->IsOpen()) {
            return 0;
        }
        if (mLoopback || !mLink.IsOK()) {
            return aCount;
        }
        peer = mPeer;
    }
    std::vector<uint8_t> bytes(aData, aData + aCount);
    if (peer) {
        Garble(*peer, bytes.data(), aCount);
    }
    return session->mToHost.Push(bytes.data(), aCount, GetByteTime());
}

void SimulatedSerialPort::Deliver(SimulatedSerialSession &aSession, uint8_t *aData, uint32_t aCount)
{
    std::shared_ptr<LxSimulatedSerialPeer> peer;
    bool loopback = false;
    {
        std::lock_guard lock(mMutex);
        peer = mPeer;
        loopback = mLoopback;
    }
    if (loopback) {
        aSession.mToHost.Push(aData, aCount, 0ns);  // the way there has taken its time
    }
    else if (peer) {
        Garble(*peer, aData, aCount);
        peer->OnReceive(aData, aCount, *this);
    }
}

void SimulatedSerialPort::Garble(const LxSimulatedSerialPeer &aPeer, uint8_t *aData, uint32_t aCount) const
{
    const uint32_t speed = aPeer.GetBaudRate();
    if (speed != 0 && speed != GetBaudRate()) {
        std::transform(aData, aData + aCount, aData, [](uint8_t aByte) { return uint8_t(aByte << 3 | 0x85); });
    }
}

uint32_t SimulatedSerialPort::GetBaudRate() const
{
    std::lock_guard lock(mMutex);
    return mBaudRate;
}

bool SimulatedSerialPort::IsOpen() const
{
    std::lock_guard lock(mMutex);
    const auto session = mSession.lock();
    return session && session->IsOpen();
}

std::chrono::nanoseconds SimulatedSerialPort::GetByteTime() const
{
    std::lock_guard lock(mMutex);
    return mConditions.mPaced ? std::chrono::nanoseconds(1s) * BitsPerByte / std::max(mBaudRate, 1u) : 0ns;
}

LxResult SimulatedSerialPort::GetFault(bool aReading) const
{
    std::lock_guard lock(mMutex);
    if (!mLink.IsOK()) {
        return mLink;
    }
    return aReading ? mConditions.mReadResult : mConditions.mWriteResult;
}

}  // namespace LxDetail
