#pragma once
// The skin editor core: the skin document, the editor surface and the operations on them
// (drawing and naming areas, nudge and stretch, colour tools, side pictures and reset).
// It is the only door to the document: everything that changes the skin, the designer's
// typing and skin loading included, is one of its operations. It reaches the window system
// only through Platform and tells the SurfaceView (if any) once at the end of each operation,
// and before each modal or visible Platform call inside one, so the screen is current while
// a menu, dialog or message is open. One Editor lives as long as the main window; all calls
// come from the user-interface thread, one event at a time.

#include <string_view>

#include "editorsurface.h"
#include "history.h"
#include "platform.h"
#include "skindocument.h"
#include "surfaceview.h"

namespace skin {

// The fixed texts of the editor's messages.
inline constexpr std::string_view kPictureFilter =
    "Graphic Files (*.bmp; *.jpg; *.gif)|*.bmp; *.jpg; *.gif|All Files (*.*)|*.*|";
inline constexpr int kPictureDialogFlags = 4;
inline constexpr std::string_view kPictureLoadErrorText =
    "An Error has occured while loading the picture file.\r\n\r\nPicture file not loaded.";
inline constexpr std::string_view kPictureLoadErrorTitle = "Picture Load Error";
inline constexpr std::string_view kNoSelectionText = "Please select an object to modify first";
inline constexpr std::string_view kArrowPadTitle = "Brindleway Skin Fwt.";

// The order in which the picker swaps labels for their mirrored boxes (and back).
inline constexpr std::array<TextField, kTextFields> kPickerOrder{
    TextField::ReceiveMessage, TextField::ReceiveSender, TextField::ReceiveDate,
    TextField::SendMessage, TextField::SendUsers};

class Editor {
public:
    // The platform must outlive the editor; the view may be null (no one watches).
    explicit Editor(Platform& platform, SurfaceView* view = nullptr);

    // How an operation counts in the history: a step of its own; part of the gesture under
    // way (a drag and its naming, a held arrow, the picker); none, with the history kept; or
    // none, with the history started anew (loading a skin, a new start).
    enum class Step { Own, Gesture, None, Anew };

    // Groups the operations run during its life into one: the view hears once, when the
    // outermost group ends, and the history counts the whole as `step` (skin loading replays
    // many operations and starts the history anew).
    class Batch {
    public:
        explicit Batch(Editor& editor, Step step = Step::Own);
        ~Batch();
        Batch(const Batch&) = delete;
        Batch& operator=(const Batch&) = delete;

    private:
        Editor& editor_;
    };

    // The view hears about the whole state at once, now and after every later operation.
    void SetView(SurfaceView* view);
    const SkinDocument& Document() const { return document_; }
    const EditorSurface& Surface() const { return surface_; }

    // --- Name, author and the kept values that skin loading restores. ---
    void SetSkinName(std::string name);
    void SetSkinAuthor(std::string author);
    // Reads the picture at `path` into the side's frame and records fileName and path in the
    // document. False, with nothing changed, when the platform cannot read the picture.
    bool SetSidePicture(SkinSide side, const std::string& path, std::string fileName);
    // A text field's colour, whatever is selected (skin loading).
    void SetColour(TextField field, ColourRole role, OleColour colour);

    // --- Drawing and naming areas. x, y: pointer in twips relative to the side's picture. ---
    // Press of the left button on the side's picture: box n (n = box count) starts growing.
    void BeginArea(SkinSide side, float x, float y);
    // Movement with the left button held: grows box n, never turning over, clipped at the
    // picture's right and bottom edge one movement late.
    void ExtendArea(SkinSide side, float x, float y);
    // Release: the 45-twip size test, then the modal name menu, NameArea for the choice and
    // CloseArea.
    void EndArea(SkinSide side, float x, float y);
    // Names box n as kind. False (and nothing changed) for a kind outside 0..7.
    bool NameArea(SkinSide side, AreaKind kind);
    // After the name menu: hides box n unless it was named, then advances the box count.
    void CloseArea(SkinSide side);
    void SelectBox(SkinSide side, int index);
    void SelectTextField(TextField field);
    // Used by skin loading when it replays an area without the name menu.
    void BringBoxToFront(SkinSide side, int index);
    void SetAreaNamed(SkinSide side, bool named);

