#include "LxSystem/Search.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <system_error>

namespace LxDetail
{

namespace
{

int MakeEvent()
{
    const int descriptor = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (descriptor < 0) {
        throw std::system_error(errno, std::generic_category(), "eventfd");
    }
    return descriptor;
}

}  // namespace

CancelEvent::CancelEvent() : mDescriptor(MakeEvent()) {}

CancelEvent::~CancelEvent()
{
    close(mDescriptor);
}

void CancelEvent::Set()
{
    const std::lock_guard lock(mMutex);
    if (!mSet) {
        mSet = true;
        eventfd_write(mDescriptor, 1);
    }
}

void CancelEvent::Reset()
{
    const std::lock_guard lock(mMutex);
    if (mSet) {
        mSet = false;
        eventfd_t value = 0;
        eventfd_read(mDescriptor, &value);
    }
}

bool CancelEvent::IsSet() const
{
    const std::lock_guard lock(mMutex);
    return mSet;
}

bool CancelEvent::Wait(std::chrono::milliseconds aTimeout) const
{
    const auto end = std::chrono::steady_clock::now() + aTimeout;
    for (;;) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
        if (IsSet() || left.count() <= 0) {
            return IsSet();
        }
        pollfd event{mDescriptor, POLLIN, 0};
        poll(&event, 1, static_cast<int>(std::min<int64_t>(left.count(), 60000)));
    }
}

Search::Search(uint32_t aTimeout, bool aSubnetBroadcast, const CancelEvent &aCancel, Report aReport)
    : mTimeout(aTimeout), mSubnetBroadcast(aSubnetBroadcast), mCancel(aCancel), mReport(std::move(aReport))
{
}

void Search::ReportDevice(const LxInterface *aInterface, const LxDeviceInfo *aInfo)
{
    mReport(aInterface, aInfo);
}

}  // namespace LxDetail
