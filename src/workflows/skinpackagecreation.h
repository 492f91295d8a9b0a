#pragma once
// Skin package creation: checks the document, asks for the package file through the save
// dialog, writes the skin information file into a time-stamped temporary skin folder, packs
// it with the two pictures into one .bsz package and reports the result to the designer.

#include <cstddef>
#include <string_view>

#include "editor.h"
#include "platform.h"

namespace skin {

inline constexpr std::string_view kSavePackageTitle = "Save Skin Package";
inline constexpr std::string_view kSavePackageFilter =
    "Brindleway Skin ZIP Files (*.bsz)|*.bsz|All Files (*.*)|*.*|";
inline constexpr int kSavePackageFlags = 4;
// 8 characters of name and 4 of extension (".bsz"), whatever the extension really is.
inline constexpr std::size_t kMaxPackageTitleLength = 12;

// Runs the whole creation for the editor's document, from the checks to the success
// question; every message and dialog goes through `platform`. The document is never changed,
// except that "Create Another?" answered Yes makes the editor anew (ResetEditor). A package
// the container could not write ends with the failure message, never with success.
void CreateSkinPackage(Editor& editor, Platform& platform);

}  // namespace skin
