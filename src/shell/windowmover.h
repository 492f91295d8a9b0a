#pragma once
// Moving a frameless window by dragging a part of it with the left mouse button. The window
// manager is asked to take the move (QWindow::startSystemMove); where none offers it, as on
// a bare X server, the window follows the pointer by hand until the button is released.

#include <QPoint>
#include <QWidget>

class QMouseEvent;

namespace skin {

class WindowMover {
public:
    // `part` is the widget pressed, or the window itself; its window is the one moved.
    explicit WindowMover(QWidget* part) : part_(part) {}

    // True when the press started a move (left button only; modifiers are ignored).
    bool press(const QMouseEvent* event);
    void move(const QMouseEvent* event);
    void release(const QMouseEvent* event);
    bool movingByHand() const { return byHand_; }

private:
    QWidget* part_;
    QPoint grabOffset_;  // pointer position minus the window's top-left, at the press
    bool byHand_ = false;
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
