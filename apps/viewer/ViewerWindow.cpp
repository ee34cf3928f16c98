#include "ViewerWindow.h"

#include <QtCore/QFileInfo>
#include <QtCore/QSettings>
#include <QtGui/QAction>
#include <QtGui/QCloseEvent>
#include <QtGui/QScreen>
#include <QtWidgets/QApplication>
#include <QtWidgets/QColorDialog>
#include <QtWidgets/QInputDialog>
#include <QtWidgets/QLabel>
#include <QtWidgets/QMenuBar>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QStackedWidget>
#include <QtWidgets/QStatusBar>
#include <QtWidgets/QVBoxLayout>
#include <algorithm>

#include "Banner.h"
#include "CameraSettings.h"
#include "ConnectAdvice.h"
#include "FeatureDock.h"
#include "LxDevice/LxDeviceGEV.h"
#include "PixelProbe.h"
#include "RecentCameras.h"
#include "RendererChoice.h"
#include "Snapshot.h"
#include "StatusLabel.h"
#include "StreamFigures.h"
#include "Texts.h"
#include "ViewerLog.h"

namespace
{

constexpr int FeatureDockWidth = 440;
constexpr int LeastCameraText = 14;  // characters; what is longer gives way

// What the viewer itself keeps in its configuration.
constexpr const char *WindowOptions = "Viewer";
constexpr const char *FeaturesOption = "Features";
constexpr const char *GeometryOption = "Geometry";
constexpr const char *LayoutOption = "Layout";

}  // namespace

ViewerWindow::ViewerWindow(const QString &aConfigurationFile)
    : mSession([this](const std::shared_ptr<const LxBuffer> &aFrame) { mShownFrame.Show(aFrame); }),
      mFeatureWindow("FeatureWindow"),
      mConfiguration(aConfigurationFile),
      mBanner(new Banner(this)),
      mPages(new QStackedWidget(this)),
      mPicture(new QWidget(this)),
      mWelcome(new QLabel(this)),
      mFindButton(new QPushButton(tr("Fin&d Camera..."), this)),
      mCamera(new StatusLabel(this)),
      mProbe(new StatusLabel(this)),
      mFeatureDock(new FeatureDock(this)),
      mSettings(new CameraSettings(mSession, mConfiguration,
                                   QFileInfo(aConfigurationFile).path() + QStringLiteral("/cameras"), *this))
{
    setObjectName(QStringLiteral("viewer"));
    resize(1200, 800);

    auto *welcomePage = new QWidget(this);
    mFindButton->setObjectName(QStringLiteral("findButton"));
    connect(mFindButton, &QPushButton::clicked, this, &ViewerWindow::FindCamera);
    mWelcome->setAlignment(Qt::AlignCenter);
    auto *welcomeLayout = new QVBoxLayout(welcomePage);
    welcomeLayout->addStretch();
    welcomeLayout->addWidget(mWelcome);
    welcomeLayout->addSpacing(12);
    welcomeLayout->addWidget(mFindButton, 0, Qt::AlignCenter);
    welcomeLayout->addStretch();

    mPages->addWidget(welcomePage);
    mPages->addWidget(mPicture);
    auto *central = new QWidget(this);
    auto *layout = new QVBoxLayout(central);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(mBanner);
    layout->addWidget(mPages, 1);
    setCentralWidget(central);
    mPicture->setObjectName(QStringLiteral("picture"));
    new PixelProbe(mDisplay, mShownFrame, *mPicture, *mProbe);
    mDisplay.Create(mPicture);
    mPicture->hide();  // Create() shows it, but its page comes up with a camera only

    MakeActions();
    MakeStatusBar();
    MakeFeatures();
    connect(&mSession, &CameraSession::Connected, this, &ViewerWindow::OnConnected);
    connect(&mSession, &CameraSession::Failed, this, &ViewerWindow::OnFailed);
    connect(&mSession, &CameraSession::LiveFailed, this, &ViewerWindow::OnLiveFailed);
    connect(&mSession, &CameraSession::GivenUp, this, &ViewerWindow::OnGivenUp);
    connect(&mSession, &CameraSession::LinkLost, this, &ViewerWindow::OnLinkLost);
    connect(&mSession, &CameraSession::LinkBack, this, &ViewerWindow::OnLinkBack);
    connect(&mStatisticsTimer, &QTimer::timeout, this, &ViewerWindow::UpdateStatistics);
    mStatisticsTimer.setInterval(500);

    LoadConfiguration();
    UpdateState();
}

