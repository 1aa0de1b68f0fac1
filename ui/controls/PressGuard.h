#pragma once

#include <QElapsedTimer>
#include <QObject>

#include <chrono>

class QInputEvent;
class QKeyEvent;

namespace kavelo {

/// Prevents one press from acting twice, for users who hold a key for long or press twice. A press
/// that opens or closes a window must not also press a button of the next window.
///
/// When a window or dialog of the program is shown or hidden, Return, Enter, Escape, Space and the
/// mouse buttons are ignored in all of its windows for a short time. The repeats of these keys that
/// a held key sends are always ignored. Other keys always work, and so do actions of assistive
/// technology, which are not key or mouse events.
class PressGuard : public QObject
{
    Q_OBJECT

public:
    /// The time in which keys are ignored. For the mouse it is the desktop's double click interval.
    static constexpr std::chrono::milliseconds KeyQuiet{300};

    PressGuard();

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    [[nodiscard]] bool isRepeat(const QKeyEvent &press) const;
    [[nodiscard]] bool isTooSoon(const QInputEvent &press, std::chrono::milliseconds quiet) const;

    /// Runs since a window was last shown or hidden.
    QElapsedTimer m_sinceChange;
    // Times of events as the system has stamped them, in ms. They tell how far apart two presses
    // were, even when the program was busy and handles the second one late. Some platforms do not
    // stamp every event; its time is then 0.
    quint64 m_change = 0;      ///< of the last press or release before a window was shown or hidden
    quint64 m_last = 0;        ///< of the last press or release
    quint64 m_lastRelease = 0; ///< of the last release of a key that is held back
};

} // namespace kavelo
