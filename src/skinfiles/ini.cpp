#include "ini.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <optional>
#include <system_error>
#include <vector>

#include "windows1252.h"

namespace skin {
namespace {

constexpr std::string_view kLineEnd = "\r\n";
constexpr std::size_t kReadChunkBytes = 16u << 10;

// Blanks as the profile functions skip them; 0x1A is the old end-of-file mark some editors leave.
bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\v' || c == '\f' || c == '\x1a'; }

std::string_view trim(std::string_view s) {
    while (!s.empty() && isBlank(s.front())) s.remove_prefix(1);
    while (!s.empty() && isBlank(s.back())) s.remove_suffix(1);
    return s;
}

char asciiLower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool sameName(std::string_view a, std::string_view b) {
    return a.size() == b.size() &&
           std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) { return asciiLower(x) == asciiLower(y); });
}

// One line of the file, in Windows-1252 bytes, taken apart the way the profile reader sees it.
struct ParsedLine {
    enum Kind { Other, Section, Entry } kind = Other;
    std::string_view name;   // section or key name, trimmed
    std::string_view value;  // entry value, trimmed
};

ParsedLine parseLine(std::string_view line) {
    const std::string_view text = trim(line);
    if (text.empty() || text.front() == ';') return {};
    if (text.front() == '[') {
        // The name runs to the last "]"; an unclosed header names what follows "[".
        const std::size_t close = text.rfind(']');
        const std::string_view inside = text.substr(1, close == std::string_view::npos ? text.npos : close - 1);
        return {ParsedLine::Section, trim(inside), {}};
    }
    const std::size_t equals = text.find('=');
    if (equals == std::string_view::npos) return {};
    return {ParsedLine::Entry, trim(text.substr(0, equals)), trim(text.substr(equals + 1))};
}

// Names and values as Windows-1252 bytes, with line breaks flattened to blanks.
std::string toFileText(std::string_view utf8) {
    std::string bytes = ToWindows1252(utf8);
    std::replace_if(bytes.begin(), bytes.end(), [](char c) { return c == '\r' || c == '\n'; }, ' ');
    return bytes;
}

std::string fromFileValue(std::string_view value) {
    // Matching quotes around the whole value are dropped, as the profile reader does.
    if (value.size() >= 2 && (value.front() == '"' || value.front() == '\'') && value.back() == value.front()) {
        value = value.substr(1, value.size() - 2);
    }
    return FromWindows1252(value.substr(0, kIniValueLimit));
}

// Streams a file line by line with bounded memory: lines end at LF (a CR before it is a blank
// and trimmed), each line is kept to kIniMaxLineBytes, and reading stops at kIniMaxFileBytes.
class LineReader {
public:
    explicit LineReader(const std::string& fileName) : in_(fileName, std::ios::binary), chunk_(kReadChunkBytes) {}

    bool Next(std::string& line) {
        line.clear();
        bool any = false;
        for (;;) {
            if (pos_ == len_ && !refill()) return any;
            any = true;
            const char* start = chunk_.data() + pos_;
            const auto* lf = static_cast<const char*>(std::memchr(start, '\n', len_ - pos_));
            const std::size_t n = lf != nullptr ? static_cast<std::size_t>(lf - start) : len_ - pos_;
            line.append(start, std::min(n, kIniMaxLineBytes - std::min(line.size(), kIniMaxLineBytes)));
            pos_ += n;
            if (lf != nullptr) {
                ++pos_;
                return true;
            }
        }
    }

private:
    bool refill() {
        if (!in_ || total_ >= kIniMaxFileBytes) return false;
        const auto want = static_cast<std::streamsize>(std::min<std::uintmax_t>(chunk_.size(), kIniMaxFileBytes - total_));
        in_.read(chunk_.data(), want);
        len_ = static_cast<std::size_t>(in_.gcount());
        pos_ = 0;
        total_ += len_;
        return len_ > 0;
    }

    std::ifstream in_;
    std::vector<char> chunk_;
    std::size_t pos_ = 0;
    std::size_t len_ = 0;
    std::uintmax_t total_ = 0;
};

// A file as it was read for rewriting: its bytes and its lines without their line ends.
struct IniFile {
    bool exists = false;
    std::string data;
    std::vector<std::string> lines;
};

