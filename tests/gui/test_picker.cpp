// The screen colour picker where the screen cannot be read: the program's own windows read
// from their rendering, a release where nothing was read stores nothing and says so on the
// swatch, and the desktop portal's pick (a fake portal on a private session bus) answers for
// the rest of the screen.

#include <QDBusConnection>
#include <QDBusConnectionInterface>

#include "art.h"
#include "editorcontroller.h"
#include "fakeplatform.h"
#include "fakeportal.h"
#include "guitest.h"
#include "portalcolourpick.h"
#include "screenpixelsource.h"

namespace skin::testing {

class PickerTest : public QObject {
    Q_OBJECT

    QProcess busDaemon;
    std::unique_ptr<FakePortal> portal;
    const QString portalName = QStringLiteral("org.freedesktop.portal.Desktop");

    QDBusConnection portalBus() const { return QDBusConnection(QStringLiteral("fake-portal")); }

private slots:
    // A private session bus for the whole test, set before anything asks for the session bus.
    void initTestCase()
    {
        const QString daemon = QStandardPaths::findExecutable(QStringLiteral("dbus-daemon"));
        if (daemon.isEmpty()) QSKIP("dbus-daemon is not installed (scripts/setup.sh installs it)");
        busDaemon.start(daemon, {QStringLiteral("--session"), QStringLiteral("--nofork"), QStringLiteral("--print-address")});
        QVERIFY(busDaemon.waitForStarted());
        QTRY_VERIFY(busDaemon.canReadLine());
        const QByteArray address = busDaemon.readLine().trimmed();
        qputenv("DBUS_SESSION_BUS_ADDRESS", address);
        QVERIFY(QDBusConnection::connectToBus(QString::fromUtf8(address), QStringLiteral("fake-portal")).isConnected());
        portal = std::make_unique<FakePortal>(portalBus());
    }

    void cleanupTestCase()
    {
        portal.reset();
        QDBusConnection::disconnectFromBus(QStringLiteral("fake-portal"));
        busDaemon.kill();
        busDaemon.waitForFinished();
    }

    // The colour chips and a loaded picture read from the window's own rendering; beside the
    // program's windows nothing is read.
    void ownWindowsReadFromTheirRendering()
    {
        FrmSkinCreator window;
        EditorController controller(window);
        window.move(0, 40);  // whole on the offscreen screen of 800 x 600
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        const auto read = [&window](QPoint at, bool positionsKnown = true) {
            return ScreenPixelSource::ownWindowColourAt(window.mapToGlobal(at), window, positionsKnown);
        };
        for (const ColourChip& chip : QuickColourChips()) {
            const std::optional<QColor> colour = read(chip.rectInWindow.center());
            QVERIFY2(colour.has_value(), qPrintable(QStringLiteral("chip at %1,%2").arg(chip.rectInWindow.x()).arg(chip.rectInWindow.y())));
            QCOMPARE(colour->rgb(), chip.colour);
        }
        QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("teal.bmp"));
        QImage teal(40, 30, QImage::Format_RGB32);
        teal.fill(QColor(0x00, 0x80, 0x80));
        QVERIFY(teal.save(path));
        QVERIFY(controller.editor().SetSidePicture(SkinSide::Receive, path.toStdString(), "teal.bmp"));
        QCOMPARE(read(QPoint(500, 150)), QColor(0x00, 0x80, 0x80));
        QCOMPARE(read(QPoint(-3, 200)), std::nullopt);
        QCOMPARE(read(QPoint(792, 200)), std::nullopt);
        // Another of the program's windows above: where positions are known it is the one read;
        // where they are not (Wayland), the window that holds the pointer is.
        QWidget cover;
        cover.setAutoFillBackground(true);
        cover.setPalette(QPalette(QColor(0x40, 0x20, 0x10)));
        cover.setGeometry(QRect(window.mapToGlobal(QPoint(450, 100)), QSize(100, 100)));
        cover.show();
        QVERIFY(QTest::qWaitForWindowExposed(&cover));
        QCOMPARE(read(QPoint(500, 150)), QColor(0x40, 0x20, 0x10));
        QCOMPARE(read(QPoint(500, 150), false), QColor(0x00, 0x80, 0x80));
        QCOMPARE(read(QPoint(-3, 200), false), std::nullopt);
        window.hide();
        QCOMPARE(read(QPoint(500, 150), false), std::nullopt);
    }

