// bsztool: a command-line companion for skin designers and for sites that host skins.
// Exit status: 0 success, 1 invalid or damaged input, 2 wrong usage or a file that cannot be
// read or written.

#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <functional>
#include <iostream>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <variant>
#include <vector>

#include "bwzip.h"
#include "huffmancoding.h"
#include "packageformat.h"
#include "packagereader.h"
#include "skininfocheck.h"
#include "windows1252.h"

namespace fs = std::filesystem;
using skin::PackageFailure;

namespace {

constexpr int kExitOk = 0;
constexpr int kExitBadInput = 1;
constexpr int kExitUsage = 2;

// What `unpack` passes as the skin information path so that the package's own root folder
// name is used; a real path always holds a "/", so it cannot be mistaken for one.
const std::string kNoSkinInformation = "(none)";

const std::map<std::string, std::string>& usages() {
    static const std::map<std::string, std::string> texts{
        {"", "usage: bsztool COMMAND [ARGS]\n"
             "\n"
             "commands:\n"
             "  pack [--root NAME] [--force] OUT.bsz PATH...  pack files and folders into a skin package\n"
             "  unpack [--transfer] PKG [DIR]                 unpack a package into a new folder under DIR\n"
             "  list PKG                                      list the files a package holds\n"
             "  verify PKG                                    decode and check everything in a package\n"
             "  he2 encode [--force] IN OUT                   code one file as an HE2 (or HE0) stream\n"
             "  he2 decode IN OUT                             decode one HE2 or HE0 stream\n"
             "\n"
             "'bsztool COMMAND --help' describes a command.\n"
             "exit status: 0 success, 1 invalid or damaged input, 2 wrong usage or unreadable/unwritable file\n"},
        {"pack", "usage: bsztool pack [--root NAME] [--force] OUT.bsz PATH...\n"
                 "Packs each PATH (a file, or a folder with everything below it) in the order given.\n"
                 "  --root NAME  the root folder name stored in the package (default: OUT's name without extension)\n"
                 "  --force      replace OUT if it exists (it is replaced only when packing succeeds)\n"},
        {"unpack", "usage: bsztool unpack [--transfer] PKG [DIR]\n"
                   "Unpacks PKG into a new folder under DIR (default: the current folder), named by the\n"
                   "package's root folder (a digit is added while that name is taken), and prints the\n"
                   "folder made and the skin information file's path.\n"
                   "  --transfer  PKG is a file-transfer package instead of a skin package\n"},
        {"list", "usage: bsztool list PKG\n"
                 "Lists each file with its folder, stored name, coded size, form (HE2 or HE0) and\n"
                 "original size, one per line, separated by tabs. Writes nothing.\n"},
        {"verify", "usage: bsztool verify PKG\n"
                   "Decodes every file in memory and checks names, structure and checksums; a skin\n"
                   "information file inside must hold all 19 sections and 78 keys. Prints OK or the\n"
                   "first problem.\n"},
        {"he2", "usage: bsztool he2 encode [--force] IN OUT\n"
                "       bsztool he2 decode IN OUT\n"
                "encode: codes IN; the stored HE0 form is used when HE2 would be longer, unless --force.\n"
                "decode: decodes IN; on failure prints the decoder's description and writes no OUT.\n"},
    };
    return texts;
}

int usageError(const std::string& command, const std::string& problem) {
    std::cerr << "bsztool: " << problem << "\n" << usages().at(command);
    return kExitUsage;
}

int failure(const std::string& command, PackageFailure kind, const std::string& reason) {
    std::cerr << "bsztool: " << command << ": " << reason << "\n";
    return kind == PackageFailure::BadInput ? kExitBadInput : kExitUsage;
}

// Splits arguments into options (from `known`) and the rest; "--" ends the options.
struct ParsedArgs {
    std::set<std::string> flags;
    std::map<std::string, std::string> values;
    std::vector<std::string> positional;
    bool help = false;
    std::string error;
};

ParsedArgs parseArgs(const std::vector<std::string>& args, const std::set<std::string>& flags,
                     const std::set<std::string>& valued) {
    ParsedArgs parsed;
    bool optionsDone = false;
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::string& arg = args[i];
        if (optionsDone || arg.size() < 2 || arg[0] != '-') {
            parsed.positional.push_back(arg);
        } else if (arg == "--") {
            optionsDone = true;
        } else if (arg == "--help" || arg == "-h") {
            parsed.help = true;
        } else if (flags.count(arg) != 0) {
            parsed.flags.insert(arg);
        } else if (valued.count(arg) != 0) {
            if (i + 1 >= args.size()) {
                parsed.error = arg + " needs a value";
                return parsed;
            }
            parsed.values[arg] = args[++i];
        } else {
            parsed.error = "unknown option " + arg;
            return parsed;
        }
    }
    return parsed;
}

