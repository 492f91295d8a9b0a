#include "skindocument.h"

#include <cmath>
#include <limits>

#include "skininfotable.h"

namespace skin {
namespace {

using F = TextField;

constexpr std::array<AreaKindInfo, kAreaKinds> kSendKinds{{
    {"User List", "Send User List", kSendAreaSections[0], F::SendUsers},
    {"Message", "Send Message", kSendAreaSections[1], F::SendMessage},
    {"All", "Send All", kSendAreaSections[2], std::nullopt},
    {"None", "Send None", kSendAreaSections[3], std::nullopt},
    {"Cut", "Send Cut", kSendAreaSections[4], std::nullopt},
    {"Send", "Send Send", kSendAreaSections[5], std::nullopt},
    {"Close", "Send Close", kSendAreaSections[6], std::nullopt},
    {"Options", "Send Options", kSendAreaSections[7], std::nullopt},
}};

// The file's spelling ("Recieve", "OK") differs from the editor's on purpose: both are formats.
constexpr std::array<AreaKindInfo, kAreaKinds> kReceiveKinds{{
    {"Date", "Receive Date", kReceiveAreaSections[0], F::ReceiveDate},
    {"Sender", "Receive Sender", kReceiveAreaSections[1], F::ReceiveSender},
    {"Message", "Receive Message", kReceiveAreaSections[2], F::ReceiveMessage},
    {"Okay", "Receive Okay", kReceiveAreaSections[3], std::nullopt},
    {"Yes", "Receive Yes", kReceiveAreaSections[4], std::nullopt},
    {"No", "Receive No", kReceiveAreaSections[5], std::nullopt},
    {"Reply", "Receive Reply", kReceiveAreaSections[6], std::nullopt},
    {"Close", "Receive Close", kReceiveAreaSections[7], std::nullopt},
}};

constexpr RectF kSendFrame{285, 765, 5430, 3870};
constexpr RectF kReceiveFrame{6135, 765, 5430, 3285};

int fieldIndex(TextField field) { return static_cast<int>(field); }
int roleIndex(ColourRole role) { return role == ColourRole::Back ? 0 : 1; }

}  // namespace

const AreaKindInfo& KindInfo(SkinSide side, AreaKind kind) {
    return side == SkinSide::Send ? kSendKinds.at(kind) : kReceiveKinds.at(kind);
}

std::string_view SideWord(SkinSide side) { return side == SkinSide::Send ? "Send" : "Receive"; }

SkinSide SideOf(TextField field) {
    return field == F::SendUsers || field == F::SendMessage ? SkinSide::Send : SkinSide::Receive;
}

AreaKind KindOf(TextField field) {
    switch (field) {
        case F::SendUsers: return 0;
        case F::SendMessage: return 1;
        case F::ReceiveDate: return 0;
        case F::ReceiveSender: return 1;
        case F::ReceiveMessage: return 2;
    }
    return 0;
}

RectF PictureFrame(SkinSide side) { return side == SkinSide::Send ? kSendFrame : kReceiveFrame; }

std::int16_t RoundToInt16(double value) {
    const double r = std::nearbyint(value);  // default rounding mode: halves to even
    if (!(r >= std::numeric_limits<std::int16_t>::min())) return std::numeric_limits<std::int16_t>::min();
    if (r > std::numeric_limits<std::int16_t>::max()) return std::numeric_limits<std::int16_t>::max();
    return static_cast<std::int16_t>(r);
}

bool FitsInt16(double value) {
    const double r = std::nearbyint(value);
    return r >= std::numeric_limits<std::int16_t>::min() && r <= std::numeric_limits<std::int16_t>::max();
}

SkinDocument::SkinDocument() { ResetDocument(); }

void SkinDocument::SetPicture(SkinSide side, std::string fileName, std::string path) {
    sides_[index(side)].pictureFileName = std::move(fileName);
    sides_[index(side)].picturePath = std::move(path);
}

void SkinDocument::AssignArea(SkinSide side, AreaKind kind, AreaRect rect) {
    sides_[index(side)].areas.at(kind) = rect;
    sides_[index(side)].used.at(kind) = true;
}

void SkinDocument::UpdateArea(SkinSide side, AreaKind kind, AreaRect rect) {
    sides_[index(side)].areas.at(kind) = rect;
}

void SkinDocument::ReleaseArea(SkinSide side, AreaKind kind) {
    sides_[index(side)].areas.at(kind) = AreaRect{};
    sides_[index(side)].used.at(kind) = false;
}

AreaRect SkinDocument::Area(SkinSide side, AreaKind kind) const { return sides_[index(side)].areas.at(kind); }

bool SkinDocument::KindUsed(SkinSide side, AreaKind kind) const { return sides_[index(side)].used.at(kind); }

std::optional<AreaKind> SkinDocument::FindKind(SkinSide side, std::string_view areaName) {
    for (AreaKind kind = 0; kind < kAreaKinds; ++kind) {
        if (KindInfo(side, kind).areaName == areaName) return kind;
    }
    return std::nullopt;
}

RelativeRect SkinDocument::PictureRelative(SkinSide side, AreaKind kind) const {
    const AreaRect area = Area(side, kind);
    const RectF frame = PictureFrame(side);
    return {static_cast<float>(area.Left) - frame.Left, static_cast<float>(area.Top) - frame.Top, area.Width,
            area.Height};
}

OleColour SkinDocument::Colour(TextField field, ColourRole role) const {
    return colours_[fieldIndex(field)][roleIndex(role)];
}

void SkinDocument::SetColour(TextField field, ColourRole role, OleColour colour) {
    colours_[fieldIndex(field)][roleIndex(role)] = colour;
}

OleColour SkinDocument::InitialColour(TextField field, ColourRole role) {
    if (role == ColourRole::Text) return kSystemWindowText;
    // Date and Sender are transparent labels; their back colour is never kept.
    return field == F::ReceiveDate || field == F::ReceiveSender ? kSystemWindowBackground : kLightGrey;
}

void SkinDocument::ClearSide(SkinSide side) {
    Side& s = sides_[index(side)];
    s.areas.fill(AreaRect{});
    s.used.fill(false);
    s.boxCount = 0;
}

void SkinDocument::ResetDocument() {
    ClearSide(SkinSide::Send);
    ClearSide(SkinSide::Receive);
    skinName_.clear();
    skinAuthor_.clear();
    for (SkinSide side : {SkinSide::Send, SkinSide::Receive}) SetPicture(side, {}, {});
    for (int f = 0; f < kTextFields; ++f) {
        for (ColourRole role : {ColourRole::Back, ColourRole::Text}) {
            SetColour(static_cast<TextField>(f), role, InitialColour(static_cast<TextField>(f), role));
        }
    }
}

}  // namespace skin