    // Through the window's own wiring: samples that cannot be read leave swatch and label as
    // they were, and the swatch's tooltip says why until a colour is read again.
    void unreadSamplesChangeNothingAndTheSwatchSaysSo()
    {
        FakePlatform fake;
        FrmSkinCreator window;
        window.setPlatform(&fake);
        EditorController controller(window);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        Editor& editor = controller.editor();
        editor.BeginArea(SkinSide::Send, 300, 300);
        editor.ExtendArea(SkinSide::Send, 1500, 1200);
        fake.menuAnswers = {0};  // Send User List
        editor.EndArea(SkinSide::Send, 1500, 1200);
        auto* swatch = Child<QLabel>(&window, "picPreView");
        const QColor before = swatch->palette().color(QPalette::Window);
        QVERIFY(swatch->toolTip().isEmpty());

        fake.screenPixels = {std::nullopt};
        FaceButton* picker = Child<FaceButton>(&window, "imgPicker");
        QCOMPARE(picker->toolTip(), PickerTooltip(PickerReach::WholeScreen));  // offscreen grabs read something
        QCOMPARE(picker->toolTip(), QStringLiteral("Click and Hold to Set the Current Objects Color"));
        QTest::mousePress(picker, Qt::LeftButton);
        editor.SampleScreenColour();  // the window's timer is the fake's; one tick by hand
        QTest::mouseRelease(picker, Qt::LeftButton);
        QCOMPARE(swatch->palette().color(QPalette::Window), before);
        QCOMPARE(swatch->toolTip(), UnreadSwatchTooltip());
        QCOMPARE(editor.Document().Colour(TextField::SendUsers, ColourRole::Back), kLightGrey);
        QCOMPARE(std::count(fake.log.begin(), fake.log.end(), "desktop pick"), 1);

        fake.screenPixels = {0x00336699};
        QTest::mousePress(picker, Qt::LeftButton);
        editor.SampleScreenColour();
        QTest::mouseRelease(picker, Qt::LeftButton);
        QCOMPARE(swatch->palette().color(QPalette::Window), QColor(0x99, 0x66, 0x33));
        QVERIFY(swatch->toolTip().isEmpty());
        QCOMPARE(editor.Document().Colour(TextField::SendUsers, ColourRole::Back), 0x00336699);
    }

    // The portal's pick: its colour, a cancel, a colour out of range, a portal that leaves
    // without answering, and no portal at all.
    void desktopPortalPicks()
    {
        PortalColourPick pick;
        QVERIFY(!pick.available());
        QCOMPARE(pick.pick(), std::nullopt);
        QVERIFY(portal->serve());
        QVERIFY(pick.available());
        QCOMPARE(CurrentPickerReach(), PickerReach::WholeScreen);  // offscreen grabs read something

        portal->answer = FakePortal::Answer::Colour;
        QCOMPARE(pick.pick(), QColor(255, 51, 0));
        FrmSkinCreator window;  // the program's own platform reaches the same portal
        QCOMPARE(window.qtPlatform().PickColourWithDesktop(), std::optional<OleColour>(0x000033FF));
        portal->answer = FakePortal::Answer::Cancel;
        QCOMPARE(pick.pick(), std::nullopt);
        portal->answer = FakePortal::Answer::BadColour;
        QCOMPARE(pick.pick(), std::nullopt);
        portal->answer = FakePortal::Answer::Never;
        QTimer::singleShot(200, portal.get(), [this] { portalBus().unregisterService(portalName); });
        QElapsedTimer waited;
        waited.start();
        QCOMPARE(pick.pick(), std::nullopt);
        QVERIFY(waited.elapsed() < 5000);
        QCOMPARE(portal->calls, 5);
        QVERIFY(!pick.available());
    }
};

}  // namespace skin::testing

QTEST_MAIN(skin::testing::PickerTest)
#include "test_picker.moc"
