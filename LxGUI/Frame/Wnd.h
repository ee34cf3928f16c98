#pragma once

#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtCore/QString>
#include <QtWidgets/QApplication>
#include <QtWidgets/QDialog>
#include <QtWidgets/QWidget>
#include <functional>
#include <memory>

#include "LxGUI/LxWnd.h"

/// The base of every window: drives one widget, which it adopts from the host or creates.
///
/// Derived classes build their content in CreateLayout(), start their work in OnOpen() and end it in OnClose(). All
/// three may be called more than once, in any order that the host brings about: OnOpen() first ends what still runs,
/// OnClose() is idempotent. OnClose() also runs when the user ends the dialog and when the widget is deleted while the
/// window is open; Widget() is null in the latter case. A derived destructor does the work of its OnClose() itself,
/// because nobody calls it then. Child widgets are held in QPointer, as a host may delete its widget at any time.
class Wnd : public QObject
{
    Q_OBJECT

public:
    Wnd();
    ~Wnd() override;

    LxResult Create(HWND aParent, int aReserved);
    LxResult Create(QWidget *aHost);
    LxResult ShowModal(QWidget *aParent);
    LxResult ShowModeless(QWidget *aParent);
    LxResult ShowModeless(HWND aParent);
    LxResult Close();
    void SetPosition(int aX, int aY, int aWidth, int aHeight);
    void GetPosition(int &aX, int &aY, int &aWidth, int &aHeight);
    HWND GetHandle();
    bool IsVisible();
    QWidget *GetQWidget();
    LxString GetTitle() const;
    void SetTitle(const LxString &aTitle);
    static void DoEvents();

    bool eventFilter(QObject *aObject, QEvent *aEvent) override = 0;

protected:
    /// Builds the content into the current widget, Widget(). Starts with BeginLayout().
    virtual void CreateLayout() = 0;
    virtual void OnOpen() = 0;
    virtual void OnClose() = 0;

    /// The current widget, or null; never creates one.
    QWidget *Widget() const { return mWidget; }
    /// The dialog that the show operations made, or null.
    QDialog *Dialog() const { return mDialog; }
    /// Whether the content is shown in the window's own dialog.
    bool IsDialog() const { return mWidgetIsDialog; }
    bool IsOpen() const { return mOpen; }
    HWND ParentHandle() const { return mParentHandle; }
    const QString &Title() const { return mTitle; }
    int StoredWidth() const { return mWidth; }
    int StoredHeight() const { return mHeight; }

    /// The first call of every CreateLayout(): takes the content away that this window built earlier, never children of
    /// the host's own, and returns the widget to build into. That is the current widget, or, when a host's widget has a
    /// layout of its own, a container that was added to that layout and has this window as event filter too. What must
    /// survive of the earlier content is read, or taken out (setParent(nullptr)), before.
    QWidget *BeginLayout();
    /// What BeginLayout() returned last: the widget that carries the content, or null.
    QWidget *Content() const { return mContent; }
    /// MakeFixedSizeDialog() of FixedSizeDialog.h for the window's dialog; nothing when the content is not in it.
    void MakeFixedSizeDialog(int aWidth, int aHeight, const std::function<bool()> &aFits = {});
    /// Puts the widget back under the native parent that Create() gave it, if it has lost it: Qt may replace the native
    /// window of a widget, for example when the first OpenGL widget comes into it.
    void RestoreEmbedding();

private:
    void EnsureWidget();
    void SetWidget(QWidget *aWidget);
    void MakeDialog(QWidget *aParent);
    void FreeWidget(QWidget *aWidget);
    /// Opens the window in its widget, whichever that is, and shows it.
    void OpenWidget();
    void BuildContent();
    void DeleteContent();
    void ApplyPosition();
    void OnWidgetDestroyed();
    void End();

    QPointer<QWidget> mWidget;
    QString mTitle;
    int mX = -1;
    int mY = -1;
    int mWidth = -1;
    int mHeight = -1;
    QPointer<QDialog> mDialog;
    std::unique_ptr<QApplication> mOwnedApplication;
    bool mOpen = false;
    HWND mParentHandle = nullptr;

    bool mWidgetIsDialog = false;
    QPointer<QWidget> mContent;
    QList<QPointer<QObject>> mParts;   // The direct children of the widget that CreateLayout() made.
    QObjectList mOthers;               // Those that were there before it; only while it runs.
    HWND mEmbeddingParent = nullptr;   // Of the current widget.
    QPointer<QWidget> mPrivateWidget;  // The current plain widget, as long as no host has got it.
};
