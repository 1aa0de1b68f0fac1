#pragma once

#include <QAction>
#include <QPointer>

namespace kavelo {

/// The items of the application menu, which stand in the main window's form. The main window names
/// them and enables the first; what they do is the menu handler's.
struct MenuItems
{
    QPointer<QAction> InitialStateToolStripMenuItem;
    QPointer<QAction> ExitToolStripMenuItem;
    QPointer<QAction> QuickStartGuideToolStripMenuItem;
    QPointer<QAction> VersionInformationToolStripMenuItem;
};

} // namespace kavelo
