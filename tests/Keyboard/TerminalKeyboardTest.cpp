// The serial terminal with nothing but a keyboard.

#include <QtCore/QTemporaryFile>
#include <QtGui/QClipboard>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QScrollBar>

#include "AccessibilityWalk.h"
#include "Keyboard.h"
#include "SerialTerminal/TerminalTest.h"

namespace
{

class TerminalKeyboard : public TerminalTest
{
protected:
    void SetUp() override
    {
        TerminalTest::SetUp();
        ASSERT_TRUE(mFile.open());
        ASSERT_EQ(mFile.write("content"), 7);
        mFile.flush();
        EXPECT_EQ(Keyboard::Focus()->objectName(), "DataEdit") << "one begins to type";
    }

    QTemporaryFile mFile;
};

}  // namespace

TEST_F(TerminalKeyboard, IsAccessible)
{
    ExpectAccessible(mWnd.GetQWidget());
}

TEST_F(TerminalKeyboard, SendsBytes)
{
    Keyboard::Type("one");
    Keyboard::Press(Qt::Key_Return);
    EXPECT_EQ(Port().Written(), "one");
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return}) {
        ASSERT_TRUE(Keyboard::TabTo("DataEdit"));
        Keyboard::Replace("two");
        ASSERT_TRUE(Keyboard::TabTo("SendButton"));
        Keyboard::Press(key);
    }
    EXPECT_EQ(Port().Written(), "onetwotwo");
}

TEST_F(TerminalKeyboard, SendsHexadecimalBytesWithTrailers)
{
    ASSERT_TRUE(Keyboard::TabTo("SendAsAscii"));
    Keyboard::Press(Qt::Key_Right);
    EXPECT_EQ(Keyboard::Focus()->objectName(), "SendAsHexadecimal");
    for (const char *trailer : {"CRCheck", "LFCheck", "NullCheck", "OtherCheck"}) {
        ASSERT_TRUE(Keyboard::TabTo(trailer));
        Keyboard::Press(Qt::Key_Space);
    }
    ASSERT_TRUE(Keyboard::TabTo("OtherEdit"));
    Keyboard::Type("7E");
    ASSERT_TRUE(Keyboard::TabTo("DataEdit"));
    Keyboard::Replace("41 42");
    Keyboard::Press(Qt::Key_Return);
    EXPECT_EQ(Port().Written(), std::string("AB\r\n\0~", 6));
}

TEST_F(TerminalKeyboard, SendsAFile)
{
    ASSERT_TRUE(Keyboard::TabTo("FileEdit"));
    Keyboard::Type(mFile.fileName());
    ASSERT_TRUE(Keyboard::TabTo("SendFileButton"));
    Keyboard::Press(Qt::Key_Return);
    EXPECT_TRUE(WaitForGui([this] { return Port().Written() == "content"; }));
    EXPECT_TRUE(mWnd.WaitUntilSent());
}

TEST_F(TerminalKeyboard, ChoosesAFile)
{
    ASSERT_TRUE(Keyboard::TabTo("BrowseButton"));
    OnNextModal([this](QWidget *aDialog) {
        EXPECT_NE(qobject_cast<QFileDialog *>(aDialog), nullptr);
        Keyboard::Type(mFile.fileName());
        Keyboard::Press(Qt::Key_Return);
    });
    Keyboard::Press(Qt::Key_Space);
    EXPECT_EQ(mWnd.Find<QLineEdit>("FileEdit")->text(), mFile.fileName());
}

TEST_F(TerminalKeyboard, ReadsCopiesAndClearsTheTranscript)
{
    Port().Deliver(std::string(2000, 'x') + "end");
    ASSERT_TRUE(mWnd.ShowsInAll("end"));
    ASSERT_TRUE(Keyboard::TabTo("Transcript"));
    const QScrollBar &bar = *mWnd.View()->verticalScrollBar();
    ASSERT_TRUE(WaitForGui([&] { return bar.maximum() > 0 && bar.value() == bar.maximum(); }));
    Keyboard::Press(Qt::Key_Up);
    EXPECT_LT(bar.value(), bar.maximum());
    Keyboard::Press(Qt::Key_Home);
    EXPECT_EQ(bar.value(), 0);
    Keyboard::Press(Qt::Key_End);
    EXPECT_EQ(bar.value(), bar.maximum());
    Keyboard::Press(Qt::Key_A, Qt::ControlModifier);
    Keyboard::Press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), mWnd.Transcript());
    mWnd.View()->Select(0, 0);
    for (const auto press : {&Keyboard::PressMenuKey, &Keyboard::PressShiftF10}) {
        EXPECT_TRUE(Keyboard::ChooseFromContextMenu(press, "Select All"));
        EXPECT_EQ(mWnd.View()->SelectedText(), mWnd.Transcript());
        mWnd.View()->Select(0, 0);
    }
    ASSERT_TRUE(Keyboard::TabTo("ClearButton"));
    Keyboard::Press(Qt::Key_Return);
    EXPECT_EQ(mWnd.Transcript(), "");
}

TEST_F(TerminalKeyboard, ChangesTheDisplayFormat)
{
    ASSERT_TRUE(Keyboard::TabTo("AsciiFormat"));
    Keyboard::Press(Qt::Key_Right, {}, 2);
    EXPECT_TRUE(mWnd.Find<QRadioButton>("HybridFormat")->isChecked());
    ASSERT_TRUE(Keyboard::TabTo("EchoCheck"));
    Keyboard::Press(Qt::Key_Space);
    ASSERT_TRUE(Keyboard::TabTo("DataEdit"));
    Keyboard::Type("A");
    Keyboard::Press(Qt::Key_Return);
    EXPECT_TRUE(mWnd.ShowsInAll("41 "));
}
