#include "app/branding.h"
#include "app/corvane.h"
#include "app/language.h"
#include "app/look.h"
#include "device/logging.h"
#include "widgets/artwork.h"
#include "widgets/qtversions.h"

#include <QApplication>
#include <QMessageBox>
#include <QTimer>

int main(int argc, char* argv[]) {
    // The program paints rasters only: without OpenGL it starts in half the time.
    const bool bWithoutGl = !qEnvironmentVariableIsSet("QT_XCB_GL_INTEGRATION");
    if (bWithoutGl) {
        qputenv("QT_XCB_GL_INTEGRATION", "none");
    }
    qtversions::EnableHighDensity();

    const logging::Session logging;
    QApplication application(argc, argv);
    // Where a desktop finds the window's name and icon: corvane.desktop.
    QApplication::setDesktopFileName("corvane");
    // Every picture is PNG, which Qt reads by itself; before it does, it would load each image plug-in that
    // it finds. (Other platforms load parts of their own later.)
    if (QApplication::platformName() == "xcb") {
        QCoreApplication::setLibraryPaths({});
    }
    ApplyLook();
    ApplyLanguage();

    Branding branding;
    if (!branding.Load(Branding::ApplicationType)) {
        QMessageBox::information(nullptr, QObject::tr("ERROR"), QObject::tr("OEM"), QMessageBox::Ok);
        return 0;
    }
    QApplication::setApplicationName(branding.name);
    // The icon is larger than most of what the first page shows, and no part of it.
    QTimer::singleShot(100, [&branding] { QApplication::setWindowIcon(artwork::Icon(branding.icon)); });

    Corvane window;
    window.show();
    if (bWithoutGl) {
        qunsetenv("QT_XCB_GL_INTEGRATION");  // a browser that the store buttons open may well want it
    }
    return QApplication::exec();
}
