// Checks the compiled-in pictures through the program's own loaders: every face and picture
// exists at its size (and at double size for high-DPI screens), the hatch lines are where the
// drawing boxes expect them, the colour chips hold their listed colours, and the areas behind
// the window's texts are dark enough for those texts. Run once at device-pixel ratio 1 and
// once with QT_SCALE_FACTOR=2.

#include "art.h"

#include <QDir>
#include <QDirIterator>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QSet>
#include <QSvgRenderer>
#include <QtTest>

#include <cmath>

namespace {

constexpr double kLegibleContrast = 4.5;  // the usual minimum for small text

double Luminance(QRgb colour)
{
    auto channel = [](int value) {
        const double c = value / 255.0;
        return c <= 0.03928 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * channel(qRed(colour)) + 0.7152 * channel(qGreen(colour)) + 0.0722 * channel(qBlue(colour));
}

double Contrast(QRgb a, QRgb b)
{
    const double la = Luminance(a);
    const double lb = Luminance(b);
    return (std::max(la, lb) + 0.05) / (std::min(la, lb) + 0.05);
}

// The worst contrast of a text colour against every pixel of a logical area of a picture.
double WorstContrast(const QPixmap& picture, const QRect& logical, QRgb text)
{
    const qreal ratio = picture.devicePixelRatio();
    const QImage image = picture.toImage();
    const QRect pixels(QPoint(qRound(logical.left() * ratio), qRound(logical.top() * ratio)),
                       QSize(qRound(logical.width() * ratio), qRound(logical.height() * ratio)));
    double worst = 1e9;
    for (int y = pixels.top(); y <= pixels.bottom(); ++y) {
        for (int x = pixels.left(); x <= pixels.right(); ++x) {
            worst = std::min(worst, Contrast(image.pixel(x, y), text));
        }
    }
    return worst;
}

QSize LogicalSize(const QPixmap& pixmap)
{
    return (QSizeF(pixmap.size()) / pixmap.devicePixelRatio()).toSize();
}

qreal ExpectedRatio()
{
    return qGuiApp->devicePixelRatio() > 1.0 ? 2.0 : 1.0;
}

}  // namespace

class AssetCheck : public QObject {
    Q_OBJECT

private slots:
    void runsAtTheRequestedDevicePixelRatio()
    {
        // Without this the high-DPI run could silently test the 1x pictures twice.
        const double requested = qEnvironmentVariable("QT_SCALE_FACTOR", QStringLiteral("1")).toDouble();
        QCOMPARE(qGuiApp->devicePixelRatio(), requested);
    }

    void faceKeysAreTheTwentyEightPairs()
    {
        const QStringList keys = skin::FaceKeys();
        QCOMPARE(keys.size(), skin::kFaceCount);
        QCOMPARE(keys.size(), 28);
        QCOMPARE(QSet<QString>(keys.begin(), keys.end()).size(), 28);
        for (const QString& key : keys) {
            QVERIFY2(key.endsWith(QLatin1String("_ON")) || key.endsWith(QLatin1String("_OFF")), qPrintable(key));
            QString partner = key;
            partner.replace(QLatin1String("_OFF"), QLatin1String("_ON"));
            if (partner == key) {
                partner.replace(QLatin1String("_ON"), QLatin1String("_OFF"));
            }
            QVERIFY2(keys.contains(partner), qPrintable(key));
        }
    }

    void facesHaveTheirSizesAndDifferWhenPressed_data()
    {
        QTest::addColumn<QString>("word");
        QTest::addColumn<QSize>("size");
        for (const skin::FaceSpec& face : skin::kFaceSpecs) {
            const QString word = QString::fromLatin1(face.word.data(), static_cast<qsizetype>(face.word.size()));
            QTest::newRow(qPrintable(word)) << word << face.size;
        }
    }

    void facesHaveTheirSizesAndDifferWhenPressed()
    {
        QFETCH(QString, word);
        QFETCH(QSize, size);
        const QPixmap on = skin::Face(word + QStringLiteral("_ON"));
        const QPixmap off = skin::Face(word + QStringLiteral("_OFF"));
        QVERIFY(!on.isNull());
        QVERIFY(!off.isNull());
        QCOMPARE(on.devicePixelRatio(), ExpectedRatio());
        QCOMPARE(LogicalSize(on), size);
        QCOMPARE(LogicalSize(off), size);
        QVERIFY(on.toImage() != off.toImage());
    }

