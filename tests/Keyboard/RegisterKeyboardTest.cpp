// The register interface with nothing but a keyboard.

#include <gtest/gtest.h>

#include <QtWidgets/QLineEdit>

#include "AccessibilityWalk.h"
#include "Backends/Simulation/SimulationTest.h"
#include "GuiTest.h"
#include "Keyboard.h"
#include "LxDevice/LxDeviceGEV.h"
#include "LxGUI/LxRegisterInterfaceWnd.h"

namespace
{

class RegisterKeyboard : public SimulationTest
{
protected:
    void SetUp() override
    {
        mDevice = ConnectCamera();
        ASSERT_NE(mDevice, nullptr);
        mWnd.SetDevice(dynamic_cast<LxDeviceGEV *>(mDevice.get()));
        ASSERT_TRUE(mWnd.ShowModeless().IsOK());
        EXPECT_EQ(Keyboard::Focus()->objectName(), "ReadAddressEdit");
    }
    void TearDown() override { mWnd.Close(); }
    QString Text(const char *aName) { return mWnd.GetQWidget()->findChild<QLineEdit *>(aName)->text(); }
    uint32_t Register(int64_t aAddress)
    {
        uint32_t value = 0;
        EXPECT_TRUE(dynamic_cast<LxDeviceGEV *>(mDevice.get())->ReadRegister(aAddress, value).IsOK());
        return value;
    }

    // Of GigE Vision: the version, and the heartbeat time-out, which can be written.
    static constexpr int64_t Version = 0x0000;
    static constexpr int64_t Heartbeat = 0x0938;

    std::unique_ptr<LxDevice> mDevice;
    LxRegisterInterfaceWnd mWnd;
};

}  // namespace

TEST_F(RegisterKeyboard, IsAccessible)
{
    ExpectAccessible(mWnd.GetQWidget());
}

TEST_F(RegisterKeyboard, ReadsByItsButton)
{
    const QString version = QString("%1").arg(Register(Version), 8, 16, QLatin1Char('0')).toUpper();
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return}) {
        ASSERT_TRUE(Keyboard::TabTo("ReadAddressEdit"));
        Keyboard::Replace("0x0");
        ASSERT_TRUE(Keyboard::TabTo("ReadButton"));
        Keyboard::Press(key);
        EXPECT_EQ(Text("ReadValueEdit"), version);
        Keyboard::Press(Qt::Key_Backtab, Qt::ShiftModifier);
        Keyboard::Replace("1");  // off the grid of registers
        Keyboard::Press(Qt::Key_Tab);
        Keyboard::Press(Qt::Key_Space);
        EXPECT_EQ(Text("ReadValueEdit"), "");
    }
}

TEST_F(RegisterKeyboard, EnterInAFieldDoesWhatItsGroupDoes)
{
    Keyboard::Replace("938");
    Keyboard::Press(Qt::Key_Return);
    EXPECT_NE(Text("ReadResultEdit"), "");
    EXPECT_EQ(Text("WriteResultEdit"), "");
    const QString read = Text("ReadValueEdit");
    ASSERT_TRUE(Keyboard::TabTo("WriteAddressEdit"));
    Keyboard::Replace("938");
    Keyboard::Press(Qt::Key_Tab);
    Keyboard::Replace("1388");
    Keyboard::Press(Qt::Key_Return);
    EXPECT_NE(Text("WriteResultEdit"), "");
    EXPECT_EQ(Register(Heartbeat), 0x1388u);
    EXPECT_EQ(Text("ReadValueEdit"), read) << "nothing was read anew";
    EXPECT_TRUE(mWnd.IsVisible());
}

TEST_F(RegisterKeyboard, WritesByItsButton)
{
    ASSERT_TRUE(Keyboard::TabTo("WriteAddressEdit"));
    Keyboard::Replace("0x938");
    ASSERT_TRUE(Keyboard::TabTo("WriteValueEdit"));
    Keyboard::Replace("0x1770");
    ASSERT_TRUE(Keyboard::TabTo("WriteButton"));
    Keyboard::Press(Qt::Key_Space);
    EXPECT_EQ(Register(Heartbeat), 0x1770u);
}

TEST_F(RegisterKeyboard, EscapeClosesIt)
{
    Keyboard::Press(Qt::Key_Escape);
    EXPECT_FALSE(mWnd.IsVisible());
}
