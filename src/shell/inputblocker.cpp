#include "inputblocker.h"

#include <QApplication>
#include <QEvent>
#include <QWidget>

namespace skin {
namespace {

bool IsUserInput(QEvent::Type type)
{
    switch (type) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::ShortcutOverride:
    case QEvent::ContextMenu:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TabletPress:
    case QEvent::TabletMove:
    case QEvent::TabletRelease:
        return true;
    default:
        return false;
    }
}

}  // namespace

// An application-wide filter sees every event before the widget does, including those that
// Qt hands straight to a child; it is installed only while the window is blocked.
void InputBlocker::setBlocked(bool blocked)
{
    if (blocked == blocked_) return;
    blocked_ = blocked;
    if (blocked) {
        qApp->installEventFilter(this);
    } else {
        qApp->removeEventFilter(this);
    }
}

bool InputBlocker::eventFilter(QObject* watched, QEvent* event)
{
    if (!IsUserInput(event->type()) || !watched->isWidgetType()) return false;
    return static_cast<QWidget*>(watched)->window() == &window_;
}

}  // namespace skin
