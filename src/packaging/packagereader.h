#pragma once
// Reads a skin package record by record without writing anything. UnZip, the command-line
// listing and verification all read through it, so every reader applies the same safety
// rules: unsafe names, folder ends that do not match, lengths beyond the file's end and
// over-long lines fail the read. The package is read in pieces, never whole: a record's coded
// bytes are passed over unless the caller reads them.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "bytesource.h"
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
    std::string line;          // Other: the line as read
};

class PackageReader {
public:
    PackageReader() = default;
    PackageReader(const PackageReader&) = delete;
    PackageReader& operator=(const PackageReader&) = delete;
    ~PackageReader();

    // Opens a package file for reading; false (with the reason) when it cannot be opened.
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
    // The coded bytes of the FileData record just read (with data), until the next record.
    ByteSource& CodedBytes() { return coded_; }
    // Whether the package ended as a whole package does: after its end mark, with every folder
    // closed. A package may simply stop after any whole line; it is then read as far as it goes.
    bool EndedWhole() const { return endMarkSeen_ && folders_.empty(); }

    bool AtEnd() const;
    bool Failed() const { return failure_ != PackageFailure::None; }
    PackageFailure Failure() const { return failure_; }
    const std::string& Error() const { return error_; }
    // Names of the folders open at this point, outermost first (Windows-1252 bytes).
    const std::vector<std::string>& Folders() const { return folders_; }

private:
    // A record's coded bytes, read on demand from their place in the package.
    class Coded final : public ByteSource {
    public:
        explicit Coded(PackageReader& reader) : reader_(reader) {}
        void Start(std::uint64_t offset, std::uint64_t size) {
            offset_ = offset;
            left_ = size;
        }
        std::ptrdiff_t Read(char* into, std::size_t size) override;
        bool Skip(std::uint64_t size) override;

    private:
        PackageReader& reader_;
        std::uint64_t offset_ = 0, left_ = 0;
    };

    bool ReadLine(std::string& line);
    bool PassCodedBytes(std::int32_t count);
    bool Fail(PackageFailure failure, std::string reason);
    // Makes the buffer hold the bytes from `offset` on, as many as fit; false on a read error.
    bool Load(std::uint64_t offset);

    int fd_ = -1;
    std::vector<char> buffer_;
    std::uint64_t bufferStart_ = 0;
    std::size_t bufferLength_ = 0;
    Coded coded_{*this};
    bool endMarkSeen_ = false;
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
