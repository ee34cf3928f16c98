#include "LxGenICam/CameraLinkPorts.h"

#include <algorithm>
#include <mutex>
#include <vector>

namespace LxDetail
{

namespace
{

struct Ports
{
    std::mutex mMutex;  // guards mIDs
    std::vector<LxString> mIDs;
};

Ports &GetPorts()
{
    static Ports ports;
    return ports;
}

}  // namespace

bool RegisterCameraLinkPort(const LxString &aID)
{
    Ports &ports = GetPorts();
    std::lock_guard lock(ports.mMutex);
    if (std::find(ports.mIDs.begin(), ports.mIDs.end(), aID) != ports.mIDs.end()) {
        return false;
    }
    ports.mIDs.push_back(aID);
    return true;
}

void UnregisterCameraLinkPort(const LxString &aID)
{
    Ports &ports = GetPorts();
    std::lock_guard lock(ports.mMutex);
    ports.mIDs.erase(std::remove(ports.mIDs.begin(), ports.mIDs.end(), aID), ports.mIDs.end());
}

LxStringList GetCameraLinkPorts()
{
    Ports &ports = GetPorts();
    std::lock_guard lock(ports.mMutex);
    LxStringList list;
    for (const LxString &id : ports.mIDs) {
        list.Add(id);
    }
    return list;
}

}  // namespace LxDetail
