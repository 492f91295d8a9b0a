#pragma once
// A scripted Platform for core tests: queued answers for every modal call, a log of what
// the core asked for in order, and a settable clock and temporary folder.

#include <deque>
#include <string>
#include <vector>

#include "platform.h"

namespace skin::testing {

class FakePlatform : public Platform {
public:
    // --- script ---
    LocalDateTime clock{2026, 11, 18, 14, 26, 33};
    std::string tempFolder = "/tmp/";
    std::deque<MessageAnswer> messageAnswers;              // default when empty: Ok / Yes
    std::deque<std::optional<FileChoice>> openAnswers;     // default when empty: cancel
    std::deque<std::optional<FileChoice>> saveAnswers;     // default when empty: cancel
    std::deque<std::optional<OleColour>> colourAnswers;    // default when empty: cancel
    std::deque<std::optional<AreaKind>> menuAnswers;       // default when empty: dismissed
    std::deque<std::optional<OleColour>> screenPixels;     // default when empty: 0; nullopt: unreadable
    std::deque<std::optional<OleColour>> desktopPicks;     // default when empty: no desktop pick
    bool pickerHandsOver = false;                          // a click on the picker opens the desktop pick
    bool picturesLoad = true;                              // whether LoadPicture reads the file

    // --- record ---
    struct Message {
        std::string text, title;
        MessageIcon icon;
        MessageButtons buttons;
    };
    std::vector<Message> messages;
    std::vector<FileDialogSettings> openDialogs, saveDialogs;
    std::vector<OleColour> colourDialogStarts;
    std::vector<std::array<bool, kAreaKinds>> menusShown;
    std::vector<std::pair<SkinSide, std::string>> picturesShown;
    std::vector<std::string> webPages;
    std::vector<std::string> log;  // every call, in order, e.g. "hourglass on", "input off"
    bool hourglass = false, inputEnabled = true, pickerPointer = false;
    bool loadingPanel = false, creatingPanel = false;
    bool moveTimer = false, colourTimer = false;
    int pendingEventCalls = 0;

    LocalDateTime Now() override { return clock; }
    std::string TempFolder() override { return tempFolder; }

    MessageAnswer ShowMessage(const std::string& text, const std::string& title, MessageIcon icon,
                              MessageButtons buttons) override {
        messages.push_back({text, title, icon, buttons});
        log.push_back("message " + title);
        if (!messageAnswers.empty()) {
            MessageAnswer a = messageAnswers.front();
            messageAnswers.pop_front();
            return a;
        }
        return buttons == MessageButtons::Ok ? MessageAnswer::Ok : MessageAnswer::Yes;
    }
    std::optional<FileChoice> OpenFileDialog(const FileDialogSettings& s) override {
        openDialogs.push_back(s);
        log.push_back("open dialog");
        return pop(openAnswers);
    }
    std::optional<FileChoice> SaveFileDialog(const FileDialogSettings& s) override {
        saveDialogs.push_back(s);
        log.push_back("save dialog");
        return pop(saveAnswers);
    }
    std::optional<OleColour> ChooseColour(OleColour initial) override {
        colourDialogStarts.push_back(initial);
        log.push_back("colour dialog");
        return pop(colourAnswers);
    }
    std::optional<AreaKind> ShowNameMenu(SkinSide side, const std::array<bool, kAreaKinds>& enabled) override {
        menusShown.push_back(enabled);
        log.push_back(std::string("name menu ") + (side == SkinSide::Send ? "Send" : "Receive"));
        return pop(menuAnswers);
    }
    void SetHourglass(bool on) override {
        hourglass = on;
        log.push_back(on ? "hourglass on" : "hourglass off");
    }
    void SetMainWindowInput(bool enabled) override {
        inputEnabled = enabled;
        log.push_back(enabled ? "input on" : "input off");
    }
    void ShowBusyPanel(BusyPanel panel, bool visible) override {
        (panel == BusyPanel::Loading ? loadingPanel : creatingPanel) = visible;
        log.push_back(std::string(panel == BusyPanel::Loading ? "picLoading " : "picCreating ") +
                      (visible ? "shown" : "hidden"));
    }
    void ProcessPendingEvents() override { ++pendingEventCalls; }
    void FocusTextBox(TextBox box) override {
        log.push_back(box == TextBox::SkinName ? "focus txtSkinName" : "focus txtSkinAuthor");
    }
    void ShowMainWindowAnew() override { log.push_back("main window anew"); }
    PictureId LoadPicture(SkinSide side, const std::string& path) override {
        log.push_back("load picture " + path);
        if (!picturesLoad) return kNoPicture;
        picturesShown.emplace_back(side, path);
        return static_cast<PictureId>(picturesShown.size());
    }
    void StartTimer(EditorTimer t) override { (t == EditorTimer::MoveObject ? moveTimer : colourTimer) = true; }
    void StopTimer(EditorTimer t) override { (t == EditorTimer::MoveObject ? moveTimer : colourTimer) = false; }
    std::optional<OleColour> ScreenPixelAtPointer() override {
        if (screenPixels.empty()) return 0;
        std::optional<OleColour> c = screenPixels.front();
        if (screenPixels.size() > 1) screenPixels.pop_front();  // the last colour stays under the pointer
        return c;
    }
    std::optional<OleColour> PickColourWithDesktop() override {
        log.push_back("desktop pick");
        return pop(desktopPicks);
    }
    bool PickerHandsOverToDesktop() override { return pickerHandsOver; }
    void SetPickerPointer(bool on) override { pickerPointer = on; }
    void OpenWebPage(const std::string& url) override { webPages.push_back(url); }

private:
    template <typename T>
    static std::optional<T> pop(std::deque<std::optional<T>>& q) {
        if (q.empty()) return std::nullopt;
        auto v = q.front();
        q.pop_front();
        return v;
    }
};

}  // namespace skin::testing
