#include "Log.h"

#include <cstdio>

namespace kavelo {

void logLine(const QString &line)
{
    std::puts(qUtf8Printable(line));
    std::fflush(stdout);
}

} // namespace kavelo
