#include "ExchangeModel.h"

#include <QByteArrayView>
#include <QDateTime>
#include <QFontDatabase>

#include <algorithm>

namespace kavelo {
namespace {

struct Command
{
    std::uint8_t code;
    std::string_view name;
};

constexpr std::array<Command, 10> Commands{{
    {GET_VERSION_NUMBER, GET_VERSION_NUMBER_CHAR},
    {GET_NUMBER_OF_PEDALS, GET_NUMBER_OF_PEDALS_CHAR},
    {SET_PARAMETERS, SET_PARAMETERS_CHAR},
    {SET_KEYBOARD_MOUSE_ABILITY, SET_KEYBOARD_MOUSE_ABILITY_CHAR},
    {SET_OUTPUT_MODE_AND_DATA, SET_OUTPUT_MODE_AND_DATA_CHAR},
    {GET_OUTPUT_MODE_AND_DATA, GET_OUTPUT_MODE_AND_DATA_CHAR},
    {GET_PEDAL_STATE, GET_PEDAL_STATE_CHAR},
    {SET_ADDITIONAL_DATA, SET_ADDITIONAL_DATA_CHAR},
    {GET_ADDITIONAL_DATA, GET_ADDITIONAL_DATA_CHAR},
    {SET_NUMBER_OF_PEDALS, SET_NUMBER_OF_PEDALS_CHAR},
}};

QString timeText(const Exchange &exchange)
{
    const auto time = std::chrono::floor<std::chrono::milliseconds>(exchange.time);
    return QDateTime::fromMSecsSinceEpoch(time.time_since_epoch().count())
        .toString(QStringLiteral("HH:mm:ss.zzz"));
}

QString commandText(const Exchange &exchange)
{
    const auto *const command = std::ranges::find(Commands, exchange.request[0], &Command::code);
    return command == Commands.end() ? QStringLiteral("Unknown command")
                                     : QString::fromLatin1(command->name);
}

/// All bytes in groups of four, short enough for a request and its reply side by side.
QString hexText(const hid::Report &report)
{
    const QByteArrayView bytes(report.data(), static_cast<qsizetype>(report.size()));
    QString text = QString::fromLatin1(bytes.toByteArray().toHex().toUpper());
    for (qsizetype position = text.size() - 8; position > 0; position -= 8) {
        text.insert(position, u' ');
    }
    return text;
}

QString replyText(const Exchange &exchange)
{
    switch (exchange.outcome) {
    case Exchange::Outcome::Waiting:
        return QStringLiteral("waiting");
    case Exchange::Outcome::Refused:
        return QStringLiteral("refused");
    case Exchange::Outcome::NoReply:
        return QStringLiteral("no reply");
    case Exchange::Outcome::Answered:
        break;
    }
    return hexText(exchange.reply);
}

} // namespace

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
