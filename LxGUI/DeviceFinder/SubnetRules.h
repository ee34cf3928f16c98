#pragma once

#include <QtCore/QString>
#include <vector>

class LxNetworkAdapter;
class LxSystem;

/// An address of a network adapter, as the SDK writes it.
struct AdapterAddress
{
    QString mIPAddress;
    QString mSubnetMask;
};

using AdapterAddresses = std::vector<AdapterAddress>;

AdapterAddresses GetAddresses(const LxNetworkAdapter &aAdapter);
/// The addresses of all network adapters.
AdapterAddresses GetAddresses(const LxSystem &aSystem);

/// "0.0.0.0", which stands for an address or mask that is not set.
bool IsUnset(const QString &aAddress);

/// Whether no other address is on the subnet of this one. An address without a mask counts as unique.
/// @param aAll all addresses of the computer, this one among them.
bool IsSubnetUnique(const AdapterAddress &aAddress, const AdapterAddresses &aAll);
