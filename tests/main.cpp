#include "ProgramStyle.h"

#include <QApplication>

#include <gtest/gtest.h>

/// Read by LeakSanitizer. fontconfig never frees its configuration, and newer Qt does not free its
/// fonts when a test ends its process by exit().
extern "C" const char *__lsan_default_suppressions() // NOLINT(bugprone-reserved-identifier)
{
#if QT_VERSION < QT_VERSION_CHECK(6, 9, 0)
    return "leak:libfontconfig";
#else
    return "leak:libfontconfig\nleak:libQt6Gui";
#endif
}

int main(int argc, char *argv[])
{
    ::testing::InitGoogleTest(&argc, argv);
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    const QApplication application(argc, argv);
    QApplication::setStyle(new kavelo::ProgramStyle);
    // Closing a window must not end the tests.
    QApplication::setQuitOnLastWindowClosed(false);
    return RUN_ALL_TESTS();
}
