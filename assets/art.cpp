#include "art.h"

#include <QGuiApplication>

// Resources compiled into a static library are only linked in when something refers to them.
static void InitArtResources()
{
    static const bool done = [] {
        Q_INIT_RESOURCE(assets);
        return true;
    }();
    (void)done;
}

namespace skin {

namespace {

constexpr qreal kHighDensityRatio = 2.0;

// Qt only looks for "@2x" files itself inside QIcon, so the loaders pick the variant here.
bool HighDensityScreen()
{
    return qGuiApp != nullptr && qGuiApp->devicePixelRatio() > 1.0;
}

QPixmap LoadScaled(const QString& basePath)
{
    InitArtResources();
    if (HighDensityScreen()) {
        QPixmap sharp(basePath + QStringLiteral("@2x.png"));
        if (!sharp.isNull()) {
            sharp.setDevicePixelRatio(kHighDensityRatio);
            return sharp;
        }
    }
    return QPixmap(basePath + QStringLiteral(".png"));
}

bool ValidName(const QString& name)
{
    return !name.isEmpty() && !name.contains(QLatin1Char('/')) && !name.contains(QLatin1Char('@'));
}

}  // namespace

const std::vector<ColourChip>& QuickColourChips()
{
    static const std::vector<ColourChip> chips = [] {
        std::vector<ColourChip> all;
        for (int row = 0; row < kQuickChipRows; ++row) {
            for (int column = 0; column < kQuickChipColumns; ++column) {
                all.push_back(QuickColourChip(row, column));
            }
        }
        return all;
    }();
    return chips;
}

QStringList FaceKeys()
{
    QStringList keys;
    for (const FaceSpec& face : kFaceSpecs) {
        const QString word = QString::fromLatin1(face.word.data(), static_cast<qsizetype>(face.word.size()));
        keys << word + QStringLiteral("_ON") << word + QStringLiteral("_OFF");
    }
    return keys;
}

QPixmap Face(const QString& key)
{
    if (!ValidName(key)) {
        return {};
    }
    return LoadScaled(QStringLiteral(":/faces/") + key);
}

QPixmap Art(const QString& name)
{
    if (!ValidName(name)) {
        return {};
    }
    return LoadScaled(QStringLiteral(":/art/") + name);
}

QIcon WindowIcon()
{
    InitArtResources();
    QIcon icon;
    for (const char* name : {":/art/icon16.png", ":/art/icon32.png", ":/art/icon64.png"}) {
        icon.addFile(QString::fromLatin1(name));
    }
    return icon;
}

QCursor PickerCursor()
{
    // The hot spot is in logical pixels, whatever the pixmap's device-pixel ratio.
    return QCursor(Art(QStringLiteral("picker_pointer")), kPickerHotSpot.x(), kPickerHotSpot.y());
}

QCursor LinkCursor()
{
    return QCursor(Art(QStringLiteral("link_pointer")), kLinkHotSpot.x(), kLinkHotSpot.y());
}

}  // namespace skin
