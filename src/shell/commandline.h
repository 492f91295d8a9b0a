#pragma once
// The program's command line, read before any window-system connection is made, so that
// --help, --version and usage errors work without a display:
//
//   skinframewright [--help | --version] [FILE]
//
// Qt's own options (-platform NAME, -display HOST:N, -style NAME, ...) are recognised and left
// for Qt, which takes them out of the arguments when the application starts.

#include <optional>
#include <string>
#include <vector>

namespace skin {

struct CommandLine {
    enum class Action { Run, Help, Version, UsageError };
    Action action = Action::Run;
    std::optional<std::string> file;  // Run: the package or skin information file to open
    std::string error;                // UsageError: what was wrong, without the usage
};

// Reads the arguments after the program name. "--" ends the options; a "file:" URL names a
// local file.
CommandLine ParseCommandLine(const std::vector<std::string>& arguments);

// The usage text (for --help on stdout, after an error on stderr) and the version line.
std::string UsageText();
std::string VersionText();

// Exit status of a usage error.
inline constexpr int kUsageExitStatus = 2;

}  // namespace skin
