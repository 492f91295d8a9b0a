#pragma once
// Where the screen colour picker reads its colours, in this order: the screen itself where
// the session lets a program read it (X11); else the program's own window under the pointer,
// rendered afresh (the pictures, the colour chips: a Wayland session, or an X server whose
// screen cannot be grabbed); else nothing, for a colour is never made up. For the places
// nothing can read, the desktop's own colour pick (a portal) may answer instead.

#include <QColor>
#include <QPoint>
#include <QString>

#include <optional>

#include "portalcolourpick.h"

namespace skin {

// How far the picker reaches in this session; its tooltip says so.
enum class PickerReach {
    WholeScreen,           // every pixel on the screen can be read
    OwnWindowsAndDesktop,  // the program's windows; elsewhere the desktop's pick
    OwnWindowsOnly,        // the program's windows only
};

class ScreenPixelSource {
public:
    // The colour at a point in global coordinates, as Qt gives them; nullopt where neither the
    // screen nor one of the program's visible windows can be read there.
    std::optional<QColor> colourAt(QPoint global) const;

    // The two readers, on their own.
    static std::optional<QColor> screenColourAt(QPoint global);
    static std::optional<QColor> ownWindowColourAt(QPoint global);

    // Whether the screen itself can be read (probed once, on the primary screen).
    static bool screenReadable();
    // The desktop's pick, modal; nullopt when no portal answers, or it was cancelled or failed.
    std::optional<QColor> pickWithDesktop() { return portal_.pick(); }

private:
    PortalColourPick portal_;
};

// The session's reach; asks the session bus for a portal only if the screen cannot be read.
PickerReach CurrentPickerReach();
// The picker button's tooltip for a reach: the fixed text, and where the reach is short, why.
QString PickerTooltip(PickerReach reach);
// The swatch's tooltip while its colour is not what lies under the pointer's last place.
QString UnreadSwatchTooltip();

}  // namespace skin
