#include "FinderTest.h"

#include <QtTest/QTest>

#include "WaitFor.h"

TestFinder::~TestFinder()
{
    StopDiscovery();
}

bool TestFinder::OnFound(const LxDeviceInfo *aInfo)
{
    return mOnFound ? mOnFound(aInfo) : DeviceFinderWnd::OnFound(aInfo);
}

void TestFinder::EditIPConfiguration(const LxDeviceInfo &aInfo, const LxNetworkAdapter &aAdapter)
{
    mOnEditIP ? mOnEditIP(aInfo, aAdapter) : DeviceFinderWnd::EditIPConfiguration(aInfo, aAdapter);
}

std::optional<LxString> TestFinder::AskForAddress()
{
    return mOnAskForAddress ? mOnAskForAddress() : DeviceFinderWnd::AskForAddress();
}

void FinderTest::Click(const char *aButton) const
{
    QTest::mouseClick(Button(aButton), Qt::LeftButton);
}

QStringList FinderTest::Lines() const
{
    QStringList lines;
    for (int i = 0; i < Tree()->topLevelItemCount(); ++i) {
        const QTreeWidgetItem *interface = Tree()->topLevelItem(i);
        QStringList devices;
        for (int j = 0; j < interface->childCount(); ++j) {
            devices << interface->child(j)->text(0);
        }
        devices.sort();  // they stand in the order in which a search happened to report them first
        lines << interface->text(0) + (devices.isEmpty() ? QString() : ": " + devices.join(", "));
    }
    return lines;
}

bool FinderTest::WaitForLines(const QStringList &aLines) const
{
    const bool reached = WaitForGui([this, &aLines] { return Lines() == aLines; });
    EXPECT_EQ(Lines().join('\n').toStdString(), aLines.join('\n').toStdString());
    return reached;
}

QTreeWidgetItem *FinderTest::Item(const QString &aText) const
{
    return Tree()->findItems(aText, Qt::MatchExactly | Qt::MatchRecursive).value(0);
}

int FinderTest::Icon(const QString &aText) const
{
    const auto *item = dynamic_cast<TreeItemInfo *>(Item(aText));
    return item ? item->GetShownIcon() : -1;
}

void FinderTest::Select(const QString &aText) const
{
    ASSERT_TRUE(WaitForGui([this, &aText] { return Item(aText) != nullptr; })) << aText.toStdString();
    const QRect rect = Tree()->visualItemRect(Item(aText));
    ASSERT_FALSE(rect.isEmpty()) << aText.toStdString() << " is not visible";
    QTest::mouseClick(Tree()->viewport(), Qt::LeftButton, {}, rect.center());
}

void FinderTest::DoubleClick(const QString &aText) const
{
    Select(aText);
    QTest::mouseDClick(Tree()->viewport(), Qt::LeftButton, {}, Tree()->visualItemRect(Item(aText)).center());
}

QStringList FinderTest::Rows(const char *aTable) const
{
    QStringList rows;
    const QTableWidget *table = Table(aTable);
    for (int i = 0; i < table->rowCount(); ++i) {
        rows << table->item(i, 0)->text() + " = " + table->item(i, 1)->text();
    }
    return rows;
}

bool FinderTest::WaitForRounds(size_t aCount) const
{
    const size_t end = mDevices->GetFindCount() + aCount;
    return WaitForGui([this, end] { return mDevices->GetFindCount() >= end; });
}

bool FinderTest::WaitForRoundsUnseen(size_t aCount) const
{
    const size_t end = mDevices->GetFindCount() + aCount;
    return WaitFor([this, end] { return mDevices->GetFindCount() >= end; });
}
