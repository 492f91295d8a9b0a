#include "windowmover.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QWindow>

namespace skin {

void WindowMover::press(const QMouseEvent* event)
{
    state_ = State::Idle;
    if (event->button() != Qt::LeftButton) return;
    grabOffset_ = event->globalPosition().toPoint() - part_->window()->frameGeometry().topLeft();
    state_ = State::Pressed;
}

// On X11 the window follows the pointer by hand, which every window manager honours and which
// keeps the drag exact: a window manager's own move (startSystemMove) starts from wherever the
// pointer is when it gets to the request, and after a quick click it may carry the window with
// a released pointer until the next click. Elsewhere (Wayland) a window can only be moved by the
// compositor, so it is asked on the first movement, never on the press.
void WindowMover::move(const QMouseEvent* event)
{
    if (state_ == State::Idle || !(event->buttons() & Qt::LeftButton)) return;
    QWidget* window = part_->window();
    if (state_ == State::Pressed) {
        QWindow* handle = window->windowHandle();
        const bool compositorMoves = QGuiApplication::platformName() != QLatin1String("xcb") && handle != nullptr &&
                                     handle->startSystemMove();
        state_ = compositorMoves ? State::Idle : State::ByHand;
        if (compositorMoves) return;
    }
    window->move(event->globalPosition().toPoint() - grabOffset_);
}

void WindowMover::release(const QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton) state_ = State::Idle;
}

DragArea::DragArea(QWidget* parent) : QWidget(parent), mover_(this) {}

void DragArea::mousePressEvent(QMouseEvent* event)
{
    mover_.press(event);
    event->accept();
}

void DragArea::mouseMoveEvent(QMouseEvent* event)
{
    mover_.move(event);
    event->accept();
}

void DragArea::mouseReleaseEvent(QMouseEvent* event)
{
    mover_.release(event);
    event->accept();
}

}  // namespace skin
