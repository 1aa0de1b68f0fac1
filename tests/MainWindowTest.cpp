#include "TabStops.h"
#include "WindowTest.h"

#include <QAccessible>
#include <QAction>
#include <QRegularExpression>
#include <QScopeGuard>

namespace kavelo {
namespace {

class MainWindowTest : public WindowTest
{
protected:
    /// The column of every pedal's controls, in the order in which screen readers come by.
    std::vector<int> columnsToScreenReaders()
    {
        auto *const area = QAccessible::queryAccessibleInterface(window.centralWidget());
        std::vector<int> columns;
        for (int i = 0; i < area->childCount(); ++i) {
            const auto *control = qobject_cast<QWidget *>(area->child(i)->object());
            if (control->isVisible() &&
                control->objectName().contains(QRegularExpression(QStringLiteral("[0-4]")))) {
                columns.push_back(control->x() / 225);
            }
        }
        EXPECT_GE(columns.size(), 9U);
        return columns;
    }
};

/// Exchanges of one read of such a unit: version, count, five pedals, five pieces.
constexpr int ReadExchanges = 12;

TEST_F(MainWindowTest, WithoutAUnitTheWindowIsBlankAndCannotBeResized)
{
    QAction *const restore = window.menuItems().InitialStateToolStripMenuItem;
    EXPECT_TRUE(waitUntil([&] { return !restore->isEnabled(); }));
    EXPECT_TRUE(isBlank());
    EXPECT_EQ(window.minimumSize(), window.maximumSize());
    EXPECT_EQ(name(0)->text(), QStringLiteral("Center pedal"));
    EXPECT_FALSE(name(3)->isVisible());
    EXPECT_EQ(window.findChild<QLabel *>(QStringLiteral("label_Annotation"))->text(),
              QStringLiteral("Please use the Windows application for advanced settings."));
    window.testchangewidth();
    EXPECT_TRUE(waitUntil([&] { return window.width() == 696; }));
}

struct LayoutCase
{
    std::uint8_t pedals;
    int width;
    std::vector<int> leftToRight; ///< rows that are shown, by their place
    QStringView names;            ///< of those rows
    QStringView standardTitle;    ///< of the leftmost row
};

TEST_F(MainWindowTest, LaysItselfOutForThePedalsOfTheUnit)
{
    // clang-format off
    const std::vector<LayoutCase> cases{
        {1, 680, {1, 0, 2}, u"Left Pedal,Pedal,Right Pedal", u"Set the Pedal (Standard)"},
        {2, 680, {1, 0, 2}, u"Left Pedal,Right Pedal,Right Pedal", u"Set Left Pedal (Standard)"},
        {3, 680, {1, 0, 2}, u"Left Pedal,Center Pedal,Right Pedal", u"Set Left Pedal (Standard)"},
        {4, 905, {3, 1, 0, 2}, u"Left End Pedal,Left Pedal,Right PEdal,Right End Pedal", u"Set Left End Pedal (Standard)"},
        {5, 1130, {3, 1, 0, 2, 4}, u"Left End Pedal,Left Pedal,Center Pedal,Right Pedal,Right End Pedal", u"Set Left End Pedal (S.)"},
        {0, 680, {1, 0, 2}, u"Left Pedal,Center pedal,Right Pedal", u"Set the Pedal (Standard)"},
    };
    // clang-format on
    const auto usualFont =
        qScopeGuard([font = QApplication::font()] { QApplication::setFont(font); });
    auto *const explanationLabel =
        window.findChild<QLabel *>(QStringLiteral("labelMainWindowExplanation"));
    auto *const annotation = window.findChild<QLabel *>(QStringLiteral("label_Annotation"));
    const int usualHeight = window.height();
    for (const LayoutCase &layout : cases) {
        SCOPED_TRACE(int{layout.pedals});
        QFont font = QApplication::font();
        font.setPointSize(font.pointSize() == 13 ? 8 : 13);
        QApplication::setFont(font);
        unit.memory().numberOfPedals = layout.pedals;
        bus::plugIn(unit);
        ASSERT_TRUE(waitUntil([&] { return showsUnit(unit); }));
        EXPECT_EQ(window.width(), layout.width);
        EXPECT_EQ(explanationLabel->width(), layout.width - 30);
        EXPECT_LE(explanationLabel->heightForWidth(layout.width - 30), explanationLabel->height());
        EXPECT_LE(explanationLabel->geometry().bottom(), name(0)->y());
        const int height = window.height();
        QStringList names;
        for (std::size_t place = 0; place < layout.leftToRight.size(); ++place) {
            const int row = layout.leftToRight[place];
            const int left = 15 + 225 * int(place);
            names << name(row)->text();
            EXPECT_TRUE(name(row)->isVisible());
            EXPECT_EQ(name(row)->x(), left);
            EXPECT_EQ(contents(row)->x(), left);
            EXPECT_EQ(standard(row)->x(), left);
            EXPECT_EQ(advanced(row)->x(), left + 5);
            EXPECT_FALSE(advanced(row)->isEnabled());
            EXPECT_LE(standard(row)->sizeHint().width(), 200) << "the title is cut off";
            EXPECT_LE(advanced(row)->sizeHint().width(), 190) << "the title is cut off";
        }
        EXPECT_EQ(names.join(QLatin1Char(',')), layout.names);
        EXPECT_EQ(standard(layout.leftToRight.front())->text(), layout.standardTitle);
        for (const int row : {3, 4}) {
            const bool shown = std::ranges::count(layout.leftToRight, row) == 1;
            EXPECT_EQ(name(row)->isVisible() && standard(row)->isVisible(), shown);
        }
        EXPECT_TRUE(window.menuItems().InitialStateToolStripMenuItem->isEnabled());
        bus::unplug(unit);
        ASSERT_TRUE(waitUntil([&] { return isBlank(); }));
        EXPECT_EQ(window.height(), height) << "only the font moves the window's lower edge";
        EXPECT_EQ(height > usualHeight, font.pointSize() == 13);
        EXPECT_TRUE(window.centralWidget()->rect().contains(annotation->geometry()));
    }
}

TEST_F(MainWindowTest, ReadsEveryPedalOnceAndTheSequencesBlocksInPieces)
{
    setFiveModes(unit);
    bus::plugIn(unit);
    ASSERT_TRUE(waitUntil([&] { return showsUnit(unit); }));
    runTicks(2);
    EXPECT_EQ(requests.size(), std::size_t{ReadExchanges}) << "nothing is read twice";
    QAccessibleInterface *box = QAccessible::queryAccessibleInterface(contents(0));
    EXPECT_EQ(box->text(QAccessible::Name), QStringLiteral("Center Pedal"));
}

TEST_F(MainWindowTest, TooManyPedalsAreRefusedInWords)
{
    for (const std::uint8_t pedals : {std::uint8_t{6}, std::uint8_t{255}}) {
        unit.memory().numberOfPedals = pedals;
        boxes.answerWith(Qt::Key_Return);
        bus::plugIn(unit);
        ASSERT_TRUE(waitUntil([&] { return boxes.isDone(); }));
        EXPECT_EQ(boxes.messages().last(),
                  QStringLiteral("This number of pedals is not supported"));
        EXPECT_TRUE(isBlank());
        EXPECT_EQ(NumberOfPedals, 0);
        bus::unplug(unit);
        runTicks(2);
    }
}

TEST_F(MainWindowTest, TabGoesThroughThePedalsFromLeftToRight)
{
    for (std::uint8_t pedals = 1; pedals <= MaxPedals; ++pedals) {
        SCOPED_TRACE(int{pedals});
        unit.memory().numberOfPedals = pedals;
        bus::plugIn(unit);
        ASSERT_TRUE(waitUntil([&] { return showsUnit(unit); }));
        const std::vector<int> rows = litRows();
        const int leftmost =
            *std::ranges::min_element(rows, {}, [this](int row) { return contents(row)->x(); });
        std::vector<int> places;
        for (const QWidget *stop : tabStops(window, *contents(leftmost))) {
            places.push_back(stop->x());
        }
        EXPECT_EQ(places.size(), 2U * pedals) << "a text and a button for each pedal";
        EXPECT_TRUE(std::ranges::is_sorted(places));
        EXPECT_TRUE(std::ranges::is_sorted(columnsToScreenReaders()));
        bus::unplug(unit);
        ASSERT_TRUE(waitUntil([&] { return isBlank(); }));
    }
}

} // namespace
} // namespace kavelo
