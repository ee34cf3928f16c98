#pragma once

#include <QtCore/QTimer>
#include <QtWidgets/QMainWindow>

#include "CameraSession.h"
#include "ExitCode.h"
#include "FeatureBrowser.h"
#include "KeptBridges.h"
#include "LxDevice/LxDeviceAdapter.h"
#include "LxGUI/LxCameraBridgeManagerWnd.h"
#include "LxGUI/LxDeviceFinderWnd.h"
#include "LxGUI/LxDisplayWnd.h"
#include "LxGUI/LxRegisterInterfaceWnd.h"
#include "LxGUI/LxSerialTerminalWnd.h"
#include "SerialBridges.h"
#include "ShownFrame.h"
#include "ViewerConfiguration.h"

class Banner;
class CameraSettings;
class FeatureDock;
class QAction;
class QLabel;
class QPushButton;
class QStackedWidget;
class RecentCameras;
class RendererChoice;
class StreamFigures;

/// The viewer's main window: finds a camera, shows its live picture and opens the other windows on it.
class ViewerWindow : public QMainWindow
{
    Q_OBJECT

public:
    /// @param aConfigurationFile where the options are kept from one run to the next.
    explicit ViewerWindow(const QString &aConfigurationFile = ViewerConfiguration::DefaultFile());
    ~ViewerWindow() override;

    LxDeviceFinderWnd &Finder() { return mFinder; }
    LxDisplayWnd &Display() { return mDisplay; }
    const ShownFrame &Shown() const { return mShownFrame; }
    LxRegisterInterfaceWnd &Registers() { return mRegisters; }
    LxSerialBridgeManagerWnd &SerialBridgeManager() { return mSerialBridges.Window(); }
    FeatureDock &Features() { return *mFeatureDock; }
    FeatureBrowser &FeatureWindow() { return mFeatureWindow; }
    LxSerialTerminalWnd &Terminal() { return mTerminal; }
    LxCameraBridgeManagerWnd &Bridges() { return mBridges; }
    CameraSession &Session() { return mSession; }
    CameraSettings &Settings() { return *mSettings; }
    RecentCameras &Recent() { return *mRecent; }
    /// Makes the windows no larger than the screen. Before they are shown for the first time.
    void FitToScreen();
    QString BannerText() const;
    /// What went wrong when the options were read; empty when nothing did.
    QString ConfigurationError() const { return mConfigurationError; }
    /// OK, or why no camera was ever connected though it was tried.
    ExitCode Outcome() const { return mEverConnected ? ExitCode::OK : mFailure; }

public slots:
    /// Lets the user choose a camera and connects to it. Not while a connection attempt runs: it works on what the
    /// finder found last.
    void FindCamera();
    void ConnectToAddress();
    void Connect(const QString &aAddress);
    void ConnectAgain(const CameraIdentity &aCamera);
    void Disconnect();
    void ToggleLive(bool aLive);
    void ShowRegisters();
    void ShowFeatureWindow();
    void ShowTerminal();
    void ShowBridges();
    /// Asks where to save the picture that is shown at this moment.
    void SaveSnapshot();

signals:
    /// The finder was closed without a choice, or a connection attempt has ended.
    void Settled();

protected:
    void closeEvent(QCloseEvent *aEvent) override;

private:
    void MakeActions();
    void MakeStatusBar();
    void OnConnected();
    void OnFailed(const LxResult &aResult);
    void OnLiveFailed(const LxResult &aResult);
    void OnGivenUp();
    void OnLinkLost();
    void OnLinkBack();
    void UpdateState();
    void UpdateStatistics();
    void UpdateZoomActions();
    void UpdateOverlay();
    void ChooseBackground();
    void MakeFeatures();
    void UpdateFeatures();
    void LoadConfiguration();
    void SaveConfiguration();
    void KeepBridges();

    CameraSession mSession;
    LxDeviceFinderWnd mFinder;
    LxDisplayWnd mDisplay;
    ShownFrame mShownFrame{mDisplay};
    LxRegisterInterfaceWnd mRegisters;
    FeatureBrowser mFeatureWindow;
    SerialBridges mSerialBridges;
    ViewerConfiguration mConfiguration;
    QString mConfigurationError;
    std::unique_ptr<LxDeviceAdapter> mAdapter;  // of the connected camera
    LxSerialTerminalWnd mTerminal;
    LxCameraBridgeManagerWnd mBridges;
    KeptBridges mKeptBridges{mBridges};
    bool mHasSerialPorts = false;

    Banner *mBanner;
    QStackedWidget *mPages;
    QWidget *mPicture;
    QLabel *mWelcome;
    QPushButton *mFindButton;
    QLabel *mCamera;
    QLabel *mProbe;
    FeatureDock *mFeatureDock;
    CameraSettings *mSettings;
    StreamFigures *mFigures = nullptr;
    RendererChoice *mRenderer = nullptr;
    RecentCameras *mRecent = nullptr;
    QAction *mFindAction = nullptr;
    QAction *mAddressAction = nullptr;
    QAction *mDisconnectAction = nullptr;
    QAction *mLiveAction = nullptr;
    QAction *mOverlayAction = nullptr;
    QAction *mRegistersAction = nullptr;
    QAction *mSerialBridgesAction = nullptr;
    QAction *mFeaturesAction = nullptr;
    QAction *mFeatureWindowAction = nullptr;
    QAction *mTerminalAction = nullptr;
    QAction *mBridgesAction = nullptr;
    QAction *mSnapshotAction = nullptr;
    QList<QAction *> mZoomActions;
    QTimer mStatisticsTimer;
    bool mLinkLost = false;
    bool mLiveWanted = false;  // also while the stream of a lost camera could not be started
    bool mEverConnected = false;
    ExitCode mFailure = ExitCode::OK;  // of the last attempt to connect that failed
};
