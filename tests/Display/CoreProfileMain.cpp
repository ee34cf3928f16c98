#include <gmock/gmock.h>

#include <QtGui/QSurfaceFormat>
#include <QtWidgets/QApplication>

// A host that draws by modern OpenGL itself: its default is a core profile, which has no fixed pipeline, and all its
// contexts share their objects.
int main(int argc, char **argv)
{
    QSurfaceFormat format;
    format.setVersion(3, 3);
    format.setProfile(QSurfaceFormat::CoreProfile);
    QSurfaceFormat::setDefaultFormat(format);
    QApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
