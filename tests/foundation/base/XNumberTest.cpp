#include "foundation/base/XNumber.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <climits>
#include <clocale>
#include <cmath>
#include <cstdio>
#include <limits>
#include <random>

namespace {

constexpr double kInf = std::numeric_limits<double>::infinity();

struct tagReadCase
{
    const char* text;
    double value;
    int used;
};

TEST(XNumber, TheLeadingNumberCounts)
{
    const tagReadCase kCases[] = {
        {"12.5", 12.5, 4},
        {" \t\r\n-3.25abc", -3.25, 9},
        {"+7", 7, 2},
        {".5", 0.5, 2},
        {"5.", 5, 2},
        {"-.5e1x", -5, 5},
        {"1e5", 1e5, 3},
        {"1E+05", 1e5, 5},
        {"1e", 1, 1},
        {"1e+", 1, 1},
        {"1,5", 1, 1},
        {"1.2.3", 1.2, 3},
        {"1-2", 1, 1},
        {"0x1F", 0, 1},
        // never infinite, never beyond
        {"1e999", DBL_MAX, 5},
        {"-1e999", -DBL_MAX, 6},
        {"1e-999", 0, 6},
        {"0e99999999999999999999", 0, 22},
        {"1e99999999999999999999", DBL_MAX, 22},
        {"1e-99999999999999999999", 0, 23},
        {"0.0000000001e400", DBL_MAX, 16},
        {"10000000000e-400", 0, 16},
        {"1.7e308", 1.7e308, 7},
        {"4.9406564584124654e-324", 4.9406564584124654e-324, 23},
    };
    for (const tagReadCase& c : kCases) {
        double value = -1;
        EXPECT_EQ(XfnReadNumber(c.text, value), c.used) << c.text;
        EXPECT_EQ(value, c.value) << c.text;
    }
    double value = -1;
    for (const char* none : {"", "   ", "abc", ".", "-", "+-5", "--5", "e5", "inf", "-nan"}) {
        EXPECT_EQ(XfnReadNumber(none, value), 0) << none;
        EXPECT_EQ(value, 0) << none;
    }
    EXPECT_EQ(XfnReadNumber(nullptr, value), 0);
    EXPECT_EQ(value, 0);
    EXPECT_EQ(XfnReadNumber("123456", 3, value), 3); // no byte behind the length is looked at
    EXPECT_EQ(value, 123);
}

TEST(XNumber, ACommaIsThePointOnlyInBoxes)
{
    const tagReadCase kCases[] = {
        {"1,5", 1.5, 3}, {"-,5", -0.5, 3},  {"1,5e2 m", 150, 5}, {"12, 13", 12, 3},
        {"1.5", 1.5, 3}, {"1,234.5", 1, 1}, {"1,2,3", 1, 1},     {"1.5,", 1.5, 3},
        {",", 0, 0},     {"x1,5", 0, 0},
    };
    for (const tagReadCase& c : kCases) {
        double value = -1;
        EXPECT_EQ(XfnReadBoxNumber(c.text, value), c.used) << c.text;
        EXPECT_EQ(value, c.value) << c.text;
    }
    EXPECT_EQ(XfnToDouble("1,5"), 1);
    EXPECT_EQ(XfnBoxToDouble("1,5"), 1.5);
}

TEST(XNumber, WholeNumbersAreHeldAtTheirEnds)
{
    std::int64_t value = -1;
    EXPECT_EQ(XfnReadInteger(" -9223372036854775808", value), 21);
    EXPECT_EQ(value, INT64_MIN);
    EXPECT_EQ(XfnReadInteger("99999999999999999999", value), 20);
    EXPECT_EQ(value, INT64_MAX);
    EXPECT_EQ(XfnReadInteger("+-1", value), 0);
    EXPECT_EQ(XfnReadInteger("- 1", value), 0);
    EXPECT_EQ(XfnToInt("+12px"), 12);
    EXPECT_EQ(XfnToInt("5000000000"), INT_MAX);
    EXPECT_EQ(XfnToInt("-5000000000"), INT_MIN);
    EXPECT_EQ(XfnToInt("1e3"), 1);
    EXPECT_EQ(XfnToInt(nullptr), 0);
}

TEST(XNumber, Writes)
{
    EXPECT_STREQ(XfnFormatNumber(1.005, 2), "1.00"); // the double lies below
    EXPECT_STREQ(XfnFormatNumber(0.5, 0), "0");
    EXPECT_STREQ(XfnFormatNumber(-2.5, -3), "-2");
    EXPECT_STREQ(XfnFormatNumber(kInf, 3), "inf");
    EXPECT_STREQ(XfnFormatNumber(-kInf, 3), "-inf");
    EXPECT_STREQ(XfnFormatNumber(-std::nan(""), 3), "nan");
    EXPECT_STREQ(XfnFormatGeneral(1234567.0, 6), "1.23457e+06");
    EXPECT_STREQ(XfnFormatShortest(0.1), "0.1");
    EXPECT_STREQ(XfnFormatShortest(kInf), "inf");
    EXPECT_EQ(XfnFormatNumber(-DBL_MAX, 5000).GetLength(), 1 + 309 + 1 + 1100);
}

TEST(XNumber, ShortestTextReadsBack)
{
    std::mt19937_64 random(7);
    for (int i = 0; i < 20000; ++i) {
        const double value = std::bit_cast<double>(random());
        if (!std::isfinite(value)) continue;
        ASSERT_EQ(XfnToDouble(XfnFormatShortest(value)), value);
    }
}

// the C library is the independent source; it writes as we do while its locale is the plain one
TEST(XFormat, AgreesWithTheCLibrary)
{
    const std::string locale = std::setlocale(LC_ALL, nullptr);
    std::setlocale(LC_ALL, "C");
    const auto print = [](const char* format, auto... values) {
        char text[2048];
        std::snprintf(text, sizeof text, format, values...);
        return XString(text);
    };
    const double kReals[] = {0.0, -0.0, 1.0, -1.5, 0.1, 123456.789, 1e22, 1.7e308, -1e-7, 999999.5};
    for (const char* format : {"%f", "%.8lf", "%12.3f|", "%-12.3f|", "%+.2e", "% g", "%012.4lf",
                               "%.0f", "%.16g", "%G", "%.20lf", "%7.2f", "%E"}) {
        for (const double value : kReals) {
            EXPECT_EQ(XfnFormat(format, value), print(format, value)) << format << " " << value;
        }
    }
    for (const char* format : {"%d", "%3d", "%-5d|", "%05d", "%+d", "% d", "%u", "%x", "%#X", "%o",
                               "%#o", "%.3d", "%5.0d|", "%i", "%-+6d|"}) {
        for (const int value : {0, 1, -1, 42, INT_MAX, INT_MIN}) {
            EXPECT_EQ(XfnFormat(format, value), print(format, value)) << format << " " << value;
        }
    }
    EXPECT_EQ(XfnFormat("%*d|%-*d|%.*f", 5, 7, 4, 8, 2, 1.0),
              print("%*d|%-*d|%.*f", 5, 7, 4, 8, 2, 1.0));
    std::setlocale(LC_ALL, locale.c_str());
}

TEST(XFormat, ArgumentsKnowTheirTypes)
{
    const XString name("abc");
    EXPECT_STREQ(XfnFormat("%s %20s|%-5s|%.2s", name, "x", std::string("y"), name),
                 "abc                    x|y    |ab");
    EXPECT_STREQ(XfnFormat("%I64d %lld %hd", INT64_MIN, 5, 70000), "-9223372036854775808 5 70000");
    EXPECT_STREQ(XfnFormat("%d %f %s %s", 2.9, 3, 4, 0.25), "2 3.000000 4 0.25");
    EXPECT_STREQ(XfnFormat("%d %d", kInf, std::nan("")), "9223372036854775807 0");
    EXPECT_STREQ(XfnFormat("%d", UINT64_MAX), "18446744073709551615");
    EXPECT_STREQ(XfnFormat("%c%c %d", 'a', 66, true), "aB 1");
    EXPECT_STREQ(XfnFormat("%s %S", L"\u00e9", L"w"), "\xC3\xA9 w");
    EXPECT_STREQ(XfnFormat("%s|%d", static_cast<const char*>(nullptr), "text"), "(null)|text");
    // no foreign memory is read where arguments or letters are missing
    EXPECT_STREQ(XfnFormat("%s %d%%", "only"), "only %d%");
    EXPECT_STREQ(XfnFormat("100% %n %y %", 1, 2), "100% %n %y %");
    EXPECT_EQ(XfnFormat("%99999999999d", 1).GetLength(), 65535);
    EXPECT_STREQ(XfnFormat(nullptr), "");
}

TEST(XFormat, NoLocaleChangesANumber)
{
    const std::string locale = std::setlocale(LC_ALL, nullptr);
    const bool isSet = std::setlocale(LC_ALL, "de_DE.UTF-8") != nullptr;
    char proof[16];
    std::snprintf(proof, sizeof proof, "%.1f", 1.5);
    const XString written = XfnFormat("%.1f %g %s", 1.5, 2.5, 3.5);
    const double read = XfnToDouble("1.5");
    std::setlocale(LC_ALL, locale.c_str());
    if (!isSet) GTEST_SKIP() << "no locale with a decimal comma here";
    EXPECT_STREQ(proof, "1,5");
    EXPECT_STREQ(written, "1.5 2.5 3.5");
    EXPECT_EQ(read, 1.5);
}

} // namespace
