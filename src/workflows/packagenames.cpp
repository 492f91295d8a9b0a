// The Windows file-name rules that matter to the client: the characters Windows forbids in
// names, control characters, the device names, and a trailing dot or blank (which Windows
// drops, so the written file would not have the packed name).
#include "packagenames.h"

#include <algorithm>
#include <array>
#include <cctype>

#include "ini.h"
#include "windows1252.h"

namespace skin {
namespace {

constexpr std::string_view kForbidden = "\\/:*?\"<>|";

// CON, PRN, AUX, NUL, COM1..9, LPT1..9, and the superscript digits Windows also takes there.
bool isDeviceName(std::string_view stem) {
    std::string upper;
    for (char c : stem) upper.push_back(static_cast<char>(std::toupper(static_cast<unsigned char>(c))));
    if (upper == "CON" || upper == "PRN" || upper == "AUX" || upper == "NUL") return true;
    if (upper.size() < 4 || (upper.compare(0, 3, "COM") != 0 && upper.compare(0, 3, "LPT") != 0)) return false;
    const std::string_view digit = std::string_view(upper).substr(3);
    constexpr std::array<std::string_view, 12> kDigits{"1", "2", "3", "4", "5", "6", "7", "8", "9",
                                                       "\u00B9", "\u00B2", "\u00B3"};
    return std::find(kDigits.begin(), kDigits.end(), digit) != kDigits.end();
}

// The length of the UTF-8 sequence that `lead` starts (1 for a stray byte).
std::size_t sequenceLength(unsigned char lead) {
    if (lead >= 0xF0 && lead <= 0xF4) return 4;
    if (lead >= 0xE0 && lead <= 0xEF) return 3;
    if (lead >= 0xC2 && lead <= 0xDF) return 2;
    return 1;
}

// Why one character (a UTF-8 sequence) cannot stand in the package's text; nullopt when it can.
std::optional<std::string> characterFault(std::string_view character) {
    if (FromWindows1252(ToWindows1252(character)) != character) {
        return "contains the character \"" + std::string(character) + "\", which the package's text (Windows-1252) cannot hold";
    }
    const auto byte = static_cast<unsigned char>(character[0]);
    const bool c1Control = character.size() == 2 && byte == 0xC2 && static_cast<unsigned char>(character[1]) < 0xA0;
    if (byte < 0x20 || byte == 0x7F || c1Control) return std::string("contains a control character");
    return std::nullopt;
}

// Calls `each` with every character of `text` until it returns a fault.
template <typename Check>
std::optional<std::string> firstCharacterFault(std::string_view text, Check each) {
    for (std::size_t pos = 0; pos < text.size();) {
        const std::size_t length = std::min(sequenceLength(static_cast<unsigned char>(text[pos])), text.size() - pos);
        const std::string_view character = text.substr(pos, length);
        pos += length;
        if (auto fault = each(character)) return fault;
    }
    return std::nullopt;
}

}  // namespace

std::optional<std::string> SkinTextFault(std::string_view text) {
    if (auto fault = firstCharacterFault(text, characterFault)) return fault;
    // The reader trims blanks around a value, drops quotes around the whole of it and keeps
    // no more than its buffer holds.
    if (!text.empty() && text.front() == ' ') return std::string("begins with a blank, which the skin information file drops");
    if (!text.empty() && text.back() == ' ') return std::string("ends in a blank, which the skin information file drops");
    if (text.size() >= 2 && (text.front() == '"' || text.front() == '\'') && text.back() == text.front()) {
        return std::string("is set in quotation marks, which the skin information file drops");
    }
    if (ToWindows1252(text).size() > kIniValueLimit) {
        return "is longer than the " + std::to_string(kIniValueLimit) + " characters the skin information file keeps";
    }
    return std::nullopt;
}

std::optional<std::string> PackageNameFault(std::string_view name) {
    if (name.empty()) return "is empty";
    auto fileNameCharacterFault = [](std::string_view character) -> std::optional<std::string> {
        if (auto fault = characterFault(character)) return fault;
        if (kForbidden.find(character) != std::string_view::npos) {
            return "contains the character \"" + std::string(character) + "\", which Windows does not allow in file names";
        }
        return std::nullopt;
    };
    if (auto fault = firstCharacterFault(name, fileNameCharacterFault)) return fault;
    if (name.back() == '.') return std::string("ends in a dot, which Windows drops from file names");
    if (name.back() == ' ') return std::string("ends in a blank, which Windows drops from file names");
    // Windows takes a device name with any extension, and ignores blanks before the dot.
    std::string_view stem = name.substr(0, name.find('.'));
    while (!stem.empty() && stem.back() == ' ') stem.remove_suffix(1);
    if (isDeviceName(stem)) return std::string("is a name Windows reserves for a device");
    return std::nullopt;
}

}  // namespace skin
