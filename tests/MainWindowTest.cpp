#include "MainWindowLayout.h"
#include "WindowTest.h"

#include <QAbstractAnimation>
#include <QAbstractEventDispatcher>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QScreen>
#include <QTimer>

#include <tuple>

namespace kavelo {
namespace {

class MainWindowTest : public WindowTest
{
protected:
    QLabel *annotation = find<QLabel>("label_Annotation");
};

TEST_F(MainWindowTest, WithoutAUnitTheWindowIsBlankAndCannotBeResized)
{
    EXPECT_TRUE(waitUntil([&] { return !restoreItem()->isEnabled(); }));
    EXPECT_TRUE(isBlank());
    EXPECT_EQ(window.minimumSize(), window.maximumSize());
    EXPECT_EQ(annotation->text(),
              QStringLiteral("Please use the Windows application for advanced settings."));
    window.testchangewidth();
    EXPECT_TRUE(waitUntil([&] { return window.findChild<QAbstractAnimation *>() == nullptr; }));
    EXPECT_EQ(window.width(), 696);
}

TEST_F(MainWindowTest, StartsWhereTheWidestLayoutFits)
{
    EXPECT_EQ(firstPlace({0, 0, 1280, 1000}, 400), QPoint(75, 300));
    EXPECT_EQ(firstPlace({1280, 30, 1024, 300}, 400), QPoint(1280, 30));
    EXPECT_EQ(window.pos(), firstPlace(window.screen()->availableGeometry(), window.height()));
}

TEST_F(MainWindowTest, LaysItselfOutForThePedalsOfTheUnit)
{
    // Number of pedals, width of the window, rows from left to right, their names, the pedals'
    // names in the buttons' titles.
    using Row = std::tuple<std::uint8_t, int, std::vector<int>, QStringView, QStringView>;
    // clang-format off
    const std::vector<Row> layouts{
        {1, 680, {1, 0, 2}, u"Left Pedal,Pedal,Right Pedal", u"the,the,the"},
        {2, 680, {1, 0, 2}, u"Left Pedal,Right Pedal,Right Pedal", u"Left,Right,the"},
        {3, 680, {1, 0, 2}, u"Left Pedal,Center Pedal,Right Pedal", u"Left,Center,Right"},
        {4, 905, {3, 1, 0, 2}, u"Left End Pedal,Left Pedal,Right PEdal,Right End Pedal",
         u"Left End,Left,Right,Right End"},
        {5, 1130, {3, 1, 0, 2, 4},
         u"Left End Pedal,Left Pedal,Center Pedal,Right Pedal,Right End Pedal",
         u"Left End,Left,Center,Right,Right End"},
        {0, 680, {1, 0, 2}, u"Left Pedal,Center pedal,Right Pedal", u"the,the,the"},
    };
    // clang-format on
    auto *const label = find<QLabel>("labelMainWindowExplanation");
    const int usualHeight = window.height();
    for (const auto &[pedals, width, rows, names, titles] : layouts) {
        SCOPED_TRACE(int{pedals});
        const int fontSize = pedals % 2 == 0 ? 8 : 18;
        setFontSize(fontSize);
        unit.memory().numberOfPedals = pedals;
        plugInAndWait();
        EXPECT_EQ(window.width(), width);
        EXPECT_EQ(label->width(), width - 30);
        EXPECT_LE(label->heightForWidth(width - 30), label->height());
        EXPECT_LE(label->geometry().bottom(), name(0)->y());
        EXPECT_LE(annotation->heightForWidth(width - 30), annotation->height());
        const div_t lines =
            std::div(contents(0)->viewport()->height(), contents(0)->cursorRect().height());
        EXPECT_TRUE(pedals == 0 ||
                    ((lines.quot > 10) == (fontSize == 8) && lines.quot >= 10 && lines.rem == 0));
        bool isFull = standard(0)->font().pointSize() == fontSize;
        const int height = window.height();
        for (int place = 0; place < int(rows.size()); ++place) {
            const int row = rows.at(std::size_t(place));
            const int left = 15 + 225 * place;
            const bool isShort = pedals == MaxPedals && row >= 3;
            const QString title =
                QStringLiteral("Set %1 Pedal (%2)").arg(titles.split(u',')[place]);
            EXPECT_EQ(name(row)->text(), names.split(u',')[place]);
            EXPECT_EQ(assistance(contents(row))->text(QAccessible::Name), name(row)->text());
            EXPECT_EQ(standard(row)->text(), title.arg(isShort ? u"S." : u"Standard"));
            EXPECT_EQ(advanced(row)->text(), title.arg(isShort ? u"A." : u"Advanced"));
            for (const QWidget *control : std::initializer_list<QWidget *>{
                     name(row), contents(row), standard(row), advanced(row)}) {
                EXPECT_EQ(control->x(), control == advanced(row) ? left + 5 : left);
                EXPECT_EQ(control->geometry().right(), left + 199);
            }
            EXPECT_FALSE(advanced(row)->isEnabled());
            for (const QPushButton *button : {standard(row), advanced(row)}) {
                EXPECT_LE(button->minimumSizeHint().width(), button->width()) << "it is cut off";
                EXPECT_LE(button->minimumSizeHint().height(), button->height());
                EXPECT_EQ(button->font(), standard(0)->font());
                isFull = isFull || button->minimumSizeHint().width() > 0.94 * button->width();
            }
            EXPECT_LE(name(row)->sizeHint().width(), name(row)->width());
            EXPECT_LE(name(row)->sizeHint().height(), name(row)->height());
        }
        EXPECT_TRUE(isFull) << "the titles could be larger";
        if (fontSize == 18) {
            const QImage shown = standard(0)->grab().toImage();
            standard(0)->setText(
                standard(0)->text().replace(QLatin1String(" ("), QLatin1String("\n(")));
            EXPECT_EQ(standard(0)->grab().toImage(), shown) << "not in two lines";
        }
        for (int row = 0; row < MaxPedals; ++row) {
            const bool isShown = std::ranges::count(rows, row) == 1;
            EXPECT_EQ(name(row)->isVisible(), isShown);
            EXPECT_EQ(standard(row)->isVisible(), isShown);
        }
        EXPECT_TRUE(restoreItem()->isEnabled());
        unplugAndWait();
        EXPECT_FALSE(isConnected || DeviceDetected || restoreItem()->isEnabled());
        EXPECT_EQ(window.height(), height) << "only the font moves the window's lower edge";
        EXPECT_EQ(height > usualHeight, fontSize == 18);
        EXPECT_TRUE(window.centralWidget()->rect().contains(annotation->geometry()));
    }
}

TEST_F(MainWindowTest, ReadsEveryPedalOnceWhateverElseIsPluggedIn)
{
    setFiveModes(unit);
    bus::plugIn(unit);
    ASSERT_TRUE(waitUntil([&] { return showsUnit(unit); }));
    SimulatedUnit other;
    bus::plugIn(other);
    MyNewDeviceCallback(nullptr, nullptr); // although the link has not asked for arrivals
    runTicks(2);
    bus::unplug(other);
    runTicks(2);
    EXPECT_EQ(requests.size(), ReadExchanges) << "nothing is read twice";
    EXPECT_TRUE(standard(3)->hasFocus()) << "the first pedal from the left";
    standard(2)->setFocus();
    unit.setReplyDelay(3 * TickPeriod / 2);
    Q_EMIT unit.inputReport({0xEE, 0xEE});
    ASSERT_TRUE(waitUntil([&] { return requests.size() == 2 * ReadExchanges && showsUnit(unit); }))
        << "after an unexpected report the unit is read again";
    EXPECT_EQ((std::array{VersionNumberMajor, VersionNumberMinor, VersionNumberRevision}),
              unit.memory().version);
    EXPECT_TRUE(waitUntil([&] { return standard(2)->hasFocus(); })) << "where the user has put it";
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

TEST_F(MainWindowTest, AReplyDoesNotWaitForTheTick)
{
    setFiveModes(unit);
    QElapsedTimer reading;
    reading.start();
    plugInAndWait();
    EXPECT_LT(reading.elapsed(), 2 * TickPeriod.count()) << "one tick finds the unit";
    int wakeUps = 0;
    QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::awake, &unit,
                     [&wakeUps] { ++wakeUps; });
    QEventLoop idle; // wakes up whenever a timer fires
    QTimer::singleShot(20 * TickPeriod, &idle, &QEventLoop::quit);
    idle.exec();
    EXPECT_LT(wakeUps, 100) << "nothing keeps the event loop from sleeping";
}

TEST_F(MainWindowTest, TabGoesThroughThePedalsFromLeftToRight)
{
    for (std::uint8_t pedals = 1; pedals <= MaxPedals; ++pedals) {
        SCOPED_TRACE(int{pedals});
        unit.memory().numberOfPedals = pedals;
        plugInAndWait();
        QPlainTextEdit *const leftmost = contents(std::array{0, 0, 1, 1, 3, 3}.at(pedals));
        std::vector<int> places;
        for (const QWidget *stop : tabStops(window, *leftmost)) {
            places.push_back(stop->x());
        }
        EXPECT_EQ(places.size(), 2U * pedals) << "a text and a button for each pedal";
        EXPECT_TRUE(std::ranges::is_sorted(places));
        QTest::keyClick(leftmost, Qt::Key_Down);
        EXPECT_EQ(leftmost->textCursor().blockNumber(), 1);
        const QImage picture = window.centralWidget()->grab().toImage();
        EXPECT_NE(picture.pixelColor(leftmost->pos() - QPoint(1, 1)), picture.pixelColor(0, 0))
            << "a frame shows where the focus is";
        unplugAndWait();
    }
}

TEST_F(MainWindowTest, ScreenReadersAndShortcutsGoThroughThePedalsFromLeftToRight)
{
    QAccessibleInterface *area = assistance(window.centralWidget());
    QAccessibleTextInterface *read = assistance(contents(0))->textInterface();
    EXPECT_EQ(assistance(contents(0))->editableTextInterface(), nullptr);
    for (std::uint8_t pedals = 1; pedals <= MaxPedals; ++pedals) {
        SCOPED_TRACE(int{pedals});
        unit.memory().numberOfPedals = pedals;
        plugInAndWait();
        const int rows = std::max<int>(pedals, 3);
        std::vector<int> columns;
        for (int i = 0; i < area->childCount(); ++i) {
            const auto *control = qobject_cast<QWidget *>(area->child(i)->object());
            if (control->isVisible() && control->y() < annotation->y()) {
                columns.push_back(control->x() / 225);
            }
        }
        EXPECT_EQ(columns.size(), std::size_t(1 + 3 * rows + pedals))
            << "names and buttons, texts if read";
        EXPECT_TRUE(std::ranges::is_sorted(columns));
        for (int row = 0; row < MaxPedals; ++row) {
            EXPECT_EQ(area->indexOfChild(assistance(advanced(row))) >= 0, row < rows)
                << "it is covered, or outside the window";
        }
        const QString text = contents(0)->toPlainText();
        const int end = read->characterCount();
        EXPECT_EQ(read->text(0, end), text);
        read->setSelection(0, end - 2, end);
        EXPECT_EQ(contents(0)->textCursor().selectedText(), text.last(2));
        EXPECT_EQ(read->offsetAtPoint(read->characterRect(3).topLeft()), 3);
        std::vector<int> opened;
        for (int place = 0; place < pedals; ++place) {
            ASSERT_TRUE(waitUntil([&] { return window.isActiveWindow(); }));
            QTest::keyClick(&window, Qt::Key(Qt::Key_1 + place), Qt::AltModifier);
            ASSERT_TRUE(waitUntil([&] { return isDialogShown(); }));
            opened.push_back(standard(SelectedPedalNo)->x());
            const auto *button = assistance(standard(SelectedPedalNo));
            EXPECT_TRUE(
                button->text(QAccessible::Description).endsWith(QString::number(place + 1)));
            dialog()->reject();
        }
        EXPECT_TRUE(std::ranges::is_sorted(opened));
        unplugAndWait();
    }
}

} // namespace
} // namespace kavelo