    void everyResourceIsKnownAndItsDoubleIsTwiceAsLarge()
    {
        QSet<QString> faceNames;
        for (const QString& key : skin::FaceKeys()) {
            faceNames << QStringLiteral(":/faces/%1.png").arg(key);
        }
        const QMap<QString, QSize> artSizes{
            {QStringLiteral("main_background"), skin::kMainBackgroundSize},
            {QStringLiteral("help_background"), skin::kHelpBackgroundSize},
            {QStringLiteral("help_create"), skin::kHelpCreateSize},
            {QStringLiteral("hatch"), skin::kHatchSize},
            {QStringLiteral("picker_pointer"), skin::kPointerSize},
            {QStringLiteral("link_pointer"), skin::kPointerSize},
            {QStringLiteral("icon16"), QSize(16, 16)},
            {QStringLiteral("icon32"), QSize(32, 32)},
            {QStringLiteral("icon64"), QSize(64, 64)},
        };
        int seen = 0;
        for (const QString& folder : {QStringLiteral(":/faces"), QStringLiteral(":/art")}) {
            QDirIterator it(folder);
            while (it.hasNext()) {
                const QString path = it.next();
                ++seen;
                const bool doubled = path.endsWith(QLatin1String("@2x.png"));
                const QString single = doubled ? path.chopped(7) + QStringLiteral(".png") : path;
                QVERIFY2(QFile::exists(single), qPrintable(path));
                const QImage image(path);
                QVERIFY2(!image.isNull(), qPrintable(path));
                if (doubled) {
                    QCOMPARE(image.size(), QImage(single).size() * 2);
                }
                const QString name = QFileInfo(single).completeBaseName();
                QVERIFY2(faceNames.contains(single) || artSizes.contains(name), qPrintable(path));
            }
        }
        // 28 faces and 8 art pictures at two scales, the hatch at one.
        QCOMPARE(seen, 2 * 28 + 2 * 8 + 1);
        for (auto it = artSizes.cbegin(); it != artSizes.cend(); ++it) {
            const QPixmap picture = skin::Art(it.key());
            QVERIFY2(!picture.isNull(), qPrintable(it.key()));
            QCOMPARE(LogicalSize(picture), it.value());
            const bool onlySingle = it.key() == QLatin1String("hatch");
            QCOMPARE(picture.devicePixelRatio(), onlySingle ? 1.0 : ExpectedRatio());
        }
    }

    void unknownOrForeignNamesGiveNothing()
    {
        QVERIFY(skin::Face(QStringLiteral("Nope_ON")).isNull());
        QVERIFY(skin::Face(QString()).isNull());
        QVERIFY(skin::Face(QStringLiteral("../art/hatch")).isNull());
        QVERIFY(skin::Art(QStringLiteral("main_background@2x")).isNull());
        QVERIFY(skin::Art(QStringLiteral("Down_ON")).isNull());
    }

    void hatchLinesRiseToTheRightEveryEightPixels()
    {
        const QImage hatch = skin::Art(QStringLiteral("hatch")).toImage().convertToFormat(QImage::Format_ARGB32);
        QCOMPARE(hatch.size(), skin::kHatchSize);
        for (int y = 0; y < hatch.height(); ++y) {
            for (int x = 0; x < hatch.width(); ++x) {
                const QRgb pixel = hatch.pixel(x, y);
                if ((x + y) % 8 == 0) {
                    QCOMPARE(pixel, QRgb(0xFFC0C0C0));
                } else if (qAlpha(pixel) != 0) {
                    QFAIL(qPrintable(QStringLiteral("opaque hatch ground at %1,%2").arg(x).arg(y)));
                }
            }
        }
    }

    void quickChipsHoldTheirColoursUnderImage1()
    {
        const QPixmap background = skin::Art(QStringLiteral("main_background"));
        const QImage image = background.toImage();
        const qreal ratio = background.devicePixelRatio();
        const auto& chips = skin::QuickColourChips();
        QCOMPARE(static_cast<int>(chips.size()), skin::kQuickChipColumns * skin::kQuickChipRows);
        QSet<QRgb> colours;
        for (const skin::ColourChip& chip : chips) {
            QVERIFY(skin::kQuickChipArea.contains(chip.rectInWindow));
            QVERIFY(chip.rectInWindow.width() >= 8 && chip.rectInWindow.height() >= 8);
            colours << chip.colour;
            const QRect pixels(chip.rectInWindow.topLeft() * ratio, chip.rectInWindow.size() * ratio);
            for (int y = pixels.top(); y <= pixels.bottom(); ++y) {
                for (int x = pixels.left(); x <= pixels.right(); ++x) {
                    QCOMPARE(image.pixel(x, y), chip.colour);
                }
            }
        }
        QCOMPARE(colours.size(), static_cast<int>(chips.size()));
        for (QRgb wanted : {0xFFFF0000u, 0xFF00FF00u, 0xFF0000FFu, 0xFFFFFF00u, 0xFF000000u, 0xFFFFFFFFu}) {
            QVERIFY2(colours.contains(wanted), qPrintable(QString::number(wanted, 16)));
        }
    }

