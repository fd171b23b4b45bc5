// Feeds bytes to the readers of the settings file, of the server's show and of what it keeps of its state.
// What the settings keep of them must survive being written and read again, but for the texts that are known
// not to.

#include "server/lamps/playback.h"
#include "server/resume.h"
#include "server/show/showfile.h"
#include "settings/cinifile.h"

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

#include <cstdint>
#include <stdexcept>

namespace {

QString WriteInput(const uint8_t* pData, size_t nSize) {
    static int nArgs = 1;
    static char name[] = "fuzz_files";
    static char* args[] = {name, nullptr};
    static QCoreApplication application(nArgs, args);
    static QTemporaryDir folder("/dev/shm/fuzz_files");
    const QString sPath = folder.filePath("input");
    QFile file(sPath);
    if (!file.open(QIODevice::WriteOnly)) {
        qFatal("cannot write %s", qPrintable(sPath));
    }
    file.write(reinterpret_cast<const char*>(pData), static_cast<qint64>(nSize));
    return sPath;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize) {
    const QString sPath = WriteInput(pData, nSize);
    try {
        static Levels levels;
        const State state(ShowFile(sPath).Load());
        Playback(state, [] { return 0; }).Render(1000, levels);
    } catch (const std::runtime_error&) {
        // a clear refusal
    }
    CIniFile settings;
    settings.path = sPath;
    settings.Read();
    settings.Write();
    CIniFile again;
    again.path = sPath;
    again.Read();
    if (again.menuVisible != settings.menuVisible || again.sceneParams != settings.sceneParams ||
        again.pwdState != settings.pwdState) {
        qFatal("the flags did not survive");
    }
    // Last, for it puts aside what is damaged.
    static const Show house = Show::BuiltIn();
    State resumed(house);
    const Resume resume(resumed, sPath, [](const QString&) {});
    return 0;
}
