// The help window: one instance from the options list, its frame, place, texts and footer, the
// close button and the drag areas.

#include <QComboBox>
#include <QLabel>
#include <QPointer>
#include <QWindow>
#include <QtTest>

#include "facebutton.h"
#include "fakeplatform.h"
#include "frmhelp.h"
#include "frmskincreator.h"
#include "guitest.h"
#include "qtplatform.h"

using skin::FaceButton;
using skin::FrmHelp;
using skin::testing::Child;

class HelpWindowTest : public QObject {
    Q_OBJECT

    skin::testing::FakePlatform fake;
    std::unique_ptr<skin::FrmSkinCreator> window;

    FrmHelp* chooseHelp()
    {
        QComboBox* list = window->options();
        QTest::keyClick(list, Qt::Key_Shift);
        list->setCurrentIndex(1);
        emit list->activated(1);
        QCoreApplication::processEvents();
        return window->helpWindow();
    }
    static QString footerOf(FrmHelp* help) { return Child<QLabel>(help, "lblFooter")->text(); }

private slots:
    void init()
    {
        window = std::make_unique<skin::FrmSkinCreator>();
        window->setPlatform(&fake);
        window->move(200, 150);
        window->show();
        QVERIFY(QTest::qWaitForWindowExposed(window.get()));
    }
    void cleanup() { window.reset(); }

    void opensOnceClosesAndReopensRebuilt()
    {
        QPointer<FrmHelp> help = chooseHelp();
        QVERIFY(help != nullptr && help->isVisible());
        QCOMPARE(chooseHelp(), help.data());  // shown again: the same window, brought forward
        const QWidgetList all = QApplication::topLevelWidgets();
        QCOMPARE(std::count_if(all.begin(), all.end(), [](QWidget* w) { return qobject_cast<FrmHelp*>(w); }), 1);
        QCOMPARE(help->objectName(), QStringLiteral("frmHelp"));
        QCOMPARE(help->size(), QSize(680, 272));
        QCOMPARE(help->windowHandle()->transientParent(), window->windowHandle());
        QVERIFY(help->windowFlags().testFlag(Qt::FramelessWindowHint));
        QVERIFY(help->windowFlags().testFlag(Qt::WindowStaysOnTopHint));
        QCOMPARE(help->windowType(), Qt::Tool);
        QCOMPARE(help->windowTitle(), QStringLiteral("Help - Brindleway Skin Framewright"));
        const QPoint startPlace = window->pos() + QPoint((792 - 680) / 2, (409 - 272) / 2);  // centred over it
        QCOMPARE(help->pos(), startPlace);
        QVERIFY(footerOf(help).contains(QStringLiteral("Ostervale")));
        QVERIFY(footerOf(help).endsWith(QStringLiteral(" Version " SKIN_EXPECTED_VERSION)));

        window->qtPlatform().SetMainWindowInput(false);  // usable while the main window is busy
        QVERIFY(!window->isEnabled() && help->isEnabled());
        window->qtPlatform().SetMainWindowInput(true);

        help->move(startPlace + QPoint(50, 30));
        auto* close = Child<FaceButton>(help, "imgClose");
        QCOMPARE(close->toolTip(), QStringLiteral("Close Brindleway Skin Fwt"));
        QTest::mousePress(close, Qt::LeftButton, {}, QPoint(4, 4));
        QCOMPARE(close->face(), QStringLiteral("Close_OFF"));  // no face swap here
        QTest::mouseRelease(close, Qt::LeftButton, {}, QPoint(4, 4));
        QTRY_VERIFY(help.isNull());
        QVERIFY(window->helpWindow() == nullptr);

        help = chooseHelp();
        QVERIFY(help != nullptr && help->isVisible());
        QCOMPARE(help->pos(), startPlace);
        QVERIFY(footerOf(help).endsWith(QStringLiteral(" Version " SKIN_EXPECTED_VERSION)));
        window.reset();  // and goes with the main window
        QVERIFY(help.isNull());
    }

    void textsAndButtonCopies()
    {
        FrmHelp* help = chooseHelp();
        const struct { const char* text; QPoint at; } texts[] = {  // in window pixels
            {"Step 1", {5, 31}},
            {"Click the load button located under the Send Skin window and find your send skin picture file.", {74, 31}},
            {"Upon release of the mouse button a menu will appear  allowing you to specify which object you have "
             "created. ", {74, 143}},
            {"Repeat steps 3 & 4 for the receive skin.", {74, 180}},
            {"Step 6", {5, 210}},
            {"Step 7", {352 + 6, 31}},
            {"For each object repeat:", {352 + 54, 31}},
            {"*Some objects only require a font color.", {352 + 92, 180}},
            {"Step 8", {352 + 6, 211}},
            {"Enter the skin name and author then click the create skin package button.", {352 + 111, 209}},
        };
        for (const auto& [text, at] : texts) {
            const QList<QLabel*> labels = help->findChildren<QLabel*>();
            const auto found = std::find_if(labels.begin(), labels.end(),
                                            [text](QLabel* label) { return label->text() == QString::fromUtf8(text); });
            QVERIFY2(found != labels.end(), text);
            QCOMPARE((*found)->mapTo(help, QPoint(0, 0)), at);
            QCOMPARE((*found)->palette().color(QPalette::WindowText), QColor(0xE0, 0xE0, 0xE0));
            QCOMPARE((*found)->font().bold(), QByteArray(text).startsWith("Step "));
            QCOMPARE((*found)->font().pointSizeF(), 8.25);
        }

        const struct { const char* name; QPoint at; const char* face; const char* tip; } copies[] = {
            {"imgHelpLoad", {51, 34}, "Load_OFF", nullptr},
            {"imgHelpArrow0", {56, 212}, "Left_OFF", "Arrow Left - Move Current Object Left OR Decrease Object Width"},
            {"imgHelpArrow3", {69, 224}, "Down_OFF", nullptr},
            {"imgHelpLock", {86, 212}, "Lock_OFF", nullptr},
            {"imgHelpPicker", {352 + 57, 121}, "Eye_OFF", nullptr},
            {"imgHelpCreate", {352 + 58, 212}, "help_create", "Click to Create the Skin Package File"},
        };
        for (const auto& copy : copies) {
            auto* label = Child<QLabel>(help, copy.name);
            QVERIFY2(label != nullptr, copy.name);
            QCOMPARE(label->mapTo(help, QPoint(0, 0)), copy.at);
            QCOMPARE(label->property("face").toString(), QString::fromUtf8(copy.face));
            QVERIFY(!label->pixmap().isNull());
            if (copy.tip) QCOMPARE(label->toolTip(), QString::fromUtf8(copy.tip));
        }
    }

    // Each of the four strips drags the window with the left button only.
    void dragAreasMoveWithLeftButtonOnly()
    {
        FrmHelp* help = chooseHelp();
        for (int area = 0; area < 4; ++area) {
            auto* mover = help->findChild<QWidget*>(QStringLiteral("imgMove%1").arg(area));
            QVERIFY(mover != nullptr);
            const QPoint start = help->pos();
            const QPoint inside(30, 8);
            for (Qt::MouseButton button : {Qt::RightButton, Qt::LeftButton}) {
                QTest::mousePress(mover, button, Qt::AltModifier, inside);
                QTest::mouseMove(mover, inside + QPoint(-25, 15));
                QTest::mouseRelease(mover, button, {}, inside + QPoint(-25, 15));
            }
            QTRY_COMPARE(help->pos(), start + QPoint(-25, 15));  // the right drag moved nothing
        }
    }
};

QTEST_MAIN(HelpWindowTest)
#include "test_helpwindow.moc"
