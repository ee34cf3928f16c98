// What serial bridges save and restore.

#include "LxBase/LxStringList.h"
#include "LxDevice/LxDeviceSerialPort.h"
#include "LxGUI/Frame/BusyCursor.h"
#include "LxGUI/Frame/Text.h"
#include "LxGUI/SerialBridgeManager/SerialBridgeEntry.h"
#include "LxGUI/SerialBridgeManager/SerialBridgeManagerWnd.h"
#include "LxPersistence/LxPropertyList.h"

namespace
{

constexpr char COMPortProperty[] = "COMPort";
constexpr char CameraLinkProperty[] = "CLDLL";
constexpr char PortProperty[] = "Port";
constexpr char BaudRateProperty[] = "COMPortBaudRate";
constexpr char ParityProperty[] = "COMPortParity";
constexpr char BitCountProperty[] = "COMPortBitCount";
constexpr char StopBitsProperty[] = "COMPortStopBits";
constexpr char CameraLinkBaudRateProperty[] = "CLDLLBaudRate";

constexpr int MostCharacters = 1023;  // of a message, without its prefix

void AddPrefixed(LxStringList &aMessages, const QString &aPrefix, const QString &aMessage)
{
    aMessages.Add(ToLxString(aPrefix + aMessage.left(MostCharacters)));
}

/// "text: code, description."
QString WithResult(const QString &aText, const LxResult &aResult)
{
    return QStringLiteral("%1: %2, %3.")
        .arg(aText, ToQString(aResult.GetCodeString()), ToQString(aResult.GetDescription()));
}

const LxProperty *Find(const LxPropertyList &aList, const LxString &aPort, const char *aSuffix)
{
    return aList.GetProperty(aPort.GetString() + aSuffix);
}

}  // namespace

void SerialBridgeEntry::AddMessage(LxStringList &aMessages, const QString &aMessage) const
{
    AddPrefixed(aMessages, QStringLiteral("Serial bridge on %1: ").arg(ToQString(GetPortName())), aMessage);
}

void SerialBridgeEntry::Save(LxPropertyList &aList) const
{
    const std::string name = GetPortName().GetString();
    if (mType == COMPortLink) {
        aList.Add(LxProperty(name, COMPortProperty));
        aList.Add(LxProperty(name + PortProperty, GetCOMPort()));
        if (!GetCOMPort().IsEmpty()) {
            const LxSerialPortConfiguration configuration = mBridge->GetSerialPortConfiguration();
            aList.Add(LxProperty(name + BaudRateProperty, configuration.mBaudRate));
            aList.Add(LxProperty(name + ParityProperty, ToLxString(ParityToText(configuration.mParity))));
            aList.Add(LxProperty(name + BitCountProperty, configuration.mByteSize));
            aList.Add(LxProperty(name + StopBitsProperty, configuration.mStopBits));
        }
    }
    else if (mType == CameraLinkDLL) {
        aList.Add(LxProperty(name, CameraLinkProperty));
        aList.Add(LxProperty(name + CameraLinkBaudRateProperty, mBridge->GetHardCodedBaudRate()));
    }
}

