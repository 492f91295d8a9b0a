// The editor wired into the main window through QtPlatform: real mouse events on the pictures
// and tools, real menus and dialogs, busy indications, pointers and timers, and the widgets
// mirroring the editor's model (pixels = twips / 15). The editing rules are the core tests' own.

#include "editorcontroller.h"
#include "guitest.h"
#include "qtcolour.h"

namespace skin::testing {

class EditorWiringTest : public QObject {
    Q_OBJECT

    std::unique_ptr<FrmSkinCreator> window;
    EditorController* controller = nullptr;

    QLabel* widget(const char* name) const { return Child<QLabel>(window.get(), name); }
    FaceButton* button(const char* name) const { return Child<FaceButton>(window.get(), name); }
    QString currentSelection() const { return widget("lblCurrSel")->text().mid(19); }
    const SkinDocument& document() const { return controller->editor().Document(); }
    QtPlatform& platform() { return window->qtPlatform(); }

    static void drag(QWidget* on, QPoint from, QPoint to, Qt::MouseButton button = Qt::LeftButton)
    {
        QTest::mousePress(on, button, {}, from);
        QTest::mouseMove(on, to);
        QTest::mouseRelease(on, button, {}, to);
    }
    // A left drag on a side picture, in its pixels, named from the menu; `check` looks at the menu.
    void drawAndName(const char* picture, QPoint from, QPoint to, const char* item, std::function<void(QMenu*)> check = {})
    {
        AnswerMenu(QString::fromUtf8(item), check);
        drag(widget(picture), from, to);
    }
    // Picks `colour` in the colour dialog (cancels when invalid); returns the dialog's start colour.
    QColor pickColour(const QColor& colour)
    {
        QColor initial;
        WhenOpen<QColorDialog>([&initial, colour](QColorDialog* dialog) {
            initial = dialog->currentColor();
            if (!colour.isValid()) return dialog->reject();
            dialog->setCurrentColor(colour);
            dialog->accept();
        });
        QTest::mouseClick(button("imgColorSelect"), Qt::LeftButton);
        return initial;
    }
    void answerOk(QString& title)
    {
        WhenOpen<QMessageBox>([&title](QMessageBox* box) {
            title = box->windowTitle();
            box->button(QMessageBox::Ok)->click();
        });
    }

private slots:
    void init()
    {
        window = std::make_unique<FrmSkinCreator>();
        controller = new EditorController(*window);
        window->move(100, 100);
        window->show();
        QVERIFY(QTest::qWaitForWindowExposed(window.get()));
    }
    void cleanup() { window.reset(); }

    void drawingNamingSelectingAndResettingShowInTheWidgets()
    {
        QLabel* picture = widget("imgSend");
        QLabel* box = widget("imgObjectBox0");
        drag(picture, {20, 30}, {120, 130}, Qt::RightButton);  // other buttons neither draw nor move
        QVERIFY(!box->isVisible() && window->pos() == QPoint(100, 100));
        QTest::mousePress(picture, Qt::LeftButton, {}, {20, 30});
        QTest::mouseMove(picture, {60, 70});
        QVERIFY(box->isVisible());
        QCOMPARE(box->geometry(), QRect(39, 81, 40, 40));
        QCOMPARE(box->pixmap().size(), QSize(38, 38));  // the hatch is cut inside the border, never scaled
        QCOMPARE(window->childAt(box->geometry().center()), box);
        QString menuShown;
        drawAndName("imgSend", {20, 30}, {120, 90}, "mnuSObjectArea0", [&](QMenu* m) { menuShown = m->objectName(); });
        QCOMPARE(menuShown, QStringLiteral("mnuSend"));
        QCOMPARE(document().Area(SkinSide::Send, 0), (AreaRect{585, 1215, 1500, 900}));  // 285 + 300, 765 + 450
        QLabel* users = widget("lblSendUsers");
        QCOMPARE(users->geometry(), QRect(39, 81, 100, 60));
        QVERIFY(users->isVisible() && !box->isVisible());
        QCOMPARE(users->text(), QStringLiteral(" [ ] User List"));
        QCOMPARE(currentSelection(), QStringLiteral("Send User List"));

        // The menu greys out the named kind; a button area stays as a new box element.
        bool userListEnabled = true;
        drawAndName("imgSend", {200, 150}, {260, 200}, "mnuSObjectArea2", [&](QMenu* menu) {
            userListEnabled = menu->findChild<QAction*>(QStringLiteral("mnuSObjectArea0"))->isEnabled();
        });
        QVERIFY(!userListEnabled);
        QLabel* box1 = widget("imgObjectBox1");
        QVERIFY(box1->isVisible());
        QCOMPARE(box1->geometry(), QRect(219, 201, 60, 50));
        QCOMPARE(currentSelection(), QStringLiteral("Send All"));
        drawAndName("imgRecieve", {10, 10}, {110, 40}, "mnuRObjectArea2");
        QCOMPARE(widget("lblReceiveMess")->geometry(), QRect(419, 61, 100, 30));

        // A press on a label or a box selects it and draws nothing.
        QTest::mouseClick(users, Qt::LeftButton, {}, {50, 30});
        QCOMPARE(currentSelection(), QStringLiteral("Send User List"));
        drag(box1, {10, 10}, {40, 40});
        QCOMPARE(currentSelection(), QStringLiteral("Send All"));
        QCOMPARE(document().BoxCount(SkinSide::Send), 2);

        // The send eraser parks the send labels below the surface (6330 twips) and leaves the receive side.
        QTest::mouseClick(button("imgSendClear"), Qt::LeftButton);
        QCOMPARE(users->pos(), QPoint(39, 422));
        QVERIFY(!box1->isVisible());
        QCOMPARE(widget("lblReceiveMess")->geometry(), QRect(419, 61, 100, 30));
    }

