#include "RunLoop.h"

#include <QCoreApplication>
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

} // namespace kavelo
