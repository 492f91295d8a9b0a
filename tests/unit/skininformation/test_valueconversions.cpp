// The conversions used when a skin information file is read back, and the time, date and
// file-name forms used when one is written.

#include <gtest/gtest.h>

#include <limits>
#include <optional>
#include <string>

#include "skininformation.h"

namespace skin {
namespace {

TEST(ColourFromText, AcceptsOnlyASignedDecimal32BitInteger) {
    struct Row {
        const char* text;
        std::optional<std::int32_t> value;
    };
    const Row rows[] = {
        {"14737632", 14737632},
        {"-2147483640", -2147483640},
        {"-2147483648", std::numeric_limits<std::int32_t>::min()},
        {"2147483647", 2147483647},
        {"+5", 5},
        {"-0", 0},
        {"007", 7},
        {" 42\t", 42},  // blanks around the number are allowed
        {"", std::nullopt},
        {"   ", std::nullopt},
        {"-", std::nullopt},
        {"+", std::nullopt},
        {"abc", std::nullopt},
        {"12abc", std::nullopt},
        {"1 2", std::nullopt},
        {"- 5", std::nullopt},
        {"--5", std::nullopt},
        {"+-5", std::nullopt},
        {"1.5", std::nullopt},
        {"1e3", std::nullopt},
        {"0x10", std::nullopt},
        {"&H10", std::nullopt},
        {"2147483648", std::nullopt},
        {"-2147483649", std::nullopt},
        {"99999999999999999999", std::nullopt},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(std::string("\"") + row.text + "\"");
        EXPECT_EQ(ColourFromText(row.text), row.value);
    }
}

TEST(RectangleValueFromText, TakesTheLeadingDecimalNumberLikeVal) {
    struct Row {
        const char* text;
        double value;
    };
    const Row rows[] = {
        {"-285", -285},   {"12abc", 12},    {"", 0},          {"abc", 0},       {" 7", 7},
        {"\t\n7", 7},     {"-5", -5},       {"+5", 5},        {"1 2", 12},      {"- 5", -5},
        {"1.5", 1.5},     {".5", 0.5},      {"-.25", -0.25},  {"5.", 5},        {".", 0},
        {"-", 0},         {"1e3", 1000},    {"1E3", 1000},    {"1d2", 100},     {"2.5e-1", 0.25},
        {"1e", 1},        {"1e+", 1},       {"1ex", 1},       {"0x10", 0},      {"&H10", 0},
        {"1,5", 1},       {"3.7.1", 3.7},   {"--5", 0},       {"00012", 12},    {"1e-400", 0},
        {"0e999", 0},     {"-0.000", 0},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(std::string("\"") + row.text + "\"");
        EXPECT_DOUBLE_EQ(RectangleValueFromText(row.text), row.value);
    }
}

TEST(RectangleValueFromText, NumbersBeyondADoubleStayFinite) {
    const double largest = std::numeric_limits<double>::max();
    EXPECT_EQ(RectangleValueFromText("1e400"), largest);
    EXPECT_EQ(RectangleValueFromText("-1e400"), -largest);
    EXPECT_EQ(RectangleValueFromText("0.001e312"), largest);
    EXPECT_EQ(RectangleValueFromText("1e99999999999999999999"), largest);
    EXPECT_EQ(RectangleValueFromText(std::string(400, '9')), largest);
    EXPECT_EQ(RectangleValueFromText("1000e-330"), 0.0);
}

TEST(CreationTime, TwelveHourClockWithTwoDigitHours) {
    struct Row {
        int hour, minute;
        const char* text;
    };
    const Row rows[] = {
        {0, 0, "12:00 AM"},  {0, 59, "12:59 AM"}, {1, 5, "01:05 AM"},  {11, 59, "11:59 AM"},
        {12, 0, "12:00 PM"}, {13, 0, "01:00 PM"}, {14, 6, "02:06 PM"}, {23, 59, "11:59 PM"},
    };
    for (const Row& row : rows) {
        LocalDateTime t;
        t.hour = row.hour;
        t.minute = row.minute;
        EXPECT_EQ(FormatCreationTime(t), row.text);
    }
}

TEST(CreationDate, EnglishMonthTwoDigitDayFourDigitYear) {
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
