#include "qtsurfaceview.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPalette>
#include <QPixmap>
#include <QWidget>

#include <algorithm>
#include <cmath>
#include <utility>

#include "art.h"
#include "facebutton.h"
#include "qtcolour.h"
#include "screenpixelsource.h"

namespace skin {

namespace {

QString Q(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

// Element rectangles are single-precision twips; a widget sits on whole pixels.
int PixelsOf(float twips)
{
    return static_cast<int>(std::lround(static_cast<double>(twips) / kTwipsPerPixel));
}

QRect PixelRect(const RectF& rect)
{
    return {PixelsOf(rect.Left), PixelsOf(rect.Top), std::max(0, PixelsOf(rect.Width)),
            std::max(0, PixelsOf(rect.Height))};
}

void SetRoleColour(QWidget& widget, QPalette::ColorRole role, const QColor& colour)
{
    if (widget.palette().color(role) == colour) return;
    QPalette palette = widget.palette();
    palette.setColor(role, colour);
    widget.setPalette(palette);
}

void ShowFace(FaceButton* button, const std::string& key)
{
    if (button != nullptr && button->face() != Q(key)) button->showFace(Q(key));
}

void SetTagAndFace(FaceButton* button, const std::string& tag)
{
    if (button == nullptr) return;
    button->setTag(Q(tag));
    ShowFace(button, tag);
}

// The hatch is never scaled: the box shows its top-left part, cut at the box's inner edges.
void FitHatch(QLabel& box)
{
    const QSize inner = box.contentsRect().size().expandedTo(QSize(0, 0));
    if (box.pixmap().size() == inner) return;
    if (inner.isEmpty()) {
        box.setPixmap(QPixmap());
        return;
    }
    static const QPixmap hatch = Art(QStringLiteral("hatch"));
    box.setPixmap(hatch.copy(QRect(QPoint(0, 0), inner)));
}

}  // namespace

QtSurfaceView::QtSurfaceView(QWidget& window, const MainWidgets& widgets, const PictureStore& pictures,
                             QObject* elementFilter)
    : window_(window), widgets_(widgets), pictures_(pictures), elementFilter_(elementFilter)
{
    for (SkinSide side : {SkinSide::Send, SkinSide::Receive}) {
        ensureBoxWidget(side, 0);  // box 0 is part of the window from the start
    }
    for (QLabel* label : widgets_.fieldLabels) {
        label->setAlignment(Qt::AlignLeft | Qt::AlignTop);  // a caption starts at the field's top-left
        if (elementFilter_ != nullptr) label->installEventFilter(elementFilter_);
    }
    widgets_.imgPicker->setToolTip(PickerTooltip(CurrentPickerReach()));
}

QLabel* QtSurfaceView::box(SkinSide side, int index) const
{
    const auto& list = boxes_[SideIndex(side)];
    return index >= 0 && index < static_cast<int>(list.size()) ? list[index].data() : nullptr;
}

QLabel* QtSurfaceView::label(TextField field) const
{
    return widgets_.fieldLabels[FieldIndex(field)];
}

QLabel* QtSurfaceView::frame(SkinSide side) const
{
    return widgets_.pictureFrames[SideIndex(side)];
}

QLabel* QtSurfaceView::ensureBoxWidget(SkinSide side, int index)
{
    auto& list = boxes_[SideIndex(side)];
    while (static_cast<int>(list.size()) <= index) {
        const int next = static_cast<int>(list.size());
        const QString name = Q(BoxListName(side)) + QString::number(next);
        // Box 0 comes with the window; later ones are made like it, hidden until shown.
        QLabel* widget = next == 0 ? widgets_.firstBoxes[SideIndex(side)] : nullptr;
        if (widget == nullptr) {
            widget = new QLabel(&window_);
            widget->setObjectName(name);
            widget->setFrameStyle(QFrame::Box | QFrame::Plain);
            widget->setLineWidth(1);
            widget->setAlignment(Qt::AlignLeft | Qt::AlignTop);
            widget->hide();
        }
        widget->setProperty(kBoxSideProperty, SideIndex(side));
        widget->setProperty(kBoxIndexProperty, next);
        if (elementFilter_ != nullptr) widget->installEventFilter(elementFilter_);
        list.emplace_back(widget);
    }
    return list[index];
}

void QtSurfaceView::SurfaceChanged(const EditorSurface& surface, const SkinDocument& document)
{
    mirrorBoxes(surface);
    mirrorLabels(surface, document);
    mirrorStacking(surface);
    mirrorTools(surface);
    mirrorTexts(surface, document);
    mirrorFrames(surface);
}

void QtSurfaceView::mirrorBoxes(const EditorSurface& surface)
{
    for (SkinSide side : {SkinSide::Send, SkinSide::Receive}) {
        const auto& model = surface.Boxes(side);
        if (!model.empty()) ensureBoxWidget(side, static_cast<int>(model.size()) - 1);
        const auto& widgets = boxes_[SideIndex(side)];
        for (std::size_t i = 0; i < widgets.size(); ++i) {
            QLabel* widget = widgets[i];
            if (widget == nullptr) continue;
            if (i >= model.size()) {  // the list was started afresh: elements past it stay hidden
                widget->hide();
                continue;
            }
            const BoxElement& box = model[i];
            widget->setGeometry(PixelRect(box.rect));
            FitHatch(*widget);
            widget->setVisible(box.visible);
        }
    }
}

void QtSurfaceView::mirrorLabels(const EditorSurface& surface, const SkinDocument& document)
{
    for (int f = 0; f < kTextFields; ++f) {
        QLabel* widget = widgets_.fieldLabels[f];
        const auto field = static_cast<TextField>(f);
        const LabelElement& label = surface.labels[f];
        widget->setGeometry(PixelRect(label.rect));
        widget->setText(Q(label.caption));
        const int frameStyle = label.border ? (QFrame::Box | QFrame::Plain) : QFrame::NoFrame;
        if (widget->frameStyle() != frameStyle) widget->setFrameStyle(frameStyle);
        // Transparent labels keep a back colour that is never drawn. Over a side that has no
        // picture yet they would lie on the dark empty-frame art, where dark text cannot be
        // read: there they show on a plate of white or black, whichever sets their text off
        // more. The stored colours stay as they are.
        const QColor ink = ToQColor(document.Colour(field, ColourRole::Text));
        const bool onEmptyFrame = surface.framePictures[SideIndex(SideOf(field))] == kNoPicture;
        const bool filled = !label.transparent || onEmptyFrame;
        if (widget->autoFillBackground() != filled) widget->setAutoFillBackground(filled);
        SetRoleColour(*widget, QPalette::Window,
                      label.transparent && onEmptyFrame ? PlateFor(ink)
                                                        : ToQColor(document.Colour(field, ColourRole::Back)));
        SetRoleColour(*widget, QPalette::WindowText, ink);
        widget->setVisible(label.visible);
    }
}

// Raising in ascending z leaves the highest z in front; the busy panels stay above all.
void QtSurfaceView::mirrorStacking(const EditorSurface& surface)
{
    std::vector<std::pair<int, QWidget*>> order;
    for (SkinSide side : {SkinSide::Send, SkinSide::Receive}) {
        const auto& model = surface.Boxes(side);
        for (std::size_t i = 0; i < model.size(); ++i) {
            if (QLabel* widget = box(side, static_cast<int>(i))) order.emplace_back(model[i].z, widget);
        }
    }
    for (int f = 0; f < kTextFields; ++f) order.emplace_back(surface.labels[f].z, widgets_.fieldLabels[f]);
    std::stable_sort(order.begin(), order.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    std::vector<QWidget*> widgets;
    widgets.reserve(order.size());
    for (const auto& entry : order) widgets.push_back(entry.second);
    if (widgets == stacking_) return;
    for (QWidget* widget : widgets) widget->raise();
    widgets_.picLoading->raise();
    widgets_.picCreating->raise();
    stacking_ = std::move(widgets);
}

void QtSurfaceView::mirrorTools(const EditorSurface& surface)
{
    for (int i = 0; i < kArrows; ++i) ShowFace(widgets_.imgArrMove[i], surface.arrowFaces[i]);
    SetTagAndFace(widgets_.imgLock, surface.lockTag);
    SetTagAndFace(widgets_.imgMap, surface.mapTag);
    SetTagAndFace(widgets_.imgText, surface.textTag);
    ShowFace(widgets_.imgPicker, surface.pickerFace);
    QLabel& swatch = *widgets_.picPreView;
    SetRoleColour(swatch, QPalette::Window, ToQColor(surface.swatch));
    const QString note = surface.swatchUnread ? UnreadSwatchTooltip() : QString();
    if (swatch.toolTip() != note) swatch.setToolTip(note);
}

// The text boxes are only written when they differ from the document, so the designer's
// typing (which reaches the document first) keeps its cursor and undo history.
void QtSurfaceView::mirrorTexts(const EditorSurface& surface, const SkinDocument& document)
{
    widgets_.lblCurrSel->setText(Q(surface.currSelText));
    for (auto [box, text] : {std::pair{widgets_.txtSkinName, &document.SkinName()},
                             std::pair{widgets_.txtSkinAuthor, &document.SkinAuthor()}}) {
        if (box->text() != Q(*text)) box->setText(Q(*text));
    }
}

// A frame shows the picture the surface names for it, or nothing.
void QtSurfaceView::mirrorFrames(const EditorSurface& surface)
{
    for (SkinSide side : {SkinSide::Send, SkinSide::Receive}) {
        const PictureId picture = surface.framePictures[SideIndex(side)];
        PictureId& shown = shownPictures_[SideIndex(side)];
        if (picture == shown) continue;
        const QPixmap pixmap = pictures_.get(picture);
        if (pixmap.isNull()) {
            frame(side)->clear();
        } else {
            frame(side)->setPixmap(pixmap);
        }
        shown = picture;
    }
}

}  // namespace skin
