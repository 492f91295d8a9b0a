#include "windowmover.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QWindow>

namespace skin {

void WindowMover::press(const QMouseEvent* event)
{
    state_ = State::Idle;
    if (event->button() != Qt::LeftButton) return;
    // A Wayland compositor moves a window only on request, and keeps the pointer's offset from
    // the moment it gets it: asked at the press, the window moves by the whole drag. It refuses
    // a request whose press has already been released, so a quick click moves nothing.
    QWindow* handle = part_->window()->windowHandle();
    if (QGuiApplication::platformName().startsWith(QLatin1String("wayland")) && handle != nullptr &&
        handle->startSystemMove()) {
        return;
    }
    grabOffset_ = event->globalPosition().toPoint() - part_->window()->frameGeometry().topLeft();
    state_ = State::Pressed;
}

// On X11 the window follows the pointer by hand, which every window manager honours and which
// keeps the drag exact: a window manager's own move (startSystemMove) starts from wherever the
// pointer is when it gets to the request, and after a quick click it may carry the window with
// a released pointer until the next click. Where the window cannot be moved by hand and no
// Wayland compositor took the press, the window system is asked on the first movement.
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
