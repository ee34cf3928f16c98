// The feature browser with nothing but a keyboard: every kind of feature of a simulated camera.

#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>

#include "AccessibilityWalk.h"
#include "Backends/Simulation/SimulationTest.h"
#include "GenBrowser/BrowserTest.h"
#include "Keyboard.h"
#include "LxGenICam/LxGenFloat.h"
#include "LxGenICam/LxGenParameterArray.h"
#include "LxPersistence/LxPropertyList.h"

namespace
{

class BrowserKeyboard : public SimulationTest
{
protected:
    void SetUp() override
    {
        mDevice = ConnectCamera();
        ASSERT_NE(mDevice, nullptr);
        LxPropertyList list;
        list.Add(LxProperty("Visibility", "Guru"));
        mBrowser.Load(list);
        mBrowser.SetRefreshMode(LxGenRefreshManual);
        mBrowser.SetGenParameterArray(mDevice->GetParameters());
        mBrowser.SetPosition(-1, -1, 600, 600);
        ASSERT_TRUE(mBrowser.ShowModeless().IsOK());
        EXPECT_EQ(Keyboard::Focus()->objectName(), "OptionsButton");
    }
    void TearDown() override { mBrowser.Close(); }

    QString DeviceText(const char *aName)
    {
        return QString(mDevice->GetParameters()->Get(aName)->ToString().GetAscii());
    }
    int64_t Integer(const char *aName)
    {
        int64_t value = 0;
        EXPECT_TRUE(mDevice->GetParameters()->GetIntegerValue(aName, value).IsOK()) << aName;
        return value;
    }
    /// Searches for a feature and goes to its row.
    void GoTo(const char *aName)
    {
        ASSERT_TRUE(Keyboard::TabTo("SearchBar"));
        Keyboard::Replace(QLatin1String(aName));
        ASSERT_TRUE(Keyboard::TabTo("FeatureTree"));
        ASSERT_EQ(mBrowser.Current(), aName);
    }
    void Open(const char *aName)
    {
        GoTo(aName);
        Keyboard::Press(Qt::Key_F2);
        ASSERT_EQ(Keyboard::Focus(), mBrowser.Editor()) << aName;
        ASSERT_NE(mBrowser.Editor(), nullptr) << aName;
    }
    void End(Qt::Key aKey = Qt::Key_Return)
    {
        Keyboard::Press(aKey);
        EXPECT_TRUE(WaitForGui([this] { return !mBrowser.Editor(); }));
        EXPECT_EQ(Keyboard::Focus(), mBrowser.Tree()) << "one goes on in the tree";
    }
    void Enter(const char *aName, const QString &aText)
    {
        Open(aName);
        Keyboard::Replace(aText);
        End();
    }

    std::unique_ptr<LxDevice> mDevice;
    TestBrowser mBrowser;
};

}  // namespace

TEST_F(BrowserKeyboard, IsAccessible)
{
    ExpectAccessible(mBrowser.GetQWidget());
}

TEST_F(BrowserKeyboard, EditsIntegers)
{
    Enter("SimIntegerStep", "40");
    EXPECT_EQ(Integer("SimIntegerStep"), 40);
    EXPECT_EQ(mBrowser.Value("SimIntegerStep"), "40 px");
    Open("SimIntegerStep");
    Keyboard::Press(Qt::Key_Up);
    End();
    EXPECT_EQ(Integer("SimIntegerStep"), 50);
    Enter("SimIntegerHex", "1Fh");
    EXPECT_EQ(Integer("SimIntegerHex"), 0x1F);
    Enter("SimIntegerHex", "0x20");
    EXPECT_EQ(Integer("SimIntegerHex"), 0x20);
    Enter("SimWriteOnly", "7");
    EXPECT_EQ(mBrowser.Value("SimWriteOnly"), "7 ");
}

TEST_F(BrowserKeyboard, EditsAddresses)
{
    Enter("SimIntegerMAC", "0x00111C0A0B0C");
    EXPECT_EQ(mBrowser.Value("SimIntegerMAC"), "00:11:1C:0A:0B:0C");
    Enter("GevPersistentIPAddress", "10.0.0.40");
    EXPECT_EQ(Integer("GevPersistentIPAddress"), 0x0A000028);
}

TEST_F(BrowserKeyboard, EditsAFloat)
{
    Enter("SimFloat", QLocale().toString(12.5));
    double value = 0.0;
    EXPECT_TRUE(dynamic_cast<LxGenFloat *>(mDevice->GetParameters()->Get("SimFloat"))->GetValue(value).IsOK());
    EXPECT_EQ(value, 12.5);
}

TEST_F(BrowserKeyboard, EditsABoolean)
{
    const QString before = mBrowser.Value("SimBoolean");
    Open("SimBoolean");
    Keyboard::Press(before == "True" ? Qt::Key_Up : Qt::Key_Down);
    End();
    EXPECT_EQ(mBrowser.Value("SimBoolean"), before == "True" ? "False" : "True");
}

TEST_F(BrowserKeyboard, EditsAnEnumerationByItsList)
{
    Open("SimEnumeration");
    Keyboard::Press(Qt::Key_Home);
    End();
    EXPECT_EQ(DeviceText("SimEnumeration"), "Plain");
    Open("SimEnumeration");
    Keyboard::Press(Qt::Key_Down, Qt::AltModifier);
    ASSERT_NE(QApplication::activePopupWidget(), nullptr) << "the list of the choices";
    Keyboard::Press(Qt::Key_Down);
    Keyboard::Press(Qt::Key_Return);
    End();
    EXPECT_EQ(DeviceText("SimEnumeration"), "Expert");
}

