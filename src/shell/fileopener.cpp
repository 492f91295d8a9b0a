#include "fileopener.h"

#include <QApplication>
#include <QDropEvent>
#include <QFileInfo>
#include <QImageReader>
#include <QLabel>
#include <QMimeData>
#include <QTimer>
#include <QUrl>

#include "editor.h"
#include "frmskincreator.h"
#include "qtplatform.h"
#include "skinloading.h"
#include "slotguard.h"

namespace skin {
namespace {

// Skin packages and skin information files are known by name, as in the load dialog's filter.
bool IsSkinFileName(const QString& path)
{
    const QString suffix = QFileInfo(path).suffix();
    return suffix.compare(QLatin1String("bsz"), Qt::CaseInsensitive) == 0 ||
           suffix.compare(QLatin1String("bsi"), Qt::CaseInsensitive) == 0;
}

// Pictures are known by content: whatever the frames' picture loader can read.
bool IsPicture(const QString& path)
{
    return QImageReader(path).canRead();
}

// The one local file of a drag; nullopt for several files, a remote address or no file.
std::optional<QFileInfo> OneLocalFile(const QMimeData& data)
{
    if (!data.hasUrls()) return std::nullopt;
    const QList<QUrl> urls = data.urls();
    if (urls.size() != 1 || !urls.front().isLocalFile()) return std::nullopt;
    const QFileInfo file(urls.front().toLocalFile());
    if (!file.isFile()) return std::nullopt;
    return file;
}

bool IsDragEvent(QEvent::Type type)
{
    return type == QEvent::DragEnter || type == QEvent::DragMove || type == QEvent::Drop;
}

}  // namespace

FileOpener::FileOpener(FrmSkinCreator& window, Editor& editor) : QObject(&window), window_(window), editor_(editor)
{
    // Drops on any element reach the window, except on elements that take drops themselves
    // (the text boxes take dragged text): those are watched too, so that a dragged file never
    // ends up as text in them.
    window_.setAcceptDrops(true);
    watchDrops(window_);
    for (QWidget* element : window_.findChildren<QWidget*>()) {
        if (element->acceptDrops()) watchDrops(*element);
    }
}

void FileOpener::watchDrops(QObject& element)
{
    element.installEventFilter(this);
}

bool FileOpener::busy() const
{
    // The busy panels stand for the busy state of a package creation or a skin load; an open
    // dialog, message box or menu runs its own event loop inside an operation.
    const MainWidgets& widgets = window_.widgets();
    for (const QWidget* panel : {widgets.picLoading, widgets.picCreating}) {
        if (panel != nullptr && panel->isVisibleTo(&window_)) return true;
    }
    return pending_ || running_ || QApplication::activeModalWidget() != nullptr ||
           QApplication::activePopupWidget() != nullptr;
}

std::optional<FileOpener::Opening> FileOpener::openingAt(const QMimeData& data, QPoint windowPoint) const
{
    if (busy()) return std::nullopt;
    const std::optional<QFileInfo> file = OneLocalFile(data);
    if (!file) return std::nullopt;
    const QString path = file->absoluteFilePath();
    if (IsSkinFileName(path)) return Opening{Opening::Kind::SkinFile, SkinSide::Send, path};
    for (SkinSide side : {SkinSide::Send, SkinSide::Receive}) {
        const QLabel* frame = window_.widgets().pictureFrames[SideIndex(side)];
        if (frame != nullptr && frame->geometry().contains(windowPoint) && IsPicture(path)) {
            return Opening{Opening::Kind::Picture, side, path};
        }
    }
    return std::nullopt;
}

void FileOpener::openWhenShown(const QString& path)
{
    pending_ = true;
    const Opening opening{Opening::Kind::SkinFile, SkinSide::Send, QFileInfo(path).absoluteFilePath()};
    QTimer::singleShot(0, this, [this, opening] {
        pending_ = false;
        open(opening);
    });
}

void FileOpener::open(const Opening& opening)
{
    if (busy()) return;
    running_ = true;
    QtPlatform& platform = window_.qtPlatform();
    platform.setChosenFile(FileChoice{opening.path.toStdString(), QFileInfo(opening.path).fileName().toStdString()});
    Guard([&] {
        if (opening.kind == Opening::Kind::SkinFile) {
            LoadSkin(editor_, window_.platform());
        } else {
            editor_.LoadSkinPicture(opening.side);
        }
    });
    platform.setChosenFile(std::nullopt);
    running_ = false;
}

// Qt hands the moves and the drop of a drag only to a widget that accepted its entry, and
// follows every entry at once with a move. So an entry is accepted whenever some place of the
// window could take the file, even while busy, and each move and the drop then decide for
// their own place, which the pointer shows. The drop's work waits for the event loop, so the
// dragging program hears at once that the drop is done and is not held up by messages.
bool FileOpener::eventFilter(QObject* watched, QEvent* event)
{
    if (!IsDragEvent(event->type()) || !watched->isWidgetType()) return false;
    bool filtered = false;
    Guard([&] { filtered = dragEvent(*static_cast<QWidget*>(watched), *static_cast<QDropEvent*>(event)); });
    return filtered;
}

bool FileOpener::dragEvent(QWidget& watched, QDropEvent& drag)
{
    const QMimeData* data = drag.mimeData();
    if (data == nullptr || !data->hasUrls()) return false;  // dragged text stays the text boxes' own

    std::optional<Opening> opening;
    bool taken = false;
    if (drag.type() == QEvent::DragEnter) {
        const std::optional<QFileInfo> file = OneLocalFile(*data);
        taken = file && (IsSkinFileName(file->fileName()) || IsPicture(file->absoluteFilePath()));
    } else {
        opening = openingAt(*data, watched.mapTo(&window_, drag.position().toPoint()));
        taken = opening.has_value();
    }
    if (!taken) {
        drag.ignore();
        return true;
    }
    drag.setDropAction(Qt::CopyAction);
    drag.accept();
    if (drag.type() == QEvent::Drop) {
        pending_ = true;
        QTimer::singleShot(0, this, [this, dropped = *opening] {
            pending_ = false;
            open(dropped);
        });
    }
    return true;
}

}  // namespace skin