ViewerWindow::~ViewerWindow()
{
    mRegisters.Close();
    mRegisters.SetDevice(nullptr);
    mTerminal.Close();
    mTerminal.SetDevice(nullptr);
    mSerialBridges.SetDevice(nullptr, mConfiguration);
    mBridges.Close();
    mBridges.SetDevice(nullptr);
    mFinder.Close();
    mFeatureWindow.SetDevice(nullptr);
    mFeatureDock->Browser().SetDevice(nullptr);
    mSession.End();
    mDisplay.Close();
}

void ViewerWindow::FitToScreen()
{
    const QSize room = screen()->availableSize() * 15 / 16;  // the rest is for the frames
    resize(size().boundedTo(room));
    int x = -1;
    int y = -1;
    int width = -1;
    int height = -1;
    mFinder.GetPosition(x, y, width, height);
    mFinder.SetPosition(x, y, std::min(width, room.width()), std::min(height, room.height()));
}

void ViewerWindow::MakeActions()
{
    const auto add = [](QMenu *aMenu, const QString &aText, const QKeySequence &aKeys, const char *aName) {
        QAction *action = aMenu->addAction(aText);
        action->setShortcut(aKeys);
        action->setObjectName(QLatin1String(aName));
        return action;
    };

    QMenu *file = menuBar()->addMenu(tr("&File"));
    mSnapshotAction = add(file, tr("&Save Snapshot..."), QKeySequence::Save, "snapshotAction");
    connect(mSnapshotAction, &QAction::triggered, this, &ViewerWindow::SaveSnapshot);
    file->addSeparator();
    QMenu *camera = menuBar()->addMenu(tr("&Camera"));
    camera->setToolTipsVisible(true);
    mSettings->AddActions(*file, *camera);
    QAction *const keep = camera->actions().constLast();
    file->addSeparator();
    connect(add(file, tr("&Quit"), QKeySequence(tr("Ctrl+Q")), "quitAction"), &QAction::triggered, this,
            &QWidget::close);

    mFindAction = add(camera, tr("&Find Camera..."), QKeySequence(tr("Ctrl+F")), "findAction");
    connect(mFindAction, &QAction::triggered, this, &ViewerWindow::FindCamera);
    mAddressAction = add(camera, tr("Connect to &Address..."), QKeySequence(tr("Ctrl+L")), "addressAction");
    connect(mAddressAction, &QAction::triggered, this, &ViewerWindow::ConnectToAddress);
    mRecent = new RecentCameras(*camera, this);
    connect(mRecent, &RecentCameras::Chosen, this, &ViewerWindow::ConnectAgain);
    mDisconnectAction = add(camera, tr("&Disconnect"), QKeySequence(tr("Ctrl+D")), "disconnectAction");
    connect(mDisconnectAction, &QAction::triggered, this, &ViewerWindow::Disconnect);
    camera->addSeparator();
    mLiveAction = add(camera, tr("&Live"), QKeySequence(Qt::Key_F5), "liveAction");
    mLiveAction->setCheckable(true);
    camera->addAction(keep);  // moves it to the end
    connect(mLiveAction, &QAction::triggered, this, &ViewerWindow::ToggleLive);

    QMenu *view = menuBar()->addMenu(tr("&View"));
    view->setToolTipsVisible(true);
    const auto addZoom = [&](const QString &aText, const QKeySequence &aKeys, const char *aName,
                             void (LxDisplayWnd::*aZoom)()) {
        QAction *action = add(view, aText, aKeys, aName);
        connect(action, &QAction::triggered, this, [this, aZoom] { (mDisplay.*aZoom)(); });
        mZoomActions << action;
    };
    addZoom(tr("Zoom &1:1"), QKeySequence(tr("Ctrl+1")), "zoomOneToOneAction", &LxDisplayWnd::Zoom1To1);
    addZoom(tr("Zoom &Fit"), QKeySequence(tr("Ctrl+0")), "zoomFitAction", &LxDisplayWnd::ZoomFit);
    addZoom(tr("Zoom &In"), QKeySequence::ZoomIn, "zoomInAction", &LxDisplayWnd::ZoomIn);
    addZoom(tr("Zoom &Out"), QKeySequence::ZoomOut, "zoomOutAction", &LxDisplayWnd::ZoomOut);
    view->addSeparator();
    mOverlayAction = add(view, tr("Show &Camera Name in the Picture"), QKeySequence(tr("Ctrl+T")), "overlayAction");
    mOverlayAction->setCheckable(true);
    connect(mOverlayAction, &QAction::toggled, this, &ViewerWindow::UpdateOverlay);
    connect(add(view, tr("&Background Colour..."), QKeySequence(tr("Ctrl+B")), "backgroundAction"), &QAction::triggered,
            this, &ViewerWindow::ChooseBackground);
    mRenderer = new RendererChoice(mDisplay, *view, *statusBar(), this);
    connect(mRenderer, &RendererChoice::Changed, this, [this] {
        UpdateZoomActions();
        UpdateOverlay();  // a display forgets its text when it changes the renderer
    });
    view->addSeparator();
    mRegistersAction = add(view, tr("&Registers..."), QKeySequence(tr("Ctrl+R")), "registersAction");
    connect(mRegistersAction, &QAction::triggered, this, &ViewerWindow::ShowRegisters);
    mSerialBridgesAction = add(view, tr("Serial Brid&ges..."), QKeySequence(tr("Ctrl+G")), "serialBridgesAction");
    connect(mSerialBridgesAction, &QAction::triggered, this, [this] { mSerialBridges.Show(this); });
    mFeaturesAction = add(view, tr("F&eatures"), QKeySequence(tr("Ctrl+E")), "featuresAction");
    mFeaturesAction->setCheckable(true);
    mFeaturesAction->setChecked(true);
    mFeatureWindowAction =
        add(view, tr("Features in a &Window..."), QKeySequence(tr("Ctrl+Shift+E")), "featureWindowAction");
    connect(mFeatureWindowAction, &QAction::triggered, this, &ViewerWindow::ShowFeatureWindow);
    mTerminalAction = add(view, tr("&Serial Terminal..."), QKeySequence(tr("Ctrl+Shift+T")), "terminalAction");
    connect(mTerminalAction, &QAction::triggered, this, &ViewerWindow::ShowTerminal);
    mBridgesAction = add(view, tr("Camera Bri&dges..."), QKeySequence(tr("Ctrl+Shift+B")), "bridgesAction");
    connect(mBridgesAction, &QAction::triggered, this, &ViewerWindow::ShowBridges);

    QMenu *help = menuBar()->addMenu(tr("&Help"));
    connect(add(help, tr("&About"), QKeySequence::HelpContents, "aboutAction"), &QAction::triggered, this, [this] {
        QMessageBox::about(this, tr("About the viewer"),
                           tr("<b>LxGUI viewer %1</b><p>A camera application on the windows of LxGUI.</p>")
                               .arg(QApplication::applicationVersion()));
    });
}

