// The editor wired into the main window: real mouse events on the side pictures, the real
// pop-up name menu, the real file, colour and message dialogs, and the widgets that mirror
// the editor's model (pixels = twips / 15).

#include <QAbstractButton>
#include <QApplication>
#include <QColorDialog>
#include <QComboBox>
#include <QFileDialog>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPainter>
#include <QTemporaryDir>
#include <QtTest>

#include <cmath>

#include "editorcontroller.h"
#include "facebutton.h"
#include "frmskincreator.h"
#include "guitest.h"

using skin::AreaRect;
using skin::ColourRole;
using skin::EditorController;
using skin::FaceButton;
using skin::FrmSkinCreator;
using skin::SkinSide;
using skin::TextField;
using skin::testing::AcceptFile;
using skin::testing::AnswerMenu;
using skin::testing::AnswerModal;

class EditorWiringTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<FrmSkinCreator> window;
    EditorController* controller = nullptr;
    QTemporaryDir files;

    QLabel* widget(const char* name) const { return skin::testing::Child<QLabel>(window.get(), name); }
    FaceButton* button(const char* name) const { return skin::testing::Child<FaceButton>(window.get(), name); }
    QString currentSelection() const { return widget("lblCurrSel")->text().mid(19); }
    skin::Editor& editor() const { return controller->editor(); }

    // A left-button drag on a side picture, in pixels relative to the picture.
    void drag(QWidget* picture, QPoint from, QPoint to)
    {
        QTest::mousePress(picture, Qt::LeftButton, {}, from);
        QTest::mouseMove(picture, (from + to) / 2);
        QTest::mouseMove(picture, to);
        QTest::mouseRelease(picture, Qt::LeftButton, {}, to);
    }

    void drawAndName(const char* picture, QPoint from, QPoint to, const char* item)
    {
        AnswerMenu(QString::fromUtf8(item));
        drag(widget(picture), from, to);
    }

    QString writePicture(const QString& name, const char* format)
    {
        QImage image(100, 100, QImage::Format_RGB32);  // left half red, right half blue
        image.fill(Qt::red);
        QPainter(&image).fillRect(50, 0, 50, 100, Qt::blue);
        const QString path = files.filePath(name);
        image.save(path, format);
        return path;
    }

    // Opens the colour dialog, picks `colour` (or cancels when invalid); returns the start colour.
    QColor pickColour(const QColor& colour)
    {
        QColor initial;
        AnswerModal<QColorDialog>([&initial, colour](QColorDialog* dialog) {
            initial = dialog->currentColor();
            if (!colour.isValid()) return dialog->reject();
            dialog->setCurrentColor(colour);
            dialog->accept();
        });
        QTest::mouseClick(button("imgColorSelect"), Qt::LeftButton);
        return initial;
    }

    // Answers the next message box with OK and keeps its title.
    void answerOk(QString* title)
    {
        AnswerModal<QMessageBox>([title](QMessageBox* box) {
            *title = box->windowTitle();
            box->button(QMessageBox::Ok)->click();
        });
    }

    void chooseFile(const QString& path)
    {
        AnswerModal<QFileDialog>([path](QFileDialog* dialog) { AcceptFile(dialog, path); });
    }