    void picturesLoadIntoTheirFrameAndANewStartEmptiesThem()
    {
        QTemporaryDir files;
        QImage image(100, 100, QImage::Format_RGB32);  // left half red, right half blue
        image.fill(Qt::red);
        QPainter(&image).fillRect(50, 0, 50, 100, Qt::blue);
        const QString path = files.filePath(QStringLiteral("halves.bmp"));
        QVERIFY(image.save(path, "BMP"));
        QStringList filters;
        WhenOpen<QFileDialog>([&](QFileDialog* dialog) {
            filters = dialog->nameFilters();
            AcceptFile(dialog, path);
        });
        QTest::mouseClick(button("imgSendLoad"), Qt::LeftButton);
        QCOMPARE(filters.value(0), QStringLiteral("Graphic Files (*.bmp *.jpg *.gif)"));
        const QImage shown = widget("imgSend")->pixmap().toImage();  // stretched over the whole frame
        QCOMPARE(shown.size(), QSize(362, 258) * widget("imgSend")->devicePixelRatioF());
        QCOMPARE(QColor(shown.pixel(20, 20)), QColor(Qt::red));
        QCOMPARE(QColor(shown.pixel(shown.width() - 20, shown.height() - 20)), QColor(Qt::blue));
        QCOMPARE(document().PicturePath(SkinSide::Send), path.toStdString());

        // A photo's orientation tag is not followed: the client draws the picture as stored.
        QBuffer jpeg;
        jpeg.open(QIODevice::WriteOnly);
        QVERIFY(image.save(&jpeg, "JPEG"));
        const char exifTurned180[] = "\xFF\xE1\x00\x22" "Exif\0\0" "MM\x00\x2A\x00\x00\x00\x08"
                                     "\x00\x01" "\x01\x12\x00\x03\x00\x00\x00\x01\x00\x03\x00\x00" "\x00\x00\x00\x00";
        const QString turned = files.filePath(QStringLiteral("turned.jpg"));
        QFile out(turned);
        QVERIFY(out.open(QIODevice::WriteOnly));
        out.write(QByteArray(jpeg.data()).insert(2, QByteArray(exifTurned180, sizeof exifTurned180 - 1)));
        out.close();
        QImageReader tagged(turned);
        tagged.setAutoTransform(true);
        QVERIFY(QColor(tagged.read().pixel(20, 50)).blue() > 200);  // the tag is there
        QVERIFY(controller->editor().SetSidePicture(SkinSide::Receive, turned.toStdString(), "turned.jpg"));
        QVERIFY(QColor(widget("imgRecieve")->pixmap().toImage().pixel(20, 20)).red() > 200);

        QString title;  // not a picture: the message, and the frame keeps what it had
        answerOk(title);
        WhenOpen<QFileDialog>([](QFileDialog* dialog) { AcceptFile(dialog, QCoreApplication::applicationFilePath()); });
        QTest::mouseClick(button("imgSendLoad"), Qt::LeftButton);
        QCOMPARE(title, QStringLiteral("Picture Load Error"));
        QCOMPARE(widget("imgSend")->pixmap().toImage(), shown);

        // A new start (what "Create Another?" answered Yes does) empties the frames and hides every box.
        drawAndName("imgSend", {20, 30}, {120, 90}, "mnuSObjectArea4");
        drawAndName("imgSend", {200, 150}, {260, 200}, "mnuSObjectArea5");
        QVERIFY(widget("imgObjectBox1")->isVisible());
        controller->editor().ResetEditor();
        QVERIFY(widget("imgSend")->pixmap().isNull());
        QVERIFY(!widget("imgObjectBox0")->isVisible() && !widget("imgObjectBox1")->isVisible());
        QCOMPARE(widget("lblCurrSel")->text(), QStringLiteral("Current Selection:"));
    }

