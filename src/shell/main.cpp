// Brindleway Skin Framewright: starts the main window and runs the event loop.

#include <QApplication>

#include "editorcontroller.h"
#include "frmskincreator.h"

int main(int argc, char* argv[])
{
    // Qt 6 scales by the screen's device-pixel ratio itself; keep fractional ratios exact.
    QApplication::setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Brindleway Skin Framewright"));

    skin::FrmSkinCreator window;
    new skin::EditorController(window);  // owned by the window
    window.centreOnScreen();
    window.show();
    return QApplication::exec();
}
