#pragma once

#include <QtCore/QEvent>
#include <QtCore/QPointer>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QVBoxLayout>
#include <functional>
#include <string>
#include <vector>

#include "GuiTest.h"
#include "LxGUI/Frame/Wnd.h"

using Log = std::vector<std::string>;

/// A window of one line edit and one label that records what the frame does with it.
class TestWnd : public Wnd
{
    Q_OBJECT

public:
    TestWnd() = default;
    explicit TestWnd(Log &aLog) : mLog(aLog) {}
    ~TestWnd() override { mLog.emplace_back("destroyed"); }

    bool eventFilter(QObject *aObject, QEvent *aEvent) override
    {
        if (aObject == Widget() && aEvent->type() == QEvent::Show) {
            mLog.emplace_back("Show");
        }
        if (aObject == Content() && aEvent->type() == QEvent::Resize) {
            ++mContentResizes;
        }
        return false;
    }

    using Wnd::Content;
    using Wnd::Dialog;
    using Wnd::IsDialog;
    using Wnd::IsOpen;
    using Wnd::MakeFixedSizeDialog;
    using Wnd::ParentHandle;
    using Wnd::StoredHeight;
    using Wnd::StoredWidth;
    using Wnd::Title;
    using Wnd::Widget;

    Log mOwnLog;
    Log &mLog = mOwnLog;
    int mContentResizes = 0;
    QPointer<QLineEdit> mEdit;
    QPointer<QLabel> mLabel;
    std::function<void()> mInCreateLayout = [] {};
    std::function<void()> mInOnOpen = [] {};
    std::function<void()> mInOnClose = [] {};

public slots:
    void OnEditTextChanged(const QString &aText) { mLog.emplace_back("text " + aText.toStdString()); }

protected:
    void CreateLayout() override
    {
        mLog.emplace_back("CreateLayout");
        const QString text = mEdit ? mEdit->text() : QString();
        QWidget *widget = BeginLayout();
        auto *layout = new QVBoxLayout(widget);
        mEdit = new QLineEdit(text, widget);
        mLabel = new QLabel(QStringLiteral("label"), widget);
        layout->addWidget(mEdit);
        layout->addWidget(mLabel);
        connect(mEdit, SIGNAL(textChanged(QString)), this, SLOT(OnEditTextChanged(QString)));
        mInCreateLayout();
    }

    void OnOpen() override
    {
        mLog.emplace_back("OnOpen");
        mInOnOpen();
    }

    void OnClose() override
    {
        mLog.emplace_back("OnClose");
        mInOnClose();
    }
};

/// Chooses between the overloads of ShowModeless().
inline QWidget *const NoParent = nullptr;

/// Deletes what waits for it, as an event loop does when it returns.
inline void DeleteDeferred()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

/// Shows a window modally and calls a function in its loop.
inline LxResult RunModal(TestWnd &aWnd, const std::function<void(QDialog *)> &aAct)
{
    OnNextModal([aAct](QWidget *aModal) { aAct(qobject_cast<QDialog *>(aModal)); });
    return aWnd.ShowModal(nullptr);
}

inline const auto Accept = [](QDialog *aDialog) { aDialog->accept(); };
