// Skin loading reads the skin information file key by key, in the format's order, and rebuilds
// the skin side by side; a failure stops where it is, keeping what was already restored.
#include "skinloading.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <string>

#include "ini.h"
#include "packagesupport.h"
#include "skininformation.h"

namespace skin {
namespace {

constexpr std::string_view kLoadTitle = "Brindleway - Skin Framewright";
constexpr std::string_view kLoadErrorTitle = "Skin Load Error";
constexpr std::string_view kInvalidPackageText = "Invalid Skin Package File.\r\nCannot load Skin Information.";
constexpr std::string_view kLoadedText = "Skin loaded successfully!";
constexpr std::string_view kLoadErrorText =
    "An Error has occured while loading the Skin file.\r\n\r\nSkin was not loaded.";

void busyOn(Platform& platform) {
    platform.SetHourglass(true);
    platform.SetMainWindowInput(false);
    platform.ShowBusyPanel(BusyPanel::Loading, true);
}

void busyOff(Platform& platform) {
    platform.SetHourglass(false);
    platform.ShowBusyPanel(BusyPanel::Loading, false);
    platform.SetMainWindowInput(true);
}

void show(Platform& platform, std::string_view text, std::string_view title, MessageIcon icon) {
    platform.ShowMessage(std::string(text), std::string(title), icon, MessageButtons::Ok);
}

// The folder part of a path, separator included; empty for a bare name.
std::string folderOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? std::string() : path.substr(0, slash + 1);
}

bool endsWith(std::string_view text, std::string_view ending) {
    return text.size() >= ending.size() && text.substr(text.size() - ending.size()) == ending;
}

// A file value can be any number; the screen elements hold single precision, and a value
// beyond its range is pinned to its largest finite value rather than left undefined.
float toSingle(double value) {
    constexpr double kMax = std::numeric_limits<float>::max();
    return static_cast<float>(std::clamp(value, -kMax, kMax));
}

// Steps 9 to 11 of one side: the picture, the four kept colours, the eight areas. False at
// the first value that cannot be used.
bool restoreSide(Editor& editor, SkinSide side, const std::string& informationPath,
                 const std::string& sourceFolder) {
    const std::string_view imageKey = side == SkinSide::Send ? kSendImageKey : kReceiveImageKey;
    // The picture key is read for each use: the picture shown, then its file name.
    const std::string shownPath = sourceFolder + ReadINI(kGlobalSection, imageKey, informationPath);
    if (!editor.SetSidePicture(side, shownPath, ReadINI(kGlobalSection, imageKey, informationPath))) return false;

    for (const ColourEntry& entry : ColourEntries(side)) {
        const std::optional<std::int32_t> colour =
            ColourFromText(ReadINI(ColourSection(side), entry.key, informationPath));
        if (!colour) return false;
        editor.SetColour(entry.field, entry.role, *colour);
    }

    const std::int16_t sideNumber = side == SkinSide::Send ? kSendSideNumber : kReceiveSideNumber;
    for (AreaKind kind = 0; kind < kAreaKinds; ++kind) {
        const std::string_view section = KindInfo(side, kind).section;
        const std::string left = ReadINI(section, kAreaKeys[0], informationPath);
        const std::string top = ReadINI(section, kAreaKeys[1], informationPath);
        const std::string width = ReadINI(section, kAreaKeys[2], informationPath);
        const std::string height = ReadINI(section, kAreaKeys[3], informationPath);
        if (!RestoreObjectArea(editor, sideNumber, std::to_string(kind), left, top, width, height)) return false;
    }
    return true;
}

enum class LoadOutcome { Loaded, InvalidPackage, Failed };

// Steps 4 to 12 for the chosen file, with the busy state on. An invalid package's message
// shows here, before the busy state ends; the caller shows the others.
LoadOutcome loadChosen(Editor& editor, Platform& platform, const std::string& chosenPath) {
    std::string informationPath = chosenPath;
    std::string sourceFolder = folderOf(chosenPath);
    if (endsWith(chosenPath, kPackageEnding)) {
        BwZip zip = MakePackageContainer(platform);
        std::string unpackedInformation;  // empty: the package unpacks into a time-stamped folder
        if (!zip.UnZip(chosenPath, GetTempFolder(platform), false, true, &unpackedInformation)) {
            show(platform, kInvalidPackageText, kLoadTitle, MessageIcon::Exclamation);
            return LoadOutcome::InvalidPackage;
        }
        informationPath = unpackedInformation;
        sourceFolder = folderOf(unpackedInformation);
    }

    // The rebuilt skin reaches the screen once, when the rebuilding ends; it is no step to
    // undo, and the steps before it no longer apply.
    Editor::Batch rebuild(editor, Editor::Step::Anew);
    editor.SetSkinAuthor(ReadINI(kGlobalSection, kSkinAuthorKey, informationPath));
    editor.SetSkinName(ReadINI(kGlobalSection, kSkinNameKey, informationPath));
    for (SkinSide side : {SkinSide::Send, SkinSide::Receive}) {
        editor.ResetSide(side);
        if (!restoreSide(editor, side, informationPath, sourceFolder)) return LoadOutcome::Failed;
    }
    return LoadOutcome::Loaded;
}

}  // namespace