std::optional<std::string> readFile(const std::string& path, std::string& reason) {
    std::error_code ec;
    if (!fs::is_regular_file(path, ec)) {
        reason = "cannot read " + path + ": " + (fs::exists(path, ec) ? "not a file" : "no such file");
        return std::nullopt;
    }
    std::FILE* in = std::fopen(path.c_str(), "rb");
    if (in == nullptr) {
        reason = "cannot read " + path;
        return std::nullopt;
    }
    std::string bytes(static_cast<std::size_t>(fs::file_size(path, ec)), '\0');
    const bool ok = bytes.empty() || std::fread(bytes.data(), 1, bytes.size(), in) == bytes.size();
    std::fclose(in);
    if (!ok || ec) {
        reason = "cannot read " + path;
        return std::nullopt;
    }
    return bytes;
}

// Writes beside the target and renames over it, so a failure never leaves a partial OUT.
bool writeFileReplacing(const std::string& path, const std::string& bytes) {
    const std::string partial = path + ".bsztool-" + std::to_string(::getpid()) + ".part";
    std::FILE* out = std::fopen(partial.c_str(), "wb");
    if (out == nullptr) return false;
    const bool written = bytes.empty() || std::fwrite(bytes.data(), 1, bytes.size(), out) == bytes.size();
    std::error_code ec;
    if (std::fclose(out) != 0 || !written) {
        fs::remove(partial, ec);
        return false;
    }
    fs::rename(partial, path, ec);
    if (ec) fs::remove(partial, ec);
    return !ec;
}

// A path whose last component is empty, "." or ".." would be stored as a folder name no
// reader accepts.
bool hasStorableName(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    const std::string last = slash == std::string::npos ? path : path.substr(slash + 1);
    return !last.empty() && last != "." && last != "..";
}

int pack(const std::vector<std::string>& args) {
    const ParsedArgs parsed = parseArgs(args, {"--force"}, {"--root"});
    if (parsed.help) return std::cout << usages().at("pack"), kExitOk;
    if (!parsed.error.empty()) return usageError("pack", parsed.error);
    if (parsed.positional.size() < 2) return usageError("pack", "pack needs OUT.bsz and at least one PATH");
    const std::string out = parsed.positional.front();
    const std::vector<std::string> paths(parsed.positional.begin() + 1, parsed.positional.end());
    for (const auto& path : paths) {
        if (!hasStorableName(path)) {
            return usageError("pack", "\"" + path + "\" has no name to store; give the folder by its name (e.g. without a trailing '/')");
        }
    }
    std::error_code ec;
    const bool replace = fs::exists(out, ec);
    if (replace && parsed.flags.count("--force") == 0) {
        std::cerr << "bsztool: pack: " << out << " already exists (use --force to replace it)\n";
        return kExitUsage;
    }
    const std::string root =
        parsed.values.count("--root") != 0 ? parsed.values.at("--root") : fs::path(out).stem().string();

    skin::BwZip zip;
    for (const auto& path : paths) zip.AddFileFolder(path);
    // Packing appends, so a replacement is written beside OUT and renamed over it at the end.
    const std::string target = replace ? out + ".bsztool-" + std::to_string(::getpid()) + ".part" : out;
    if (zip.Zip(root, target).empty()) return failure("pack", zip.LastFailure(), zip.LastError());
    if (replace) {
        fs::rename(target, out, ec);
        if (ec) {
            fs::remove(target, ec);
            return failure("pack", PackageFailure::FileAccess, "cannot replace " + out);
        }
    }
    int files = 0;
    for (const auto& entry : zip.FileFolderList()) files += entry.rfind(std::string(skin::kFileTag), 0) == 0 ? 1 : 0;
    std::cout << "packed " << files << " file(s) into " << out << "\n";
    return kExitOk;
}

