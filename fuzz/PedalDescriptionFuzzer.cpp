#include "PedalDescription.h"
#include "PedalSetting.h"
#include "Require.h"

#include <QRegularExpression>
#include <QStringList>

#include <algorithm>
#include <tuple>

/// The input is a mode, a common record and an additional block. Missing bytes are zeros. They are
/// stored for the last pedal, so that AddressSanitizer sees a read beyond the arrays.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size)
{
    using namespace kavelo;
    constexpr std::size_t Last = MaxPedals - 1;
    std::array<std::uint8_t, 1 + NUMBER_OF_COMMON_DATA + ADDITIONAL_DATA_ONE_PEDAL> input{};
    std::copy_n(bytes, std::min(size, input.size()), input.begin());
    OutputMode[Last] = input[0];
    const auto rows = std::span(input).subspan<1>();
    std::ranges::copy(rows.first<NUMBER_OF_COMMON_DATA>(), CommonData[Last].begin());
    std::ranges::copy(rows.last<ADDITIONAL_DATA_ONE_PEDAL>(), AdditionalData[Last].begin());

    const auto before = std::tuple(OutputMode, CommonData, AdditionalData);
    const QString text = PedalDescription(Last);
    require(before == std::tuple(OutputMode, CommonData, AdditionalData),
            "a description changes no setting");
    if (OutputMode[Last] >= NumberOfModes) {
        require(text == QStringLiteral("default"), "an unknown mode has the default text");
        return 0;
    }
    require(text.startsWith(QStringLiteral("[Set function] ")), "the function comes first");
    require(text.isValidUtf16(), "the text is valid");
    const QStringList lines = text.split(QStringLiteral("\r\n"));
    for (const QString &line : lines) {
        require(line.isEmpty() || line.startsWith(u'['), "every line has a label");
        require(!line.contains(u'\r') && !line.contains(u'\n'), "lines end with CR and LF");
    }
    const QRegularExpression output(QStringLiteral("^\\[[^]]*Output"));
    require(OutputMode[Last] != PLURAL_SIMULTANEOUS_KEY_OUTPUT ||
                lines.filter(output).size() ==
                    std::clamp(CommonData[Last][3] & 0x7F, 1, NUMBER_OF_PSKO_OUTPUT),
            "every output of a sequence has a line");
    return 0;
}
