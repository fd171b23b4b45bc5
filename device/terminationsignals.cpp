#include "device/terminationsignals.h"

#include <QCoreApplication>
#include <QSocketNotifier>
#include <QTimer>

#include <csignal>
#include <sys/signalfd.h>
#include <unistd.h>

namespace {

constexpr int LongestEndMs = 100;

/// The end of the terminal is left out where whoever started the program wants it to outlive that.
sigset_t Taken() {
    sigset_t taken;
    sigemptyset(&taken);
    sigaddset(&taken, SIGINT);
    sigaddset(&taken, SIGTERM);
    struct sigaction hangup {};
    if (sigaction(SIGHUP, nullptr, &hangup) == 0 && hangup.sa_handler != SIG_IGN) {
        sigaddset(&taken, SIGHUP);
    }
    return taken;
}

}  // namespace

void TerminationSignals::Hold() {
    const sigset_t taken = Taken();
    sigprocmask(SIG_BLOCK, &taken, nullptr);
}

TerminationSignals::TerminationSignals() {
    const sigset_t taken = Taken();
    m_nDescriptor = signalfd(-1, &taken, SFD_NONBLOCK | SFD_CLOEXEC);
    if (m_nDescriptor < 0) {
        return;  // they end the program at once, as ever
    }
    sigprocmask(SIG_BLOCK, &taken, nullptr);
    auto* pNotifier = new QSocketNotifier(m_nDescriptor, QSocketNotifier::Read, this);
    connect(pNotifier, &QSocketNotifier::activated, this, [this, pNotifier] {
        pNotifier->setEnabled(false);
        QTimer::singleShot(LongestEndMs, &QCoreApplication::quit);
        emit asked();
    });
}

TerminationSignals::~TerminationSignals() {
    if (m_nDescriptor >= 0) {
        close(m_nDescriptor);
    }
}
