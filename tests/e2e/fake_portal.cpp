// A desktop portal whose colour pick always answers with the colour given on the command line
// (three numbers from 0 to 1), on the session bus; prints "ready" once it serves and "pick"
// for every pick asked of it, so that a test can tell the program asked.
#include <QCoreApplication>
#include <QStringList>

#include <cstdio>

#include "fakeportal.h"

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments();
    if (args.size() != 4) {
        std::fprintf(stderr, "usage: fake_portal RED GREEN BLUE\n");
        return 2;
    }
    skin::testing::FakePortal portal(QDBusConnection::sessionBus());
    for (int i = 0; i < 3; ++i) portal.rgb[i] = args[i + 1].toDouble();
    portal.onCall = [] {
        std::puts("pick");
        std::fflush(stdout);
    };
    if (!portal.serve()) {
        std::fprintf(stderr, "fake_portal: cannot serve on the session bus\n");
        return 1;
    }
    std::puts("ready");
    std::fflush(stdout);
    return app.exec();
}
