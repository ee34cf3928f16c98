#pragma once

#include <gtest/gtest.h>

#include <QtCore/QStringList>
#include <functional>
#include <memory>
#include <optional>

#include "GuiTest.h"
#include "LxGUI/DeviceFinder/DeviceFinderWnd.h"
#include "ScriptedBackend.h"

/// A finder whose dialogs can be functions of the test.
class TestFinder : public DeviceFinderWnd
{
public:
    ~TestFinder() override;

    std::function<bool(const LxDeviceInfo *)> mOnFound;
    std::function<void(const LxDeviceInfo &, const LxNetworkAdapter &)> mOnEditIP;
    std::function<std::optional<LxString>()> mOnAskForAddress;

protected:
    bool OnFound(const LxDeviceInfo *aInfo) override;
    void EditIPConfiguration(const LxDeviceInfo &aInfo, const LxNetworkAdapter &aAdapter) override;
    std::optional<LxString> AskForAddress() override;
};

/// A widget of a dialog by its name.
template <class Widget>
Widget *Child(const QWidget *aDialog, const char *aName)
{
    return aDialog->findChild<Widget *>(QLatin1String(aName));
}

/// A finder over scripted devices.
class FinderTest : public testing::Test
{
protected:
    void Show() { ASSERT_TRUE(mFinder.ShowModeless(static_cast<QWidget *>(nullptr)).IsOK()); }

    QTreeWidget *Tree() const { return Find<QTreeWidget>("DeviceTree"); }
    QTableWidget *Table(const char *aName) const { return Find<QTableWidget>(aName); }
    QPushButton *Button(const char *aName) const { return Find<QPushButton>(aName); }
    QCheckBox *Check() const { return Find<QCheckBox>("ShowUnreachableCheck"); }
    void Click(const char *aButton) const;

    /// The texts of the interfaces, each with those of its devices behind it, for example "Interface a: Device g".
    /// Devices stand in the order in which they were placed: those of one refresh by their IDs. A test adds them in the
    /// order of their IDs, so that it need not know how many refreshes there were.
    QStringList Lines() const;
    bool WaitForLines(const QStringList &aLines) const;
    /// The first item with a text, or null.
    QTreeWidgetItem *Item(const QString &aText) const;
    int Icon(const QString &aText) const;
    /// Clicks on the item with a text, after it has come.
    void Select(const QString &aText) const;
    void DoubleClick(const QString &aText) const;
    /// The rows of a table, "label = value".
    QStringList Rows(const char *aTable) const;
    /// Waits until some more searches have been started, so that all but the last of them have ended. Reports are shown
    /// meanwhile.
    bool WaitForRounds(size_t aCount) const;
    /// The same, but the window stays as it is.
    bool WaitForRoundsUnseen(size_t aCount) const;

    ScriptedDevices mDevices;
    mutable TestFinder mFinder;

private:
    template <class Widget>
    Widget *Find(const char *aName) const
    {
        return mFinder.GetQWidget()->findChild<Widget *>(QLatin1String(aName));
    }
};
