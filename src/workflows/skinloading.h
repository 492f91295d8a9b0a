#pragma once
// Skin loading: opens a skin package (.bsz, unpacked into a time-stamped folder under the
// temporary folder) or a loose skin information file (.bsi) and rebuilds the document and
// the editor surface from it: name, author, both pictures, the kept colours and every stored
// area, replayed through the editor's drawing operations.

#include <cstdint>
#include <string>
#include <string_view>

#include "editor.h"
#include "platform.h"

namespace skin {

inline constexpr std::string_view kLoadSkinFilter = "Brindleway Skin Files (*.bsz; *.bsi)|*.bsz; *.bsi|";
inline constexpr int kLoadSkinFlags = 4;
inline constexpr int kLoadSkinFilterIndex = 1;
// A chosen path ending in exactly these characters (case-sensitive) is unpacked first.
inline constexpr std::string_view kPackageEnding = "bsz";
// The side numbers of RestoreObjectArea: 1 is Send, any other value Receive.
inline constexpr std::int16_t kSendSideNumber = 1;
inline constexpr std::int16_t kReceiveSideNumber = 2;

// Runs the whole load, from the open dialog to the last message. A failure after the dialog
// shows "Skin Load Error" and leaves whatever was restored so far; a package that does not
// unpack shows the invalid-package message and changes nothing.
void LoadSkin(Editor& editor, Platform& platform);

// Replays one stored area as if the designer had drawn and named it, without the size test
// and the name menu. Kind and the four rectangle values are texts as read from the skin
// information file (picture-relative twips), all converted leniently; an empty value counts
// as 0, and four empty values restore nothing. False, with nothing changed, for a kind that
// does not round to 0..7.
bool RestoreObjectArea(Editor& editor, std::int16_t side, const std::string& kind, const std::string& left,
                       const std::string& top, const std::string& width, const std::string& height);

}  // namespace skin