    void toolsActOnTheSelectionAndShowTheirFaces()
    {
        QCOMPARE(widget("lblReceiveMess")->palette().color(QPalette::Window), QColor(0xE0, 0xE0, 0xE0));

        drawAndName("imgSend", {20, 30}, {120, 90}, "mnuSObjectArea0");
        QLabel* label = widget("lblSendUsers");  // selected
        FaceButton* right = button("imgArrMove2");
        QTest::mousePress(right, Qt::LeftButton);
        QVERIFY(label->frameStyle() != QFrame::NoFrame);  // outlined while the arrow is held
        QCOMPARE(right->face(), QStringLiteral("Right_ON"));
        QTest::mouseRelease(right, Qt::LeftButton);
        QCOMPARE(label->frameStyle(), int(QFrame::NoFrame));
        QCOMPARE(right->face(), QStringLiteral("Right_OFF"));
        QTest::mouseClick(right, Qt::LeftButton);
        QTest::mouseClick(right, Qt::LeftButton);
        QCOMPARE(label->geometry(), QRect(41, 81, 100, 60));  // three steps of 10 twips

        QTest::mouseClick(button("imgLock"), Qt::LeftButton);
        QCOMPARE(button("imgLock")->face(), QStringLiteral("Lock_ON"));
        QTest::mousePress(button("imgArrMove3"), Qt::LeftButton);  // held, it repeats on the window's timer
        QTRY_VERIFY(document().Area(SkinSide::Send, 0).Height >= 900 + 30);
        QTest::mouseRelease(button("imgArrMove3"), Qt::LeftButton);
        QCOMPARE(label->height(), qRound(document().Area(SkinSide::Send, 0).Height / 15.0));

        QCOMPARE(pickColour(QColor(0x12, 0x34, 0x56)), QColor(Qt::black));
        QCOMPARE(label->palette().color(QPalette::Window), QColor(0x12, 0x34, 0x56));
        QCOMPARE(widget("picPreView")->palette().color(QPalette::Window), QColor(0x12, 0x34, 0x56));
        QCOMPARE(document().Colour(TextField::SendUsers, ColourRole::Back), 0x563412);

        QTest::mouseClick(button("imgText"), Qt::LeftButton);
        QCOMPARE(button("imgText")->face(), QStringLiteral("Text_ON"));
        QCOMPARE(button("imgMap")->face(), QStringLiteral("Map_OFF"));
        QCOMPARE(pickColour(QColor(0xAB, 0xCD, 0xEF)), QColor(0x12, 0x34, 0x56));  // starts on the last colour
        QCOMPARE(label->palette().color(QPalette::WindowText), QColor(0xAB, 0xCD, 0xEF));
        pickColour(QColor());
        QCOMPARE(widget("picPreView")->palette().color(QPalette::Window), QColor(0xAB, 0xCD, 0xEF));

        QLabel* box = widget("imgObjectBox0");
        FaceButton* picker = button("imgPicker");
        QTest::mousePress(picker, Qt::RightButton);
        QCOMPARE(picker->face(), QStringLiteral("Eye_ON"));
        QVERIFY(!label->isVisible() && box->isVisible());
        QTest::mouseRelease(picker, Qt::RightButton);
        QCOMPARE(picker->face(), QStringLiteral("Eye_OFF"));
        QVERIFY(label->isVisible() && !box->isVisible());
    }

