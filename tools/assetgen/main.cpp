// assetgen: draws every picture of the program with QPainter and writes the PNG files and
// the resource list into the assets folder, and the desktop icon theme's pictures (PNG at
// each installed size, and SVG) under assets/icons; run by hand, its output is committed.
//
//   assetgen <assets folder>                      write all pictures and assets.qrc
//   assetgen --mockup <assets folder> <out.png>   compose the main window from the written
//                                                 pictures, with stand-ins for the widgets

#include "art.h"
#include "faces.h"
#include "icons.h"
#include "layout.h"
#include "theme.h"
#include "windowart.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QRegularExpression>
#include <QSaveFile>
#include <QSvgGenerator>
#include <QTextStream>

#include <cstdio>
#include <functional>

namespace {

using skin::kFaceSpecs;

constexpr int kScales[] = {1, 2};

QString ScaledName(const QString& base, int scale)
{
    return scale == 1 ? base + QStringLiteral(".png") : base + QStringLiteral("@%1x.png").arg(scale);
}

class Writer {
public:
    explicit Writer(QDir root) : root_(std::move(root)) {}

    // Writes one picture at every scale (or only at 1x) and remembers it for the resource list.
    bool Put(const QString& folder, const QString& name, const std::function<QImage(int)>& draw,
             bool scaled = true)
    {
        if (!root_.mkpath(folder)) {
            std::fprintf(stderr, "assetgen: cannot make %s\n", qPrintable(root_.filePath(folder)));
            return false;
        }
        for (int scale : kScales) {
            if (scale != 1 && !scaled) {
                continue;
            }
            const QString relative = folder + QLatin1Char('/') + ScaledName(name, scale);
            const QImage image = draw(scale);
            if (image.isNull() || !image.save(root_.filePath(relative), "PNG")) {
                std::fprintf(stderr, "assetgen: cannot write %s\n", qPrintable(root_.filePath(relative)));
                return false;
            }
            files_ << relative;
        }
        return true;
    }