bool RestoreObjectArea(Editor& editor, std::int16_t side, const std::string& kind, const std::string& left,
                       const std::string& top, const std::string& width, const std::string& height) {
    if (left.empty() && top.empty() && width.empty() && height.empty()) return true;
    const SkinSide skinSide = side == kSendSideNumber ? SkinSide::Send : SkinSide::Receive;
    const AreaKind areaKind = RoundToInt16(RectangleValueFromText(kind));
    if (areaKind < 0 || areaKind >= kAreaKinds) return false;
    const double x = RectangleValueFromText(left);
    const double y = RectangleValueFromText(top);
    const double w = RectangleValueFromText(width);
    const double h = RectangleValueFromText(height);

    // The drag the designer made: press at the top-left, move to the bottom-right, then the
    // name as if chosen from the menu, enabled or not; no size test, so any size comes back.
    const float pressX = toSingle(x);
    const float pressY = toSingle(y);
    editor.BeginArea(skinSide, pressX, pressY);
    editor.ExtendArea(skinSide, toSingle(x + w), toSingle(y + h));
    // The anchor and the named rectangle are 16-bit integers: an area beyond that range cannot
    // be restored, and the load fails rather than store a clipped rectangle.
    const RectF& grown = editor.Surface().Boxes(skinSide)[editor.Document().BoxCount(skinSide)].rect;
    for (double value : {double{pressX}, double{pressY}, double{grown.Left}, double{grown.Top}, double{grown.Width},
                         double{grown.Height}}) {
        if (!FitsInt16(value)) return false;
    }
    editor.BringBoxToFront(skinSide, editor.Document().BoxCount(skinSide));
    editor.SetAreaNamed(skinSide, false);
    editor.NameArea(skinSide, areaKind);
    editor.CloseArea(skinSide);
    return true;
}

void LoadSkin(Editor& editor, Platform& platform) {
    FileDialogSettings settings;
    settings.filter = kLoadSkinFilter;
    settings.filterIndex = kLoadSkinFilterIndex;
    settings.flags = kLoadSkinFlags;
    const std::optional<FileChoice> choice = platform.OpenFileDialog(settings);
    if (!choice) {
        busyOff(platform);  // the failure path, silent for a cancelled dialog
        return;
    }

    busyOn(platform);
    // Whatever fails on the way, expected or not (memory, a file system that throws), ends on
    // the failure path: the busy state off and the load error message.
    LoadOutcome outcome = LoadOutcome::Failed;
    try {
        outcome = loadChosen(editor, platform, choice->path);
    } catch (...) {
        outcome = LoadOutcome::Failed;
    }
    busyOff(platform);
    if (outcome == LoadOutcome::InvalidPackage) return;
    if (outcome == LoadOutcome::Loaded) {
        show(platform, kLoadedText, kLoadTitle, MessageIcon::Information);
    } else {
        show(platform, kLoadErrorText, kLoadErrorTitle, MessageIcon::Exclamation);
    }
}

}  // namespace skin
