#pragma once

#include <QIcon>
#include <QProxyStyle>

namespace kavelo {

/// The desktop's style without the icon of the menu bar's overflow button. The menu bar has one
/// menu and never shows that button. Loading the icon would make Qt load all of its image format
/// plugins at the start.
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
