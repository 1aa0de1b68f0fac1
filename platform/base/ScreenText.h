#pragma once

#include <QString>

namespace kavelo {

/// Converts a text of the program for a widget: the line breaks "\r\n" and "\r" become "\n".
[[nodiscard]] inline QString toScreenText(QStringView text)
{
    return text.toString()
        .replace(QStringLiteral("\r\n"), QStringLiteral("\n"))
        .replace(QLatin1Char('\r'), QLatin1Char('\n'));
}

} // namespace kavelo
