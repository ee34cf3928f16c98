#include "GuiTest.h"

#include <gtest/gtest.h>

#include <QtCore/QElapsedTimer>
#include <QtCore/QTimer>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QWidget>
#include <memory>

bool WaitForGui(const std::function<bool()> &aCondition, int aTimeout)
{
    return QTest::qWaitFor(aCondition, aTimeout);
}

void OnNextModal(std::function<void(QWidget *)> aAct, int aTimeout)
{
    auto *timer = new QTimer(qApp);
    QElapsedTimer clock;
    clock.start();
    QObject::connect(timer, &QTimer::timeout, qApp, [timer, clock, aTimeout, act = std::move(aAct)] {
        QWidget *modal = QApplication::activeModalWidget();
        if (modal && modal->isVisible()) {
            timer->stop();
            timer->deleteLater();
            act(modal);
        }
        else if (clock.elapsed() > aTimeout) {
            timer->stop();
            timer->deleteLater();
            ADD_FAILURE() << "no modal widget appeared";
        }
    });
    timer->start(1);
}

struct ExpectedBox::State
{
    bool mShown = false;
    QString mTitle;
    QString mText;
};

ExpectedBox::ExpectedBox() : mState(std::make_shared<State>())
{
    OnNextModal([state = mState](QWidget *aWidget) {
        auto *box = qobject_cast<QMessageBox *>(aWidget);
        ASSERT_NE(box, nullptr) << "a modal widget that is no message box";
        state->mShown = true;
        state->mTitle = box->windowTitle();
        state->mText = box->text();
        box->accept();
    });
}

bool ExpectedBox::WasShown() const
{
    return mState->mShown;
}

QString ExpectedBox::Title() const
{
    return mState->mTitle;
}

QString ExpectedBox::Text() const
{
    return mState->mText;
}

QImage Grab(QWidget *aWidget)
{
    return aWidget->grab().toImage().convertToFormat(QImage::Format_RGB32);
}
