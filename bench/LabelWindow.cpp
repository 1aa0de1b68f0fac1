#include <QApplication>
#include <QLabel>

/// The least that a program with a window and a text takes, for comparison. A text costs the fonts.
int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    QLabel window(QStringLiteral("Kavelo"));
    window.resize(680, 400);
    window.show();
    return QApplication::exec();
}
