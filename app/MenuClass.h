#pragma once

#include "MenuItems.h"

#include <QObject>

namespace kavelo {

/// The handler of the application menu.
class MenuClass : public QObject
{
    Q_OBJECT

public:
    /// Connects each item to its command.
    explicit MenuClass(MenuItems items);

    /// Requests a restore of the factory settings. The main window's next tick carries it out.
    void InitialStateToolStripMenuItem_Click();
    /// Ends the process at once with exit status 0.
    void ExitToolStripMenuItem_Click();
    /// Shows the address of the quick start guide.
    void QuickStartGuideToolStripMenuItem_Click();
    /// Shows the program's name and version.
    void VersionInformationToolStripMenuItem_Click();

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    MenuItems m_items;
};

} // namespace kavelo
