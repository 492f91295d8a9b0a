// The main window: frame, element inventory, button faces, dragging the background, the
// options list and the link label.

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QTimer>
#include <QtTest>

#include "facebutton.h"
#include "fakeplatform.h"
#include "frmskincreator.h"
#include "guitest.h"

using skin::FaceButton;
using skin::FrmSkinCreator;
using skin::testing::Child;

class MainWindowTest : public QObject {
    Q_OBJECT

    std::unique_ptr<skin::testing::FakePlatform> platform;
    std::unique_ptr<FrmSkinCreator> window;
    int loadSkinCalls = 0;

    QWidget* element(const char* name) const { return Child(window.get(), name); }
    // As the list's pop-up chooses: input reaches the list, the selection changes, the item is activated.
    void choose(int index)
    {
        QTest::keyClick(window->options(), Qt::Key_Shift);
        window->options()->setCurrentIndex(index);
        emit window->options()->activated(index);
    }

private slots:
    void init()
    {
        platform = std::make_unique<skin::testing::FakePlatform>();
        loadSkinCalls = 0;
        window = std::make_unique<FrmSkinCreator>();
        window->setPlatform(platform.get());
        window->setLoadSkin([this] { ++loadSkinCalls; });
        window->move(100, 100);
        window->show();
        QVERIFY(QTest::qWaitForWindowExposed(window.get()));
    }
    void cleanup() { window.reset(); }

