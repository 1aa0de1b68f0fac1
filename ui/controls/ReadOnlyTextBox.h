#pragma once

#include <QPlainTextEdit>

namespace kavelo {

/// Shows a text of several lines. The user can select the text, also with the keyboard, and can
/// scroll it. The first and the last visible line are never cut off.
class ReadOnlyTextBox : public QPlainTextEdit
{
    Q_OBJECT

public:
    explicit ReadOnlyTextBox(QWidget *parent = nullptr);

    /// The height that shows `lines` lines, or as many whole lines as fit into `height` if these
    /// are more.
    [[nodiscard]] int heightForLines(int lines, int height) const;
};

} // namespace kavelo
