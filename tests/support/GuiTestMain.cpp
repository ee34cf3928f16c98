#include <gmock/gmock.h>

#include <QtWidgets/QApplication>

// A test program with a QApplication that lives as long as the tests.
int main(int argc, char **argv)
{
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    testing::InitGoogleMock(&argc, argv);
    const int result = RUN_ALL_TESTS();
    // what the last test left to be deleted later: no event loop runs any more
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return result;
}
