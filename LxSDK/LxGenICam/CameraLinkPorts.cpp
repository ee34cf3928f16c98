#include "LxGenICam/CameraLinkPorts.h"

#include <algorithm>
#include <mutex>
#include <utility>
#include <vector>

namespace LxDetail
{

namespace
{

struct Ports
{
    using Entry = std::pair<LxString, std::shared_ptr<CameraLinkPort>>;

    auto Find(const LxString &aID)
    {
        return std::find_if(mEntries.begin(), mEntries.end(),
                            [&aID](const Entry &aEntry) { return aEntry.first == aID; });
    }

    std::mutex mMutex;  // guards mEntries
    std::vector<Entry> mEntries;
};

Ports &GetPorts()
{
    static Ports &ports = *new Ports;  // never destroyed: bridges may live until the very end
    return ports;
}

}  // namespace

bool RegisterCameraLinkPort(const LxString &aID, std::shared_ptr<CameraLinkPort> aPort)
{
    Ports &ports = GetPorts();
    std::lock_guard lock(ports.mMutex);
    if (ports.Find(aID) != ports.mEntries.end()) {
        return false;
    }
    ports.mEntries.emplace_back(aID, std::move(aPort));
    return true;
}

void UnregisterCameraLinkPort(const LxString &aID)
{
    Ports &ports = GetPorts();
    std::lock_guard lock(ports.mMutex);
    if (const auto entry = ports.Find(aID); entry != ports.mEntries.end()) {
        ports.mEntries.erase(entry);
    }
}

LxStringList GetCameraLinkPorts()
{
    Ports &ports = GetPorts();
    std::lock_guard lock(ports.mMutex);
    LxStringList list;
    for (const Ports::Entry &entry : ports.mEntries) {
        list.Add(entry.first);
    }
    return list;
}

std::shared_ptr<CameraLinkPort> FindCameraLinkPort(const LxString &aID)
{
    Ports &ports = GetPorts();
    std::lock_guard lock(ports.mMutex);
    const auto entry = ports.Find(aID);
    return entry == ports.mEntries.end() ? nullptr : entry->second;
}

}  // namespace LxDetail