void ViewerWindow::MakeStatusBar()
{
    mCamera->setObjectName(QStringLiteral("cameraStatus"));
    mCamera->setMinimumWidth(LeastCameraText * mCamera->fontMetrics().averageCharWidth());
    statusBar()->addWidget(mCamera, 2);
    mProbe->setObjectName(QStringLiteral("probeStatus"));
    mProbe->setToolTip(
        tr("The pixel under the mouse: where it is, what the camera sent, what is shown (red, green, "
           "blue)"));
    statusBar()->addWidget(mProbe, 2);
    mFigures = new StreamFigures(*statusBar(), this);
    statusBar()->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);  // the window keeps room for the figures
}

void ViewerWindow::MakeFeatures()
{
    addDockWidget(Qt::RightDockWidgetArea, mFeatureDock);
    resizeDocks({mFeatureDock}, {FeatureDockWidth}, Qt::Horizontal);
    connect(mFeaturesAction, &QAction::toggled, this, &ViewerWindow::UpdateFeatures);
    connect(mFeatureDock, &FeatureDock::Closed, mFeaturesAction, [this] { mFeaturesAction->setChecked(false); });
}

QString ViewerWindow::BannerText() const
{
    return mBanner->Text();
}

void ViewerWindow::FindCamera()
{
    const LxResult result = mFinder.ShowModal(this);
    const LxDeviceInfo *selected = result.IsOK() ? mFinder.GetSelected() : nullptr;
    if (!selected) {
        emit Settled();
        return;
    }
    Disconnect();
    mSession.Connect(selected);
    UpdateState();
}

