#pragma once

#include <gtest/gtest.h>

#include <QtCore/QStandardPaths>
#include <QtCore/QTemporaryDir>
#include <QtGui/QAction>
#include <QtWidgets/QLabel>
#include <QtWidgets/QMessageBox>
#include <memory>

#include "Backends/Simulation/LxSimulation.h"
#include "GuiTest.h"
#include "ViewerWindow.h"

/// A viewer in front of a simulated host with one adapter and one camera.
class Viewer : public testing::Test
{
protected:
    static constexpr const char *Camera = "02:00:00:00:01:01";
    static constexpr const char *Address = "192.168.7.20";

    void SetUp() override
    {
        QStandardPaths::setTestModeEnabled(true);
        LxSimulation::Clear();
        LxSimulation::Enable(true);
        LxSimulatedNetworkAdapter adapter;
        adapter.mName = "eth7";
        adapter.mAddresses = {{"192.168.7.1", "255.255.255.0"}};
        ASSERT_TRUE(LxSimulation::SetNetworkAdapter(adapter).IsOK());
        LxSimulatedDevice camera;
        camera.mUserDefinedName = "Left";
        camera.mMACAddress = Camera;
        camera.mIPAddress = Address;
        camera.mSubnetMask = "255.255.255.0";
        camera.mInterfaces = {"eth7"};
        ASSERT_TRUE(LxSimulation::SetDevice(camera).IsOK());
        Restart();
    }
    void TearDown() override
    {
        mWindow.reset();
        LxSimulation::Clear();
        LxSimulation::Disable();
    }

    /// Ends the viewer, if there is one, and starts it anew.
    void Restart()
    {
        mWindow.reset();
        mWindow = std::make_unique<ViewerWindow>(mFolder.filePath("viewer.xml"));
        mWindow->show();
    }
    void ConnectLive()
    {
        mWindow->Connect(Address);
        ASSERT_TRUE(WaitForGui([&] { return mWindow->Session().Statistics().mDelivered > 2; }));
    }
    QString Status(const char *aName) const { return mWindow->findChild<QLabel *>(aName)->text(); }
    QAction *Action(const char *aName) const { return mWindow->findChild<QAction *>(aName); }

    /// Waits for the viewer's failure box, closes it and gives its texts.
    void ExpectFailure(const QString &aAddress, QString &aHeadline, QString &aAdvice)
    {
        bool shown = false;
        OnNextModal([&](QWidget *aWidget) {
            auto *box = qobject_cast<QMessageBox *>(aWidget);
            ASSERT_NE(box, nullptr);
            aHeadline = box->text();
            aAdvice = box->informativeText();
            shown = true;
            box->reject();
        });
        mWindow->Connect(aAddress);
        EXPECT_TRUE(WaitForGui([&] { return shown; }));
    }

    const QTemporaryDir mFolder;
    std::unique_ptr<ViewerWindow> mWindow;
};
