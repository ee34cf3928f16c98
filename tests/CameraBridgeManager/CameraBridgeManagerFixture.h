#pragma once

#include <gtest/gtest.h>

#include <QtCore/QDir>
#include <QtCore/QSettings>
#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QRadioButton>
#include <QtWidgets/QTreeView>
#include <memory>

#include "GuiTest.h"
#include "LxCameraBridge/LxCameraBridge.h"
#include "LxGUI/LxCameraBridgeManagerWnd.h"
#include "LxPersistence/LxConfigurationReader.h"
#include "LxPersistence/LxConfigurationWriter.h"
#include "LxSimulation/LxSimulatedGenCPCamera.h"
#include "LxSimulation/LxSimulatedTextCamera.h"
#include "SimulatedGrabber.h"

/// A camera file for the text camera.
constexpr const char *SampleFile = LXGUI_SOURCE_DIR "/docs/text-camera.yml";

/// Settings of their own, in a folder that goes with the test.
class OwnSettings
{
public:
    OwnSettings() { QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, mFolder.path()); }
    static void Write(bool aShown)
    {
        QSettings settings("Kelvra Technologies Inc", "CorvoPlayerClassic");
        settings.setValue("KelvraCameraFiles", aShown);
    }
    QString Path() const { return mFolder.path(); }

private:
    QTemporaryDir mFolder;
};

/// The window over a simulated frame grabber; behind Serial0 Plug() puts a GenCP camera, behind Serial1 a text camera.
class CameraBridgeManagerFixture : public testing::Test
{
protected:
    explicit CameraBridgeManagerFixture(uint32_t aPorts = 0b11)
        : CameraBridgeManagerFixture(SimulatedGrabber::MakeValues(aPorts))
    {
    }
    explicit CameraBridgeManagerFixture(const LxSimulatedDevice &aValues) : mGrabber(aValues) {}
    ~CameraBridgeManagerFixture() override { mWnd.reset(); }

    void Plug(const LxSimulatedGenCPValues &aValues = {})
    {
        mGenCP = std::make_shared<LxSimulatedGenCPCamera>(aValues);
        SimulatedGrabber::SetPeer(LxDeviceSerial::Serial0, mGenCP);
        SimulatedGrabber::SetPeer(LxDeviceSerial::Serial1, std::make_shared<LxSimulatedTextCamera>());
    }
    void Open()
    {
        Plug();
        mWnd->SetDevice(mGrabber.GetDevice());
        mWnd->ShowModeless();
        ASSERT_TRUE(WaitForGui([&] { return mWnd->IsVisible(); }));
    }
    template <class Widget>
    Widget *Find(const char *aName)
    {
        auto *widget = mWnd->GetQWidget()->findChild<Widget *>(aName);
        EXPECT_NE(widget, nullptr) << aName;
        return widget;
    }
    QComboBox *Combo(const char *aName) { return Find<QComboBox>(aName); }
    QString Label(const char *aName) { return Find<QLabel>(aName)->text(); }
    bool IsEnabled(const char *aName) { return Find<QWidget>(aName)->isEnabled(); }
    void Click(const char *aName)
    {
        auto *button = Find<QAbstractButton>(aName);
        ASSERT_TRUE(button->isEnabled()) << aName;
        ASSERT_TRUE(button->isVisible()) << aName;
        QTest::mouseClick(button, Qt::LeftButton, {}, QPoint(8, button->height() / 2));
    }
    void SelectPort(int aIndex) { Combo("PortCombo")->setCurrentIndex(aIndex); }
    void ConnectGenCP()
    {
        SelectPort(0);
        Click("GenCPRadio");
        Click("GenCPConnectButton");
        ASSERT_TRUE(mWnd->GetBridge(0)->IsConnected());
    }
    void ConnectCLP()
    {
        SelectPort(1);
        Click("CLPRadio");
        Click("CLPProbeButton");
        Click("CLPConnectButton");
        ASSERT_TRUE(mWnd->GetBridge(1)->IsConnected());
    }
    void LoadFile(int aPort = 1)
    {
        SelectPort(aPort);
        mWnd->ShowKCF();
        Click("KCFRadio");
        Find<QLineEdit>("KCFPathEdit")->setText(SampleFile);
        Click("KCFLoadButton");
        ASSERT_TRUE(mWnd->GetBridge(aPort)->IsConnected());
    }
    /// What the window saves now, to be loaded again.
    void SaveTo(LxConfigurationReader &aReader)
    {
        LxConfigurationWriter writer;
        EXPECT_TRUE(mWnd->Save(writer).IsOK());
        EXPECT_TRUE(aReader.LoadFromString(writer.SaveToString()).IsOK());
    }
    LxResult Load(LxConfigurationReader &aReader) { return mWnd->Load(aReader, mErrors); }
    int BrowserRows()
    {
        for (const QTreeView *view : mWnd->GetQWidget()->findChildren<QTreeView *>()) {
            if (view->model() && view->model()->rowCount() > 0) {
                return view->model()->rowCount();
            }
        }
        return 0;
    }

    OwnSettings mSettings;
    SimulatedGrabber mGrabber;
    std::shared_ptr<LxSimulatedGenCPCamera> mGenCP;
    LxStringList mErrors;  // of Load()
    std::unique_ptr<LxCameraBridgeManagerWnd> mWnd = std::make_unique<LxCameraBridgeManagerWnd>();
};
