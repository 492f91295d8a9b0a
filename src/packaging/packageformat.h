#pragma once
// The skin package file format: its tags, limits and the small text rules shared by the
// writer (BwZip::Zip), the reader (PackageReader) and the command-line tool.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace skin {

// Header forms. A reader looks for them anywhere in the first line, ignoring case.
inline constexpr std::string_view kSkinPackageHeader = "<SKINPACKAGE>Brindleway Skin Package ";
inline constexpr std::string_view kSkinPackageHeaderClose = "</SKINPACKAGE>";
inline constexpr std::string_view kFileTransferHeader = "<FILETRANSFER>Brindleway File Transfer ";

inline constexpr std::string_view kRootFolderTag = "<ROOTFOLDER>";
inline constexpr std::string_view kRootFolderCloseTag = "</ROOTFOLDER>";
inline constexpr std::string_view kFolderTag = "<FOLDER>";
inline constexpr std::string_view kFolderCloseTag = "</FOLDER>";
inline constexpr std::string_view kEndFolderTag = "<ENDFOLDER>";
inline constexpr std::string_view kEndFolderCloseTag = "</ENDFOLDER>";
inline constexpr std::string_view kFileTag = "<FILE>";
inline constexpr std::string_view kFileCloseTag = "</FILE>";
inline constexpr std::string_view kFileLengthTag = "<FILELENGTH>";
inline constexpr std::string_view kFileLengthCloseTag = "</FILELENGTH>";
inline constexpr std::string_view kEndFileTag = "<ENDFILE>";
inline constexpr std::string_view kEndFileCloseTag = "</ENDFILE>";
inline constexpr std::string_view kEndMark = "<ENDSKINPACKAGE></ENDSKINPACKAGE>";
inline constexpr std::string_view kLineEnd = "\r\n";

// Marks a stored file name that was renamed to avoid a clash inside one package.
inline constexpr std::string_view kRenameMarker = "@$@";
// A stored name of a skin information file contains this (case-sensitive).
inline constexpr std::string_view kSkinInformationMark = ".bsi";

// Longest line a reader accepts; tag lines hold one name, so this is generous, and it keeps a
// file without line breaks from being read whole into memory as one line.
inline constexpr std::size_t kMaxPackageLineLength = 64 * 1024;
// Lengths and coded streams are 32-bit signed.
inline constexpr std::int64_t kMaxPackedFileSize = 2147483647;

// Errors of the container: the platform's base number for object-defined errors plus 1000.
inline constexpr std::int32_t kObjectErrorBase = -2147221504;
inline constexpr std::int32_t kContainerFormatError = kObjectErrorBase + 1000;
inline constexpr std::string_view kUnzipErrorSource = "Unzip method, class bwzip";
inline constexpr std::string_view kInvalidFileFormat = "Invalid file format.";

// Why a container operation failed: the package or list is at fault, or a file could not be
// read or written.
enum class PackageFailure { None, BadInput, FileAccess };

// ASCII case-insensitive search.
bool ContainsNoCase(std::string_view text, std::string_view tag);

// `line` with every occurrence of `open`, then of `close`, removed (ASCII case ignored).
std::string RemoveTagsNoCase(std::string_view line, std::string_view open, std::string_view close);

// A name the reader may create: not empty, not "." or "..", no "/", "\" or NUL.
bool IsSafePackageName(std::string_view name);

// The name a stored file is written back under: the part before the first marker followed by
// the part from the last "." on. Names without a marker come back unchanged; a marker with no
// dot in the name cannot be restored (nullopt).
std::optional<std::string> RestoreStoredFileName(std::string_view stored);

// `name` with the marker and `n` inserted before its first dot; nullopt for a name without one.
std::optional<std::string> InsertRenameMarker(std::string_view name, int n);

// A length line's number: decimal digits with optional blanks around them, 0 to 2^31-1.
std::optional<std::int32_t> ParseFileLength(std::string_view text);

}  // namespace skin
