#pragma once
// What the shell implements to mirror the editor surface into widgets.

#include "editorsurface.h"
#include "skindocument.h"

namespace skin {

class SurfaceView {
public:
    virtual ~SurfaceView() = default;
    // Called after each editor operation, before every modal or visible Platform call (name
    // menu, message box, dialogs, picture loading), and after each label/box swap of the
    // picker. The view refreshes every widget from the two models: geometry (twips / 15),
    // visibility, stacking by `z`, label captions, borders and document colours, faces, the
    // swatch, lblCurrSel, and clears a frame whose document picture file name is empty.
    virtual void SurfaceChanged(const EditorSurface& surface, const SkinDocument& document) = 0;
};

}  // namespace skin
