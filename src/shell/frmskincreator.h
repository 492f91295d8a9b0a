#pragma once
// frmSkinCreator: the frameless main window. It builds its elements from the inventory
// table, runs the start-up step, moves with a drag on its bare background, runs the
// button-face family and the options list, and owns the help window and its platform
// adapter. What the editing operations do is wired from outside, through its element
// handles and its signals.

#include <QPointer>
#include <QWidget>

#include <memory>

#include "frmhelp.h"
#include "mainlayout.h"
#include "platform.h"
#include "windowmover.h"

class QComboBox;

namespace skin {

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

    const MainWidgets& widgets() const { return widgets_; }
    QComboBox* options() const { return widgets_.cboOptions; }
    FrmHelp* helpWindow() const { return help_; }
    void centreOnScreen();
    // Start-up: frame removed, fixed size, item 0 of the options list. The editor behind the
    // window starts empty on its own.
    void Form_Load();
    // After the editor has started anew (another skin): item 0 of the options list again,
    // centred on the screen, focus on the first field, as a newly loaded window. An open help
    // window stays open.
    void showAnew();

signals:
    // Options item 2, "[Load a Skin to Edit]".
    void loadSkinRequested();
    // imgClose clicked: the program is to end at once (the program connects it).
    void endProgramRequested();

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
    void wireButtons();
    void openPage(int index);

    MainWidgets widgets_;
    std::unique_ptr<QtPlatform> ownPlatform_;
    Platform* platform_;
    QPointer<FrmHelp> help_;
    WindowMover mover_;
    bool optionChangedSinceInput_ = false;  // see cboOptions' wiring in buildOptions
};

}  // namespace skin
