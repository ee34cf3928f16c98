#include "LxGUI/DeviceFinder/TreeItemInfoNetworkAdapter.h"

#include "LxGUI/DeviceFinder/IconTiles.h"
#include "LxGUI/DeviceFinder/SubnetRules.h"
#include "LxSystem/LxNetworkAdapter.h"

void TreeItemInfoNetworkAdapter::FillRows(const LxSystem &aSystem, const LxInterface &aInterface)
{
    const auto *adapter = dynamic_cast<const LxNetworkAdapter *>(&aInterface);
    if (!adapter) {
        return;
    }
    AddRow("Description", adapter->GetDescription());
    AddRow("MAC", adapter->GetMACAddress());
    const AdapterAddresses addresses = GetAddresses(*adapter);
    const AdapterAddresses all = GetAddresses(aSystem);
    for (size_t i = 0; i < addresses.size(); ++i) {
        const AdapterAddress &address = addresses[i];
        const QByteArray suffix = addresses.size() > 1 ? ' ' + QByteArray::number(static_cast<qulonglong>(i)) : "";
        const bool unique = IsSubnetUnique(address, all);
        const QString remark = unique ? QString() : QStringLiteral(": subnet not unique");
        const QColor color = IsUnset(address.mIPAddress) ? Qt::red : unique ? Qt::white : Qt::yellow;
        AddRow("IP Address" + suffix, address.mIPAddress + remark, color);
        AddRow("Subnet Mask" + suffix, address.mSubnetMask, color);
    }
    AddRow("Default Gateway", adapter->GetDefaultGateway());
}

void TreeItemInfoNetworkAdapter::ChooseIcon(const LxSystem &aSystem, const LxInterface &aInterface)
{
    if (const auto *adapter = dynamic_cast<const LxNetworkAdapter *>(&aInterface)) {
        SetIconIndex(IconTiles::NetworkAdapter(adapter->IsKelvraDriverInstalled(), GetAddresses(*adapter),
                                               GetAddresses(aSystem)));
    }
}
