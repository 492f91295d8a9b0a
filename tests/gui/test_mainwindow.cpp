// The main window and its help window: frames, element inventory and texts, button faces,
// dragging the windows, the options list and the link label.

#include "fakeplatform.h"
#include "guitest.h"

namespace skin::testing {

class MainWindowTest : public QObject {
    Q_OBJECT

    std::unique_ptr<FakePlatform> platform;
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
    FrmHelp* showHelp()
    {
        choose(1);
        QCoreApplication::processEvents();
        return window->helpWindow();
    }
    static QString footerOf(FrmHelp* help) { return Child<QLabel>(help, "lblFooter")->text(); }

private slots:
    void init()
    {
        loadSkinCalls = 0;
        platform = std::make_unique<FakePlatform>();
        window = std::make_unique<FrmSkinCreator>();
        window->setPlatform(platform.get());
        connect(window.get(), &FrmSkinCreator::loadSkinRequested, this, [this] { ++loadSkinCalls; });
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
        for (const char* name : {"Label1", "lblCurrSel"}) {  // whichever fallback face: not cut off
            auto* caption = Child<QLabel>(window.get(), name);
            QVERIFY2(QFontMetrics(caption->font()).horizontalAdvance(caption->text()) <= caption->width(), name);
        }
        auto* list = window->options();
        QCOMPARE(list->geometry(), QRect(561, 2, 189, list->height()));
        QCOMPARE(list->currentIndex(), 0);
        QCOMPARE(list->font().pointSizeF(), 6.75);
        QVERIFY(list->font().bold() && list->font().families().startsWith(QStringLiteral("Arial")));
        for (const char* hidden : {"picLoading", "picCreating", "imgObjectBox0", "imgRObjectBox0"}) {
            QVERIFY2(!element(hidden)->isVisible(), hidden);
        }
        QWidget* name = element("txtSkinName");
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
    }

    // Any mouse button and modifier shows the ON face while held; the tag never changes. The
    // close button ends the program on a left release, with its normal face showing.
    void buttonFacesAndClose()
    {
        for (const char* name : {"cmdCreateSkinPackage", "imgSendClear", "imgSendLoad", "imgColorSelect",
                                 "imgReceiveClear", "imgReceiveLoad", "imgClose", "imgMin"}) {
            auto* face = Child<FaceButton>(window.get(), name);
            const QString tag = face->tag();
            for (Qt::MouseButton button : {Qt::RightButton, Qt::LeftButton}) {
                QStringList facesAtEnd;
                const QMetaObject::Connection ending = connect(window.get(), &FrmSkinCreator::endProgramRequested,
                                                               this, [&] { facesAtEnd << face->face(); });
                QTest::mousePress(face, button, Qt::ShiftModifier, QPoint(3, 3));
                QCOMPARE(face->face(), QString(tag).replace(QStringLiteral("OFF"), QStringLiteral("ON")));
                QVERIFY(facesAtEnd.isEmpty());
                QTest::mouseRelease(face, button, Qt::NoModifier, QPoint(3, 3));
                QCOMPARE(face->face(), tag);
                QCOMPARE(face->tag(), tag);
                disconnect(ending);
                QCOMPARE(facesAtEnd, face->objectName() == "imgClose" && button == Qt::LeftButton ? QStringList{tag} : QStringList{});
            }
        }
        QTRY_VERIFY(window->windowState().testFlag(Qt::WindowMinimized));  // imgMin's left click

        auto* arrow = Child<FaceButton>(window.get(), "imgArrMove0");  // its owner shows its faces
        QTest::mousePress(arrow, Qt::LeftButton, {}, QPoint(2, 2));
        QCOMPARE(arrow->face(), QStringLiteral("Left_OFF"));
        QTest::mouseRelease(arrow, Qt::LeftButton, {}, QPoint(2, 2));
    }

