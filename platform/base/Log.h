#pragma once

#include <QString>

namespace kavelo {

/// Writes one line to standard output and flushes it.
void logLine(const QString &line);

} // namespace kavelo
