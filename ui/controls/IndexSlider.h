#pragma once

#include <QSlider>

namespace kavelo {

/// A slider whose current position can also be chosen: by a click on its handle, by a key, or by
/// assistive technology.
class IndexSlider : public QSlider
{
    Q_OBJECT

public:
    explicit IndexSlider(QWidget *parent = nullptr);

Q_SIGNALS:
    /// The user has chosen a position. A value set by the program also emits this signal, unless
    /// signals are blocked.
    void chosen();

protected:
    void initStyleOption(QStyleOptionSlider *option) const override;
};

} // namespace kavelo
