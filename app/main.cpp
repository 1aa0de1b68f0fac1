#include "AppDelegate.h"
#include "ApplicationIcon.h"
#include "MainWindowViewController.h"
#include "MenuClass.h"
#include "ProgramStyle.h"

#include <QApplication>

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QApplication::setStyle(new kavelo::ProgramStyle);
    QApplication::setApplicationName(QStringLiteral("kavelo"));
    QApplication::setDesktopFileName(QStringLiteral(KAVELO_APP_ID));
    QApplication::setWindowIcon(kavelo::applicationIcon());
    kavelo::AppDelegate delegate(application);
    kavelo::MainWindowViewController window;
    kavelo::MenuClass menu(window.menuItems());
    delegate.menu = &menu;
    window.show();
    return QApplication::exec();
}
