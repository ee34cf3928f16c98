#include "LxBase/LxLifetime.h"

#include <map>
#include <mutex>
#include <utility>
#include <vector>

namespace
{

using Notice = std::function<void()>;

struct Watches
{
    std::mutex mMutex;  // guards mNotices
    std::multimap<const void *, std::weak_ptr<Notice>> mNotices;

    // Never destroyed: objects may end after this library's static ones.
    static Watches &Get()
    {
        static auto *const sWatches = new Watches;
        return *sWatches;
    }
};

}  // namespace

std::shared_ptr<void> LxLifetime::Watch(const void *aObject, std::function<void()> aNotice)
{
    auto notice = std::make_shared<Notice>(std::move(aNotice));
    Watches &watches = Watches::Get();
    const std::lock_guard lock(watches.mMutex);
    std::erase_if(watches.mNotices, [](const auto &aEntry) { return aEntry.second.expired(); });
    watches.mNotices.emplace(aObject, notice);
    return notice;
}

void LxLifetime::End(const void *aObject)
{
    Watches &watches = Watches::Get();
    std::vector<std::shared_ptr<Notice>> notices;
    {
        const std::lock_guard lock(watches.mMutex);
        const auto [first, last] = watches.mNotices.equal_range(aObject);
        for (auto entry = first; entry != last; ++entry) {
            notices.push_back(entry->second.lock());
        }
        watches.mNotices.erase(first, last);
    }
    for (const std::shared_ptr<Notice> &notice : notices) {
        if (notice) {
            (*notice)();
        }
    }
}
