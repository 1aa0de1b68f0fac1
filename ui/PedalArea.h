#pragma once

#include <QWidget>

namespace kavelo {

/// The main window's area with all of its controls. Some of them are covered by others, stand
/// outside the window or are empty: assistive technology is told of the other ones only.
class PedalArea : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(PedalArea)

public:
    explicit PedalArea(QWidget *parent = nullptr);

    /// Tells assistive technology that other controls can be seen now.
    void tellOfChange();
};

} // namespace kavelo
