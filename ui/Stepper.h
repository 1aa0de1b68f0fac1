#pragma once

#include <QSpinBox>

namespace kavelo {

/// A pair of arrows that steps a number up and down. The number itself is shown by the text field
/// beside it.
class Stepper : public QSpinBox
{
    Q_OBJECT

public:
    explicit Stepper(QWidget *parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }
};

} // namespace kavelo
