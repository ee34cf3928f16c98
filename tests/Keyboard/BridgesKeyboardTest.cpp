// The managers of camera bridges and of serial bridges with nothing but a keyboard.

#include <QtWidgets/QDialogButtonBox>

#include "AccessibilityWalk.h"
#include "CameraBridgeManager/CameraBridgeManagerFixture.h"
#include "Keyboard.h"
#include "LxGenICam/LxGenParameterArrayCL.h"
#include "SerialBridgeManager/BridgeManagerFixture.h"

// Camera bridges

using CameraBridgeKeyboard = CameraBridgeManagerFixture;

TEST_F(CameraBridgeKeyboard, IsAccessible)
{
    mWnd->ShowKCF();
    Open();
    EXPECT_EQ(Keyboard::Focus()->objectName(), "PortCombo");
    ExpectAccessible(mWnd->GetQWidget());
    ConnectGenCP();
    ExpectAccessible(mWnd->GetQWidget());
    ConnectCLP();
    ExpectAccessible(mWnd->GetQWidget());
}

TEST_F(CameraBridgeKeyboard, ConnectsByGenCP)
{
    Open();
    ASSERT_TRUE(Keyboard::TabTo("NoneRadio"));
    Keyboard::Press(Qt::Key_Down, {}, 2);  // the camera file is not offered
    EXPECT_EQ(Keyboard::Focus()->objectName(), "GenCPRadio");
    ASSERT_TRUE(Keyboard::TabTo("GenCPConnectButton"));
    Keyboard::Press(Qt::Key_Return);
    EXPECT_TRUE(mWnd->GetBridge(0)->IsConnected());
    ASSERT_TRUE(Keyboard::TabTo("FeatureTree"));
    Keyboard::Press(Qt::Key_Down, {}, 2);
    EXPECT_TRUE(Find<QTreeView>("FeatureTree")->currentIndex().isValid());
    ASSERT_TRUE(Keyboard::TabTo("ResetButton"));
    Keyboard::Press(Qt::Key_Space);
}

TEST_F(CameraBridgeKeyboard, ConnectsByTheCLProtocol)
{
    Open();
    Keyboard::Press(Qt::Key_Down);  // to the next port
    EXPECT_EQ(Combo("PortCombo")->currentText(), "Serial1");
    ASSERT_TRUE(Keyboard::TabTo("NoneRadio"));
    Keyboard::Press(Qt::Key_Down);
    ASSERT_TRUE(Keyboard::TabTo("CLPProbeButton"));
    Keyboard::Press(Qt::Key_Return);
    ASSERT_TRUE(Keyboard::TabTo("CLPConnectButton"));
    Keyboard::Press(Qt::Key_Space);
    EXPECT_TRUE(mWnd->GetBridge(1)->IsConnected());
}

TEST_F(CameraBridgeKeyboard, ConnectsByACameraFile)
{
    mWnd->ShowKCF();
    Open();
    Keyboard::Press(Qt::Key_Down);
    ASSERT_TRUE(Keyboard::TabTo("NoneRadio"));
    Keyboard::Press(Qt::Key_Down);
    ASSERT_TRUE(Keyboard::TabTo("KCFPathEdit"));
    Keyboard::Type(SampleFile);
    ASSERT_TRUE(Keyboard::TabTo("KCFLoadButton"));
    Keyboard::Press(Qt::Key_Return);
    EXPECT_TRUE(mWnd->GetBridge(1)->IsConnected());
    ASSERT_TRUE(Keyboard::TabTo("SyncCheck"));
    const bool before = mWnd->GetBridge(1)->GetParametersSyncEnabled();
    Keyboard::Press(Qt::Key_Space);
    EXPECT_NE(mWnd->GetBridge(1)->GetParametersSyncEnabled(), before);
}

// Serial bridges

using SerialBridgeKeyboard = BridgeManagerFixture;

TEST_F(SerialBridgeKeyboard, IsAccessible)
{
    Show();
    EXPECT_EQ(Keyboard::Focus()->objectName(), "PortSelectionCombo");
    ExpectAccessible(mWnd->GetQWidget());
    Press("COMPortRadio");
    SelectCOMPort("COM3");
    ExpectAccessible(mWnd->GetQWidget());
    Press("CameraLinkRadio");
    ExpectAccessible(mWnd->GetQWidget());
}

TEST_F(SerialBridgeKeyboard, LinksACOMPortAndConfiguresIt)
{
    Show();
    ASSERT_TRUE(Keyboard::TabTo("InactiveRadio"));
    Keyboard::Press(Qt::Key_Down);
    EXPECT_TRUE(IsChecked("COMPortRadio"));
    LxStringList ids;
    LxGenParameterArrayCL::GetPortIDs(ids);
    EXPECT_EQ(ids.GetSize(), 0u) << "no Camera Link bridge on the way";
    ASSERT_TRUE(Keyboard::TabTo("PortCombo"));
    Keyboard::Press(Qt::Key_Down);
    EXPECT_EQ(Combo("PortCombo")->currentText(), "COM3");
    mTerminal.Write("hello");
    EXPECT_EQ(mTerminal.Read(5), "hello");

    ASSERT_TRUE(Keyboard::TabTo("ConfigureButton"));
    OnNextModal([](QWidget *aDialog) {
        EXPECT_EQ(Keyboard::Focus()->objectName(), "BaudRateCombo");
        ExpectAccessible(aDialog);
        ASSERT_TRUE(Keyboard::TabTo("ParityCombo"));
        Keyboard::Press(Qt::Key_Down);
        Keyboard::Press(Qt::Key_Return);
    });
    Keyboard::Press(Qt::Key_Return);
    EXPECT_EQ(Text("SummaryLabel"), "9600 baud, even parity, 8 bits, 1 stop bit");
    ASSERT_TRUE(Keyboard::TabTo("ResetButton"));
    Keyboard::Press(Qt::Key_Return);
}

TEST_F(SerialBridgeKeyboard, StartsACameraLinkBridgeAndAsksForTheRate)
{
    Show();
    Keyboard::Press(Qt::Key_Down);
    EXPECT_EQ(Combo("PortSelectionCombo")->currentText(), "Serial1");
    ASSERT_TRUE(Keyboard::TabTo("InactiveRadio"));
    OnNextModal([](QWidget *aDialog) {
        EXPECT_EQ(Keyboard::Focus()->objectName(), "BaudRateCombo");
        ExpectAccessible(aDialog);
        Keyboard::Press(Qt::Key_Down);
        Keyboard::Press(Qt::Key_Return);
    });
    Keyboard::Press(Qt::Key_Down, {}, 2);
    EXPECT_TRUE(IsChecked("CameraLinkRadio"));
    EXPECT_NE(Text("NameLabel"), "");
}
