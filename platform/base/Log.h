#pragma once

#include <QString>

namespace kavelo {

/// Writes one line to standard output at once.
void logLine(const QString &line);

} // namespace kavelo
