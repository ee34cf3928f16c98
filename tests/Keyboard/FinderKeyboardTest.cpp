// The device finder and its dialogs with nothing but a keyboard.

#include <QtWidgets/QCheckBox>
#include <QtWidgets/QDialog>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QTableWidget>

#include "AccessibilityWalk.h"
#include "DeviceFinder/FinderTest.h"
#include "Keyboard.h"

namespace
{

class FinderKeyboard : public FinderTest
{
protected:
    void SetUp() override
    {
        mInfo = &mDevices->AddGEV(mDevices->AddAdapter("a"), "g");
        Show();
        ASSERT_TRUE(WaitForGui([this] { return Item("Device g") != nullptr; }));
        ASSERT_TRUE(WaitForRounds(1));
        EXPECT_EQ(Keyboard::Focus(), Tree()) << "one begins with the devices";
    }
    /// Goes down to the device.
    void ChooseDevice()
    {
        for (int i = 0; i < 10 && (!Tree()->currentItem() || Tree()->currentItem() != Item("Device g")); ++i) {
            Keyboard::Press(Qt::Key_Down);
        }
        ASSERT_EQ(Tree()->selectedItems().value(0), Item("Device g"));
    }
    static void TypeAddressOfDevice()
    {
        OnNextModal([](QWidget *aDialog) {
            EXPECT_EQ(aDialog->objectName(), "ForceIPDlg");
            Keyboard::Type("20");
            Keyboard::Press(Qt::Key_Return);
        });
    }
    /// So many times so far.
    void ExpectAddressOfDevice(size_t aCount)
    {
        EXPECT_EQ(mDevices->GetIPConfigurationCalls(),
                  std::vector<std::string>(aCount, "GEV 00:11:22:33:44:55 192.168.1.20 255.255.255.0 0.0.0.0"));
    }

    const LxDeviceInfo *mInfo = nullptr;
};

}  // namespace

TEST_F(FinderKeyboard, IsAccessible)
{
    ChooseDevice();
    ExpectAccessible(mFinder.GetQWidget());
}

TEST_F(FinderKeyboard, ChoosesADeviceByArrowAndEnter)
{
    ChooseDevice();
    Keyboard::Press(Qt::Key_Return);
    EXPECT_FALSE(mFinder.IsVisible());
    EXPECT_EQ(mFinder.GetSelected(), mInfo);
}

TEST_F(FinderKeyboard, ChoosesADeviceByTheOKButton)
{
    ChooseDevice();
    ASSERT_TRUE(Keyboard::TabTo("OKButton"));
    Keyboard::Press(Qt::Key_Space);
    EXPECT_FALSE(mFinder.IsVisible());
    EXPECT_EQ(mFinder.GetSelected(), mInfo);
}

TEST_F(FinderKeyboard, EscapeChoosesNothing)
{
    ChooseDevice();
    Keyboard::Press(Qt::Key_Escape);
    EXPECT_FALSE(mFinder.IsVisible());
    EXPECT_EQ(mFinder.GetSelected(), nullptr);
}

TEST_F(FinderKeyboard, CategoriesCloseAndOpen)
{
    Keyboard::Press(Qt::Key_Home);
    Keyboard::Press(Qt::Key_Left);
    EXPECT_FALSE(Tree()->topLevelItem(0)->isExpanded());
    Keyboard::Press(Qt::Key_Right);
    EXPECT_TRUE(Tree()->topLevelItem(0)->isExpanded());
}

TEST_F(FinderKeyboard, ShowsUnreachableDevicesBySpace)
{
    ASSERT_TRUE(Keyboard::TabTo("ShowUnreachableCheck"));
    Keyboard::Press(Qt::Key_Space);
    EXPECT_TRUE(Check()->isChecked());
}

TEST_F(FinderKeyboard, ReadsTheTables)
{
    ChooseDevice();
    ASSERT_TRUE(Keyboard::TabTo("DeviceTable"));
    Keyboard::Press(Qt::Key_Down, {}, 2);
    EXPECT_GT(Table("DeviceTable")->currentRow(), 0);
}

TEST_F(FinderKeyboard, SetsAnAddressByItsButton)
{
    size_t count = 0;
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return}) {
        ChooseDevice();
        ASSERT_TRUE(Keyboard::TabTo("SetIPButton"));
        TypeAddressOfDevice();
        Keyboard::Press(key);
        ExpectAddressOfDevice(++count);
        EXPECT_TRUE(mFinder.IsVisible());
        ASSERT_TRUE(Keyboard::TabTo("DeviceTree"));
    }
}

TEST_F(FinderKeyboard, SetsAnAddressByTheMenu)
{
    size_t count = 0;
    for (const auto press : {&Keyboard::PressMenuKey, &Keyboard::PressShiftF10}) {
        ChooseDevice();
        TypeAddressOfDevice();
        EXPECT_TRUE(Keyboard::ChooseFromContextMenu(press, "Set IP Address..."));
        ExpectAddressOfDevice(++count);
    }
}

TEST_F(FinderKeyboard, TheMenuComesUpAtTheDevice)
{
    ChooseDevice();
    Keyboard::PressMenuKey();
    const QWidget *menu = QApplication::activePopupWidget();
    ASSERT_NE(menu, nullptr);
    const QRect row = Tree()->visualItemRect(Item("Device g"));
    EXPECT_TRUE(row.contains(Tree()->viewport()->mapFromGlobal(menu->pos())));
    Keyboard::Press(Qt::Key_Escape);
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
}

TEST_F(FinderKeyboard, TheAddressDialogIsAccessible)
{
    ChooseDevice();
    ASSERT_TRUE(Keyboard::TabTo("SetIPButton"));
    OnNextModal([](QWidget *aDialog) {
        EXPECT_EQ(Keyboard::Focus()->objectName(), "DeviceIPAddress");
        ExpectAccessible(aDialog);
        Keyboard::Press(Qt::Key_Escape);
    });
    Keyboard::Press(Qt::Key_Space);
    EXPECT_TRUE(mDevices->GetIPConfigurationCalls().empty());
}

TEST_F(FinderKeyboard, SelectsByAddress)
{
    mDevices->SetAddress("10.1.2.3", dynamic_cast<const ScriptedGEV *>(mInfo));
    ASSERT_TRUE(Keyboard::TabTo("SelectFromIPButton"));
    OnNextModal([](QWidget *aDialog) {
        EXPECT_EQ(aDialog->objectName(), "SelectFromIPDlg");
        ExpectAccessible(aDialog);
        Keyboard::Type("10.1.2.3");
        Keyboard::Press(Qt::Key_Return);
    });
    Keyboard::Press(Qt::Key_Return);
    EXPECT_FALSE(mFinder.IsVisible());
    EXPECT_EQ(mFinder.GetSelected(), mInfo);
}