    void textBoxesOptionsAndPackageButtonReachTheCore()
    {
        auto* name = Child<QLineEdit>(window.get(), "txtSkinName");
        QTest::keyClicks(name, QStringLiteral("Blue Sky"));
        QCOMPARE(document().SkinName(), std::string("Blue Sky"));
        QCOMPARE(name->cursorPosition(), 8);
        controller->editor().SetSkinAuthor("Ostervale");
        QCOMPARE(Child<QLineEdit>(window.get(), "txtSkinAuthor")->text(), QStringLiteral("Ostervale"));

        QStringList filters;
        WhenOpen<QFileDialog>([&filters](QFileDialog* dialog) {
            filters = dialog->nameFilters();
            dialog->reject();
        });
        window->options()->setCurrentIndex(2);
        QCOMPARE(filters.value(0), QStringLiteral("Brindleway Skin Files (*.bsz *.bsi)"));
        QString title;
        answerOk(title);
        QTest::mouseClick(button("cmdCreateSkinPackage"), Qt::LeftButton);
        QCOMPARE(title, QStringLiteral("Package Creation Error"));
    }

    // Outside the name and author boxes the keys edit: Ctrl+Z, Ctrl+Y and Ctrl+Shift+Z walk the
    // editor's history, the arrows nudge like the pad, Delete removes the selected area. In the
    // boxes they stay the boxes' own; a click on a picture or an area takes the focus out.
    void editingKeysActOutsideTheTextBoxes()
    {
        window->activateWindow();
        auto* name = Child<QLineEdit>(window.get(), "txtSkinName");
        drawAndName("imgSend", {20, 30}, {120, 90}, "mnuSObjectArea2");  // Send All, selected
        name->setFocus();
        QTest::keyClicks(name, QStringLiteral("Sky"));
        QTest::keyClick(name, Qt::Key_Z, Qt::ControlModifier);  // the box's own undo
        QCOMPARE(name->text(), QString());
        QTest::keyClick(name, Qt::Key_Left);
        QVERIFY(document().KindUsed(SkinSide::Send, 2));
        QCOMPARE(document().Area(SkinSide::Send, 2).Left, 585);

        QLabel* box = widget("imgObjectBox0");
        QTest::mouseClick(box, Qt::LeftButton, {}, {5, 5});
        QVERIFY(QApplication::focusWidget() != name);
        QTest::keyClick(window.get(), Qt::Key_Right);
        QCOMPARE(document().Area(SkinSide::Send, 2).Left, 595);
        QKeyEvent repeat(QEvent::KeyPress, Qt::Key_Right, Qt::NoModifier, QString(), true);
        QApplication::sendEvent(window.get(), &repeat);
        QCOMPARE(document().Area(SkinSide::Send, 2).Left, 605);
        QTest::keyClick(window.get(), Qt::Key_Z, Qt::ControlModifier);  // the press and its repeat: one step
        QCOMPARE(document().Area(SkinSide::Send, 2).Left, 585);
        QCOMPARE(box->x(), 39);
        QTest::keyClick(window.get(), Qt::Key_Z, Qt::ControlModifier);  // the area itself
        QVERIFY(!document().KindUsed(SkinSide::Send, 2) && !box->isVisible());
        QTest::keyClick(window.get(), Qt::Key_Y, Qt::ControlModifier);
        QTest::keyClick(window.get(), Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(document().Area(SkinSide::Send, 2).Left, 605);
        QVERIFY(box->isVisible());
        QCOMPARE(currentSelection(), QStringLiteral("Send All"));

        QTest::keyClick(window.get(), Qt::Key_Delete);
        QVERIFY(!document().KindUsed(SkinSide::Send, 2) && !box->isVisible());
        QCOMPARE(widget("lblCurrSel")->text(), QStringLiteral("Current Selection:"));
    }

    // On a side without a picture every label reads clearly: its text stands off what lies
    // behind it by at least 4.5 : 1, whatever its text colour; the stored colours stay.
    void labelsReadClearlyOnAnEmptyFrame()
    {
        drawAndName("imgRecieve", {10, 10}, {110, 40}, "mnuRObjectArea0");   // Date
        drawAndName("imgRecieve", {10, 60}, {110, 90}, "mnuRObjectArea1");   // Sender
        drawAndName("imgRecieve", {10, 110}, {200, 160}, "mnuRObjectArea2"); // Message
        drawAndName("imgSend", {10, 10}, {150, 40}, "mnuSObjectArea0");      // User List
        const OleColour storedText = document().Colour(TextField::ReceiveDate, ColourRole::Text);
        const auto contrastOf = [this](const char* name) {
            QLabel* label = widget(name);
            const QImage shot = window->grab(label->geometry()).toImage();
            QHash<QRgb, int> counts;
            for (int y = 0; y < shot.height(); ++y) {
                for (int x = 0; x < shot.width(); ++x) ++counts[shot.pixel(x, y)];
            }
            QRgb ground = counts.begin().key();
            for (auto it = counts.begin(); it != counts.end(); ++it) if (it.value() > counts[ground]) ground = it.key();
            double best = 1;
            for (auto it = counts.begin(); it != counts.end(); ++it) best = std::max(best, ContrastRatio(QColor(it.key()), QColor(ground)));
            return best;
        };
        for (OleColour ink : {storedText, OleColour{0x00FFFFFF}, OleColour{0x00808080}, OleColour{0x00402010}}) {
            for (TextField field : {TextField::ReceiveDate, TextField::ReceiveSender}) controller->editor().SetColour(field, ColourRole::Text, ink);
            for (const char* name : {"lblReceiveDate", "lblReceiveSender", "lblReceiveMess", "lblSendUsers"}) {
                QVERIFY2(contrastOf(name) >= 4.5, qPrintable(QStringLiteral("%1, ink %2: %3").arg(name).arg(ink, 0, 16).arg(contrastOf(name))));
            }
            QCOMPARE(document().Colour(TextField::ReceiveDate, ColourRole::Text), ink);
        }
        QCOMPARE(document().Colour(TextField::ReceiveDate, ColourRole::Back), document().Colour(TextField::ReceiveSender, ColourRole::Back));
    }

    void messageBoxesShowLinesWithoutCarriageReturnsAndAnswer()
    {
        QMessageBox::Icon shownIcon = QMessageBox::NoIcon;
        QString shownText, shownTitle;
        WhenOpen<QMessageBox>([&](QMessageBox* box) {
            std::tie(shownIcon, shownText, shownTitle) = std::tuple(box->icon(), box->text(), box->windowTitle());
            box->button(QMessageBox::No)->click();
        });
        QCOMPARE(platform().ShowMessage("First line.\r\n\r\nSecond line.", "Skin Load Error", MessageIcon::Exclamation,
                                        MessageButtons::YesNo),
                 MessageAnswer::No);
        QCOMPARE(shownText, QStringLiteral("First line.\n\nSecond line."));
        QCOMPARE(shownTitle, QStringLiteral("Skin Load Error"));
        QCOMPARE(shownIcon, QMessageBox::Warning);
        WhenOpen([](QWidget* modal) { QTest::keyClick(modal, Qt::Key_Return); });  // Yes is the default
        QCOMPARE(platform().ShowMessage("Again?", "t", MessageIcon::Question, MessageButtons::YesNo), MessageAnswer::Yes);
    }

    void fileDialogsReturnPathAndNameAndAskNoOverwrite()
    {
        QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("send skin.bsz"));
        QVERIFY(QFile(path).open(QIODevice::WriteOnly));
        QString selectedFilter, title;
        WhenOpen<QFileDialog>([&](QFileDialog* dialog) {
            std::tie(selectedFilter, title) = std::pair(dialog->selectedNameFilter(), dialog->windowTitle());
            AcceptFile(dialog, path);
        });
        const auto opened = platform().OpenFileDialog({"Open Picture", "Pictures (*.bmp)|*.bmp|All Files (*.*)|*.*|", 2, 4});
        QVERIFY(opened.has_value());
        QCOMPARE(QString::fromStdString(opened->path), path);
        QCOMPARE(opened->title, std::string("send skin.bsz"));
        QCOMPARE(selectedFilter, QStringLiteral("All Files (*)"));
        QCOMPARE(title, QStringLiteral("Open Picture"));
        // A name that does not exist comes back too, for the caller to report.
        const QString missing = folder.filePath(QStringLiteral("gone.bsi"));
        WhenOpen<QFileDialog>([&](QFileDialog* dialog) { AcceptFile(dialog, missing); });
        const auto typed = platform().OpenFileDialog({"", "All Files (*.*)|*.*|", 1, 4});
        QVERIFY(typed.has_value());
        QCOMPARE(QString::fromStdString(typed->path), missing);

        WhenOpen<QFileDialog>([&](QFileDialog* dialog) {  // the caller asks, adding no suffix
            QVERIFY(dialog->testOption(QFileDialog::DontConfirmOverwrite) && dialog->defaultSuffix().isEmpty());
            AcceptFile(dialog, path);
        });
        const auto saved = platform().SaveFileDialog({"Save Skin Package", "Skins (*.bsz)|*.bsz|", 1, 4});
        QVERIFY(saved.has_value());
        QCOMPARE(QString::fromStdString(saved->path), path);

        WhenOpen<QDialog>([](QDialog* modal) { modal->reject(); });
        QVERIFY(!platform().OpenFileDialog({"", "All Files (*.*)|*.*|", 1, 4}).has_value());
        QVERIFY(ToQtNameFilters("").isEmpty() && ToQtNameFilters("lonely description|").isEmpty());
    }

