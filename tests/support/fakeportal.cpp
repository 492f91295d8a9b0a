#include "fakeportal.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QTimer>

namespace skin::testing {

bool FakePortal::serve()
{
    return bus_.registerObject(QStringLiteral("/org/freedesktop/portal/desktop"), this, QDBusConnection::ExportAllSlots) &&
           bus_.registerService(QStringLiteral("org.freedesktop.portal.Desktop"));
}

QDBusObjectPath FakePortal::PickColor(const QString&, const QVariantMap& options)
{
    ++calls;
    if (onCall) onCall();
    QString sender = message().service().mid(1);
    sender.replace(QLatin1Char('.'), QLatin1Char('_'));
    const QString path = QStringLiteral("/org/freedesktop/portal/desktop/request/%1/%2")
                             .arg(sender, options.value(QStringLiteral("handle_token")).toString());
    if (answer != Answer::Never) {
        QTimer::singleShot(30, this, [this, path] {
            QVariantMap results;
            QDBusArgument colour;
            colour.beginStructure();
            colour << rgb[0] << rgb[1] << (answer == Answer::BadColour ? 7.5 : rgb[2]);
            colour.endStructure();
            results.insert(QStringLiteral("color"), QVariant::fromValue(colour));
            QDBusMessage response =
                QDBusMessage::createSignal(path, QStringLiteral("org.freedesktop.portal.Request"), QStringLiteral("Response"));
            response << uint(answer == Answer::Cancel ? 1 : 0) << results;
            bus_.send(response);
        });
    }
    return QDBusObjectPath(path);
}

}  // namespace skin::testing
