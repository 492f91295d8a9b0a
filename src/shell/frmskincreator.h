#pragma once
// frmSkinCreator: the frameless main window. It builds its elements from the inventory
// table, runs the start-up step, moves with a drag on its bare background, runs the
// button-face family and the options list, and owns the help window and the two timers.
// What the other operations do is plugged in through the hooks below.

#include <QPointer>
#include <QWidget>

#include <functional>
#include <memory>

#include "frmhelp.h"
#include "platform.h"
#include "windowmover.h"

class QComboBox;

namespace skin {

class FaceButton;
class QtPlatform;

class FrmSkinCreator : public QWidget {
    Q_OBJECT

public:
    explicit FrmSkinCreator(QWidget* parent = nullptr);
    ~FrmSkinCreator() override;

    // The platform every operation of this window goes through; the window's own QtPlatform
    // unless another one is set (the one set must outlive the window).
    Platform& platform() { return *platform_; }
    QtPlatform& qtPlatform() { return *ownPlatform_; }
    void setPlatform(Platform* platform);

    // Hooks. loadSkin: options item 2. timerTick: each tick of timMoveObject or tmrScreenColor.
    // startEditor: start-up steps 3 and 4 (box counts and TextFieldBox back to their start).
    // endProgram: imgClose; by default the process ends at once.
    void setLoadSkin(std::function<void()> hook) { loadSkin_ = std::move(hook); }
    void setTimerTick(std::function<void(EditorTimer)> hook) { timerTick_ = std::move(hook); }
    void setEndProgram(std::function<void()> hook) { endProgram_ = std::move(hook); }

    FaceButton* faceButton(const char* name) const;
    QComboBox* options() const { return options_; }
    FrmHelp* helpWindow() const { return help_; }
    void centreOnScreen();
    // Start-up: frame removed, fixed size, item 0 of the options list. The editor behind the
    // window starts empty on its own.
    void Form_Load();
    // After the editor has started anew (another skin): item 0 of the options list again,
    // centred on the screen, focus on the first field, as a newly loaded window. An open help
    // window stays open.
    void showAnew();

public slots:
    void cboOptions_Click();
    void lblCopyRight_Click();
    void imgMin_Click();
    void imgClose_Click();
    void showHelp();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void buildOptions();
    void selectFirstOption();
    void buildTimers();
    void wireButtons();
    void openPage(int index);

    std::unique_ptr<QtPlatform> ownPlatform_;
    Platform* platform_;
    QComboBox* options_ = nullptr;
    QPointer<FrmHelp> help_;
    WindowMover mover_;
    bool optionChangedSinceInput_ = false;  // see cboOptions' wiring in buildOptions
    std::function<void()> loadSkin_;
    std::function<void(EditorTimer)> timerTick_;
    std::function<void()> endProgram_;
};

}  // namespace skin
