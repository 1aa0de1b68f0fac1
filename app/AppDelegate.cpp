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

// There is nothing to prepare and nothing to save: all settings live in the unit.

void AppDelegate::applicationDidFinishLaunching() {}

void AppDelegate::applicationWillTerminate() {}

bool AppDelegate::applicationShouldTerminateAfterLastWindowClosed()
{
    return true;
}

} // namespace kavelo
