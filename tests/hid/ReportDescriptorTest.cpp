#include "ReportDescriptor.h"

#include <gtest/gtest.h>

#include <QByteArray>

#include <utility>
#include <vector>

namespace kavelo::test {
namespace {

TEST(ReportDescriptor, FindsThePagesOfTheTopLevelApplicationCollections)
{
    // 05/06/07 usage page, 09/0B usage, 1B usage minimum, 81 input, A101 application collection,
    // A100 physical collection, C0 end of collection, A4 push, B4 pop, FE long item.
    // clang-format off
    const std::vector<std::pair<const char *, std::vector<std::uint16_t>>> cases{
        {"0700FF0000 0901 A101 C0", {0xFF00}}, // the page in four bytes
        {"0501 0901 0600FF A101", {0xFF00}}, // page declared after the usage
        {"0501 0B010000FF A101 C0", {0xFF00}}, // extended usage
        {"0501 1B010000FF A101", {0xFF00}}, // extended usage minimum
        {"0501 0906 0B010000FF A101", {1}}, // of two usages the first counts
        // a usage ends with a collection
        {"0501 0B010000FF A101 0B01000200 C0 A101 C0 0B010000FF A101", {0xFF00, 1, 0xFF00}},
        {"0501 0B010000FF 8102 0906 A101", {1}}, // and with any other main item
        {"0501 0906 A101 A100 C0 0600FF 0901 A101", {1}}, // nested application collection
        {"0600FF 0901 A100 A101 C0 C0", {}}, // inside a physical collection
        {"0600FF 0901 A0", {}}, // collection without a type
        {"0600FF A4 0501 A4 0507 B4 0901 A101 C0 B4 0901 A101", {1, 0xFF00}}, // each pop ends one push
        {"0600FF B4 0901 A101", {0xFF00}}, // pop of nothing
        {"C0 C0 0600FF 0901 A101", {0xFF00}}, // end of nothing
        {"0501 FE0510 0600FFA101 0906 A101", {1}}, // long item holding a collection
        {"0600FF 0901 FE0610 A101", {}}, // truncated long item
        {"0600FF A101 FE", {0xFF00}}, // a long item's header cut
        {"0600FF 0901 A1", {}}, // truncated collection
    };
    // clang-format on
    for (const auto &[items, pages] : cases) {
        const QByteArray bytes = QByteArray::fromHex(items);
        const std::vector<std::uint8_t> descriptor(bytes.begin(), bytes.end());
        EXPECT_EQ(hid::applicationUsagePages(descriptor), pages) << items;
    }
}

} // namespace
} // namespace kavelo::test
