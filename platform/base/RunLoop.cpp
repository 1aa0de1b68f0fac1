#include "RunLoop.h"

#include <QCoreApplication>
#include <QTimer>

namespace kavelo {

void runEventLoop(std::chrono::milliseconds slice)
{
    // The timer is there only to end the sleep when the slice is over.
    QTimer alarm;
    alarm.setSingleShot(true);
    alarm.start(slice);
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

} // namespace kavelo
