#include <QApplication>
#include <QWidget>

/// A program with an empty window: the least that any program with a window needs, for comparison.
int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    QWidget window;
    window.resize(680, 400);
    window.show();
    return QApplication::exec();
}
