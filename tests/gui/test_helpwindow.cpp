// The help window: one instance from the options list, its frame, place, texts and footer,
// the close button and the drag areas.

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
using skin::FrmSkinCreator;
using skin::testing::Child;

class HelpWindowTest : public QObject {
    Q_OBJECT

private slots:
    void init()
    {
        window = std::make_unique<FrmSkinCreator>();
        window->setPlatform(&fake);
        window->move(200, 150);
        window->show();
        QVERIFY(QTest::qWaitForWindowExposed(window.get()));
    }
    void cleanup() { window.reset(); }

    void opensOnceClosesAndReopensRebuilt()
    {
        chooseHelp();
        QPointer<FrmHelp> help = window->helpWindow();
        QVERIFY(help != nullptr && help->isVisible());
        chooseHelp();  // shown again: the same window, brought forward
        QCOMPARE(helpWindows(), 1);
        QCOMPARE(window->helpWindow(), help.data());
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
        QVERIFY(footerOf(help).endsWith(QStringLiteral(" Version ") + QStringLiteral(SKIN_EXPECTED_VERSION)));

        // Usable while the main window is busy.
        window->qtPlatform().SetMainWindowInput(false);
        QVERIFY(!window->isEnabled() && help->isEnabled());
        window->qtPlatform().SetMainWindowInput(true);

        help->move(startPlace + QPoint(50, 30));
        auto* close = Child<FaceButton>(help, "imgClose");
        QCOMPARE(close->toolTip(), QStringLiteral("Close Brindleway Skin Fwt"));
        QTest::mousePress(close, Qt::LeftButton, {}, QPoint(4, 4));
        QCOMPARE(close->face(), QStringLiteral("Close_OFF"));  // no member of the face family
        QTest::mouseRelease(close, Qt::LeftButton, {}, QPoint(4, 4));
        QTRY_VERIFY(help.isNull());
        QVERIFY(window->helpWindow() == nullptr);

        chooseHelp();
        help = window->helpWindow();
        QVERIFY(help != nullptr && help->isVisible());
        QCOMPARE(help->pos(), startPlace);
        QVERIFY(footerOf(help).endsWith(QStringLiteral(" Version ") + QStringLiteral(SKIN_EXPECTED_VERSION)));
        window.reset();  // and goes with the main window
        QVERIFY(help.isNull());
    }

    void stepTexts_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QPoint>("at");  // in window pixels
        QTest::newRow("step 1") << "Step 1" << QPoint(5, 31);
        QTest::newRow("text 1") << "Click the load button located under the Send Skin window and find your send skin "
                                   "picture file."
                                << QPoint(74, 31);
        QTest::newRow("text 4") << "Upon release of the mouse button a menu will appear  allowing you to specify which "
                                   "object you have created. "
                                << QPoint(74, 143);
        QTest::newRow("text 5") << "Repeat steps 3 & 4 for the receive skin." << QPoint(74, 180);
        QTest::newRow("step 6") << "Step 6" << QPoint(5, 210);
        QTest::newRow("step 7") << "Step 7" << QPoint(352 + 6, 31);
        QTest::newRow("text 7") << "For each object repeat:" << QPoint(352 + 54, 31);
        QTest::newRow("note 7") << "*Some objects only require a font color." << QPoint(352 + 92, 180);
        QTest::newRow("step 8") << "Step 8" << QPoint(352 + 6, 211);
        QTest::newRow("text 8") << "Enter the skin name and author then click the create skin package button."
                                << QPoint(352 + 111, 209);
    }
    void stepTexts()
    {
        QFETCH(QString, text);
        QFETCH(QPoint, at);
        chooseHelp();
        FrmHelp* help = window->helpWindow();
        QLabel* found = nullptr;
        for (QLabel* label : help->findChildren<QLabel*>()) {
            if (label->text() == text) found = label;
        }
        QVERIFY2(found != nullptr, qPrintable(text));
        QCOMPARE(found->mapTo(help, QPoint(0, 0)), at);
        QCOMPARE(found->palette().color(QPalette::WindowText), QColor(0xE0, 0xE0, 0xE0));
        QCOMPARE(found->font().bold(), text.startsWith(QStringLiteral("Step ")));
        QCOMPARE(found->font().pointSizeF(), 8.25);
    }

    void buttonCopiesCarryFacesAndTooltips()
    {
        chooseHelp();
        FrmHelp* help = window->helpWindow();
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

    void dragAreasMoveWithLeftButtonOnly_data()
    {
        QTest::addColumn<int>("area");
        for (int i = 0; i < 4; ++i) QTest::addRow("imgMove%d", i) << i;
    }
    void dragAreasMoveWithLeftButtonOnly()
    {
        QFETCH(int, area);
        chooseHelp();
        FrmHelp* help = window->helpWindow();
        auto* mover = help->findChild<QWidget*>(QStringLiteral("imgMove") + QString::number(area));
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

private:
    void chooseHelp()
    {
        QComboBox* list = window->options();
        QTest::keyClick(list, Qt::Key_Shift);
        if (list->currentIndex() != 1) list->setCurrentIndex(1);
        emit list->activated(1);
        QCoreApplication::processEvents();
    }
    static int helpWindows()
    {
        const QWidgetList windows = QApplication::topLevelWidgets();
        return static_cast<int>(std::count_if(windows.begin(), windows.end(),
                                              [](QWidget* w) { return qobject_cast<FrmHelp*>(w) != nullptr; }));
    }
    static QString footerOf(FrmHelp* help) { return help->findChild<QLabel*>(QStringLiteral("lblFooter"))->text(); }

    skin::testing::FakePlatform fake;
    std::unique_ptr<FrmSkinCreator> window;
};

QTEST_MAIN(HelpWindowTest)
#include "test_helpwindow.moc"
