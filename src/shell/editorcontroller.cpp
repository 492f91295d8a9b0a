#include "editorcontroller.h"

#include <QEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPointer>

#include <optional>

#include "facebutton.h"
#include "frmskincreator.h"
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
    : QObject(&window), window_(window), view_(window, this), editor_(window.platform(), &view_)
{
    for (SkinSide side : kSides) {
        pictures_[SideIndex(side)] = view_.frame(side);
        if (QLabel* picture = view_.frame(side)) picture->installEventFilter(this);
    }
    wireButtons();
    wireTextBoxes();
    wireHooks();
    editor_.Refresh();
}

EditorController::~EditorController() = default;

void EditorController::wireButtons()
{
    auto button = [this](const char* name) { return window_.faceButton(name); };
    auto onClick = [this, &button](const char* name, auto operation) {
        if (FaceButton* b = button(name)) connect(b, &FaceButton::clicked, this, Guarded(operation));
    };
    onClick("imgSendLoad", [this] { editor_.LoadSkinPicture(SkinSide::Send); });
    onClick("imgReceiveLoad", [this] { editor_.LoadSkinPicture(SkinSide::Receive); });
    onClick("imgSendClear", [this] { editor_.ResetSide(SkinSide::Send); });
    onClick("imgReceiveClear", [this] { editor_.ResetSide(SkinSide::Receive); });
    onClick("imgLock", [this] { editor_.ToggleLock(); });
    onClick("imgMap", [this] { editor_.SetColourTarget(ColourRole::Back); });
    onClick("imgText", [this] { editor_.SetColourTarget(ColourRole::Text); });
    onClick("imgColorSelect", [this] { editor_.ChooseColour(); });
    onClick("cmdCreateSkinPackage", [this] { CreateSkinPackage(editor_, window_.platform()); });

    for (int index = 0; index < kArrows; ++index) {
        FaceButton* arrow = button(QStringLiteral("imgArrMove%1").arg(index).toUtf8().constData());
        if (arrow == nullptr) continue;
        connect(arrow, &FaceButton::pressed, this, Guarded([this, index] { editor_.ArrowPressed(index); }));
        connect(arrow, &FaceButton::released, this, Guarded([this, index] { editor_.ArrowReleased(index); }));
        connect(arrow, &FaceButton::clicked, this, Guarded([this, index] { editor_.ArrowClicked(index); }));
    }
    if (FaceButton* picker = button("imgPicker")) {
        connect(picker, &FaceButton::pressed, this, Guarded([this] { editor_.PickerPressed(); }));
        connect(picker, &FaceButton::released, this, Guarded([this] { editor_.PickerReleased(); }));
    }
}

// Typing goes straight into the document; the view only rewrites a box that differs.
void EditorController::wireTextBoxes()
{
    if (auto* name = window_.findChild<QLineEdit*>(QStringLiteral("txtSkinName"))) {
        connect(name, &QLineEdit::textEdited, this,
                [this](const QString& text) { Guard([&] { editor_.Document().SetSkinName(text.toStdString()); }); });
    }
    if (auto* author = window_.findChild<QLineEdit*>(QStringLiteral("txtSkinAuthor"))) {
        connect(author, &QLineEdit::textEdited, this,
                [this](const QString& text) { Guard([&] { editor_.Document().SetSkinAuthor(text.toStdString()); }); });
    }
}

// The hooks stay with the window; they do nothing once this controller is gone.
void EditorController::wireHooks()
{
    const QPointer<EditorController> self(this);
    window_.setTimerTick([self](EditorTimer timer) {
        if (self == nullptr) return;
        Guard([&] {
            if (timer == EditorTimer::MoveObject) {
                self->editor_.MoveTimerTick();
            } else {
                self->editor_.SampleScreenColour();
            }
        });
    });
    window_.setLoadSkin([self] {
        if (self != nullptr) Guard([&] { LoadSkin(self->editor_, self->window_.platform()); });
    });
}

bool EditorController::eventFilter(QObject* watched, QEvent* event)
{
    const QEvent::Type type = event->type();
    if (!IsPress(type) && type != QEvent::MouseMove && type != QEvent::MouseButtonRelease) return false;
    bool taken = false;
    Guard([&] {
        for (SkinSide side : kSides) {
            if (watched == pictures_[SideIndex(side)]) {
                taken = pictureMouseEvent(side, event);
                return;
            }
        }
        auto* element = qobject_cast<QWidget*>(watched);
        taken = element != nullptr && elementMouseEvent(*element, event);
    });
    return taken;
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
