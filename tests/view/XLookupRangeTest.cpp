#include "view/XLookupRange.h"

#include <gtest/gtest.h>

#include <array>

namespace {

/// A table of `low` up to index a, a ramp, and `high` from index b.
std::array<unsigned char, 256> Table(int a, int b)
{
    std::array<unsigned char, 256> table{};
    for (int i = 0; i < 256; ++i)
        table[static_cast<std::size_t>(i)] =
            static_cast<unsigned char>(i <= a   ? 0
                                       : i >= b ? 255
                                                : 1 + (i - a) % 254);
    return table;
}

struct RangeCase
{
    const char* name;
    int a;
    int b;
    int dataType;
    double first;
    double last;
};

const RangeCase kCases[] = {
    {"identity: both ends are the table's", 0, 255, 1, 0, 255},
    {"the end index is raised by one", 50, 200, 1, 50, 201},
    {"but not beyond the table", 50, 255, 1, 50, 255},
    {"a step", 99, 100, 1, 99, 101},
    {"signed bytes are shifted", 50, 200, 2, -77, 74},
    {"words are spread over the band's values", 51, 203, 3, 1000 + 51 * 4.0, 1000 + 204 * 4.0},
    {"and so are reals", 0, 255, 7, 1000, 2020},
};

TEST(XLookupRangeTest, EndsOfTheRuns)
{
    for (const RangeCase& c : kCases) {
        double first = 0, last = 0;
        XfnLookupRange(Table(c.a, c.b).data(), c.dataType, 1000, 2020, first, last);
        EXPECT_DOUBLE_EQ(first, c.first) << c.name;
        EXPECT_DOUBLE_EQ(last, c.last) << c.name;
    }
}

TEST(XLookupRangeTest, ATableOfOneValueStandsReversed)
{
    const std::array<unsigned char, 256> table{};
    double first = 0, last = 0;
    XfnLookupRange(table.data(), 1, 0, 0, first, last);
    EXPECT_EQ(first, 255);
    EXPECT_EQ(last, 1);
}

} // namespace
