#pragma once

#include <QString>

namespace kavelo {

/// The text as widgets show it: "\r\n" and "\r", the line breaks of the program's texts, become
/// "\n".
[[nodiscard]] inline QString toScreenText(QStringView text)
{
    return text.toString()
        .replace(QStringLiteral("\r\n"), QStringLiteral("\n"))
        .replace(QLatin1Char('\r'), QLatin1Char('\n'));
}

} // namespace kavelo
