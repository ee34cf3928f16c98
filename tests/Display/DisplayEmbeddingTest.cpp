// A display in a window that another client made, with the renderer changed while it is shown. On an X server.

#include <xcb/xcb.h>

#include <QtCore/QCoreApplication>
#include <QtGui/QResizeEvent>
#include <cstdlib>
#include <memory>

#include "OpenGLTest.h"

namespace
{

/// A client with a window of its own, as a host without Qt has.
class NativeHost
{
public:
    NativeHost() : mConnection(xcb_connect(nullptr, nullptr)), mWindow(xcb_generate_id(mConnection))
    {
        const xcb_screen_t *screen = xcb_setup_roots_iterator(xcb_get_setup(mConnection)).data;
        xcb_create_window(mConnection, XCB_COPY_FROM_PARENT, mWindow, screen->root, 20, 30, 200, 150, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual, 0, nullptr);
        xcb_map_window(mConnection, mWindow);
        Sync();
    }

    ~NativeHost() { xcb_disconnect(mConnection); }
    NativeHost(const NativeHost &) = delete;
    NativeHost &operator=(const NativeHost &) = delete;

    HWND Handle() const { return reinterpret_cast<HWND>(static_cast<uintptr_t>(mWindow)); }

    bool IsParentOf(WId aWindow)
    {
        const auto reply = std::unique_ptr<xcb_query_tree_reply_t, decltype(&std::free)>(
            xcb_query_tree_reply(mConnection, xcb_query_tree(mConnection, static_cast<xcb_window_t>(aWindow)), nullptr),
            &std::free);
        return reply && reply->parent == mWindow;
    }

private:
    void Sync() { std::free(xcb_get_input_focus_reply(mConnection, xcb_get_input_focus(mConnection), nullptr)); }

    xcb_connection_t *mConnection;
    xcb_window_t mWindow;
};

/// The sizes that a widget is given.
class SizeWatch : public QObject
{
public:
    explicit SizeWatch(QWidget &aWidget) { aWidget.installEventFilter(this); }
    bool eventFilter(QObject *, QEvent *aEvent) override
    {
        if (aEvent->type() == QEvent::Resize) {
            mSizes.append(static_cast<QResizeEvent *>(aEvent)->size());
        }
        return false;
    }

    QList<QSize> mSizes;
};

}  // namespace

TEST(DisplayEmbedding, AChangeOfTheRendererKeepsTheNativeParent)
{
    NativeHost host;
    DisplayWnd display;
    ASSERT_TRUE(display.Create(host.Handle(), 0).IsOK());
    const std::unique_ptr<QWidget> widget(display.GetQWidget());  // whoever asks for it keeps it
    ASSERT_TRUE(WaitForGui([&] { return host.IsParentOf(widget->winId()) && widget->size() == QSize(200, 150); }));
    const SizeWatch watch(*widget);
    for (const int mode : {1, 0, 1}) {
        ASSERT_EQ(display.SetRendererMode(mode).GetCode(), 0u);
        QCoreApplication::processEvents();
        EXPECT_TRUE(host.IsParentOf(widget->winId())) << mode;
        EXPECT_EQ(widget->size(), QSize(200, 150)) << mode;
        EXPECT_EQ(widget->pos(), QPoint(0, 0)) << mode;
        ASSERT_TRUE(display.Display(*MakePicture(200, 150), false).IsOK());
        QCoreApplication::processEvents();
        EXPECT_EQ(Grab(widget.get()).pixel(30, 40), PictureColor(30, 40)) << mode;
    }
    EXPECT_EQ(watch.mSizes, QList<QSize>());  // not another for a while either
}

TEST(DisplayEmbedding, ADisplayThatDrawsByOpenGLFromTheStartIsEmbedded)
{
    NativeHost host;
    DisplayWnd display;
    ASSERT_EQ(display.SetRendererMode(1).GetCode(), 0u);
    ASSERT_TRUE(display.Create(host.Handle(), 0).IsOK());
    const std::unique_ptr<QWidget> widget(display.GetQWidget());  // whoever asks for it keeps it
    ASSERT_TRUE(WaitForGui([&] { return host.IsParentOf(widget->winId()) && widget->size() == QSize(200, 150); }));
    QCoreApplication::processEvents();
    ASSERT_TRUE(display.Display(*MakePicture(200, 150), false).IsOK());
    EXPECT_EQ(Grab(widget.get()).pixel(30, 40), PictureColor(30, 40));
}

TEST(DisplayEmbedding, WhatADisplayLeavesBehindDrawsNothingOnceTheNativeParentHasGone)
{
    for (int i = 0; i < 3; ++i) {
        std::unique_ptr<QWidget> widget;
        {
            NativeHost host;
            DisplayWnd display;
            ASSERT_EQ(display.SetRendererMode(1).GetCode(), 0u);
            ASSERT_TRUE(display.Create(host.Handle(), 0).IsOK());
            widget.reset(display.GetQWidget());
            ASSERT_TRUE(WaitForGui([&] { return host.IsParentOf(widget->winId()); }));
            ASSERT_TRUE(display.Display(*MakePicture(200, 150), false).IsOK());
        }
        EXPECT_FALSE(widget->isVisible());
        QCoreApplication::processEvents();
    }
}
