#include "ItemChoice.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QEvent>

namespace kavelo {

ItemChoice::ItemChoice(QComboBox &box)
    : QObject(&box)
    , m_box(box)
    , m_list(*box.view())
{
    m_list.installEventFilter(this);
    connect(&box, &QComboBox::currentIndexChanged, this, &ItemChoice::follow);
    connect(m_list.selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &ItemChoice::selectionChanged);
    follow();
}

bool ItemChoice::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Hide) {
        // Posted, because the box closes the list before it reads the user's choice from it.
        QMetaObject::invokeMethod(this, &ItemChoice::follow, Qt::QueuedConnection);
    }
    return QObject::eventFilter(watched, event);
}

void ItemChoice::follow()
{
    m_list.selectionModel()->setCurrentIndex(
        m_box.model()->index(m_box.currentIndex(), m_box.modelColumn()),
        QItemSelectionModel::ClearAndSelect);
}

void ItemChoice::selectionChanged()
{
    if (!m_list.isVisible()) {
        choose();
        return;
    }
    // In an open list, keys and the mouse also select items. They set the current item too, but
    // only after this signal, so the check is posted.
    const auto chooseUnlessCurrent = [this] {
        if (m_list.isVisible() && !m_list.selectionModel()->isSelected(m_list.currentIndex())) {
            m_box.hidePopup();
            choose();
        }
    };
    QMetaObject::invokeMethod(this, chooseUnlessCurrent, Qt::QueuedConnection);
}

void ItemChoice::choose()
{
    const QModelIndexList selected = m_list.selectionModel()->selectedIndexes();
    if (m_box.isEnabled() && !selected.isEmpty() && selected[0].row() != m_box.currentIndex()) {
        m_box.setCurrentIndex(selected[0].row());
        Q_EMIT m_box.activated(m_box.currentIndex());
    }
}

} // namespace kavelo
