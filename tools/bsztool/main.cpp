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

#include "atomicfile.h"
#include "bwzip.h"
#include "bytesource.h"
#include "huffmancoding.h"
#include "huffmaninternal.h"
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

// Text for the terminal: control characters (C0, DEL and C1) and backslashes escaped, so a
// name from a package can neither drive the terminal nor break an entry across lines or fields.
std::string shown(std::string_view text) {
    static const char kHex[] = "0123456789ABCDEF";
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto c = static_cast<unsigned char>(text[i]);
        unsigned code = c;
        bool escape = c < 0x20 || c == 0x7F || c == '\\';
        // C1 controls as UTF-8: C2 80 to C2 9F.
        if (c == 0xC2 && i + 1 < text.size() && static_cast<unsigned char>(text[i + 1]) >= 0x80 &&
            static_cast<unsigned char>(text[i + 1]) <= 0x9F) {
            code = static_cast<unsigned char>(text[++i]);
            escape = true;
        }
        if (!escape) {
            out.push_back(static_cast<char>(c));
        } else if (c == '\\') {
            out += "\\\\";
        } else {
            out += code >= 0x80 ? "\\u00" : "\\x";
            out.push_back(kHex[code >> 4]);
            out.push_back(kHex[code & 15]);
        }
    }
    return out;
}

int failure(const std::string& command, PackageFailure kind, const std::string& reason) {
    std::cerr << "bsztool: " << command << ": " << shown(reason) << "\n";
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
    if (replace) fs::remove(target, ec);
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
        if (!zip.UnpackedFolder().empty()) std::cerr << "bsztool: unpack: partly unpacked into " << shown(zip.UnpackedFolder()) << "\n";
        return failure("unpack", zip.LastFailure(), zip.LastError());
    }
    if (!zip.UnpackedWholePackage()) {
        std::cerr << "bsztool: unpack: warning: the package stops before its end mark or with a folder open; "
                     "it may be incomplete (" << zip.UnpackedFiles() << " file(s) unpacked)\n";
    }
    std::cout << "folder: " << shown(zip.UnpackedFolder()) << "\n";
    std::cout << "skin information file: " << (bsi == kNoSkinInformation ? "none" : shown(bsi)) << "\n";
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
    // The folder path is kept as folders open and close, shown escaped.
    std::string folder = shown(root);
    std::vector<std::size_t> folderStarts;
    skin::PackageRecord record;
    while (reader.Next(record)) {
        if (record.kind == skin::PackageRecord::Kind::Folder) {
            folderStarts.push_back(folder.size());
            folder += "/" + shown(skin::FromWindows1252(record.name));
        } else if (record.kind == skin::PackageRecord::Kind::EndFolder) {
            folder.resize(folderStarts.back());
            folderStarts.pop_back();
        }
        if (record.kind != skin::PackageRecord::Kind::FileData) continue;
        const std::string name = shown(skin::FromWindows1252(record.name));
        if (!record.hasData) {
            std::cout << folder << "\t" << name << "\t" << record.length << "\t-\t-\n";
            continue;
        }
        const auto info = skin::he2::PeekStream(reader.CodedBytes(), static_cast<std::uint64_t>(record.length));
        std::cout << folder << "\t" << name << "\t" << record.length << "\t" << info.form << "\t"
                  << (info.original ? std::to_string(*info.original) : "?") << "\n";
    }
    if (reader.Failed()) return failure("list", reader.Failure(), reader.Error());
    return kExitOk;
}

// Longest name a folder or file may have on the file systems a package is unpacked to.
constexpr std::size_t kMaxNameBytes = 255;
// A skin information file is a few kilobytes; a larger one is not kept for the key check.
constexpr std::size_t kMaxSkinInformationBytes = std::size_t{16} << 20;

