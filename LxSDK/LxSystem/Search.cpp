#include "LxSystem/Search.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>

namespace LxDetail
{

// Where no descriptor can be had, waiting looks at the flag this often.
constexpr std::chrono::milliseconds lookAgain(10);

CancelEvent::CancelEvent() : mDescriptor(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

CancelEvent::~CancelEvent()
{
    if (mDescriptor >= 0) {
        close(mDescriptor);
    }
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
        const auto longest = mDescriptor >= 0 ? std::chrono::milliseconds(60000) : lookAgain;
        poll(&event, 1, static_cast<int>(std::min<int64_t>(left.count(), longest.count())));
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
