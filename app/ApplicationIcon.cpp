#include "ApplicationIcon.h"

#include <QDir>

namespace kavelo {

QIcon applicationIcon()
{
    QIcon icon;
    for (const QFileInfo &size : QDir(QStringLiteral(":/icons")).entryInfoList()) {
        icon.addFile(size.filePath());
    }
    return icon;
}

} // namespace kavelo