int unpack(const std::vector<std::string>& args) {
    const ParsedArgs parsed = parseArgs(args, {"--transfer"}, {});
    if (parsed.help) return std::cout << usages().at("unpack"), kExitOk;
    if (!parsed.error.empty()) return usageError("unpack", parsed.error);
    if (parsed.positional.empty() || parsed.positional.size() > 2) return usageError("unpack", "unpack needs PKG and at most one DIR");
    const std::string package = parsed.positional[0];
    std::string dir = parsed.positional.size() > 1 ? parsed.positional[1] : ".";
    if (dir.back() != '/') dir += '/';

    skin::BwZip zip;
    std::string bsi = kNoSkinInformation;
    bool ok = false;
    if (parsed.flags.count("--transfer") != 0) {
        // A transfer package is named relative to the base folder.
        std::error_code ec;
        const std::string relative = fs::relative(fs::absolute(package, ec), fs::absolute(dir, ec), ec).string();
        ok = zip.UnZip(relative.empty() ? package : relative, dir, false, false, &bsi);
    } else {
        ok = zip.UnZip(package, dir, false, true, &bsi);
    }
    if (!ok) {
        if (!zip.UnpackedFolder().empty()) std::cerr << "bsztool: unpack: partly unpacked into " << zip.UnpackedFolder() << "\n";
        return failure("unpack", zip.LastFailure(), zip.LastError());
    }
    std::cout << "folder: " << zip.UnpackedFolder() << "\n";
    std::cout << "skin information file: " << (bsi == kNoSkinInformation ? "none" : bsi) << "\n";
    return kExitOk;
}

// Opens a package for listing or verifying; either header form is accepted.
bool openPackage(skin::PackageReader& reader, const std::string& path, std::string& root, std::string& problem,
                 PackageFailure& kind) {
    skin::PackageForm form = skin::PackageForm::None;
    std::string storedRoot;
    if (!reader.Open(path) || !reader.ReadHeader(form) ||
        (form != skin::PackageForm::None && !reader.ReadRootLine(storedRoot))) {
        problem = reader.Error();
        kind = reader.Failure();
        return false;
    }
    kind = PackageFailure::BadInput;
    if (form == skin::PackageForm::None) {
        problem = "not a package: the first line has no package header";
        return false;
    }
    if (!reader.RootTagFound()) {
        problem = "the package has no root folder line";
        return false;
    }
    root = skin::FromWindows1252(storedRoot);
    return true;
}

std::string folderPath(const std::string& root, const std::vector<std::string>& folders) {
    std::string path = root;
    for (const auto& folder : folders) {
        path += '/';
        path += skin::FromWindows1252(folder);
    }
    return path;
}

int list(const std::vector<std::string>& args) {
    const ParsedArgs parsed = parseArgs(args, {}, {});
    if (parsed.help) return std::cout << usages().at("list"), kExitOk;
    if (!parsed.error.empty()) return usageError("list", parsed.error);
    if (parsed.positional.size() != 1) return usageError("list", "list needs exactly one PKG");

    skin::PackageReader reader;
    std::string root, problem;
    PackageFailure kind = PackageFailure::None;
    if (!openPackage(reader, parsed.positional[0], root, problem, kind)) return failure("list", kind, problem);
    std::cout << "folder\tname\tcoded\tform\toriginal\n";
    skin::PackageRecord record;
    while (reader.Next(record)) {
        if (record.kind != skin::PackageRecord::Kind::FileData) continue;
        const std::string folder = folderPath(root, reader.Folders());
        const std::string name = skin::FromWindows1252(record.name);
        if (!record.hasData) {
            std::cout << folder << "\t" << name << "\t" << record.length << "\t-\t-\n";
            continue;
        }
        const auto info = skin::PeekCodedStream(record.coded);
        std::cout << folder << "\t" << name << "\t" << record.coded.size() << "\t" << info.form << "\t"
                  << (info.original ? std::to_string(*info.original) : "?") << "\n";
    }
    if (reader.Failed()) return failure("list", reader.Failure(), reader.Error());
    return kExitOk;
}

// The first problem in a package, or nullopt when it is whole and every file decodes.
std::optional<std::string> findProblem(skin::PackageReader& reader, const std::string& root, int& files) {
    std::set<std::string> foldersMade;
    std::string pendingFile;  // a file whose coded bytes were read and whose line end is due
    bool expectLineEnd = false;
    bool sawEndMark = false;
    skin::PackageRecord record;
    while (reader.Next(record)) {
        if (sawEndMark) return "data after the end mark";
        if (expectLineEnd) {
            if (record.kind != skin::PackageRecord::Kind::Other || !record.line.empty()) {
                return "the coded bytes of \"" + pendingFile + "\" are not followed by a line end";
            }
            expectLineEnd = false;
            continue;
        }
        switch (record.kind) {
        case skin::PackageRecord::Kind::Folder:
            if (!foldersMade.insert(folderPath(root, reader.Folders())).second) {
                return "the folder " + folderPath(root, reader.Folders()) + " appears twice";
            }
            break;
        case skin::PackageRecord::Kind::FileData: {
            const std::string name = skin::FromWindows1252(record.name);
            if (!record.hasData) return "the package ends after the length line of \"" + name + "\"";
            auto decoded = skin::HuffmanDecode(record.coded);
            if (const auto* error = std::get_if<skin::CodecError>(&decoded)) return "\"" + name + "\": " + error->description;
            ++files;
            if (record.name.find(skin::kSkinInformationMark) != std::string::npos) {
                if (const auto missing = skin::bsztool::FindMissingSkinInformation(std::get<std::string>(decoded))) {
                    return "\"" + name + "\": " + *missing;
                }
            }
            pendingFile = name;
            expectLineEnd = true;
            break;
        }
        case skin::PackageRecord::Kind::Other:
            if (record.line == skin::kEndMark) sawEndMark = true;
            break;
        case skin::PackageRecord::Kind::File:
        case skin::PackageRecord::Kind::EndFolder:
            break;
        }
    }
    if (reader.Failed()) return reader.Error();
    if (!reader.Folders().empty()) return "the folder " + folderPath(root, reader.Folders()) + " is never closed";
    if (expectLineEnd) return "the package ends right after the coded bytes of \"" + pendingFile + "\"";
    if (!sawEndMark) return "the package has no end mark (it may be cut short)";
    return std::nullopt;
}

