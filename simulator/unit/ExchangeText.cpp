#include "ExchangeText.h"

#include <QByteArrayView>
#include <QDateTime>

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

} // namespace

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

} // namespace kavelo
