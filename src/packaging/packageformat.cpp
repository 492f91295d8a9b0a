#include "packageformat.h"

#include <algorithm>
#include <charconv>

namespace skin {
namespace {


char lowerAscii(char c) {
    return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c;
}

std::size_t findNoCase(std::string_view text, std::string_view tag, std::size_t from) {
    if (tag.empty() || text.size() < tag.size()) return std::string_view::npos;
    for (std::size_t i = from; i + tag.size() <= text.size(); ++i) {
        std::size_t k = 0;
        while (k < tag.size() && lowerAscii(text[i + k]) == lowerAscii(tag[k])) ++k;
        if (k == tag.size()) return i;
    }
    return std::string_view::npos;
}

// One left-to-right pass, as a plain text replace does: removed text is not searched again.
std::string removeAll(std::string_view text, std::string_view tag) {
    std::string out;
    out.reserve(text.size());
    std::size_t pos = 0;
    for (;;) {
        const std::size_t hit = findNoCase(text, tag, pos);
        if (hit == std::string_view::npos) break;
        out.append(text.substr(pos, hit - pos));
        pos = hit + tag.size();
    }
    out.append(text.substr(pos));
    return out;
}

// Decimal digits only, as the coder writes them.
std::optional<std::int64_t> parseDigits(std::string_view text) {
    if (text.empty() || text.size() > 10) return std::nullopt;
    std::int64_t value = 0;
    const auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (ec != std::errc() || end != text.data() + text.size() || text.front() == '-') return std::nullopt;
    return value;
}

}  // namespace

bool ContainsNoCase(std::string_view text, std::string_view tag) {
    return findNoCase(text, tag, 0) != std::string_view::npos;
}

std::string RemoveTagsNoCase(std::string_view line, std::string_view open, std::string_view close) {
    return removeAll(removeAll(line, open), close);
}

bool IsSafePackageName(std::string_view name) {
    if (name.empty() || name == "." || name == "..") return false;
    return name.find_first_of(std::string_view("/\\\0", 3)) == std::string_view::npos;
}

std::optional<std::string> RestoreStoredFileName(std::string_view stored) {
    const std::size_t marker = stored.find(kRenameMarker);
    if (marker == std::string_view::npos) return std::string(stored);
    const std::size_t lastDot = stored.rfind('.');
    if (lastDot == std::string_view::npos) return std::nullopt;
    std::string restored(stored.substr(0, marker));
    restored.append(stored.substr(lastDot));
    return restored;
}

std::optional<std::string> InsertRenameMarker(std::string_view name, int n) {
    const std::size_t dot = name.find('.');
    if (dot == std::string_view::npos) return std::nullopt;
    std::string renamed(name.substr(0, dot));
    renamed.append(kRenameMarker);
    renamed.append(std::to_string(n));
    renamed.append(name.substr(dot));
    return renamed;
}

std::optional<std::int32_t> ParseFileLength(std::string_view text) {
    const auto first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) return std::nullopt;
    const auto last = text.find_last_not_of(' ');
    const auto value = parseDigits(text.substr(first, last - first + 1));
    if (!value || *value > kMaxPackedFileSize) return std::nullopt;
    return static_cast<std::int32_t>(*value);
}

}  // namespace skin
