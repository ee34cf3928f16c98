// The viewer's serial bridges, with a simulated frame grabber.

#include <QtTest/QTest>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QRadioButton>

#include "LxGenICam/LxGenParameterArrayCL.h"
#include "LxPersistence/LxConfigurationWriter.h"
#include "ViewerTest.h"

namespace
{

class ViewerSerial : public Viewer
{
protected:
    void AddPorts(uint32_t aPorts)
    {
        LxSimulatedDevice grabber;
        ASSERT_TRUE(LxSimulation::GetDevice(Camera, grabber).IsOK());
        grabber.mSerialPorts = aPorts;
        ASSERT_TRUE(LxSimulation::SetDevice(grabber).IsOK());
    }
    /// Writes the options that the next viewer finds.
    void WriteBridges(const std::vector<std::pair<LxString, LxString>> &aProperties)
    {
        LxPropertyList list;
        for (const auto &[name, value] : aProperties) {
            list.Add(LxProperty(name, value));
        }
        LxConfigurationWriter writer;
        ASSERT_TRUE(writer.Store(&list, std::string("SerialBridges ") + Camera).IsOK());
        ASSERT_TRUE(writer.Save(mFolder.filePath("viewer.xml").toStdString()).IsOK());
    }
    static size_t CountOffered()
    {
        LxStringList ids;
        LxGenParameterArrayCL::GetPortIDs(ids);
        return ids.GetSize();
    }
};

}  // namespace

TEST_F(ViewerSerial, BridgesNeedADeviceWithPorts)
{
    EXPECT_FALSE(Action("serialBridgesAction")->isEnabled());
    ConnectLive();
    EXPECT_FALSE(Action("serialBridgesAction")->isEnabled());
    mWindow->Disconnect();
    AddPorts(1);
    ConnectLive();
    EXPECT_TRUE(Action("serialBridgesAction")->isEnabled());
}

TEST_F(ViewerSerial, BridgesComeBackWithTheDevice)
{
    AddPorts(0b11);
    ConnectLive();
    Action("serialBridgesAction")->trigger();
    QWidget *window = mWindow->SerialBridgeManager().GetQWidget();
    EXPECT_TRUE(window->isVisible());
    QTest::mouseClick(window->findChild<QRadioButton *>("CameraLinkRadio"), Qt::LeftButton, {}, {8, 8});
    EXPECT_EQ(CountOffered(), 1u);
    mWindow->Disconnect();
    EXPECT_FALSE(window->isVisible());
    EXPECT_EQ(CountOffered(), 0u);
    ConnectLive();
    EXPECT_EQ(CountOffered(), 1u);
    mWindow->close();
    Restart();
    EXPECT_EQ(CountOffered(), 0u);
    ConnectLive();
    EXPECT_EQ(CountOffered(), 1u);
    // What was switched off stays off.
    Action("serialBridgesAction")->trigger();
    window = mWindow->SerialBridgeManager().GetQWidget();
    QTest::mouseClick(window->findChild<QRadioButton *>("InactiveRadio"), Qt::LeftButton, {}, {8, 8});
    mWindow->close();
    Restart();
    ConnectLive();
    EXPECT_EQ(CountOffered(), 0u);
    EXPECT_EQ(mWindow->findChild<QMessageBox *>(), nullptr) << "there was nothing to say";
}

TEST_F(ViewerSerial, WhatCannotBeRestoredIsToldInOneBox)
{
    AddPorts(0b11);
    WriteBridges({{"Serial0", "COMPort"},
                  {"Serial0Port", "COM4711"},
                  {"Serial1", "CLDLL"},
                  {"Serial1CLDLLBaudRate", "quick"},
                  {"Bulk3", "CLDLL"}});
    Restart();
    mWindow->Connect(Address);
    ASSERT_TRUE(WaitForGui([&] { return mWindow->findChild<QMessageBox *>("bridgeMessages") != nullptr; }));
    auto *box = mWindow->findChild<QMessageBox *>("bridgeMessages");
    EXPECT_TRUE(box->isVisible());
    EXPECT_EQ(box->text(), "Not all bridges of the last time could be restored.");
    EXPECT_EQ(box->informativeText(),
              "Serial bridge on Serial0: Unable to open serial port COM4711: NOT_FOUND, There is no COM port "
              "\"COM4711\".\n\n"
              "Serial bridge on Serial1: Unable to parse Camera Link DLL hard-coded baud rate.\n\n"
              "Serial bridge manager: Port Bulk3 found in persistence file, not supported by device.");
    EXPECT_EQ(CountOffered(), 1u) << "one that failed does not stop another";
    const QByteArray folder = qgetenv("LXGUI_SCREENSHOTS");
    if (!folder.isEmpty()) {
        box->grab().save(QString::fromLocal8Bit(folder) + "/bridge-messages.png");
    }
    QTest::keyClick(box, Qt::Key_Return);
    EXPECT_TRUE(WaitForGui([&] { return mWindow->findChild<QMessageBox *>("bridgeMessages") == nullptr; }));
    // What could not be restored is not forgotten.
    mWindow->close();
    Restart();
    mWindow->Connect(Address);
    EXPECT_TRUE(WaitForGui([&] { return mWindow->findChild<QMessageBox *>("bridgeMessages") != nullptr; }));
}
