#include <gmock/gmock.h>

#include <QtTest/QTest>
#include <memory>

#include "GuiTest.h"
#include "TestWnd.h"

using testing::ElementsAre;
using testing::IsEmpty;

TEST(ShowModal, OpensBeforeTheDialogIsShown)
{
    TestWnd wnd;
    wnd.SetTitle("modal");
    wnd.SetPosition(12, 34, 300, 200);
    QString title;
    QPoint position;
    QSize size;
    const LxResult result = RunModal(wnd, [&](QDialog *aDialog) {
        title = aDialog->windowTitle();
        position = aDialog->pos();
        size = aDialog->size();
        aDialog->accept();
    });
    EXPECT_EQ(result.GetCode(), 0u);
    EXPECT_THAT(wnd.mLog, ElementsAre("CreateLayout", "OnOpen", "Show", "OnClose"));
    EXPECT_EQ(title, QStringLiteral("modal"));
    EXPECT_EQ(position, QPoint(12, 34));
    EXPECT_EQ(size, QSize(300, 200));
}

TEST(ShowModal, OtherEndsAreCancelled)
{
    TestWnd wnd;
    EXPECT_EQ(RunModal(wnd, [](QDialog *aDialog) { aDialog->reject(); }).GetCode(), 0x4002u);
    EXPECT_EQ(RunModal(wnd, [](QDialog *aDialog) { aDialog->done(7); }).GetCode(), 0x4002u);
    EXPECT_EQ(RunModal(wnd, [](QDialog *aDialog) { aDialog->close(); }).GetCode(), 0x4002u);
    EXPECT_EQ(RunModal(wnd, Accept).GetCode(), 0u);
}

TEST(ShowModal, EveryEndByTheUserEndsTheWorkOnce)
{
    const std::function<void(QDialog *)> ends[] = {
        [](QDialog *aDialog) { QTest::keyClick(aDialog, Qt::Key_Escape); },
        [](QDialog *aDialog) { aDialog->close(); },
        [](QDialog *aDialog) { aDialog->accept(); },
    };
    for (const auto &end : ends) {
        TestWnd wnd;
        RunModal(wnd, end);
        EXPECT_FALSE(wnd.IsOpen());
        wnd.Close();
        EXPECT_THAT(wnd.mLog, ElementsAre("CreateLayout", "OnOpen", "Show", "OnClose"));
    }
}

TEST(ShowModal, CloseEndsItAsCancelled)
{
    TestWnd wnd;
    LxResult closed(99);
    const LxResult result = RunModal(wnd, [&](QDialog *) { closed = wnd.Close(); });
    EXPECT_EQ(result.GetCode(), 0x4002u);
    EXPECT_EQ(closed.GetCode(), 0u);
    EXPECT_THAT(wnd.mLog, ElementsAre("CreateLayout", "OnOpen", "Show", "OnClose"));
}

TEST(ShowModal, VisibleWindowIsLeftAlone)
{
    TestWnd wnd;
    wnd.ShowModeless(NoParent);
    wnd.mLog.clear();
    const QPointer<QDialog> dialog = wnd.Dialog();
    EXPECT_EQ(wnd.ShowModal(nullptr).GetCode(), 28u);
    EXPECT_THAT(wnd.mLog, IsEmpty());
    EXPECT_EQ(wnd.Dialog(), dialog);
    EXPECT_TRUE(wnd.IsOpen());
}

TEST(ShowModal, NestedInItselfIsRefused)
{
    TestWnd wnd;
    LxResult nested;
    RunModal(wnd, [&](QDialog *aDialog) {
        nested = wnd.ShowModal(nullptr);
        aDialog->accept();
    });
    EXPECT_EQ(nested.GetCode(), 28u);
}

TEST(ShowModal, AgainReusesTheDialogWithFreshContent)
{
    QWidget parent;
    TestWnd wnd;
    QLineEdit *firstEdit = nullptr;
    RunModal(wnd, [&](QDialog *aDialog) {
        firstEdit = wnd.mEdit;
        wnd.mEdit->setText(QStringLiteral("kept"));
        aDialog->accept();
    });
    const QPointer<QDialog> first = wnd.Dialog();
    int edits = 0;
    QRect editGeometry;
    OnNextModal([&](QWidget *aModal) {
        edits = static_cast<int>(aModal->findChildren<QLineEdit *>().size());
        editGeometry = wnd.mEdit->geometry();
        qobject_cast<QDialog *>(aModal)->accept();
    });
    wnd.SetPosition(-1, -1, 333, 222);
    EXPECT_EQ(wnd.ShowModal(&parent).GetCode(), 0u);
    EXPECT_EQ(wnd.Dialog(), first);
    EXPECT_EQ(first->parentWidget(), nullptr) << "a reused dialog keeps its parent";
    EXPECT_EQ(edits, 1);
    EXPECT_NE(wnd.mEdit, firstEdit);
    EXPECT_EQ(wnd.mEdit->text(), QStringLiteral("kept"));
    EXPECT_GT(editGeometry.width(), 250) << "the new content has no layout";
}

