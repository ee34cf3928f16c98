#include "TreeItemTest.h"

#include <QtCore/QCoreApplication>
#include <QtTest/QSignalSpy>
#include <thread>

#include "WaitFor.h"

namespace
{

// Threads

TEST(TreeItemThreads, ARefreshElsewhereReachesTheTextsThroughTheEventLoop)
{
    FakeInteger feature("Width");
    Item item(feature);
    feature.mValue = 7;
    std::thread([&] { item.Refresh(); }).join();
    EXPECT_EQ(item.ValueText(), "0 ");
    QCoreApplication::processEvents();
    EXPECT_EQ(item.ValueText(), "7 ");
}

TEST(TreeItemThreads, AnOldReadingDoesNotReplaceANewerOne)
{
    FakeInteger feature("Width");
    Item item(feature);
    std::thread([&] { item.Refresh(); }).join();  // reads 0, which waits to be delivered
    feature.mValue = 7;
    EXPECT_EQ(item.RefreshedText(), "7 ");
    QCoreApplication::processEvents();
    EXPECT_EQ(item.ValueText(), "7 ");
}

TEST(TreeItemThreads, AReadingThatEndsAfterANewerOneIsDropped)
{
    FakeInteger feature("Width");
    Item item(feature);
    // While the thread's reading is under way (value read, unit asked for), a newer one comes and goes.
    std::atomic<bool> first{true};
    feature.mScript.OnCall([&](const std::string &aCall) {
        if (aCall == "GetUnit" && first.exchange(false)) {
            feature.mValue = 7;
            std::thread([&] { item.Refresh(); }).join();
        }
    });
    std::thread([&] { item.Refresh(); }).join();
    QCoreApplication::processEvents();
    EXPECT_EQ(item.ValueText(), "7 ");
}

TEST(TreeItemThreads, TheSignalCarriesWhatTheReadingFound)
{
    FakeInteger feature("Width");
    Item item(feature);
    feature.mWritable = false;
    feature.mValue = 500;
    QSignalSpy spy(&item, &GenBrowserTreeItem::UpdateDataSignal);
    item.Refresh();
    ASSERT_EQ(spy.size(), 1);
    EXPECT_EQ(spy[0], QVariantList({"Parameter out of range", "500 ", true, true, true, false, true}));
}

TEST(TreeItemThreads, DestroyingAnItemWaitsForItsNotification)
{
    FakeInteger feature("Width");
    auto item = std::make_unique<Item>(feature);
    std::atomic<bool> inside{false};
    std::atomic<bool> ended{false};
    feature.mScript.OnCall([&](const std::string &aCall) {
        if (aCall == "GetValue") {
            inside = true;
            EXPECT_TRUE(WaitFor([&] { return feature.mUnregistrations > 0; }));
            ended = true;
        }
    });
    std::thread notifier([&] { feature.Notify(); });
    EXPECT_TRUE(WaitFor([&] { return inside.load(); }));
    item.reset();
    EXPECT_TRUE(ended);
    notifier.join();
}

}  // namespace
