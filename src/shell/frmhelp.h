#pragma once
// frmHelp: the always-on-top how-to window. Frameless, owned by the main window, moved by
// its four drag areas; its close button destroys it, so showing it again builds it anew.

#include <QString>
#include <QWidget>

class QLabel;

namespace skin {

class FrmHelp : public QWidget {
    Q_OBJECT

public:
    // owner: the main window, over which the help window stays and with which it goes. The
    // owner is the window system's transient parent, not a Qt parent, so that the help window
    // stays usable while the main window's input is off.
    explicit FrmHelp(QWidget* owner);

    // The footer: a fixed head naming the maker and its site, then "Version " and
    // major.minor.revision of the program.
    static QString FooterText();

public slots:
    void imgClose_Click();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void Form_Load();
    void buildStrips();
    void buildSteps();

    QLabel* footer_ = nullptr;  // lblFooter
};

}  // namespace skin
