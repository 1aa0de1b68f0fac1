#pragma once

#include <QPlainTextEdit>

namespace kavelo {

/// Shows a pedal's setting. The user can read and select the text, also with the keyboard, and can
/// scroll it. The first and the last line on screen are always whole ones.
class PedalTextBox : public QPlainTextEdit
{
    Q_OBJECT

public:
    explicit PedalTextBox(QWidget *parent = nullptr);

    /// The greatest height up to `most` at which no line is cut.
    [[nodiscard]] int heightOfWholeLines(int most) const;
};

} // namespace kavelo
