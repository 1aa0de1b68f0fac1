#pragma once

#include "PedalSetting.h"

#include <QWidget>

namespace kavelo {

/// A pedal's row of the setting arrays.
struct PedalRow
{
    std::uint8_t &outputMode;
    CommonRecord &commonData;
    const AdditionalBlock &additionalData;
};

/// A page of the Advanced dialog. A page that shows the pedal's setting has a `load`, too, which
/// puts impossible values of the row right.
class AdvancedPage : public QWidget
{
    Q_OBJECT

public:
    using QWidget::QWidget;

    /// Whether OK writes this page.
    [[nodiscard]] virtual bool canWrite() const = 0;
    /// Writes what the page shows into the row, which is the selected pedal's.
    virtual void write(const PedalRow &pedal) = 0;
};

} // namespace kavelo
