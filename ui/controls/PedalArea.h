#pragma once

#include <QWidget>

namespace kavelo {

/// The central widget of the main window, with all of its controls. Some of them are covered by
/// others, lie outside the window or are empty. Assistive technology is told only of the remaining
/// ones.
class PedalArea : public QWidget
{
    Q_OBJECT

public:
    explicit PedalArea(QWidget *parent = nullptr);

    /// Tells assistive technology that the set of visible controls has changed.
    void tellOfChange();
};

} // namespace kavelo
