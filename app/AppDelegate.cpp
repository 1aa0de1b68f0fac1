#include "AppDelegate.h"

#include "MenuClass.h"

#include <QApplication>
#include <QTimer>

namespace kavelo {

AppDelegate::AppDelegate(QApplication &application)
{
    QApplication::setQuitOnLastWindowClosed(applicationShouldTerminateAfterLastWindowClosed());
    connect(&application, &QApplication::aboutToQuit, this, &AppDelegate::applicationWillTerminate);
    QTimer::singleShot(0, this, &AppDelegate::applicationDidFinishLaunching);
}

// All settings are stored in the unit. Nothing is loaded at the start, and nothing is saved at the
// end.

void AppDelegate::applicationDidFinishLaunching() {}

void AppDelegate::applicationWillTerminate() {}

bool AppDelegate::applicationShouldTerminateAfterLastWindowClosed()
{
    return true;
}

} // namespace kavelo