void ViewerWindow::ConnectToAddress()
{
    bool accepted = false;
    const QString address =
        QInputDialog::getText(this, tr("Connect to Address"), tr("IP address of the camera:"), QLineEdit::Normal,
                              QSettings().value(QStringLiteral("address")).toString(), &accepted)
            .trimmed();
    if (accepted && !address.isEmpty()) {
        QSettings().setValue(QStringLiteral("address"), address);
        Connect(address);
    }
}

void ViewerWindow::Connect(const QString &aAddress)
{
    Disconnect();
    mSession.ConnectAddress(aAddress);
    UpdateState();
}

void ViewerWindow::ConnectAgain(const CameraIdentity &aCamera)
{
    Disconnect();
    mSession.ConnectAgain(aCamera);
    UpdateState();
}

void ViewerWindow::Disconnect()
{
    mRegisters.Close();
    mRegisters.SetDevice(nullptr);
    mSettings->OnDisconnecting(mLinkLost);
    mSerialBridges.Close();
    mSerialBridges.Save(mConfiguration);
    mSerialBridges.SetDevice(nullptr, mConfiguration);
    mFeatureWindow.Close();
    mFeatureWindow.SetDevice(nullptr);
    mFeatureDock->Browser().SetDevice(nullptr);
    mTerminal.Close();
    mTerminal.SetDevice(nullptr);
    mHasSerialPorts = false;
    KeepBridges();
    mBridges.Close();
    mBridges.SetDevice(nullptr);
    mAdapter.reset();
    mSession.Disconnect();
    mShownFrame.Clear();
    mLinkLost = false;
    mBanner->Clear();
    UpdateState();
    UpdateFeatures();
}

void ViewerWindow::OnConnected()
{
    mEverConnected = true;
    mRecent->Add(mSession.Camera());
    mRegisters.SetDevice(dynamic_cast<LxDeviceGEV *>(mSession.Device()));
    mAdapter = std::make_unique<LxDeviceAdapter>(mSession.Device());
    mHasSerialPorts = mTerminal.SetDevice(mAdapter.get()).IsOK();
    QStringList messages = mSerialBridges.SetDevice(mAdapter.get(), mConfiguration);
    mBridges.SetDevice(mSession.Device());
    messages += mKeptBridges.Restore(mAdapter->GetUniqueID(), mConfiguration);
    ShowBridgeMessages(this, messages);
    mSettings->OnConnected();
    mLiveAction->setChecked(true);
    ToggleLive(true);
    mPicture->setFocus();
    UpdateFeatures();
    mFeatureWindow.SetDevice(mSession.Device(), mSession.CameraName());
    emit Settled();
}

void ViewerWindow::OnFailed(const LxResult &aResult)
{
    mFailure = FailureOf(aResult);
    UpdateState();
    const ConnectAdvice advice = AdviseOnConnect(aResult, mSession.CameraName());
    QMessageBox box(QMessageBox::Warning, tr("No connection"), advice.mHeadline, QMessageBox::Close, this);
    box.setInformativeText(advice.mWhatToDo);
    box.setDetailedText(advice.mDetails);
    QPushButton *find = box.addButton(tr("&Find Camera..."), QMessageBox::AcceptRole);
    box.setDefaultButton(find);
    box.exec();
    emit Settled();
    if (box.clickedButton() == find) {
        FindCamera();
    }
}

void ViewerWindow::ToggleLive(bool aLive)
{
    mLiveWanted = aLive;
    if (!aLive) {
        mSession.StopLive();
        UpdateState();
        return;
    }
    UpdateOverlay();
    mShownFrame.ResetCounts();
    mSession.StartLive();
    UpdateState();
}

