#pragma once

#include <QAction>
#include <QPointer>

namespace kavelo {

/// The items of the application menu. The form of the main window contains them. The main window
/// sets their texts and enables the first one; the menu handler carries out their commands.
struct MenuItems
{
    QPointer<QAction> InitialStateToolStripMenuItem;
    QPointer<QAction> ExitToolStripMenuItem;
    QPointer<QAction> QuickStartGuideToolStripMenuItem;
    QPointer<QAction> VersionInformationToolStripMenuItem;
};

} // namespace kavelo