int verify(const std::vector<std::string>& args) {
    const ParsedArgs parsed = parseArgs(args, {}, {});
    if (parsed.help) return std::cout << usages().at("verify"), kExitOk;
    if (!parsed.error.empty()) return usageError("verify", parsed.error);
    if (parsed.positional.size() != 1) return usageError("verify", "verify needs exactly one PKG");

    skin::PackageReader reader;
    std::string root, problem;
    PackageFailure kind = PackageFailure::None;
    if (!openPackage(reader, parsed.positional[0], root, problem, kind)) return failure("verify", kind, problem);
    if (!skin::IsSafePackageName(root)) return failure("verify", PackageFailure::BadInput, "unsafe root folder name \"" + root + "\"");
    int files = 0;
    if (const auto found = findProblem(reader, root, files)) {
        return failure("verify", reader.Failed() ? reader.Failure() : PackageFailure::BadInput, *found);
    }
    std::cout << "OK (" << files << " file(s))\n";
    return kExitOk;
}

int he2(const std::vector<std::string>& args) {
    if (args.empty()) return usageError("he2", "he2 needs encode or decode");
    const std::string action = args.front();
    if (action == "--help" || action == "-h") return std::cout << usages().at("he2"), kExitOk;
    if (action != "encode" && action != "decode") return usageError("he2", "unknown he2 command " + action);
    const std::vector<std::string> rest(args.begin() + 1, args.end());
    const ParsedArgs parsed = action == "encode" ? parseArgs(rest, {"--force"}, {}) : parseArgs(rest, {}, {});
    if (parsed.help) return std::cout << usages().at("he2"), kExitOk;
    if (!parsed.error.empty()) return usageError("he2", parsed.error);
    if (parsed.positional.size() != 2) return usageError("he2", "he2 " + action + " needs IN and OUT");
    const std::string& in = parsed.positional[0];
    const std::string& out = parsed.positional[1];
    const std::string command = "he2 " + action;

    std::string reason;
    const auto bytes = readFile(in, reason);
    if (!bytes) return failure(command, PackageFailure::FileAccess, reason);
    std::string result;
    if (action == "encode") {
        if (bytes->size() > static_cast<std::size_t>(skin::kMaxPackedFileSize)) {
            return failure(command, PackageFailure::BadInput, in + " is larger than 2147483647 bytes");
        }
        result = skin::HuffmanEncode(*bytes, parsed.flags.count("--force") != 0);
    } else {
        auto decoded = skin::HuffmanDecode(*bytes);
        if (const auto* error = std::get_if<skin::CodecError>(&decoded)) {
            std::cerr << error->description << "\n";
            return kExitBadInput;
        }
        result = std::move(std::get<std::string>(decoded));
    }
    if (!writeFileReplacing(out, result)) return failure(command, PackageFailure::FileAccess, "cannot write " + out);
    return kExitOk;
}

}  // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> all(argv + 1, argv + argc);
    if (all.empty()) return usageError("", "no command given");
    const std::string command = all.front();
    const std::vector<std::string> args(all.begin() + 1, all.end());
    static const std::map<std::string, std::function<int(const std::vector<std::string>&)>> commands{
        {"pack", pack}, {"unpack", unpack}, {"list", list}, {"verify", verify}, {"he2", he2}};
    if (command == "--help" || command == "-h" || command == "help") return std::cout << usages().at(""), kExitOk;
    const auto found = commands.find(command);
    if (found == commands.end()) return usageError("", "unknown command " + command);
    try {
        return found->second(args);
    } catch (const std::exception& e) {
        std::cerr << "bsztool: " << command << ": " << e.what() << "\n";
        return kExitUsage;
    }
}
