#include "LxGUI/SerialBridgeManager/SerialBridgeManagerWnd.h"

#include <QtCore/QPointer>
#include <QtCore/QSignalBlocker>
#include <QtSerialPort/QSerialPortInfo>
#include <QtWidgets/QRadioButton>

#include "LxBase/LxStringList.h"
#include "LxDevice/LxDeviceSerialPort.h"
#include "LxGUI/Frame/ApplicationThread.h"
#include "LxGUI/Frame/BusyCursor.h"
#include "LxGUI/Frame/MessageBoxes.h"
#include "LxGUI/Frame/OwnedApplication.h"
#include "LxGUI/Frame/Text.h"
#include "LxGUI/SerialBridgeManager/BaudRateSelectionDlg.h"
#include "LxGUI/SerialBridgeManager/SerialCOMPortConfigDlg.h"
#include "LxGenICam/LxGenParameterArrayCL.h"

namespace
{

constexpr int RefreshInterval = 250;  // ms
constexpr uint32_t FirstBaudRate = 9600;

/// The system's, and those to which the application gave COM names because the system calls them otherwise.
QStringList ListPorts()
{
    QStringList names;
    for (const QSerialPortInfo &info : QSerialPortInfo::availablePorts()) {
        names << info.portName();
    }
    LxStringList given;
    LxSerialBridge::GetCOMPortNames(given);
    for (size_t i = 0; i < given.GetSize(); ++i) {
        names << ToQString(given.GetItem(i));
    }
    return names;
}

}  // namespace

SerialBridgeManagerWnd::SerialBridgeManagerWnd() : mPortLister(ListPorts)
{
    SetTitle("Serial Communication Bridge");
    mTimer.setInterval(RefreshInterval);
    connect(&mTimer, SIGNAL(timeout()), this, SLOT(OnTimerTimeout()));
}

SerialBridgeManagerWnd::~SerialBridgeManagerWnd() = default;

void SerialBridgeManagerWnd::SetPortLister(std::function<QStringList()> aLister)
{
    mPortLister = std::move(aLister);
    FillCombos();
    RefreshViews();
}

bool SerialBridgeManagerWnd::eventFilter(QObject *aObject, QEvent *aEvent)
{
    return QObject::eventFilter(aObject, aEvent);
}

void SerialBridgeManagerWnd::OnOpen()
{
    OnTimerTimeout();
    mTimer.start();
}

void SerialBridgeManagerWnd::OnClose()
{
    mTimer.stop();  // the bridges go on
}

void SerialBridgeManagerWnd::SetDevice(ILxDeviceAdapter *aAdapter)
{
    CallOnApplicationThread([this, aAdapter] { ChangeDevice(aAdapter); });
}

void SerialBridgeManagerWnd::ChangeDevice(ILxDeviceAdapter *aAdapter)
{
    mEntries.clear();  // while the old device is there
    mAdapter = aAdapter;
    mWatch.SetAdapter(this, aAdapter, [this] { ChangeDevice(nullptr); });
    BuildEntries();
    RegisterCameraLinkPorts();
    FillCombos();
    RefreshViews();
}

void SerialBridgeManagerWnd::BuildEntries()
{
    mEntries.clear();
    for (uint32_t number = 0; mAdapter && number < PortCount; ++number) {
        const auto port = static_cast<LxDeviceSerial>(number);
        if (LxDeviceSerialPort::IsSupported(mAdapter, port)) {
            mEntries.push_back(std::make_unique<SerialBridgeEntry>(mAdapter, port));
        }
    }
}

// Makes the ports known to the Camera Link interface for a moment; none of them is active afterwards.
void SerialBridgeManagerWnd::RegisterCameraLinkPorts()
{
    for (const auto &entry : mEntries) {
        entry->Reset(SerialBridgeEntry::CameraLinkDLL);
        entry->StartCameraLink(LxDeviceSerial::Invalid);
    }
    LxStringList ids;
    LxGenParameterArrayCL::GetPortIDs(ids);
    for (const auto &entry : mEntries) {
        entry->Reset(SerialBridgeEntry::Inactive);
    }
}

SerialBridgeEntry *SerialBridgeManagerWnd::FindEntry(LxDeviceSerial aPort) const
{
    for (const auto &entry : mEntries) {
        if (entry->GetPort() == aPort) {
            return entry.get();
        }
    }
    return nullptr;
}

