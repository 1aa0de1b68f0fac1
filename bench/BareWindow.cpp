#include <QApplication>
#include <QLabel>
#include <QMainWindow>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>

namespace {

constexpr int ColumnDistance = 225; // in pixels, as all lengths here

void fillMenu(QMenuBar &menuBar)
{
    QMenu *menu = menuBar.addMenu(QStringLiteral("&Kavelo"));
    for (const auto *title : {"Restore to Initial Settings", "Quick Start Guide",
                              "Version Information", "Quit Kavelo"}) {
        menu->addAction(QLatin1String(title));
    }
}

void addLabel(QWidget &parent, QRect place, const char *text)
{
    auto *label = new QLabel(QLatin1String(text), &parent);
    label->setGeometry(place);
}

void addButton(QWidget &parent, QRect place, const char *title)
{
    auto *button = new QPushButton(QLatin1String(title), &parent);
    button->setGeometry(place);
    button->setEnabled(false);
}

/// Adds one column. Without a unit the utility hides its text boxes and shows three of its five
/// columns.
void addColumn(QWidget &parent, int left, const char *name)
{
    addLabel(parent, {left, 70, 200, 24}, name);
    auto *box = new QPlainTextEdit(&parent);
    box->setReadOnly(true);
    box->setGeometry(left, 96, 200, 188);
    box->hide();
    addButton(parent, {left, 292, 200, 32}, "Set the Pedal (Standard)");
    addButton(parent, {left + 5, 330, 190, 32}, "Set the Pedal (Advanced)");
}

} // namespace

/// A program whose window shows the same as that of the utility without a unit, for comparison. The
/// difference between the two is the cost of the utility's own code.
int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/icons/48.png")));
    QMainWindow window;
    auto *content = new QWidget;
    window.setCentralWidget(content);
    fillMenu(*window.menuBar());
    addLabel(*content, {15, 10, 650, 50},
             "Connect the Kavelo. The Kavelo will be automatically recognized.\n"
             "If you do not set the Kavelo, exit this application.");
    int left = 15;
    for (const auto *name :
         {"Left Pedal", "Center pedal", "Right Pedal", "Left End Pedal", "Right End Pedal"}) {
        addColumn(*content, left, name);
        left += ColumnDistance;
    }
    addLabel(*content, {15, 370, 500, 24},
             "Please use the Windows application for advanced settings.");
    addLabel(*content, {600, 370, 65, 24}, "");
    window.setFixedSize(680, 420);
    window.show();
    return QApplication::exec();
}
