#pragma once
// Keeps input away from one window while it is busy, without the greyed look a disabled
// widget gets: mouse, key, wheel and touch events bound for the window or any of its children
// are dropped. Other windows (dialogs, message boxes, the help window) go on taking input.

#include <QObject>

class QWidget;

namespace skin {

class InputBlocker : public QObject {
public:
    explicit InputBlocker(QWidget& window) : window_(window) {}
    void setBlocked(bool blocked);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget& window_;
    bool blocked_ = false;
};

}  // namespace skin