void ViewerWindow::OnLiveFailed(const LxResult &aResult)
{
    if (mLinkLost) {
        UpdateState();
        return;  // tried again when the camera is back
    }
    const ConnectAdvice advice = AdviseOnStream(aResult, mSession.CameraName());
    mBanner->Say(advice.mHeadline + QLatin1Char(' ') + advice.mWhatToDo);
    UpdateState();
}

void ViewerWindow::OnGivenUp()
{
    if (!mSession.IsConnected()) {
        mShownFrame.Clear();  // a last picture may have come on its way
    }
    UpdateState();
}

void ViewerWindow::OnLinkLost()
{
    if (!mSession.IsConnected()) {
        return;  // given up since
    }
    mLinkLost = true;
    mBanner->Say(tr("%1 no longer answers. Check its cable and its power; the picture goes on by itself when it is "
                    "back.")
                     .arg(mSession.CameraName()));
    mFeatureDock->Browser().OnLinkLost();
    mFeatureWindow.OnLinkLost();
    UpdateState();
}

void ViewerWindow::OnLinkBack()
{
    if (!mSession.IsConnected()) {
        return;
    }
    mLinkLost = false;
    mBanner->Clear();
    if (mLiveWanted) {
        mSession.StartLive();
    }
    UpdateState();
    UpdateFeatures();
    mFeatureDock->Browser().OnLinkBack();
    mFeatureWindow.OnLinkBack();
}

void ViewerWindow::ShowRegisters()
{
    mRegisters.ShowModeless(this);
}

void ViewerWindow::ShowFeatureWindow()
{
    mFeatureWindow.ShowAsWindow(this);
}

// The dock is there while a camera is, and reads it only while it is there.
void ViewerWindow::UpdateFeatures()
{
    const bool show = mSession.IsConnected() && mFeaturesAction->isChecked();
    if (show) {
        mFeatureDock->Fill();
    }
    mFeatureDock->setVisible(show);
    if (!mLinkLost) {  // what was read last cannot be read again now
        mFeatureDock->Browser().SetDevice(show ? mSession.Device() : nullptr, mSession.CameraName());
    }
}

void ViewerWindow::LoadConfiguration()
{
    mConfigurationError = mConfiguration.Load();
    mFeatureDock->Browser().Load(mConfiguration);
    mFeatureWindow.Load(mConfiguration);
    LxPropertyList list = mConfiguration.Get(WindowOptions);
    if (const LxProperty *geometry = list.GetProperty(GeometryOption)) {
        restoreGeometry(QByteArray::fromBase64(geometry->GetValue().GetAscii()));
    }
    if (const LxProperty *layout = list.GetProperty(LayoutOption)) {
        restoreState(QByteArray::fromBase64(layout->GetValue().GetAscii()));
    }
    const LxProperty *features = list.GetProperty(FeaturesOption);
    mFeaturesAction->setChecked(!features || features->GetValue() != "Hidden");
    UpdateFeatures();
}

void ViewerWindow::KeepBridges()
{
    if (mAdapter) {
        mKeptBridges.Keep(mAdapter->GetUniqueID(), mConfiguration);
    }
}

void ViewerWindow::SaveConfiguration()
{
    mSerialBridges.Save(mConfiguration);
    mFeatureDock->Browser().Save(mConfiguration);
    mFeatureWindow.Save(mConfiguration);
    KeepBridges();
    LxPropertyList list;
    list.Add(LxProperty(FeaturesOption, mFeaturesAction->isChecked() ? "Shown" : "Hidden"));
    list.Add(LxProperty(GeometryOption, saveGeometry().toBase64().constData()));
    list.Add(LxProperty(LayoutOption, saveState().toBase64().constData()));
    mConfiguration.Set(WindowOptions, list);
    if (const QString error = mConfiguration.Save(); !error.isEmpty()) {
        QMessageBox::warning(this, tr("Options not saved"), error);
    }
}

void ViewerWindow::ShowBridges()
{
    mBridges.ShowModeless(this);
}

void ViewerWindow::SaveSnapshot()
{
    const Snapshot snapshot(mShownFrame);
    if (snapshot.IsEmpty()) {
        QMessageBox::warning(this, tr("Snapshot not saved"),
                             tr("There is no picture that could be saved. Wait for the next one and try again."));
        return;
    }
    snapshot.Save(this);
}

