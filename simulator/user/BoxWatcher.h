#pragma once

#include "PressGuard.h"

#include <QMessageBox>
#include <QObject>
#include <QStringList>

#include <deque>
#include <functional>
#include <utility>

namespace kavelo {

/// Time, in ms, after which PressGuard lets presses in again when a window has come or gone. It is
/// also longer than the usual double click interval, which holds for the mouse.
constexpr int PressesTakenAfter = static_cast<int>(PressGuard::KeyQuiet.count()) + 200;

/// A simulated user who answers the program's message boxes and keeps their texts. A message box
/// blocks its caller until it is answered, so the answer must be given before the box comes. A box
/// for which no answer was given is closed by its frame, unless reactToOthersWith() says otherwise.
class BoxWatcher : public QObject
{
    Q_OBJECT

public:
    using Reaction = std::function<void(QMessageBox &box)>;

    BoxWatcher();

    /// Answers the next box for which no answer was given yet with this key.
    void answerWith(Qt::Key key);
    /// Calls `reaction` on the next box for which no answer was given yet. It must close the box.
    void reactWith(Reaction reaction);
    /// Calls `reaction` on every box for which no answer was given.
    void reactToOthersWith(Reaction reaction) { m_otherReaction = std::move(reaction); }

    /// Presses a key in the box once PressGuard lets it in, if the box is still there.
    static void press(QMessageBox &box, Qt::Key key);

    /// The messages of all boxes so far, with "\n" as the line break.
    [[nodiscard]] const QStringList &messages() const { return m_messages; }
    void forgetMessages() { m_messages.clear(); }
    /// Number of dialogs shown so far, without message boxes.
    [[nodiscard]] int dialogsShown() const { return m_dialogsShown; }
    /// Whether a box has come for every answer given.
    [[nodiscard]] bool isDone() const { return m_reactions.empty(); }

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void react(QMessageBox &box);

    std::deque<Reaction> m_reactions;
    Reaction m_otherReaction = [](QMessageBox &box) { box.close(); };
    QStringList m_messages;
    int m_dialogsShown = 0;
};

} // namespace kavelo