    void nameMenusOfferTheKindsOfTheirSide()
    {
        QCOMPARE(Child<QMenu>(window.get(), "mnuSend")->title(), QStringLiteral("Send Objects"));
        auto* receive = Child<QMenu>(window.get(), "mnuRecieve");
        QCOMPARE(receive->title(), QStringLiteral("Recieve Objects"));
        QStringList captions;
        for (QAction* item : receive->actions()) captions << (item->isSeparator() ? QStringLiteral("-") : item->text());
        QCOMPARE(captions, (QStringList{"Date", "Sender", "Message", "Okay", "Yes", "No", "Reply", "Close", "-", "Cancel"}));
        std::array<bool, kAreaKinds> enabled{};
        enabled.fill(true);
        for (const char* noChoice : {"mnuRCancel", ""}) {  // Cancel, or the menu dismissed
            AnswerMenu(QString::fromUtf8(noChoice));
            QVERIFY(!platform().ShowNameMenu(SkinSide::Receive, enabled).has_value());
        }
    }

    void busyIndicationsPointersFocusTimersClockAndTemporaryFolder()
    {
        QWidget* loading = Child(window.get(), "picLoading");
        platform().SetHourglass(true);
        platform().SetMainWindowInput(false);
        platform().ShowBusyPanel(BusyPanel::Loading, true);
        QCOMPARE(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
        QVERIFY(loading->isVisible());
        QCOMPARE(loading->findChild<QLabel*>()->text(), QStringLiteral("Loading Skin Information, Please Stand by..."));
        platform().SetHourglass(false);
        platform().SetMainWindowInput(true);
        platform().ShowBusyPanel(BusyPanel::Loading, false);
        QVERIFY(QApplication::overrideCursor() == nullptr);
        QVERIFY(!loading->isVisible());

        window->activateWindow();
        platform().FocusTextBox(TextBox::SkinAuthor);
        QTRY_COMPARE(QApplication::focusWidget(), Child(window.get(), "txtSkinAuthor"));

        // The picker pointer stays above the hourglass, whichever goes first.
        platform().SetPickerPointer(true);
        QCOMPARE(QApplication::overrideCursor()->shape(), Qt::BitmapCursor);
        QCOMPARE(window->cursor().shape(), Qt::BitmapCursor);
        platform().SetHourglass(true);
        platform().SetPickerPointer(false);
        QCOMPARE(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
        platform().SetHourglass(false);
        QVERIFY(QApplication::overrideCursor() == nullptr);
        QCOMPARE(window->cursor().shape(), Qt::ArrowCursor);

        std::vector<EditorTimer> ticks;
        connect(&platform(), &QtPlatform::timerTicked, this, [&](EditorTimer timer) { ticks.push_back(timer); });
        platform().StartTimer(EditorTimer::ScreenColour);
        QTRY_VERIFY(!ticks.empty());
        platform().StopTimer(EditorTimer::ScreenColour);
        QVERIFY(!Child<QTimer>(window.get(), "tmrScreenColor")->isActive());
        QVERIFY(std::all_of(ticks.begin(), ticks.end(), [](auto t) { return t == EditorTimer::ScreenColour; }));

        const LocalDateTime now = platform().Now();
        QVERIFY(now.year == QDate::currentDate().year() && now.month >= 1 && now.month <= 12 && now.hour <= 23);
        QTemporaryDir folder;
        qputenv("TMPDIR", folder.path().toUtf8());
        QCOMPARE(QString::fromStdString(platform().TempFolder()), folder.path() + QLatin1Char('/'));
        qunsetenv("TMPDIR");
    }
};

}  // namespace skin::testing

QTEST_MAIN(skin::testing::EditorWiringTest)
#include "test_editorwiring.moc"