    void textsOnThePicturesStayLegible()
    {
        const QPixmap main = skin::Art(QStringLiteral("main_background"));
        // lblCurrSel: white text; lblCopyRight: colour 0x00E8D6B8 in the BGR order of OLE colours.
        QVERIFY(WorstContrast(main, QRect(405, 337, 367, 13), 0xFFFFFFFF) >= kLegibleContrast);
        QVERIFY(WorstContrast(main, QRect(636, 393, 135, 14), 0xFFB8D6E8) >= kLegibleContrast);
        const QPixmap help = skin::Art(QStringLiteral("help_background"));
        // Every pixel but the accent rule along the top edge may carry a step's text.
        const QRect textArea = QRect(QPoint(0, 0), skin::kHelpBackgroundSize).adjusted(0, 2, 0, 0);
        QVERIFY(WorstContrast(help, textArea, 0xFFE0E0E0) >= kLegibleContrast);
    }

    void pointersPointWithTheirHotSpots()
    {
        struct Case {
            QCursor cursor;
            QPoint hotSpot;
        };
        for (const Case& c : {Case{skin::PickerCursor(), skin::kPickerHotSpot}, Case{skin::LinkCursor(), skin::kLinkHotSpot}}) {
            QCOMPARE(c.cursor.hotSpot(), c.hotSpot);
            const QPixmap picture = c.cursor.pixmap();
            QCOMPARE(LogicalSize(picture), skin::kPointerSize);
            // The drawn tip covers the hot spot.
            const QImage image = picture.toImage();
            const qreal ratio = picture.devicePixelRatio();
            QVERIFY(qAlpha(image.pixel(qRound((c.hotSpot.x() + 0.5) * ratio), qRound((c.hotSpot.y() + 0.5) * ratio))) > 0);
        }
        QCOMPARE(skin::kPickerHotSpot, QPoint(3, 28));
    }

    void windowIconOffersThreeSizes()
    {
        const QIcon icon = skin::WindowIcon();
        QVERIFY(!icon.isNull());
        const QList<QSize> sizes = icon.availableSizes();
        for (int edge : {16, 32, 64}) {
            QVERIFY2(sizes.contains(QSize(edge, edge)), qPrintable(QString::number(edge)));
        }
    }

    // The desktop's copies of the icon (installed, not compiled in): every theme size exists
    // at its size, the small one is the window icon itself, and the SVG draws the same icon.
    void desktopIconsMatchTheWindowIcon()
    {
        const QDir theme(QStringLiteral(SKIN_ASSETS_DIR "/icons/hicolor"));
        QImage largest;
        for (int edge : {16, 32, 48, 64, 128, 256}) {
            const QImage png(theme.filePath(QStringLiteral("%1x%1/apps/skinframewright.png").arg(edge)));
            QCOMPARE(png.size(), QSize(edge, edge));
            if (edge == 16) {
                QCOMPARE(png.convertToFormat(QImage::Format_ARGB32),
                         skin::WindowIcon().pixmap(QSize(16, 16), 1.0).toImage().convertToFormat(QImage::Format_ARGB32));
            }
            largest = png.convertToFormat(QImage::Format_ARGB32);
        }
        QSvgRenderer svg(theme.filePath(QStringLiteral("scalable/apps/skinframewright.svg")));
        QVERIFY(svg.isValid());
        QCOMPARE(svg.defaultSize(), largest.size());
        QImage drawn(largest.size(), QImage::Format_ARGB32);
        drawn.fill(Qt::transparent);
        QPainter p(&drawn);
        svg.render(&p);
        p.end();
        // Edges may antialias a little differently; the shapes and colours must agree.
        qint64 difference = 0;
        for (int y = 0; y < drawn.height(); ++y) {
            for (int x = 0; x < drawn.width(); ++x) {
                const QRgb a = drawn.pixel(x, y);
                const QRgb b = largest.pixel(x, y);
                difference += std::abs(qRed(a) - qRed(b)) + std::abs(qGreen(a) - qGreen(b)) +
                              std::abs(qBlue(a) - qBlue(b)) + std::abs(qAlpha(a) - qAlpha(b));
            }
        }
        const double meanPerChannel = double(difference) / (4.0 * drawn.width() * drawn.height());
        QVERIFY2(meanPerChannel < 2.0, qPrintable(QString::number(meanPerChannel)));
    }
};

QTEST_MAIN(AssetCheck)
#include "assetcheck.moc"
