#include "ReportDescriptor.h"
#include "Require.h"

#include <algorithm>
#include <cstddef>

/// The input is a report descriptor.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size)
{
    const std::span descriptor(bytes, size);
    const auto pages = kavelo::hid::applicationUsagePages(descriptor);
    // A collection takes at least two bytes.
    kavelo::require(pages.size() <= size / 2, "no more pages than collections");
    const auto first = kavelo::hid::applicationUsagePages(descriptor.first(size / 2));
    kavelo::require(std::ranges::mismatch(first, pages).in1 == first.end(),
                    "what follows in a descriptor changes nothing before it");
    return 0;
}
