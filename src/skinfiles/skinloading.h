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

// Runs the whole load, from the open dialog to the last message. A failure after the dialog
// shows "Skin Load Error" and leaves whatever was restored so far.
void LoadSkin(Editor& editor, Platform& platform);

// Replays one stored area as if the designer had drawn and named it: side 1 is Send, any
// other value Receive; kind and the four rectangle values are texts as read from the skin
// information file (picture-relative twips, read leniently). All four values empty: nothing.
void RestoreObjectArea(Editor& editor, std::int16_t side, const std::string& kind, const std::string& left,
                       const std::string& top, const std::string& width, const std::string& height);

}  // namespace skin
