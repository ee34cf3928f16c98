#pragma once

#include <QtCore/QElapsedTimer>

#include "LxGUI/DeviceFinder/TreeItemInfo.h"

class LxDeviceInfo;

/// A device at an interface in the device tree.
class TreeItemInfoDevice : public TreeItemInfo
{
public:
    /// @param aEnabled whether the device may be chosen.
    explicit TreeItemInfoDevice(bool aEnabled);
    ~TreeItemInfoDevice() override;

    bool IsDevice() const override { return true; }
    bool IsInterface() const override { return false; }
    /// Brings the row about who uses the device up to date; may ask the device.
    virtual void RefreshAccess();
    virtual void FillRows(const LxDeviceInfo &aInfo) = 0;
    virtual void ChooseIcon(const LxDeviceInfo &aInfo) = 0;

    /// Takes over everything from a report and restarts the time since the last one.
    void Refill(const LxDeviceInfo &aInfo);
    void RestartLastSeen() { mLastSeen.start(); }

    const QByteArray &GetInterfaceID() const { return mInterfaceID; }
    void SetInterfaceID(const QByteArray &aID) { mInterfaceID = aID; }
    /// Whether the device can be talked to as it is configured.
    bool IsReachable() const { return mReachable; }
    /// One of LxDeviceInfoType.
    int GetDeviceType() const { return mDeviceType; }
    bool IsEnabled() const { return mEnabled; }
    /// Whether the device can be given an IP configuration.
    bool CanSetIP() const;
    /// Whether the list has to drop it: it cannot be reached and such are not wanted, or its reports have ceased.
    bool IsToBeRemoved(bool aShowUnreachable) const;

protected:
    void SetReachable(bool aReachable) { mReachable = aReachable; }

private:
    QByteArray mInterfaceID;
    bool mReachable = true;
    QElapsedTimer mLastSeen;
    int mDeviceType = 0;
    const bool mEnabled;
};
