#include "LxGUI/Frame/Wnd.h"

#include <QtWidgets/QLayout>
#include <QtWidgets/QMainWindow>
#include <utility>

#include "LxGUI/Frame/ContextMenuKey.h"
#include "LxGUI/Frame/FixedSizeDialog.h"
#include "LxGUI/Frame/NativeEmbedding.h"
#include "LxGUI/Frame/OwnedApplication.h"
#include "LxGUI/Frame/Text.h"

namespace
{

HWND NativeHandle(QWidget *aWidget)
{
    return reinterpret_cast<HWND>(static_cast<uintptr_t>(aWidget->winId()));
}

}  // namespace

Wnd::Wnd() : mOwnedApplication(OwnedApplication::Ensure()) {}

Wnd::~Wnd()
{
    // From here on nothing may reach the pure operations: neither a signal nor an event of what is ended below.
    mOpen = false;
    if (OwnedApplication::CanMakeWidgets()) {
        for (QWidget *widget : {mWidget.data(), static_cast<QWidget *>(mDialog), mContent.data()}) {
            if (widget) {
                widget->removeEventFilter(this);
                widget->disconnect(this);
            }
        }
        if (mWidget && mEmbeddingParent) {
            mWidget->hide();  // the native parent may go now: OpenGL must not draw where no window is any more
        }
        DeleteContent();
        FreeWidget(mDialog);
        FreeWidget(mPrivateWidget);
    }
    OwnedApplication::Release(std::move(mOwnedApplication));
}

// Showing and closing

LxResult Wnd::Create(HWND aParent, int /*aReserved*/)
{
    if (!OwnedApplication::CanMakeWidgets()) {
        return LxResultCode::InvalidArgument;
    }
    auto *widget = new QWidget(nullptr, aParent ? Qt::SubWindow : Qt::Widget);
    SetWidget(widget);
    mPrivateWidget = widget;
    OpenWidget();
    if (!aParent) {
        return LxResultCode::InvalidArgument;
    }
    // what a platform without native windows says of a widget is only a number
    const HWND child = NativeWindows().HasWindows() ? NativeHandle(mWidget) : nullptr;
    if (!child) {
        return LxResultCode::InvalidArgument;
    }
    mEmbeddingParent = aParent;
    EmbedInParent(NativeWindows(), child, aParent);
    // Else Qt chooses a size of its own when it shows a native window that it has made anew.
    mWidget->setAttribute(Qt::WA_Resized);
    return LxResultCode::OK;
}

LxResult Wnd::Create(QWidget *aHost)
{
    if (!aHost) {
        return LxResultCode::InvalidArgument;
    }
    SetWidget(aHost);
    OpenWidget();
    return LxResultCode::OK;
}

LxResult Wnd::ShowModal(QWidget *aParent)
{
    if (!OwnedApplication::CanMakeWidgets()) {
        return LxResultCode::InvalidArgument;
    }
    if (!mDialog) {
        MakeDialog(aParent);
    }
    if (mWidget && mWidget->isVisible()) {
        return LxResultCode::AlreadyShown;
    }
    SetWidget(mDialog);  // Another widget may have been adopted since the dialog was made.
    BuildContent();
    mOpen = true;
    OnOpen();
    mWidget->installEventFilter(this);
    mWidget->setWindowTitle(mTitle);
    ApplyPosition();

    const QPointer<Wnd> self(this);
    const int outcome = mDialog->exec();
    if (!self) {
        OwnedApplication::CollectReleased();
        return LxResultCode::Cancelled;
    }
    return outcome == QDialog::Accepted ? LxResultCode::OK : LxResultCode::Cancelled;
}

LxResult Wnd::ShowModeless(QWidget *aParent)
{
    if (!OwnedApplication::CanMakeWidgets()) {
        return LxResultCode::InvalidArgument;
    }
    if (mDialog && mDialog->isVisible()) {
        mDialog->raise();
        mDialog->activateWindow();
        return LxResultCode::OK;
    }
    const QPointer<QDialog> replaced = mDialog;
    if (replaced) {
        replaced->close();
    }
    MakeDialog(aParent);
    BuildContent();
    FreeWidget(replaced);
    mWidget->installEventFilter(this);
    mWidget->setWindowTitle(mTitle);
    ApplyPosition();
    mWidget->show();
    mOpen = true;
    OnOpen();
    return LxResultCode::OK;
}

LxResult Wnd::ShowModeless(HWND aParent)
{
    EnsureWidget();
    if (!mWidget) {
        return LxResultCode::InvalidArgument;
    }
    if (aParent) {
        mParentHandle = aParent;
        if (const HWND child = NativeHandle(mWidget)) {
            AttachToParent(NativeWindows(), child, aParent);
        }
    }
    return ShowModeless(static_cast<QWidget *>(nullptr));
}

LxResult Wnd::Close()
{
    if (std::exchange(mOpen, false)) {
        OnClose();
        if (mDialog && OwnedApplication::CanMakeWidgets()) {
            mDialog->setVisible(false);
        }
    }
    return LxResultCode::OK;
}

void Wnd::DoEvents()
{
    OwnedApplication::ProcessEvents();
}

// Properties

void Wnd::SetPosition(int aX, int aY, int aWidth, int aHeight)
{
    mX = aX;
    mY = aY;
    mWidth = aWidth;
    mHeight = aHeight;
    ApplyPosition();
}

void Wnd::GetPosition(int &aX, int &aY, int &aWidth, int &aHeight)
{
    if (mWidget) {
        mWidth = mWidget->width();
        mHeight = mWidget->height();
        mX = mWidget->x();
        mY = mWidget->y();
    }
    aX = mX;
    aY = mY;
    aWidth = mWidth;
    aHeight = mHeight;
}

