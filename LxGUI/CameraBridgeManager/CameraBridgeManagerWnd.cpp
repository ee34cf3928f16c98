#include "LxGUI/CameraBridgeManager/CameraBridgeManagerWnd.h"

#include <QtCore/QSettings>
#include <QtCore/QSignalBlocker>
#include <algorithm>

#include "LxDevice/LxDevice.h"
#include "LxDevice/LxDeviceAdapter.h"
#include "LxDevice/LxDeviceSerialPort.h"
#include "LxGUI/CameraBridgeManager/CameraBridgeTexts.h"
#include "LxGUI/Frame/ApplicationThread.h"
#include "LxGUI/Frame/BusyCursor.h"
#include "LxGUI/Frame/OwnedApplication.h"
#include "LxGUI/Frame/Text.h"
#include "LxGUI/LxGenBrowserWnd.h"
#include "LxGenICam/LxGenEnum.h"
#include "LxGenICam/LxGenParameterArray.h"

namespace
{

constexpr int StatisticsPeriod = 500;
constexpr uint32_t PortCount = 10;

}  // namespace

CameraBridgeManagerWnd::CameraBridgeManagerWnd()
    : mKCFVisible(QSettings(QStringLiteral("Kelvra Technologies Inc"), QStringLiteral("CorvoPlayerClassic"))
                      .value(QStringLiteral("KelvraCameraFiles"), false)
                      .toBool())
{
    SetTitle("Frame Grabber Camera Bridge");
}

CameraBridgeManagerWnd::~CameraBridgeManagerWnd()
{
    mBrowser.reset();  // ends its thread, which reads the features of the bridges
    delete mTimer;
}

bool CameraBridgeManagerWnd::eventFilter(QObject *aObject, QEvent *aEvent)
{
    return QObject::eventFilter(aObject, aEvent);
}

void CameraBridgeManagerWnd::SetDevice(LxDevice *aDevice)
{
    CallOnApplicationThread([this, aDevice] {
        mDevice = aDevice;
        mWatch.Set(this, "a device", {aDevice}, [this] { SetDevice(nullptr); });
        const QPointer<CameraBridgeManagerWnd> self(this);
        Browse(nullptr);
        if (self && mDevice == aDevice) {
            RebuildBridges();
        }
    });
}

void CameraBridgeManagerWnd::RebuildBridges()
{
    for (const Entry &entry : mBridges) {
        entry->mBridge->Disconnect();  // also where a call further up the stack keeps the entry
    }
    mBridges.clear();
    if (!mDevice) {
        return;
    }
    LxDeviceAdapter adapter(mDevice);
    for (uint32_t number = 0; number < PortCount; ++number) {
        const auto port = static_cast<LxDeviceSerial>(number);
        if (LxDeviceSerialPort::IsSupported(&adapter, port)) {
            mBridges.push_back(std::make_shared<CameraBridge>(mDevice, port, mStream));
        }
    }
}

LxCameraBridge *CameraBridgeManagerWnd::GetBridge(int aIndex) const
{
    return aIndex >= 0 && aIndex < GetBridgeCount() ? mBridges[static_cast<size_t>(aIndex)]->mBridge.get() : nullptr;
}

LxDeviceSerial CameraBridgeManagerWnd::GetBridgePort(int aIndex) const
{
    return aIndex >= 0 && aIndex < GetBridgeCount() ? mBridges[static_cast<size_t>(aIndex)]->mPort
                                                    : LxDeviceSerial::Invalid;
}

CameraBridgeManagerWnd::Entry CameraBridgeManagerWnd::FindEntry(int64_t aPort) const
{
    for (const Entry &entry : mBridges) {
        if (static_cast<int64_t>(entry->mPort) == aPort) {
            return entry;
        }
    }
    return nullptr;
}

CameraBridgeManagerWnd::Entry CameraBridgeManagerWnd::GetSelected() const
{
    const int index = mPortCombo ? mPortCombo->currentIndex() : -1;
    // after a change of the device the combo is that of the old one until the next opening
    return index >= 0 && index < GetBridgeCount() ? mBridges[static_cast<size_t>(index)] : nullptr;
}