private slots:
    void init()
    {
        QVERIFY(files.isValid());
        window = std::make_unique<FrmSkinCreator>();
        controller = new EditorController(*window);
        window->move(100, 100);
        window->show();
        QVERIFY(QTest::qWaitForWindowExposed(window.get()));
    }
    void cleanup() { window.reset(); }

    void dragGrowsTheBoxAndClipsAtTheRightEdgeOneMoveLate()
    {
        QLabel* picture = widget("imgSend");
        QLabel* box = widget("imgObjectBox0");
        const QPoint at = window->pos();
        QTest::mousePress(picture, Qt::RightButton, {}, {20, 30});  // other buttons neither draw nor move
        QTest::mouseMove(picture, {120, 130});
        QTest::mouseRelease(picture, Qt::RightButton, {}, {120, 130});
        QVERIFY(!box->isVisible());
        QCOMPARE(window->pos(), at);
        QCOMPARE(editor().Document().BoxCount(SkinSide::Send), 0);

        QTest::mousePress(picture, Qt::LeftButton, {}, {20, 30});
        QVERIFY(box->isVisible());
        QCOMPARE(box->geometry(), QRect(39, 81, 0, 0));

        QTest::mouseMove(picture, {60, 70});
        QCOMPARE(box->geometry(), QRect(39, 81, 40, 40));
        // The hatch is cut to the inside of the one-pixel border, never scaled.
        QCOMPARE(box->pixmap().size(), QSize(38, 38));

        QTest::mouseMove(picture, {380, 70});  // past the edge: the box goes with the pointer once
        QCOMPARE(box->geometry(), QRect(39, 81, 360, 40));
        QTest::mouseMove(picture, {390, 70});  // and is pinned to the picture's right edge next
        QCOMPARE(box->geometry().right(), widget("imgSend")->geometry().right());
        QCOMPARE(window->childAt(box->geometry().center()), box);

        AnswerMenu(QString());  // dismissed: the box goes, its index is used up
        QTest::mouseRelease(picture, Qt::LeftButton, {}, {390, 70});
        QVERIFY(!box->isVisible());
        QCOMPARE(editor().Document().BoxCount(SkinSide::Send), 1);
        QVERIFY(!editor().Document().KindUsed(SkinSide::Send, 0));

        QTest::mousePress(picture, Qt::LeftButton, {}, {5, 5});
        QVERIFY(widget("imgObjectBox1") != nullptr);
        QVERIFY(widget("imgObjectBox1")->isVisible());
        QTest::mouseRelease(picture, Qt::LeftButton, {}, {6, 6});  // too small: hidden, no menu
        QVERIFY(!widget("imgObjectBox1")->isVisible());
        QCOMPARE(editor().Document().BoxCount(SkinSide::Send), 1);
    }

    void namingATextFieldMovesItsLabelOntoTheRectangle()
    {
        bool sawMenu = false;
        AnswerMenu(QStringLiteral("mnuSObjectArea0"), [&sawMenu](QMenu* menu) {
            sawMenu = menu->objectName() == QLatin1String("mnuSend");
        });
        drag(widget("imgSend"), {20, 30}, {120, 90});
        QVERIFY(sawMenu);

        // Twips: Left 285 + 300, Top 765 + 450, 1500 by 900.
        QCOMPARE(editor().Document().Area(SkinSide::Send, 0), (AreaRect{585, 1215, 1500, 900}));
        QVERIFY(editor().Document().KindUsed(SkinSide::Send, 0));
        QLabel* label = widget("lblSendUsers");
        QCOMPARE(label->geometry(), QRect(39, 81, 100, 60));
        QVERIFY(label->isVisible());
        QCOMPARE(label->text(), QStringLiteral(" [ ] User List"));
        QVERIFY(!widget("imgObjectBox0")->isVisible());
        QCOMPARE(currentSelection(), QStringLiteral("Send User List"));

        // The next drag's menu offers the named kind no more; a button area stays as a box.
        bool userListEnabled = true;
        AnswerMenu(QStringLiteral("mnuSObjectArea2"), [&userListEnabled](QMenu* menu) {
            userListEnabled = menu->findChild<QAction*>(QStringLiteral("mnuSObjectArea0"))->isEnabled();
        });
        drag(widget("imgSend"), {200, 150}, {260, 200});
        QVERIFY(!userListEnabled);
        QLabel* box = widget("imgObjectBox1");
        QVERIFY(box->isVisible());
        QCOMPARE(box->geometry(), QRect(219, 201, 60, 50));
        QCOMPARE(editor().Document().Area(SkinSide::Send, 2), (AreaRect{3285, 3015, 900, 750}));
        QCOMPARE(currentSelection(), QStringLiteral("Send All"));

        drawAndName("imgRecieve", {10, 10}, {110, 40}, "mnuRObjectArea2");
        QCOMPARE(widget("lblReceiveMess")->geometry(), QRect(419, 61, 100, 30));
        QCOMPARE(widget("lblSendMessage")->y(), 426);  // still below the surface
        QCOMPARE(editor().Document().Area(SkinSide::Receive, 2), (AreaRect{6285, 915, 1500, 450}));
        QCOMPARE(currentSelection(), QStringLiteral("Receive Message"));

        // A press on a label or a box selects it and draws nothing.
        QTest::mouseClick(label, Qt::LeftButton, {}, {50, 30});
        QCOMPARE(currentSelection(), QStringLiteral("Send User List"));
        QTest::mousePress(box, Qt::LeftButton, {}, {10, 10});
        QTest::mouseMove(box, {40, 40});
        QTest::mouseRelease(box, Qt::LeftButton, {}, {40, 40});
        QCOMPARE(currentSelection(), QStringLiteral("Send All"));
        QCOMPARE(editor().Document().BoxCount(SkinSide::Send), 2);
        QVERIFY(window->findChild<QLabel*>(QStringLiteral("imgObjectBox2")) == nullptr ||
                !widget("imgObjectBox2")->isVisible());
    }

    void picturesLoadIntoTheirFrameAndANewStartEmptiesThem()
    {
        const QString path = writePicture(QStringLiteral("half.bmp"), "BMP");
        QStringList filters;
        AnswerModal<QFileDialog>([path, &filters](QFileDialog* dialog) {
            filters = dialog->nameFilters();
            AcceptFile(dialog, path);
        });
        QTest::mouseClick(button("imgSendLoad"), Qt::LeftButton);
        QCOMPARE(filters.value(0), QStringLiteral("Graphic Files (*.bmp *.jpg *.gif)"));

        QLabel* frame = widget("imgSend");
        QCOMPARE(frame->size(), QSize(362, 258));
        const QImage shown = frame->pixmap().toImage();
        QCOMPARE(shown.size(), frame->size() * frame->devicePixelRatioF());
        QCOMPARE(QColor(shown.pixel(20, 20)), QColor(Qt::red));
        QCOMPARE(QColor(shown.pixel(shown.width() - 20, shown.height() - 20)), QColor(Qt::blue));
        QCOMPARE(editor().Document().PictureFileName(SkinSide::Send), std::string("half.bmp"));
        QCOMPARE(editor().Document().PicturePath(SkinSide::Send), path.toStdString());

        // Not a picture: the message, and the frame and document keep what they had.
        QFile text(files.filePath(QStringLiteral("notes.txt")));
        QVERIFY(text.open(QIODevice::WriteOnly));
        text.write("not a picture\n");
        text.close();
        chooseFile(text.fileName());
        QString title;
        answerOk(&title);
        QTest::mouseClick(button("imgSendLoad"), Qt::LeftButton);
        QCOMPARE(title, QStringLiteral("Picture Load Error"));
        QCOMPARE(QColor(frame->pixmap().toImage().pixel(20, 20)), QColor(Qt::red));
        QCOMPARE(editor().Document().PictureFileName(SkinSide::Send), std::string("half.bmp"));

        AnswerModal<QFileDialog>([](QFileDialog* dialog) { dialog->reject(); });
        QTest::mouseClick(button("imgReceiveLoad"), Qt::LeftButton);
        QVERIFY(widget("imgRecieve")->pixmap().isNull());
        QVERIFY(editor().Document().PictureFileName(SkinSide::Receive).empty());

        // A new start empties the frames and hides every box.
        drawAndName("imgSend", {20, 30}, {120, 90}, "mnuSObjectArea4");
        drawAndName("imgSend", {200, 150}, {260, 200}, "mnuSObjectArea5");
        QVERIFY(widget("imgObjectBox1")->isVisible());
        editor().ResetEditor();  // what "Create Another?" answered Yes does
        QVERIFY(frame->pixmap().isNull());
        QVERIFY(!widget("imgObjectBox0")->isVisible());
        QVERIFY(!widget("imgObjectBox1")->isVisible());
        QCOMPARE(widget("lblCurrSel")->text(), QStringLiteral("Current Selection:"));
        drawAndName("imgSend", {20, 30}, {120, 90}, "mnuSObjectArea4");
        QVERIFY(widget("imgObjectBox0")->isVisible());
        QVERIFY(!widget("imgObjectBox1")->isVisible());
    }

    void arrowsNudgeAndRepeatOnTheLabelAndItsRectangle()
    {
        drawAndName("imgSend", {20, 30}, {120, 90}, "mnuSObjectArea0");
        QLabel* label = widget("lblSendUsers");
        FaceButton* right = button("imgArrMove2");

        QTest::mousePress(right, Qt::LeftButton);
        QVERIFY(label->frameStyle() != QFrame::NoFrame);  // outlined while the arrow is held
        QCOMPARE(right->face(), QStringLiteral("Right_ON"));
        QTest::mouseRelease(right, Qt::LeftButton);
        QCOMPARE(label->frameStyle(), int(QFrame::NoFrame));
        QCOMPARE(right->face(), QStringLiteral("Right_OFF"));
        QTest::mouseClick(right, Qt::LeftButton);
        QTest::mouseClick(right, Qt::LeftButton);
        // Three steps of 10 twips: 585 + 30 = 615 twips = 41 pixels.
        QCOMPARE(editor().Document().Area(SkinSide::Send, 0), (AreaRect{615, 1215, 1500, 900}));
        QCOMPARE(label->geometry(), QRect(41, 81, 100, 60));

        QTest::mouseClick(button("imgLock"), Qt::LeftButton);
        QCOMPARE(button("imgLock")->face(), QStringLiteral("Lock_ON"));
        for (int step = 0; step < 3; ++step) QTest::mouseClick(button("imgArrMove3"), Qt::LeftButton);
        QCOMPARE(editor().Document().Area(SkinSide::Send, 0), (AreaRect{615, 1215, 1500, 930}));
        QCOMPARE(label->geometry(), QRect(41, 81, 100, 62));

        QTest::mouseClick(button("imgLock"), Qt::LeftButton);  // holding an arrow repeats the step
        FaceButton* down = button("imgArrMove3");
        QTest::mousePress(down, Qt::LeftButton);
        QTRY_VERIFY(editor().Document().Area(SkinSide::Send, 0).Top >= 1215 + 30);
        QTest::mouseRelease(down, Qt::LeftButton);
        const int top = editor().Document().Area(SkinSide::Send, 0).Top;
        QTest::qWait(150);  // the repeat has stopped with the release
        QCOMPARE(editor().Document().Area(SkinSide::Send, 0).Top, top);
        QCOMPARE(widget("lblSendUsers")->y(), static_cast<int>(std::lround(top / 15.0)));
    }

    void anArrowWithoutSelectionAsksOncePerPress()
    {
        int messages = 0;
        QString text;
        const auto answer = [&](QMessageBox* box) {
            ++messages;
            text = box->text();
            box->button(QMessageBox::Ok)->click();
        };
        AnswerModal<QMessageBox>(answer);
        QTest::mouseClick(button("imgArrMove0"), Qt::LeftButton);
        QCOMPARE(messages, 1);
        QCOMPARE(text, QStringLiteral("Please select an object to modify first"));

        AnswerModal<QMessageBox>(answer);
        FaceButton* up = button("imgArrMove1");
        QTest::mousePress(up, Qt::LeftButton);
        QTRY_COMPARE(messages, 2);  // held: the first tick of the repeat asks
        QTest::qWait(150);
        QTest::mouseRelease(up, Qt::LeftButton);  // and the click that follows does not ask again
        QTest::qWait(50);
        QCOMPARE(messages, 2);
    }

    void labelsShowTheDocumentColoursAndThePickerSwapsThem()
    {
        const QPalette app = QGuiApplication::palette();
        QLabel* date = widget("lblReceiveDate");
        QLabel* message = widget("lblReceiveMess");
        QVERIFY(!date->autoFillBackground());
        QVERIFY(message->autoFillBackground());
        QCOMPARE(date->palette().color(QPalette::WindowText), app.color(QPalette::WindowText));
        QCOMPARE(message->palette().color(QPalette::Window), QColor(0xE0, 0xE0, 0xE0));

        drawAndName("imgSend", {20, 30}, {120, 90}, "mnuSObjectArea0");
        QCOMPARE(pickColour(QColor(0x12, 0x34, 0x56)), QColor(Qt::black));
        QLabel* users = widget("lblSendUsers");
        QCOMPARE(users->palette().color(QPalette::Window), QColor(0x12, 0x34, 0x56));
        QCOMPARE(widget("picPreView")->palette().color(QPalette::Window), QColor(0x12, 0x34, 0x56));
        QCOMPARE(editor().Document().Colour(TextField::SendUsers, ColourRole::Back), 0x563412);

        QTest::mouseClick(button("imgText"), Qt::LeftButton);
        QCOMPARE(button("imgText")->face(), QStringLiteral("Text_ON"));
        QCOMPARE(button("imgMap")->face(), QStringLiteral("Map_OFF"));
        QCOMPARE(pickColour(QColor(0xAB, 0xCD, 0xEF)), QColor(0x12, 0x34, 0x56));  // the dialog remembers
        QCOMPARE(users->palette().color(QPalette::WindowText), QColor(0xAB, 0xCD, 0xEF));
        QCOMPARE(users->palette().color(QPalette::Window), QColor(0x12, 0x34, 0x56));
        pickColour(QColor());
        QCOMPARE(widget("picPreView")->palette().color(QPalette::Window), QColor(0xAB, 0xCD, 0xEF));

        // The picker swaps labels for their boxes while it is held.
        QLabel* box = widget("imgObjectBox0");
        FaceButton* picker = button("imgPicker");
        QTest::mousePress(picker, Qt::RightButton);
        QCOMPARE(picker->face(), QStringLiteral("Eye_ON"));
        QVERIFY(!users->isVisible() && box->isVisible());
        QCOMPARE(box->geometry(), users->geometry());
        QTest::mouseRelease(picker, Qt::RightButton);
        QCOMPARE(picker->face(), QStringLiteral("Eye_OFF"));
        QVERIFY(users->isVisible() && !box->isVisible());
    }

    void resetParksTheSideAndStartsItsBoxesAgain()
    {
        drawAndName("imgSend", {20, 30}, {120, 90}, "mnuSObjectArea0");
        drawAndName("imgSend", {200, 150}, {260, 200}, "mnuSObjectArea3");
        drawAndName("imgRecieve", {10, 10}, {110, 40}, "mnuRObjectArea0");
        QTest::mouseClick(button("imgSendClear"), Qt::LeftButton);
        QCOMPARE(widget("lblSendUsers")->y(), 422);  // 6330 twips
        QCOMPARE(widget("lblSendUsers")->x(), 39);
        QVERIFY(!widget("imgObjectBox1")->isVisible());
        QCOMPARE(widget("lblReceiveDate")->geometry(), QRect(419, 61, 100, 30));

        QTest::mousePress(widget("imgSend"), Qt::LeftButton, {}, {30, 30});
        QVERIFY(widget("imgObjectBox0")->isVisible());
        QTest::mouseRelease(widget("imgSend"), Qt::LeftButton, {}, {30, 30});
    }

    void nameAndAuthorFollowTheDocument()
    {
        auto* name = skin::testing::Child<QLineEdit>(window.get(), "txtSkinName");
        QTest::keyClicks(name, QStringLiteral("Blue Sky"));
        QCOMPARE(editor().Document().SkinName(), std::string("Blue Sky"));
        QCOMPARE(name->cursorPosition(), 8);

        editor().Document().SetSkinAuthor("Ostervale");
        editor().Refresh();
        QCOMPARE(skin::testing::Child<QLineEdit>(window.get(), "txtSkinAuthor")->text(), QStringLiteral("Ostervale"));
    }

    void optionsAndPackageButtonReachTheSkinFiles()
    {
        QStringList filters;
        AnswerModal<QFileDialog>([&filters](QFileDialog* dialog) {
            filters = dialog->nameFilters();
            dialog->reject();
        });
        window->options()->setCurrentIndex(2);
        QCOMPARE(filters.value(0), QStringLiteral("Brindleway Skin Files (*.bsz *.bsi)"));

        QString title;
        answerOk(&title);
        QTest::mouseClick(button("cmdCreateSkinPackage"), Qt::LeftButton);
        QCOMPARE(title, QStringLiteral("Package Creation Error"));
    }
};

QTEST_MAIN(EditorWiringTest)
#include "test_editorwiring.moc"
