#pragma once

#include <QObject>
#include <QPointer>

class QApplication;

namespace kavelo {

class MenuClass;

/// The application's delegate: holds the menu handler and says when the application ends.
class AppDelegate : public QObject
{
    Q_OBJECT

public:
    explicit AppDelegate(QApplication &application);

    /// The menu handler; null until there is one.
    QPointer<MenuClass> menu;

    void applicationDidFinishLaunching();
    void applicationWillTerminate();
    [[nodiscard]] static bool applicationShouldTerminateAfterLastWindowClosed();
};

} // namespace kavelo
