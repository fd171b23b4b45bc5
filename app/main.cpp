#include "app/branding.h"
#include "app/corvane.h"
#include "app/interfaceaddress.h"
#include "app/language.h"
#include "app/look.h"
#include "device/logging.h"
#include "device/terminationsignals.h"
#include "widgets/artwork.h"
#include "widgets/qtversions.h"

#include <QApplication>
#include <QIcon>
#include <QMessageBox>
#include <QTimer>

#include <cstdio>

namespace {

/// The value of --network: null if it is not asked for, empty if it is wrong. What else there is belongs to
/// the toolkit, or to no one.
QString NetworkOption(int argc, char* argv[]) {
    const QString sOption = "--network";
    for (int i = argc - 1; i > 0; --i) {
        const QString sArgument = QString::fromLocal8Bit(argv[i]);
        if (sArgument == sOption || sArgument.startsWith(sOption + '=')) {
            const QString sValue = sArgument != sOption ? sArgument.mid(sOption.size() + 1)
                                   : i + 1 < argc       ? QString::fromLocal8Bit(argv[i + 1])
                                                        : QString();
            return IsNetwork(sValue) ? sValue : QString("");
        }
    }
    return {};
}

}  // namespace

int main(int argc, char* argv[]) {
    const QString sNetwork = NetworkOption(argc, argv);
    if (sNetwork.isEmpty() && !sNetwork.isNull()) {
        std::fputs("corvane: --network wants an address (a.b.c.d), the name of an interface, or auto\n",
                   stderr);
        return 2;
    }
    TerminationSignals::Hold();
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
    QTimer::singleShot(100,
                       [&branding] { QApplication::setWindowIcon(QIcon(artwork::Picture(branding.icon))); });

    const TerminationSignals termination;
    bool bAsked = false;
    QObject::connect(&termination, &TerminationSignals::asked, [&bAsked] { bAsked = true; });
    QObject::connect(&termination, &TerminationSignals::asked, &QCoreApplication::quit);
    Corvane window(nullptr, {}, sNetwork);
    if (bAsked) {
        return 0;  // while it asked for the network
    }
    QObject::connect(&termination, &TerminationSignals::asked, &window, &Corvane::Close);
    window.show();
    if (bWithoutGl) {
        qunsetenv("QT_XCB_GL_INTEGRATION");  // a browser that the store buttons open may well want it
    }
    return QApplication::exec();
}
