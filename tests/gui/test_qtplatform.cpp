// The Qt side of Platform: dialogs and message boxes driven as a designer would, the name
// menus, busy indications, timers and pointers. Pictures and colours: see the wiring tests.

#include <QAbstractButton>
#include <QApplication>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>

#include "frmskincreator.h"
#include "qtcolour.h"
#include "guitest.h"
#include "qtplatform.h"

using skin::FrmSkinCreator;
using skin::QtPlatform;
using skin::testing::AcceptFile;
using skin::testing::AnswerMenu;
using skin::testing::AnswerModal;

class QtPlatformTest : public QObject {
    Q_OBJECT

private slots:
    void init()
    {
        window = std::make_unique<FrmSkinCreator>();
        window->show();
        QVERIFY(QTest::qWaitForWindowExposed(window.get()));
    }
    void cleanup() { window.reset(); }

    void filtersBecomeQtNameFilters()
    {
        QCOMPARE(skin::ToQtNameFilters("Graphic Files (*.bmp; *.jpg; *.gif)|*.bmp; *.jpg; *.gif|All Files (*.*)|*.*|"),
                 (QStringList{"Graphic Files (*.bmp *.jpg *.gif)", "All Files (*)"}));
        QCOMPARE(skin::ToQtNameFilters("Brindleway Skin ZIP Files (*.bsz)|*.bsz|"),
                 QStringList{"Brindleway Skin ZIP Files (*.bsz)"});
        QCOMPARE(skin::ToQtNameFilters("Skins|*.bsz;*.bsi"), QStringList{"Skins (*.bsz *.bsi)"});
        QVERIFY(skin::ToQtNameFilters("").isEmpty());
        QVERIFY(skin::ToQtNameFilters("lonely description|").isEmpty());
    }

    void oleColoursConvert()
    {
        QCOMPARE(skin::ToQColor(0x00E8D6B8), QColor(0xB8, 0xD6, 0xE8));
        QCOMPARE(skin::ToOle(QColor(0x12, 0x34, 0x56)), skin::OleColour{0x00563412});
        QCOMPARE(skin::ToQColor(skin::kSystemWindowText), QGuiApplication::palette().color(QPalette::Text));
    }

    void messageBoxAnswersAndShowsLinesWithoutCarriageReturns()
    {
        QString shownText, shownTitle;
        QMessageBox::Icon shownIcon = QMessageBox::NoIcon;
        AnswerModal<QMessageBox>([&](QMessageBox* box) {
            shownText = box->text();
            shownTitle = box->windowTitle();
            shownIcon = box->icon();
            box->button(QMessageBox::No)->click();
        });
        const auto answer = platform().ShowMessage("First line.\r\n\r\nSecond line.", "Skin Load Error",
                                                   skin::MessageIcon::Exclamation, skin::MessageButtons::YesNo);
        QCOMPARE(answer, skin::MessageAnswer::No);
        QCOMPARE(shownText, QStringLiteral("First line.\n\nSecond line."));
        QCOMPARE(shownTitle, QStringLiteral("Skin Load Error"));
        QCOMPARE(shownIcon, QMessageBox::Warning);

        // Return takes the default button: Yes of Yes/No, or Ok.
        for (auto [buttons, expected] : {std::pair{skin::MessageButtons::YesNo, skin::MessageAnswer::Yes},
                                         std::pair{skin::MessageButtons::Ok, skin::MessageAnswer::Ok}}) {
            AnswerModal([](QWidget* modal) { QTest::keyClick(modal, Qt::Key_Return); });
            QCOMPARE(platform().ShowMessage("Again?", "t", skin::MessageIcon::Question, buttons), expected);
        }
    }

    void openDialogReturnsPathAndTitle()
    {
        QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("send skin.bmp"));
        QVERIFY(QImage(4, 4, QImage::Format_RGB32).save(path, "BMP"));
        QString selectedFilter, title;
        AnswerModal<QFileDialog>([&](QFileDialog* dialog) {
            selectedFilter = dialog->selectedNameFilter();
            title = dialog->windowTitle();
            AcceptFile(dialog, path);
        });
        const auto choice = platform().OpenFileDialog(
            {"Open Picture", "Graphic Files (*.bmp; *.jpg; *.gif)|*.bmp; *.jpg; *.gif|All Files (*.*)|*.*|", 2, 4});
        QVERIFY(choice.has_value());
        QCOMPARE(QString::fromStdString(choice->path), path);
        QCOMPARE(choice->title, std::string("send skin.bmp"));
        QCOMPARE(selectedFilter, QStringLiteral("All Files (*)"));
        QCOMPARE(title, QStringLiteral("Open Picture"));

