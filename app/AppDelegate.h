#pragma once

#include <QObject>
#include <QPointer>

class QApplication;

namespace kavelo {

class MenuClass;

/// The application's delegate. It refers to the menu handler and ends the application when the last
/// window is closed.
class AppDelegate : public QObject
{
    Q_OBJECT

public:
    explicit AppDelegate(QApplication &application);

    /// The menu handler. Null until main() has set it.
    QPointer<MenuClass> menu;

    void applicationDidFinishLaunching();
    void applicationWillTerminate();
    [[nodiscard]] static bool applicationShouldTerminateAfterLastWindowClosed();
};

} // namespace kavelo
