// The built bsztool, run as a designer or a hosting site would run it.

#include <sys/wait.h>

#include <cstdlib>
#include <utility>

#include "containertest.h"

#ifdef BSZTOOL_PATH

namespace skin::testing {
namespace {

struct ToolRun {
    int status = -1;
    std::string out;
    std::string err;
};

// `arg` in single quotes for the shell.
std::string Quoted(const std::string& arg) {
    std::string out = " '";
    for (char c : arg) out += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return out + "'";
}

// A skin information file with every section and key, optionally leaving one key out.
std::string SkinInformation(const std::string& leaveOut = "") {
    std::string text = "[Global]\r\n";
    for (const char* key : {"Skin Name", "Skin Author", "Skin Send Image", "Skin Recieve Image", "Skin Creation Time",
                            "Skin Creation Date"})
        text += std::string(key) + "=v\r\n";
    auto section = [&](const std::string& name, std::initializer_list<const char*> keys) {
        text += "\r\n[" + name + "]\r\n";
        for (const char* key : keys)
            if (name + "/" + key != leaveOut) text += std::string(key) + "=1\r\n";
    };
    section("Send Colours", {"Message Back Colour", "Message Text Colour", "User List Back Colour", "User List Text Colour"});
    for (const char* kind : {"User List", "Message", "All", "None", "Cut", "Send", "Close", "Options"})
        section(std::string("Send ") + kind, {"Left", "Top", "Width", "Height"});
    section("Recieve Colours", {"Message Back Colour", "Message Text Colour", "Date Text Colour", "Sender Text Colour"});
    for (const char* kind : {"Date", "Sender", "Message", "OK", "Yes", "No", "Reply", "Close"})
        section(std::string("Recieve ") + kind, {"Left", "Top", "Width", "Height"});
    return text;
}

class BsztoolTest : public ContainerTest {
protected:
    ToolRun Bsztool(const std::vector<std::string>& args) {
        std::string command = "cd" + Quoted(dir_.string()) + " &&" + Quoted(BSZTOOL_PATH);
        for (const auto& arg : args) command += Quoted(arg);
        command += " >" + Quoted(Str("stdout.txt")) + " 2>" + Quoted(Str("stderr.txt"));
        const int raw = std::system(command.c_str());
        ToolRun run{WIFEXITED(raw) ? WEXITSTATUS(raw) : -1, ReadBytes(Path("stdout.txt")), ReadBytes(Path("stderr.txt"))};
        fs::remove(Path("stdout.txt"));
        fs::remove(Path("stderr.txt"));
        return run;
    }
    void MakeSkin() {
        WriteBytes(Path("Blue/BlueSky.bsi"), SkinInformation());
        std::string picture = "BM";
        for (int i = 0; i < 20000; ++i) picture.push_back(static_cast<char>(i % 7 == 0 ? i % 251 : 0x40));
        WriteBytes(Path("Blue/send.bmp"), picture);
        WriteBytes(Path("Blue/recv.bmp"), picture.substr(0, 9000));
    }
};

TEST_F(BsztoolTest, PackListVerifyUnpackRoundTripAndNoOverwriteUnlessForced) {
    MakeSkin();
    const ToolRun pack = Bsztool({"pack", "--root", "Blue Sky", "blue.bsz", "Blue/send.bmp", "Blue/recv.bmp", "Blue/BlueSky.bsi"});
    ASSERT_EQ(pack.status, 0) << pack.err;

    const ToolRun list = Bsztool({"list", "blue.bsz"});
    ASSERT_EQ(list.status, 0) << list.err;
    for (const char* line : {"Blue Sky\tsend.bmp\t", "\tHE2\t20002\n", "Blue Sky\tBlueSky.bsi\t"})
        EXPECT_NE(list.out.find(line), std::string::npos) << list.out;
    EXPECT_FALSE(fs::exists(Path("Blue Sky")));

    const ToolRun verify = Bsztool({"verify", "blue.bsz"});
    EXPECT_EQ(verify.status, 0) << verify.err;
    EXPECT_EQ(verify.out.rfind("OK", 0), 0u);

    fs::create_directories(Path("out"));
    const ToolRun unpack = Bsztool({"unpack", "blue.bsz", "out"});
    ASSERT_EQ(unpack.status, 0) << unpack.err;
    EXPECT_NE(unpack.out.find("out/Blue Sky/BlueSky.bsi"), std::string::npos) << unpack.out;
    EXPECT_EQ(Tree(Path("out/Blue Sky")), Tree(Path("Blue")));

    const std::string package = ReadBytes(Path("blue.bsz"));
    const ToolRun refused = Bsztool({"pack", "blue.bsz", "Blue"});
    EXPECT_EQ(refused.status, 2);
    EXPECT_NE(refused.err.find("--force"), std::string::npos);
    EXPECT_EQ(Bsztool({"pack", "--force", "blue.bsz", "Blue", "nowhere.gif"}).status, 2);
    EXPECT_EQ(ReadBytes(Path("blue.bsz")), package);
    ASSERT_EQ(Bsztool({"pack", "--force", "blue.bsz", "Blue"}).status, 0);
    EXPECT_NE(ReadBytes(Path("blue.bsz")), package);
    EXPECT_EQ(Bsztool({"verify", "blue.bsz"}).status, 0);
    EXPECT_EQ(Bsztool({"pack", "x.bsz", "Blue/"}).status, 2);
}

TEST_F(BsztoolTest, VerifyNamesTheFirstProblem) {
    WriteBytes(Path("Skin/Skin.bsi"), SkinInformation("Recieve Reply/Width"));
    ASSERT_EQ(Bsztool({"pack", "short.bsz", "Skin"}).status, 0);
    const ToolRun keys = Bsztool({"verify", "short.bsz"});
    EXPECT_EQ(keys.status, 1);
    EXPECT_NE(keys.err.find("[Recieve Reply] has no key \"Width\""), std::string::npos) << keys.err;

    const std::string package = ReadBytes(Path("short.bsz"));
    WriteBytes(Path("cut.bsz"), package.substr(0, package.size() / 2));
    const ToolRun cut = Bsztool({"verify", "cut.bsz"});
    EXPECT_EQ(cut.status, 1);
    EXPECT_NE(cut.err.find("ends inside"), std::string::npos) << cut.err;
    EXPECT_EQ(Bsztool({"unpack", "cut.bsz"}).status, 1);
}

TEST_F(BsztoolTest, He2DecodeFailurePrintsTheDescriptionAndWritesNothing) {
    WriteBytes(Path("text.txt"), std::string(3000, 'a') + std::string(1000, 'b'));
    ASSERT_EQ(Bsztool({"he2", "encode", "text.txt", "text.he2"}).status, 0);
    ASSERT_EQ(Bsztool({"he2", "decode", "text.he2", "back.txt"}).status, 0);
    EXPECT_EQ(ReadBytes(Path("back.txt")), ReadBytes(Path("text.txt")));

    const std::string coded = ReadBytes(Path("text.he2"));
    WriteBytes(Path("short.he2"), coded.substr(0, coded.size() - 1));
    const ToolRun shorter = Bsztool({"he2", "decode", "short.he2", "never.txt"});
    EXPECT_EQ(shorter.status, 1);
    EXPECT_EQ(shorter.err, "Expecting more bytes in data stream\n");
    EXPECT_FALSE(fs::exists(Path("never.txt")));

    // Short input is stored unless forced.
    WriteBytes(Path("abc.txt"), "abc");
    ASSERT_EQ(Bsztool({"he2", "encode", "abc.txt", "plain.he"}).status, 0);
    ASSERT_EQ(Bsztool({"he2", "encode", "--force", "abc.txt", "forced.he"}).status, 0);
    EXPECT_EQ(ReadBytes(Path("plain.he")), "HE0\rabc");
    EXPECT_TRUE(ReadBytes(Path("forced.he")).starts_with("HE2\r"));
}

TEST_F(BsztoolTest, UsageHelpAndUnreadableFiles) {
    WriteBytes(Path("junk.bsz"), "not a package at all");
    // Status 0 is a help run, which prints the usage.
    const std::pair<std::vector<std::string>, int> runs[] = {
        {{"--help"}, 0}, {{"pack", "--help"}, 0}, {{"unpack", "--help"}, 0}, {{"list", "--help"}, 0},
        {{"verify", "--help"}, 0}, {{"he2", "--help"}, 0}, {{"he2", "encode", "--help"}, 0}, {{"he2", "decode", "--help"}, 0},
        {{}, 2}, {{"frobnicate"}, 2}, {{"pack", "only.bsz"}, 2}, {{"list", "--bogus", "x.bsz"}, 2},
        {{"list", "absent.bsz"}, 2}, {{"he2", "decode", "absent", "out"}, 2}, {{"list", "junk.bsz"}, 1},
        {{"unpack", "junk.bsz"}, 1},
    };
    for (const auto& [args, status] : runs) {
        const ToolRun run = Bsztool(args);
        EXPECT_EQ(run.status, status) << ::testing::PrintToString(args);
        EXPECT_TRUE(status != 0 || run.out.find("usage: bsztool") != std::string::npos) << ::testing::PrintToString(args);
    }
}

}  // namespace
}  // namespace skin::testing

#endif  // BSZTOOL_PATH
