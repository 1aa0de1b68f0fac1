#pragma once

#include <QStringList>

class QLabel;

namespace kavelo {

/// The height of the tallest of the texts in the font of the label when they are wrapped to the
/// width. Both lengths are in device-independent pixels.
[[nodiscard]] int heightForTexts(const QLabel &label, int width, const QStringList &texts);

} // namespace kavelo
