// The editor wired into the main window: real mouse events on the pictures and tools, the real
// name menu, file, colour and message dialogs, and the widgets mirroring the editor's model
// (pixels = twips / 15). The editing rules themselves are the core tests' business.

#include <QAbstractButton>
#include <QColorDialog>
#include <QComboBox>
#include <QLabel>
#include <QMessageBox>
#include <QPainter>
#include <QTemporaryDir>
#include <QtTest>

#include "editorcontroller.h"
#include "facebutton.h"
#include "frmskincreator.h"
#include "guitest.h"

using skin::AreaRect;
using skin::FaceButton;
using skin::SkinSide;
using skin::testing::AcceptFile;
using skin::testing::AnswerMenu;
using skin::testing::AnswerModal;

class EditorWiringTest : public QObject {
    Q_OBJECT

    std::unique_ptr<skin::FrmSkinCreator> window;
    skin::EditorController* controller = nullptr;
    QTemporaryDir files;

    QLabel* widget(const char* name) const { return skin::testing::Child<QLabel>(window.get(), name); }
    FaceButton* button(const char* name) const { return skin::testing::Child<FaceButton>(window.get(), name); }
    QString currentSelection() const { return widget("lblCurrSel")->text().mid(19); }
    const skin::SkinDocument& document() const { return controller->editor().Document(); }

    // A left-button drag on a side picture, in pixels of the picture, naming the area from the menu.
    void drawAndName(const char* picture, QPoint from, QPoint to, const char* item, std::function<void(QMenu*)> check = {})
    {
        AnswerMenu(QString::fromUtf8(item), check);
        QTest::mousePress(widget(picture), Qt::LeftButton, {}, from);
        QTest::mouseMove(widget(picture), to);
        QTest::mouseRelease(widget(picture), Qt::LeftButton, {}, to);
    }
    // Opens the colour dialog and picks `colour` (cancels when invalid); returns its start colour.
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
    void answerOk(QString* title)
    {
        AnswerModal<QMessageBox>([title](QMessageBox* box) {
            *title = box->windowTitle();
            box->button(QMessageBox::Ok)->click();
        });
    }

private slots:
    void init()
    {
        window = std::make_unique<skin::FrmSkinCreator>();
        controller = new skin::EditorController(*window);
        window->move(100, 100);
        window->show();
        QVERIFY(QTest::qWaitForWindowExposed(window.get()));
    }
    void cleanup() { window.reset(); }

    void drawingNamingSelectingAndResettingMirrorIntoWidgets()
    {
        QLabel* picture = widget("imgSend");
        QLabel* box = widget("imgObjectBox0");
        const QPoint at = window->pos();
        QTest::mousePress(picture, Qt::RightButton, {}, {20, 30});  // other buttons neither draw nor move
        QTest::mouseMove(picture, {120, 130});
        QTest::mouseRelease(picture, Qt::RightButton, {}, {120, 130});
        QVERIFY(!box->isVisible());
        QCOMPARE(window->pos(), at);
        QCOMPARE(document().BoxCount(SkinSide::Send), 0);

        QTest::mousePress(picture, Qt::LeftButton, {}, {20, 30});
        QVERIFY(box->isVisible());
        QCOMPARE(box->geometry(), QRect(39, 81, 0, 0));
        QTest::mouseMove(picture, {60, 70});
        QCOMPARE(box->geometry(), QRect(39, 81, 40, 40));
        QCOMPARE(box->pixmap().size(), QSize(38, 38));  // the hatch is cut inside the border, never scaled
        QCOMPARE(window->childAt(box->geometry().center()), box);
        bool sawSendMenu = false;
        AnswerMenu(QStringLiteral("mnuSObjectArea0"),
                   [&](QMenu* menu) { sawSendMenu = menu->objectName() == QLatin1String("mnuSend"); });
        QTest::mouseMove(picture, {120, 90});
        QTest::mouseRelease(picture, Qt::LeftButton, {}, {120, 90});
        QVERIFY(sawSendMenu);
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
        QCOMPARE(document().Area(SkinSide::Receive, 2), (AreaRect{6285, 915, 1500, 450}));
        QCOMPARE(currentSelection(), QStringLiteral("Receive Message"));

        // A press on a label or a box selects it and draws nothing.
        QTest::mouseClick(users, Qt::LeftButton, {}, {50, 30});
        QCOMPARE(currentSelection(), QStringLiteral("Send User List"));
        QTest::mousePress(box1, Qt::LeftButton, {}, {10, 10});
        QTest::mouseMove(box1, {40, 40});
        QTest::mouseRelease(box1, Qt::LeftButton, {}, {40, 40});
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
        QImage image(100, 100, QImage::Format_RGB32);  // left half red, right half blue
        image.fill(Qt::red);
        QPainter(&image).fillRect(50, 0, 50, 100, Qt::blue);
        const QString path = files.filePath(QStringLiteral("half.bmp"));
        QVERIFY(image.save(path, "BMP"));
        QStringList filters;
        AnswerModal<QFileDialog>([&](QFileDialog* dialog) {
            filters = dialog->nameFilters();
            AcceptFile(dialog, path);
        });
        QTest::mouseClick(button("imgSendLoad"), Qt::LeftButton);
        QCOMPARE(filters.value(0), QStringLiteral("Graphic Files (*.bmp *.jpg *.gif)"));
        QLabel* frame = widget("imgSend");
        const QImage shown = frame->pixmap().toImage();
        QCOMPARE(shown.size(), QSize(362, 258) * frame->devicePixelRatioF());
        QCOMPARE(QColor(shown.pixel(20, 20)), QColor(Qt::red));
        QCOMPARE(QColor(shown.pixel(shown.width() - 20, shown.height() - 20)), QColor(Qt::blue));
        QCOMPARE(document().PicturePath(SkinSide::Send), path.toStdString());

        // Not a picture: the message, and the frame keeps what it had.
        QFile text(files.filePath(QStringLiteral("notes.txt")));
        QVERIFY(text.open(QIODevice::WriteOnly) && text.write("not a picture\n") > 0);
        text.close();
        AnswerModal<QFileDialog>([&](QFileDialog* dialog) { AcceptFile(dialog, text.fileName()); });
        QString title;
        answerOk(&title);
        QTest::mouseClick(button("imgSendLoad"), Qt::LeftButton);
        QCOMPARE(title, QStringLiteral("Picture Load Error"));
        QCOMPARE(QColor(frame->pixmap().toImage().pixel(20, 20)), QColor(Qt::red));

        // A new start (what "Create Another?" answered Yes does) empties the frames and hides every box.
        drawAndName("imgSend", {20, 30}, {120, 90}, "mnuSObjectArea4");
        drawAndName("imgSend", {200, 150}, {260, 200}, "mnuSObjectArea5");
        QVERIFY(widget("imgObjectBox1")->isVisible());
        controller->editor().ResetEditor();
        QVERIFY(frame->pixmap().isNull());
        QVERIFY(!widget("imgObjectBox0")->isVisible() && !widget("imgObjectBox1")->isVisible());
        QCOMPARE(widget("lblCurrSel")->text(), QStringLiteral("Current Selection:"));
    }

