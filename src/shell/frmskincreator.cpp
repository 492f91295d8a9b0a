#include "frmskincreator.h"

#include <QComboBox>
#include <QEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <QTimer>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <tuple>
#include <utility>

#include "art.h"
#include "elementfont.h"
#include "facebutton.h"
#include "frmhelp.h"
#include "mainlayout.h"
#include "options.h"
#include "qtplatform.h"
#include "slotguard.h"

namespace skin {

namespace {

constexpr int kWindowWidth = 11880;  // twips
constexpr int kWindowHeight = 6140;
constexpr int kMoveObjectInterval = 50;  // ms
constexpr int kScreenColourInterval = 1;

// The eight members of the button-face family swap faces themselves; the arrow pad, lock,
// picker and colour switches show the faces their owners choose.
constexpr std::array kFaceFamily{"cmdCreateSkinPackage", "imgSendClear", "imgSendLoad", "imgColorSelect",
                                 "imgReceiveClear",      "imgReceiveLoad", "imgClose",  "imgMin"};
constexpr std::array kOwnFaceButtons{"imgArrMove0", "imgArrMove1", "imgArrMove2", "imgArrMove3",
                                     "imgLock",     "imgPicker",   "imgText",     "imgMap"};

}  // namespace

FrmSkinCreator::FrmSkinCreator(QWidget* parent)
    : QWidget(parent), ownPlatform_(std::make_unique<QtPlatform>(*this)), platform_(ownPlatform_.get()), mover_(this)
{
    setObjectName(QStringLiteral("frmSkinCreator"));
    setWindowTitle(QStringLiteral("Brindleway Skin Framewright"));
    setWindowIcon(WindowIcon());
    BuildMainElements(this);
    buildOptions();
    buildTimers();
    wireButtons();
    Form_Load();
}

// The help window goes with the main window.
FrmSkinCreator::~FrmSkinCreator()
{
    delete help_;
}

void FrmSkinCreator::setPlatform(Platform* platform)
{
    platform_ = platform != nullptr ? platform : ownPlatform_.get();
}

FaceButton* FrmSkinCreator::faceButton(const char* name) const
{
    return findChild<FaceButton*>(QString::fromUtf8(name));
}

void FrmSkinCreator::Form_Load()
{
    // StripWindowFrame: no caption, border or boxes; the window keeps its task-bar entry.
    // (Only once: changing the flags of a shown window would hide it.)
    if (!windowFlags().testFlag(Qt::FramelessWindowHint)) setWindowFlags(Qt::Window | Qt::FramelessWindowHint);
    setFixedSize(Px(kWindowWidth), Px(kWindowHeight));
    selectFirstOption();
}

// Selecting item 0 runs the list's handler, which does nothing for it.
void FrmSkinCreator::selectFirstOption()
{
    options_->setCurrentIndex(-1);
    options_->setCurrentIndex(kOptionSelect);
}

// The window as if unloaded and loaded again, once the editor behind it has started anew.
// The help window is a window of its own and stays: only its close button or the program's
// end closes it.
void FrmSkinCreator::showAnew()
{
    selectFirstOption();
    centreOnScreen();
    activateWindow();
    findChild<QLineEdit*>(QStringLiteral("txtSkinName"))->setFocus();  // first in the tab order
}

void FrmSkinCreator::centreOnScreen()
{
    const QScreen* target = screen();
    if (target == nullptr) return;
    const QRect area = target->availableGeometry();
    move(area.x() + (area.width() - width()) / 2, area.y() + (area.height() - height()) / 2);
}

// cboOptions_Click runs on every change of the selection, by the designer or by the program.
// A QComboBox reports the choice of the item already selected only as `activated`, so an
// activation that no change came before since the last key, wheel or mouse input runs the
// handler too; an activation that follows a change does not run it twice.
void FrmSkinCreator::buildOptions()
{
    options_ = findChild<QComboBox*>(QStringLiteral("cboOptions"));
    options_->addItems(OptionItems());
    options_->installEventFilter(this);
    connect(options_, &QComboBox::currentIndexChanged, this, [this] {
        optionChangedSinceInput_ = true;
        cboOptions_Click();
    });
    connect(options_, &QComboBox::activated, this, [this] {
        if (!std::exchange(optionChangedSinceInput_, false)) cboOptions_Click();
    });

    auto* txtSkinName = findChild<QLineEdit*>(QStringLiteral("txtSkinName"));
    auto* txtSkinAuthor = findChild<QLineEdit*>(QStringLiteral("txtSkinAuthor"));
    setTabOrder(txtSkinName, txtSkinAuthor);
    setTabOrder(txtSkinAuthor, options_);
    txtSkinName->setFocus();

    findChild<QLabel*>(QStringLiteral("lblCopyRight"))->installEventFilter(this);
}

void FrmSkinCreator::buildTimers()
{
    for (const auto& [name, interval, timer] :
         {std::tuple{"timMoveObject", kMoveObjectInterval, EditorTimer::MoveObject},
          std::tuple{"tmrScreenColor", kScreenColourInterval, EditorTimer::ScreenColour}}) {
        auto* ticker = new QTimer(this);
        ticker->setObjectName(QString::fromUtf8(name));
        ticker->setInterval(interval);
        const EditorTimer which = timer;
        connect(ticker, &QTimer::timeout, this, Guarded([this, which] {
            if (timerTick_) timerTick_(which);
        }));
    }
}

void FrmSkinCreator::wireButtons()
{
    for (const char* name : kFaceFamily) faceButton(name)->setAutoFace(true);
    for (const char* name : kOwnFaceButtons) faceButton(name)->setAutoFace(false);
    connect(faceButton("imgMin"), &FaceButton::clicked, this, &FrmSkinCreator::imgMin_Click);
    connect(faceButton("imgClose"), &FaceButton::clicked, this, &FrmSkinCreator::imgClose_Click);
}

void FrmSkinCreator::cboOptions_Click()
{
    // Every failing step is skipped: nothing from here reaches the designer.
    Guard([this] {
        const int index = options_->currentIndex();
        switch (index) {
        case kOptionHelp: showHelp(); break;
        case kOptionLoadSkin:
            if (loadSkin_) loadSkin_();
            break;
        case kOptionSkinCenter:
        case kOptionVisitBrindleway:
        case kOptionVisitOstervale: openPage(index); break;
        default: break;  // item 0, the separator, no selection
        }
    });
}

void FrmSkinCreator::lblCopyRight_Click()
{
    Guard([this] { platform_->OpenWebPage(WebAddress(kHomePage)); });
}

void FrmSkinCreator::openPage(int index)
{
    platform_->OpenWebPage(WebAddress(OptionPage(index)));
}

void FrmSkinCreator::showHelp()
{
    if (help_ == nullptr) {
        help_ = new FrmHelp(this);
        const QRect over = frameGeometry();
        help_->move(over.x() + (over.width() - help_->width()) / 2, over.y() + (over.height() - help_->height()) / 2);
    }
    help_->show();
    help_->raise();
    help_->activateWindow();
}

void FrmSkinCreator::imgMin_Click()
{
    showMinimized();
}

void FrmSkinCreator::imgClose_Click()
{
    if (endProgram_) {
        endProgram_();
        return;
    }
    // At once: nothing is asked or saved, and no further event of any window runs.
    std::fflush(nullptr);
    std::_Exit(EXIT_SUCCESS);
}

void FrmSkinCreator::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.drawPixmap(0, 0, Art(QStringLiteral("main_background")));
}

