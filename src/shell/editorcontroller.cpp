#include "editorcontroller.h"

#include <QApplication>
#include <QEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPointer>

#include <optional>

#include "facebutton.h"
#include "frmskincreator.h"
#include "qtplatform.h"
#include "skinloading.h"
#include "skinpackagecreation.h"
#include "slotguard.h"

namespace skin {

namespace {

constexpr std::array kSides{SkinSide::Send, SkinSide::Receive};

bool IsPress(QEvent::Type type)
{
    // A quick second press arrives as a double click; it is a press like any other.
    return type == QEvent::MouseButtonPress || type == QEvent::MouseButtonDblClick;
}

// The pointer relative to the element, in twips.
QPointF TwipsOf(const QMouseEvent& event)
{
    return event.position() * kTwipsPerPixel;
}

}  // namespace

EditorController::EditorController(FrmSkinCreator& window)
    : QObject(&window),
      window_(window),
      view_(window, window.widgets(), window.qtPlatform().pictures(), this),
      editor_(window.platform())
{
    for (SkinSide side : kSides) view_.frame(side)->installEventFilter(this);
    // Keys that no element took (the name and author boxes take their own) reach the window.
    window.installEventFilter(this);
    wireButtons();
    wireTextBoxes();
    wireSignals();
    editor_.SetView(&view_);
}

EditorController::~EditorController() = default;

void EditorController::wireButtons()
{
    const MainWidgets& w = window_.widgets();
    auto onClick = [this](FaceButton* button, auto operation) {
        connect(button, &FaceButton::clicked, this, Guarded(operation));
    };
    for (SkinSide side : kSides) {
        onClick(w.loadButtons[SideIndex(side)], [this, side] { editor_.LoadSkinPicture(side); });
        onClick(w.clearButtons[SideIndex(side)], [this, side] { editor_.ResetSide(side); });
    }
    onClick(w.imgLock, [this] { editor_.ToggleLock(); });
    onClick(w.imgMap, [this] { editor_.SetColourTarget(ColourRole::Back); });
    onClick(w.imgText, [this] { editor_.SetColourTarget(ColourRole::Text); });
    onClick(w.imgColorSelect, [this] { editor_.ChooseColour(); });
    onClick(w.cmdCreateSkinPackage, [this] { CreateSkinPackage(editor_, window_.platform()); });

    for (int index = 0; index < kArrows; ++index) {
        FaceButton* arrow = w.imgArrMove[index];
        connect(arrow, &FaceButton::pressed, this, Guarded([this, index] { editor_.ArrowPressed(index); }));
        connect(arrow, &FaceButton::released, this, Guarded([this, index] { editor_.ArrowReleased(index); }));
        connect(arrow, &FaceButton::clicked, this, Guarded([this, index] { editor_.ArrowClicked(index); }));
    }
    connect(w.imgPicker, &FaceButton::pressed, this, Guarded([this] { editor_.PickerPressed(); }));
    connect(w.imgPicker, &FaceButton::released, this, Guarded([this] { editor_.PickerReleased(); }));
}

// Typing reaches the document through the editor; the view only rewrites a box that differs,
// so the cursor and the box's own undo stay.
void EditorController::wireTextBoxes()
{
    const MainWidgets& w = window_.widgets();
    connect(w.txtSkinName, &QLineEdit::textEdited, this,
            [this](const QString& text) { Guard([&] { editor_.SetSkinName(text.toStdString()); }); });
    connect(w.txtSkinAuthor, &QLineEdit::textEdited, this,
            [this](const QString& text) { Guard([&] { editor_.SetSkinAuthor(text.toStdString()); }); });
}

void EditorController::wireSignals()
{
    connect(&window_.qtPlatform(), &QtPlatform::timerTicked, this, [this](EditorTimer timer) {
        Guard([&] {
            if (timer == EditorTimer::MoveObject) {
                editor_.MoveTimerTick();
            } else {
                editor_.SampleScreenColour();
            }
        });
    });
    connect(&window_, &FrmSkinCreator::loadSkinRequested, this,
            Guarded([this] { LoadSkin(editor_, window_.platform()); }));
}

bool EditorController::eventFilter(QObject* watched, QEvent* event)
{
    const QEvent::Type type = event->type();
    if (watched == &window_) {
        if (type != QEvent::KeyPress) return false;
        bool taken = false;
        Guard([&] { taken = keyPress(*static_cast<QKeyEvent*>(event)); });
        return taken;
    }
    if (!IsPress(type) && type != QEvent::MouseMove && type != QEvent::MouseButtonRelease) return false;
    bool taken = false;
    Guard([&] {
        for (SkinSide side : kSides) {
            if (watched == view_.frame(side)) {
                taken = pictureMouseEvent(side, event);
                return;
            }
        }
        auto* element = qobject_cast<QWidget*>(watched);
        taken = element != nullptr && elementMouseEvent(*element, event);
    });
    return taken;
}

// The editing keys, whenever the focus is not in the name or author box (there the box's own
// undo and cursor keys apply): Ctrl+Z undo, Ctrl+Shift+Z and Ctrl+Y redo, the arrow keys as the
// arrow pad, Delete and Backspace remove the selected area.
bool EditorController::keyPress(const QKeyEvent& key)
{
    const MainWidgets& w = window_.widgets();
    const QWidget* focus = QApplication::focusWidget();
    if (focus == w.txtSkinName || focus == w.txtSkinAuthor) return false;
    const Qt::KeyboardModifiers modifiers = key.modifiers() & ~Qt::KeypadModifier;
    const bool ctrl = modifiers == Qt::ControlModifier;
    const bool ctrlShift = modifiers == (Qt::ControlModifier | Qt::ShiftModifier);
    switch (key.key()) {
    case Qt::Key_Z:
        if (ctrl) editor_.Undo();
        if (ctrlShift) editor_.Redo();
        return ctrl || ctrlShift;
    case Qt::Key_Y:
        if (ctrl) editor_.Redo();
        return ctrl;
    case Qt::Key_Delete:
    case Qt::Key_Backspace:
        if (modifiers != Qt::NoModifier) return false;
        if (!key.isAutoRepeat()) editor_.DeleteSelection();
        return true;
    default: break;
    }
    if (modifiers != Qt::NoModifier) return false;
    for (const auto& [qtKey, arrow] : {std::pair{Qt::Key_Left, kArrowLeft}, std::pair{Qt::Key_Up, kArrowUp},
                                       std::pair{Qt::Key_Right, kArrowRight}, std::pair{Qt::Key_Down, kArrowDown}}) {
        if (key.key() == qtKey) {
            editor_.ArrowKey(arrow, key.isAutoRepeat());
            return true;
        }
    }
    return false;
}

// The side picture: the left button draws an area; every press is taken, so no press on a
// picture ever moves the window. Qt keeps sending the moves of a held button to the picture,
// also outside it.
bool EditorController::pictureMouseEvent(SkinSide side, QEvent* event)
{
    const auto& mouse = *static_cast<QMouseEvent*>(event);
    const QPointF at = TwipsOf(mouse);
    const auto x = static_cast<float>(at.x());
    const auto y = static_cast<float>(at.y());
    if (IsPress(event->type())) {
        if (mouse.button() == Qt::LeftButton) editor_.BeginArea(side, x, y);
    } else if (event->type() == QEvent::MouseMove) {
        if (mouse.buttons() == Qt::LeftButton) editor_.ExtendArea(side, x, y);
    } else if (mouse.button() == Qt::LeftButton) {
        editor_.EndArea(side, x, y);
    }
    return true;
}

// A drawing box or a text-field label takes every press, so no drag starts beneath it, and
// a left click on it selects it.
bool EditorController::elementMouseEvent(QWidget& element, QEvent* event)
{
    const QVariant boxSide = element.property(kBoxSideProperty);
    std::optional<TextField> field;
    for (int f = 0; f < kTextFields; ++f) {
        if (view_.label(static_cast<TextField>(f)) == &element) field = static_cast<TextField>(f);
    }
    if (!boxSide.isValid() && !field) return false;
    if (event->type() != QEvent::MouseButtonRelease) return true;
    const auto& mouse = *static_cast<QMouseEvent*>(event);
    if (mouse.button() != Qt::LeftButton || !element.rect().contains(mouse.position().toPoint())) return true;
    if (field) {
        editor_.SelectTextField(*field);
    } else {
        const SkinSide side = boxSide.toInt() == SideIndex(SkinSide::Send) ? SkinSide::Send : SkinSide::Receive;
        editor_.SelectBox(side, element.property(kBoxIndexProperty).toInt());
    }
    return true;
}

}  // namespace skin
