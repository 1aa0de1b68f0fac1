#pragma once

#include <QString>

namespace kavelo {

/// Shows one modal notice with an "OK" button on the Return key and waits until it is closed.
/// Logs how it was closed on standard output. Defined by the library of the boxes, so that those
/// who tell the user something need no windows themselves.
void alertBox(const QString &Message);

} // namespace kavelo