    // --- Side pictures and reset. ---
    // Open dialog, picture into the frame, document file name and path; "Picture Load Error"
    // on failure; a cancel ends silently.
    void LoadSkinPicture(SkinSide side);
    // Hides the side's boxes, clears its areas, enables its menu, parks its labels, sets its
    // TextFieldBox entries to none. CurrentSelection and the picture stay.
    void ResetSide(SkinSide side);

    // --- Nudge and stretch (index: kArrowLeft..kArrowDown; others are ignored). ---
    // One step of the CurrentSelection: move 10 twips, or with the lock on stretch by 10;
    // refused at the picture's edges and below a width or height of 0. With nothing selected
    // it shows the "Please select an object to modify first" message.
    void NudgeSelection(int index);
    // Press on an arrow: pressed face, border on a selected label, repeat timer started.
    void ArrowPressed(int index);
    // Release of that press: timer stopped, border removed, normal face.
    void ArrowReleased(int index);
    // The click that follows a release over the same arrow: one more step, unless this press
    // already showed the no-selection message (one message per press).
    void ArrowClicked(int index);
    // A tick of timMoveObject: NudgeSelection with the held arrow; with nothing selected the
    // repeat stops and the message is shown once for the press.
    void MoveTimerTick();
    void ToggleLock();

    // --- Colour tools. ---
    void SetColourTarget(ColourRole target);
    ColourRole ColourTarget() const;
    // Sets the target colour of a selected text-field label; nothing for a box or no selection.
    void ApplyColour(OleColour colour);
    // The colour dialog on its remembered colour; a cancel changes nothing.
    void ChooseColour();
    void PickerPressed();
    // A tick of tmrScreenColor: the swatch takes the screen pixel under the pointer; where no
    // pixel can be read it stays as it is and is marked unread.
    void SampleScreenColour();
    // Applies the swatch, unless the last sample was unread: then the desktop's own pick, if
    // any, gives the colour, and without one nothing changes.
    void PickerReleased();

    // --- Undo, redo and keyboard editing. ---
    // Undo puts back the state before the latest step (areas, labels, colours, pictures, the
    // free and used kinds, the name menus, the selection), redo the state undo replaced. The
    // skin name and author and the tools stay as they are. Nothing happens without a step.
    void Undo();
    void Redo();
    bool CanUndo() const { return history_.CanUndo(); }
    bool CanRedo() const { return history_.CanRedo(); }
    std::size_t UndoSteps() const { return history_.UndoSteps(); }
    // An arrow key: the arrow pad's step for that arrow. A key held down repeats; its first
    // press and its repeats are one step, and with nothing selected only the press shows
    // the message.
    void ArrowKey(int index, bool autoRepeat);
    // Removes the selected area as if it had never been drawn: its kind is free again, its
    // box hidden, a text field's label back at its start place, nothing selected. Nothing
    // happens when no used area is selected.
    void DeleteSelection();

    // Everything back to the start of a new main window: empty document, a single hidden box
    // per side, box counts 0, TextFieldBox none, nothing selected, menus enabled, labels at
    // their start places, lock off, target back, swatch white, dialog colour black, faces
    // normal, timers stopped, frames empty.
    void ResetEditor();

private:
    // Every public operation holds one while it runs; the outermost one settles the history
    // and tells the view.
    class Operation {
    public:
        explicit Operation(Editor& editor, Step step = Step::Own) : editor_(editor) { editor_.begin(step); }
        ~Operation() { editor_.end(); }
        Operation(const Operation&) = delete;
        Operation& operator=(const Operation&) = delete;

    private:
        Editor& editor_;
    };

    void begin(Step step);
    void end();
    EditState state() const { return {document_, surface_}; }
    void restore(EditState state);

    BoxElement& ensureBox(SkinSide side, int index);
    void setSelectionStatus(std::string text, Selection selection);
    bool arrowHeld() const { return heldArrow_ >= 0; }
    // Brings the screen up to date before a modal or visible Platform call.
    void showNow() { notifyView(); }
    void notifyView();

    Platform& platform_;
    SurfaceView* view_;
    int depth_ = 0;  // operations running, nested
    History history_;
    Step outerStep_ = Step::Own;  // how the outermost operation under way counts
    EditState before_;            // the state when it began
    int gestureKey_ = 0;          // the gesture under way, for Step::Gesture
    int lastGestureKey_ = 0;
    SkinDocument document_;
    EditorSurface surface_;
    int heldArrow_ = -1;              // timMoveObject's tag: the arrow being held, -1 for none
    bool pressMessageShown_ = false;  // the no-selection message was shown for this press
};

}  // namespace skin
