#pragma once

#include <QIcon>
#include <QPalette>
#include <QProxyStyle>

namespace kavelo {

/// The desktop's style, with what this program needs to be different.
class ProgramStyle : public QProxyStyle
{
    Q_OBJECT

public:
    /// Leaves out the icon of the menu bar's overflow button. The menu bar has one menu and never
    /// shows that button. Loading the icon would make Qt load all of its image format plugins at
    /// the start.
    QIcon standardIcon(StandardPixmap icon, const QStyleOption *option,
                       const QWidget *widget) const override
    {
        return icon == SP_ToolBarHorizontalExtensionButton
                   ? QIcon()
                   : QProxyStyle::standardIcon(icon, option, widget);
    }

    /// Makes a list box show its `maxVisibleItems`. Some styles let a list of keys cover the
    /// screen.
    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *data) const override
    {
        return hint == SH_ComboBox_Popup ? 0 : QProxyStyle::styleHint(hint, option, widget, data);
    }

    /// Derives the colour of a list box without a choice from that of the others. Qt 6.4 has the
    /// one of a light palette for all.
    using QProxyStyle::polish;
    void polish(QPalette &palette) override
    {
        QProxyStyle::polish(palette);
        QColor colour = palette.color(QPalette::ButtonText);
        colour.setAlpha(160);
        palette.setColor(QPalette::PlaceholderText, colour);
    }
};

} // namespace kavelo
