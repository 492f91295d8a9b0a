#pragma once
// The Platform of the running program: Qt's message boxes, file and colour dialogs, the
// name menus, the busy indications, picture loading into the side frames, the two editor
// timers, the screen pixel under the pointer and the desktop's web browser. Every element
// it touches is a child of the main window, found by its element name.

#include <QStringList>

#include <optional>
#include <string>

#include "inputblocker.h"
#include "platform.h"
#include "screenpixelsource.h"

class QWidget;

namespace skin {

// "desc|pattern|desc|pattern|" to Qt name filters ("Graphic Files (*.bmp *.jpg *.gif)").
// A pattern "*.*" becomes "*", so that files without an extension are listed too.
QStringList ToQtNameFilters(const std::string& filter);

class QtPlatform : public Platform {
public:
    explicit QtPlatform(QWidget& mainWindow)
        : window_(mainWindow), inputBlocker_(mainWindow), pixelSource_(mainWindow) {}
    ~QtPlatform() override;

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

    bool LoadPicture(SkinSide side, const std::string& path) override;

    void StartTimer(EditorTimer timer) override;
    void StopTimer(EditorTimer timer) override;

    std::optional<OleColour> ScreenPixelAtPointer() override;
    std::optional<OleColour> PickColourWithDesktop() override;
    void SetPickerPointer(bool on) override;

    void OpenWebPage(const std::string& url) override;

private:
    std::optional<FileChoice> runFileDialog(const FileDialogSettings& settings, bool save);

    QWidget& window_;
    InputBlocker inputBlocker_;
    ScreenPixelSource pixelSource_;
    bool hourglass_ = false;      // each indication pushes one override cursor; keep them paired
    bool pickerPointer_ = false;
};

}  // namespace skin
