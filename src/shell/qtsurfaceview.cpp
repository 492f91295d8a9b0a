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

QtSurfaceView::QtSurfaceView(QWidget& window, QObject* elementFilter) : window_(window), elementFilter_(elementFilter)
{
    for (SkinSide side : {SkinSide::Send, SkinSide::Receive}) {
        frames_[SideIndex(side)] = window_.findChild<QLabel*>(Q(PictureFrameName(side)));
        ensureBoxWidget(side, 0);  // box 0 is part of the window from the start
    }
    for (int f = 0; f < kTextFields; ++f) {
        QLabel* label = window_.findChild<QLabel*>(Q(LabelName(static_cast<TextField>(f))));
        labels_[f] = label;
        if (label == nullptr) continue;
        label->setAlignment(Qt::AlignLeft | Qt::AlignTop);  // a caption starts at the field's top-left
        if (elementFilter_ != nullptr) label->installEventFilter(elementFilter_);
    }
    for (int i = 0; i < kArrows; ++i) {
        arrows_[i] = window_.findChild<FaceButton*>(QStringLiteral("imgArrMove") + QString::number(i));
    }
    lock_ = window_.findChild<FaceButton*>(QStringLiteral("imgLock"));
    map_ = window_.findChild<FaceButton*>(QStringLiteral("imgMap"));
    text_ = window_.findChild<FaceButton*>(QStringLiteral("imgText"));
    picker_ = window_.findChild<FaceButton*>(QStringLiteral("imgPicker"));
    if (picker_ != nullptr) picker_->setToolTip(PickerTooltip(CurrentPickerReach()));
    swatch_ = window_.findChild<QLabel*>(QStringLiteral("picPreView"));
    currSel_ = window_.findChild<QLabel*>(QStringLiteral("lblCurrSel"));
    skinName_ = window_.findChild<QLineEdit*>(QStringLiteral("txtSkinName"));
    skinAuthor_ = window_.findChild<QLineEdit*>(QStringLiteral("txtSkinAuthor"));
}

QLabel* QtSurfaceView::box(SkinSide side, int index) const
{
    const auto& list = boxes_[SideIndex(side)];
    return index >= 0 && index < static_cast<int>(list.size()) ? list[index].data() : nullptr;
}

QLabel* QtSurfaceView::label(TextField field) const
{
    return labels_[FieldIndex(field)].data();
}

QLabel* QtSurfaceView::frame(SkinSide side) const
{
    return frames_[SideIndex(side)].data();
}

QLabel* QtSurfaceView::ensureBoxWidget(SkinSide side, int index)
{
    auto& list = boxes_[SideIndex(side)];
    while (static_cast<int>(list.size()) <= index) {
        const int next = static_cast<int>(list.size());
        const QString name = Q(BoxListName(side)) + QString::number(next);
        // Box 0 comes with the window; later ones are made like it, hidden until shown.
        QLabel* widget = window_.findChild<QLabel*>(name, Qt::FindDirectChildrenOnly);
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
    mirrorFrames(document);
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
        QLabel* widget = labels_[f];
        if (widget == nullptr) continue;
        const auto field = static_cast<TextField>(f);
        const LabelElement& label = surface.labels[f];
        widget->setGeometry(PixelRect(label.rect));
        widget->setText(Q(label.caption));
        const int frameStyle = label.border ? (QFrame::Box | QFrame::Plain) : QFrame::NoFrame;
        if (widget->frameStyle() != frameStyle) widget->setFrameStyle(frameStyle);
        // Transparent labels keep a back colour that is never drawn.
        if (widget->autoFillBackground() == label.transparent) widget->setAutoFillBackground(!label.transparent);
        SetRoleColour(*widget, QPalette::Window, ToQColor(document.Colour(field, ColourRole::Back)));
        SetRoleColour(*widget, QPalette::WindowText, ToQColor(document.Colour(field, ColourRole::Text)));
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
    for (int f = 0; f < kTextFields; ++f) {
        if (labels_[f] != nullptr) order.emplace_back(surface.labels[f].z, labels_[f].data());
    }
    std::stable_sort(order.begin(), order.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    std::vector<QWidget*> widgets;
    widgets.reserve(order.size());
    for (const auto& entry : order) widgets.push_back(entry.second);
    if (widgets == stacking_) return;
    for (QWidget* widget : widgets) widget->raise();
    for (const char* panel : {"picLoading", "picCreating"}) {
        if (auto* shown = window_.findChild<QWidget*>(QString::fromUtf8(panel))) shown->raise();
    }
    stacking_ = std::move(widgets);
}

void QtSurfaceView::mirrorTools(const EditorSurface& surface)
{
    for (int i = 0; i < kArrows; ++i) ShowFace(arrows_[i], surface.arrowFaces[i]);
    SetTagAndFace(lock_, surface.lockTag);
    SetTagAndFace(map_, surface.mapTag);
    SetTagAndFace(text_, surface.textTag);
    ShowFace(picker_, surface.pickerFace);
    if (swatch_ != nullptr) {
        SetRoleColour(*swatch_, QPalette::Window, ToQColor(surface.swatch));
        const QString note = surface.swatchUnread ? UnreadSwatchTooltip() : QString();
        if (swatch_->toolTip() != note) swatch_->setToolTip(note);
    }
}

// The text boxes are only written when they differ from the document, so the designer's
// typing (which reaches the document first) keeps its cursor and undo history.
void QtSurfaceView::mirrorTexts(const EditorSurface& surface, const SkinDocument& document)
{
    if (currSel_ != nullptr) currSel_->setText(Q(surface.currSelText));
    for (auto [box, text] : {std::pair{skinName_.data(), &document.SkinName()},
                             std::pair{skinAuthor_.data(), &document.SkinAuthor()}}) {
        if (box != nullptr && box->text() != Q(*text)) box->setText(Q(*text));
    }
}

// The platform's picture loader fills a frame; the view only empties it once the document
// no longer names a picture for the side (a new start of the editor).
void QtSurfaceView::mirrorFrames(const SkinDocument& document)
{
    for (SkinSide side : {SkinSide::Send, SkinSide::Receive}) {
        const std::string& name = document.PictureFileName(side);
        std::string& shown = shownPictureName_[SideIndex(side)];
        if (name.empty() && !shown.empty()) {
            if (QLabel* widget = frame(side)) widget->clear();
        }
        shown = name;
    }
}

}  // namespace skin
