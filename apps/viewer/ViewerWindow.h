#pragma once

#include <QtCore/QTimer>
#include <QtWidgets/QMainWindow>

#include "CameraSession.h"
#include "LxGUI/LxDeviceFinderWnd.h"
#include "LxGUI/LxDisplayWnd.h"
#include "LxGUI/LxRegisterInterfaceWnd.h"

class Banner;
class QAction;
class QLabel;
class QPushButton;
class QStackedWidget;

/// The viewer's main window: finds a camera, shows its live picture and opens the other windows on it.
class ViewerWindow : public QMainWindow
{
    Q_OBJECT

public:
    ViewerWindow();
    ~ViewerWindow() override;

    LxDeviceFinderWnd &Finder() { return mFinder; }
    LxDisplayWnd &Display() { return mDisplay; }
    LxRegisterInterfaceWnd &Registers() { return mRegisters; }
    CameraSession &Session() { return mSession; }
    QString BannerText() const;

public slots:
    /// Lets the user choose a camera and connects to it. Not while a connection attempt runs: it works on what the
    /// finder found last.
    void FindCamera();
    void ConnectToAddress();
    void Connect(const QString &aAddress);
    void Disconnect();
    void ToggleLive(bool aLive);
    void ShowRegisters();

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
    void OnLinkLost();
    void OnLinkBack();
    void UpdateState();
    void UpdateStatistics();
    void ChooseBackground();

    CameraSession mSession;
    LxDeviceFinderWnd mFinder;
    LxDisplayWnd mDisplay;
    LxRegisterInterfaceWnd mRegisters;

    Banner *mBanner;
    QStackedWidget *mPages;
    QWidget *mPicture;
    QLabel *mWelcome;
    QPushButton *mFindButton;
    QLabel *mCamera;
    QLabel *mFrameRate;
    QLabel *mBandwidth;
    QLabel *mLost;
    QLabel *mDropped;
    QAction *mFindAction = nullptr;
    QAction *mAddressAction = nullptr;
    QAction *mDisconnectAction = nullptr;
    QAction *mLiveAction = nullptr;
    QAction *mOverlayAction = nullptr;
    QAction *mRegistersAction = nullptr;
    QList<QAction *> mPictureActions;
    QTimer mStatisticsTimer;
    bool mLinkLost = false;
};
