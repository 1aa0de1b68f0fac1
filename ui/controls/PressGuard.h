#pragma once

#include <QDeadlineTimer>
#include <QObject>

#include <chrono>

class QInputEvent;

namespace kavelo {

/// Prevents one press from acting twice, for users who hold a key for long or press twice. A press
/// that opens or closes a window must not also press a button of the next window.
///
/// When a window or dialog of the program is shown or hidden, Return, Enter, Escape, Space and the
/// mouse buttons are ignored in all of its windows. They work again when the key or button has been
/// released and no further press has come for a short time. Other keys always work, and so do
/// actions of assistive technology, which are not key or mouse events.
class PressGuard : public QObject
{
    Q_OBJECT

public:
    /// Time without key presses after which keys work again. For the mouse it is the desktop's
    /// double click interval.
    static constexpr std::chrono::milliseconds KeyQuiet{300};
    /// Greatest delay before a held key starts to repeat. When no repeat has come by then, the key
    /// was released while another program had the keyboard focus.
    static constexpr std::chrono::milliseconds LongestRepeatDelay{2000};

    PressGuard();

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    /// The gate for the presses of one kind: keys or mouse buttons.
    class Gate
    {
    public:
        /// Closes the gate for at least `quiet`.
        void close(std::chrono::milliseconds quiet);
        /// Records a press or a release. No press is let through until `quiet` has passed after it.
        void note(const QInputEvent &event, std::chrono::milliseconds quiet);
        /// Opens the gate when there was quiet before this press. Returns whether the press is let
        /// through.
        [[nodiscard]] bool admit(const QInputEvent &press);

    private:
        bool m_isClosed = false;
        QDeadlineTimer m_quiet{0};
        /// The end of the same time as an event timestamp, in ms. Timestamps tell how far apart two
        /// presses were, even when the program was busy and handles the second one late.
        quint64 m_quietStamp = 0;
    };

    Gate m_keys;
    Gate m_mouse;
};

} // namespace kavelo