// By OpenGL the whole picture is always fitted into the window.
void ViewerWindow::UpdateZoomActions()
{
    const bool openGL = mDisplay.GetRendererMode() == LxRendererModeOpenGL;
    for (QAction *action : mZoomActions) {
        action->setEnabled(mSession.IsConnected() && !openGL);
        action->setToolTip(openGL ? tr("Drawn by OpenGL the picture always fits the window. To zoom, choose View > "
                                       "Renderer > Software.")
                                  : QString());
    }
}

void ViewerWindow::UpdateOverlay()
{
    mDisplay.SetTextOverlay(mOverlayAction->isChecked() ? ToLxString(mSession.CameraName()) : LxString());
}

void ViewerWindow::ShowTerminal()
{
    mTerminal.ShowModeless(this);
}

void ViewerWindow::ChooseBackground()
{
    unsigned char red = 0;
    unsigned char green = 0;
    unsigned char blue = 0;
    mDisplay.GetBackgroundColor(red, green, blue);
    const QColor color = QColorDialog::getColor(QColor(red, green, blue), this, tr("Background Colour"));
    if (color.isValid()) {
        mDisplay.SetBackgroundColor(static_cast<unsigned char>(color.red()), static_cast<unsigned char>(color.green()),
                                    static_cast<unsigned char>(color.blue()));
    }
}

void ViewerWindow::UpdateState()
{
    const bool connected = mSession.IsConnected();
    const bool connecting = mSession.IsConnecting();
    // an attempt that was given up still uses what the finder found
    const bool attempting = mSession.IsAttempting();
    mFindAction->setEnabled(!attempting);
    mAddressAction->setEnabled(!attempting);
    mFindButton->setEnabled(!attempting);
    mRecent->SetEnabled(!attempting);
    mDisconnectAction->setEnabled(connected || connecting);
    mLiveAction->setEnabled(connected && !mLinkLost);
    mLiveAction->setChecked(mSession.IsLive());
    mRegistersAction->setEnabled(connected && dynamic_cast<LxDeviceGEV *>(mSession.Device()));
    mTerminalAction->setEnabled(connected && mHasSerialPorts);
    mSerialBridgesAction->setEnabled(connected && mSerialBridges.HasPorts());
    mBridgesAction->setEnabled(connected && mBridges.GetBridgeCount() > 0);
    UpdateZoomActions();
    mSettings->UpdateActions(mLinkLost);
    mFeatureWindowAction->setEnabled(connected);
    mPages->setCurrentIndex(connected ? 1 : 0);
    mWelcome->setText(connecting ? tr("Connecting to %1...").arg(mSession.CameraName())
                                 : tr("No camera is connected."));
    setWindowTitle(connected ? tr("%1 - LxGUI viewer").arg(mSession.CameraName()) : tr("LxGUI viewer"));
    if (connecting) {
        mCamera->setText(tr("Connecting to %1...").arg(mSession.CameraName()));
    }
    else if (!connected) {
        mCamera->setText(tr("Not connected"));
    }
    else {
        mCamera->setText(mLinkLost           ? tr("%1: no answer").arg(mSession.CameraName())
                         : mSession.IsLive() ? tr("%1: live").arg(mSession.CameraName())
                                             : tr("%1: connected").arg(mSession.CameraName()));
    }
    if (mSession.IsLive()) {
        mStatisticsTimer.start();
    }
    else {
        mStatisticsTimer.stop();
    }
    UpdateStatistics();
}

void ViewerWindow::UpdateStatistics()
{
    LxStreamStatistics statistics = mSession.Statistics();
    statistics.mDropped += mSession.IsLive() ? mShownFrame.DroppedCount() : 0;
    mFigures->Show(statistics, mSession.IsLive() ? mShownFrame.LateCount() : 0);
    mSnapshotAction->setEnabled(mShownFrame.Frame() != nullptr);
}

void ViewerWindow::closeEvent(QCloseEvent *aEvent)
{
    SaveConfiguration();
    hide();  // the user need not look on while a camera that does not answer is given up
    Disconnect();
    QMainWindow::closeEvent(aEvent);
}