TEST(ShowModal, ParentOfTheFirstShowIsTheDialogs)
{
    QWidget parent;
    TestWnd wnd;
    OnNextModal([](QWidget *aModal) { qobject_cast<QDialog *>(aModal)->accept(); });
    wnd.ShowModal(&parent);
    EXPECT_EQ(wnd.Dialog()->parentWidget(), &parent);
}

TEST(ShowModal, AReusedDialogBecomesTheWidgetAgain)
{
    TestWnd wnd;
    RunModal(wnd, Accept);
    QWidget host;
    wnd.Create(&host);
    host.hide();
    QWidget *shown = nullptr;
    RunModal(wnd, [&](QDialog *aDialog) {
        shown = wnd.Widget();
        aDialog->accept();
    });
    EXPECT_EQ(shown, wnd.Dialog());
    EXPECT_EQ(wnd.mEdit->parentWidget(), wnd.Dialog());
}

TEST(ShowModal, AVisibleHostWidgetRefusesAnExistingDialog)
{
    TestWnd wnd;
    RunModal(wnd, Accept);
    QWidget host;
    wnd.Create(&host);
    EXPECT_EQ(wnd.ShowModal(nullptr).GetCode(), 28u);
    EXPECT_EQ(wnd.Widget(), &host);
}

TEST(ShowModal, AVisibleHostWidgetDoesNotRefuseANewDialog)
{
    QWidget host;
    TestWnd wnd;
    wnd.Create(&host);
    EXPECT_EQ(RunModal(wnd, Accept).GetCode(), 0u);
    EXPECT_EQ(wnd.Widget(), wnd.Dialog());
    EXPECT_TRUE(host.isVisible());
}

TEST(ShowModal, ADialogThatDiesWithItsParentIsCancelled)
{
    auto parent = std::make_unique<QWidget>();
    TestWnd wnd;
    bool editLived = false;
    wnd.mInOnClose = [&] { editLived = !wnd.mEdit.isNull() && wnd.Widget() == nullptr; };
    OnNextModal([&](QWidget *) { parent.reset(); });
    EXPECT_EQ(wnd.ShowModal(parent.get()).GetCode(), 0x4002u);
    EXPECT_THAT(wnd.mLog, ElementsAre("CreateLayout", "OnOpen", "Show", "OnClose"));
    EXPECT_TRUE(editLived);
    EXPECT_EQ(wnd.Dialog(), nullptr);
    EXPECT_EQ(RunModal(wnd, Accept).GetCode(), 0u);
}

TEST(ShowModal, AFormerHostMayDieInTheLoop)
{
    auto host = std::make_unique<QWidget>();
    TestWnd wnd;
    wnd.Create(host.get());
    EXPECT_EQ(RunModal(wnd,
                       [&](QDialog *aDialog) {
                           host.reset();
                           EXPECT_TRUE(wnd.IsOpen());
                           EXPECT_EQ(wnd.mEdit->parentWidget(), aDialog);
                           aDialog->accept();
                       })
                  .GetCode(),
              0u);
}

TEST(ShowModal, TheWindowAndTheParentMayBothBeDestroyedInItsLoop)
{
    auto parent = std::make_unique<QWidget>();
    auto *wnd = new TestWnd;
    OnNextModal([&](QWidget *) {
        delete wnd;
        parent.reset();
    });
    EXPECT_EQ(wnd->ShowModal(parent.get()).GetCode(), 0x4002u);
}

TEST(ShowModal, TheWindowMayBeDestroyedInItsLoop)
{
    Log log;
    auto *wnd = new TestWnd(log);
    QPointer<QDialog> dialog;
    OnNextModal([&](QWidget *) {
        dialog = wnd->Dialog();
        delete wnd;
    });
    EXPECT_EQ(wnd->ShowModal(nullptr).GetCode(), 0x4002u);
    EXPECT_THAT(log, ElementsAre("CreateLayout", "OnOpen", "Show", "destroyed"));
    ASSERT_NE(dialog, nullptr) << "a slot of the dialog may be on the stack";
    EXPECT_FALSE(dialog->isVisible());
    DeleteDeferred();
    EXPECT_EQ(dialog, nullptr);
}
