#include "PedalDescription.h"
#include "PedalSetting.h"
#include "Require.h"

#include <QStringList>

#include <algorithm>
#include <span>
#include <tuple>

namespace kavelo {
namespace {

/// Fills the row with the first of the bytes and with zeros where there are none left.
void take(std::span<const std::uint8_t> &bytes, std::span<std::uint8_t> row)
{
    const std::size_t size = std::min(bytes.size(), row.size());
    const auto end = std::ranges::copy(bytes.first(size), row.begin()).out;
    std::fill(end, row.end(), std::uint8_t{0});
    bytes = bytes.subspan(size);
}

void checkText(const QString &text)
{
    require(text.isValidUtf16(), "the text is valid");
    const QStringList lines = text.split(QStringLiteral("\r\n"));
    for (const QString &line : lines) {
        require(line.isEmpty() || line.startsWith(u'['), "every line has a label");
        require(!line.contains(u'\r') && !line.contains(u'\n'), "lines end with CR and LF");
    }
}

} // namespace
} // namespace kavelo

/// The input is a mode, a common record and an additional block, those of the last pedal, so that
/// a read past the arrays shows.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size)
{
    using namespace kavelo;
    constexpr std::size_t Last = MaxPedals - 1;
    std::span input(bytes, size);
    take(input, std::span(OutputMode).subspan(Last));
    take(input, CommonData[Last]);
    take(input, AdditionalData[Last]);

    const auto before = std::tuple(OutputMode, CommonData, AdditionalData);
    const QString text = PedalDescription(Last);
    require(before == std::tuple(OutputMode, CommonData, AdditionalData), "a look changes nothing");
    if (OutputMode[Last] > OUTPUT_AT_CHANGE) {
        require(text == QStringLiteral("default"), "what is no mode is the default");
        return 0;
    }
    require(text.startsWith(QStringLiteral("[Set function] ")), "the function comes first");
    checkText(text);
    return 0;
}
