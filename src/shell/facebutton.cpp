#include "facebutton.h"

#include <QMouseEvent>

#include "art.h"

namespace skin {

FaceButton::FaceButton(const QString& tag, QWidget* parent) : QLabel(parent), tag_(tag)
{
    showFace(tag_);
}

void FaceButton::showFace(const QString& key)
{
    face_ = key;
    setPixmap(Face(key));
}

// FacePressed: any mouse button, any modifier.
void FaceButton::mousePressEvent(QMouseEvent* event)
{
    if (autoFace_) showFace(PressedKey(tag_));
    event->accept();
    emit pressed(event->button());
}

// FaceReleased, then the click: the click's action runs with the normal face showing.
void FaceButton::mouseReleaseEvent(QMouseEvent* event)
{
    if (autoFace_) showFace(NormalKey(tag_));
    event->accept();
    emit released(event->button());
    if (event->button() == Qt::LeftButton && rect().contains(event->position().toPoint())) emit clicked();
}

}  // namespace skin
