#include "ProgramStyle.h"

#include <QApplication>

#include <gtest/gtest.h>

/// Read by LeakSanitizer: fontconfig keeps its configuration until the process is gone, and newer
/// Qt its fonts. This shows where a test ends its process at once.
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
    // The tests close many a last window.
    QApplication::setQuitOnLastWindowClosed(false);
    return RUN_ALL_TESTS();
}
