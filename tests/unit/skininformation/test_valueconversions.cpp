// The conversions used when a skin information file is read back, and the time, date and
// file-name forms used when one is written.

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <optional>
#include <string>
#include <tuple>
#include <utility>

#include "skininformation.h"

namespace skin {
namespace {

TEST(ColourFromText, AcceptsOnlyASignedDecimal32BitInteger) {
    const std::pair<const char*, std::optional<std::int32_t>> valid[] = {
        {"14737632", 14737632}, {"-2147483640", -2147483640}, {"-2147483648", std::numeric_limits<std::int32_t>::min()},
        {"2147483647", 2147483647}, {"+5", 5}, {"-0", 0}, {"007", 7}, {" 42\t", 42},  // blanks around are allowed
    };
    for (auto [text, value] : valid) EXPECT_EQ(ColourFromText(text), value) << '"' << text << '"';
    for (const char* text : {"", "   ", "-", "+", "abc", "12abc", "1 2", "- 5", "--5", "+-5", "1.5", "1e3", "0x10",
                             "&H10", "2147483648", "-2147483649", "99999999999999999999"}) {
        EXPECT_EQ(ColourFromText(text), std::nullopt) << '"' << text << '"';
    }
}

TEST(RectangleValueFromText, TakesTheLeadingDecimalNumberLikeValAndStaysFinite) {
    const double largest = std::numeric_limits<double>::max();
    const std::pair<std::string, double> rows[] = {
        {"-285", -285},   {"12abc", 12},    {"", 0},          {"abc", 0},       {" 7", 7},
        {"\t\n7", 7},     {"-5", -5},       {"+5", 5},        {"1 2", 12},      {"- 5", -5},
        {"1.5", 1.5},     {".5", 0.5},      {"-.25", -0.25},  {"5.", 5},        {".", 0},
        {"-", 0},         {"1e3", 1000},    {"1E3", 1000},    {"1d2", 100},     {"2.5e-1", 0.25},
        {"1e", 1},        {"1e+", 1},       {"1ex", 1},       {"0x10", 0},      {"&H10", 0},
        {"1,5", 1},       {"3.7.1", 3.7},   {"--5", 0},       {"00012", 12},    {"1e-400", 0},
        {"0e999", 0},     {"-0.000", 0},    {"1000e-330", 0}, {"1e400", largest}, {"-1e400", -largest},
        {"0.001e312", largest}, {"1e99999999999999999999", largest}, {std::string(400, '9'), largest},
    };
    for (const auto& [text, value] : rows) {
        const double read = RectangleValueFromText(text);
        EXPECT_DOUBLE_EQ(read, value) << '"' << text << '"';
        EXPECT_TRUE(std::isfinite(read)) << '"' << text << '"';
    }
}

TEST(CreationStamps, TwelveHourClockAndEnglishMonthDate) {
    const std::tuple<int, int, const char*> times[] = {
        {0, 0, "12:00 AM"},  {0, 59, "12:59 AM"}, {1, 5, "01:05 AM"},  {11, 59, "11:59 AM"},
        {12, 0, "12:00 PM"}, {13, 0, "01:00 PM"}, {14, 6, "02:06 PM"}, {23, 59, "11:59 PM"},
    };
    for (auto [hour, minute, text] : times) EXPECT_EQ(FormatCreationTime({2026, 1, 1, hour, minute, 0}), text);
    const char* months[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    for (int m = 1; m <= 12; ++m) {
        EXPECT_EQ(FormatCreationDate({2026, m, 18, 0, 0, 0}), std::string(months[m - 1]) + "-18-2026");
    }
    EXPECT_EQ(FormatCreationDate({2027, 1, 1, 0, 0, 0}), "Jan-01-2027");
    EXPECT_EQ(FormatCreationDate({999, 2, 28, 0, 0, 0}), "Feb-28-0999");
}

TEST(SkinInformationFileName, DropsEveryBlankAndKeepsTheRest) {
    EXPECT_EQ(SkinInformationFileName("Blue Sky"), "BlueSky.bsi");
    EXPECT_EQ(SkinInformationFileName(" Blue  Sky "), "BlueSky.bsi");
    EXPECT_EQ(SkinInformationFileName("   "), ".bsi");
    EXPECT_EQ(SkinInformationFileName("Caf\u00e9\tNoir"), "Caf\u00e9\tNoir.bsi");  // only U+0020 goes
    EXPECT_EQ(SkinInformationFileName("a\u00a0b"), "a\u00a0b.bsi");
}

}  // namespace
}  // namespace skin