    void onlyLeftDragsOnBareAreasMoveTheWindows()
    {
        const auto drag = [](QWidget* on, Qt::MouseButton button, QPoint from) {
            QTest::mousePress(on, button, Qt::ControlModifier, from);
            QTest::mouseMove(on, from + QPoint(40, 25));
            QTest::mouseRelease(on, button, {}, from + QPoint(40, 25));
            QCoreApplication::processEvents();
        };
        QVERIFY(window->childAt(300, 20) == nullptr);  // the bare top strip
        drag(window.get(), Qt::RightButton, {300, 20});
        drag(element("lblCurrSel"), Qt::LeftButton, {5, 5});
        drag(element("lblCopyRight"), Qt::LeftButton, {5, 5});
        QCOMPARE(window->pos(), QPoint(100, 100));
        drag(window.get(), Qt::LeftButton, {300, 20});
        QTRY_COMPARE(window->pos(), QPoint(140, 125));

        FrmHelp* help = showHelp();
        for (int area = 0; area < 4; ++area) {  // the help window's four strips
            const QPoint start = help->pos();
            drag(Child(help, qPrintable(QStringLiteral("imgMove%1").arg(area))), Qt::RightButton, {30, 8});
            drag(Child(help, qPrintable(QStringLiteral("imgMove%1").arg(area))), Qt::LeftButton, {30, 8});
            QTRY_COMPARE(help->pos(), start + QPoint(40, 25));
        }
    }

    // Each item twice: chosen, then chosen again from the pop-up (no change, one more activation).
    void optionItemsStartingAnewAndTheLinkLabel()
    {
        QVERIFY(platform->webPages.empty());  // the start-up selection of item 0 did nothing
        const QString site = QStringLiteral("https://www.ostervale.example/");
        const struct { int index; QString text; const char* page; } items[] = {
            {2, QStringLiteral("[Load a Skin to Edit]"), nullptr},
            {1, QStringLiteral("[Help - How do I use this??]"), nullptr},
            {3, QString(66, QLatin1Char('-')), nullptr},
            {4, QStringLiteral("[Ostervale Skin Center]"), "brindleway/skins.asp"},
            {5, QStringLiteral("[Visit Brindleway]"), "brindleway/index.asp"},
            {6, QStringLiteral("[Visit Ostervale]"), "default.asp"},
            {0, QStringLiteral("- SELECT AN OPTION ---------------------------------------"), nullptr},
        };
        QComboBox* list = window->options();
        QCOMPARE(list->count(), 7);
        std::vector<std::string> pages;
        for (const auto& item : items) {
            QCOMPARE(list->itemText(item.index), item.text);
            for (int time = 0; time < 2; ++time) {
                choose(item.index);
                if (item.page) pages.push_back((site + QString::fromUtf8(item.page)).toStdString());
                QCOMPARE(list->currentIndex(), item.index);  // the list keeps showing the choice
                QCOMPARE(platform->webPages, pages);
            }
            QCOMPARE(loadSkinCalls, 2);
            QCOMPARE(window->helpWindow() != nullptr, item.index != 2);
        }

        choose(3);  // another skin: the window as newly loaded, centred, focus on the first field
        QVERIFY(window->helpWindow() != nullptr);
        window->move(10, 10);
        list->setFocus();
        window->qtPlatform().ShowMainWindowAnew();
        QCOMPARE(list->currentIndex(), 0);
        QCOMPARE(platform->webPages, pages);
        const QPoint offCentre = window->geometry().center() - window->screen()->availableGeometry().center();
        QVERIFY2(std::abs(offCentre.x()) <= 1 && std::abs(offCentre.y()) <= 1, qPrintable(QString::number(offCentre.x())));
        QTRY_COMPARE(QApplication::focusWidget(), element("txtSkinName"));
        QTest::qWait(50);
        QVERIFY(window->helpWindow() != nullptr && window->helpWindow()->isVisible());  // only its own close button closes it

        QWidget* link = element("lblCopyRight");  // the link label opens the home page on a left click
        QCOMPARE(link->cursor().shape(), Qt::BitmapCursor);
        QTest::mouseClick(link, Qt::RightButton, {}, QPoint(5, 5));
        QCOMPARE(platform->webPages, pages);
        QTest::mouseClick(link, Qt::LeftButton, {}, QPoint(5, 5));
        QCOMPARE(platform->webPages.back(), (site + "default.asp").toStdString());
    }

