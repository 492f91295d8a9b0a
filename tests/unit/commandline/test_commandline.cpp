#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "commandline.h"

namespace skin {
namespace {

using Action = CommandLine::Action;
using Args = std::vector<std::string>;

struct Case {
    Args arguments;
    Action action;
    std::string file;  // Run: the file to open, empty for none
};

// Qt's options and their values are passed over; the one other argument is the file.
TEST(CommandLine, RunsWithAtMostOneFileAmongQtsOptions)
{
    const std::vector<Case> cases{
        {{}, Action::Run, ""},
        {{"Night.bsz"}, Action::Run, "Night.bsz"},
        {{"/skins/Night.bsi"}, Action::Run, "/skins/Night.bsi"},
        {{"-platform", "offscreen", "Night.bsz"}, Action::Run, "Night.bsz"},
        {{"Night.bsz", "-display", ":7"}, Action::Run, "Night.bsz"},
        {{"--platform", "xcb", "-style=Fusion", "-reverse", "x.bsi"}, Action::Run, "x.bsi"},
        {{"-platform", "Night.bsz"}, Action::Run, ""},  // the value of -platform, not a file
        {{"--", "-odd name.bsz"}, Action::Run, "-odd name.bsz"},
        {{"-"}, Action::Run, "-"},
        {{"file:///home/ann/My%20Skins/Night.bsz"}, Action::Run, "/home/ann/My Skins/Night.bsz"},
        {{"file://localhost/tmp/a%2"}, Action::Run, "/tmp/a%2"},
        {{"file://otherhost/tmp/a.bsz"}, Action::Run, "file://otherhost/tmp/a.bsz"},
    };
    for (const Case& c : cases) {
        const CommandLine line = ParseCommandLine(c.arguments);
        const std::string shown = c.arguments.empty() ? "(none)" : c.arguments.front();
        EXPECT_EQ(line.action, c.action) << shown;
        EXPECT_EQ(line.file.value_or(""), c.file) << shown;
        EXPECT_EQ(line.file.has_value(), !c.file.empty()) << shown;
    }
}

TEST(CommandLine, HelpAndVersionWinOverFiles)
{
    EXPECT_EQ(ParseCommandLine({"--help"}).action, Action::Help);
    EXPECT_EQ(ParseCommandLine({"-h", "a.bsz", "b.bsz"}).action, Action::Help);
    EXPECT_EQ(ParseCommandLine({"--version", "--help"}).action, Action::Help);
    EXPECT_EQ(ParseCommandLine({"a.bsz", "--version"}).action, Action::Version);
    EXPECT_EQ(ParseCommandLine({"-v"}).action, Action::Version);
    EXPECT_FALSE(ParseCommandLine({"--help", "a.bsz"}).file.has_value());
}

TEST(CommandLine, UnknownOptionsExtraFilesAndMissingValuesAreUsageErrors)
{
    const std::vector<std::pair<Args, std::string>> cases{
        {{"--bogus"}, "unknown option --bogus"},
        {{"-x", "a.bsz"}, "unknown option -x"},
        {{"--help=yes"}, "unknown option --help=yes"},
        {{"--", "a.bsz", "b.bsz"}, "only one file can be opened at a time"},
        {{"a.bsz", "b.bsi"}, "only one file can be opened at a time"},
        {{"a.bsz", "-display"}, "option -display needs a value"},
    };
    for (const auto& [arguments, error] : cases) {
        const CommandLine line = ParseCommandLine(arguments);
        EXPECT_EQ(line.action, Action::UsageError) << arguments.front();
        EXPECT_EQ(line.error, error);
        EXPECT_FALSE(line.file.has_value());
    }
}

TEST(CommandLine, UsageNamesTheFormsAndVersionTheProgram)
{
    const std::string usage = UsageText();
    EXPECT_EQ(usage.rfind("usage: skinframewright [OPTION] [FILE]\n", 0), 0u);
    for (const char* option : {"--help", "--version", "-platform"}) {
        EXPECT_NE(usage.find(option), std::string::npos) << option;
    }
    EXPECT_EQ(VersionText(), "skinframewright " SKIN_EXPECTED_VERSION "\n");
}

}  // namespace
}  // namespace skin
