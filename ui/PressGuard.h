#pragma once

#include <QDeadlineTimer>
#include <QObject>

#include <chrono>

class QInputEvent;

namespace kavelo {

/// Sees to it that one press is one press, for hands that hold a key for long or press twice: what
/// has opened or closed a window does not press a button of the window that is there then.
///
/// As soon as a window or a dialog of the program comes or goes, none of them takes Return, Enter,
/// Escape, Space or a mouse button's press until the key or button has been let go of and nothing
/// of its kind has come for a moment. Other keys are always taken, and so are the actions of
/// assistive technology, which are no presses.
class PressGuard : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(PressGuard)

public:
    /// How long the keys must have been quiet; for the mouse it is the desktop's double click time.
    static constexpr std::chrono::milliseconds KeyQuiet{300};
    /// The longest time until a key that is held down repeats itself. One that hasn't done so by
    /// then has been let go of while another program had the keyboard.
    static constexpr std::chrono::milliseconds LongestRepeatDelay{2000};

    PressGuard();

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    /// What lets the presses of the keys in, or those of the mouse.
    class Gate
    {
    public:
        /// Lets nothing in for at least `quiet`.
        void close(std::chrono::milliseconds quiet);
        /// Notes a press or a release, after which there must be `quiet` for a press to be let in.
        void note(const QInputEvent &event, std::chrono::milliseconds quiet);
        /// Opens when there has been quiet before this press, and says whether it is let in.
        [[nodiscard]] bool admit(const QInputEvent &press);

    private:
        bool m_isClosed = false;
        QDeadlineTimer m_quiet{0};
        /// The same in the time of the events (ms), which tells how far apart two presses were,
        /// also when the program has been busy and comes to the second one late.
        quint64 m_quietStamp = 0;
    };

    Gate m_keys;
    Gate m_mouse;
};

} // namespace kavelo