// The whole file, or nothing when it cannot be read; a missing file is empty.
std::optional<IniFile> readForRewrite(const std::string& fileName) {
    IniFile file;
    std::error_code ec;
    const auto status = std::filesystem::status(fileName, ec);
    if (status.type() == std::filesystem::file_type::not_found) return file;
    if (ec || status.type() != std::filesystem::file_type::regular) return std::nullopt;
    const std::uintmax_t size = std::filesystem::file_size(fileName, ec);
    if (ec || size > kIniMaxFileBytes) return std::nullopt;

    std::ifstream in(fileName, std::ios::binary);
    if (!in) return std::nullopt;
    file.exists = true;
    file.data.resize(static_cast<std::size_t>(size));
    in.read(file.data.data(), static_cast<std::streamsize>(size));
    file.data.resize(static_cast<std::size_t>(in.gcount()));

    const std::string_view data = file.data;
    std::size_t start = 0;
    while (start < data.size()) {
        std::size_t lf = data.find('\n', start);
        if (lf == std::string_view::npos) lf = data.size();
        std::string_view line = data.substr(start, lf - start);
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        file.lines.emplace_back(line);
        start = lf + 1;
    }
    return file;
}

// Writes the lines back, touching only the bytes from the first change on: most writes add
// at the end, and truncating a file to nothing before rewriting it makes some file systems
// flush it to disk every time.
bool rewrite(const std::string& fileName, const IniFile& file) {
    std::string data;
    for (const std::string& line : file.lines) data.append(line).append(kLineEnd);
    if (!file.exists) {
        std::ofstream out(fileName, std::ios::binary);
        out.write(data.data(), static_cast<std::streamsize>(data.size()));
        out.close();
        return static_cast<bool>(out);
    }
    const auto mismatch = std::mismatch(data.begin(), data.end(), file.data.begin(), file.data.end());
    const auto same = static_cast<std::size_t>(mismatch.first - data.begin());
    {
        std::fstream out(fileName, std::ios::binary | std::ios::in | std::ios::out);
        out.seekp(static_cast<std::streamoff>(same));
        out.write(data.data() + same, static_cast<std::streamsize>(data.size() - same));
        out.close();
        if (!out) return false;
    }
    if (data.size() < file.data.size()) {
        std::error_code ec;
        std::filesystem::resize_file(fileName, data.size(), ec);
        if (ec) return false;
    }
    return true;
}

}  // namespace

bool WriteINI(std::string_view section, std::string_view key, std::string_view value, const std::string& fileName) {
    const std::string sectionBytes{trim(toFileText(section))};
    const std::string keyBytes{trim(toFileText(key))};
    if (sectionBytes.empty() || keyBytes.empty()) return false;
    const std::string valueBytes = toFileText(value);

    auto file = readForRewrite(fileName);
    if (!file) return false;
    std::vector<std::string>& lines = file->lines;

    // The first section of that name takes the key; any later duplicate is never read.
    std::size_t header = lines.size();
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const ParsedLine parsed = parseLine(lines[i]);
        if (parsed.kind == ParsedLine::Section && sameName(parsed.name, sectionBytes)) {
            header = i;
            break;
        }
    }
    if (header == lines.size()) {
        if (!lines.empty() && !trim(lines.back()).empty()) lines.emplace_back();
        lines.push_back("[" + sectionBytes + "]");
        lines.push_back(keyBytes + "=" + valueBytes);
        return rewrite(fileName, *file);
    }

    // New keys go after the section's last entry, so blank lines and comments that lead into
    // the next section stay where they are.
    std::size_t insertAt = header + 1;
    for (std::size_t i = header + 1; i < lines.size(); ++i) {
        const ParsedLine parsed = parseLine(lines[i]);
        if (parsed.kind == ParsedLine::Section) break;
        if (parsed.kind != ParsedLine::Entry) continue;
        if (sameName(parsed.name, keyBytes)) {
            lines[i] = std::string(parsed.name) + "=" + valueBytes;
            return rewrite(fileName, *file);
        }
        insertAt = i + 1;
    }
    lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(insertAt), keyBytes + "=" + valueBytes);
    return rewrite(fileName, *file);
}

std::string ReadINI(std::string_view section, std::string_view key, const std::string& fileName) {
    const std::string sectionBytes{trim(ToWindows1252(section))};
    const std::string keyBytes{trim(ToWindows1252(key))};

    // Devices and pipes are no INI files: opening one could block or never end.
    std::error_code ec;
    if (!std::filesystem::is_regular_file(fileName, ec)) return {};

    LineReader reader(fileName);
    std::string line;
    bool inSection = false;
    while (reader.Next(line)) {
        const ParsedLine parsed = parseLine(line);
        if (parsed.kind == ParsedLine::Section) {
            // Only the first section of that name counts.
            if (inSection) return {};
            inSection = sameName(parsed.name, sectionBytes);
        } else if (inSection && parsed.kind == ParsedLine::Entry && sameName(parsed.name, keyBytes)) {
            return fromFileValue(parsed.value);
        }
    }
    return {};
}

}  // namespace skin
