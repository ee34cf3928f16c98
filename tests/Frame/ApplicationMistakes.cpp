// The QApplication comes at the wrong time, goes too early or is none for widgets.

#include <QtCore/QTimer>
#include <QtWidgets/QApplication>
#include <QtWidgets/QDialog>
#include <QtWidgets/QWidget>

#include "HostMistakes.h"

namespace
{

void MakeTheApplicationLater(const Kind &aKind)
{
    const auto window = aKind.mMake();
    {
        const HostApplication application;
        CHECK(window->Get().ShowModeless(NoParent).IsOK());
        Turn();
        CHECK(window->Get().IsVisible());
        window->Get().Close();
        QTimer::singleShot(0, qApp, [&] { qobject_cast<QDialog *>(window->Get().GetQWidget())->accept(); });
        CHECK(window->Get().ShowModal(NoParent).IsOK());
    }
    CHECK(!window->Get().IsVisible());
}

void MakeTheApplicationUnderAShownWindow(const Kind &aKind)
{
    auto window = aKind.mMake();
    window->Get().ShowModeless();
    LxWnd::DoEvents();
    const HostApplication application;
    Turn();
    CHECK(window->Get().IsVisible());
    window.reset();
    Turn();
    const auto next = aKind.mMake();
    CHECK(next->Get().ShowModeless().IsOK());
    Turn();
}

void MakeAWindowAfterTheApplication(const Kind &aKind)
{
    {
        const HostApplication application;
    }
    auto window = aKind.mMake();
    CHECK(window->Get().ShowModeless().IsOK());
    LxWnd::DoEvents();
    CHECK(window->Get().IsVisible());
    window.reset();
    CHECK(QCoreApplication::instance() == nullptr);
}

void EndTheApplicationUnderAShownWindow(const Kind &aKind)
{
    auto application = std::make_unique<HostApplication>();
    auto shown = aKind.mMake();
    auto hidden = aKind.mMake();
    auto embedded = aKind.mMake();
    auto *host = new QWidget;
    shown->Get().ShowModeless();
    embedded->Get().Create(host);
    Turn();
    delete host;  // a widget of the host's own does not outlive its application
    application.reset();
    for (const auto &window : {shown.get(), hidden.get(), embedded.get()}) {
        CheckRefuses(window->Get());
    }
    LxWnd::DoEvents();
    shown.reset();
}

void DestroyTheFirstWindowBeforeTheOthers(const Kind &aKind)
{
    auto first = aKind.mMake();  // makes the application, which goes with it
    const auto shown = aKind.mMake();
    const auto hidden = aKind.mMake();
    CHECK(shown->Get().ShowModeless().IsOK());
    LxWnd::DoEvents();
    first.reset();
    CHECK(QCoreApplication::instance() == nullptr);
    CheckRefuses(shown->Get());
    CheckRefuses(hidden->Get());
}

void UseAnApplicationWithoutWidgets(const Kind &aKind)
{
    int count = 1;
    char name[] = "host";
    char *arguments[] = {name, nullptr};
    const QCoreApplication application(count, arguments);
    const auto window = aKind.mMake();
    CheckRefuses(window->Get());
    CHECK(window->Get().GetQWidget() == nullptr);
}

void LeaveWindowsToTheEndOfTheProgram(const Kind &aKind)
{
    static std::vector<std::unique_ptr<AnyWindow>> sWindows;
    sWindows.push_back(aKind.mMake());
    sWindows.back()->Get().ShowModeless();
    LxWnd::DoEvents();
}

}  // namespace

std::vector<Mistake> ApplicationMistakes()
{
    return {
        {"MakeTheApplicationLater", MakeTheApplicationLater, "Make the QApplication before the first window.", false,
         true},
        {"MakeTheApplicationUnderAShownWindow", MakeTheApplicationUnderAShownWindow,
         "Make the QApplication before the first window.", false, true},
        {"MakeAWindowAfterTheApplication", MakeAWindowAfterTheApplication, ""},
        {"EndTheApplicationUnderAShownWindow", EndTheApplicationUnderAShownWindow, "", false, true},
        {"DestroyTheFirstWindowBeforeTheOthers", DestroyTheFirstWindowBeforeTheOthers, "", false, true},
        {"UseAnApplicationWithoutWidgets", UseAnApplicationWithoutWidgets, ""},
        {"LeaveWindowsToTheEndOfTheProgram", LeaveWindowsToTheEndOfTheProgram, ""},
    };
}
