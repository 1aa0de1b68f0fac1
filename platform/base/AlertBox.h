#pragma once

#include <QString>

namespace kavelo {

/// Shows a modal notice with an "OK" button (key Return) and waits until it is closed. Logs on
/// standard output how it was closed. A caller needs no Qt Widgets: the definition is in a library
/// of its own (kavelo_alert).
void alertBox(const QString &Message);

} // namespace kavelo