void SerialBridgeEntry::LoadCOMPort(const LxPropertyList &aList, LxStringList &aMessages)
{
    const LxString name = GetPortName();
    const LxProperty *port = Find(aList, name, PortProperty);
    if (!port) {
        AddMessage(aMessages, QStringLiteral("Port parameter missing."));
        return;
    }
    if (const LxResult result = OpenCOMPort(port->GetValue()); !result.IsOK()) {
        AddMessage(aMessages,
                   WithResult(QStringLiteral("Unable to open serial port ") + ToQString(port->GetValue()), result));
        return;
    }
    LxSerialPortConfiguration configuration;
    const auto parse = [&](const char *aSuffix, uint32_t &aValue, const QString &aMessage) {
        const LxProperty *property = Find(aList, name, aSuffix);
        if (property && !property->GetValue(aValue).IsOK()) {
            AddMessage(aMessages, aMessage);
            return false;
        }
        return true;
    };
    if (!parse(BaudRateProperty, configuration.mBaudRate, QStringLiteral("Unable to parse COM port speed."))) {
        return;
    }
    if (const LxProperty *parity = Find(aList, name, ParityProperty);
        parity && !ParityFromText(ToQString(parity->GetValue()), configuration.mParity))
    {
        AddMessage(aMessages, QStringLiteral("Unable to parse COM port parity."));
        return;
    }
    if (!parse(BitCountProperty, configuration.mByteSize,
               QStringLiteral("Unable to parse COM port bit count (byte size).")) ||
        !parse(StopBitsProperty, configuration.mStopBits, QStringLiteral("Unable to parse COM port stop bits.")))
    {
        return;
    }
    if (!configuration.IsValid()) {
        AddMessage(aMessages, QStringLiteral("Invalid COM port configuration."));
    }
    else if (const LxResult result = mBridge->SetSerialPortConfiguration(configuration); !result.IsOK()) {
        AddMessage(aMessages, WithResult(QStringLiteral("Unable to apply serial port configuration"), result));
    }
}

void SerialBridgeEntry::LoadCameraLinkBaudRate(const LxPropertyList &aList, LxStringList &aMessages)
{
    const LxProperty *property = Find(aList, GetPortName(), CameraLinkBaudRateProperty);
    if (!property) {
        return;
    }
    uint32_t rate = 0;
    if (!property->GetValue(rate).IsOK()) {
        AddMessage(aMessages, QStringLiteral("Unable to parse Camera Link DLL hard-coded baud rate."));
    }
    else if (const LxResult result = mBridge->SetHardCodedBaudRate(rate); !result.IsOK()) {
        AddMessage(aMessages,
                   WithResult(QStringLiteral("Unable to apply Camera Link DLL hard-coded baud rate"), result));
    }
}

void SerialBridgeManagerWnd::Save(LxPropertyList &aList) const
{
    aList.Clear();
    for (const auto &entry : mEntries) {
        entry->Save(aList);
    }
}

void SerialBridgeManagerWnd::Load(const LxPropertyList &aList, LxStringList &aMessages)
{
    const BusyCursor cursor;
    BuildEntries();
    for (uint32_t number = 0; number < PortCount; ++number) {
        const auto port = static_cast<LxDeviceSerial>(number);
        LoadPort(port, FindEntry(port), aList, aMessages);
    }
    FillCombos();
    RefreshViews();
}

void SerialBridgeManagerWnd::LoadPort(LxDeviceSerial aPort, SerialBridgeEntry *aEntry, const LxPropertyList &aList,
                                      LxStringList &aMessages)
{
    const auto complain = [&aMessages](const QString &aMessage) {
        AddPrefixed(aMessages, QStringLiteral("Serial bridge manager: "), aMessage);
    };
    const LxString name = LxDeviceSerialToString(aPort);
    const LxProperty *type = aList.GetProperty(name);
    if (!type) {
        if (aEntry) {
            aEntry->Reset(SerialBridgeEntry::Inactive);
        }
    }
    else if (!aEntry) {
        complain(QStringLiteral("Port %1 found in persistence file, not supported by device.").arg(ToQString(name)));
    }
    else if (type->GetValue() == LxString(COMPortProperty)) {
        aEntry->Reset(SerialBridgeEntry::COMPortLink);
        aEntry->LoadCOMPort(aList, aMessages);
    }
    else if (type->GetValue() == LxString(CameraLinkProperty)) {
        aEntry->Reset(SerialBridgeEntry::CameraLinkDLL);
        if (const LxResult result = aEntry->StartCameraLink(aPort); !result.IsOK()) {
            aEntry->Reset(SerialBridgeEntry::Inactive);
            complain(WithResult(QStringLiteral("Unable to start Camera Link DLL bridge for %1").arg(ToQString(name)),
                                result));
        }
        else {
            aEntry->LoadCameraLinkBaudRate(aList, aMessages);
        }
    }
    else {
        complain(QStringLiteral("Unexpected bridge type, %1 on %2.").arg(ToQString(type->GetValue()), ToQString(name)));
    }
}
