#include "server/remotes/badnetwork.h"

#include "device/logging.h"

#include <QRandomGenerator>
#include <QTimer>

namespace {

/// How late a datagram is that others overtake.
constexpr int OvertakenMs = 30;
/// What may wait in all, each datagram with what its timer takes beside it.
constexpr qint64 MaxLateBytes = qint64{16} * 1024 * 1024;
constexpr int TimerBytes = 512;

bool Happens(int nPercent) {
    return nPercent > 0 && QRandomGenerator::global()->bounded(100) < nPercent;
}

}  // namespace

void BadNetwork::Carry(Way way, qint64 nBytes, const std::function<void()>& deliver) {
    const bool bSilent =
        way == In && m_options.silentAfter >= 0 && m_upTime.hasExpired(qint64{1000} * m_options.silentAfter);
    if (bSilent || Happens(m_options.dropPercent)) {
        qCInfo(logDrop) << (bSilent ? "silent" : "lost") << "by option:" << nBytes << "bytes";
        return;
    }
    for (int nCopies = Happens(m_options.duplicatePercent) ? 2 : 1; nCopies > 0; --nCopies) {
        const int nLate =
            (way == Out ? m_options.delayMs : 0) + (Happens(m_options.reorderPercent) ? OvertakenMs : 0);
        if (nLate == 0) {
            deliver();
        } else if (const qint64 nRoom = nBytes + TimerBytes; m_nLateBytes + nRoom <= MaxLateBytes) {
            m_nLateBytes += nRoom;
            QTimer::singleShot(nLate, this, [this, nRoom, deliver] {
                m_nLateBytes -= nRoom;
                deliver();
            });
        } else {
            qCInfo(logDrop) << "too much is delayed:" << nBytes << "bytes";
        }
    }
}
