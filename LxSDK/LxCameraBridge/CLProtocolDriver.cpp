#include "LxCameraBridge/CLProtocolDriver.h"

#include <algorithm>
#include <mutex>

namespace LxDetail::CLProtocolDrivers
{

namespace
{

struct Registry
{
    std::mutex mMutex;  // guards mDrivers
    std::vector<std::shared_ptr<CLProtocolDriver>> mDrivers;
};

Registry &GetRegistry()
{
    static Registry &registry = *new Registry;  // never destroyed: bridges may live until the very end
    return registry;
}

}  // namespace

void Add(const std::shared_ptr<CLProtocolDriver> &aDriver)
{
    std::lock_guard lock(GetRegistry().mMutex);
    auto &drivers = GetRegistry().mDrivers;
    if (std::find(drivers.begin(), drivers.end(), aDriver) == drivers.end()) {
        drivers.push_back(aDriver);
    }
}

void Remove(const std::shared_ptr<CLProtocolDriver> &aDriver)
{
    std::lock_guard lock(GetRegistry().mMutex);
    std::erase(GetRegistry().mDrivers, aDriver);
}

std::vector<std::shared_ptr<CLProtocolDriver>> Get()
{
    std::lock_guard lock(GetRegistry().mMutex);
    return GetRegistry().mDrivers;
}

std::shared_ptr<CLProtocolDriver> Find(const std::string &aText, std::string &aTemplate)
{
    for (const auto &driver : Get()) {
        for (const std::string &text : driver->GetTemplates()) {
            if (aText == text || aText.starts_with(text + "#")) {
                aTemplate = text;
                return driver;
            }
        }
    }
    return nullptr;
}

}  // namespace LxDetail::CLProtocolDrivers