SerialBridgeEntry *SerialBridgeManagerWnd::SelectedEntry() const
{
    if (!mPortSelectionCombo || mPortSelectionCombo->currentIndex() < 0) {
        return nullptr;
    }
    return FindEntry(static_cast<LxDeviceSerial>(mPortSelectionCombo->currentData().toUInt()));
}

void SerialBridgeManagerWnd::FillCombos()
{
    if (!OwnedApplication::CanMakeWidgets()) {
        return;
    }
    if (mPortSelectionCombo) {
        const QSignalBlocker blocker(mPortSelectionCombo);
        mPortSelectionCombo->clear();
        for (const auto &entry : mEntries) {
            mPortSelectionCombo->addItem(ToQString(entry->GetPortName()), static_cast<uint32_t>(entry->GetPort()));
        }
    }
    if (mPortCombo) {
        // Nothing is selected, or a port would be opened unasked.
        const QSignalBlocker blocker(mPortCombo);
        mPortCombo->clear();
        mPortCombo->addItems(SelectCOMPorts(mPortLister()));
        mPortCombo->setCurrentIndex(-1);
    }
}

void SerialBridgeManagerWnd::RefreshViews()
{
    if (!OwnedApplication::CanMakeWidgets()) {
        return;
    }
    RefreshEntryView();
    RefreshBaudRates();
    OnTimerTimeout();
}

void SerialBridgeManagerWnd::RefreshEntryView()
{
    if (!mTypeButtons || !mPortSelectionCombo || !mNameLabel || !mPortCombo) {
        return;
    }
    const SerialBridgeEntry *entry = SelectedEntry();
    const uint32_t type = entry ? entry->GetType() : SerialBridgeEntry::Inactive;
    mPortSelectionCombo->setEnabled(entry);
    for (QAbstractButton *button : mTypeButtons->buttons()) {
        button->setEnabled(entry);
    }
    mTypeButtons->button(static_cast<int>(type))->setChecked(true);
    mPortCombo->setEnabled(type == SerialBridgeEntry::COMPortLink);
    {
        const QSignalBlocker blocker(mPortCombo);
        mPortCombo->setCurrentIndex(
            type == SerialBridgeEntry::COMPortLink ? mPortCombo->findText(ToQString(entry->GetCOMPort())) : -1);
    }
    if (!entry) {
        mNameLabel->setText(QStringLiteral("Port name: 00:11:22:33:44:55-UART0"));
        mNameLabel->setEnabled(false);
        ShowSummary(QStringLiteral("No parity, 8 bits, 1 stop bit"), false);
        return;
    }
    mNameLabel->setText(type == SerialBridgeEntry::Inactive ? QStringLiteral("Inactive") : ToQString(entry->GetName()));
    mNameLabel->setEnabled(type != SerialBridgeEntry::Inactive);
    RefreshSummary();
}

void SerialBridgeManagerWnd::RefreshSummary()
{
    const SerialBridgeEntry *entry = SelectedEntry();
    if (entry && !entry->GetCOMPort().IsEmpty()) {
        ShowSummary(FormatSummary(entry->GetBridge()->GetSerialPortConfiguration()), true);
    }
    else {
        ShowSummary(QStringLiteral("Not selected"), false);
    }
}

void SerialBridgeManagerWnd::ShowSummary(const QString &aText, bool aEnabled)
{
    if (mSummaryLabel && mConfigureButton) {
        mSummaryLabel->setText(aText);
        mSummaryLabel->setEnabled(aEnabled);
        mConfigureButton->setEnabled(aEnabled);
    }
}

void SerialBridgeManagerWnd::RefreshBaudRates()
{
    const SerialBridgeEntry *entry = SelectedEntry();
    const uint32_t rate = entry && entry->GetBridge() ? entry->GetBridge()->GetBaudRate() : 0;
    for (size_t i = 0; i < mBaudRateChecks.size(); ++i) {
        if (mBaudRateChecks[i]) {
            mBaudRateChecks[i]->setEnabled(entry && entry->IsBaudRateSupported(i));
            mBaudRateChecks[i]->setChecked(StandardBaudRates[i] == rate);
        }
    }
}

void SerialBridgeManagerWnd::OnTimerTimeout()
{
    const SerialBridgeEntry *entry = SelectedEntry();
    const LxSerialBridge *bridge = entry ? entry->GetBridge() : nullptr;
    if (mSentLabel && mReceivedLabel) {
        mSentLabel->setText(tr("Bytes sent: %1").arg(bridge ? bridge->GetBytesSentToDevice() : 0));
        mReceivedLabel->setText(tr("Bytes received: %1").arg(bridge ? bridge->GetBytesReceivedFromDevice() : 0));
    }
}