TEST_F(BrowserKeyboard, EditsAString)
{
    Enter("SimString", "typed");
    EXPECT_EQ(DeviceText("SimString"), "typed");
    Open("SimString");
    Keyboard::Replace("dropped");
    End(Qt::Key_Escape);
    EXPECT_EQ(DeviceText("SimString"), "typed");
}

TEST_F(BrowserKeyboard, RunsACommandBySpaceOnly)
{
    const int64_t count = Integer("SimCommandCount");
    Open("SimCommand");
    EXPECT_NE(qobject_cast<QPushButton *>(Keyboard::Focus()), nullptr);
    Keyboard::Press(Qt::Key_Space);
    EXPECT_TRUE(WaitForGui([&] { return Integer("SimCommandCount") == count + 1; }));
    End();  // by Enter, which ends every editor
    EXPECT_EQ(Integer("SimCommandCount"), count + 1);
}

TEST_F(BrowserKeyboard, ReadsWhatCannotBeEdited)
{
    for (const char *name : {"SimRegister", "SimReadOnly"}) {
        GoTo(name);
        Keyboard::Press(Qt::Key_F2);
        EXPECT_EQ(mBrowser.Editor(), nullptr) << name;
        EXPECT_TRUE(mBrowser.Description()->toPlainText().contains(name)) << name;
    }
    Keyboard::Press(Qt::Key_Tab);
    EXPECT_EQ(Keyboard::Focus(), mBrowser.Description());
}

TEST_F(BrowserKeyboard, AFailedEditLeavesTheFocusInTheTree)
{
    Open("SimIntegerStep");
    Keyboard::Replace("45");
    OnNextModal([](QWidget *) { Keyboard::Press(Qt::Key_Return); });
    Keyboard::Press(Qt::Key_Return);
    ASSERT_TRUE(WaitForGui([this] { return !mBrowser.Editor(); }));
    EXPECT_EQ(Keyboard::Focus()->objectName(), "FeatureTree");
    EXPECT_EQ(mBrowser.Current(), "SimIntegerStep");
}

TEST_F(BrowserKeyboard, OpensAndClosesCategories)
{
    GoTo("SimInteger");
    Keyboard::Press(Qt::Key_Up);  // the first of its category
    const QModelIndex category = mBrowser.Tree()->currentIndex();
    EXPECT_EQ(mBrowser.Current(), mBrowser.Cell("SimInteger").parent().data().toString());
    Keyboard::Press(Qt::Key_Left);
    EXPECT_FALSE(mBrowser.Tree()->isExpanded(category));
    Keyboard::Press(Qt::Key_Right);
    EXPECT_TRUE(mBrowser.Tree()->isExpanded(category));
    Keyboard::Press(Qt::Key_Minus);
    EXPECT_FALSE(mBrowser.Tree()->isExpanded(category));
    Keyboard::Press(Qt::Key_Plus);
    EXPECT_TRUE(mBrowser.Tree()->isExpanded(category));
    for (const auto &[button, expanded] : {std::pair("CollapseButton", false), std::pair("ExpandButton", true)}) {
        ASSERT_TRUE(Keyboard::TabTo(button));
        Keyboard::Press(expanded ? Qt::Key_Return : Qt::Key_Space);
        EXPECT_EQ(mBrowser.Tree()->isExpanded(mBrowser.Model()->index(0, 0)), expanded);
    }
}

TEST_F(BrowserKeyboard, SearchesFromMatchToMatch)
{
    ASSERT_TRUE(Keyboard::TabTo("SearchBar"));
    Keyboard::Type("SimInteger");
    EXPECT_EQ(mBrowser.Current(), "SimInteger");
    Keyboard::Press(Qt::Key_Return);
    EXPECT_EQ(mBrowser.Current(), "SimIntegerStep");
    ASSERT_TRUE(Keyboard::TabTo("NextMatchButton"));
    Keyboard::Press(Qt::Key_Space);
    EXPECT_EQ(mBrowser.Current(), "SimIntegerLogarithmic");
    ASSERT_TRUE(Keyboard::TabTo("PreviousMatchButton"));
    Keyboard::Press(Qt::Key_Return);
    EXPECT_EQ(mBrowser.Current(), "SimIntegerStep");
}

TEST_F(BrowserKeyboard, ChangesVisibilityAndRefreshes)
{
    ASSERT_TRUE(mBrowser.Cell("SimRegister").isValid());
    ASSERT_TRUE(Keyboard::TabTo("RefreshButton"));
    Keyboard::Press(Qt::Key_Space);
    ASSERT_TRUE(Keyboard::TabTo("VisibilityCombo"));
    Keyboard::Press(Qt::Key_Up);
    EXPECT_EQ(mBrowser.GetVisibility(), LxGenVisibilityExpert);
    EXPECT_FALSE(mBrowser.Cell("SimRegister").isValid());
    EXPECT_EQ(Keyboard::Focus(), mBrowser.VisibilityCombo());
}

TEST_F(BrowserKeyboard, ChangesOptions)
{
    OnNextModal([](QWidget *aDialog) {
        EXPECT_EQ(Keyboard::Focus()->objectName(), "NamesCombo");
        ExpectAccessible(aDialog);
        ASSERT_TRUE(Keyboard::TabTo("ViewCombo"));
        Keyboard::Press(Qt::Key_Down);
        Keyboard::Press(Qt::Key_Return);
    });
    Keyboard::Press(Qt::Key_Return);
    EXPECT_FALSE(mBrowser.Cell("SimNumbers").isValid()) << "the list has no categories";
    EXPECT_TRUE(mBrowser.Cell("SimInteger").isValid());
    EXPECT_EQ(Keyboard::Focus()->objectName(), "OptionsButton");
}
