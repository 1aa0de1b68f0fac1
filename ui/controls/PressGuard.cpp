#include "PressGuard.h"

#include <QApplication>
#include <QDialog>
#include <QKeyEvent>
#include <QTimer>
#include <QWidget>

namespace kavelo {
namespace {

using std::chrono::milliseconds;

milliseconds mouseQuiet()
{
    return milliseconds(QApplication::doubleClickInterval());
}

/// Whether the object is a window or a dialog, and not a menu, a list or a tool tip.
bool isWindow(const QObject *object)
{
    const auto *widget = qobject_cast<const QWidget *>(object);
    return widget != nullptr &&
           (widget->windowType() == Qt::Window || widget->windowType() == Qt::Dialog);
}

/// Whether the key can press a button: the button with the focus, or a button anywhere in the
/// window.
bool pressesButtons(const QKeyEvent &event)
{
    const int key = event.key();
    return key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Escape ||
           key == Qt::Key_Space;
}

/// Activates a new window again after a moment. A second press on the button that opened it may
/// make the window manager leave the focus with the old window.
void activateLater(QWidget &window)
{
    QTimer::singleShot(mouseQuiet(), &window, [&window] {
        if (window.isVisible() && QApplication::activeModalWidget() == nullptr &&
            QGuiApplication::applicationState() == Qt::ApplicationActive) {
            window.activateWindow();
        }
    });
}

} // namespace

PressGuard::PressGuard()
{
    qApp->installEventFilter(this);
}

bool PressGuard::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::Show:
    case QEvent::Hide:
        if (isWindow(watched)) {
            m_sinceChange.start();
            m_change = m_last;
            if (event->type() == QEvent::Show && qobject_cast<QDialog *>(watched) != nullptr) {
                activateLater(*static_cast<QWidget *>(watched));
            }
        }
        return false;
    case QEvent::ShortcutOverride: // sent before the key press, to find shortcuts
    case QEvent::KeyPress: {
        const auto &press = static_cast<QKeyEvent &>(*event);
        m_last = press.timestamp();
        const bool isIgnored =
            pressesButtons(press) && (isRepeat(press) || isTooSoon(press, KeyQuiet));
        if (isIgnored) {
            event->accept(); // otherwise Qt would still look for a shortcut
        }
        return isIgnored;
    }
    case QEvent::KeyRelease:
        m_last = static_cast<QKeyEvent *>(event)->timestamp();
        if (pressesButtons(static_cast<QKeyEvent &>(*event))) {
            m_lastRelease = m_last;
        }
        return false;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        m_last = static_cast<QMouseEvent *>(event)->timestamp();
        return isTooSoon(static_cast<QMouseEvent &>(*event), mouseQuiet());
    case QEvent::MouseButtonRelease:
        m_last = static_cast<QMouseEvent *>(event)->timestamp();
        return false;
    default:
        return false;
    }
}

/// A held key sends many presses. X11 sends a release before each of them, with the same time, and
/// Qt does not always notice that it is a repeat.
bool PressGuard::isRepeat(const QKeyEvent &press) const
{
    return press.isAutoRepeat() || (m_lastRelease != 0 && press.timestamp() == m_lastRelease);
}

/// Whether less than `quiet` has passed since a window was shown or hidden, or since the press that
/// did so.
bool PressGuard::isTooSoon(const QInputEvent &press, milliseconds quiet) const
{
    const auto length = quiet.count();
    return !m_sinceChange.hasExpired(length) ||
           (m_change != 0 && press.timestamp() - m_change < static_cast<quint64>(length));
}

} // namespace kavelo
