#pragma once
// Skin package creation: checks the document, asks for the package file through the save
// dialog, writes the skin information file into a time-stamped temporary skin folder, packs
// it with the two pictures into one .bsz package and reports the result to the designer.

#include <string>
#include <string_view>

#include "editor.h"
#include "platform.h"

namespace skin {

inline constexpr std::string_view kSavePackageTitle = "Save Skin Package";
inline constexpr std::string_view kSavePackageFilter =
    "Brindleway Skin ZIP Files (*.bsz)|*.bsz|All Files (*.*)|*.*|";
inline constexpr int kSavePackageFlags = 4;
// 8 characters of name and 4 of extension (".bsz").
inline constexpr std::size_t kMaxPackageTitleLength = 12;

// The system temporary folder with its trailing separator, as the platform gives it.
std::string GetTempFolder(Platform& platform);

// "DDMMYYYYHHMMSS" of a local time: the name of a temporary skin folder.
std::string TimeStampFolderName(const LocalDateTime& time);

// Runs the whole creation for the editor's document, from the checks to the success
// question; every message and dialog goes through `platform`. On "Create Another?" Yes the
// editor is made anew (ResetEditor). The document is otherwise left unchanged.
void CreateSkinPackage(Editor& editor, Platform& platform);

}  // namespace skin
