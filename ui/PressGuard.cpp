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

/// Whether it is a window that is there for longer, unlike a menu, a list or a tool tip.
bool isWindow(const QObject *object)
{
    const auto *widget = qobject_cast<const QWidget *>(object);
    return widget != nullptr &&
           (widget->windowType() == Qt::Window || widget->windowType() == Qt::Dialog);
}

/// Whether a key presses buttons, wherever the focus is or on the button that has it.
bool pressesButtons(const QEvent *event)
{
    const int key = static_cast<const QKeyEvent *>(event)->key();
    return key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Escape ||
           key == Qt::Key_Space;
}

/// Gives a window the keyboard that a window manager has withheld from it: a second press on what
/// has opened the window looks as if the user went on elsewhere.
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
    // Not all platforms stamp all events.
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
    case QEvent::ShortcutOverride: // comes before the press that may be a shortcut
    case QEvent::KeyPress: {
        // Of a key that is held down, many a press is none: X11 sends releases and presses, and Qt
        // can't always tell that they are repeats.
        const auto &press = static_cast<QKeyEvent &>(*event);
        if (!pressesButtons(event)) {
            return false;
        }
        const bool isLetIn = m_keys.admit(press);
        m_keys.note(press, LongestRepeatDelay);
        if (!isLetIn) {
            event->accept(); // or Qt would still look for the shortcut
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
