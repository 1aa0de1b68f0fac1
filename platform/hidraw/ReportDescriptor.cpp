#include "ReportDescriptor.h"

#include <array>
#include <cstddef>
#include <utility>

namespace kavelo::hid {
namespace {

/// First byte of a long item. The next two bytes are the size of its data and its tag. No HID
/// version defines a long item, so long items are skipped.
constexpr std::uint8_t LongItemPrefix = 0xFE;
constexpr std::size_t LongItemHeaderSize = 3;

/// The first byte of a short item without its two size bits: the tag in bits 4 to 7, the type in
/// bits 2 and 3.
enum ItemKind : std::uint8_t {
    UsagePage = 0x04,
    Usage = 0x08,
    UsageMinimum = 0x18,
    Input = 0x80,
    Output = 0x90,
    Collection = 0xA0,
    Push = 0xA4,
    Feature = 0xB0,
    Pop = 0xB4,
    EndCollection = 0xC0,
};
constexpr std::uint8_t SizeMask = 0x03;
constexpr std::array<std::size_t, 4> DataSizes = {0, 1, 2, 4};

constexpr std::uint32_t ApplicationCollection = 0x01;

class Parser
{
public:
    void takeItem(std::uint8_t prefix, std::span<const std::uint8_t> data);
    [[nodiscard]] std::vector<std::uint16_t> pages() && { return std::move(m_pages); }

private:
    void beginCollection(std::uint32_t type);

    std::vector<std::uint16_t> m_pages;
    std::uint16_t m_usagePage = 0;
    std::vector<std::uint16_t> m_pushedUsagePages;
    /// The first usage since the last main item. Of several usages only the first one counts, and a
    /// local item such as a usage applies only to the next main item. An extended usage has 4
    /// bytes; its upper two bytes are its usage page.
    std::uint32_t m_usage = 0;
    bool m_hasUsage = false;
    bool m_usageIsExtended = false;
    std::size_t m_depth = 0;
};

void Parser::beginCollection(std::uint32_t type)
{
    if (m_depth == 0 && type == ApplicationCollection) {
        // The usage page of a short usage is the last one declared before the main item, even when
        // it is declared after the usage.
        m_pages.push_back(m_usageIsExtended ? static_cast<std::uint16_t>(m_usage >> 16)
                                            : m_usagePage);
    }
    ++m_depth;
}

void Parser::takeItem(std::uint8_t prefix, std::span<const std::uint8_t> data)
{
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < data.size(); ++i) {
        value |= std::uint32_t{data[i]} << (8 * i);
    }

    switch (prefix & ~SizeMask) {
    case UsagePage:
        m_usagePage = static_cast<std::uint16_t>(value);
        return;
    case Push:
        m_pushedUsagePages.push_back(m_usagePage);
        return;
    case Pop:
        if (!m_pushedUsagePages.empty()) {
            m_usagePage = m_pushedUsagePages.back();
            m_pushedUsagePages.pop_back();
        }
        return;
    case Usage:
    case UsageMinimum:
        if (!m_hasUsage) {
            m_usage = value;
            m_hasUsage = true;
            m_usageIsExtended = data.size() == sizeof(m_usage);
        }
        return;
    case Collection:
        beginCollection(value);
        break;
    case EndCollection:
        m_depth -= m_depth > 0 ? 1 : 0;
        break;
    case Input:
    case Output:
    case Feature:
        break;
    default:
        return;
    }
    // A main item ends the scope of the local items before it.
    m_hasUsage = false;
    m_usageIsExtended = false;
}

} // namespace

std::vector<std::uint16_t> applicationUsagePages(std::span<const std::uint8_t> descriptor)
{
    Parser parser;
    while (!descriptor.empty()) {
        const std::uint8_t prefix = descriptor[0];
        if (prefix == LongItemPrefix) {
            if (descriptor.size() < LongItemHeaderSize) {
                break;
            }
            const std::size_t size = LongItemHeaderSize + descriptor[1];
            if (descriptor.size() < size) {
                break;
            }
            descriptor = descriptor.subspan(size);
            continue;
        }
        const std::size_t size = DataSizes.at(prefix & SizeMask);
        if (descriptor.size() <= size) {
            break;
        }
        parser.takeItem(prefix, descriptor.subspan(1, size));
        descriptor = descriptor.subspan(1 + size);
    }
    return std::move(parser).pages();
}

} // namespace kavelo::hid
