#include "Backends/Aravis/AravisConnection.h"

#include <cstdlib>
#include <cstring>
#include <utility>

#include "Backends/Aravis/BackgroundTasks.h"
#include "GigEVision/GvcpPacket.h"
#include "NodeMap/Arv.h"

namespace LxDetail
{

namespace
{

/// In the GVCP capability register: WRITEMEM is supported.
constexpr uint32_t capabilityWriteMemory = 0x2;

/// How long the end of a connection waits until the device has confirmed that it is free; one that has just stopped
/// answering would need the seconds of the library.
constexpr std::chrono::milliseconds answerTime{400};

/// Whether the XML is of a schema before 1.1.0; one without numbers counts as new.
bool IsOldSchema(const std::string &aXML)
{
    const auto number = [&aXML](const char *aAttribute) {
        const size_t at = aXML.find(aAttribute);
        return at == std::string::npos ? 1 : std::atoi(aXML.c_str() + at + std::strlen(aAttribute) + 1);
    };
    const int major = number("SchemaMajorVersion=");
    return major < 1 || (major == 1 && number("SchemaMinorVersion=") < 1);
}

}  // namespace

AravisConnection::AravisConnection(std::unique_ptr<AravisTransport> aTransport)
    : mTransport(std::move(aTransport)),
      mLink({.mLook =
                 [this](std::chrono::milliseconds aTimeout) {
                     return mTransport->Look(mPort.AcquireDevice().get(), aTimeout);
                 },
             .mStartRestore = [this] { StartRestore(); },
             .mOnChange = [this](LinkState, LinkState aNew) { OnLinkChange(aNew); }}),
      mPort(mLink, mTransport->IsGigEVision(), mTransport->GetAccess() != LxDeviceAccess::ReadOnly)
{
}

AravisConnection::~AravisConnection()
{
    Close();
}

LxResult AravisConnection::Open(std::unique_ptr<AravisTransport> aTransport,
                                std::shared_ptr<AravisConnection> &aConnection)
{
    GObjectPtr<_ArvDevice> device;
    if (LxResult result = aTransport->Open(device); !result.IsOK()) {
        return result;
    }
    const std::shared_ptr<AravisConnection> connection(new AravisConnection(std::move(aTransport)));
    size_t size = 0;
    if (const char *xml = arv_device_get_genicam_xml(device.get(), &size)) {
        connection->mXML.assign(xml, size);
    }
    connection->mPort.SetRegisterCommands(IsOldSchema(connection->mXML));
    guint32 capability = 0;
    if (connection->mTransport->IsGigEVision() &&
        arv_device_read_register(device.get(), Gvcp::Register::capability, &capability, nullptr))
    {
        connection->mPort.SetMemoryWritable((capability & capabilityWriteMemory) != 0);
    }
    connection->mPort.SetDevice(std::move(device));
    aConnection = connection;
    return LxResult();
}

void AravisConnection::Start(Listener aListener)
{
    mListener = std::move(aListener);
    mWatcher = std::thread([this] { Watch(); });
}

void AravisConnection::Close()
{
    const bool slow = mLink.GetState() != LinkState::Connected || mTransport->GetAccess() == LxDeviceAccess::ReadOnly;
    mLink.Close();
    {
        const std::lock_guard lock(mMutex);
        mStopped = true;
        mWake.notify_all();
    }
    mDispatcher.Stop();
    const std::lock_guard lock(mCloseMutex);
    if (mWatcher.joinable()) {
        mWatcher.join();
    }
    GiveBackInBackground(mPort.SetDevice(nullptr), slow ? std::chrono::milliseconds(0) : answerTime);
}

std::shared_ptr<ArvDevicePort> AravisConnection::GetPort()
{
    return std::shared_ptr<ArvDevicePort>(shared_from_this(), &mPort);
}

void AravisConnection::Watch()
{
    std::unique_lock lock(mMutex);
    while (!mStopped) {
        lock.unlock();
        const auto pause = mLink.Step();
        lock.lock();
        mWake.wait_for(lock, pause, [this] { return mStopped; });
    }
}

void AravisConnection::StartRestore()
{
    RunInBackground([self = shared_from_this()] { self->mLink.EndRestore(self->Restore()); });
}

LxResult AravisConnection::Restore()
{
    LxResult result(LxResultCode::NotConnected);
    if (const GObjectPtr<_ArvDevice> device = mPort.AcquireDevice()) {
        result = mTransport->Regain(device.get());
    }
    const LinkState state = mLink.GetState();
    if (result.IsOK() || result == LxResultCode::AccessDenied || state != LinkState::Restoring) {
        return result;
    }
    // the object of the library is of no use any more, for example because the computer's own address changed
    GObjectPtr<_ArvDevice> device;
    result = mTransport->Open(device);
    if (result.IsOK()) {
        GiveBackInBackground(mPort.SetDevice(std::move(device)));
        if (mLink.GetState() == LinkState::Closed) {
            GiveBackInBackground(mPort.SetDevice(nullptr));  // closed meanwhile
        }
    }
    return result;
}

void AravisConnection::OnLinkChange(LinkState aState)
{
    mPort.ChangeState();
    const std::shared_ptr<AravisConnection> self = weak_from_this().lock();
    if (aState == LinkState::Closed || !self) {
        return;
    }
    mDispatcher.Post([self, aState] { self->Announce(aState); });
}

void AravisConnection::Announce(LinkState aState)
{
    mPort.TellState();
    bool changed = false;
    {
        const std::lock_guard lock(mMutex);
        changed = mAnnounced != LinkMonitor::IsUp(aState);
        mAnnounced = LinkMonitor::IsUp(aState);
    }
    if (changed && mListener) {
        mListener(LinkMonitor::IsUp(aState));
    }
}

}  // namespace LxDetail
