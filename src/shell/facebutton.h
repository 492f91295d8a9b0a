#pragma once
// An image button that shows one of the program's button faces. Its tag is the key of the
// face it shows while no mouse button is held on it. By default it swaps faces itself: a
// press of any mouse button shows the tag with "OFF" replaced by "ON", the release shows the
// tag with "ON" replaced by "OFF"; the tag never changes. Owners with their own face rules
// (arrow pad, lock, picker, colour switches) turn the swap off and call showFace themselves.

#include <QLabel>
#include <QString>

class QMouseEvent;

namespace skin {

class FaceButton : public QLabel {
    Q_OBJECT
    Q_PROPERTY(QString tag READ tag WRITE setTag)
    Q_PROPERTY(QString face READ face)

public:
    explicit FaceButton(const QString& tag, QWidget* parent = nullptr);

    QString tag() const { return tag_; }
    // Only the state changes; the face shown stays until showFace or the next press.
    void setTag(const QString& tag) { tag_ = tag; }
    QString face() const { return face_; }
    void showFace(const QString& key);

    bool autoFace() const { return autoFace_; }
    void setAutoFace(bool on) { autoFace_ = on; }

    static QString PressedKey(QString tag) { return tag.replace(QStringLiteral("OFF"), QStringLiteral("ON")); }
    static QString NormalKey(QString tag) { return tag.replace(QStringLiteral("ON"), QStringLiteral("OFF")); }

signals:
    void pressed(Qt::MouseButton button);
    void released(Qt::MouseButton button);
    // A left-button release over the button; emitted after released, so the normal face shows.
    void clicked();

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    QString tag_;
    QString face_;
    bool autoFace_ = true;
};

}  // namespace skin
