#pragma once
// Files that reach the main window from outside its dialogs: the file named on the command
// line, and local files dragged onto the window (freedesktop drag and drop, text/uri-list).
// Each runs the operation that would have asked for it, as if chosen in that operation's
// open dialog: a skin package or skin information file loads as "[Load a Skin to Edit]"
// loads it, a picture dropped on a side's frame as that side's folder button loads it.
// Nothing is taken while the window is busy or a dialog, message or menu is open.

#include <QObject>
#include <QPoint>
#include <QString>

#include <optional>

#include "skindocument.h"

class QDropEvent;
class QMimeData;
class QWidget;

namespace skin {

class Editor;
class FrmSkinCreator;

class FileOpener : public QObject {
    Q_OBJECT

public:
    // What a drop would do.
    struct Opening {
        enum class Kind { SkinFile, Picture };
        Kind kind = Kind::SkinFile;
        SkinSide side = SkinSide::Send;  // Picture: the side whose frame it lands on
        QString path;                    // absolute
    };

    // A child of the window; takes drops on the window and on every element of it.
    FileOpener(FrmSkinCreator& window, Editor& editor);

    // Loads the file once the event loop runs, that is after the window is shown.
    void openWhenShown(const QString& path);

    // The opening a drag of `data` would start at a point of the window (window pixels);
    // nullopt where it would be refused: not one local file, a folder, no skin file and no
    // picture, a picture outside the frames, or the window busy.
    std::optional<Opening> openingAt(const QMimeData& data, QPoint windowPoint) const;

    // Runs an opening now, unless the window is busy.
    void open(const Opening& opening);

    bool busy() const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void watchDrops(QObject& element);
    // A drag entering, moving over or dropped on a watched element; false leaves it to the element.
    bool dragEvent(QWidget& watched, QDropEvent& drag);

    FrmSkinCreator& window_;
    Editor& editor_;
    bool pending_ = false;  // an accepted drop or the command-line file waits for the event loop
    bool running_ = false;
};

}  // namespace skin
