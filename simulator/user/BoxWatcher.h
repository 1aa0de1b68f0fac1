#pragma once

#include <QMessageBox>
#include <QObject>
#include <QStringList>

#include <deque>
#include <functional>

namespace kavelo {

/// The time, in ms, after which a window that has come or gone no longer keeps presses away.
constexpr int PressesTakenAfter = 500;

/// Answers the program's message boxes as a user would, one after the other, and keeps what they
/// said. Message boxes wait for their answer, so whoever causes one must say beforehand how it is
/// to be answered. A box that nobody has foreseen is closed by its frame.
class BoxWatcher : public QObject
{
    Q_OBJECT

public:
    using Reaction = std::function<void(QMessageBox &box)>;

    BoxWatcher();

    /// The next box without a reaction is answered with this key.
    void answerWith(Qt::Key key);
    /// The next box without a reaction gets this one. It must see to it that the box closes.
    void reactWith(Reaction reaction);

    /// Presses a key as soon as the box takes it, unless the box has gone by then.
    static void press(QMessageBox &box, Qt::Key key);

    /// The messages of all boxes so far, line breaks as "\n".
    [[nodiscard]] const QStringList &messages() const { return m_messages; }
    void forgetMessages() { m_messages.clear(); }
    /// How many other dialogs have come on screen so far.
    [[nodiscard]] int dialogsShown() const { return m_dialogsShown; }
    /// Whether every foreseen box has come.
    [[nodiscard]] bool isDone() const { return m_reactions.empty(); }

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void react(QMessageBox &box);

    std::deque<Reaction> m_reactions;
    QStringList m_messages;
    int m_dialogsShown = 0;
};

} // namespace kavelo
