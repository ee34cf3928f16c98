// Hosts without an event loop, and without an application of their own.

#include "BrowserTest.h"
#include "WaitFor.h"

namespace
{

class BrowserHost : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_EQ(QCoreApplication::instance(), nullptr);
        mArray.AddCategory("General");
        for (int i = 0; i < 60; ++i) {
            mFeatures.push_back(&mArray.Add<FakeInteger>("Feature" + std::to_string(i)));
        }
    }
    int Reads() const
    {
        int reads = 0;
        for (const FakeInteger *feature : mFeatures) {
            reads += feature->mScript.Count("GetValue");
        }
        return reads;
    }
    bool HasSinks() const
    {
        return std::any_of(mFeatures.begin(), mFeatures.end(),
                           [](const auto *aFeature) { return aFeature->HasSinks(); });
    }

    FakeArray mArray;
    std::vector<FakeInteger *> mFeatures;
};

TEST_F(BrowserHost, RowsAreReadWhileItPumpsAndTheWindowClosesBetweenItsPumps)
{
    TestBrowser browser;
    browser.SetRefreshMode(LxGenRefreshAutomatic);
    browser.SetGenParameterArray(&mArray);
    browser.SetPosition(-1, -1, 400, 400);
    browser.ShowModeless();
    EXPECT_TRUE(WaitFor([&] {
        LxWnd::DoEvents();
        return mFeatures[2]->mScript.Count("GetValue") > 1;
    }));
    const int reads = Reads();
    // Nobody answers any more: the row that was answered last is read, and no other.
    browser.Close();
    EXPECT_LE(Reads(), reads + 1);
    EXPECT_FALSE(HasSinks());
}

TEST_F(BrowserHost, AWindowClosesThoughTheHostHasNeverPumped)
{
    for (const LxGenRefresh mode : {LxGenRefreshAutomatic, LxGenRefreshPolling}) {
        TestBrowser browser;
        browser.SetRefreshMode(mode);
        browser.SetGenParameterArray(&mArray);
        browser.ShowModeless();
        EXPECT_TRUE(HasSinks());
        browser.Close();
        EXPECT_FALSE(HasSinks());
    }
}

TEST_F(BrowserHost, ABrowserEndsThoughTheApplicationHasGoneBeforeIt)
{
    for (const LxGenRefresh mode : {LxGenRefreshAutomatic, LxGenRefreshPolling, LxGenRefreshManual}) {
        auto owner = std::make_unique<LxGenBrowserWnd>();  // makes the application, and ends it
        LxGenBrowserWnd browser;
        browser.SetRefreshMode(mode);
        browser.SetGenParameterArray(&mArray);
        const std::unique_ptr<QWidget> widget(browser.GetQWidget());
        EXPECT_TRUE(HasSinks());
        owner.reset();
        ASSERT_EQ(QCoreApplication::instance(), nullptr);
        browser.SetGenParameterArray(nullptr);  // waits for the thread, whose questions nobody answers
        EXPECT_FALSE(HasSinks());
        browser.SetGenParameterArray(&mArray);
        EXPECT_FALSE(HasSinks()) << "nothing is shown without an application";
    }
}

TEST_F(BrowserHost, ABrowserIsDestroyedThoughTheApplicationHasGoneBeforeIt)
{
    std::unique_ptr<QWidget> widget;
    {
        auto owner = std::make_unique<LxGenBrowserWnd>();
        LxGenBrowserWnd browser;
        browser.SetGenParameterArray(&mArray);
        widget.reset(browser.GetQWidget());
        owner.reset();
        ASSERT_EQ(QCoreApplication::instance(), nullptr);
    }
    EXPECT_FALSE(HasSinks());
}

}  // namespace
