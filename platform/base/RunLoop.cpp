#include "RunLoop.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QTimer>

namespace kavelo {

void runEventLoop(std::chrono::milliseconds slice)
{
    // The timer ends the wait for events after `slice`.
    QTimer alarm;
    alarm.setSingleShot(true);
    alarm.start(slice);
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

void runEventLoopFor(std::chrono::milliseconds time)
{
    const QDeadlineTimer end(time);
    while (!end.hasExpired()) {
        runEventLoop(std::chrono::ceil<std::chrono::milliseconds>(end.remainingTimeAsDuration()));
    }
}

} // namespace kavelo
