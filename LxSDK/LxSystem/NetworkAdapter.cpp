#include "LxSystem/NetworkAdapter.h"

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <net/if.h>
#include <net/if_arp.h>
#include <netinet/in.h>
#include <netpacket/packet.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <sstream>

#include "LxDevice/IPConfiguration.h"
#include "YrUtilsLib/IpAddress.h"

namespace LxDetail
{

namespace
{

using YrUtilsLib::Network::IpAddress;

constexpr size_t macSize = 6;

uint32_t GetAddress(const sockaddr *aAddress)
{
    if (!aAddress || aAddress->sa_family != AF_INET) {
        return 0;
    }
    sockaddr_in address{};
    std::memcpy(&address, aAddress, sizeof address);
    return ntohl(address.sin_addr.s_addr);
}

uint64_t GetMAC(const sockaddr *aAddress)
{
    sockaddr_ll address{};
    std::memcpy(&address, aAddress, sizeof address);
    uint64_t mac = 0;
    if (address.sll_hatype == ARPHRD_ETHER && address.sll_halen == macSize) {
        for (size_t i = 0; i < macSize; ++i) {
            mac = mac << 8 | address.sll_addr[i];
        }
    }
    return mac;
}

std::string ReadFile(const std::string &aPath)
{
    std::ifstream file(aPath);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::string GetDriver(const std::string &aAdapters, const std::string &aName)
{
    std::error_code error;
    const auto driver = std::filesystem::read_symlink(aAdapters + '/' + aName + "/device/driver", error);
    return error ? std::string() : driver.filename().string();
}

}  // namespace

uint32_t ParseDefaultGateway(const std::string &aRoutes, const std::string &aAdapter)
{
    std::istringstream lines(aRoutes);
    std::string line;
    std::getline(lines, line);  // the headings
    uint32_t gateway = 0;
    uint32_t best = 0;
    while (std::getline(lines, line)) {
        std::istringstream fields(line);
        std::string name;
        uint32_t destination = 0;
        uint32_t via = 0;
        uint32_t flags = 0;
        uint32_t references = 0;
        uint32_t uses = 0;
        uint32_t metric = 0;
        uint32_t mask = 0;
        constexpr uint32_t isGateway = 0x2;
        fields >> name >> std::hex >> destination >> via >> flags >> std::dec >> references >> uses >> metric >>
            std::hex >> mask;
        if (fields && name == aAdapter && destination == 0 && mask == 0 && (flags & isGateway) != 0 &&
            (gateway == 0 || metric < best))
        {
            gateway = ntohl(via);  // the table shows the bytes of the network as one number of this machine
            best = metric;
        }
    }
    return gateway;
}

std::vector<AdapterData> ListNetworkAdapters(const AdapterPaths &aPaths)
{
    ifaddrs *list = nullptr;
    if (getifaddrs(&list) != 0) {
        return {};
    }
    const std::unique_ptr<ifaddrs, decltype(&freeifaddrs)> owner(list, &freeifaddrs);
    const std::string routes = ReadFile(aPaths.mRoutes);
    std::map<std::string, AdapterData> adapters;
    for (const ifaddrs *entry = list; entry; entry = entry->ifa_next) {
        if ((entry->ifa_flags & IFF_UP) == 0) {
            continue;
        }
        // a label such as "eth0:1" names an address of eth0
        const std::string name = std::string(entry->ifa_name).substr(0, std::strcspn(entry->ifa_name, ":"));
        AdapterData &adapter = adapters[name];
        if (adapter.mName.empty()) {
            adapter.mName = name;
            adapter.mIndex = if_nametoindex(name.c_str());
            adapter.mLoopback = (entry->ifa_flags & IFF_LOOPBACK) != 0;
            adapter.mBroadcast = (entry->ifa_flags & IFF_BROADCAST) != 0;
            adapter.mDriver = adapter.mLoopback ? "loopback" : GetDriver(aPaths.mAdapters, name);
            adapter.mDefaultGateway = ParseDefaultGateway(routes, name);
        }
        if (!entry->ifa_addr) {
            continue;
        }
        if (entry->ifa_addr->sa_family == AF_INET) {
            const AdapterAddress address{GetAddress(entry->ifa_addr), GetAddress(entry->ifa_netmask)};
            if (std::find(adapter.mAddresses.begin(), adapter.mAddresses.end(), address) == adapter.mAddresses.end()) {
                adapter.mAddresses.push_back(address);
            }
        }
        else if (entry->ifa_addr->sa_family == AF_PACKET) {
            adapter.mMACAddress = GetMAC(entry->ifa_addr);
        }
    }
    std::vector<AdapterData> result;
    for (auto &[name, adapter] : adapters) {
        if (adapter.mIndex != 0) {  // else it has just gone
            result.push_back(std::move(adapter));
        }
    }
    std::sort(result.begin(), result.end(),
              [](const AdapterData &aLeft, const AdapterData &aRight) { return aLeft.mIndex < aRight.mIndex; });
    return result;
}

NetworkAdapter::NetworkAdapter(AdapterData aData) : mData(std::move(aData)) {}

void NetworkAdapter::Update(AdapterData aData)
{
    const std::lock_guard lock(mMutex);
    mData = std::move(aData);
}

AdapterData NetworkAdapter::GetData() const
{
    const std::lock_guard lock(mMutex);
    return mData;
}

LxString NetworkAdapter::GetUniqueID() const
{
    return "net:" + GetData().mName;  // a name alone might also be that of a USB controller
}

LxString NetworkAdapter::GetDisplayID() const
{
    const AdapterData data = GetData();
    std::string text = data.mName;
    for (const AdapterAddress &address : data.mAddresses) {
        text += (&address == &data.mAddresses.front() ? " " : ", ") + IpAddress(address.mAddress).ToString();
    }
    return text + (data.mAddresses.empty() ? " (no IP address)" : "");
}

LxString NetworkAdapter::GetDescription() const
{
    const AdapterData data = GetData();
    return data.mName + (data.mDriver.empty() ? "" : " (" + data.mDriver + ')');
}

LxString NetworkAdapter::GetMACAddress() const
{
    return FormatMACAddress(GetData().mMACAddress);
}

uint32_t NetworkAdapter::GetIPAddressCount() const
{
    return static_cast<uint32_t>(GetData().mAddresses.size());
}

LxString NetworkAdapter::GetIPAddress(uint32_t aIndex) const
{
    const AdapterData data = GetData();
    return IpAddress(aIndex < data.mAddresses.size() ? data.mAddresses[aIndex].mAddress : 0).ToString();
}

LxString NetworkAdapter::GetSubnetMask(uint32_t aIndex) const
{
    const AdapterData data = GetData();
    return IpAddress(aIndex < data.mAddresses.size() ? data.mAddresses[aIndex].mMask : 0).ToString();
}

LxString NetworkAdapter::GetDefaultGateway() const
{
    return IpAddress(GetData().mDefaultGateway).ToString();
}

}  // namespace LxDetail
