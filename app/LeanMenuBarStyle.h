#pragma once

#include <QIcon>
#include <QProxyStyle>

namespace kavelo {

/// The desktop's style, but for the picture of the button behind which a menu bar puts the menus
/// that it has no room for. Ours has one menu, and to load a picture that is never seen Qt would
/// load all of its image format plugins at the start.
class LeanMenuBarStyle : public QProxyStyle
{
    Q_OBJECT

public:
    QIcon standardIcon(StandardPixmap icon, const QStyleOption *option,
                       const QWidget *widget) const override
    {
        return icon == SP_ToolBarHorizontalExtensionButton
                   ? QIcon()
                   : QProxyStyle::standardIcon(icon, option, widget);
    }
};

} // namespace kavelo
