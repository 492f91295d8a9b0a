#include "skininfocheck.h"

#include <set>
#include <utility>

#include "skininfotable.h"

namespace skin::bsztool {
namespace {

std::string lower(std::string_view text) {
    std::string out(text);
    for (char& c : out) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    return out;
}

std::string_view trim(std::string_view text) {
    const auto first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos) return {};
    const auto last = text.find_last_not_of(" \t");
    return text.substr(first, last - first + 1);
}

}  // namespace

std::optional<std::string> FindMissingSkinInformation(std::string_view iniText) {
    std::set<std::string> sections;
    std::set<std::pair<std::string, std::string>> keys;
    std::string section;
    bool inSection = false;
    while (!iniText.empty()) {
        const auto end = iniText.find_first_of("\r\n");
        const std::string_view line = trim(iniText.substr(0, end));
        iniText.remove_prefix(end == std::string_view::npos ? iniText.size() : end + 1);
        if (line.empty() || line.front() == ';') continue;
        if (line.front() == '[') {
            const auto close = line.find(']');
            if (close == std::string_view::npos) continue;
            section = lower(trim(line.substr(1, close - 1)));
            sections.insert(section);
            inSection = true;
            continue;
        }
        const auto equals = line.find('=');
        if (inSection && equals != std::string_view::npos) keys.emplace(section, lower(trim(line.substr(0, equals))));
    }
    for (const SkinInfoSection& expected : kSkinInfoSections) {
        const std::string name = lower(expected.name);
        if (sections.count(name) == 0) return "missing section [" + std::string(expected.name) + "]";
        for (const auto key : expected.keys) {
            if (keys.count({name, lower(key)}) == 0) {
                return "section [" + std::string(expected.name) + "] has no key \"" + std::string(key) + "\"";
            }
        }
    }
    return std::nullopt;
}

}  // namespace skin::bsztool
