#include "commandline.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "version.h"

namespace skin {
namespace {

// Qt's options (QGuiApplication, QApplication and the X11 platform) that take a value as the
// next argument, and those that take none. Each may also be written with two dashes.
constexpr std::array<std::string_view, 15> kQtValueOptions{
    "platform", "platformpluginpath", "platformtheme", "plugin", "qwindowgeometry",
    "qwindowicon", "qwindowtitle", "session", "display", "geometry",
    "style", "stylesheet", "name", "title", "visual"};
constexpr std::array<std::string_view, 6> kQtFlagOptions{"reverse", "widgetcount", "nograb", "dograb", "sync",
                                                         "qmljsdebugger"};

template <std::size_t N>
bool Contains(const std::array<std::string_view, N>& names, std::string_view name)
{
    return std::find(names.begin(), names.end(), name) != names.end();
}

// "-platform" or "--platform" give "platform"; "-style=fusion" gives "style".
std::string_view QtOptionName(std::string_view argument)
{
    argument.remove_prefix(argument.starts_with("--") ? 2 : 1);
    return argument.substr(0, argument.find('='));
}

int HexDigit(char c)
{
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

// A file: URL as file managers hand it over: the path after the scheme, %XX decoded.
std::optional<std::string> LocalPathOfUrl(std::string_view url)
{
    constexpr std::string_view kScheme = "file://";
    if (!url.starts_with(kScheme)) return std::nullopt;
    url.remove_prefix(kScheme.size());
    if (url.starts_with("localhost/")) url.remove_prefix(std::string_view("localhost").size());
    if (!url.starts_with('/')) return std::nullopt;  // another host's file
    std::string path;
    for (std::size_t i = 0; i < url.size(); ++i) {
        if (url[i] == '%' && i + 2 < url.size() && HexDigit(url[i + 1]) >= 0 && HexDigit(url[i + 2]) >= 0) {
            path += static_cast<char>(HexDigit(url[i + 1]) * 16 + HexDigit(url[i + 2]));
            i += 2;
        } else {
            path += url[i];
        }
    }
    return path;
}

CommandLine UsageError(std::string error)
{
    CommandLine line;
    line.action = CommandLine::Action::UsageError;
    line.error = std::move(error);
    return line;
}

}  // namespace

CommandLine ParseCommandLine(const std::vector<std::string>& arguments)
{
    bool help = false;
    bool version = false;
    std::vector<std::string> files;
    bool optionsEnded = false;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& argument = arguments[i];
        if (optionsEnded || argument.size() < 2 || argument[0] != '-') {
            files.push_back(argument);
        } else if (argument == "--") {
            optionsEnded = true;
        } else if (argument == "--help" || argument == "-h") {
            help = true;
        } else if (argument == "--version" || argument == "-v") {
            version = true;
        } else if (const std::string_view name = QtOptionName(argument); Contains(kQtValueOptions, name)) {
            if (argument.find('=') == std::string::npos && ++i >= arguments.size()) {
                return UsageError("option " + argument + " needs a value");
            }
        } else if (!Contains(kQtFlagOptions, name)) {
            return UsageError("unknown option " + argument);
        }
    }
    CommandLine line;
    if (help) {
        line.action = CommandLine::Action::Help;
    } else if (version) {
        line.action = CommandLine::Action::Version;
    } else if (files.size() > 1) {
        return UsageError("only one file can be opened at a time");
    } else if (!files.empty()) {
        line.file = LocalPathOfUrl(files.front()).value_or(files.front());
    }
    return line;
}

std::string UsageText()
{
    return "usage: skinframewright [OPTION] [FILE]\n"
           "Starts the Brindleway skin editor. FILE, a skin package (.bsz) or a skin information\n"
           "file (.bsi), is loaded for editing once the window is shown.\n"
           "\n"
           "  -h, --help     show this help and exit\n"
           "  -v, --version  show the version and exit\n"
           "\n"
           "Qt's own options, such as -platform NAME or -display HOST:N, are passed on to Qt.\n";
}

std::string VersionText()
{
    return "skinframewright " + std::to_string(kVersionMajor) + "." + std::to_string(kVersionMinor) + "." +
           std::to_string(kVersionRevision) + "\n";
}

}  // namespace skin
