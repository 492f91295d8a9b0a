#pragma once
// QtPlatform answers the core's requests of the desktop with Qt: modal boxes, dialogs and
// menus, the busy state, reading pictures, the two editor timers, the screen pixel and web
// pages. It shows no model state: the view paints the widgets.

#include <QObject>
#include <QPointer>
#include <QStringList>

#include <optional>
#include <string>
#include <utility>

#include "inputblocker.h"
#include "mainlayout.h"
#include "picturestore.h"
#include "platform.h"
#include "screenpixelsource.h"

class QTimer;
class QWidget;

namespace skin {

// "desc|pattern|desc|pattern|" to Qt name filters ("Graphic Files (*.bmp *.jpg *.gif)").
// A pattern "*.*" becomes "*", so that files without an extension are listed too.
QStringList ToQtNameFilters(const std::string& filter);

class QtPlatform : public QObject, public Platform {
    Q_OBJECT

public:
    // `widgets` are the main window's elements that the busy state, the name menus and the
    // focus requests use; dialogs and message boxes open over `mainWindow`.
    QtPlatform(QWidget& mainWindow, const MainWidgets& widgets);
    ~QtPlatform() override;

    const PictureStore& pictures() const { return pictures_; }
    // A window that stays on top of all others (the help window): while it is shown, modal
    // boxes and dialogs open over it instead of the main window. Forgotten when it is deleted.
    void setAlwaysOnTopWindow(QWidget* window) { onTop_ = window; }

    LocalDateTime Now() override;
    std::string TempFolder() override;

    MessageAnswer ShowMessage(const std::string& text, const std::string& title, MessageIcon icon,
                              MessageButtons buttons) override;
    std::optional<FileChoice> OpenFileDialog(const FileDialogSettings& settings) override;
    std::optional<FileChoice> SaveFileDialog(const FileDialogSettings& settings) override;
    std::optional<OleColour> ChooseColour(OleColour initial) override;
    std::optional<AreaKind> ShowNameMenu(SkinSide side, const std::array<bool, kAreaKinds>& enabled) override;

    void SetHourglass(bool on) override;
    void SetMainWindowInput(bool enabled) override;
    void ShowBusyPanel(BusyPanel panel, bool visible) override;
    void ProcessPendingEvents() override;
    void FocusTextBox(TextBox box) override;
    void ShowMainWindowAnew() override;

    PictureId LoadPicture(SkinSide side, const std::string& path) override;

    void StartTimer(EditorTimer timer) override;
    void StopTimer(EditorTimer timer) override;

    std::optional<OleColour> ScreenPixelAtPointer() override;
    std::optional<OleColour> PickColourWithDesktop() override;
    bool PickerHandsOverToDesktop() override;
    void SetPickerPointer(bool on) override;

    void OpenWebPage(const std::string& url) override;

    // A file chosen before any dialog (on the command line, by a drop): while set, an open
    // dialog is not shown and returns this choice, so the operation that asks for a file runs
    // on it unchanged. Cleared with nullopt.
    void setChosenFile(std::optional<FileChoice> choice) { chosenFile_ = std::move(choice); }

signals:
    // timMoveObject (50 ms) or tmrScreenColor (1 ms) ticked.
    void timerTicked(skin::EditorTimer timer);
    // The core has started anew: the window is to show itself as newly loaded.
    void mainWindowAnewRequested();

private:
    QWidget& modalOwner();
    std::optional<FileChoice> runFileDialog(const FileDialogSettings& settings, bool save);
    QTimer* timer(EditorTimer which) const;

    QWidget& window_;
    QPointer<QWidget> onTop_;
    MainWidgets widgets_;
    InputBlocker inputBlocker_;
    ScreenPixelSource pixelSource_;
    PictureStore pictures_;
    QTimer* moveObject_ = nullptr;   // timMoveObject
    QTimer* screenColour_ = nullptr; // tmrScreenColor
    bool hourglass_ = false;      // each indication pushes one override cursor; keep them paired
    bool pickerPointer_ = false;
    std::optional<FileChoice> chosenFile_;
};

}  // namespace skin
