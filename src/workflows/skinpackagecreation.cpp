// Package creation runs as one blocking operation on the user-interface thread: checks, the
// save dialog, the busy state, the temporary skin folder, the container, clean-up, result.
#include "skinpackagecreation.h"

#include <filesystem>
#include <optional>
#include <string>
#include <system_error>

#include "packagenames.h"
#include "packagesupport.h"
#include "skininformation.h"

namespace skin {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kCreationErrorTitle = "Package Creation Error";
constexpr std::string_view kNameAlertTitle = "Package Name Alert";
constexpr std::string_view kCreationTitle = "Ostervale Skin Fwt.";
constexpr std::string_view kScriptErrorTitle = "Script Creation Error";

constexpr std::string_view kPictureMissingText =
    "You must create both the Send and Receive skin before creating the skin package.";
constexpr std::string_view kNoNameText = "You must specify a skin name.";
constexpr std::string_view kNoAuthorText = "You must specify the skin author.";
constexpr std::string_view kTitleTooLongText =
    "The package file name must be a maximum of 8 characters.\r\nPlease specify a smaller name.";
constexpr std::string_view kBlankInTitleText =
    "The package file name must not contain any spaces.\r\nPlease remove all spaces from the name.";
constexpr std::string_view kPackageExistsText = "The file you have specified already exists.\r\nOverwrite?";
constexpr std::string_view kSuccessText = "Brindleway Skin Package Created Successfully!\r\n\r\nCreate Another?";
constexpr std::string_view kFailureText =
    "An Error occured while creating the script file.\r\nVerify your settings and try again.";

MessageAnswer show(Platform& platform, std::string_view text, std::string_view title, MessageIcon icon,
                   MessageButtons buttons = MessageButtons::Ok) {
    return platform.ShowMessage(std::string(text), std::string(title), icon, buttons);
}

// Titles are counted in characters, not bytes: a UTF-8 continuation byte starts no character.
std::size_t characterCount(std::string_view text) {
    std::size_t count = 0;
    for (unsigned char c : text) {
        if ((c & 0xC0) != 0x80) ++count;
    }
    return count;
}

void busyOn(Platform& platform) {
    platform.SetHourglass(true);
    platform.SetMainWindowInput(false);
    platform.ShowBusyPanel(BusyPanel::Creating, true);
}

void busyOff(Platform& platform) {
    platform.SetHourglass(false);
    platform.SetMainWindowInput(true);
    platform.ShowBusyPanel(BusyPanel::Creating, false);
}

// The one way out for every failure: the busy state ends and the failure message shows.
// Nothing is cleaned up, so the temporary files stay for the designer to look at.
void failurePath(Platform& platform) {
    busyOff(platform);
    show(platform, kFailureText, kScriptErrorTitle, MessageIcon::Information);
}

// A name that is a file name for the client and a value of the information file.
std::optional<std::string> packedNameFault(std::string_view name) {
    if (auto fault = PackageNameFault(name)) return fault;
    return SkinTextFault(name);
}

// The skin name (the package's root folder and, without blanks, its information file) and the
// picture file names are written as file names by the client on Windows, and all of them and
// the author are read back from the information file. One that the client could not use, or
// that would not read back as typed, is refused here, before anything is written, with what is
// wrong and what to change.
bool textsFitAPackage(const SkinDocument& document, Platform& platform) {
    const std::string& skinName = document.SkinName();
    std::optional<std::string> fault = packedNameFault(skinName);
    if (!fault) {
        const std::string informationName = SkinInformationFileName(skinName);
        if (auto derived = PackageNameFault(informationName)) {
            fault = "gives the information file name \"" + informationName + "\", which " + *derived;
        }
    }
    if (fault) {
        show(platform, "The skin name \"" + skinName + "\" " + *fault + ".\r\nPlease change the skin name.",
             kCreationErrorTitle, MessageIcon::Information);
        platform.FocusTextBox(TextBox::SkinName);
        return false;
    }
    if (auto authorFault = SkinTextFault(document.SkinAuthor())) {
        show(platform, "The author \"" + document.SkinAuthor() + "\" " + *authorFault + ".\r\nPlease change the author.",
             kCreationErrorTitle, MessageIcon::Information);
        platform.FocusTextBox(TextBox::SkinAuthor);
        return false;
    }
    for (SkinSide side : {SkinSide::Send, SkinSide::Receive}) {
        const std::string& fileName = document.PictureFileName(side);
        if (auto pictureFault = packedNameFault(fileName)) {
            show(platform,
                 std::string("The file name of the ") + (side == SkinSide::Send ? "Send" : "Receive") + " picture, \"" +
                     fileName + "\", " + *pictureFault + ".\r\nPlease rename the picture file and load it again.",
                 kCreationErrorTitle, MessageIcon::Information);
            return false;
        }
    }
    return true;
}

// The save dialog, shown again after each refused file title; nullopt when cancelled.
std::optional<FileChoice> askPackagePath(Platform& platform) {
    FileDialogSettings settings;
    settings.title = kSavePackageTitle;
    settings.filter = kSavePackageFilter;
    settings.filterIndex = 1;
    settings.flags = kSavePackageFlags;
    for (;;) {
        std::optional<FileChoice> choice = platform.SaveFileDialog(settings);
        if (!choice) return std::nullopt;
        if (characterCount(choice->title) > kMaxPackageTitleLength) {
            show(platform, kTitleTooLongText, kNameAlertTitle, MessageIcon::Information);
            continue;
        }
        if (choice->title.find(' ') != std::string::npos) {
            show(platform, kBlankInTitleText, kNameAlertTitle, MessageIcon::Information);
            continue;
        }
        return choice;
    }
}

// A file (not a folder) at the path: the container would append to it.
bool fileExists(const std::string& path) {
    std::error_code ec;
    const fs::file_status status = fs::status(path, ec);
    return !ec && fs::exists(status) && !fs::is_directory(status);
}

// Steps 7 to 13, from the busy state on: false when the run ended on the way (declined
// overwrite, failure), with the busy state off and any message shown.
bool writePackage(const SkinDocument& document, Platform& platform, const std::string& packagePath) {
    const auto fail = [&platform] {
        failurePath(platform);
        return false;
    };
    busyOn(platform);
    if (fileExists(packagePath)) {
        const MessageAnswer answer =
            show(platform, kPackageExistsText, kCreationTitle, MessageIcon::Question, MessageButtons::YesNo);
        if (answer != MessageAnswer::Yes) {
            busyOff(platform);
            return false;
        }
        // The container appends, so the old package goes first; it stays gone if a later step fails.
        std::error_code ec;
        if (!fs::remove(packagePath, ec) || ec) return fail();
    }

    // A folder of this second left by an earlier run is not reused: its content is unknown.
    const std::string skinFolder = GetTempFolder(platform) + PackageTimeStamp(PackageTimeFrom(platform.Now()));
    std::error_code ec;
    if (fs::exists(fs::symlink_status(skinFolder, ec))) return fail();
    if (!fs::create_directory(skinFolder, ec) || ec) return fail();

    const std::string informationPath = skinFolder + "/" + SkinInformationFileName(document.SkinName());
    WriteSkinInformation(document, informationPath, platform);

    BwZip zip = MakePackageContainer(platform);
    zip.AddFileFolder(document.PicturePath(SkinSide::Send));
    zip.AddFileFolder(document.PicturePath(SkinSide::Receive));
    zip.AddFileFolder(informationPath);
    // The container leaves no package behind when it fails; success is never reported then.
    if (zip.Zip(document.SkinName(), packagePath).empty()) return fail();

    // Clean-up ignores errors: a folder that still holds something stays.
    if (fileExists(informationPath)) fs::remove(informationPath, ec);
    if (fs::is_directory(skinFolder, ec)) fs::remove(skinFolder, ec);

    busyOff(platform);
    return true;
}

}  // namespace

