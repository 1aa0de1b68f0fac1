#include "IndexSlider.h"

#include <QAccessibleWidget>
#include <QStyleOptionSlider>

namespace kavelo {
namespace {

/// The accessible interface of the slider. The one of QSlider only sets the value, and setting the
/// current value emits no signal.
class AccessibleIndexSlider : public QAccessibleWidget, public QAccessibleValueInterface
{
public:
    explicit AccessibleIndexSlider(IndexSlider *slider)
        : QAccessibleWidget(slider, QAccessible::Slider)
        , m_slider(*slider)
    {
    }

    void *interface_cast(QAccessible::InterfaceType type) override
    {
        return type == QAccessible::ValueInterface ? static_cast<QAccessibleValueInterface *>(this)
                                                   : QAccessibleWidget::interface_cast(type);
    }
    [[nodiscard]] QVariant currentValue() const override { return m_slider.value(); }
    void setCurrentValue(const QVariant &value) override
    {
        if (m_slider.isEnabled()) {
            m_slider.setValue(value.toInt());
            Q_EMIT m_slider.chosen();
        }
    }
    [[nodiscard]] QVariant minimumValue() const override { return m_slider.minimum(); }
    [[nodiscard]] QVariant maximumValue() const override { return m_slider.maximum(); }
    [[nodiscard]] QVariant minimumStepSize() const override { return m_slider.singleStep(); }

private:
    IndexSlider &m_slider;
};

QAccessibleInterface *createAccessible(const QString & /*className*/, QObject *object)
{
    auto *slider = qobject_cast<IndexSlider *>(object);
    return slider == nullptr ? nullptr : new AccessibleIndexSlider(slider);
}

} // namespace

IndexSlider::IndexSlider(QWidget *parent)
    : QSlider(parent)
{
    QAccessible::installFactory(createAccessible); // further calls have no effect
    connect(this, &QSlider::sliderPressed, this, &IndexSlider::chosen);
    connect(this, &QSlider::actionTriggered, this, &IndexSlider::chosen);
}

void IndexSlider::initStyleOption(QStyleOptionSlider *option) const
{
    QSlider::initStyleOption(option);
    // Styles draw the groove and the ticks somewhat darker than the window, so on a black window
    // they would be invisible.
    QColor line = option->palette.color(QPalette::WindowText);
    line.setAlpha(160);
    option->palette.setColor(QPalette::Window, line);
}

} // namespace kavelo
