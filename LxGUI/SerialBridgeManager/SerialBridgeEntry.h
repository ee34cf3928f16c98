#pragma once

#include <QtCore/QObject>
#include <QtCore/QString>
#include <array>
#include <memory>
#include <vector>

#include "LxGUI/SerialBridgeManager/SerialBridgeRules.h"
#include "LxSerial/LxSerialBridge.h"

class ILxDeviceAdapter;
class LxPropertyList;
class LxStringList;

/// A serial port of the device and its bridge.
class SerialBridgeEntry : public QObject
{
    Q_OBJECT

public:
    /// The numbers are those of the radio buttons.
    enum Type : uint32_t
    {
        Inactive = 0,
        COMPortLink = 1,
        CameraLinkDLL = 2,
    };

    SerialBridgeEntry(ILxDeviceAdapter *aAdapter, LxDeviceSerial aPort) : mAdapter(aAdapter), mPort(aPort) {}

    uint32_t GetType() const { return mType; }
    /// Null while inactive.
    LxSerialBridge *GetBridge() const { return mBridge.get(); }
    LxDeviceSerial GetPort() const { return mPort; }
    /// "Serial0".
    LxString GetPortName() const { return LxDeviceSerialToString(mPort); }
    /// The name of the started bridge, else empty.
    const LxString &GetName() const { return mName; }
    /// The name of the open COM port, else empty.
    LxString GetCOMPort() const { return mBridge ? mBridge->GetSerialPort() : LxString(); }
    bool AreBaudRatesKnown() const { return mBaudRatesKnown; }
    /// Whether the running bridge reported this one of StandardBaudRates.
    bool IsBaudRateSupported(size_t aIndex) const { return mBaudRates[aIndex]; }
    /// The rates that the running bridge reported; none when they are not known.
    std::vector<uint32_t> GetBaudRates() const;

    /// Stops the bridge and gives the entry another type, with a bridge that is not started unless it is inactive.
    void Reset(Type aType);
    /// Starts the bridge of an entry that was reset to CameraLinkDLL.
    LxResult StartCameraLink(LxDeviceSerial aPort);
    /// Links the entry, of type COMPortLink, to another COM port. The configuration stays as the open one's.
    LxResult OpenCOMPort(const LxString &aName);

    void Save(LxPropertyList &aList) const;
    /// Restores the COM port of an entry that was reset to COMPortLink; what goes wrong is added to the messages.
    void LoadCOMPort(const LxPropertyList &aList, LxStringList &aMessages);
    /// Restores the fixed baud rate of a Camera Link bridge that was started.
    void LoadCameraLinkBaudRate(const LxPropertyList &aList, LxStringList &aMessages);

private:
    void TakeBaudRates();
    void ForgetBaudRates();
    void AddMessage(LxStringList &aMessages, const QString &aMessage) const;

    uint32_t mType = Inactive;
    ILxDeviceAdapter *const mAdapter;
    std::unique_ptr<LxSerialBridge> mBridge;
    LxString mName;
    const LxDeviceSerial mPort;
    bool mBaudRatesKnown = false;
    std::array<bool, StandardBaudRates.size()> mBaudRates = {};
};
