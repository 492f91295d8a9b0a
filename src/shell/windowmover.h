#pragma once
// Moving a frameless window by dragging a part of it with the left mouse button: the window
// follows the pointer until the release, by hand on X11 and by the compositor elsewhere.

#include <QPoint>
#include <QWidget>

class QMouseEvent;

namespace skin {

class WindowMover {
public:
    // `part` is the widget pressed, or the window itself; its window is the one moved.
    explicit WindowMover(QWidget* part) : part_(part) {}

    // A left press starts a drag (modifiers are ignored); other buttons do nothing.
    void press(const QMouseEvent* event);
    void move(const QMouseEvent* event);
    void release(const QMouseEvent* event);

private:
    enum class State { Idle, Pressed, ByHand };
    QWidget* part_;
    QPoint grabOffset_;  // pointer position minus the window's top-left, at the press
    State state_ = State::Idle;
};

// An invisible area of a window whose left-button presses move that window.
class DragArea : public QWidget {
    Q_OBJECT

public:
    explicit DragArea(QWidget* parent);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    WindowMover mover_;
};

}  // namespace skin
