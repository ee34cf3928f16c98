// Windows and the widgets around them end in the wrong order, or while they are shown.

#include <QtCore/QPointer>
#include <QtCore/QTimer>
#include <QtWidgets/QApplication>
#include <QtWidgets/QVBoxLayout>
#include <QtWidgets/QWidget>

#include "HostMistakes.h"

namespace
{

void DestroyAModalWindow(const Kind &aKind)
{
    const HostApplication application;
    auto window = aKind.mMake();
    QTimer::singleShot(0, qApp, [&] { window.reset(); });
    CHECK(window->Get().ShowModal(NoParent).GetCode() == NotAccepted);
    CHECK(!window);
    Turn();
}

void DestroyAModelessWindow(const Kind &aKind)
{
    const HostApplication application;
    auto window = aKind.mMake();
    window->Get().ShowModeless();
    Turn();
    const QPointer<QWidget> dialog = window->Get().GetQWidget();
    window.reset();
    Turn();
    CHECK(dialog.isNull());
}

void DestroyAnEmbeddedWindow(const Kind &aKind)
{
    const HostApplication application;
    QWidget host;
    auto *layout = new QVBoxLayout(&host);
    auto *widget = new QWidget;
    layout->addWidget(widget);
    host.show();
    auto window = aKind.mMake();
    CHECK(window->Get().Create(widget).IsOK());
    Turn();
    window.reset();
    Turn();
    CHECK(widget->isVisible());
    CHECK(widget->findChildren<QWidget *>().isEmpty());
    auto top = aKind.mMake();
    CHECK(top->Get().Create(static_cast<HWND>(nullptr), 0).GetCode() == Refused);  // shown all the same
    CHECK(top->Get().IsVisible());
    top.reset();
    Turn();
}

void DestroyTheHostsWidgetFirst(const Kind &aKind)
{
    const HostApplication application;
    auto host = std::make_unique<QWidget>();
    auto *widget = new QWidget(host.get());
    host->show();
    const auto window = aKind.mMake();
    window->Get().Create(widget);
    Turn();
    host.reset();
    Turn();
    CHECK(!window->Get().IsVisible());
    window->Get().SetTitle("still usable");
    CHECK(window->Get().Close().IsOK());
    CHECK(window->Get().ShowModeless(NoParent).IsOK());
    Turn();
}

void DestroyTheParentOfADialogFirst(const Kind &aKind)
{
    const HostApplication application;
    auto parent = std::make_unique<QWidget>();
    parent->show();
    const auto modeless = aKind.mMake();
    modeless->Get().ShowModeless(parent.get());
    const auto modal = aKind.mMake();
    QTimer::singleShot(0, qApp, [&] { parent.reset(); });
    CHECK(modal->Get().ShowModal(parent.get()).GetCode() == NotAccepted);
    Turn();
    for (const auto &window : {modeless.get(), modal.get()}) {
        CHECK(!window->Get().IsVisible());
        CHECK(window->Get().ShowModeless(NoParent).IsOK());
    }
    Turn();
}

void DestroyEverythingAtOnce(const Kind &aKind)
{
    const HostApplication application;
    auto parent = std::make_unique<QWidget>();
    parent->show();
    auto window = aKind.mMake();
    QTimer::singleShot(0, qApp, [&] {
        parent.reset();
        window.reset();
    });
    CHECK(window->Get().ShowModal(parent.get()).GetCode() == NotAccepted);
    Turn();
}

void ShowAModalWindowTwice(const Kind &aKind)
{
    const HostApplication application;
    const auto window = aKind.mMake();
    unsigned code = 0;
    QTimer::singleShot(0, qApp, [&] {
        code = window->Get().ShowModal(NoParent).GetCode();
        window->Get().Close();
    });
    CHECK(window->Get().ShowModal(NoParent).GetCode() == NotAccepted);
    CHECK(code == 28);
}

}  // namespace

std::vector<Mistake> LifetimeMistakes()
{
    return {
        {"DestroyAModalWindow", DestroyAModalWindow, ""},
        {"DestroyAModelessWindow", DestroyAModelessWindow, ""},
        {"DestroyAnEmbeddedWindow", DestroyAnEmbeddedWindow, ""},
        {"DestroyTheHostsWidgetFirst", DestroyTheHostsWidgetFirst, ""},
        {"DestroyTheParentOfADialogFirst", DestroyTheParentOfADialogFirst, ""},
        {"DestroyEverythingAtOnce", DestroyEverythingAtOnce, ""},
        {"ShowAModalWindowTwice", ShowAModalWindowTwice, ""},
    };
}
