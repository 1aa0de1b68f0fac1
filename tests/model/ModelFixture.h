#pragma once

#include "PedalSetting.h"

#include <QString>
#include <algorithm>
#include <gtest/gtest.h>
#include <ostream>
#include <span>
#include <vector>

/// Lets a failed expectation show its texts.
inline void PrintTo(const QString &text, std::ostream *out)
{
    *out << '"' << text.toStdString() << '"';
}

namespace kavelo {

using Bytes = std::vector<std::uint8_t>;

/// Starts every test, and leaves every test, with the setting arrays as the program starts.
class ModelTest : public testing::Test
{
protected:
    void SetUp() override { reset(); }
    void TearDown() override { reset(); }

    /// Sets a pedal; bytes that are not given are 0.
    static void setPedal(std::size_t pedal, std::uint8_t mode, const Bytes &common,
                         const Bytes &additional = {})
    {
        OutputMode.at(pedal) = mode;
        fill(CommonData.at(pedal), common);
        fill(AdditionalData.at(pedal), additional);
    }

private:
    static void fill(std::span<std::uint8_t> row, const Bytes &bytes)
    {
        ASSERT_LE(bytes.size(), row.size());
        std::fill(std::copy(bytes.begin(), bytes.end(), row.begin()), row.end(), std::uint8_t{0});
    }

    static void reset()
    {
        OutputMode = {};
        CommonData = {};
        AdditionalData = {};
        SelectedPedalNo = 0;
    }
};

} // namespace kavelo
