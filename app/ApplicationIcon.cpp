#include "ApplicationIcon.h"

#include <QPixmap>
#include <QResource>

namespace kavelo {

QIcon applicationIcon()
{
    QIcon icon;
    for (const int side : {16, 32, 64}) {
        const QResource pixels(QStringLiteral(":/icons/%1.rgba").arg(side));
        icon.addPixmap(
            QPixmap::fromImage(QImage(pixels.data(), side, side, QImage::Format_RGBA8888)));
    }
    return icon;
}

} // namespace kavelo