    void inventory_data()
    {
        QTest::addColumn<QRect>("geometry");  // pixels: twips / 15 to the nearest
        QTest::addColumn<QString>("tooltip");
        QTest::addColumn<QString>("start");   // "face:<key>", "text:<caption>" or ""
        // clang-format off
        const struct { const char* name; QRect px; const char* tip; const char* start; } rows[] = {
            {"Label1", {519, 5, 40, 14}, "", "text:Options:"},
            {"imgMin", {754, 4, 15, 16}, "", "face:Min_OFF"},
            {"imgClose", {772, 4, 15, 16}, "Close Brindleway Skin Fwt", "face:Close_OFF"},
            {"imgSend", {19, 51, 362, 258}, "Send Skin", ""},
            {"imgRecieve", {409, 51, 362, 219}, "Receive Skin", ""},
            {"imgSendClear", {336, 313, 15, 18}, "Send Object Reset - Use this to clear all of object boxes for the send skin", "face:Clear_OFF"},
            {"imgSendLoad", {356, 313, 17, 18}, "Click to Select the Send Skin File", "face:Load_OFF"},
            {"imgReceiveClear", {724, 275, 15, 18}, "Receive Object Reset - Use this to clear all of object boxes for the receive skin", "face:Clear_OFF"},
            {"imgReceiveLoad", {744, 275, 17, 18}, "Click to Select the Receive Skin File", "face:Load_OFF"},
            {"txtSkinName", {96, 349, 158, 19}, "Name of the Skin that will Appear in Brindleway", "text:"},
            {"txtSkinAuthor", {96, 375, 158, 19}, "Person / Team that Created the Skin", "text:"},
            {"cmdCreateSkinPackage", {341, 350, 26, 30}, "Click to Create the Skin Package File", "face:Pack_OFF"},
            {"imgText", {405, 311, 26, 22}, "Text Switch - Click to Make the Color Picker and Wheel Set the Current Objects Text Color", "face:Text_OFF"},
            {"imgMap", {434, 311, 26, 22}, "Back Switch - Click to Make the Color Picker and Wheel Set the Current Objects Back Color", "face:Map_ON"},
            {"imgPicker", {477, 311, 26, 22}, "Click and Hold to Set the Current Objects Color", "face:Eye_OFF"},
            {"imgColorSelect", {502, 311, 26, 22}, "Click to Open the Color Creation Window", "face:Color_OFF"},
            {"picPreView", {534, 313, 22, 18}, "", ""},
            {"imgArrMove0", {575, 311, 13, 13}, "Arrow Left - Move Current Object Left OR Decrease Object Width", "face:Left_OFF"},
            {"imgArrMove1", {575, 323, 13, 13}, "Arrow Up - Move Current Object Up OR Increase Object Height", "face:Up_OFF"},
            {"imgArrMove2", {588, 311, 13, 13}, "Arrow Right - Move Current Object Right OR Increase Object Width", "face:Right_OFF"},
            {"imgArrMove3", {588, 323, 13, 13}, "Arrow Down - Move Current Object Down OR Decrease Object Height", "face:Down_OFF"},
            {"imgLock", {608, 311, 17, 25}, "Arrow Lock - When locked arrow keys strech object instead of move object", "face:Lock_OFF"},
            {"Image1", {642, 311, 132, 26}, "Quick Color Chips (for use with picker)", ""},
            {"lblCurrSel", {405, 337, 367, 13}, "This is the Object that is Affected by the Tools (Current Object)", "text:Current Selection:"},
            {"lblCopyRight", {636, 393, 135, 14}, "", ""},
            {"picLoading", {264, 153, 264, 33}, "", ""},
            {"picCreating", {271, 153, 251, 33}, "", ""},
            {"picPickPointer", {340, 422, 33, 35}, "", ""},
            {"lblSendMessage", {124, 426, 80, 17}, "", "text: Message Text"},
            {"lblSendUsers", {124, 462, 80, 17}, "", "text: [ ] User List"},
            {"lblReceiveMess", {124, 491, 80, 17}, "", "text: Message Text"},
            {"lblReceiveDate", {124, 522, 80, 17}, "", "text:Date/Time"},
            {"lblReceiveSender", {124, 543, 80, 17}, "", "text:Sender"},
        };
        // clang-format on
        for (const auto& row : rows) {
            QTest::addRow("%s", row.name) << row.px << QString::fromUtf8(row.tip) << QString::fromUtf8(row.start);
        }
    }
    void inventory()
    {
        QFETCH(QRect, geometry);
        QFETCH(QString, tooltip);
        QFETCH(QString, start);
        auto* found = window->findChild<QWidget*>(QString::fromUtf8(QTest::currentDataTag()));
        QVERIFY(found != nullptr);
        QCOMPARE(found->parentWidget(), window.get());
        QCOMPARE(found->geometry(), geometry);
        QCOMPARE(found->toolTip(), tooltip);
        if (auto* button = qobject_cast<FaceButton*>(found); start.startsWith(QLatin1String("face:"))) {
            QVERIFY(button != nullptr);
            QCOMPARE(button->tag(), start.mid(5));
            QCOMPARE(button->face(), button->tag());
            QVERIFY(!button->pixmap().isNull());
        } else if (start.startsWith(QLatin1String("text:"))) {
            auto* line = qobject_cast<QLineEdit*>(found);
            QCOMPARE(line ? line->text() : qobject_cast<QLabel*>(found)->text(), start.mid(5));
        }
    }