HWND Wnd::GetHandle()
{
    return IsVisible() ? NativeHandle(mWidget) : nullptr;
}

bool Wnd::IsVisible()
{
    EnsureWidget();
    return mWidget && OwnedApplication::CanMakeWidgets() && mWidget->isVisible();
}

QWidget *Wnd::GetQWidget()
{
    EnsureWidget();
    mPrivateWidget = nullptr;  // The host knows it now and may keep it.
    return mWidget;
}

LxString Wnd::GetTitle() const
{
    return ToLxString(mTitle);
}

void Wnd::SetTitle(const LxString &aTitle)
{
    mTitle = ToQString(aTitle);
    if (mWidget && OwnedApplication::CanMakeWidgets()) {
        mWidget->setWindowTitle(mTitle);
    }
}

// Content

QWidget *Wnd::BeginLayout()
{
    DeleteContent();
    mOthers = mWidget->children();
    mContent = mWidget;
    auto *mainWindow = qobject_cast<QMainWindow *>(mWidget.data());
    if (mWidget->layout()) {
        mContent = new QWidget(mWidget);
        mContent->installEventFilter(this);
        if (mainWindow && !mainWindow->centralWidget()) {
            mainWindow->setCentralWidget(mContent);
        }
        else {
            mWidget->layout()->addWidget(mContent);
        }
    }
    return mContent;
}

void Wnd::MakeFixedSizeDialog(int aWidth, int aHeight, const std::function<bool()> &aFits)
{
    if (IsDialog()) {
        ::MakeFixedSizeDialog(mWidget, aWidth, aHeight, aFits);
    }
}

void Wnd::RestoreEmbedding()
{
    const HWND child = mWidget && mEmbeddingParent ? NativeHandle(mWidget) : nullptr;
    if (child && NativeWindows().GetParent(child) != mEmbeddingParent) {
        EmbedInParent(NativeWindows(), child, mEmbeddingParent);
    }
}

void Wnd::OpenWidget()
{
    BuildContent();
    mOpen = true;
    OnOpen();
    mWidget->installEventFilter(this);
    mWidget->show();
    mWidget->setWindowTitle(mTitle);
    ApplyPosition();
}

void Wnd::BuildContent()
{
    mOthers = mWidget->children();
    CreateLayout();
    ContextMenuKey::Install(mContent ? mContent : mWidget);
    for (QObject *child : mWidget->children()) {
        if (!mOthers.contains(child)) {
            mParts.append(child);
        }
    }
    mOthers.clear();
}

void Wnd::DeleteContent()
{
    for (const QPointer<QObject> &part : std::exchange(mParts, {})) {
        if (!part || !part->parent()) {
            continue;  // the window has taken it out and keeps it
        }
        // What goes must not call slots that already expect what comes.
        disconnect(part, nullptr, this, nullptr);
        for (QObject *object : part->findChildren<QObject *>()) {
            disconnect(object, nullptr, this, nullptr);
        }
        if (auto *widget = qobject_cast<QWidget *>(part.data())) {
            widget->setParent(nullptr);
            widget->deleteLater();  // One of its own slots may be on the stack.
        }
        else {
            delete part;  // At once: the widget takes no second layout, and an old shortcut would rival the new one.
        }
    }
}

// The widget

void Wnd::EnsureWidget()
{
    if (mWidget || !OwnedApplication::CanMakeWidgets()) {
        return;
    }
    auto *widget = new QWidget;
    SetWidget(widget);
    mPrivateWidget = widget;
    BuildContent();
    mWidget->installEventFilter(this);
}

void Wnd::SetWidget(QWidget *aWidget)
{
    if (mWidget == aWidget) {
        return;
    }
    if (mWidget) {
        mWidget->removeEventFilter(this);
        disconnect(mWidget, &QObject::destroyed, this, &Wnd::OnWidgetDestroyed);
        if (mWidgetIsDialog) {
            mWidget->hide();  // Its content moves away; an empty dialog is of no use.
        }
    }
    FreeWidget(std::exchange(mPrivateWidget, nullptr));
    OwnedApplication::LeaveAloneAtExit();
    mWidget = aWidget;
    mEmbeddingParent = nullptr;
    mWidgetIsDialog = aWidget == mDialog;
    connect(mWidget, &QObject::destroyed, this, &Wnd::OnWidgetDestroyed);
}

void Wnd::MakeDialog(QWidget *aParent)
{
    mDialog = new QDialog(aParent);
    SetWidget(mDialog);
    connect(mDialog, &QDialog::finished, this, [this] {
        if (IsDialog()) {
            End();
        }
    });
}

void Wnd::FreeWidget(QWidget *aWidget)
{
    // A plain widget that a host has put under a parent of its own is the host's.
    if (aWidget && (!aWidget->parent() || qobject_cast<QDialog *>(aWidget))) {
        aWidget->hide();
        aWidget->deleteLater();
    }
}

void Wnd::ApplyPosition()
{
    if (!mWidget || !OwnedApplication::CanMakeWidgets()) {
        return;
    }
    if (mWidth >= 1 && mHeight >= 1) {
        mWidget->resize(mWidth, mHeight);
    }
    if (mX >= 1 && mY >= 1) {
        mWidget->move(mX, mY);
    }
}

void Wnd::OnWidgetDestroyed()
{
    // The widget is no longer usable, but its children still live: what runs is stopped before they go.
    if (mContent == mWidget) {
        mContent = nullptr;
    }
    if (std::exchange(mWidgetIsDialog, false)) {
        mDialog = nullptr;
    }
    mWidget = nullptr;
    End();
}

void Wnd::End()
{
    if (std::exchange(mOpen, false)) {
        OnClose();
    }
}