    // Notches over the closed list, down and up, change nothing and run nothing.
    void wheelOverTheClosedListDoesNothing()
    {
        QComboBox* list = window->options();
        const QPoint at = list->rect().center();
        for (int delta : {-120, -120, -120, -120, -120, 120, 120}) {
            QWheelEvent notch(at, list->mapToGlobal(at), QPoint(), QPoint(0, delta), Qt::NoButton, Qt::NoModifier,
                              Qt::NoScrollPhase, false);
            QApplication::sendEvent(list, &notch);
            QCoreApplication::processEvents();
        }
        QCOMPARE(list->currentIndex(), 0);
        QVERIFY(window->helpWindow() == nullptr);
        QCOMPARE(loadSkinCalls, 0);
        QVERIFY(platform->webPages.empty());
    }

    void opensOnceClosesAndReopensRebuilt()
    {
        QPointer<FrmHelp> help = showHelp();
        QVERIFY(help != nullptr && help->isVisible());
        QCOMPARE(showHelp(), help.data());  // shown again: the same window, brought forward
        const QWidgetList all = QApplication::topLevelWidgets();
        QCOMPARE(std::count_if(all.begin(), all.end(), [](QWidget* w) { return qobject_cast<FrmHelp*>(w); }), 1);
        QCOMPARE(help->size(), QSize(680, 272));
        QCOMPARE(help->windowHandle()->transientParent(), window->windowHandle());
        QVERIFY(help->windowFlags().testFlags(Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint));
        QCOMPARE(help->windowType(), Qt::Tool);
        QCOMPARE(help->windowTitle(), QStringLiteral("Help - Brindleway Skin Framewright"));
        const QPoint startPlace = window->pos() + QPoint((792 - 680) / 2, (409 - 272) / 2);  // centred over it
        QCOMPARE(help->pos(), startPlace);
        QVERIFY(footerOf(help).contains(QStringLiteral("Ostervale")));
        QVERIFY(footerOf(help).endsWith(QStringLiteral(" Version " SKIN_EXPECTED_VERSION)));

        // While the main window takes no input, the help window still does.
        auto* name = Child<QLineEdit>(window.get(), "txtSkinName");
        auto* clear = Child<FaceButton>(window.get(), "imgSendClear");
        window->qtPlatform().SetMainWindowInput(false);
        QTest::keyClicks(name, "ab");
        QTest::mousePress(clear, Qt::LeftButton);
        QCOMPARE(clear->face(), QStringLiteral("Clear_OFF"));
        QTest::mouseRelease(clear, Qt::LeftButton);
        QTest::mouseClick(Child<FaceButton>(help, "imgClose"), Qt::LeftButton, {}, QPoint(4, 4));
        QTRY_VERIFY(help.isNull());
        window->qtPlatform().SetMainWindowInput(true);
        QCOMPARE(name->text(), QString());
        QTest::keyClicks(name, "ab");
        QCOMPARE(name->text(), QStringLiteral("ab"));
        help = showHelp();

        help->move(startPlace + QPoint(50, 30));
        auto* close = Child<FaceButton>(help, "imgClose");
        QCOMPARE(close->toolTip(), QStringLiteral("Close Brindleway Skin Fwt"));
        QTest::mousePress(close, Qt::LeftButton, {}, QPoint(4, 4));
        QCOMPARE(close->face(), QStringLiteral("Close_OFF"));  // no face swap here
        QTest::mouseRelease(close, Qt::LeftButton, {}, QPoint(4, 4));
        QTRY_VERIFY(help.isNull());
        QVERIFY(window->helpWindow() == nullptr);

        help = showHelp();
        QVERIFY(help != nullptr && help->isVisible());
        QCOMPARE(help->pos(), startPlace);
        window.reset();  // and goes with the main window
        QVERIFY(help.isNull());
    }

