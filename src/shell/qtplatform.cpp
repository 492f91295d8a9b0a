#include "qtplatform.h"

#include <QApplication>
#include <QColorDialog>
#include <QDateTime>
#include <QDesktopServices>
#include <QFileDialog>
#include <QFileInfo>
#include <QImageReader>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPixmap>
#include <QTimer>
#include <QUrl>


#include "art.h"
#include "facebutton.h"
#include "packagesupport.h"
#include "qtcolour.h"

namespace skin {

namespace {

// File dialog flags, in the common dialog's numbering.
constexpr int kOverwritePrompt = 0x2;
constexpr int kFileMustExist = 0x1000;

QString Q(const std::string& text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

// Strips a trailing "(...)" from a filter description; the patterns follow in Qt's form.
QString BareDescription(QString description)
{
    description = description.trimmed();
    if (description.endsWith(QLatin1Char(')'))) {
        const qsizetype open = description.lastIndexOf(QLatin1Char('('));
        if (open > 0) description = description.left(open).trimmed();
    }
    return description;
}

constexpr int kMoveObjectInterval = 50;  // ms
constexpr int kScreenColourInterval = 1;

QTimer* MakeTimer(QObject* owner, const char* name, int interval)
{
    auto* timer = new QTimer(owner);
    timer->setObjectName(QString::fromUtf8(name));
    timer->setInterval(interval);
    return timer;
}

}  // namespace

QStringList ToQtNameFilters(const std::string& filter)
{
    const QStringList parts = Q(filter).split(QLatin1Char('|'));
    QStringList filters;
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
        QStringList patterns;
        for (const QString& pattern : parts[i + 1].split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
            const QString trimmed = pattern.trimmed();
            if (!trimmed.isEmpty()) patterns << (trimmed == QLatin1String("*.*") ? QStringLiteral("*") : trimmed);
        }
        if (patterns.isEmpty()) continue;
        filters << BareDescription(parts[i]) + QStringLiteral(" (") + patterns.join(QLatin1Char(' ')) +
                       QLatin1Char(')');
    }
    return filters;
}

QtPlatform::QtPlatform(QWidget& mainWindow, const MainWidgets& widgets)
    : QObject(&mainWindow),
      window_(mainWindow),
      widgets_(widgets),
      inputBlocker_(mainWindow),
      pixelSource_(mainWindow)
{
    moveObject_ = MakeTimer(this, "timMoveObject", kMoveObjectInterval);
    screenColour_ = MakeTimer(this, "tmrScreenColor", kScreenColourInterval);
    connect(moveObject_, &QTimer::timeout, this, [this] { emit timerTicked(EditorTimer::MoveObject); });
    connect(screenColour_, &QTimer::timeout, this, [this] { emit timerTicked(EditorTimer::ScreenColour); });
}

QtPlatform::~QtPlatform()
{
    SetPickerPointer(false);
    SetHourglass(false);
}

// The help window stays on top of every other window, so whatever modal thing opens while it
// is shown belongs to it: a window manager then keeps it in the help window's layer, above
// the help window (also when the help window is raised), and without one it maps on top.
// A box hidden under the help window would leave the main window taking no input, for no
// visible reason.
QWidget& QtPlatform::modalOwner()
{
    if (onTop_ != nullptr && onTop_->isVisible()) return *onTop_;
    return window_;
}

LocalDateTime QtPlatform::Now()
{
    const QDateTime now = QDateTime::currentDateTime();
    const QDate date = now.date();
    const QTime time = now.time();
    return {date.year(), date.month(), date.day(), time.hour(), time.minute(), time.second()};
}

std::string QtPlatform::TempFolder()
{
    return SystemTempFolder();
}

MessageAnswer QtPlatform::ShowMessage(const std::string& text, const std::string& title, MessageIcon icon,
                                      MessageButtons buttons)
{
    QMessageBox::Icon boxIcon = QMessageBox::Information;
    if (icon == MessageIcon::Question) boxIcon = QMessageBox::Question;
    if (icon == MessageIcon::Exclamation) boxIcon = QMessageBox::Warning;
    QString body = Q(text);
    body.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    QMessageBox box(boxIcon, Q(title), body, QMessageBox::NoButton, &modalOwner());
    if (buttons == MessageButtons::YesNo) {
        box.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
        box.setDefaultButton(QMessageBox::Yes);
        box.setEscapeButton(QMessageBox::No);
        return box.exec() == QMessageBox::Yes ? MessageAnswer::Yes : MessageAnswer::No;
    }
    box.setStandardButtons(QMessageBox::Ok);
    box.setDefaultButton(QMessageBox::Ok);
    box.exec();
    return MessageAnswer::Ok;
}

std::optional<FileChoice> QtPlatform::runFileDialog(const FileDialogSettings& settings, bool save)
{
    QFileDialog dialog(&modalOwner());
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    if (!settings.title.empty()) dialog.setWindowTitle(Q(settings.title));
    const QStringList filters = ToQtNameFilters(settings.filter);
    if (!filters.isEmpty()) {
        dialog.setNameFilters(filters);
        const qsizetype chosen = settings.filterIndex - 1;
        dialog.selectNameFilter(filters[chosen >= 0 && chosen < filters.size() ? chosen : 0]);
    }
    // Only the flags given add checks of the dialog's own: without them any typed name comes
    // back, a missing file included, and the caller reports what it cannot use.
    dialog.setAcceptMode(save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog.setFileMode((settings.flags & kFileMustExist) != 0 ? QFileDialog::ExistingFile : QFileDialog::AnyFile);
    dialog.setOption(QFileDialog::DontConfirmOverwrite, (settings.flags & kOverwritePrompt) == 0);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return std::nullopt;
    const QString path = dialog.selectedFiles().constFirst();
    return FileChoice{path.toStdString(), QFileInfo(path).fileName().toStdString()};
}

std::optional<FileChoice> QtPlatform::OpenFileDialog(const FileDialogSettings& settings)
{
    if (chosenFile_) return chosenFile_;
    return runFileDialog(settings, false);
}

std::optional<FileChoice> QtPlatform::SaveFileDialog(const FileDialogSettings& settings)
{
    return runFileDialog(settings, true);
}

std::optional<OleColour> QtPlatform::ChooseColour(OleColour initial)
{
    const QColor chosen =
        QColorDialog::getColor(ToQColor(initial), &modalOwner(), QString(), QColorDialog::DontUseNativeDialog);
    if (!chosen.isValid()) return std::nullopt;
    return ToOle(chosen);
}

std::optional<AreaKind> QtPlatform::ShowNameMenu(SkinSide side, const std::array<bool, kAreaKinds>& enabled)
{
    QMenu* menu = widgets_.nameMenus[side == SkinSide::Send ? 0 : 1];
    if (menu == nullptr) return std::nullopt;
    for (QAction* item : menu->actions()) {
        const QVariant kind = item->data();
        if (kind.isValid()) item->setEnabled(enabled[static_cast<std::size_t>(kind.toInt())]);
    }
    const QAction* chosen = menu->exec(QCursor::pos());
    if (chosen == nullptr || !chosen->data().isValid()) return std::nullopt;  // dismissed or "Cancel"
    return chosen->data().toInt();
}

void QtPlatform::SetHourglass(bool on)
{
    if (on == hourglass_) return;
    // Keep the pointer stack in order: the picker pointer, if on, sits above the hourglass.
    if (pickerPointer_) QApplication::restoreOverrideCursor();
    if (on) {
        QApplication::setOverrideCursor(Qt::WaitCursor);
    } else {
        QApplication::restoreOverrideCursor();
    }
    if (pickerPointer_) QApplication::setOverrideCursor(PickerCursor());
    hourglass_ = on;
}

void QtPlatform::SetMainWindowInput(bool enabled)
{
    inputBlocker_.setBlocked(!enabled);
}

void QtPlatform::ShowBusyPanel(BusyPanel panel, bool visible)
{
    QWidget* shown = panel == BusyPanel::Loading ? widgets_.picLoading : widgets_.picCreating;
    if (shown == nullptr) return;
    shown->setVisible(visible);
    if (visible) shown->raise();
}

void QtPlatform::ProcessPendingEvents()
{
    QCoreApplication::processEvents();
}

void QtPlatform::FocusTextBox(TextBox box)
{
    QLineEdit* field = box == TextBox::SkinName ? widgets_.txtSkinName : widgets_.txtSkinAuthor;
    if (field != nullptr) field->setFocus(Qt::OtherFocusReason);
}

void QtPlatform::ShowMainWindowAnew()
{
    emit mainWindowAnewRequested();
}

PictureId QtPlatform::LoadPicture(SkinSide side, const std::string& path)
{
    QImageReader reader(Q(path));
    // Shown as stored, as the client draws it: turning a photo by its orientation tag would
    // put the areas drawn on it somewhere else in the client's window.
    reader.setAutoTransform(false);
    const QImage image = reader.read();
    if (image.isNull()) return kNoPicture;
    // Stretched to fill the frame exactly, in device pixels so that it stays sharp.
    const QLabel& frame = *widgets_.pictureFrames[side == SkinSide::Send ? 0 : 1];
    const qreal ratio = frame.devicePixelRatioF();
    QPixmap prepared =
        QPixmap::fromImage(image.scaled(frame.size() * ratio, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
    prepared.setDevicePixelRatio(ratio);
    return pictures_.add(std::move(prepared));
}

QTimer* QtPlatform::timer(EditorTimer which) const
{
    return which == EditorTimer::MoveObject ? moveObject_ : screenColour_;
}

void QtPlatform::StartTimer(EditorTimer which)
{
    timer(which)->start();
}

void QtPlatform::StopTimer(EditorTimer which)
{
    timer(which)->stop();
}

std::optional<OleColour> QtPlatform::ScreenPixelAtPointer()
{
    const std::optional<QColor> colour = pixelSource_.colourAt(QCursor::pos());
    if (!colour) return std::nullopt;
    return ToOle(*colour);
}

// The main window takes no input while the desktop's pick runs in its nested event loop.
std::optional<OleColour> QtPlatform::PickColourWithDesktop()
{
    inputBlocker_.setBlocked(true);
    const std::optional<QColor> colour = pixelSource_.pickWithDesktop();
    inputBlocker_.setBlocked(false);
    if (!colour) return std::nullopt;
    return ToOle(*colour);
}

bool QtPlatform::PickerHandsOverToDesktop()
{
    QWidget* picker = widgets_.imgPicker;
    if (!picker->rect().contains(picker->mapFromGlobal(QCursor::pos()))) return false;
    return CurrentPickerReach() == PickerReach::OwnWindowsAndDesktop;
}

// While a mouse button is held Qt keeps showing the pressed widget's pointer, so the picker
// pointer goes on the override stack as well as on the window.
void QtPlatform::SetPickerPointer(bool on)
{
    if (on == pickerPointer_) return;
    if (on) {
        window_.setCursor(PickerCursor());
        QApplication::setOverrideCursor(PickerCursor());
    } else {
        QApplication::restoreOverrideCursor();
        window_.unsetCursor();
    }
    pickerPointer_ = on;
}

void QtPlatform::OpenWebPage(const std::string& url)
{
    QDesktopServices::openUrl(QUrl(Q(url)));  // failures are not reported
}

}  // namespace skin
