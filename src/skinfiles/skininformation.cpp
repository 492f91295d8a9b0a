#include "skininformation.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <limits>

#include "ini.h"

namespace skin {
namespace {

using F = TextField;
using R = ColourRole;

constexpr std::array<ColourEntry, 4> kSendColours{{
    {kSendColourKeys[0], F::SendMessage, R::Back},
    {kSendColourKeys[1], F::SendMessage, R::Text},
    {kSendColourKeys[2], F::SendUsers, R::Back},
    {kSendColourKeys[3], F::SendUsers, R::Text},
}};
constexpr std::array<ColourEntry, 4> kReceiveColours{{
    {kReceiveColourKeys[0], F::ReceiveMessage, R::Back},
    {kReceiveColourKeys[1], F::ReceiveMessage, R::Text},
    {kReceiveColourKeys[2], F::ReceiveDate, R::Text},
    {kReceiveColourKeys[3], F::ReceiveSender, R::Text},
}};

// The designers' machines format dates with English month abbreviations, and the client reads
// the date as plain text, so the English names are part of the format here.
constexpr std::array<std::string_view, 12> kMonthAbbreviations{"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                               "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

constexpr int kHoursPerHalfDay = 12;
constexpr int kExponentCap = 100000;  // far beyond any double, small enough not to overflow int

std::string integerText(long long value) { return std::to_string(value); }

// Picture-relative positions are whole twips in single precision; fixed notation prints them
// as plain integers (-285) and would still print a fraction rather than lose it.
std::string positionText(float value) {
    std::array<char, 64> buffer{};
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::fixed);
    return std::string(buffer.data(), result.ptr);
}

bool isValBlank(char c) { return c == ' ' || c == '\t' || c == '\n'; }
bool isDigit(char c) { return c >= '0' && c <= '9'; }

void writeArea(const SkinDocument& document, SkinSide side, AreaKind kind, const std::string& path) {
    const RelativeRect rect = document.PictureRelative(side, kind);
    const std::string_view section = KindInfo(side, kind).section;
    WriteINI(section, kAreaKeys[0], positionText(rect.Left), path);
    WriteINI(section, kAreaKeys[1], positionText(rect.Top), path);
    WriteINI(section, kAreaKeys[2], integerText(rect.Width), path);
    WriteINI(section, kAreaKeys[3], integerText(rect.Height), path);
}

void writeSide(const SkinDocument& document, SkinSide side, const std::string& path) {
    for (const ColourEntry& entry : ColourEntries(side)) {
        WriteINI(ColourSection(side), entry.key, integerText(document.Colour(entry.field, entry.role)), path);
    }
    for (AreaKind kind = 0; kind < kAreaKinds; ++kind) writeArea(document, side, kind, path);
}

}  // namespace

std::string_view ColourSection(SkinSide side) {
    return side == SkinSide::Send ? kSendColourSection : kReceiveColourSection;
}

const std::array<ColourEntry, 4>& ColourEntries(SkinSide side) {
    return side == SkinSide::Send ? kSendColours : kReceiveColours;
}

std::string SkinInformationFileName(std::string_view skinName) {
    std::string name(skinName);
    std::erase(name, ' ');
    return name.append(kSkinInformationExtension);
}

std::string FormatCreationTime(const LocalDateTime& time) {
    const int hour = ((time.hour % kHoursPerHalfDay) + kHoursPerHalfDay) % kHoursPerHalfDay;
    std::array<char, 32> buffer{};
    std::snprintf(buffer.data(), buffer.size(), "%02d:%02d %s", hour == 0 ? kHoursPerHalfDay : hour, time.minute,
                  time.hour >= kHoursPerHalfDay ? "PM" : "AM");
    return buffer.data();
}

std::string FormatCreationDate(const LocalDateTime& date) {
    const std::string_view month = kMonthAbbreviations[static_cast<std::size_t>(std::clamp(date.month, 1, 12) - 1)];
    std::array<char, 32> buffer{};
    std::snprintf(buffer.data(), buffer.size(), "%.*s-%02d-%04d", static_cast<int>(month.size()), month.data(),
                  date.day, date.year);
    return buffer.data();
}

void WriteSkinInformation(const SkinDocument& document, const std::string& path, Platform& platform) {
    WriteINI(kGlobalSection, kSkinNameKey, document.SkinName(), path);
    WriteINI(kGlobalSection, kSkinAuthorKey, document.SkinAuthor(), path);
    WriteINI(kGlobalSection, kSendImageKey, document.PictureFileName(SkinSide::Send), path);
    WriteINI(kGlobalSection, kReceiveImageKey, document.PictureFileName(SkinSide::Receive), path);
    WriteINI(kGlobalSection, kCreationTimeKey, FormatCreationTime(platform.Now()), path);
    WriteINI(kGlobalSection, kCreationDateKey, FormatCreationDate(platform.Now()), path);
    writeSide(document, SkinSide::Send, path);
    writeSide(document, SkinSide::Receive, path);
}

std::optional<std::int32_t> ColourFromText(std::string_view text) {
    while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
    while (!text.empty() && (text.back() == ' ' || text.back() == '\t')) text.remove_suffix(1);
    bool negative = false;
    if (!text.empty() && (text.front() == '+' || text.front() == '-')) {
        negative = text.front() == '-';
        text.remove_prefix(1);
    }
    if (text.empty() || !std::all_of(text.begin(), text.end(), isDigit)) return std::nullopt;
    // Parsed with its sign so that -2147483648 fits.
    std::string digits;
    if (negative) digits.push_back('-');
    digits.append(text);
    std::int32_t value = 0;
    const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (result.ec != std::errc{} || result.ptr != digits.data() + digits.size()) return std::nullopt;
    return value;
}

double RectangleValueFromText(std::string_view text) {
    std::size_t pos = 0;
    // The next character that is not a blank, or '\0' at the end.
    auto peek = [&]() -> char {
        while (pos < text.size() && isValBlank(text[pos])) ++pos;
        return pos < text.size() ? text[pos] : '\0';
    };

    std::string number;  // the recognised number, normalised for from_chars
    bool negative = false;
    if (peek() == '+' || peek() == '-') {
        negative = text[pos] == '-';
        ++pos;
    }
    if (negative) number.push_back('-');
    int integerDigits = 0;        // after leading zeros
    int leadingFractionZeros = 0;  // zeros after the point before the first other digit
    bool anyDigit = false;
    bool seenNonZero = false;
    while (isDigit(peek())) {
        anyDigit = true;
        if (text[pos] != '0') seenNonZero = true;
        if (seenNonZero) ++integerDigits;
        number.push_back(text[pos++]);
    }
    if (peek() == '.') {
        number.push_back(text[pos++]);
        while (isDigit(peek())) {
            anyDigit = true;
            if (text[pos] != '0') seenNonZero = true;
            if (!seenNonZero) ++leadingFractionZeros;
            number.push_back(text[pos++]);
        }
    }
    if (!anyDigit) return 0.0;
    // Zeros only: skip the exponent, whatever it says.
    if (!seenNonZero) return 0.0;

    long exponent = 0;
    const char marker = peek();
    if (marker == 'e' || marker == 'E' || marker == 'd' || marker == 'D') {
        const std::size_t markerPos = pos++;
        bool negativeExponent = false;
        if (peek() == '+' || peek() == '-') {
            negativeExponent = text[pos] == '-';
            ++pos;
        }
        if (isDigit(peek())) {
            while (isDigit(peek())) {
                exponent = std::min<long>(exponent * 10 + (text[pos++] - '0'), kExponentCap);
            }
            if (negativeExponent) exponent = -exponent;
            number.append("e").append(std::to_string(exponent));
        } else {
            pos = markerPos;  // "1e" or "1e+" ends the number before the "e"
        }
    }

    double value = 0;
    const auto result = std::from_chars(number.data(), number.data() + number.size(), value);
    if (result.ec == std::errc::result_out_of_range) {
        // The decimal position of the first significant digit tells overflow from underflow.
        const long magnitude = (integerDigits > 0 ? integerDigits : -leadingFractionZeros) + exponent;
        if (magnitude <= 0) return 0.0;
        const double largest = std::numeric_limits<double>::max();
        return negative ? -largest : largest;
    }
    return result.ec == std::errc{} ? value : 0.0;
}

}  // namespace skin