    void startState()
    {
        QCOMPARE(window->size(), QSize(792, 409));
        QCOMPARE(window->minimumSize(), window->maximumSize());
        QVERIFY(window->windowFlags().testFlag(Qt::FramelessWindowHint));
        QCOMPARE(window->windowTitle(), QStringLiteral("Brindleway Skin Framewright"));
        QCOMPARE(window->objectName(), QStringLiteral("frmSkinCreator"));
        QVERIFY(!window->windowIcon().isNull());

        auto* list = window->options();
        QCOMPARE(list->geometry(), QRect(561, 2, 189, list->height()));
        QCOMPARE(list->currentIndex(), 0);
        QCOMPARE(list->font().pointSizeF(), 6.75);
        QVERIFY(list->font().bold() && list->font().families().startsWith(QStringLiteral("Arial")));
        for (const char* hidden : {"picLoading", "picCreating", "imgObjectBox0", "imgRObjectBox0"}) {
            QVERIFY2(!element(hidden)->isVisible(), hidden);
        }
        for (const char* parked :
             {"lblSendMessage", "lblSendUsers", "lblReceiveMess", "lblReceiveDate", "lblReceiveSender", "picPickPointer"}) {
            QVERIFY2(element(parked)->y() >= window->height(), parked);
        }
        auto* name = element("txtSkinName");
        QCOMPARE(name->font().pointSizeF(), 8.25);
        QVERIFY(name->font().families().startsWith(QStringLiteral("Tahoma")));
        QCOMPARE(name->nextInFocusChain(), element("txtSkinAuthor"));
        QCOMPARE(element("picPreView")->palette().color(QPalette::Window), QColor(Qt::white));
        QCOMPARE(element("lblCurrSel")->palette().color(QPalette::WindowText), QColor(Qt::white));
        QCOMPARE(element("lblCopyRight")->palette().color(QPalette::WindowText), QColor(0xB8, 0xD6, 0xE8));
        QVERIFY(!Child<QLabel>(window.get(), "lblCopyRight")->text().isEmpty());
        for (auto [timerName, interval] : {std::pair{"timMoveObject", 50}, std::pair{"tmrScreenColor", 1}}) {
            auto* timer = Child<QTimer>(window.get(), timerName);
            QVERIFY2(timer && !timer->isActive() && timer->interval() == interval, timerName);
        }
        QVERIFY(platform->webPages.empty());  // the start-up selection of item 0 did nothing
    }

    // Any mouse button and modifier shows the ON face while held; the tag never changes.
    void familyFacesSwapForAnyButton()
    {
        for (const char* name : {"cmdCreateSkinPackage", "imgSendClear", "imgSendLoad", "imgColorSelect",
                                 "imgReceiveClear", "imgReceiveLoad", "imgMin"}) {
            auto* face = Child<FaceButton>(window.get(), name);
            const QString tag = face->tag();
            for (Qt::MouseButton button : {Qt::RightButton, Qt::LeftButton}) {
                QTest::mousePress(face, button, Qt::ShiftModifier, QPoint(3, 3));
                QCOMPARE(face->face(), QString(tag).replace(QStringLiteral("OFF"), QStringLiteral("ON")));
                QTest::mouseRelease(face, button, Qt::NoModifier, QPoint(3, 3));
                QCOMPARE(face->face(), tag);
                QCOMPARE(face->tag(), tag);
            }
        }
        QTRY_VERIFY(window->windowState().testFlag(Qt::WindowMinimized));  // imgMin's left click
    }

    void closeEndsOnReleaseAndArrowsOnlySignal()
    {
        auto* close = Child<FaceButton>(window.get(), "imgClose");
        QStringList facesAtEnd;
        window->setEndProgram([&] { facesAtEnd << close->face(); });
        QTest::mouseClick(close, Qt::RightButton, {}, QPoint(4, 4));
        QTest::mousePress(close, Qt::LeftButton, {}, QPoint(4, 4));
        QCOMPARE(close->face(), QStringLiteral("Close_ON"));
        QVERIFY(facesAtEnd.isEmpty());
        QTest::mouseRelease(close, Qt::LeftButton, {}, QPoint(4, 4));
        QCOMPARE(facesAtEnd, QStringList{QStringLiteral("Close_OFF")});

        auto* arrow = Child<FaceButton>(window.get(), "imgArrMove0");
        QSignalSpy pressed(arrow, &FaceButton::pressed);
        QSignalSpy clicked(arrow, &FaceButton::clicked);
        QTest::mousePress(arrow, Qt::LeftButton, {}, QPoint(2, 2));
        QCOMPARE(arrow->face(), QStringLiteral("Left_OFF"));  // its owner shows its faces
        QTest::mouseRelease(arrow, Qt::LeftButton, {}, QPoint(2, 2));
        QCOMPARE(pressed.count() + clicked.count(), 2);
    }

