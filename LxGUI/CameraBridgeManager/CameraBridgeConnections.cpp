// How the bridges are connected.

#include <QtCore/QSignalBlocker>
#include <QtWidgets/QFileDialog>
#include <algorithm>

#include "LxGUI/CameraBridgeManager/CameraBridgeManagerWnd.h"
#include "LxGUI/CameraBridgeManager/CameraBridgeTexts.h"
#include "LxGUI/Frame/BusyCursor.h"
#include "LxGUI/Frame/MessageBoxes.h"
#include "LxGUI/Frame/Text.h"
#include "LxGenICam/LxGenParameterArray.h"

namespace
{

/// A long call of the SDK. The cursor is restored before any box is shown.
template <class Call>
LxResult CallBusy(Call aCall)
{
    const BusyCursor cursor;
    return aCall();
}

QString Describe(const QString &aText, const LxResult &aResult)
{
    return aText.arg(ToQString(aResult.GetDescription()));
}

QStringList ToQStringList(const LxStringList &aList)
{
    QStringList texts;
    for (size_t i = 0; i < aList.GetSize(); ++i) {
        texts.append(ToQString(aList.GetItem(i)));
    }
    return texts;
}

}  // namespace

void CameraBridgeManagerWnd::OnRadioButtonChanged(QString aOption)
{
    if (!mPortCombo) {
        return;
    }
    const BusyCursor cursor;
    const QRadioButton *const buttons[] = {mNoneRadio, mKCFRadio, mCLPRadio, mGenCPRadio};
    const auto chosen = std::find_if(std::begin(buttons), std::end(buttons),
                                     [&](const QRadioButton *aButton) { return aButton->text() == aOption; });
    if (chosen == std::end(buttons)) {
        UpdateEnabledState();
        return;
    }
    const auto mode = static_cast<CameraBridge::Mode>(chosen - std::begin(buttons) + CameraBridge::ModeNone);
    mCLPCameraID->setEnabled(mode == CameraBridge::ModeCLProtocol);
    mCLPStatus->setEnabled(mode == CameraBridge::ModeCLProtocol);
    mGenCPStatus->setEnabled(mode == CameraBridge::ModeGenCP);
    mKCFPathButton->setEnabled(mode == CameraBridge::ModeCameraFile);
    const QPointer<CameraBridgeManagerWnd> self(this);
    ChooseMode(mode);
    if (self) {
        UpdateEnabledState();
    }
}

void CameraBridgeManagerWnd::ChooseMode(CameraBridge::Mode aMode)
{
    const Entry entry = GetSelected();
    if (!entry || entry->mMode == aMode || !Browse(nullptr, entry)) {
        return;
    }
    entry->Reset();
    entry->mMode = aMode;
    const QPointer<CameraBridgeManagerWnd> self(this);
    RefreshPanel();
    if (!self || !IsSelected(entry)) {
        return;
    }
    if (aMode == CameraBridge::ModeCLProtocol) {
        FillTemplates(*entry);
    }
    else if (aMode == CameraBridge::ModeGenCP) {
        FillGenCPXMLs(*entry);
    }
}

void CameraBridgeManagerWnd::FillTemplates(CameraBridge &aEntry)
{
    const QSignalBlocker templateBlocker(mCLPTemplateCombo);
    const QSignalBlocker xmlBlocker(mCLPXMLCombo);
    mCLPTemplateCombo->clear();
    mCLPXMLCombo->clear();
    LxStringList templates;
    if (!LxCameraBridge::GetCLProtocolTemplates(templates).IsOK()) {
        return;
    }
    aEntry.mTemplates = ToQStringList(templates);
    aEntry.mTemplateIndex = 0;
    for (const QString &text : aEntry.mTemplates) {
        mCLPTemplateCombo->addItem(CameraBridgeTexts::ShowTemplate(text));
    }
}

void CameraBridgeManagerWnd::FillGenCPXMLs(CameraBridge &aEntry)
{
    LxStringList ids;
    if (!aEntry.mBridge->GetGenCPXMLIDs(ids).IsOK()) {
        return;
    }
    const QSignalBlocker blocker(mGenCPXMLCombo);
    for (const QString &text : ToQStringList(ids)) {
        aEntry.mXMLIDs.append(text);
        mGenCPXMLCombo->addItem(CameraBridgeTexts::ShowGenCPXMLID(text));
    }
    if (mGenCPXMLCombo->count() > 0) {
        mGenCPXMLCombo->setCurrentIndex(0);
    }
}

