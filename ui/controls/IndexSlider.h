#pragma once

#include <QSlider>

namespace kavelo {

/// A slider that also tells when the user chooses the position that it has already.
class IndexSlider : public QSlider
{
    Q_OBJECT

public:
    explicit IndexSlider(QWidget *parent = nullptr);

Q_SIGNALS:
    /// The user has chosen a position: with the mouse, by a key, or by assistive technology. Read
    /// it with sliderPosition(), because value() may still be the previous one.
    void chosen();

protected:
    void initStyleOption(QStyleOptionSlider *option) const override;
};

} // namespace kavelo
