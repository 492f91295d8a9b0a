#pragma once
// Wires the main window to the editor core: it owns the Editor and its Qt view and turns the
// window's events into the core's operations, one operation per event (area drawing on the
// side pictures, selection of boxes and labels, picture loading and reset, the arrow pad and
// its lock, the colour tools, the two timers, the name and author boxes, package creation
// and skin loading), and the editing keys (undo, redo, arrows, Delete) into the same. It lives no longer than the window it is given.

#include <QObject>

#include <array>

#include "editor.h"
#include "qtsurfaceview.h"

class QLabel;
class QKeyEvent;
class QMouseEvent;

namespace skin {

class FrmSkinCreator;

class EditorController : public QObject {
    Q_OBJECT

public:
    // A child of the window, deleted with it. Uses the window's current platform for every
    // operation.
    explicit EditorController(FrmSkinCreator& window);
    ~EditorController() override;

    Editor& editor() { return editor_; }
    QtSurfaceView& view() { return view_; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void wireButtons();
    void wireTextBoxes();
    void wireSignals();
    bool keyPress(const QKeyEvent& key);
    bool pictureMouseEvent(SkinSide side, QEvent* event);
    bool elementMouseEvent(QWidget& element, QEvent* event);

    FrmSkinCreator& window_;
    QtSurfaceView view_;
    Editor editor_;
};

}  // namespace skin
