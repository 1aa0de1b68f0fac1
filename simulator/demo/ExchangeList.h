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

    /// Appends a new exchange, or brings the row of a known one up to date.
    void record(const Exchange &exchange);

private:
    void append(const Exchange &exchange);
    /// Null for an exchange whose row has been cleared or dropped.
    [[nodiscard]] QTreeWidgetItem *rowOf(const Exchange &exchange) const;

    int m_lastNumber = 0; ///< of the newest exchange, cleared or not
};

} // namespace kavelo