bool CameraBridgeManagerWnd::Browse(LxGenParameterArray *aParameters, const Entry &aEntry)
{
    const QPointer<CameraBridgeManagerWnd> self(this);
    if (mBrowser) {
        mBrowser->SetGenParameterArray(aParameters);
    }
    return self && mPortCombo && OwnedApplication::CanMakeWidgets() && (!aEntry || IsSelected(aEntry));
}

void CameraBridgeManagerWnd::OnOpen()
{
    if (!mPortCombo) {
        return;
    }
    if (mFirstOpen) {
        for (const Entry &entry : mBridges) {
            entry->Synchronize();
        }
        mFirstOpen = false;
    }
    FillPortCombo();
    FillSourceCombo();
    const QPointer<CameraBridgeManagerWnd> self(this);
    RefreshPanel();
    if (!self) {
        return;
    }
    if (mTimer && IsOpen()) {  // it may have been closed meanwhile
        mTimer->start(StatisticsPeriod);
    }
    UpdateEnabledState();
}

void CameraBridgeManagerWnd::OnClose()
{
    if (mTimer) {
        mTimer->stop();
    }
    Browse(nullptr);
}

void CameraBridgeManagerWnd::FillPortCombo()
{
    if (!mPortCombo) {
        return;
    }
    const QSignalBlocker blocker(mPortCombo);
    const int index = std::clamp(mPortCombo->currentIndex(), 0, std::max(GetBridgeCount() - 1, 0));
    mPortCombo->clear();
    for (const Entry &entry : mBridges) {
        mPortCombo->addItem(ToQString(LxDeviceSerialToString(entry->mPort)));
    }
    mPortCombo->setCurrentIndex(mBridges.empty() ? -1 : index);
}

void CameraBridgeManagerWnd::FillSourceCombo()
{
    const QSignalBlocker blocker(mSourceCombo);
    mSourceCombo->clear();
    LxGenParameterArray *parameters = mDevice ? mDevice->GetParameters() : nullptr;
    const LxGenEnum *sources = parameters ? parameters->GetEnum("SourceSelector") : nullptr;
    int64_t count = 0;
    if (!sources || !sources->GetEntriesCount(count).IsOK()) {
        return;
    }
    for (int64_t i = 0; i < count; ++i) {
        const LxGenEnumEntry *entry = nullptr;
        LxString name;
        if (sources->GetEntryByIndex(i, &entry).IsOK() && entry && entry->IsAvailable() && entry->GetName(name).IsOK())
        {
            mSourceCombo->addItem(ToQString(name));
        }
    }
}

void CameraBridgeManagerWnd::ShowStatus(QLabel *aLabel, const QString &aText)
{
    aLabel->setText(aText);
    aLabel->setEnabled(aText != QLatin1String("Not initialized") && aText != QLatin1String("Not found"));
}

void CameraBridgeManagerWnd::RefreshPanel()
{
    if (!mPortCombo || !OwnedApplication::CanMakeWidgets()) {
        return;
    }
    mKCFPathEdit->clear();
    ShowStatus(mCLPCameraID, QStringLiteral("Not found"));
    for (QLabel *label : {mKCFStatus.data(), mCLPStatus.data(), mGenCPStatus.data()}) {
        ShowStatus(label, QStringLiteral("Not initialized"));
    }
    mSentLabel->setText(QStringLiteral("Bytes sent: 0"));
    mReceivedLabel->setText(QStringLiteral("Bytes received: 0"));
    for (QComboBox *combo : {mCLPTemplateCombo.data(), mCLPXMLCombo.data(), mGenCPXMLCombo.data()}) {
        const QSignalBlocker blocker(combo);  // the items of the entry that was shown before
        combo->clear();
    }
    const Entry entry = GetSelected();
    if (entry) {
        entry->UpdateStatus();
        ShowEntry(*entry);
    }
    else {
        mNoneRadio->setChecked(true);
        mSyncCheck->setChecked(false);
    }
    mPoCLCheck->setChecked(mDevice && LxCameraBridge::IsPoCLEnabled(mDevice));
    Browse(entry ? entry->mBridge->GetParameters() : nullptr);
}

