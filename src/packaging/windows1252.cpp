#include "windows1252.h"

#include <array>
#include <cstdint>

namespace skin {
namespace {

// The characters of bytes 80..9F; the rest of the upper half equals Latin-1 (U+00A0..U+00FF).
// The undefined bytes map to the C1 control of the same number, as Windows' own tables do.
constexpr std::array<char16_t, 32> kHighControls{
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,  // 80..87
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,  // 88..8F
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,  // 90..97
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,  // 98..9F
};

constexpr char32_t kInvalid = 0xFFFFFFFF;

// The Windows-1252 byte of a code point, or -1 when there is none.
int byteOf(char32_t cp) {
    if (cp < 0x80 || (cp >= 0xA0 && cp <= 0xFF)) return static_cast<int>(cp);
    for (std::size_t i = 0; i < kHighControls.size(); ++i) {
        if (kHighControls[i] == cp) return static_cast<int>(0x80 + i);
    }
    return -1;
}

// Decodes one UTF-8 sequence at `pos`, advancing it. A byte that does not start a complete,
// shortest-form sequence of a valid scalar value is consumed alone and reported as kInvalid.
char32_t nextCodePoint(std::string_view s, std::size_t& pos) {
    const auto lead = static_cast<unsigned char>(s[pos]);
    if (lead < 0x80) {
        ++pos;
        return lead;
    }
    int length = 0;
    char32_t cp = 0;
    char32_t minimum = 0;
    if (lead >= 0xC2 && lead <= 0xDF) {
        length = 2, cp = lead & 0x1Fu, minimum = 0x80;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        length = 3, cp = lead & 0x0Fu, minimum = 0x800;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 4, cp = lead & 0x07u, minimum = 0x10000;
    } else {
        ++pos;
        return kInvalid;
    }
    if (pos + length > s.size()) {
        ++pos;
        return kInvalid;
    }
    for (int i = 1; i < length; ++i) {
        const auto c = static_cast<unsigned char>(s[pos + i]);
        if ((c & 0xC0u) != 0x80u) {
            ++pos;
            return kInvalid;
        }
        cp = (cp << 6) | (c & 0x3Fu);
    }
    if (cp < minimum || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) {
        ++pos;
        return kInvalid;
    }
    pos += length;
    return cp;
}

void appendUtf8(std::string& out, char32_t cp) {
    if (cp < 0x80) {
        out.push_back(static_cast<char>(cp));
    } else if (cp < 0x800) {
        out.push_back(static_cast<char>(0xC0 | (cp >> 6)));
        out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
    } else {
        out.push_back(static_cast<char>(0xE0 | (cp >> 12)));
        out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
    }
}

}  // namespace

std::string ToWindows1252(std::string_view utf8) {
    std::string out;
    out.reserve(utf8.size());
    std::size_t pos = 0;
    while (pos < utf8.size()) {
        const char32_t cp = nextCodePoint(utf8, pos);
        const int byte = cp == kInvalid ? -1 : byteOf(cp);
        out.push_back(byte < 0 ? kUnmappableCharacter : static_cast<char>(byte));
    }
    return out;
}

std::string FromWindows1252(std::string_view bytes) {
    std::string out;
    out.reserve(bytes.size() + bytes.size() / 2);
    for (const char ch : bytes) {
        const auto b = static_cast<unsigned char>(ch);
        if (b < 0x80) {
            out.push_back(ch);
        } else if (b < 0xA0) {
            appendUtf8(out, kHighControls[b - 0x80]);
        } else {
            appendUtf8(out, b);
        }
    }
    return out;
}

}  // namespace skin
