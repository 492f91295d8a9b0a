#include "portalcolourpick.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QEventLoop>

namespace skin {

namespace {

const QString kRequestInterface = QStringLiteral("org.freedesktop.portal.Request");

QDBusConnection Bus(const QString& name)
{
    return name.isEmpty() ? QDBusConnection::sessionBus() : QDBusConnection(name);
}

// The colour of a successful answer: "color" holds a (ddd) struct of sRGB values 0 to 1.
std::optional<QColor> ColourOf(const QVariantMap& results)
{
    const QVariant value = results.value(QStringLiteral("color"));
    if (!value.canConvert<QDBusArgument>()) return std::nullopt;
    const auto argument = value.value<QDBusArgument>();
    if (argument.currentType() != QDBusArgument::StructureType) return std::nullopt;
    double rgb[3] = {-1, -1, -1};
    argument.beginStructure();
    for (double& channel : rgb) {
        if (argument.atEnd()) return std::nullopt;
        argument >> channel;
    }
    argument.endStructure();
    for (double channel : rgb) {
        if (!(channel >= 0.0 && channel <= 1.0)) return std::nullopt;  // NaN fails too
    }
    return QColor::fromRgbF(static_cast<float>(rgb[0]), static_cast<float>(rgb[1]), static_cast<float>(rgb[2]));
}

}  // namespace

namespace portal_detail {

void ResponseReceiver::onResponse(uint code, const QVariantMap& values)
{
    if (answered) return;
    answered = true;
    response = code;
    results = values;
    emit done();
}

}  // namespace portal_detail

PortalColourPick::PortalColourPick(QString connectionName, QString service)
    : connectionName_(std::move(connectionName)), service_(std::move(service))
{
}

bool PortalColourPick::available() const
{
    const QDBusConnection bus = Bus(connectionName_);
    if (!bus.isConnected() || bus.interface() == nullptr) return false;
    if (bus.interface()->isServiceRegistered(service_)) return true;
    const QDBusReply<QStringList> startable = bus.interface()->activatableServiceNames();
    return startable.isValid() && startable.value().contains(service_);
}

std::optional<QColor> PortalColourPick::pick() const
{
    QDBusConnection bus = Bus(connectionName_);
    if (!bus.isConnected()) return std::nullopt;

    // The request object's path is known before the call (from the handle token), so its
    // Response is listened for before it can be sent.
    static int requests = 0;
    const QString token = QStringLiteral("skinframewright%1").arg(++requests);
    QString sender = bus.baseService().mid(1);
    sender.replace(QLatin1Char('.'), QLatin1Char('_'));
    QString requestPath = QStringLiteral("/org/freedesktop/portal/desktop/request/%1/%2").arg(sender, token);

    portal_detail::ResponseReceiver receiver;
    QEventLoop loop;
    QObject::connect(&receiver, &portal_detail::ResponseReceiver::done, &loop, &QEventLoop::quit);
    const auto listen = [&](const QString& path, bool on) {
        const char* slot = SLOT(onResponse(uint, QVariantMap));
        return on ? bus.connect(service_, path, kRequestInterface, QStringLiteral("Response"), &receiver, slot)
                  : bus.disconnect(service_, path, kRequestInterface, QStringLiteral("Response"), &receiver, slot);
    };
    if (!listen(requestPath, true)) return std::nullopt;

    QDBusMessage call = QDBusMessage::createMethodCall(service_, QStringLiteral("/org/freedesktop/portal/desktop"),
                                                       QStringLiteral("org.freedesktop.portal.Screenshot"),
                                                       QStringLiteral("PickColor"));
    call << QString() << QVariantMap{{QStringLiteral("handle_token"), token}};
    QDBusPendingCallWatcher started(bus.asyncCall(call));
    bool failed = false;
    QObject::connect(&started, &QDBusPendingCallWatcher::finished, &loop, [&] {
        const QDBusPendingReply<QDBusObjectPath> reply = started;
        if (reply.isError()) {
            failed = true;
            loop.quit();
            return;
        }
        // A portal older than handle tokens names another path; listen there instead.
        const QString path = reply.value().path();
        if (path != requestPath) {
            listen(requestPath, false);
            requestPath = path;
            listen(requestPath, true);
        }
    });
    // A portal that goes away never answers.
    QDBusServiceWatcher gone(service_, bus, QDBusServiceWatcher::WatchForUnregistration);
    QObject::connect(&gone, &QDBusServiceWatcher::serviceUnregistered, &loop, [&] {
        failed = true;
        loop.quit();
    });

    if (!receiver.answered) loop.exec();
    listen(requestPath, false);
    if (failed || !receiver.answered || receiver.response != 0) return std::nullopt;
    return ColourOf(receiver.results);
}

}  // namespace skin
