#pragma once

#include <QtCore/QPointer>
#include <QtCore/QTimer>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QRadioButton>
#include <memory>
#include <vector>

#include "LxGUI/CameraBridgeManager/CameraBridge.h"
#include "LxGUI/Frame/ObjectWatch.h"
#include "LxGUI/Frame/Wnd.h"

class LxConfigurationReader;
class LxConfigurationWriter;
class LxGenBrowserWnd;
class QBoxLayout;
class QGroupBox;

/// The window behind LxCameraBridgeManagerWnd.
///
/// Taking the features from the browser processes events, so that anything may happen within Browse(): what is used
/// afterwards is looked at anew.
class CameraBridgeManagerWnd : public Wnd
{
    Q_OBJECT

public:
    CameraBridgeManagerWnd();
    ~CameraBridgeManagerWnd() override;

    void SetDevice(LxDevice *aDevice);
    void SetStream(LxStream *aStream) { mStream = aStream; }
    int GetBridgeCount() const { return static_cast<int>(mBridges.size()); }
    LxCameraBridge *GetBridge(int aIndex) const;
    LxDeviceSerial GetBridgePort(int aIndex) const;
    void Save(LxConfigurationWriter &aWriter);
    LxResult Load(LxConfigurationReader &aReader, LxStringList &aErrors);
    void ShowKCF();
    void HideKCF();
    bool IsKCFVisible() const { return mKCFVisible; }

    bool eventFilter(QObject *aObject, QEvent *aEvent) override;

public slots:
    void OnPortComboChanged();
    void OnCLPTemplateComboChanged();
    void OnCLPXMLComboChanged();
    void OnGenCPXMLComboChanged();
    void OnRadioButtonChanged(QString aOption);
    void OnKCFPathButtonClicked();
    void OnKCFLoadButtonClicked();
    void OnCLPProbeButtonClicked();
    void OnCLPConnectButtonClicked();
    void OnGenCPConnectButtonClicked();
    void OnResetButtonClicked();
    void OnSyncCheckChanged();
    void OnPoCLCheckChanged();
    void OnSourceComboChanged();
    void OnTimerTimeout();

protected:
    void CreateLayout() override;
    void OnOpen() override;
    void OnClose() override;
    /// The widget of the feature browser, made at the first call; null when it could not be loaded.
    virtual QWidget *LoadBrowser();

private:
    using Entry = std::shared_ptr<CameraBridge>;

    QGroupBox *CreateSetupGroup(QWidget *aParent);
    void AddCameraFileBlock(QBoxLayout *aLayout, QWidget *aParent);
    void AddCLProtocolBlock(QBoxLayout *aLayout, QWidget *aParent);
    void AddGenCPBlock(QBoxLayout *aLayout, QWidget *aParent);
    QGroupBox *CreateStatisticsGroup(QWidget *aParent);
    QGroupBox *CreateCheckGroup(QWidget *aParent);
    QRadioButton *AddRadioButton(QBoxLayout *aLayout, QWidget *aParent, const char *aName, const QString &aText);
    void EmbedBrowser(QBoxLayout *aLayout, QWidget *aParent);
    void MakeConnections();

    void RebuildBridges();
    Entry FindEntry(int64_t aPort) const;
    Entry GetSelected() const;
    bool IsSelected(const Entry &aEntry) const { return aEntry && aEntry == GetSelected(); }
    /// Lets the browser show features, or nothing. False when, meanwhile, the window has lost its widgets or itself, or
    /// the entry, if there is one, is no longer the selected one.
    bool Browse(LxGenParameterArray *aParameters, const Entry &aEntry = nullptr);

    void FillPortCombo();
    void FillSourceCombo();
    /// What says that there is nothing is grey.
    static void ShowStatus(QLabel *aLabel, const QString &aText);
    void RefreshPanel();
    void ShowEntry(const CameraBridge &aEntry);
    void UpdateEnabledState();
    void FillTemplates(CameraBridge &aEntry);
    void FillGenCPXMLs(CameraBridge &aEntry);
    void ChooseMode(CameraBridge::Mode aMode);

    LxDevice *mDevice = nullptr;
    ObjectWatch mWatch;  // of the above
    LxStream *mStream = nullptr;
    std::vector<Entry> mBridges;  // in the order of their ports
    std::unique_ptr<LxGenBrowserWnd> mBrowser;
    QPointer<QWidget> mBrowserWidget;
    QPointer<QTimer> mTimer;
    bool mFirstOpen = true;
    bool mKCFVisible;

    QPointer<QComboBox> mPortCombo;  // null: there are no widgets
    QPointer<QRadioButton> mNoneRadio;
    QPointer<QRadioButton> mKCFRadio;
    QPointer<QLabel> mKCFLabel;
    QPointer<QLineEdit> mKCFPathEdit;
    QPointer<QPushButton> mKCFPathButton;
    QPointer<QPushButton> mKCFLoadButton;
    QPointer<QLabel> mKCFStatus;
    QPointer<QRadioButton> mCLPRadio;
    QPointer<QLabel> mCLPTemplateLabel;
    QPointer<QComboBox> mCLPTemplateCombo;
    QPointer<QPushButton> mCLPProbeButton;
    QPointer<QLabel> mCLPCameraID;
    QPointer<QLabel> mCLPXMLLabel;
    QPointer<QComboBox> mCLPXMLCombo;
    QPointer<QPushButton> mCLPConnectButton;
    QPointer<QLabel> mCLPStatus;
    QPointer<QRadioButton> mGenCPRadio;
    QPointer<QLabel> mGenCPLabel;
    QPointer<QComboBox> mGenCPXMLCombo;
    QPointer<QPushButton> mGenCPConnectButton;
    QPointer<QLabel> mGenCPStatus;
    QPointer<QComboBox> mSourceCombo;
    QPointer<QLabel> mReceivedLabel;
    QPointer<QLabel> mSentLabel;
    QPointer<QPushButton> mResetButton;
    QPointer<QCheckBox> mSyncCheck;
    QPointer<QCheckBox> mPoCLCheck;
};
