#include "LxGUI/LxWnd.h"

#include <gmock/gmock.h>

#include <memory>
#include <type_traits>

#include "GuiTest.h"
#include "TestWnd.h"

using testing::ElementsAre;

static_assert(std::has_virtual_destructor_v<LxWnd>);
static_assert(!std::is_copy_constructible_v<LxWnd>);
static_assert(!std::is_default_constructible_v<LxWnd>);
static_assert(!std::is_destructible_v<LxWnd>, "only derived classes may end it");

namespace
{

// A public class as the library's own are made.
class LxTestWnd : public LxWnd
{
public:
    explicit LxTestWnd(bool aWithWindow = true)
    {
        if (aWithWindow) {
            mWnd = new TestWnd;
        }
    }
    ~LxTestWnd() override
    {
        delete mWnd;
        mWnd = nullptr;
    }
    TestWnd *Inner() { return static_cast<TestWnd *>(mWnd); }
};

}  // namespace

TEST(PublicWindow, ForwardsEverything)
{
    LxTestWnd wnd;
    wnd.SetTitle("title");
    EXPECT_STREQ(wnd.GetTitle().GetAscii(), "title");
    wnd.SetPosition(11, 12, 213, 214);
    int x = 0, y = 0, width = 0, height = 0;
    wnd.GetPosition(x, y, width, height);
    EXPECT_THAT((std::vector{x, y, width, height}), ElementsAre(11, 12, 213, 214));
    EXPECT_FALSE(wnd.IsVisible());
    EXPECT_EQ(wnd.GetHandle(), nullptr);
    const QPointer<QWidget> plain = wnd.GetQWidget();
    EXPECT_EQ(plain, wnd.Inner()->Widget());

    EXPECT_EQ(wnd.ShowModeless().GetCode(), 0u);
    EXPECT_TRUE(wnd.IsVisible());
    EXPECT_NE(wnd.GetHandle(), nullptr);
    EXPECT_EQ(wnd.ShowModal().GetCode(), 28u);
    EXPECT_EQ(wnd.Close().GetCode(), 0u);
    EXPECT_FALSE(wnd.IsVisible());

    QWidget host;
    EXPECT_EQ(wnd.ShowModeless(&host).GetCode(), 0u);
    EXPECT_EQ(wnd.Inner()->Dialog()->parentWidget(), &host);
    wnd.Close();
    EXPECT_EQ(wnd.ShowModeless(static_cast<HWND>(nullptr)).GetCode(), 0u);
    wnd.Close();
    EXPECT_EQ(wnd.Create(&host).GetCode(), 0u);
    EXPECT_EQ(wnd.GetQWidget(), &host);
    EXPECT_EQ(wnd.Create(nullptr, 0).GetCode(), 0x4001u);
    OnNextModal([](QWidget *aModal) { qobject_cast<QDialog *>(aModal)->accept(); });
    wnd.Close();
    delete wnd.GetQWidget();
    EXPECT_EQ(wnd.ShowModal(&host).GetCode(), 0u);
    delete plain;
}

TEST(PublicWindow, WithoutAnInternalWindowAnswersNeutrally)
{
    LxTestWnd wnd(false);
    EXPECT_EQ(wnd.GetHandle(), nullptr);
    EXPECT_FALSE(wnd.IsVisible());
    EXPECT_EQ(wnd.GetQWidget(), nullptr);
    EXPECT_EQ(wnd.Close().GetCode(), 0u);
    EXPECT_EQ(wnd.ShowModal().GetCode(), 0x4001u);
    EXPECT_EQ(wnd.ShowModeless().GetCode(), 0x4001u);
    EXPECT_EQ(wnd.ShowModeless(static_cast<HWND>(nullptr)).GetCode(), 0x4001u);
    EXPECT_EQ(wnd.Create(nullptr, 0).GetCode(), 0x4001u);
    EXPECT_EQ(wnd.Create(static_cast<QWidget *>(nullptr)).GetCode(), 0x4001u);
    wnd.SetTitle("x");
    EXPECT_STREQ(wnd.GetTitle().GetAscii(), "");
    wnd.SetPosition(1, 2, 3, 4);
    int x = 0, y = 0, width = 0, height = 0;
    wnd.GetPosition(x, y, width, height);
    EXPECT_THAT((std::vector{x, y, width, height}), ElementsAre(-1, -1, -1, -1));
}

TEST(PublicWindow, DoEventsProcessesPendingEvents)
{
    bool called = false;
    QMetaObject::invokeMethod(
        qApp, [&] { called = true; }, Qt::QueuedConnection);
    LxWnd::DoEvents();
    EXPECT_TRUE(called);
}