    // No step text touches the text below it or leaves its panel, in the fonts this machine
    // has and with Tahoma standing in as wider and taller faces.
    void helpStepsNeverTouchWhateverTheFonts()
    {
        for (const QString& standIn : {QString(), QStringLiteral("DejaVu Sans"), QStringLiteral("DejaVu Serif")}) {
            QFont::removeSubstitutions(QStringLiteral("Tahoma"));
            if (!standIn.isEmpty()) QFont::insertSubstitution(QStringLiteral("Tahoma"), standIn);
            FrmHelp help(window.get());
            for (QWidget* panel : {static_cast<QWidget*>(&help), Child(&help, "picRightPanel")}) {
                const int right = panel == &help ? 352 : panel->width();
                QList<QLabel*> texts;
                for (QLabel* label : panel->findChildren<QLabel*>(QString(), Qt::FindDirectChildrenOnly)) {
                    if (label->objectName().startsWith(QLatin1String("lblStep"))) texts << label;
                }
                QVERIFY(texts.size() >= 10);
                for (QLabel* text : texts) {
                    const QString what = standIn + QStringLiteral(": ") + text->text();
                    const int flags = Qt::AlignLeft | Qt::AlignTop | (text->wordWrap() ? Qt::TextWordWrap : 0);
                    const QRect ink = QFontMetrics(text->font()).boundingRect(QRect(0, 0, text->width(), 1 << 20), flags, text->text());
                    QVERIFY2(ink.height() <= text->height() && ink.width() <= text->width(), qPrintable(what));
                    QVERIFY2(text->geometry().right() < right, qPrintable(what));
                    for (QLabel* below : texts) {
                        const QRect b = below->geometry();
                        if (below == text || b.top() <= text->y() || b.left() > text->geometry().right() || b.right() < text->x()) continue;
                        QVERIFY2(text->y() + ink.height() < b.top() && text->geometry().bottom() < b.top(),
                                 qPrintable(what + QStringLiteral(" reaches ") + below->text()));
                    }
                }
            }
        }
        QFont::removeSubstitutions(QStringLiteral("Tahoma"));
    }

    void textsAndButtonCopies()
    {
        FrmHelp* help = showHelp();
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
        const QList<QLabel*> labels = help->findChildren<QLabel*>();
        for (const auto& [text, at] : texts) {
            const auto found = std::find_if(labels.begin(), labels.end(),
                                            [text](QLabel* label) { return label->text() == QString::fromUtf8(text); });
            QVERIFY2(found != labels.end(), text);
            QCOMPARE((*found)->mapTo(help, QPoint(0, 0)), at);
            QCOMPARE((*found)->palette().color(QPalette::WindowText), QColor(0xE0, 0xE0, 0xE0));
            QCOMPARE((*found)->font().bold(), QByteArray(text).startsWith("Step "));
            // 8.25 point, or a little smaller where a wider face would reach the next step.
            QVERIFY2((*found)->font().pointSizeF() <= 8.25 && (*found)->font().pointSizeF() >= 6, text);
        }

        const struct { const char* name; QPoint at; const char* face; const char* tip; } copies[] = {
            {"imgHelpLoad", {51, 34}, "Load_OFF", nullptr},
            {"imgHelpArrow0", {56, 212}, "Left_OFF", "Arrow Left - Move Current Object Left OR Decrease Object Width"},
            {"imgHelpArrow3", {69, 224}, "Down_OFF", nullptr},
            {"imgHelpLock", {86, 212}, "Lock_OFF", nullptr},
            {"imgHelpPicker", {352 + 57, 121}, "Eye_OFF", nullptr},
            {"imgHelpCreate", {352 + 58, 212}, "help_create", "Click to Create the Skin Package File"},
        };
        for (const auto& [name, at, face, tip] : copies) {
            auto* label = Child<QLabel>(help, name);
            QVERIFY2(label != nullptr, name);
            QCOMPARE(label->mapTo(help, QPoint(0, 0)), at);
            QCOMPARE(label->property("face").toString(), QString::fromUtf8(face));
            QVERIFY(!label->pixmap().isNull());
            if (tip) QCOMPARE(label->toolTip(), QString::fromUtf8(tip));
        }
    }
};

}  // namespace skin::testing

QTEST_MAIN(skin::testing::MainWindowTest)
#include "test_mainwindow.moc"