        AnswerModal<QDialog>([](QDialog* modal) { modal->reject(); });
        QVERIFY(!platform().OpenFileDialog({"", "All Files (*.*)|*.*|", 1, 4}).has_value());
    }

    void saveDialogAsksNothingForAnExistingFile()
    {
        QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("MySkin.bsz"));
        QVERIFY(QFile(path).open(QIODevice::WriteOnly));
        AnswerModal<QFileDialog>([&](QFileDialog* dialog) {
            QVERIFY(dialog->testOption(QFileDialog::DontConfirmOverwrite));
            QCOMPARE(dialog->defaultSuffix(), QString());
            AcceptFile(dialog, path);
        });
        const auto choice =
            platform().SaveFileDialog({"Save Skin Package", "Brindleway Skin ZIP Files (*.bsz)|*.bsz|All Files (*.*)|*.*|", 1, 4});
        QVERIFY(choice.has_value());
        QCOMPARE(QString::fromStdString(choice->path), path);
        QCOMPARE(choice->title, std::string("MySkin.bsz"));
    }

    void nameMenusOfferTheKindsOfTheirSide()
    {
        auto* parentMenu = window->findChild<QMenu*>(QStringLiteral("mnuObjectName"));
        QVERIFY(parentMenu != nullptr && !parentMenu->isVisible());
        QCOMPARE(parentMenu->title(), QStringLiteral("OjectName"));
        auto* receive = window->findChild<QMenu*>(QStringLiteral("mnuRecieve"));
        QCOMPARE(receive->title(), QStringLiteral("Recieve Objects"));
        QCOMPARE(window->findChild<QMenu*>(QStringLiteral("mnuSend"))->title(), QStringLiteral("Send Objects"));
        QStringList captions;
        for (QAction* item : receive->actions()) captions << (item->isSeparator() ? QStringLiteral("-") : item->text());
        QCOMPARE(captions, (QStringList{"Date", "Sender", "Message", "Okay", "Yes", "No", "Reply", "Close", "-", "Cancel"}));
        QCOMPARE(receive->actions().last()->objectName(), QStringLiteral("mnuRCancel"));

        // Cancel is no choice.
        std::array<bool, skin::kAreaKinds> enabled{};
        enabled.fill(true);
        AnswerMenu(QStringLiteral("mnuRCancel"));
        QVERIFY(!platform().ShowNameMenu(skin::SkinSide::Receive, enabled).has_value());
    }

    void busyIndicationsPointersAndFocus()
    {
        auto* loading = window->findChild<QWidget*>(QStringLiteral("picLoading"));
        platform().SetHourglass(true);
        platform().SetMainWindowInput(false);
        platform().ShowBusyPanel(skin::BusyPanel::Loading, true);
        QCOMPARE(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
        QVERIFY(!window->isEnabled());
        QVERIFY(loading->isVisible());
        QCOMPARE(loading->findChild<QLabel*>()->text(), QStringLiteral("Loading Skin Information, Please Stand by..."));
        platform().SetHourglass(false);
        platform().SetMainWindowInput(true);
        platform().ShowBusyPanel(skin::BusyPanel::Loading, false);
        QVERIFY(QApplication::overrideCursor() == nullptr);
        QVERIFY(window->isEnabled() && !loading->isVisible());

        window->activateWindow();
        platform().FocusTextBox(skin::TextBox::SkinAuthor);
        QTRY_COMPARE(QApplication::focusWidget(), window->findChild<QWidget*>(QStringLiteral("txtSkinAuthor")));

        // The picker pointer stays paired with the hourglass.
        platform().SetPickerPointer(true);
        QCOMPARE(QApplication::overrideCursor()->shape(), Qt::BitmapCursor);
        QCOMPARE(window->cursor().shape(), Qt::BitmapCursor);
        platform().SetHourglass(true);
        platform().SetPickerPointer(false);
        QCOMPARE(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
        platform().SetHourglass(false);
        QVERIFY(QApplication::overrideCursor() == nullptr);
        QCOMPARE(window->cursor().shape(), Qt::ArrowCursor);
    }

    void timersClockAndTemporaryFolder()
    {
        std::vector<skin::EditorTimer> ticks;
        window->setTimerTick([&](skin::EditorTimer timer) { ticks.push_back(timer); });
        platform().StartTimer(skin::EditorTimer::ScreenColour);
        QTRY_VERIFY(!ticks.empty());
        platform().StopTimer(skin::EditorTimer::ScreenColour);
        QVERIFY(!window->findChild<QTimer*>(QStringLiteral("tmrScreenColor"))->isActive());
        QVERIFY(std::all_of(ticks.begin(), ticks.end(), [](auto t) { return t == skin::EditorTimer::ScreenColour; }));
        platform().StartTimer(skin::EditorTimer::MoveObject);
        QVERIFY(window->findChild<QTimer*>(QStringLiteral("timMoveObject"))->isActive());
        platform().StopTimer(skin::EditorTimer::MoveObject);

        const skin::LocalDateTime now = platform().Now();
        const QDateTime clock = QDateTime::currentDateTime();
        QCOMPARE(now.year, clock.date().year());
        QVERIFY(now.month >= 1 && now.month <= 12 && now.hour >= 0 && now.hour <= 23);
        QTemporaryDir folder;
        qputenv("TMPDIR", folder.path().toUtf8());
        QCOMPARE(QString::fromStdString(platform().TempFolder()), folder.path() + QLatin1Char('/'));
        qunsetenv("TMPDIR");
    }

private:
    QtPlatform& platform() { return window->qtPlatform(); }

    std::unique_ptr<FrmSkinCreator> window;
};

QTEST_MAIN(QtPlatformTest)
#include "test_qtplatform.moc"
