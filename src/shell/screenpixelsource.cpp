#include "screenpixelsource.h"

#include <QApplication>
#include <QGuiApplication>
#include <QImage>
#include <QPixmap>
#include <QScreen>
#include <QWidget>

namespace skin {

std::optional<QColor> ScreenPixelSource::colourAt(QPoint global) const
{
    if (std::optional<QColor> colour = screenColourAt(global)) return colour;
    return ownWindowColourAt(global, pointerWindow_, windowPositionsKnown());
}

std::optional<QColor> ScreenPixelSource::screenColourAt(QPoint global)
{
    QScreen* screen = QGuiApplication::screenAt(global);
    if (screen == nullptr) return std::nullopt;
    const QPoint local = global - screen->geometry().topLeft();
    const QImage pixel = screen->grabWindow(0, local.x(), local.y(), 1, 1).toImage();
    if (pixel.isNull()) return std::nullopt;  // a Wayland session; some X servers
    return pixel.pixelColor(0, 0);
}

bool ScreenPixelSource::windowPositionsKnown()
{
    return !QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
}

// The window is rendered, not read from the screen, so what covers it (another program's
// window) cannot show through.
std::optional<QColor> ScreenPixelSource::ownWindowColourAt(QPoint global, QWidget& pointerWindow, bool positionsKnown)
{
    QWidget* window = positionsKnown ? QApplication::topLevelAt(global) : &pointerWindow;
    if (window == nullptr || !window->isVisible()) return std::nullopt;
    const QPoint local = window->mapFromGlobal(global);
    if (!window->rect().contains(local)) return std::nullopt;
    const QImage pixel = window->grab(QRect(local, QSize(1, 1))).toImage();
    if (pixel.isNull()) return std::nullopt;
    return pixel.pixelColor(0, 0);
}

bool ScreenPixelSource::screenReadable()
{
    static const bool readable = [] {
        QScreen* screen = QGuiApplication::primaryScreen();
        return screen != nullptr && !screen->grabWindow(0, 0, 0, 1, 1).isNull();
    }();
    return readable;
}

PickerReach CurrentPickerReach()
{
    if (ScreenPixelSource::screenReadable()) return PickerReach::WholeScreen;
    return PortalColourPick().available() ? PickerReach::OwnWindowsAndDesktop : PickerReach::OwnWindowsOnly;
}

QString PickerTooltip(PickerReach reach)
{
    const QString fixed = QStringLiteral("Click and Hold to Set the Current Objects Color");
    switch (reach) {
    case PickerReach::WholeScreen:
        return fixed;
    case PickerReach::OwnWindowsAndDesktop:
        return fixed + QStringLiteral(" (in this session it reads only this window; clicked, or released elsewhere, "
                                      "it opens the desktop's colour picker)");
    case PickerReach::OwnWindowsOnly:
        break;
    }
    return fixed + QStringLiteral(" (in this session it reads only this window: the pictures and the colour chips)");
}

QString UnreadSwatchTooltip()
{
    return QStringLiteral("The screen cannot be read there: the colour is unchanged");
}

}  // namespace skin
