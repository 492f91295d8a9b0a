#include "frmskincreator.h"

#include <QComboBox>
#include <QEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>

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

}  // namespace

FrmSkinCreator::FrmSkinCreator(QWidget* parent)
    : QWidget(parent),
      widgets_(BuildMainElements(this)),
      ownPlatform_(std::make_unique<QtPlatform>(*this, widgets_)),
      platform_(ownPlatform_.get()),
      mover_(this)
{
    setObjectName(QStringLiteral("frmSkinCreator"));
    setWindowTitle(QStringLiteral("Brindleway Skin Framewright"));
    setWindowIcon(WindowIcon());
    // A click on the background or on an element that takes no focus itself (a picture, an
    // area, a label, a button face) takes the focus out of the name and author boxes, so the
    // editing keys reach the window.
    setFocusPolicy(Qt::ClickFocus);
    buildOptions();
    wireButtons();
    connect(ownPlatform_.get(), &QtPlatform::mainWindowAnewRequested, this, &FrmSkinCreator::showAnew);
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
    widgets_.cboOptions->setCurrentIndex(-1);
    widgets_.cboOptions->setCurrentIndex(kOptionSelect);
}

// The window as if unloaded and loaded again, once the editor behind it has started anew.
// The help window is a window of its own and stays: only its close button or the program's
// end closes it.
void FrmSkinCreator::showAnew()
{
    selectFirstOption();
    centreOnScreen();
    activateWindow();
    widgets_.txtSkinName->setFocus();  // first in the tab order
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
    QComboBox* options = widgets_.cboOptions;
    options->addItems(OptionItems());
    options->installEventFilter(this);
    connect(options, &QComboBox::currentIndexChanged, this, [this] {
        optionChangedSinceInput_ = true;
        cboOptions_Click();
    });
    connect(options, &QComboBox::activated, this, [this] {
        if (!std::exchange(optionChangedSinceInput_, false)) cboOptions_Click();
    });

    setTabOrder(widgets_.txtSkinName, widgets_.txtSkinAuthor);
    setTabOrder(widgets_.txtSkinAuthor, options);
    widgets_.txtSkinName->setFocus();

    widgets_.lblCopyRight->installEventFilter(this);
}

// The eight members of the button-face family swap faces themselves; the arrow pad, lock,
// picker and colour switches show the faces the view gives them.
void FrmSkinCreator::wireButtons()
{
    for (FaceButton* member : widgets_.FaceFamily()) member->setAutoFace(true);
    for (FaceButton* own : widgets_.imgArrMove) own->setAutoFace(false);
    for (FaceButton* own : {widgets_.imgLock, widgets_.imgPicker, widgets_.imgText, widgets_.imgMap}) {
        own->setAutoFace(false);
    }
    connect(widgets_.imgMin, &FaceButton::clicked, this, &FrmSkinCreator::imgMin_Click);
    connect(widgets_.imgClose, &FaceButton::clicked, this, &FrmSkinCreator::imgClose_Click);
}

void FrmSkinCreator::cboOptions_Click()
{
    // Every failing step is skipped: nothing from here reaches the designer.
    Guard([this] {
        const int index = widgets_.cboOptions->currentIndex();
        switch (index) {
        case kOptionHelp: showHelp(); break;
        case kOptionLoadSkin: emit loadSkinRequested(); break;
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
        ownPlatform_->setAlwaysOnTopWindow(help_);
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
    emit endProgramRequested();
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
    if (watched == widgets_.cboOptions && type == QEvent::Wheel) {
        // A wheel turned over the closed list would step through its items and run each one
        // (the help window, the load dialog, the browser): it changes nothing. The open list's
        // pop-up is another widget and scrolls as usual.
        return true;
    }
    if (watched == widgets_.cboOptions && (type == QEvent::MouseButtonPress || type == QEvent::KeyPress)) {
        optionChangedSinceInput_ = false;
    } else if (watched == widgets_.lblCopyRight && type == QEvent::MouseButtonPress) {
        return true;  // the link takes its own presses, so no window drag starts on it
    } else if (watched == widgets_.lblCopyRight && type == QEvent::MouseButtonRelease) {
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
