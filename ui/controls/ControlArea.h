#pragma once

#include <QWidget>

namespace kavelo {

/// A widget whose controls have fixed places. Some of them may be covered by others, lie outside
/// the window or be empty. Assistive technology is told only of the remaining ones.
class ControlArea : public QWidget
{
    Q_OBJECT

public:
    explicit ControlArea(QWidget *parent = nullptr);

    /// Tells assistive technology that the set of visible controls has changed.
    void tellOfChange();
};

} // namespace kavelo
