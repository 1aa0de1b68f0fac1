#include "ControlArea.h"

#include <QAccessibleWidget>
#include <QFocusFrame>
#include <QLabel>

namespace kavelo {
namespace {

/// The accessible interface of the area.
class AccessibleControlArea : public QAccessibleWidget
{
public:
    explicit AccessibleControlArea(ControlArea *area)
        : QAccessibleWidget(area, QAccessible::Client)
    {
    }

    [[nodiscard]] int childCount() const override { return static_cast<int>(controls().size()); }
    [[nodiscard]] QAccessibleInterface *child(int index) const override
    {
        return QAccessible::queryAccessibleInterface(controls().value(index));
    }
    [[nodiscard]] int indexOfChild(const QAccessibleInterface *child) const override
    {
        return static_cast<int>(controls().indexOf(child->object()));
    }

private:
    /// The controls that can be seen, and those that are hidden. The interface of a hidden control
    /// says so itself.
    [[nodiscard]] QWidgetList controls() const
    {
        auto found = widget()->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
        found.removeIf([this](QWidget *control) {
            const auto *label = qobject_cast<QLabel *>(control);
            const QWidget *seen = widget()->childAt(control->geometry().center());
            return (label != nullptr && label->text().isEmpty()) ||
                   qobject_cast<QFocusFrame *>(control) != nullptr ||
                   (control->isVisible() && control != seen && !control->isAncestorOf(seen));
        });
        return found;
    }
};

QAccessibleInterface *accessibleControlArea(const QString & /*className*/, QObject *object)
{
    auto *area = qobject_cast<ControlArea *>(object);
    return area == nullptr ? nullptr : new AccessibleControlArea(area);
}

} // namespace

ControlArea::ControlArea(QWidget *parent)
    : QWidget(parent)
{
    QAccessible::installFactory(&accessibleControlArea);
}

void ControlArea::tellOfChange()
{
    QAccessibleEvent event(this, QAccessible::ObjectReorder);
    QAccessible::updateAccessibility(&event);
}

} // namespace kavelo
