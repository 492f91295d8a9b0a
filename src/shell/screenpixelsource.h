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

class QWidget;

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
    // `pointerWindow` is the window whose button press the picker is: in a Wayland session it
    // holds the pointer for the whole pick, and it is the only window whose place is known.
    explicit ScreenPixelSource(QWidget& pointerWindow) : pointerWindow_(pointerWindow) {}

    // The colour at a point in global coordinates, as Qt gives them; nullopt where neither the
    // screen nor one of the program's visible windows can be read there.
    std::optional<QColor> colourAt(QPoint global) const;

    // The two readers, on their own. Where the window system tells where windows lie and how
    // they stack (X11), the own-window reader reads the program's top window at the point. A
    // Wayland client learns neither, only where the pointer is on the window it pressed; so
    // there (`positionsKnown` false) it reads `pointerWindow` alone, even where another window
    // (the help window) covers it on the screen.
    static std::optional<QColor> screenColourAt(QPoint global);
    static std::optional<QColor> ownWindowColourAt(QPoint global, QWidget& pointerWindow, bool positionsKnown);
    // False in a Wayland session.
    static bool windowPositionsKnown();

    // Whether the screen itself can be read (probed once, on the primary screen).
    static bool screenReadable();
    // The desktop's pick, modal; nullopt when no portal answers, or it was cancelled or failed.
    std::optional<QColor> pickWithDesktop() { return portal_.pick(); }

private:
    QWidget& pointerWindow_;
    PortalColourPick portal_;
};

// The session's reach; asks the session bus for a portal only if the screen cannot be read.
PickerReach CurrentPickerReach();
// The picker button's tooltip for a reach: the fixed text, and where the reach is short, why.
QString PickerTooltip(PickerReach reach);
// The swatch's tooltip while its colour is not what lies under the pointer's last place.
QString UnreadSwatchTooltip();

}  // namespace skin
