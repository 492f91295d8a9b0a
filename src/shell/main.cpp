// Brindleway Skin Framewright: reads the command line, starts the main window, opens the file
// named on the command line once the window is shown, and runs the event loop.

#include <QApplication>
#include <QFile>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "commandline.h"
#include "editorcontroller.h"
#include "fileopener.h"
#include "frmskincreator.h"
#include "slotguard.h"

namespace {

// The last net under the guards of the slots: an exception that still reaches the event
// dispatch ends with the event, and the program goes on.
class SkinApplication : public QApplication {
public:
    using QApplication::QApplication;
    bool notify(QObject* receiver, QEvent* event) override
    {
        bool handled = false;
        skin::Guard([&] { handled = QApplication::notify(receiver, event); });
        return handled;
    }
};

}  // namespace

int main(int argc, char* argv[])
{
    // Read before Qt connects to a display, so that help, version and usage errors need none.
    const skin::CommandLine line = skin::ParseCommandLine(std::vector<std::string>(argv + 1, argv + argc));
    switch (line.action) {
    case skin::CommandLine::Action::Help: std::fputs(skin::UsageText().c_str(), stdout); return 0;
    case skin::CommandLine::Action::Version: std::fputs(skin::VersionText().c_str(), stdout); return 0;
    case skin::CommandLine::Action::UsageError:
        std::fprintf(stderr, "skinframewright: %s\n%s", line.error.c_str(), skin::UsageText().c_str());
        return skin::kUsageExitStatus;
    case skin::CommandLine::Action::Run: break;
    }

    // Qt 6 scales by the screen's device-pixel ratio itself; keep fractional ratios exact.
    QApplication::setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
    SkinApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Brindleway Skin Framewright"));
    // Ties the windows to the installed desktop entry (its icon and name in task bars).
    QGuiApplication::setDesktopFileName(QStringLiteral("skinframewright"));

    skin::FrmSkinCreator window;
    auto* controller = new skin::EditorController(window);  // owned by the window
    auto* opener = new skin::FileOpener(window, controller->editor());
    // The close button ends the program at once: nothing is asked or saved, and no further
    // event of any window runs.
    QObject::connect(&window, &skin::FrmSkinCreator::endProgramRequested, [] {
        std::fflush(nullptr);
        std::_Exit(EXIT_SUCCESS);
    });
    window.centreOnScreen();
    window.show();
    if (line.file) opener->openWhenShown(QFile::decodeName(line.file->c_str()));
    return QApplication::exec();
}
