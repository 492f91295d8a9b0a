#pragma once
// Reads a skin package record by record without writing anything. UnZip, the command-line
// listing and verification all read through it, so every reader applies the same safety
// rules: unsafe names, folder ends that do not match, lengths beyond the file's end and
// over-long lines fail the read.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "mappedfile.h"
#include "packageformat.h"

namespace skin {

enum class PackageForm { None, SkinPackage, FileTransfer };

struct PackageRecord {
    enum class Kind { Folder, EndFolder, File, FileData, Other };
    Kind kind = Kind::Other;
    // Folder, EndFolder, File: the name without its tags (Windows-1252 bytes).
    // FileData: the stored name of the file line before it.
    std::string name;
    std::string restoredName;  // FileData: the name the file is written back under
    std::int32_t length = 0;   // FileData: the number on the length line
    bool hasData = false;      // FileData: false when the package ends right after that line
    std::string_view coded;    // FileData: the coded bytes, valid while the reader stays open
    std::string line;          // Other: the line as read
};

class PackageReader {
public:
    PackageReader() = default;
    PackageReader(const PackageReader&) = delete;
    PackageReader& operator=(const PackageReader&) = delete;
    ~PackageReader();

    // Opens a package file for reading; false (with the reason) when it cannot be opened. The
    // file is mapped, not copied: records' coded bytes are read in place.
    bool Open(const std::string& path);
    void Close();

    // Reads the first line and tells which header form it holds, if any.
    bool ReadHeader(PackageForm& form);
    const std::string& HeaderLine() const { return header_; }
    // Reads on from the header line until a line holds the root folder tag or the package ends;
    // `rootName` receives the last line read without its root folder tags.
    bool ReadRootLine(std::string& rootName);
    // Whether ReadRootLine stopped on a line with the root folder tag rather than at the end.
    bool RootTagFound() const { return rootTagFound_; }
    // The next record. False at the end of the package (Failed() false) or on a failure.
    bool Next(PackageRecord& record);

    bool AtEnd() const { return position_ >= size_; }
    bool Failed() const { return failure_ != PackageFailure::None; }
    PackageFailure Failure() const { return failure_; }
    const std::string& Error() const { return error_; }
    // Names of the folders open at this point, outermost first (Windows-1252 bytes).
    const std::vector<std::string>& Folders() const { return folders_; }

private:
    bool ReadLine(std::string& line);
    bool ReadBytes(std::int32_t count, std::string_view& out);
    bool Fail(PackageFailure failure, std::string reason);

    MappedFile file_;
    std::string_view bytes_;
    std::uint64_t size_ = 0;
    std::uint64_t position_ = 0;
    std::string header_;
    bool rootTagFound_ = false;
    std::string storedName_;
    bool haveFileName_ = false;
    std::vector<std::string> folders_;
    PackageFailure failure_ = PackageFailure::None;
    std::string error_;
};

}  // namespace skin
