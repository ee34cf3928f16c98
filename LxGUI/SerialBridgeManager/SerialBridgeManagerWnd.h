#pragma once

#include <QtCore/QStringList>
#include <QtCore/QTimer>
#include <QtWidgets/QButtonGroup>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QGroupBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>
#include <functional>
#include <memory>
#include <vector>

#include "LxGUI/Frame/ObjectWatch.h"
#include "LxGUI/Frame/Wnd.h"
#include "LxGUI/SerialBridgeManager/SerialBridgeEntry.h"

/// The window behind LxSerialBridgeManagerWnd.
class SerialBridgeManagerWnd : public Wnd
{
    Q_OBJECT

public:
    SerialBridgeManagerWnd();
    ~SerialBridgeManagerWnd() override;

    /// From any thread.
    void SetDevice(ILxDeviceAdapter *aAdapter);
    void Save(LxPropertyList &aList) const;
    void Load(const LxPropertyList &aList, LxStringList &aMessages);

    /// Where the names of the host's serial ports come from: from the start the system's, and those of
    /// LxSerialBridge::GetCOMPortNames().
    void SetPortLister(std::function<QStringList()> aLister);

    bool eventFilter(QObject *aObject, QEvent *aEvent) override;

public slots:
    void OnRadioButtonClicked(int aButtonId);
    void OnPortSelectionComboChanged();
    void OnConfigureButtonClicked();
    void OnPortComboChanged();
    void OnResetButtonClicked();
    void OnTimerTimeout();

protected:
    void CreateLayout() override;
    void OnOpen() override;
    void OnClose() override;

private:
    static constexpr uint32_t PortCount = 10;

    QGroupBox *CreatePortGroup(QWidget *aParent);
    QGroupBox *CreateBridgeGroup(QWidget *aParent);
    QGroupBox *CreateBaudRateGroup(QWidget *aParent);
    QGroupBox *CreateStatisticsGroup(QWidget *aParent);

    void ChangeDevice(ILxDeviceAdapter *aAdapter);
    void BuildEntries();
    void RegisterCameraLinkPorts();
    SerialBridgeEntry *FindEntry(LxDeviceSerial aPort) const;
    /// The entry of the port that is selected; null when there is none.
    SerialBridgeEntry *SelectedEntry() const;
    void LoadPort(LxDeviceSerial aPort, SerialBridgeEntry *aEntry, const LxPropertyList &aList,
                  LxStringList &aMessages);

    void StartCameraLink(SerialBridgeEntry *aEntry);
    void FillCombos();
    void RefreshViews();
    void RefreshEntryView();
    void RefreshSummary();
    void RefreshBaudRates();
    void ShowSummary(const QString &aText, bool aEnabled);

    ILxDeviceAdapter *mAdapter = nullptr;
    ObjectWatch mWatch;                                        // of the above
    std::vector<std::unique_ptr<SerialBridgeEntry>> mEntries;  // by port
    std::function<QStringList()> mPortLister;
    QTimer mTimer;

    // Null before the first CreateLayout() and after the death of a host's widget.
    QPointer<QButtonGroup> mTypeButtons;
    QPointer<QComboBox> mPortSelectionCombo;
    QPointer<QLabel> mNameLabel;
    QPointer<QComboBox> mPortCombo;
    QPointer<QPushButton> mConfigureButton;
    QPointer<QLabel> mSummaryLabel;
    std::array<QPointer<QCheckBox>, StandardBaudRates.size()> mBaudRateChecks;
    QPointer<QLabel> mSentLabel;
    QPointer<QLabel> mReceivedLabel;
};
