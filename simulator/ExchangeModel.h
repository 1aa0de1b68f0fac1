#pragma once

#include "SimulatedUnit.h"

#include <QAbstractTableModel>

#include <deque>

namespace kavelo {

/// The last exchanges with a simulated unit, one a row, the newest at the bottom.
class ExchangeModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { Time, CommandName, Request, Reply, ColumnCount };
    static constexpr std::size_t MaxRows = 1000; ///< older ones are dropped

    using QAbstractTableModel::QAbstractTableModel;

    /// Appends a new exchange, or brings the row of a known one up to date.
    void record(const Exchange &exchange);
    void clear();

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                      int role) const override;

private:
    void append(const Exchange &exchange);

    std::deque<Exchange> m_exchanges; ///< consecutive numbers
    int m_lastNumber = 0;             ///< of the newest exchange, cleared or not
};

} // namespace kavelo
