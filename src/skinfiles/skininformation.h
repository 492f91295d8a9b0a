#pragma once
// The skin information file (.bsi): an INI text that names the skin, its author and its two
// pictures, stamps the time of creation, and lists the kept text-field colours and the
// rectangle of every area kind of both sides, in twips relative to each side's picture.

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform.h"
#include "skindocument.h"
#include "skininfotable.h"

namespace skin {

inline constexpr std::string_view kSkinInformationExtension = ".bsi";


// One kept colour of a side: its key in the side's colour section and the colour it carries.
struct ColourEntry {
    std::string_view key;
    TextField field;
    ColourRole role;
};

// "Send Colours" or "Recieve Colours".
std::string_view ColourSection(SkinSide side);
// The four kept colours of a side, in the order they are written and read.
const std::array<ColourEntry, 4>& ColourEntries(SkinSide side);
// The section of a side's area kind is KindInfo(side, kind).section.

// The file name for a skin: the name with every blank (U+0020) removed, plus ".bsi".
std::string SkinInformationFileName(std::string_view skinName);

// "hh:mm AM" / "hh:mm PM": 12-hour clock, hours 01..12.
std::string FormatCreationTime(const LocalDateTime& time);
// "Mon-DD-YYYY" with the English month abbreviation (the designers' locale), e.g. Nov-18-2026.
std::string FormatCreationDate(const LocalDateTime& date);

// Writes the 19 sections and 78 keys of a skin, in the format's order, key by key with
// WriteINI into `path`. The time and the date each come from platform.Now() when their own key
// is written. No value is checked and write failures are not reported.
void WriteSkinInformation(const SkinDocument& document, const std::string& path, Platform& platform);

// The strict colour conversion: the whole text, blanks around it aside, must be an optional
// sign and decimal digits within the signed 32-bit range. Anything else (empty text, a
// trailing part, "1e3", "0x10", overflow) gives nothing.
std::optional<std::int32_t> ColourFromText(std::string_view text);

// The lenient rectangle conversion, after Basic's Val: the leading decimal number of the text
// with "." as the decimal point whatever the locale and an optional exponent (E or D), 0 when
// there is none ("12abc" gives 12, "" gives 0, "1e3" gives 1000, "0x10" gives 0). Blanks, tabs
// and line feeds are skipped wherever they stand. A number beyond the double range gives the
// largest finite double of its sign, one too small for it gives 0.
double RectangleValueFromText(std::string_view text);

}  // namespace skin
