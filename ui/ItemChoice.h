#pragma once

#include <QObject>

class QAbstractItemView;
class QComboBox;

namespace kavelo {

/// Lets assistive technology choose an item of a combo box. Its action on an item selects the item
/// in the box's list, and the box itself takes no notice of that. The object belongs to the box.
class ItemChoice : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ItemChoice)

public:
    explicit ItemChoice(QComboBox &box);

    /// Follows the closing of the list, which may leave an item selected that was not chosen.
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    /// Selects the box's item in the list.
    void follow();
    void selectionChanged();
    /// Makes the selected item of the list the box's, as a click on it does.
    void choose();

    QComboBox &m_box;
    QAbstractItemView &m_list;
};

} // namespace kavelo
