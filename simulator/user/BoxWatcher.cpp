#include "BoxWatcher.h"

#include <QApplication>
#include <QEvent>
#include <QPointer>
#include <QTest>
#include <QTimer>

#include <utility>

namespace kavelo {

BoxWatcher::BoxWatcher()
{
    qApp->installEventFilter(this);
}

void BoxWatcher::answerWith(Qt::Key key)
{
    reactWith([key](QMessageBox &box) { press(box, key); });
}

void BoxWatcher::press(QMessageBox &box, Qt::Key key)
{
    const QPointer<QMessageBox> shown = &box;
    QTest::qWait(PressesTakenAfter);
    if (shown && shown->isVisible()) {
        QTest::keyClick(shown, key);
    }
}

void BoxWatcher::reactWith(Reaction reaction)
{
    m_reactions.push_back(std::move(reaction));
}

bool BoxWatcher::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::Show) {
        return QObject::eventFilter(watched, event);
    }
    if (auto *box = qobject_cast<QMessageBox *>(watched)) {
        m_messages << box->informativeText();
        // Posted, because the box does not wait for its answer yet.
        QTimer::singleShot(0, box, [this, box] { react(*box); });
    } else if (qobject_cast<QDialog *>(watched) != nullptr) {
        ++m_dialogsShown;
    }
    return QObject::eventFilter(watched, event);
}

void BoxWatcher::react(QMessageBox &box)
{
    if (m_reactions.empty()) {
        m_otherReaction(box);
        return;
    }
    const Reaction reaction = std::move(m_reactions.front());
    m_reactions.pop_front();
    reaction(box);
}

} // namespace kavelo
