#pragma once

#include "LxBase/LxResult.h"
#include "LxBase/LxString.h"
#include "LxGUIExport.h"

class QWidget;
class Wnd;

struct HWND__;
/// The type of native window handles, the same that windows.h declares. Where the native window system is X11 the
/// pointer's value is the window's XID: reinterpret_cast<HWND>(static_cast<uintptr_t>(window)).
typedef struct HWND__ *HWND;

/// What every window of the library can do: be shown as a modal or modeless dialog, inside a widget of the host, or
/// under a native window.
///
/// The first window that a program without a QApplication creates also creates one, and deletes it again when it is
/// destroyed (or, if that happens inside its event loop, when the loop has ended). Such a program destroys it last, and
/// calls DoEvents() regularly while modeless windows are shown. A program that makes a QApplication of its own makes it
/// before the first window. Nothing is thrown. Where a window cannot be made because the program has only a
/// QCoreApplication, or no application any more, the show operations return InvalidArgument (0x4001).
///
/// All operations must be called on the thread that runs the QApplication, the program's GUI thread, unless they say
/// otherwise; this holds for the constructor and the destructor too. On another thread they warn (Qt's message
/// handler), do nothing and return InvalidArgument where they return a result; a window that is constructed there stays
/// without content for good, and one that is destroyed there waits until the GUI thread, which must not wait for the
/// caller, has destroyed it.
///
/// A window may be shown again and in another way at any time; its content then moves along. A dialog that the user
/// closes ends the window's work as Close() does, and so does the end of a host's widget or of a dialog's parent.
/// Destroying the window also takes its dialog, or its content in a host's widget, from the screen.
///
/// Devices and other objects that a window is given are not owned and are taken from it (by null) before they end.
/// Where a host forgets that, the window notices the end of a device, an adapter or an array of features of the SDK,
/// gives it up in time and warns. When the object ends on another thread, that thread waits for the GUI thread
/// meanwhile, two seconds at most.
///
/// A host that overrides virtual operations of a derived class calls Close() before it destroys the window.
/// @thread{GUI}
class LXGUI_API LxWnd
{
public:
    LxWnd(const LxWnd &) = delete;
    LxWnd &operator=(const LxWnd &) = delete;

    /// Shows the window as a child of a native window, filling its client area; WM_SIZE is then posted to the parent.
    /// On X11 a posted message is a client message of the type _LXGUI_MESSAGE, format 32, with the data message,
    /// wParam, lParam. The host closes or destroys the window before it destroys the native parent; it resizes the
    /// child itself when the parent's size changes. The child takes the keyboard focus when it is clicked. Where there
    /// are no native windows (Wayland, offscreen) the window is shown as a top-level window.
    /// @param aParent the native parent. With null the window is shown as a top-level window all the same, and the
    ///        result is InvalidArgument (0x4001).
    /// @return OK, or InvalidArgument (0x4001) when no native handle of the window can be had. The parent's is not
    ///         checked.
    /// @thread{GUI}
    LxResult Create(HWND aParent, int aReserved);
    /// Builds the window's content into a widget of the host and shows it. The host keeps the ownership; a layout that
    /// the widget already has is kept and the content is added to it.
    /// @return OK, or InvalidArgument (0x4001) for null.
    /// @thread{GUI}
    LxResult Create(QWidget *aHost);

    /// Runs the window as a modal dialog. A parent is taken by the first dialog of the window, which is then reused.
    /// @return OK when it was accepted; Cancelled (0x4002) when it ended otherwise, also by Close() or by the window's
    ///         destruction; AlreadyShown (28) when the window is visible already.
    /// @thread{GUI}
    LxResult ShowModal();
    /// The same above a window of the host, which is blocked meanwhile. Results as above.
    /// @thread{GUI}
    LxResult ShowModal(QWidget *aParent);
    /// Shows the window as a modeless dialog; a visible one is brought to the front. Returns OK.
    /// @thread{GUI}
    LxResult ShowModeless();
    /// The same above a window of the host. Results as above.
    /// @thread{GUI}
    LxResult ShowModeless(QWidget *aParent);
    /// The same with a native parent, which also receives the window's notifications. A null pointer must be cast
    /// (static_cast<HWND>(nullptr)) to choose between this and the overload above.
    /// @thread{GUI}
    LxResult ShowModeless(HWND aParent);

    /// Ends the window's work and hides its dialog; an embedded window is not hidden. Always OK, also when closed.
    /// @thread{GUI}
    LxResult Close();

    /// Position and size in device-independent pixels, applied now or when the window is shown. The size is left alone
    /// unless width and height are at least 1, the position unless x and y are.
    /// @thread{GUI}
    void SetPosition(int aX, int aY, int aWidth, int aHeight);
    /// The present geometry, or what was set before the window exists; -1 when nothing was.
    /// @thread{GUI}
    void GetPosition(int &aX, int &aY, int &aWidth, int &aHeight);
    /// The native handle while the window is visible, else null. Like IsVisible() and GetQWidget(), it builds the
    /// content of a window that was never shown.
    /// @thread{GUI}
    HWND GetHandle() const;
    /// Whether the window is on the screen.
    /// @thread{GUI}
    bool IsVisible() const;
    /// The widget that carries the content; made when there is none yet. Owned by the window, unless the host puts it
    /// under a widget of its own. Showing the window in another way makes another widget.
    /// @thread{GUI}
    QWidget *GetQWidget();

    /// UTF-8; empty at first.
    /// @thread{GUI}
    LxString GetTitle() const;
    /// UTF-8; the text of the title bar, at once or when the window is shown.
    /// @thread{GUI}
    void SetTitle(const LxString &aTitle);

    /// The version of the library that runs, like "1.2.3"; LXGUI_VERSION_STRING is the one that the program was
    /// compiled with.
    /// @thread{any}
    static LxString GetVersion();

    /// Processes the pending events of Qt, for hosts that run a loop of their own.
    /// @thread{GUI}
    static void DoEvents();

protected:
    LxWnd();
    virtual ~LxWnd();

    Wnd *mWnd = nullptr;  ///< Made and deleted by the derived class.
};