void CameraBridgeManagerWnd::ShowEntry(const CameraBridge &aEntry)
{
    const QSignalBlocker templateBlocker(mCLPTemplateCombo);
    const QSignalBlocker xmlBlocker(mCLPXMLCombo);
    const QSignalBlocker genCPBlocker(mGenCPXMLCombo);
    const QSignalBlocker sourceBlocker(mSourceCombo);
    const bool connected = aEntry.mBridge->IsConnected();
    QLabel *status = nullptr;
    switch (aEntry.mMode) {
        case CameraBridge::ModeCameraFile:
            mKCFRadio->setChecked(true);
            mKCFPathEdit->setText(aEntry.mCameraFilePath);
            status = mKCFStatus;
            break;
        case CameraBridge::ModeCLProtocol:
            mCLPRadio->setChecked(true);
            status = mCLPStatus;
            if (connected) {
                mCLPTemplateCombo->addItem(aEntry.mTemplateText);
                mCLPXMLCombo->addItem(aEntry.mXMLIDText);
                ShowStatus(mCLPCameraID, aEntry.mCameraIDText);
                break;
            }
            for (const QString &text : aEntry.mTemplates) {
                mCLPTemplateCombo->addItem(CameraBridgeTexts::ShowTemplate(text));
            }
            mCLPTemplateCombo->setCurrentIndex(aEntry.mTemplates.isEmpty() ? -1 : aEntry.mTemplateIndex);
            for (const QString &text : aEntry.mXMLIDs) {
                mCLPXMLCombo->addItem(CameraBridgeTexts::ShowCLProtocolXMLID(text));
            }
            break;
        case CameraBridge::ModeGenCP:
            mGenCPRadio->setChecked(true);
            status = mGenCPStatus;
            if (connected) {
                mGenCPXMLCombo->addItem(aEntry.mXMLIDText);
                break;
            }
            for (const QString &text : aEntry.mXMLIDs) {
                mGenCPXMLCombo->addItem(CameraBridgeTexts::ShowGenCPXMLID(text));
            }
            break;
        case CameraBridge::ModeNone:
            mNoneRadio->setChecked(true);
            break;
    }
    if (status) {
        ShowStatus(status, aEntry.mStatusText);
    }
    mSyncCheck->setChecked(aEntry.mBridge->GetParametersSyncEnabled());
    const int source =
        mSourceCombo->findText(ToQString(aEntry.mBridge->GetSource()), Qt::MatchExactly | Qt::MatchCaseSensitive);
    if (source >= 0) {
        mSourceCombo->setCurrentIndex(source);
    }
}

void CameraBridgeManagerWnd::UpdateEnabledState()
{
    if (!mPortCombo || !OwnedApplication::CanMakeWidgets()) {
        return;
    }
    const Entry entry = GetSelected();
    const bool connected = entry && entry->mBridge->IsConnected();
    mKCFRadio->setVisible(mKCFVisible);
    mKCFRadio->setEnabled(mKCFVisible);
    for (QWidget *widget :
         std::initializer_list<QWidget *>{mKCFLabel, mKCFPathEdit, mKCFPathButton, mKCFLoadButton, mKCFStatus})
    {
        widget->setVisible(mKCFVisible);
        widget->setEnabled(mKCFVisible && mKCFRadio->isChecked());
    }
    const bool protocol = mCLPRadio->isChecked();
    for (QWidget *widget : std::initializer_list<QWidget *>{mCLPTemplateLabel, mCLPCameraID, mCLPXMLLabel, mCLPStatus})
    {
        widget->setEnabled(protocol);
    }
    const bool hasXML = mCLPXMLCombo->count() > 0;
    const bool probing = protocol && mCLPTemplateCombo->count() > 0 && !connected && !hasXML;
    mCLPTemplateCombo->setEnabled(probing);
    mCLPProbeButton->setEnabled(probing);
    mCLPXMLCombo->setEnabled(protocol && hasXML && !connected);
    mCLPConnectButton->setEnabled(protocol && hasXML && !connected);
    const bool genCP = mGenCPRadio->isChecked();
    mGenCPLabel->setEnabled(genCP);
    mGenCPStatus->setEnabled(genCP);
    // unlike above also while connected: a camera can be connected again
    mGenCPXMLCombo->setEnabled(genCP && mGenCPXMLCombo->count() > 0);
    mGenCPConnectButton->setEnabled(genCP && mGenCPXMLCombo->count() > 0);
    mSourceCombo->setEnabled(entry != nullptr);
    mPoCLCheck->setEnabled(entry && mDevice && LxCameraBridge::IsPoCLSupported(mDevice));
}

