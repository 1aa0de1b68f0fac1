#pragma once

#include <QSlider>

namespace kavelo {

/// A slider on which the place where it stands already can be chosen, too: by a click on its
/// handle, by a key, or by assistive technology.
class IndexSlider : public QSlider
{
    Q_OBJECT

public:
    explicit IndexSlider(QWidget *parent = nullptr);

Q_SIGNALS:
    /// The user has chosen a place. What the program sets without blocking signals counts, too.
    void chosen();

protected:
    void initStyleOption(QStyleOptionSlider *option) const override;
};

} // namespace kavelo
