#pragma once

#include "SimulatedUnit.h"

#include <QTreeWidget>

namespace kavelo {

/// The last exchanges with a simulated unit, one a row, the newest at the bottom.
class ExchangeList : public QTreeWidget
{
    Q_OBJECT

public:
    static constexpr int MaxRows = 1000; ///< older rows are dropped

    explicit ExchangeList(QWidget *parent = nullptr);

    /// Enough for all columns and for ten rows.
    [[nodiscard]] QSize sizeHint() const override;

    /// Appends a new exchange, or updates the reply in the row of a known one.
    void record(const Exchange &exchange);

private:
    void append(const Exchange &exchange);
    /// The row of an exchange; null when it has been cleared or dropped.
    [[nodiscard]] QTreeWidgetItem *rowOf(const Exchange &exchange) const;

    QSize m_tenRows;
    int m_lastNumber = 0; ///< number of the newest exchange, even when its row has been cleared
};

} // namespace kavelo