    void onlyLeftDragOnBackgroundMovesWindow()
    {
        QVERIFY(window->childAt(300, 20) == nullptr);  // the bare top strip
        const struct { const char* on; Qt::MouseButton button; bool moves; } cases[] = {
            {nullptr, Qt::RightButton, false},
            {"lblCurrSel", Qt::LeftButton, false},
            {"lblCopyRight", Qt::LeftButton, false},
            {nullptr, Qt::LeftButton, true},
        };
        for (const auto& c : cases) {
            QWidget* target = c.on ? element(c.on) : window.get();
            const QPoint from = c.on ? QPoint(5, 5) : QPoint(300, 20);
            const QPoint start = window->pos();
            QTest::mousePress(target, c.button, Qt::ControlModifier, from);
            QTest::mouseMove(target, from + QPoint(40, 25));
            QTest::mouseRelease(target, c.button, {}, from + QPoint(40, 25));
            if (c.moves) {
                QTRY_COMPARE(window->pos(), start + QPoint(40, 25));
            } else {
                QCoreApplication::processEvents();
                QVERIFY2(window->pos() == start, c.on ? c.on : "right button");
            }
        }
    }

    void optionItemsAct_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<QString>("item");
        QTest::addColumn<QString>("page");  // empty: no page opens
        QTest::addColumn<int>("loads");
        const QString site = QStringLiteral("https://www.ostervale.example/");
        QTest::newRow("select") << 0 << "- SELECT AN OPTION ---------------------------------------" << QString() << 0;
        QTest::newRow("help") << 1 << "[Help - How do I use this??]" << QString() << 0;
        QTest::newRow("load") << 2 << "[Load a Skin to Edit]" << QString() << 1;
        QTest::newRow("separator") << 3 << QString(66, QLatin1Char('-')) << QString() << 0;
        QTest::newRow("skin center") << 4 << "[Ostervale Skin Center]" << site + "brindleway/skins.asp" << 0;
        QTest::newRow("brindleway") << 5 << "[Visit Brindleway]" << site + "brindleway/index.asp" << 0;
        QTest::newRow("ostervale") << 6 << "[Visit Ostervale]" << site + "default.asp" << 0;
    }
    void optionItemsAct()
    {
        QFETCH(int, index);
        QFETCH(QString, item);
        QFETCH(QString, page);
        QFETCH(int, loads);
        QComboBox* list = window->options();
        QCOMPARE(list->count(), 7);
        QCOMPARE(list->itemText(index), item);
        if (index == 0) {  // make 0 a change
            list->setCurrentIndex(6);
            platform->webPages.clear();
        }
        std::vector<std::string> pages;
        if (!page.isEmpty()) pages.push_back(page.toStdString());
        choose(index);
        QCOMPARE(list->currentIndex(), index);  // the list keeps showing the choice
        QCOMPARE(platform->webPages, pages);
        QCOMPARE(loadSkinCalls, loads);
        QCOMPARE(window->helpWindow() != nullptr, index == 1);
        // The pop-up opened again on the same item: no change, but one more activation.
        QTest::keyClick(list, Qt::Key_Shift);
        emit list->activated(index);
        QCOMPARE(platform->webPages.size(), 2 * pages.size());
        QCOMPARE(loadSkinCalls, 2 * loads);
    }

    void startingAnewRunsTheStartUpAgain()
    {
        int editorStarts = 0;
        window->setStartEditor([&] { ++editorStarts; });
        choose(5);
        platform->webPages.clear();
        window->Form_Load();
        QCOMPARE(editorStarts, 1);
        QCOMPARE(window->options()->currentIndex(), 0);
        QVERIFY(platform->webPages.empty());
        QVERIFY(window->isVisible());
    }

    void linkLabelOpensHomePage()
    {
        QWidget* link = element("lblCopyRight");
        QCOMPARE(link->cursor().shape(), Qt::BitmapCursor);
        QTest::mouseClick(link, Qt::RightButton, {}, QPoint(5, 5));
        QVERIFY(platform->webPages.empty());
        QTest::mouseClick(link, Qt::LeftButton, {}, QPoint(5, 5));
        QCOMPARE(platform->webPages, std::vector<std::string>{"https://www.ostervale.example/default.asp"});
    }
};

QTEST_MAIN(MainWindowTest)
#include "test_mainwindow.moc"
