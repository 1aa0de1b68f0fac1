#include "SimulatorPanel.h"

#include "DemoSettings.h"
#include "SimulatedBus.h"
#include "SimulatedUnit.h"

#include <QAbstractItemView>
#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTest>

#include <gtest/gtest.h>

#include <set>

using namespace kavelo;

namespace {

class SimulatorPanelTest : public testing::Test
{
protected:
    void SetUp() override
    {
        bus::reset();
        panel.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&panel));
    }
    void TearDown() override { bus::reset(); }

    template <typename T>
    T *find(const char *name)
    {
        return panel.findChild<T *>(QLatin1String(name));
    }

    /// Moves the focus as Alt and a label's or button's letter do.
    void press(Qt::Key letter) { QTest::keyClick(&panel, letter, Qt::AltModifier); }

    /// Types into the control that has the focus.
    void type(const char *keys)
    {
        QWidget *focus = QApplication::focusWidget();
        ASSERT_NE(focus, nullptr);
        QTest::keyClick(focus, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClicks(focus, QLatin1String(keys));
        QTest::keyClick(focus, Qt::Key_Return);
    }

    [[nodiscard]] QString cell(int row, int column)
    {
        return exchanges->model()->index(row, column).data().toString();
    }

    /// Sends a request and waits until the unit has nothing left to do.
    void exchange(const hid::Report &request)
    {
        QSignalSpy spy(&unit, &SimulatedUnit::exchanged);
        if (unit.receive(request) && unit.isPowered()) {
            ASSERT_TRUE(QTest::qWaitFor([&] { return spy.size() == 2; }));
        }
    }

    SimulatedUnit unit;
    SimulatorPanel panel{unit};
    QAbstractItemView *exchanges = find<QAbstractItemView>("exchanges");
};

TEST_F(SimulatorPanelTest, PlugsByClickAndFollowsTheUnit)
{
    auto *box = find<QCheckBox>("pluggedIn");
    auto *replug = find<QPushButton>("replug");
    EXPECT_FALSE(replug->isEnabled());
    QTest::mouseClick(box, Qt::LeftButton, {}, {8, box->height() / 2});
    ASSERT_TRUE(bus::isPluggedIn(unit));

    const bus::AttachmentRef first = bus::attachments().at(0);
    QTest::mouseClick(replug, Qt::LeftButton);
    ASSERT_TRUE(bus::isPluggedIn(unit));
    EXPECT_NE(bus::attachments().at(0), first);

    press(Qt::Key_P); // a button shows itself pressed for a moment before it acts
    EXPECT_TRUE(QTest::qWaitFor([this] { return !bus::isPluggedIn(unit); }));
    EXPECT_FALSE(replug->isEnabled());
    bus::plugIn(unit);
    EXPECT_TRUE(box->isChecked());
    bus::unplug(unit);
    EXPECT_FALSE(box->isChecked());
}

TEST_F(SimulatorPanelTest, SetsTheUnitUpByKeyboard)
{
    press(Qt::Key_N);
    type("3");
    press(Qt::Key_V);
    type("2");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    type("31");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    type("255");
    press(Qt::Key_D);
    type("5000");
    press(Qt::Key_L);
    type("700");
    UnitMemory expected;
    expected.numberOfPedals = 3;
    expected.version = {2, 31, 255};
    EXPECT_EQ(unit.memory(), expected);
    EXPECT_EQ(unit.replyDelay().count(), 5000);
    EXPECT_EQ(unit.lateness().count(), 700);
    unit.memory().pedals = {};
    QTest::mouseClick(find<QPushButton>("factorySettings"), Qt::LeftButton);
    EXPECT_EQ(unit.memory(), expected);
}

TEST_F(SimulatorPanelTest, ListsExchangesAndArmsFaults)
{
    bus::plugIn(unit);
    exchange({0x91, 0xAB});
    EXPECT_EQ(cell(0, 1), QStringLiteral("[Get Number of Pedals] Command"));
    EXPECT_EQ(cell(0, 2), QStringLiteral("91AB0000 00000000 00000000 00000000"));
    EXPECT_EQ(cell(0, 3), QStringLiteral("91AB0500 00000000 00000000 00000000"));

    press(Qt::Key_X);
    type("2");
    auto *faults = find<QComboBox>("fault");
    faults->setFocus();
    const std::array<QString, 7> replies{
        QString(), QStringLiteral("refused"), QStringLiteral("no reply"), QString(), QString(),
        QString(), QStringLiteral("no reply")};
    unit.setLateness(std::chrono::milliseconds{1});
    for (int kind = 1; kind < faults->count(); ++kind) {
        SCOPED_TRACE(kind);
        QTest::keyClick(faults, Qt::Key_Down);
        EXPECT_EQ(unit.fault().kind, static_cast<FaultKind>(kind));
        EXPECT_EQ(unit.fault().exchange, 2);
        exchange({0x77});
        exchange({0x77});
        const int last = exchanges->model()->rowCount() - 1;
        EXPECT_EQ(last, 2 * kind);
        EXPECT_EQ(cell(last, 1), QStringLiteral("Unknown command"));
        const QString &expected = replies.at(static_cast<std::size_t>(kind));
        EXPECT_TRUE(expected.isEmpty() ? cell(last, 3).size() == 35 : cell(last, 3) == expected)
            << qPrintable(cell(last, 3));
    }
    EXPECT_FALSE(find<QCheckBox>("pluggedIn")->isChecked());
}

TEST_F(SimulatorPanelTest, AsksForTheAdvancedDialog)
{
    QSignalSpy requests(&panel, &SimulatorPanel::advancedDialogRequested);
    press(Qt::Key_A);
    EXPECT_TRUE(QTest::qWaitFor([&] { return requests.size() == 1; }));
    press(Qt::Key_O);
    type("3");
    press(Qt::Key_W);
    EXPECT_TRUE(
        QTest::qWaitFor([this] { return !find<QCheckBox>("settingEnabled")->isChecked(); }));
    press(Qt::Key_A);
    EXPECT_TRUE(QTest::qWaitFor([&] { return requests.size() == 2; }));
    EXPECT_EQ(requests.value(0), (QVariantList{0, true}));
    EXPECT_EQ(requests.value(1), (QVariantList{3, false}));
}

TEST_F(SimulatorPanelTest, EveryControlIsNamedAndReachedByTab)
{
    EXPECT_EQ(panel.windowTitle(), QStringLiteral("Simulated Kavelo"));
    EXPECT_FALSE(panel.testAttribute(Qt::WA_QuitOnClose));
    bus::plugIn(unit);
    find<QCheckBox>("pluggedIn")->setFocus();
    std::set<QString> reached;
    for (int i = 0; i < 16; ++i) {
        QWidget *focus = QApplication::focusWidget();
        ASSERT_NE(focus, nullptr);
        reached.insert(focus->objectName());
        QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(focus);
        EXPECT_FALSE(accessible->text(QAccessible::Name).isEmpty())
            << qPrintable(focus->objectName());
        QTest::keyClick(focus, Qt::Key_Tab);
    }
    EXPECT_EQ(reached.size(), 16U);
}

} // namespace
