// What the start of the viewer is compared with.

#include <QtWidgets/QApplication>
#include <QtWidgets/QWidget>

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QWidget window;
    window.show();
    return QApplication::exec();
}
