#pragma once

#include <QStringList>

class QLabel;

namespace kavelo {

/// The height that the longest of some texts needs in a label's font, wrapped to a width. Both are
/// in device-independent pixels.
[[nodiscard]] int heightForTexts(const QLabel &label, int width, const QStringList &texts);

} // namespace kavelo
