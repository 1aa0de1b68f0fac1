#include "PressGuard.h"

#include <QApplication>
#include <QDialog>
#include <QKeyEvent>
#include <QTimer>
#include <QWidget>

#include <algorithm>

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
bool pressesButtons(const QEvent *event)
{
    const int key = static_cast<const QKeyEvent *>(event)->key();
    return key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Escape ||
           key == Qt::Key_Space;
}

/// Activates a new window again after a moment. A second press on the button that opened it may
/// make the window manager leave the focus with the old window.
void activateLater(QWidget &window)
{
    QTimer::singleShot(mouseQuiet(), &window, [&window] {
        const QWidget *box = QApplication::activeModalWidget();
        if (window.isVisible() && (box == nullptr || box == &window) &&
            QGuiApplication::applicationState() == Qt::ApplicationActive) {
            window.activateWindow();
        }
    });
}

} // namespace

void PressGuard::Gate::close(milliseconds quiet)
{
    m_isClosed = true;
    m_quiet = std::max(m_quiet, QDeadlineTimer(quiet));
}

void PressGuard::Gate::note(const QInputEvent &event, milliseconds quiet)
{
    m_quiet = QDeadlineTimer(quiet);
    m_quietStamp = event.timestamp() + static_cast<quint64>(quiet.count());
}

bool PressGuard::Gate::admit(const QInputEvent &press)
{
    // Some platforms do not set the timestamp of every event.
    const bool isStamped = press.timestamp() != 0;
    if (m_quiet.hasExpired() && !(isStamped && press.timestamp() < m_quietStamp)) {
        m_isClosed = false;
    }
    return !m_isClosed;
}

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
            m_keys.close(KeyQuiet);
            m_mouse.close(mouseQuiet());
            if (event->type() == QEvent::Show && qobject_cast<QDialog *>(watched) != nullptr) {
                activateLater(*static_cast<QWidget *>(watched));
            }
        }
        return false;
    case QEvent::ShortcutOverride: // sent before the key press, to find shortcuts
    case QEvent::KeyPress: {
        // A held key sends many presses. X11 sends releases between them, and Qt cannot always tell
        // that they are repeats.
        const auto &press = static_cast<QKeyEvent &>(*event);
        if (!pressesButtons(event)) {
            return false;
        }
        const bool isLetIn = m_keys.admit(press);
        m_keys.note(press, LongestRepeatDelay);
        if (!isLetIn) {
            event->accept(); // otherwise Qt would still look for a shortcut
        }
        return !isLetIn;
    }
    case QEvent::KeyRelease:
        if (pressesButtons(event)) {
            m_keys.note(static_cast<QKeyEvent &>(*event), KeyQuiet);
        }
        return false;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick: {
        const auto &press = static_cast<QMouseEvent &>(*event);
        const bool isLetIn = m_mouse.admit(press);
        m_mouse.note(press, mouseQuiet());
        return !isLetIn;
    }
    case QEvent::MouseButtonRelease:
        m_mouse.note(static_cast<QMouseEvent &>(*event), mouseQuiet());
        return false;
    default:
        return false;
    }
}

} // namespace kavelo
