// Feeds datagrams to the whole receive path: fragments, JSON, readers, and the pages that show what was read.
// An input holds one datagram or several, with 0x1e between them.

#include "app/cgetnidlg.h"
#include "app/corvane.h"

#include <QApplication>
#include <QTimer>

#include <cstdint>
#include <memory>

namespace {

/// A window that is not connected: all it would send goes nowhere.
Corvane& Window() {
    static int nArgs = 1;
    static char name[] = "fuzz_receive";
    static char* args[] = {name, nullptr};
    static QApplication application(nArgs, args);
    static const auto pWindow = [] {
        QTimer::singleShot(0, [] { QApplication::activeModalWidget()->close(); });
        return std::make_unique<Corvane>();
    }();
    return *pWindow;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    Window().show();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize) {
    static unsigned nRuns = 0;
    const QByteArray input(reinterpret_cast<const char*>(pData), static_cast<int>(nSize));
    for (const QByteArray& datagram : input.split('\x1e')) {
        Window().ReadData(datagram, "10.77.0.1");
    }
    // What was read is also painted: every state, and of what is smaller often enough to meet everything.
    const bool bState = input.contains("scn") || input.contains("prg") || input.contains("clr");
    if (++nRuns % 512 == 0 || bState) {
        static int nPaints = 0;
        Window().OnMenuChanged(++nPaints % 4);
        Window().grab();
    }
    return 0;
}