    void arrowsAndLockReachTheEditorAndShowTheirFaces()
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
        QCOMPARE(document().Area(SkinSide::Send, 0), (AreaRect{615, 1215, 1500, 900}));  // three steps of 10
        QCOMPARE(label->geometry(), QRect(41, 81, 100, 60));

        QTest::mouseClick(button("imgLock"), Qt::LeftButton);
        QCOMPARE(button("imgLock")->face(), QStringLiteral("Lock_ON"));
        for (int step = 0; step < 3; ++step) QTest::mouseClick(button("imgArrMove3"), Qt::LeftButton);
        QCOMPARE(document().Area(SkinSide::Send, 0), (AreaRect{615, 1215, 1500, 930}));
        QCOMPARE(label->geometry(), QRect(41, 81, 100, 62));

        // Held, the arrow repeats through the window's move timer.
        QTest::mousePress(button("imgArrMove3"), Qt::LeftButton);
        QTRY_VERIFY(document().Area(SkinSide::Send, 0).Height >= 930 + 30);
        QTest::mouseRelease(button("imgArrMove3"), Qt::LeftButton);
    }

    void coloursMirrorTheDocumentAndThePickerSwapsLabels()
    {
        QLabel* date = widget("lblReceiveDate");
        QVERIFY(!date->autoFillBackground());  // a transparent label
        QCOMPARE(date->palette().color(QPalette::WindowText), QGuiApplication::palette().color(QPalette::WindowText));
        QVERIFY(widget("lblReceiveMess")->autoFillBackground());
        QCOMPARE(widget("lblReceiveMess")->palette().color(QPalette::Window), QColor(0xE0, 0xE0, 0xE0));

        drawAndName("imgSend", {20, 30}, {120, 90}, "mnuSObjectArea0");
        QCOMPARE(pickColour(QColor(0x12, 0x34, 0x56)), QColor(Qt::black));
        QLabel* users = widget("lblSendUsers");
        QCOMPARE(users->palette().color(QPalette::Window), QColor(0x12, 0x34, 0x56));
        QCOMPARE(widget("picPreView")->palette().color(QPalette::Window), QColor(0x12, 0x34, 0x56));
        QCOMPARE(document().Colour(skin::TextField::SendUsers, skin::ColourRole::Back), 0x563412);

        QTest::mouseClick(button("imgText"), Qt::LeftButton);
        QCOMPARE(button("imgText")->face(), QStringLiteral("Text_ON"));
        QCOMPARE(button("imgMap")->face(), QStringLiteral("Map_OFF"));
        QCOMPARE(pickColour(QColor(0xAB, 0xCD, 0xEF)), QColor(0x12, 0x34, 0x56));  // starts on the last colour
        QCOMPARE(users->palette().color(QPalette::WindowText), QColor(0xAB, 0xCD, 0xEF));
        pickColour(QColor());
        QCOMPARE(widget("picPreView")->palette().color(QPalette::Window), QColor(0xAB, 0xCD, 0xEF));

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

    void nameAndAuthorFollowTheDocument()
    {
        auto* name = skin::testing::Child<QLineEdit>(window.get(), "txtSkinName");
        QTest::keyClicks(name, QStringLiteral("Blue Sky"));
        QCOMPARE(document().SkinName(), std::string("Blue Sky"));
        QCOMPARE(name->cursorPosition(), 8);
        controller->editor().Document().SetSkinAuthor("Ostervale");
        controller->editor().Refresh();
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
