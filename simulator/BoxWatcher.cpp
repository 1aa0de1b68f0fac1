#include "BoxWatcher.h"

#include <QApplication>
#include <QEvent>
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
    reactWith([key](QMessageBox &box) { QTest::keyClick(&box, key); });
}

void BoxWatcher::reactWith(Reaction reaction)
{
    m_reactions.push_back(std::move(reaction));
}

bool BoxWatcher::eventFilter(QObject *watched, QEvent *event)
{
    auto *box = event->type() == QEvent::Show ? qobject_cast<QMessageBox *>(watched) : nullptr;
    if (box != nullptr) {
        m_messages << box->informativeText();
        // Only once the box is really up and waiting.
        QTimer::singleShot(0, box, [this, box] { react(*box); });
    }
    return QObject::eventFilter(watched, event);
}

void BoxWatcher::react(QMessageBox &box)
{
    if (m_reactions.empty()) {
        box.close();
        return;
    }
    const Reaction reaction = std::move(m_reactions.front());
    m_reactions.pop_front();
    reaction(box);
}

} // namespace kavelo
