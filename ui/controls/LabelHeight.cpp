#include "LabelHeight.h"

#include <QLabel>

#include <algorithm>

namespace kavelo {

int heightForTexts(const QLabel &label, int width, const QStringList &texts)
{
    int height = 0;
    for (const QString &text : texts) {
        const QRect needed =
            label.fontMetrics().boundingRect(QRect(0, 0, width, 0), Qt::TextWordWrap, text);
        height = std::max(height, needed.height());
    }
    return height;
}

} // namespace kavelo
