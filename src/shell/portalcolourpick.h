#pragma once
// The desktop's own colour pick through the desktop portal (org.freedesktop.portal.Screenshot,
// method PickColor): the portal lets the designer pick a pixel anywhere on the screen, also
// where a Wayland session lets no program read it, and answers with a Response signal on the
// request object it returns.

#include <QColor>
#include <QObject>
#include <QString>
#include <QVariantMap>

#include <optional>

namespace skin {

class PortalColourPick {
public:
    // The portal on the session bus; tests give a named connection and service of their own.
    PortalColourPick() = default;
    PortalColourPick(QString connectionName, QString service);

    // Whether a portal runs on the bus or the bus can start one. Without a session bus, false.
    bool available() const;
    // Runs the pick and waits for its answer in a nested event loop; nullopt when no portal
    // answers, or the designer cancelled, or the portal failed or went away meanwhile.
    std::optional<QColor> pick() const;

private:
    QString connectionName_;  // empty: the session bus
    QString service_ = QStringLiteral("org.freedesktop.portal.Desktop");
};

namespace portal_detail {

// Receives the request's Response signal (QtDBus connects signals to slots only).
class ResponseReceiver : public QObject {
    Q_OBJECT

public:
    bool answered = false;
    uint response = 2;  // 0 success, 1 cancelled, 2 other
    QVariantMap results;

signals:
    void done();

public slots:
    void onResponse(uint code, const QVariantMap& values);
};

}  // namespace portal_detail
}  // namespace skin