void SerialBridgeManagerWnd::OnResetButtonClicked()
{
    const SerialBridgeEntry *entry = SelectedEntry();
    if (entry && entry->GetBridge()) {
        entry->GetBridge()->ResetStatistics();
    }
    OnTimerTimeout();
}

void SerialBridgeManagerWnd::OnPortSelectionComboChanged()
{
    RefreshViews();
}

void SerialBridgeManagerWnd::OnRadioButtonClicked(int aButtonId)
{
    SerialBridgeEntry *entry = SelectedEntry();
    if (!entry || static_cast<uint32_t>(aButtonId) == entry->GetType()) {
        return;
    }
    const QPointer<SerialBridgeManagerWnd> self(this);
    if (aButtonId == SerialBridgeEntry::CameraLinkDLL) {
        StartCameraLink(entry);
    }
    else {
        const BusyCursor busy;
        entry->Reset(static_cast<SerialBridgeEntry::Type>(aButtonId));
    }
    if (self) {
        RefreshViews();
    }
}

void SerialBridgeManagerWnd::StartCameraLink(SerialBridgeEntry *aEntry)
{
    // The boxes run an event loop, in which another device may be set and the window destroyed.
    const QPointer<SerialBridgeEntry> entry(aEntry);
    LxResult result;
    {
        const BusyCursor busy;
        entry->Reset(SerialBridgeEntry::CameraLinkDLL);
        result = entry->StartCameraLink(entry->GetPort());
    }
    if (!result.IsOK()) {
        entry->Reset(SerialBridgeEntry::Inactive);
        RefreshViews();
        ShowError(Widget(), FormatFailure(tr("Unable to start Camera Link DLL bridge."), result));
        return;
    }
    if (entry->AreBaudRatesKnown()) {
        return;
    }
    // Without a known or chosen rate there is no such bridge.
    const QPointer<BaudRateSelectionDlg> dialog(new BaudRateSelectionDlg(FirstBaudRate, Widget()));
    const bool accepted = dialog->exec() == QDialog::Accepted && dialog;
    if (entry && entry->GetType() == SerialBridgeEntry::CameraLinkDLL) {
        const BusyCursor busy;
        if (accepted) {
            entry->GetBridge()->SetHardCodedBaudRate(dialog->BaudRate());
        }
        else {
            entry->Reset(SerialBridgeEntry::Inactive);
        }
    }
    delete dialog;
}

void SerialBridgeManagerWnd::OnPortComboChanged()
{
    SerialBridgeEntry *entry = SelectedEntry();
    const QString port = mPortCombo ? mPortCombo->currentText() : QString();
    if (port.isEmpty() || port == QLatin1String("Not Available")) {
        ShowSummary(QStringLiteral("Not selected"), false);
        return;
    }
    if (entry && entry->GetType() == SerialBridgeEntry::COMPortLink) {
        const BusyCursor busy;
        entry->OpenCOMPort(ToLxString(port));
        mNameLabel->setText(ToQString(entry->GetName()));
    }
    RefreshSummary();
    RefreshBaudRates();
}

void SerialBridgeManagerWnd::OnConfigureButtonClicked()
{
    const QPointer<SerialBridgeEntry> entry(SelectedEntry());
    if (!entry || entry->GetCOMPort().IsEmpty()) {
        return;
    }
    const QPointer<SerialCOMPortConfigDlg> dialog(
        new SerialCOMPortConfigDlg(entry->GetBridge()->GetSerialPortConfiguration(), entry->GetBaudRates(), Widget()));
    const bool accepted = dialog->exec() == QDialog::Accepted && dialog;
    const LxSerialPortConfiguration chosen = accepted ? dialog->Configuration() : LxSerialPortConfiguration();
    delete dialog;
    if (!accepted || !entry || !entry->GetBridge()) {
        return;
    }
    LxResult result;
    {
        const BusyCursor busy;
        result = entry->GetBridge()->SetSerialPortConfiguration(chosen);
    }
    RefreshSummary();
    RefreshBaudRates();
    if (!result.IsOK()) {
        ShowError(Widget(), FormatFailure(tr("Unable to apply COM port configuration."), result));
    }
}