void CameraBridgeManagerWnd::OnCLPProbeButtonClicked()
{
    const Entry entry = GetSelected();
    const int index = mCLPTemplateCombo ? mCLPTemplateCombo->currentIndex() : -1;
    if (!entry || index < 0 || index >= entry->mTemplates.size()) {
        return;
    }
    LxString cameraID;
    LxStringList xmlIDs;
    const LxResult result = CallBusy([&] {
        const QSignalBlocker blocker(mCLPXMLCombo);
        mCLPXMLCombo->clear();
        return entry->mBridge->ProbeCLProtocol(ToLxString(entry->mTemplates[index]), cameraID, xmlIDs);
    });
    if (!result.IsOK()) {
        ShowError(Widget(), Describe(QStringLiteral("Failed to probe CLProtocol: %1"), result),
                  QStringLiteral("CLP Probe Error"));
        return;
    }
    ShowStatus(mCLPCameraID, QStringLiteral("Camera ID: %1").arg(CameraBridgeTexts::ShowCameraID(ToQString(cameraID))));
    entry->mXMLIDs = ToQStringList(xmlIDs);
    {
        const QSignalBlocker blocker(mCLPXMLCombo);
        for (const QString &text : entry->mXMLIDs) {
            mCLPXMLCombo->addItem(CameraBridgeTexts::ShowCLProtocolXMLID(text));
        }
    }
    UpdateEnabledState();
}

void CameraBridgeManagerWnd::OnCLPConnectButtonClicked()
{
    const Entry entry = GetSelected();
    const int index = mCLPTemplateCombo ? mCLPTemplateCombo->currentIndex() : -1;
    const int xml = mCLPXMLCombo ? mCLPXMLCombo->currentIndex() : -1;
    if (!entry || index < 0 || index >= entry->mTemplates.size() || xml < 0 || xml >= entry->mXMLIDs.size()) {
        return;
    }
    const LxResult result = CallBusy([&] {
        return entry->mBridge->ConnectCLProtocol(ToLxString(entry->mTemplates[index]), ToLxString(entry->mXMLIDs[xml]));
    });
    if (!result.IsOK()) {
        ShowError(Widget(), Describe(QStringLiteral("Failed to connect CLProtocol: %1"), result),
                  QStringLiteral("CLP Connect Error"));
        return;
    }
    entry->mTemplateText = mCLPTemplateCombo->currentText();
    entry->mCameraIDText = mCLPCameraID->text();
    entry->mXMLIDText = mCLPXMLCombo->currentText();
    UpdateEnabledState();
    entry->UpdateStatus();
    ShowStatus(mCLPStatus, entry->mStatusText);
    Browse(entry->mBridge->GetParameters());
}

void CameraBridgeManagerWnd::OnGenCPConnectButtonClicked()
{
    const Entry entry = GetSelected();
    const QString text = mGenCPXMLCombo ? mGenCPXMLCombo->currentText() : QString();
    if (!entry || mGenCPXMLCombo->currentIndex() < 0) {
        return;
    }
    // A connected bridge that is shown again has only its own text in the combo, whatever place that has in the list.
    const auto &ids = entry->mXMLIDs;
    const int index = mGenCPXMLCombo->currentIndex();
    QString id = index < ids.size() && CameraBridgeTexts::ShowGenCPXMLID(ids[index]) == text ? ids[index] : QString();
    if (id.isEmpty()) {
        const auto found = std::find_if(
            ids.begin(), ids.end(), [&](const QString &aID) { return CameraBridgeTexts::ShowGenCPXMLID(aID) == text; });
        if (found == ids.end()) {
            return;
        }
        id = *found;
    }
    if (!Browse(nullptr, entry)) {
        return;
    }
    const LxResult result = CallBusy([&] { return entry->mBridge->ConnectGenCP(ToLxString(id)); });
    if (!result.IsOK()) {
        ShowError(Widget(), Describe(QStringLiteral("Failed to connect GenCP: %1"), result),
                  QStringLiteral("GenCP Connect Error"));
        return;
    }
    entry->mXMLIDText = text;
    if (Browse(entry->mBridge->GetParameters(), entry)) {
        UpdateEnabledState();
        entry->UpdateStatus();
        ShowStatus(mGenCPStatus, entry->mStatusText);
    }
}

void CameraBridgeManagerWnd::OnKCFPathButtonClicked()
{
    if (!GetSelected()) {
        return;
    }
    const QString path = QFileDialog::getOpenFileName(Widget(), QStringLiteral("Select Kelvra Camera File"), QString(),
                                                      QStringLiteral("Kelvra Camera Files (*.yml);;All files (*.*)"));
    if (!path.isEmpty() && mKCFPathEdit) {
        mKCFPathEdit->setText(path);
    }
}

void CameraBridgeManagerWnd::OnKCFLoadButtonClicked()
{
    const QString title = QStringLiteral("KCF Load Error");
    const Entry entry = GetSelected();
    if (!entry) {
        ShowError(Widget(), QStringLiteral("No bridge selected or invalid path."), title);
        return;
    }
    const QString path = mKCFPathEdit->text();
    if (!Browse(nullptr, entry)) {
        return;  // its features go
    }
    const LxResult result = CallBusy([&] {
        entry->mBridge->Disconnect();
        return entry->mBridge->ConnectKelvraCameraFile(ToLxString(path));
    });
    entry->UpdateStatus();
    if (!result.IsOK()) {
        mKCFStatus->setText(entry->mStatusText);  // what was connected before no longer is
        ShowError(Widget(), Describe(QStringLiteral("Failed to load KCF file: %1"), result), title);
        return;
    }
    UpdateEnabledState();
    entry->mCameraFilePath = path;
    ShowStatus(mKCFStatus, entry->mStatusText);
}
