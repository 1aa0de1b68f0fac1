#pragma once

#include "Hid.h"
#include "PedalSetting.h"
#include "UnitId.h"

#include <array>
#include <chrono>
#include <cstdint>
#include <string_view>

/// The protocol of the unit's vendor interface. The host sends a request, one 16-byte output
/// report; the unit answers it with a reply, one 16-byte input report. Byte 0 of a request is its
/// command code. A reply does not name its request: the next report after a request is its reply.
/// The fields of a reply are at fixed positions, and its bytes 0 and 1 are ignored.
namespace kavelo {

constexpr hid::Matching KaveloMatching{
    .vendorId = UsbVendorId, .productId = UsbProductId, .usagePage = 0xFF00};

// Command codes, each with its display name. Bytes of a request that are not named below keep their
// previous values; such bytes of a reply are ignored.

/// Reply: byte 2 major, byte 3 minor, byte 4 revision.
constexpr std::uint8_t GET_VERSION_NUMBER = 0x90;
constexpr std::string_view GET_VERSION_NUMBER_CHAR = "[Get Version Number] Command";
/// Reply: byte 2 number of pedals.
constexpr std::uint8_t GET_NUMBER_OF_PEDALS = 0x91;
constexpr std::string_view GET_NUMBER_OF_PEDALS_CHAR = "[Get Number of Pedals] Command";
/// Request: bytes 1 to 4 the four timing parameters below.
constexpr std::uint8_t SET_PARAMETERS = 0x92;
constexpr std::string_view SET_PARAMETERS_CHAR = "[Set Parameters] Command";
/// Never sent by the utility.
constexpr std::uint8_t SET_KEYBOARD_MOUSE_ABILITY = 0x93;
constexpr std::string_view SET_KEYBOARD_MOUSE_ABILITY_CHAR = "[Set Keyboard Mouse Ability] Command";
/// Request: byte 1 pedal index, byte 2 output mode, bytes 3 to 15 the common record.
constexpr std::uint8_t SET_OUTPUT_MODE_AND_DATA = 0x94;
constexpr std::string_view SET_OUTPUT_MODE_AND_DATA_CHAR = "[Set Output Mode and Data] Command";
/// Request: byte 1 pedal index. Reply: byte 2 output mode, bytes 3 to 15 the common record.
constexpr std::uint8_t GET_OUTPUT_MODE_AND_DATA = 0x95;
constexpr std::string_view GET_OUTPUT_MODE_AND_DATA_CHAR = "[Get Output Mode and Data] Command";
/// Never sent by the utility.
constexpr std::uint8_t GET_PEDAL_STATE = 0x96;
constexpr std::string_view GET_PEDAL_STATE_CHAR = "[Get Pedal State] Command";
/// Never sent by the utility.
constexpr std::uint8_t SET_ADDITIONAL_DATA = 0x97;
constexpr std::string_view SET_ADDITIONAL_DATA_CHAR = "[Set Additional Data] Command";
/// Request: byte 1 pedal index, byte 2 piece 0 to 4. Reply: from byte 2 on the bytes of that piece
/// of the additional block, 13 of them, or 11 in piece 4.
constexpr std::uint8_t GET_ADDITIONAL_DATA = 0x98;
constexpr std::string_view GET_ADDITIONAL_DATA_CHAR = "[Get Additional Data] Command";
/// Never sent by the utility.
constexpr std::uint8_t SET_NUMBER_OF_PEDALS = 0x99;
constexpr std::string_view SET_NUMBER_OF_PEDALS_CHAR = "[Set Number of Pedals] Command";

/// Additional data bytes carried by one reply.
constexpr std::int32_t ADDITIONAL_DATA_ONE_TIME = 13;

// Timing parameters sent with SET_PARAMETERS, one byte each, in the firmware's own units.
constexpr std::int32_t CHATTERING_SETTLING_TIME = 25;
constexpr std::int32_t MODIFIER_PRECEDING_TIME = 20;
constexpr std::int32_t DOUBLE_CLICK_ON_TIME = 15;
constexpr std::int32_t DOUBLE_CLICK_OFF_TIME = 15;

// Second argument of a command exchange: whether its failure is shown to the user.
constexpr bool MESSAGE_ON = true;
constexpr bool MESSAGE_OFF = false;

// Timing of an exchange and of the periodic work around it.
constexpr std::chrono::milliseconds TickPeriod{100}; ///< of the link's and windows' timers
constexpr std::chrono::milliseconds WaitSlice{500};  ///< longest single run of the event loop
constexpr int TimeoutTicks = 30;                     ///< ticks an exchange waits for its reply
constexpr std::chrono::milliseconds ReplyTimeout = TimeoutTicks * TickPeriod;
/// How long after the timeout the reply may still arrive. Until then no other request is sent.
constexpr std::chrono::milliseconds ReplyLateness{1000};

/// The request buffer. Every sender fills it, and it is never cleared: a byte that a command does
/// not use still holds the value from an earlier request.
inline hid::Report OutputPacketBuffer{};
/// The buffer for input reports: the device writes every incoming report here. After a successful
/// exchange it holds the reply.
inline hid::Report InputPacketBuffer{};

// The unit's firmware version and number of pedals as last read. Set by the main window; the
// Standard dialog also reads the number of pedals, for its heading.
inline std::uint8_t VersionNumberMajor = 0;
inline std::uint8_t VersionNumberMinor = 0;
inline std::uint8_t VersionNumberRevision = 0;
inline int NumberOfPedals = 0;

/// Piece number of the one-way additional data request. The program never changes it.
inline int DataNo = 0;

/// The lowest major version of the firmware that this program does not support.
constexpr std::uint8_t FirstUnsupportedMajor = 3;

// Requests that several senders build. Each function fills OutputPacketBuffer from byte 1 on; the
// device link fills byte 0.

/// Fills in SET_OUTPUT_MODE_AND_DATA of one pedal (0 to 4) from its row of the setting arrays.
void fillSetOutputModeAndData(int pedal);
/// Fills in SET_PARAMETERS with the program's timing parameters.
void fillSetParameters();

} // namespace kavelo
