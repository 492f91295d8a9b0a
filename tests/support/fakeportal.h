#pragma once
// The Screenshot interface of a desktop portal for tests: PickColor answers on the request
// object named by the caller's handle token, after a short while, as the real portal does.

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusObjectPath>
#include <QObject>
#include <QVariantMap>

#include <functional>

namespace skin::testing {

class FakePortal : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Screenshot")

public:
    explicit FakePortal(QDBusConnection bus) : bus_(std::move(bus)) {}
    enum class Answer { Colour, Cancel, BadColour, Never };
    Answer answer = Answer::Colour;
    double rgb[3] = {1.0, 0.2, 0.0};
    int calls = 0;
    std::function<void()> onCall;  // after each PickColor has been counted

    // Serves the portal's object and well-known name on the connection.
    bool serve();

public slots:
    QDBusObjectPath PickColor(const QString& parentWindow, const QVariantMap& options);

private:
    QDBusConnection bus_;
};

}  // namespace skin::testing
