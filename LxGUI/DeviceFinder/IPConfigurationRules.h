#pragma once

#include <QtCore/QString>
#include <cstdint>

/// What a device is to be given.
struct IPConfiguration
{
    uint32_t mIPAddress = 0;
    uint32_t mSubnetMask = 0;
    uint32_t mDefaultGateway = 0;
};

/// What is doubtful about each field; empty for one that is fine.
struct IPConfigurationDoubts
{
    QString mIPAddress;
    QString mSubnetMask;
    QString mDefaultGateway;

    bool IsEmpty() const { return mIPAddress.isEmpty() && mSubnetMask.isEmpty() && mDefaultGateway.isEmpty(); }
};

/// Judges the fields. A field that fails several rules has the message of the first.
/// @param aNICAddress, aNICMask those of the network adapter through which the device is to be reached.
IPConfigurationDoubts FindDoubts(const IPConfiguration &aDevice, uint32_t aNICAddress, uint32_t aNICMask);

/// Why a configuration cannot be given to a device at all; empty when it can.
/// @param aIPAddress the address of the device as it was typed; it is compared as a text.
/// @param aNICAddress the first address of the network adapter; empty when it has none.
QString FindBlockingError(const IPConfiguration &aDevice, const QString &aIPAddress, const QString &aNICAddress);
