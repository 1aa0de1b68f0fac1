#include <QApplication>
#include <QWidget>

/// The least that a program with a window takes, for comparison.
int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    QWidget window;
    window.resize(680, 400);
    window.show();
    return QApplication::exec();
}
