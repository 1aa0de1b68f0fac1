#include "Protocol.h"

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

std::string_view commandName(std::uint8_t command)
{
    const auto *const found = std::ranges::find(Commands, command, &Command::code);
    return found == Commands.end() ? std::string_view{} : found->name;
}

void fillSetOutputModeAndData(int pedal)
{
    const auto row = static_cast<std::size_t>(pedal);
    OutputPacketBuffer[1] = static_cast<std::uint8_t>(pedal);
    OutputPacketBuffer[2] = OutputMode.at(row);
    std::ranges::copy(CommonData.at(row), OutputPacketBuffer.begin() + 3);
}

void fillSetParameters()
{
    OutputPacketBuffer[1] = static_cast<std::uint8_t>(CHATTERING_SETTLING_TIME);
    OutputPacketBuffer[2] = static_cast<std::uint8_t>(MODIFIER_PRECEDING_TIME);
    OutputPacketBuffer[3] = static_cast<std::uint8_t>(DOUBLE_CLICK_ON_TIME);
    OutputPacketBuffer[4] = static_cast<std::uint8_t>(DOUBLE_CLICK_OFF_TIME);
}

} // namespace kavelo
