#pragma once

#include "MenuItems.h"

#include <QObject>

namespace kavelo {

/// The handler of the application menu.
class MenuClass : public QObject
{
    Q_OBJECT

public:
    /// Connects the items with their commands.
    explicit MenuClass(MenuItems items);

    /// Asks for a restore of the factory settings; the main window's next tick carries it out.
    void InitialStateToolStripMenuItem_Click();
    /// Ends the process at once with exit status 0.
    void ExitToolStripMenuItem_Click();
    /// Tells where the quick start guide is to be had.
    void QuickStartGuideToolStripMenuItem_Click();
    /// Tells the program's name and version.
    void VersionInformationToolStripMenuItem_Click();

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    MenuItems m_items;
};

} // namespace kavelo