    bool WriteResourceList() const
    {
        QSaveFile file(root_.filePath(QStringLiteral("assets.qrc")));
        if (!file.open(QIODevice::WriteOnly | QIODevice::Text)) {
            return false;
        }
        QTextStream out(&file);
        out << "<!DOCTYPE RCC>\n<!-- Written by tools/assetgen; regenerate instead of editing. -->\n"
            << "<RCC version=\"1.0\">\n  <qresource prefix=\"/\">\n";
        QStringList sorted = files_;
        sorted.sort();
        for (const QString& relative : sorted) {
            out << "    <file>" << relative << "</file>\n";
        }
        out << "  </qresource>\n</RCC>\n";
        out.flush();
        return file.commit();
    }

private:
    QDir root_;
    QStringList files_;
};

// The icon as the desktop installs it: hicolor/<N>x<N>/apps/<name>.png at each size and
// hicolor/scalable/apps/<name>.svg, drawn by the same painting code as the window icon.
// These are not compiled in.
bool WriteThemeIcons(const QDir& root)
{
    const QString name = QStringLiteral("skinframewright");
    for (int edge : {16, 32, 48, 64, 128, 256}) {
        const QString folder = QStringLiteral("icons/hicolor/%1x%1/apps").arg(edge);
        const QString file = root.filePath(folder + QLatin1Char('/') + name + QStringLiteral(".png"));
        if (!root.mkpath(folder) || !skin::DrawIcon(edge, 1).save(file, "PNG")) {
            std::fprintf(stderr, "assetgen: cannot write %s\n", qPrintable(file));
            return false;
        }
    }
    const QString folder = QStringLiteral("icons/hicolor/scalable/apps");
    const QString file = root.filePath(folder + QLatin1Char('/') + name + QStringLiteral(".svg"));
    if (!root.mkpath(folder)) {
        std::fprintf(stderr, "assetgen: cannot make %s\n", qPrintable(root.filePath(folder)));
        return false;
    }
    constexpr int kSvgEdge = 256;
    QBuffer buffer;
    QSvgGenerator svg;
    svg.setOutputDevice(&buffer);
    svg.setSize({kSvgEdge, kSvgEdge});
    svg.setViewBox(QRect(0, 0, kSvgEdge, kSvgEdge));
    svg.setTitle(QStringLiteral("Brindleway Skin Framewright"));
    QPainter p(&svg);
    p.setRenderHint(QPainter::Antialiasing);
    skin::PaintIcon(p, kSvgEdge);
    p.end();
    // The generator gives the page size in millimetres at its resolution; an icon's natural
    // size is its pixel edge.
    QString text = QString::fromUtf8(buffer.data());
    text.replace(QRegularExpression(QStringLiteral("width=\"[0-9.]+mm\" height=\"[0-9.]+mm\"")),
                 QStringLiteral("width=\"%1\" height=\"%1\"").arg(kSvgEdge));
    QSaveFile out(file);
    if (!out.open(QIODevice::WriteOnly) || out.write(text.toUtf8()) < 0 || !out.commit()) {
        std::fprintf(stderr, "assetgen: cannot write %s\n", qPrintable(file));
        return false;
    }
    return true;
}

int Generate(const QString& folder)
{
    Writer writer{QDir(folder)};
    bool ok = true;
    for (const skin::FaceSpec& face : kFaceSpecs) {
        for (bool on : {true, false}) {
            const QString key = QString::fromLatin1(face.word.data(), static_cast<qsizetype>(face.word.size())) +
                                (on ? QStringLiteral("_ON") : QStringLiteral("_OFF"));
            ok = ok && writer.Put(QStringLiteral("faces"), key,
                                  [&](int scale) { return skin::DrawFace(face.word, on, face.size, scale); });
        }
    }
    const QString art = QStringLiteral("art");
    ok = ok && writer.Put(art, QStringLiteral("main_background"), skin::DrawMainBackground);
    ok = ok && writer.Put(art, QStringLiteral("help_background"), skin::DrawHelpBackground);
    ok = ok && writer.Put(art, QStringLiteral("help_create"), skin::DrawHelpCreate);
    ok = ok && writer.Put(art, QStringLiteral("hatch"), [](int) { return skin::DrawHatch(); }, false);
    ok = ok && writer.Put(art, QStringLiteral("picker_pointer"), skin::DrawPickerPointer);
    ok = ok && writer.Put(art, QStringLiteral("link_pointer"), skin::DrawLinkPointer);
    for (int edge : {16, 32, 64}) {
        ok = ok && writer.Put(art, QStringLiteral("icon%1").arg(edge),
                              [edge](int scale) { return skin::DrawIcon(edge, scale); });
    }
    ok = ok && writer.WriteResourceList();
    ok = ok && WriteThemeIcons(QDir(folder));
    return ok ? 0 : 1;
}

// The main window as the designer would first see it, to judge the art as a whole.
int Mockup(const QString& folder, const QString& target)
{
    const QDir root(folder);
    const QImage background(root.filePath(QStringLiteral("art/main_background.png")));
    if (background.isNull()) {
        std::fprintf(stderr, "assetgen: no main background in %s\n", qPrintable(folder));
        return 1;
    }
    const int stripHeight = 40;
    QImage mock(background.width(), background.height() + stripHeight, QImage::Format_ARGB32);
    mock.fill(QColor(0x60, 0x60, 0x60));
    QPainter p(&mock);
    p.drawImage(0, 0, background);
    for (const skin::layout::PlacedFace& face : skin::layout::kPlacedFaces) {
        const QString key = QString::fromLatin1(face.key.data(), static_cast<qsizetype>(face.key.size()));
        p.drawImage(QPointF(face.left, face.top), QImage(root.filePath(QStringLiteral("faces/%1.png").arg(key))));
    }
    // Stand-ins for what widgets draw themselves.
    using namespace skin::layout;
    p.fillRect(kSkinName, Qt::white);
    p.fillRect(kSkinAuthor, Qt::white);
    p.fillRect(kSwatch, Qt::white);
    p.fillRect(kOptionsList, QColor(0xEE, 0xEE, 0xEE));
    p.setFont(skin::theme::Font(11));
    p.setPen(Qt::black);
    p.drawText(kOptionsList.adjusted(4, 0, 0, 0), Qt::AlignVCenter, QStringLiteral("- SELECT AN OPTION ------"));
    p.setPen(Qt::white);
    p.drawText(kOptionsLabel.adjusted(0, -2, 10, 2), Qt::AlignVCenter, QStringLiteral("Options:"));
    p.drawText(kCurrentSelection, Qt::AlignVCenter, QStringLiteral("Current Selection: Send All"));
    p.setPen(QColor(0xB8, 0xD6, 0xE8));
    p.drawText(kCopyright.adjusted(0, 0, 20, 0), Qt::AlignVCenter, QStringLiteral("(c) Ostervale, all rights"));
    // Below the window: every face, each pressed look under its normal one.
    int x = 4;
    for (const skin::FaceSpec& face : kFaceSpecs) {
        const QString word = QString::fromLatin1(face.word.data(), static_cast<qsizetype>(face.word.size()));
        p.drawImage(x, background.height() + 2, QImage(root.filePath(QStringLiteral("faces/%1_OFF.png").arg(word))));
        p.drawImage(x + face.size.width() + 2, background.height() + 2,
                    QImage(root.filePath(QStringLiteral("faces/%1_ON.png").arg(word))));
        x += 2 * face.size.width() + 10;
    }
    p.drawImage(x, background.height() + 2, QImage(root.filePath(QStringLiteral("art/help_create.png"))));
    p.drawImage(x + 46, background.height() + 2, QImage(root.filePath(QStringLiteral("art/picker_pointer.png"))));
    p.drawImage(x + 82, background.height() + 2, QImage(root.filePath(QStringLiteral("art/link_pointer.png"))));
    p.end();
    return mock.save(target, "PNG") ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv)
{
    // Drawing text needs a GUI application, but no screen.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QGuiApplication app(argc, argv);
    const QStringList args = app.arguments();
    if (args.size() == 2 && !args[1].startsWith(QLatin1Char('-'))) {
        return Generate(args[1]);
    }
    if (args.size() == 4 && args[1] == QLatin1String("--mockup")) {
        return Mockup(args[2], args[3]);
    }
    std::fprintf(stderr, "usage: assetgen <assets folder>\n       assetgen --mockup <assets folder> <out.png>\n");
    return 2;
}
