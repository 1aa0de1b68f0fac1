#pragma once

#include <QAccessible>
#include <QApplication>
#include <QButtonGroup>
#include <QRadioButton>
#include <QTest>

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace kavelo {

/// Goes round a window's controls with Tab, from `first` on. Every control that can be used must
/// come, but those of a group that the arrow keys reach, and must have a name for screen readers.
/// Returns them in their order.
inline std::vector<QWidget *> tabStops(QWidget &window, QWidget &first)
{
    EXPECT_TRUE(QTest::qWaitFor([&] { return QApplication::activeWindow() == &window; }, 20000));
    std::vector<QWidget *> stops;
    first.setFocus();
    for (QWidget *stop = QApplication::focusWidget();
         stop != nullptr && std::ranges::find(stops, stop) == stops.end();
         stop = QApplication::focusWidget()) {
        stops.push_back(stop);
        EXPECT_FALSE(QAccessible::queryAccessibleInterface(stop)->text(QAccessible::Name).isEmpty())
            << stop->objectName().toStdString();
        QTest::keyClick(stop, Qt::Key_Tab);
    }
    for (auto *control : window.findChildren<QWidget *>()) {
        const auto *radio = qobject_cast<QRadioButton *>(control);
        const bool isByArrowKey = radio != nullptr && radio->group() != nullptr &&
                                  radio->group()->checkedButton() != nullptr && !radio->isChecked();
        const bool isTabStop = (control->focusPolicy() & Qt::TabFocus) != 0 &&
                               control->focusProxy() == nullptr && control->isEnabled();
        if (control->window() == &window && control->isVisible() && (isTabStop || isByArrowKey)) {
            const bool isReached = std::ranges::find(stops, control) != stops.end();
            EXPECT_EQ(isReached, !isByArrowKey) << control->objectName().toStdString();
        }
    }
    return stops;
}

} // namespace kavelo