// The first problem in a package, or nullopt when it is whole and every file decodes. Time and
// memory are linear in the package: folders are known by their parent and name, and files are
// decoded in pieces and dropped.
std::optional<std::string> findProblem(skin::PackageReader& reader, const std::string& root, int& files) {
    // Each open folder's number; a folder is made once per (parent, name).
    std::vector<std::size_t> open{0};
    std::set<std::pair<std::size_t, std::string>> foldersMade;
    std::string pendingFile;  // a file whose coded bytes were read and whose line end is due
    bool expectLineEnd = false;
    bool sawEndMark = false;
    auto nameProblem = [](const std::string& stored) -> std::optional<std::string> {
        const std::string name = skin::FromWindows1252(stored);
        if (name.size() > kMaxNameBytes) {
            return "the name \"" + name.substr(0, 40) + "...\" is longer than a file system allows (" +
                   std::to_string(kMaxNameBytes) + " bytes)";
        }
        return std::nullopt;
    };
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
            if (const auto problem = nameProblem(record.name)) return problem;
            if (!foldersMade.insert({open.back(), record.name}).second) {
                return "the folder " + folderPath(root, reader.Folders()) + " appears twice";
            }
            open.push_back(foldersMade.size());
            break;
        case skin::PackageRecord::Kind::EndFolder:
            open.pop_back();
            break;
        case skin::PackageRecord::Kind::FileData: {
            const std::string name = skin::FromWindows1252(record.name);
            if (!record.hasData) return "the package ends after the length line of \"" + name + "\"";
            if (const auto problem = nameProblem(record.restoredName)) return problem;
            const bool information = record.name.find(skin::kSkinInformationMark) != std::string::npos;
            std::string text;
            bool tooLarge = false;
            const auto decoded = skin::he2::DecodeStream(
                reader.CodedBytes(), static_cast<std::uint64_t>(record.length), [&](std::string_view piece) {
                    if (!information || tooLarge) return true;
                    tooLarge = text.size() + piece.size() > kMaxSkinInformationBytes;
                    if (!tooLarge) text.append(piece);
                    return true;
                });
            switch (decoded.failure) {
            case skin::he2::DecodeFailure::None: break;
            case skin::he2::DecodeFailure::Codec: return "\"" + name + "\": " + decoded.error.description;
            case skin::he2::DecodeFailure::Read:
            case skin::he2::DecodeFailure::Write: return "cannot read the package";
            }
            ++files;
            if (information && tooLarge) {
                return "\"" + name + "\": a skin information file larger than " + std::to_string(kMaxSkinInformationBytes) + " bytes";
            }
            if (information) {
                if (const auto missing = skin::bsztool::FindMissingSkinInformation(text)) return "\"" + name + "\": " + *missing;
            }
            pendingFile = name;
            expectLineEnd = true;
            break;
        }
        case skin::PackageRecord::Kind::Other:
            if (record.line == skin::kEndMark) sawEndMark = true;
            break;
        case skin::PackageRecord::Kind::File:
            if (const auto problem = nameProblem(record.name)) return problem;
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

    // Coded in pieces from IN into a file beside OUT that replaces OUT only when it is whole.
    skin::FileSource input;
    skin::FileSource::Problem problem = skin::FileSource::Problem::None;
    if (!input.Open(in, problem)) {
        const char* why = problem == skin::FileSource::Problem::Missing ? ": no such file"
                          : problem == skin::FileSource::Problem::NotAFile ? ": not a file" : "";
        return failure(command, PackageFailure::FileAccess, "cannot read " + in + why);
    }
    skin::AtomicFile output;
    if (!output.Create(out)) return failure(command, PackageFailure::FileAccess, "cannot write " + out);
    const skin::ByteSink sink = [&](std::string_view piece) { return output.Write(piece); };
    if (action == "encode") {
        if (input.Size() > static_cast<std::uint64_t>(skin::kMaxPackedFileSize)) {
            return failure(command, PackageFailure::BadInput, in + " is larger than 2147483647 bytes");
        }
        skin::he2::StreamEncoder encoder;
        if (!encoder.Plan(input, input.Size(), parsed.flags.count("--force") != 0) ||
            encoder.Write(input, sink) != skin::he2::StreamEncoder::Result::Written) {
            return failure(command, PackageFailure::FileAccess, "cannot code " + in + " into " + out);
        }
    } else {
        const auto decoded = skin::he2::DecodeStream(input, input.Size(), sink);
        if (decoded.failure == skin::he2::DecodeFailure::Codec) {
            std::cerr << decoded.error.description << "\n";
            return kExitBadInput;
        }
        if (decoded.failure != skin::he2::DecodeFailure::None) {
            return failure(command, PackageFailure::FileAccess, "cannot decode " + in + " into " + out);
        }
    }
    if (!output.Publish()) return failure(command, PackageFailure::FileAccess, "cannot write " + out);
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