// Form_MouseDown: only a left press on the bare background moves the window; a press on an
// element that does not take it itself (a label, a frame) arrives here and is ignored.
void FrmSkinCreator::mousePressEvent(QMouseEvent* event)
{
    if (childAt(event->position().toPoint()) == nullptr) mover_.press(event);
}

void FrmSkinCreator::mouseMoveEvent(QMouseEvent* event)
{
    mover_.move(event);
}

void FrmSkinCreator::mouseReleaseEvent(QMouseEvent* event)
{
    mover_.release(event);
}

bool FrmSkinCreator::eventFilter(QObject* watched, QEvent* event)
{
    const QEvent::Type type = event->type();
    if (watched == options_ && type == QEvent::Wheel) {
        // A wheel turned over the closed list would step through its items and run each one
        // (the help window, the load dialog, the browser): it changes nothing. The open list's
        // pop-up is another widget and scrolls as usual.
        return true;
    }
    if (watched == options_ && (type == QEvent::MouseButtonPress || type == QEvent::KeyPress)) {
        optionChangedSinceInput_ = false;
    } else if (watched->objectName() == QLatin1String("lblCopyRight") && type == QEvent::MouseButtonPress) {
        return true;  // the link takes its own presses, so no window drag starts on it
    } else if (watched->objectName() == QLatin1String("lblCopyRight") && type == QEvent::MouseButtonRelease) {
        const auto* release = static_cast<QMouseEvent*>(event);
        const auto* label = static_cast<QWidget*>(watched);
        if (release->button() == Qt::LeftButton && label->rect().contains(release->position().toPoint())) {
            lblCopyRight_Click();
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

}  // namespace skin
