#include "TitleButton.h"

#include <QStyle>
#include <QStyleOptionButton>

namespace kavelo {

QSize TitleButton::minimumSizeHint() const
{
    QStyleOptionButton option;
    QPushButton::initStyleOption(&option);
    return sizeWith(option, titleInTwoLines());
}

void TitleButton::initStyleOption(QStyleOptionButton *option) const
{
    QPushButton::initStyleOption(option);
    if (sizeWith(*option, text()).width() > width()) {
        option->text = titleInTwoLines();
    }
}

/// The title with a line break at its last blank.
QString TitleButton::titleInTwoLines() const
{
    QString title = text();
    if (const auto blank = title.lastIndexOf(u' '); blank >= 0) {
        title[blank] = u'\n';
    }
    return title;
}

QSize TitleButton::sizeWith(const QStyleOptionButton &option, const QString &title) const
{
    const QSize needed = fontMetrics().size(Qt::TextShowMnemonic, title);
    return style()->sizeFromContents(QStyle::CT_PushButton, &option, needed, this);
}

} // namespace kavelo
