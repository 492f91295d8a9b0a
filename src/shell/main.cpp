// Brindleway Skin Framewright: starts the main window and runs the event loop.

#include <QApplication>

#include <cstdio>
#include <cstdlib>

#include "editorcontroller.h"
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
    // Qt 6 scales by the screen's device-pixel ratio itself; keep fractional ratios exact.
    QApplication::setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
    SkinApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Brindleway Skin Framewright"));

    skin::FrmSkinCreator window;
    new skin::EditorController(window);  // owned by the window
    // The close button ends the program at once: nothing is asked or saved, and no further
    // event of any window runs.
    QObject::connect(&window, &skin::FrmSkinCreator::endProgramRequested, [] {
        std::fflush(nullptr);
        std::_Exit(EXIT_SUCCESS);
    });
    window.centreOnScreen();
    window.show();
    return QApplication::exec();
}
