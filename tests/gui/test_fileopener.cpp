// Files from outside the dialogs: the command-line file and drops on the main window, through
// the real window, editor and QtPlatform. Each must give what the dialog route gives (the same
// messages, the same document), never open a dialog of its own, and refuse what it cannot load.

#include "editorcontroller.h"
#include "fileopener.h"
#include "guitest.h"

namespace skin::testing {

namespace {

struct Message {
    QString title;
    QString text;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    bool operator==(const Message&) const = default;
};

QMimeData* UriList(const QStringList& urls)
{
    auto* data = new QMimeData;
    QList<QUrl> list;
    for (const QString& url : urls) list << QUrl(url);
    data->setUrls(list);
    return data;
}

QString FileUrl(const QString& path)
{
    return QUrl::fromLocalFile(path).toString();
}

}  // namespace

class FileOpenerTest : public QObject {
    Q_OBJECT

    QTemporaryDir files;
    QString package;      // made through the create button
    QString information;  // the package's skin information file, unpacked beside its pictures
    QString sendPicture;
    std::unique_ptr<FrmSkinCreator> window;
    EditorController* controller = nullptr;
    FileOpener* opener = nullptr;
    QList<Message> messages;
    int dialogsOpened = 0;

    const SkinDocument& document() const { return controller->editor().Document(); }
    QWidget* element(const char* name) const { return Child(window.get(), name); }

    // The next message box is recorded and answered (No where it asks); a dialog is counted
    // and closed.
    void recordModal()
    {
        WhenOpen([this](QWidget* modal) {
            if (auto* box = qobject_cast<QMessageBox*>(modal)) {
                messages << Message{box->windowTitle(), box->text(), box->icon()};
                QAbstractButton* no = box->button(QMessageBox::No);
                (no != nullptr ? no : box->button(QMessageBox::Ok))->click();
            } else {
                ++dialogsOpened;
                modal->close();
            }
        });
    }

    void newWindow()
    {
        window = std::make_unique<FrmSkinCreator>();
        controller = new EditorController(*window);
        opener = new FileOpener(*window, controller->editor());
        window->move(100, 100);
        window->show();
        QVERIFY(QTest::qWaitForWindowExposed(window.get()));
        messages.clear();
        dialogsOpened = 0;
    }

    // Loads `path` through "[Load a Skin to Edit]" in a new window.
    void loadThroughOptions(const QString& path)
    {
        newWindow();
        WhenOpen<QFileDialog>([&](QFileDialog* dialog) {
            AcceptFile(dialog, path);
            recordModal();
        });
        window->options()->setCurrentIndex(2);
    }

    // Opens `path` as the command-line file in a new window; nothing happens before the
    // event loop runs.
    void loadAsCommandLine(const QString& path)
    {
        newWindow();
        recordModal();
        opener->openWhenShown(path);
        QVERIFY(messages.isEmpty());
        QTRY_VERIFY(!messages.isEmpty());
        QCOMPARE(window->options()->currentIndex(), 0);
        QCOMPARE(dialogsOpened, 0);
        QVERIFY(QApplication::overrideCursor() == nullptr && !element("picLoading")->isVisible());
    }

    // Enters `on` (as Qt requires before any move or drop reaches it), then moves to `at`
    // (coordinates of `on`); true when the move would be taken there.
    bool dragTaken(QWidget* on, QPoint at, const QMimeData& data)
    {
        if (!entered(on, at, data)) return false;
        QDragMoveEvent move(at, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, {});
        move.ignore();
        QApplication::sendEvent(on, &move);
        leave(on);
        return move.isAccepted() && move.dropAction() == Qt::CopyAction;
    }

    static bool entered(QWidget* on, QPoint at, const QMimeData& data)
    {
        QDragEnterEvent enter(at, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, {});
        enter.ignore();
        QApplication::sendEvent(on, &enter);
        return enter.isAccepted() && enter.dropAction() == Qt::CopyAction;
    }

    static void leave(QWidget* on)
    {
        QDragLeaveEvent leaving;
        QApplication::sendEvent(on, &leaving);
    }

    // Enters `on` and drops at `at`; true when the drop was taken.
    bool drop(QWidget* on, QPoint at, const QMimeData& data)
    {
        if (!entered(on, at, data)) {
            leave(on);
            return false;
        }
        QDropEvent dropped(at, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, {});
        dropped.ignore();
        QApplication::sendEvent(on, &dropped);
        return dropped.isAccepted();
    }

