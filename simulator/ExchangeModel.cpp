#include "ExchangeModel.h"

#include "ExchangeText.h"

#include <QFontDatabase>

namespace kavelo {

void ExchangeModel::record(const Exchange &exchange)
{
    if (exchange.number > m_lastNumber) {
        append(exchange);
        return;
    }
    if (m_exchanges.empty() || exchange.number < m_exchanges.front().number) {
        return; // cleared or dropped meanwhile
    }
    const int row = exchange.number - m_exchanges.front().number;
    m_exchanges.at(static_cast<std::size_t>(row)) = exchange;
    Q_EMIT dataChanged(index(row, 0), index(row, ColumnCount - 1));
}

void ExchangeModel::append(const Exchange &exchange)
{
    if (m_exchanges.size() == MaxRows) {
        beginRemoveRows({}, 0, 0);
        m_exchanges.pop_front();
        endRemoveRows();
    }
    const int row = rowCount();
    beginInsertRows({}, row, row);
    m_exchanges.push_back(exchange);
    m_lastNumber = exchange.number;
    endInsertRows();
}

void ExchangeModel::clear()
{
    beginResetModel();
    m_exchanges.clear();
    endResetModel();
}

int ExchangeModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_exchanges.size());
}

int ExchangeModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant ExchangeModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid()) {
        return {};
    }
    if (role == Qt::FontRole && index.column() >= Request) {
        return QFontDatabase::systemFont(QFontDatabase::FixedFont);
    }
    if (role != Qt::DisplayRole) {
        return {};
    }
    const Exchange &exchange = m_exchanges.at(static_cast<std::size_t>(index.row()));
    switch (index.column()) {
    case Time:
        return timeText(exchange);
    case CommandName:
        return commandText(exchange);
    case Request:
        return hexText(exchange.request);
    default:
        return replyText(exchange);
    }
}

QVariant ExchangeModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    static const std::array<QString, ColumnCount> Titles{
        QStringLiteral("Time"), QStringLiteral("Command"), QStringLiteral("Request"),
        QStringLiteral("Reply")};
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) {
        return {};
    }
    return Titles.at(static_cast<std::size_t>(section));
}

} // namespace kavelo
