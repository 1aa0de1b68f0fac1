#pragma once

#include <QPushButton>

namespace kavelo {

/// A push button whose title breaks into two lines when it does not fit into one. `text()` stays in
/// one line.
class TitleButton : public QPushButton
{
    Q_OBJECT

public:
    using QPushButton::QPushButton;

    /// The size that the title needs in two lines.
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void initStyleOption(QStyleOptionButton *option) const override;

private:
    [[nodiscard]] QString titleInTwoLines() const;
    [[nodiscard]] QSize sizeWith(const QStyleOptionButton &option, const QString &title) const;
};

} // namespace kavelo