void CreateSkinPackage(Editor& editor, Platform& platform) {
    const SkinDocument& document = editor.Document();

    if (document.PictureFileName(SkinSide::Send).empty() || document.PictureFileName(SkinSide::Receive).empty()) {
        show(platform, kPictureMissingText, kCreationErrorTitle, MessageIcon::Information);
        return;
    }
    if (document.SkinName().empty()) {
        show(platform, kNoNameText, kCreationErrorTitle, MessageIcon::Information);
        platform.FocusTextBox(TextBox::SkinName);
        return;
    }
    if (document.SkinAuthor().empty()) {
        show(platform, kNoAuthorText, kCreationErrorTitle, MessageIcon::Information);
        platform.FocusTextBox(TextBox::SkinAuthor);
        return;
    }
    if (!textsFitAPackage(document, platform)) return;

    const std::optional<FileChoice> choice = askPackagePath(platform);
    if (!choice) {
        busyOff(platform);  // the failure path, silent for a cancelled dialog
        return;
    }

    // Whatever fails on the way, expected or not (memory, a file system that throws), ends on
    // the failure path: the busy state off and the failure message.
    bool written = false;
    try {
        written = writePackage(document, platform, choice->path);
    } catch (...) {
        failurePath(platform);
    }
    if (!written) return;

    const MessageAnswer another =
        show(platform, kSuccessText, kCreationTitle, MessageIcon::Exclamation, MessageButtons::YesNo);
    if (another == MessageAnswer::Yes) {
        editor.ResetEditor();
        platform.ShowMainWindowAnew();
    }
}

}  // namespace skin
