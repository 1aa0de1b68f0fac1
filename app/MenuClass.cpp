#include "MenuClass.h"

#include "Alert.h"
#include "MainWindowViewController.h"
#include "Version.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QKeySequence>

#include <cstdlib>
#include <utility>

namespace kavelo {
namespace {

/// QKeySequence::Quit has no keys on a desktop that Qt does not know.
constexpr QKeyCombination QuitKeys = Qt::CTRL | Qt::Key_Q;

} // namespace

MenuClass::MenuClass(MenuItems items)
    : m_items(std::move(items))
{
    connect(m_items.InitialStateToolStripMenuItem, &QAction::triggered, this,
            &MenuClass::InitialStateToolStripMenuItem_Click);
    connect(m_items.ExitToolStripMenuItem, &QAction::triggered, this,
            &MenuClass::ExitToolStripMenuItem_Click);
    connect(m_items.QuickStartGuideToolStripMenuItem, &QAction::triggered, this,
            &MenuClass::QuickStartGuideToolStripMenuItem_Click);
    connect(m_items.VersionInformationToolStripMenuItem, &QAction::triggered, this,
            &MenuClass::VersionInformationToolStripMenuItem_Click);
    m_items.ExitToolStripMenuItem->setShortcut(QuitKeys);
    qApp->installEventFilter(this);
}

bool MenuClass::eventFilter(QObject * /*watched*/, QEvent *event)
{
    // Handles the shortcut of the Quit item for every window. The item's own shortcut works only in
    // the main window, not in dialogs and message boxes.
    if (event->type() == QEvent::KeyPress &&
        QKeySequence(static_cast<QKeyEvent *>(event)->keyCombination()) == QuitKeys) {
        m_items.ExitToolStripMenuItem->trigger();
        return true;
    }
    return false;
}

void MenuClass::InitialStateToolStripMenuItem_Click()
{
    InitialState = true;
}

void MenuClass::ExitToolStripMenuItem_Click()
{
    std::exit(0); // NOLINT(concurrency-mt-unsafe)
}

void MenuClass::QuickStartGuideToolStripMenuItem_Click()
{
    openNotice(QStringLiteral("You can download the Quick Start Guide from the following.\r\n"
                              "https://www.marvode.example/kavelo/quick-start"));
}

void MenuClass::VersionInformationToolStripMenuItem_Click()
{
    openNotice(QStringLiteral("Mac App for Marvode Kavelo QX7\r\nVersion: %1.%2.%3")
                   .arg(Win_Major)
                   .arg(Win_Minor)
                   .arg(Win_Revision));
}

} // namespace kavelo
