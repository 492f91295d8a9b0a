#include "windowmover.h"

#include <QMouseEvent>
#include <QWindow>

namespace skin {

bool WindowMover::press(const QMouseEvent* event)
{
    byHand_ = false;
    if (event->button() != Qt::LeftButton) return false;
    QWidget* window = part_->window();
    QWindow* handle = window->windowHandle();
    if (handle != nullptr && handle->startSystemMove()) return true;
    // No window manager took the move: follow the pointer ourselves.
    grabOffset_ = event->globalPosition().toPoint() - window->frameGeometry().topLeft();
    byHand_ = true;
    return true;
}

void WindowMover::move(const QMouseEvent* event)
{
    if (byHand_ && (event->buttons() & Qt::LeftButton)) part_->window()->move(event->globalPosition().toPoint() - grabOffset_);
}

void WindowMover::release(const QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton) byHand_ = false;
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
