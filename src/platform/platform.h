#pragma once
// Everything the core asks of the window system, the clock and the desktop. The Qt shell
// implements it; tests implement it with a scripted fake. Modal things (message boxes,
// dialogs, the pop-up name menu) are synchronous calls that return the user's answer.

#include <array>
#include <optional>
#include <string>

#include "skindocument.h"

namespace skin {

struct LocalDateTime {
    int year = 2000;
    int month = 1;   // 1..12
    int day = 1;     // 1..31
    int hour = 0;    // 0..23
    int minute = 0;
    int second = 0;
};

// Icons carry the message-box style numbers the formats were written with.
enum class MessageIcon { Information = 64, Question = 32, Exclamation = 48 };
enum class MessageButtons { Ok, YesNo };
enum class MessageAnswer { Ok, Yes, No };

// Open and save dialogs. The filter is pairs of description and pattern separated by "|"
// ("Graphic Files (*.bmp)|*.bmp|All Files (*.*)|*.*|"); filterIndex counts pairs from 1.
struct FileDialogSettings {
    std::string title;  // empty: the toolkit's own title
    std::string filter;
    int filterIndex = 1;
    int flags = 0;      // 4: no read-only check box; 2: ask before overwriting; 0x1000: file must exist
};

// What a file dialog returns: the full path and the file title (name with extension).
struct FileChoice {
    std::string path;
    std::string title;
};

enum class BusyPanel { Loading, Creating };
enum class TextBox { SkinName, SkinAuthor };
enum class EditorTimer { MoveObject, ScreenColour };  // 50 ms arrow repeat, 1 ms picker sampling

// A picture the platform has read and keeps, ready to be shown in a side's frame; 0 is none.
using PictureId = int;
inline constexpr PictureId kNoPicture = 0;

class Platform {
public:
    virtual ~Platform() = default;

    // Clock and folders.
    virtual LocalDateTime Now() = 0;
    virtual std::string TempFolder() = 0;  // the system temporary folder, ending in "/"

    // Modal interaction. Text lines are separated by CR LF.
    virtual MessageAnswer ShowMessage(const std::string& text, const std::string& title, MessageIcon icon,
                                      MessageButtons buttons) = 0;
    // nullopt: the designer cancelled.
    virtual std::optional<FileChoice> OpenFileDialog(const FileDialogSettings& settings) = 0;
    virtual std::optional<FileChoice> SaveFileDialog(const FileDialogSettings& settings) = 0;
    // Opens on `initial`; nullopt when cancelled. Returns an RGB OLE colour.
    virtual std::optional<OleColour> ChooseColour(OleColour initial) = 0;
    // The side's name menu at the pointer: eight kind items (enabled as given), a separator,
    // "Cancel". Returns the chosen kind; nullopt for "Cancel" or a dismissed menu.
    virtual std::optional<AreaKind> ShowNameMenu(SkinSide side, const std::array<bool, kAreaKinds>& enabled) = 0;

    // Busy state: each indication on its own, so callers keep the documented order.
    virtual void SetHourglass(bool on) = 0;
    virtual void SetMainWindowInput(bool enabled) = 0;
    virtual void ShowBusyPanel(BusyPanel panel, bool visible) = 0;
    virtual void ProcessPendingEvents() = 0;
    virtual void FocusTextBox(TextBox box) = 0;
    // The main window as newly loaded, after the editor has been reset: its own start-up runs
    // again (options list back on its first item) and it is shown centred, focus on its first field.
    virtual void ShowMainWindowAnew() = 0;

    // Reads a picture file, prepared for the side's frame (stretched to fill it), and keeps it
    // for as long as the program runs, so that a picture once shown can be shown again.
    // kNoPicture when the file is missing or no picture the loader reads.
    virtual PictureId LoadPicture(SkinSide side, const std::string& path) = 0;

    // Timers tick back into the core through the shell (NudgeSelection, SampleScreenColour).
    virtual void StartTimer(EditorTimer timer) = 0;
    virtual void StopTimer(EditorTimer timer) = 0;

    // The colour of the screen pixel under the pointer, from any window, as an RGB OLE colour;
    // nullopt where the session lets no pixel be read (no colour is ever made up).
    virtual std::optional<OleColour> ScreenPixelAtPointer() = 0;
    // The desktop's own colour pick, for a place the program cannot read: modal, the designer
    // picks a pixel anywhere on the screen. nullopt when the desktop offers none, or the pick
    // was cancelled or failed.
    virtual std::optional<OleColour> PickColourWithDesktop() = 0;
    // Whether the pointer rests on the picker button in a session whose screen cannot be read
    // but whose desktop offers its own pick: a click on the picker hands over to that pick.
    virtual bool PickerHandsOverToDesktop() = 0;
    // The picker's pointer image on the main window while the picker is held.
    virtual void SetPickerPointer(bool on) = 0;

    // Hands an address to the desktop's web browser; failures are not reported.
    virtual void OpenWebPage(const std::string& url) = 0;
};

}  // namespace skin
