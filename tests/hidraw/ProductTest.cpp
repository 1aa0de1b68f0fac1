#include "MainWindowViewController.h"
#include "MockBus.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QPlainTextEdit>
#include <QTest>
#include <QTimer>

namespace kavelo::test {
namespace {

/// What a unit of one pedal answers: version 2.1.0, one pedal, Shift and the key "a".
Bytes replyTo(std::uint8_t command)
{
    switch (command) {
    case GET_VERSION_NUMBER:
        return {0, 0, 2, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};
    case GET_NUMBER_OF_PEDALS:
        return {0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};
    default:
        return {0, 0, SIMPLE_KEY_OUTPUT, 2, 4, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};
    }
}

TEST(Product, ShowsAUnitOnHidrawAndBlanksTheWindowWhenItGoes)
{
    DeviceDetectedChanged = false;
    MockBus bus;
    MainWindowViewController window;
    window.show();
    const auto *text = window.findChild<QPlainTextEdit *>(QStringLiteral("textboxPedal0Contents"));
    const auto shows = [&](const QString &expected) {
        return QTest::qWaitFor([&] { return text->toPlainText() == expected; }, 20000);
    };
    for (int stay = 0; stay < 2; ++stay) {
        const std::string node = bus.plug();
        std::size_t answered = 0;
        QTimer firmware;
        QObject::connect(&firmware, &QTimer::timeout, [&] {
            const std::vector<Bytes> writes = bus.writes(node);
            if (answered < writes.size()) {
                bus.queueReport(node, replyTo(writes[answered++][1]));
            }
        });
        firmware.start(1);
        EXPECT_TRUE(shows(QStringLiteral("[Set function] Key output\n[key] a\n"
                                         "[Key explanation] Shift and this key will be an "
                                         "uppercase A\n[Modifier] (left)shift")));
        EXPECT_EQ(answered, 3U);
        firmware.stop();
        bus.unplug(node);
        EXPECT_TRUE(shows(QString()));
        EXPECT_FALSE(text->isVisible());
    }
}

} // namespace
} // namespace kavelo::test
