#pragma once
// The one skin being edited: name, author, and for each side its picture, its eight area
// slots and the text-field colours. A plain model in twips; it knows nothing of windows.

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace skin {

enum class SkinSide { Send, Receive };

// Index 0..7 of an area within a side: the order of the side's name menu and area table.
using AreaKind = int;
inline constexpr int kAreaKinds = 8;

// An OLE colour: 0x00BBGGRR, or 0x80000000 plus a system colour index (so negative).
using OleColour = std::int32_t;
inline constexpr OleColour kSystemWindowBackground = static_cast<OleColour>(0x80000005u);
inline constexpr OleColour kSystemWindowText = static_cast<OleColour>(0x80000008u);
inline constexpr OleColour kLightGrey = 0x00E0E0E0;

inline constexpr int kTwipsPerPixel = 15;

// A stored rectangle in editor-surface twips (Left and Top include the picture origin).
struct AreaRect {
    std::int16_t Left = 0;
    std::int16_t Top = 0;
    std::int16_t Width = 0;
    std::int16_t Height = 0;
    bool operator==(const AreaRect&) const = default;
};

// A rectangle of screen elements: single-precision twips.
struct RectF {
    float Left = 0;
    float Top = 0;
    float Width = 0;
    float Height = 0;
    bool operator==(const RectF&) const = default;
};

// A kind's rectangle with Left and Top relative to the side's picture frame.
struct RelativeRect {
    float Left = 0;
    float Top = 0;
    std::int16_t Width = 0;
    std::int16_t Height = 0;
};

// The five text fields, each shown by one label, each with a back and a text colour.
enum class TextField { SendUsers, SendMessage, ReceiveDate, ReceiveSender, ReceiveMessage };
inline constexpr int kTextFields = 5;
enum class ColourRole { Back, Text };

struct AreaKindInfo {
    std::string_view caption;   // the name menu's item, e.g. "Okay"
    std::string_view areaName;  // side word + caption, e.g. "Receive Okay"
    std::string_view section;   // the skin information file's section, e.g. "Recieve OK"
    std::optional<TextField> textField;  // set for the kinds shown by a label
};

const AreaKindInfo& KindInfo(SkinSide side, AreaKind kind);
std::string_view SideWord(SkinSide side);  // "Send" or "Receive"
SkinSide SideOf(TextField field);
AreaKind KindOf(TextField field);

// The fixed picture frame of a side on the editor surface; its top-left is the picture origin.
RectF PictureFrame(SkinSide side);

// Rounds to the nearest integer, halves to even, into a signed 16-bit value.
// Values beyond the 16-bit range (which the editor surface never produces) saturate.
std::int16_t RoundToInt16(double value);
// Whether a value, rounded as RoundToInt16 rounds it, lies within the 16-bit range.
bool FitsInt16(double value);

class SkinDocument {
public:
    SkinDocument();

    const std::string& SkinName() const { return skinName_; }
    void SetSkinName(std::string name) { skinName_ = std::move(name); }
    const std::string& SkinAuthor() const { return skinAuthor_; }
    void SetSkinAuthor(std::string author) { skinAuthor_ = std::move(author); }

    const std::string& PictureFileName(SkinSide side) const { return sides_[index(side)].pictureFileName; }
    const std::string& PicturePath(SkinSide side) const { return sides_[index(side)].picturePath; }
    void SetPicture(SkinSide side, std::string fileName, std::string path);

    // Stores the rectangle in the kind's slot and marks the kind used.
    void AssignArea(SkinSide side, AreaKind kind, AreaRect rect);
    // Replaces the kind's slot; the used flag stays as it is.
    void UpdateArea(SkinSide side, AreaKind kind, AreaRect rect);
    AreaRect Area(SkinSide side, AreaKind kind) const;
    bool KindUsed(SkinSide side, AreaKind kind) const;

    // The kind whose area name equals the text exactly, case included.
    static std::optional<AreaKind> FindKind(SkinSide side, std::string_view areaName);
    RelativeRect PictureRelative(SkinSide side, AreaKind kind) const;

    OleColour Colour(TextField field, ColourRole role) const;
    void SetColour(TextField field, ColourRole role, OleColour colour);
    static OleColour InitialColour(TextField field, ColourRole role);

    std::int32_t BoxCount(SkinSide side) const { return sides_[index(side)].boxCount; }
    void IncrementBoxCount(SkinSide side) { ++sides_[index(side)].boxCount; }
    void SetBoxCount(SkinSide side, std::int32_t count) { sides_[index(side)].boxCount = count; }

    // The kind's slot becomes 0,0,0,0 and the kind free again, as if it had never been named
    // (an area deleted in the editor).
    void ReleaseArea(SkinSide side, AreaKind kind);

    bool operator==(const SkinDocument&) const = default;

    // Every slot 0,0,0,0, every kind free, box count 0; pictures, colours, name, author kept.
    void ClearSide(SkinSide side);
    // Back to the empty document of start-up.
    void ResetDocument();

private:
    struct Side {
        std::string pictureFileName;
        std::string picturePath;
        std::array<AreaRect, kAreaKinds> areas{};
        std::array<bool, kAreaKinds> used{};
        std::int32_t boxCount = 0;
        bool operator==(const Side&) const = default;
    };
    static int index(SkinSide side) { return side == SkinSide::Send ? 0 : 1; }

    std::string skinName_;
    std::string skinAuthor_;
    std::array<Side, 2> sides_;
    std::array<std::array<OleColour, 2>, kTextFields> colours_{};
};

}  // namespace skin