    QPoint centreOf(const char* name) const { return element(name)->geometry().center(); }

private slots:
    // One package made through the create button serves every case.
    void initTestCase()
    {
        QVERIFY(files.isValid());
        qputenv("TMPDIR", files.path().toUtf8());
        sendPicture = files.filePath(QStringLiteral("send.bmp"));
        QImage picture(40, 30, QImage::Format_RGB32);
        picture.fill(Qt::darkCyan);
        QVERIFY(picture.save(sendPicture, "BMP"));
        newWindow();
        Editor& editor = controller->editor();
        for (SkinSide side : {SkinSide::Send, SkinSide::Receive}) {
            QVERIFY(editor.SetSidePicture(side, sendPicture.toStdString(), "send.bmp"));
        }
        editor.SetSkinName("Dusk");
        editor.SetSkinAuthor("Ada");
        package = files.filePath(QStringLiteral("DUSK.bsz"));
        WhenOpen<QFileDialog>([&](QFileDialog* dialog) {
            AcceptFile(dialog, package);
            recordModal();
        });
        QTest::mouseClick(Child<FaceButton>(window.get(), "cmdCreateSkinPackage"), Qt::LeftButton);
        QVERIFY(QFileInfo(package).size() > 0);
        loadThroughOptions(package);
        QCOMPARE(messages.value(0).text, QStringLiteral("Skin loaded successfully!"));
        const QFileInfo unpacked(QString::fromStdString(document().PicturePath(SkinSide::Send)));
        const QStringList found = unpacked.dir().entryList({QStringLiteral("*.bsi")});
        QCOMPARE(found.size(), 1);
        information = unpacked.dir().filePath(found.front());
    }
    void cleanup() { window.reset(); }

    // The command-line file loads after the window shows, exactly as the options list loads
    // it: the same message for a package, a loose information file, a missing file and a
    // damaged package; the list stays on its first item and no dialog opens.
    void commandLineFileLoadsAsTheOptionsListDoes_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("expected");
        QTest::newRow("package") << package << "Skin loaded successfully!";
        QTest::newRow("information file") << information << "Skin loaded successfully!";
        QTest::newRow("missing package") << files.filePath(QStringLiteral("gone.bsz"))
                                         << "Invalid Skin Package File.\nCannot load Skin Information.";
        QTest::newRow("missing information file")
            << files.filePath(QStringLiteral("gone.bsi"))
            << "An Error has occured while loading the Skin file.\n\nSkin was not loaded.";
        const QString damaged = files.filePath(QStringLiteral("damaged.bsz"));
        QFile cut(package);
        QVERIFY(cut.open(QIODevice::ReadOnly));
        QFile out(damaged);
        QVERIFY(out.open(QIODevice::WriteOnly) && out.write(cut.read(cut.size() / 2)) > 0);
        out.close();
        QTest::newRow("damaged package") << damaged << "Invalid Skin Package File.\nCannot load Skin Information.";
    }
    void commandLineFileLoadsAsTheOptionsListDoes()
    {
        QFETCH(QString, path);
        QFETCH(QString, expected);
        loadThroughOptions(path);
        const QList<Message> viaOptions = messages;
        const std::string nameViaOptions = document().SkinName();
        loadAsCommandLine(path);
        const QList<Message> viaCommandLine = messages;
        QCOMPARE(viaCommandLine.size(), 1);
        QCOMPARE(viaCommandLine.front().text, expected);
        QCOMPARE(viaCommandLine, viaOptions);
        QCOMPARE(document().SkinName(), nameViaOptions);
        if (expected.startsWith(QStringLiteral("Skin loaded"))) {
            QCOMPARE(document().SkinName(), std::string("Dusk"));
            QCOMPARE(QFileInfo(QString::fromStdString(document().PicturePath(SkinSide::Send))).fileName(),
                     QStringLiteral("send.bmp"));
        }
    }

    // A relative name is taken from the current folder, as a shell user means it.
    void commandLineFileMayBeRelative()
    {
        const QString kept = QDir::currentPath();
        QDir::setCurrent(files.path());
        loadAsCommandLine(QFileInfo(package).fileName());
        QDir::setCurrent(kept);
        QCOMPARE(messages.value(0).text, QStringLiteral("Skin loaded successfully!"));
    }

