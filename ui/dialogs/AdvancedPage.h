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

/// A page of the Advanced dialog. A page that shows the current setting also has a function load(),
/// which corrects impossible values in the row.
class AdvancedPage : public QWidget
{
    Q_OBJECT

public:
    using QWidget::QWidget;

    /// Whether OK writes this page.
    [[nodiscard]] virtual bool canWrite() const = 0;
    /// Writes the choices on the page into the row of a pedal.
    virtual void write(const PedalRow &pedal) = 0;
};

} // namespace kavelo
