#pragma once
// QtSurfaceView mirrors the editor surface and the document into the main window's widgets,
// pictures included; it is the one writer of every widget that shows the model.
// Twips / 15 = pixels. It creates the drawing boxes beyond box 0 on first use and never
// destroys them; boxes past the model's list are hidden. It never changes the model.

#include <QPointer>

#include <array>
#include <string>
#include <vector>

#include "editorsurface.h"
#include "mainlayout.h"
#include "picturestore.h"
#include "surfaceview.h"

class QLabel;
class QLineEdit;
class QObject;
class QWidget;

namespace skin {

class FaceButton;

// Dynamic properties carried by every drawing-box widget, so an event filter knows which
// box was pressed: the side (0 Send, 1 Receive, as SideIndex) and the index in its list.
inline constexpr const char* kBoxSideProperty = "boxSide";
inline constexpr const char* kBoxIndexProperty = "boxIndex";

class QtSurfaceView : public SurfaceView {
public:
    // `window` holds the elements of the inventory, `widgets` are their handles and `pictures`
    // the pictures the frames show; `elementFilter`, if given, is installed on every drawing
    // box and text-field label so that presses on them reach their owner.
    QtSurfaceView(QWidget& window, const MainWidgets& widgets, const PictureStore& pictures,
                  QObject* elementFilter = nullptr);

    void SurfaceChanged(const EditorSurface& surface, const SkinDocument& document) override;

    // The widget of a drawing box, or null while the box has not been created.
    QLabel* box(SkinSide side, int index) const;
    QLabel* label(TextField field) const;
    QLabel* frame(SkinSide side) const;

private:
    QLabel* ensureBoxWidget(SkinSide side, int index);
    void mirrorBoxes(const EditorSurface& surface);
    void mirrorLabels(const EditorSurface& surface, const SkinDocument& document);
    void mirrorStacking(const EditorSurface& surface);
    void mirrorTools(const EditorSurface& surface);
    void mirrorTexts(const EditorSurface& surface, const SkinDocument& document);
    void mirrorFrames(const EditorSurface& surface);

    QWidget& window_;
    MainWidgets widgets_;
    const PictureStore& pictures_;
    QPointer<QObject> elementFilter_;
    std::array<std::vector<QPointer<QLabel>>, 2> boxes_;
    std::vector<QWidget*> stacking_;  // boxes and labels, back to front, as last applied
    std::array<PictureId, 2> shownPictures_{};
};

}  // namespace skin
