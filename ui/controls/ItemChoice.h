#pragma once

#include <QObject>

class QAbstractItemView;
class QComboBox;

namespace kavelo {

/// Lets assistive technology choose an item of a combo box. Its action on an item only selects that
/// item in the list of the box, and QComboBox ignores this selection. The box owns this object.
class ItemChoice : public QObject
{
    Q_OBJECT

public:
    explicit ItemChoice(QComboBox &box);

    /// Calls follow() when the list closes: an item may be selected in it that was not chosen.
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    /// Selects the current item of the box in the list.
    void follow();
    void selectionChanged();
    /// Makes the selected item of the list the current item of the box, as a click on it does.
    void choose();

    QComboBox &m_box;
    QAbstractItemView &m_list;
};

} // namespace kavelo
