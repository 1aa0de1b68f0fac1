#include "PedalTextBox.h"

#include <QTextDocument>

namespace kavelo {
namespace {

constexpr int Padding = 4;

} // namespace

PedalTextBox::PedalTextBox(QWidget *parent)
    : QPlainTextEdit(parent)
{
    setReadOnly(true);
    setTextInteractionFlags(Qt::TextSelectableByKeyboard | Qt::TextSelectableByMouse);
    setTabChangesFocus(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    // The margin of the document would scroll with the text, so that parts of lines would be
    // visible.
    document()->setDocumentMargin(0);
    setViewportMargins(Padding, Padding, Padding, Padding);
    setBackgroundRole(QPalette::Base);
    setAutoFillBackground(true);
}

int PedalTextBox::heightOfWholeLines(int most) const
{
    const int around = 2 * (frameWidth() + Padding);
    const int line = cursorRect().height();
    return around + (most - around) / line * line;
}

} // namespace kavelo