    // Where a drag would be taken: skin files anywhere (the text boxes included), pictures
    // only on the frames; never several files, folders, remote files or other kinds.
    void dragsAreTakenOnlyWhereTheyWouldLoad()
    {
        newWindow();
        const QString notes = files.filePath(QStringLiteral("notes.bmp"));  // a picture by name only
        QFile text(notes);
        QVERIFY(text.open(QIODevice::WriteOnly) && text.write("just words\n") > 0);
        text.close();
        const std::unique_ptr<QMimeData> picture(UriList({FileUrl(sendPicture)}));
        const std::unique_ptr<QMimeData> skin(UriList({FileUrl(package)}));
        const std::unique_ptr<QMimeData> loose(UriList({FileUrl(information)}));
        QWidget* nameBox = element("txtSkinName");
        const QPoint background = centreOf("cboOptions") + QPoint(0, 40);

        // Entered wherever the file could go somewhere, so that its moves arrive; the moves decide.
        QVERIFY(entered(window.get(), background, *picture));
        leave(window.get());
        QVERIFY(dragTaken(window.get(), centreOf("imgSend"), *picture));
        QVERIFY(dragTaken(window.get(), centreOf("imgRecieve"), *picture));
        QVERIFY(!dragTaken(window.get(), background, *picture));
        QVERIFY(dragTaken(window.get(), background, *skin));
        QVERIFY(dragTaken(window.get(), centreOf("imgSend"), *loose));
        QVERIFY(dragTaken(nameBox, QPoint(5, 5), *skin));
        QVERIFY(!dragTaken(nameBox, QPoint(5, 5), *picture));
        for (const QStringList& refused : {QStringList{FileUrl(package), FileUrl(information)},
                                            QStringList{FileUrl(files.path())},
                                            QStringList{QStringLiteral("https://skins.example/DUSK.bsz")},
                                            QStringList{FileUrl(files.filePath(QStringLiteral("gone.bsz")))},
                                            QStringList{FileUrl(notes)}, QStringList{}}) {
            const std::unique_ptr<QMimeData> data(UriList(refused));
            QVERIFY2(!entered(window.get(), centreOf("imgSend"), *data), qPrintable(refused.join(' ')));
            leave(window.get());
            QVERIFY(!drop(window.get(), centreOf("imgSend"), *data));
        }
        QVERIFY(!drop(nameBox, QPoint(5, 5), *picture));
        QCoreApplication::processEvents();
        QCOMPARE(nameBox->property("text").toString(), QString());
        QVERIFY(messages.isEmpty() && document().PicturePath(SkinSide::Send).empty());

        // Busy or with a message open, nothing is taken.
        element("picLoading")->show();
        QVERIFY(!dragTaken(window.get(), background, *skin));
        element("picLoading")->hide();
        bool takenWhileOpen = true;
        WhenOpen<QMessageBox>([&](QMessageBox* box) {
            takenWhileOpen = dragTaken(window.get(), background, *skin) || drop(window.get(), background, *skin);
            box->button(QMessageBox::Ok)->click();
        });
        window->qtPlatform().ShowMessage("m", "t", MessageIcon::Information, MessageButtons::Ok);
        QVERIFY(!takenWhileOpen);
    }

    // A dropped picture loads into the side it lands on, as its folder button would; a skin
    // file dropped anywhere loads as from the options list. No dialog opens.
    void dropsLoadAsTheirOperationsDo()
    {
        newWindow();
        const std::unique_ptr<QMimeData> picture(UriList({FileUrl(sendPicture)}));
        QVERIFY(drop(window.get(), centreOf("imgRecieve"), *picture));
        QVERIFY(document().PicturePath(SkinSide::Receive).empty());  // after the drop is answered
        QTRY_COMPARE(document().PicturePath(SkinSide::Receive), sendPicture.toStdString());
        QCOMPARE(document().PictureFileName(SkinSide::Receive), std::string("send.bmp"));
        QVERIFY(!Child<QLabel>(window.get(), "imgRecieve")->pixmap().isNull());
        QVERIFY(document().PicturePath(SkinSide::Send).empty());

        // A file that looks like a picture but cannot be read gets the folder button's message.
        const QString broken = files.filePath(QStringLiteral("broken.png"));  // a PNG signature, then junk
        QFile cut(broken);
        QVERIFY(cut.open(QIODevice::WriteOnly) && cut.write(QByteArray("\x89PNG\r\n\x1a\n", 8) + QByteArray(40, 'x')) > 0);
        cut.close();
        QVERIFY(QImageReader(broken).canRead());
        const std::unique_ptr<QMimeData> brokenPicture(UriList({FileUrl(broken)}));
        recordModal();
        QVERIFY(drop(window.get(), centreOf("imgSend"), *brokenPicture));
        QTRY_COMPARE(messages.size(), 1);
        QCOMPARE(messages.front().title, QStringLiteral("Picture Load Error"));
        QVERIFY(document().PicturePath(SkinSide::Send).empty());

        messages.clear();
        recordModal();
        const std::unique_ptr<QMimeData> skin(UriList({FileUrl(package)}));
        QVERIFY(drop(element("txtSkinAuthor"), QPoint(3, 3), *skin));
        QVERIFY(!drop(window.get(), centreOf("imgSend"), *skin));  // the first is still to run
        QTRY_COMPARE(messages.size(), 1);
        QCOMPARE(messages.front().text, QStringLiteral("Skin loaded successfully!"));
        QCOMPARE(document().SkinAuthor(), std::string("Ada"));
        QCOMPARE(Child<QLineEdit>(window.get(), "txtSkinAuthor")->text(), QStringLiteral("Ada"));
        QCOMPARE(window->options()->currentIndex(), 0);
        QCOMPARE(dialogsOpened, 0);
    }
};

}  // namespace skin::testing

QTEST_MAIN(skin::testing::FileOpenerTest)
#include "test_fileopener.moc"