void CameraBridgeManagerWnd::ShowKCF()
{
    mKCFVisible = true;
    UpdateEnabledState();
}

void CameraBridgeManagerWnd::HideKCF()
{
    mKCFVisible = false;
    const Entry selected = GetSelected();
    const bool shown = selected && selected->mMode == CameraBridge::ModeCameraFile;
    const QPointer<CameraBridgeManagerWnd> self(this);
    if (shown) {
        Browse(nullptr);
    }
    if (!self) {
        return;
    }
    for (const Entry &entry : mBridges) {
        if (entry->mMode == CameraBridge::ModeCameraFile) {
            entry->Reset();
            entry->mMode = CameraBridge::ModeNone;
        }
    }
    if (shown) {
        RefreshPanel();
    }
    if (self) {
        UpdateEnabledState();
    }
}

void CameraBridgeManagerWnd::OnPortComboChanged()
{
    const QPointer<CameraBridgeManagerWnd> self(this);
    RefreshPanel();
    if (self) {
        UpdateEnabledState();
    }
}

void CameraBridgeManagerWnd::OnCLPTemplateComboChanged()
{
    if (const Entry entry = GetSelected()) {
        entry->mTemplateIndex = mCLPTemplateCombo->currentIndex();
    }
    UpdateEnabledState();
}

void CameraBridgeManagerWnd::OnCLPXMLComboChanged()
{
    UpdateEnabledState();
}

void CameraBridgeManagerWnd::OnGenCPXMLComboChanged()
{
    UpdateEnabledState();
}

void CameraBridgeManagerWnd::OnResetButtonClicked()
{
    if (const Entry entry = GetSelected()) {
        entry->mBridge->ResetStatistics();
        mSentLabel->setText(QStringLiteral("Bytes sent: 0"));
        mReceivedLabel->setText(QStringLiteral("Bytes received: 0"));
    }
}

void CameraBridgeManagerWnd::OnSyncCheckChanged()
{
    if (const Entry entry = GetSelected()) {
        const BusyCursor cursor;  // the camera is asked for its geometry
        entry->mBridge->SetParametersSyncEnabled(mSyncCheck->isChecked());
    }
}

void CameraBridgeManagerWnd::OnPoCLCheckChanged()
{
    if (GetSelected() && mDevice) {
        LxCameraBridge::SetPoCLEnabled(mDevice, mPoCLCheck->isChecked());
        UpdateEnabledState();
    }
}

void CameraBridgeManagerWnd::OnSourceComboChanged()
{
    const Entry entry = GetSelected();
    if (entry && !mSourceCombo->currentText().isEmpty()) {
        entry->mBridge->SetSource(ToLxString(mSourceCombo->currentText()));
    }
}

void CameraBridgeManagerWnd::OnTimerTimeout()
{
    if (const Entry entry = GetSelected()) {
        mSentLabel->setText(QStringLiteral("Bytes sent: %1").arg(entry->mBridge->GetBytesSentToCamera()));
        mReceivedLabel->setText(QStringLiteral("Bytes received: %1").arg(entry->mBridge->GetBytesReceivedFromCamera()));
    }
}
