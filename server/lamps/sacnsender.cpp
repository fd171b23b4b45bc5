#include "server/lamps/sacnsender.h"

#include <QStringList>
#include <QSysInfo>

#include <algorithm>
#include <limits>

namespace {

/// Receivers give a source up after 2.5 s and want to hear it every 0.8 to 1 s; a frame may come late.
constexpr qint64 RepeatMs = 850;
/// With how many more frames a change is sent.
constexpr int ChangeRepeats = 3;
/// The same of a new stream. A receiver that remembers it from before may pass over the first 20 packets,
/// whose numbers are lower than the last one's.
constexpr int NewRepeats = 20;
/// How many packets tell that a stream ends.
constexpr int EndCount = 3;
constexpr qint64 DiscoveryMs = 10000;
constexpr qint64 RetryMs = 250;

/// Receivers know a source by this, so it outlives the program. Where the machine has no id, the serial alone
/// makes it, and two such machines that go by one serial are one source to them.
QUuid CidOf(const std::string& sSerial) {
    const QUuid corvane("{5b8cbb7c-3d1e-4c3f-9a55-0c0a5e7f1d42}");
    return QUuid::createUuidV5(corvane,
                               QSysInfo::machineUniqueId() + '/' + QByteArray::fromStdString(sSerial));
}

}  // namespace

SacnSender::SacnSender(const std::string& sSerial, const Options& options, const Log& log)
    : m_source{CidOf(sSerial), "Corvane " + sSerial, options.priority},
      m_options(options),
      m_log(log),
      m_complaints(log),
      m_socket(options.interface) {
    for (int nUniverse = 1; nUniverse <= Universes::Count; ++nUniverse) {
        m_streams.push_back({sacn::DataPacket(m_source, nUniverse)});
    }
}

void SacnSender::Send(const Levels& levels, const UniverseSet& used, qint64 nNowMs) {
    if (nNowMs < m_nRetryMs) {
        return;
    }
    if (!m_socket.Open(nNowMs)) {
        m_complaints.Fails(m_socket.ErrorText(), nNowMs);
        m_nRetryMs = nNowMs + RetryMs;
        return;
    }
    m_nRetryMs = 0;
    if (!m_bBegun) {
        TellBeginning();
    }
    if (used != m_running) {
        TellUniverses(used);
    }
    m_bSent = m_bFailed = false;
    const UniverseSet before = m_running;
    m_ending = (m_ending | before) & ~used;
    m_running = used;
    for (int i = 0; i < Universes::Count; ++i) {
        const auto at = static_cast<std::size_t>(i);
        m_streams[at].ends = before[at] && !used[at] ? EndCount : m_streams[at].ends;
        if (used[at] || before[at]) {
            // Released channels go to what they are now before their universe goes silent.
            SendStream(i, &levels.at(Universes::At(i, 0)), !before[at], nNowMs);
        }
        if (m_ending[at]) {
            SendEnd(i);
        }
    }
    if (m_options.to.isEmpty() && m_running.any() && nNowMs >= m_nDiscoveryMs) {
        SendDiscovery(nNowMs);
    }
    if (m_bFailed) {
        m_complaints.Fails(m_socket.ErrorText(), nNowMs);
        m_socket.Close();
    } else if (m_bSent) {
        m_complaints.Works();
    }
}

qint64 SacnSender::DueMs() const {
    constexpr qint64 Never = std::numeric_limits<qint64>::max();
    if (m_nRetryMs > 0) {
        return m_nRetryMs;
    }
    qint64 nDueMs = m_ending.any() ? 0 : m_options.to.isEmpty() && m_running.any() ? m_nDiscoveryMs : Never;
    for (std::size_t i = 0; i < m_streams.size(); ++i) {
        nDueMs = m_running[i] ? std::min(nDueMs, m_streams[i].dueMs) : nDueMs;
    }
    return nDueMs;
}

void SacnSender::SendStream(int iUniverse, const unsigned char* pLevels, bool bNew, qint64 nNowMs) {
    Stream& stream = m_streams[static_cast<std::size_t>(iUniverse)];
    unsigned char* const pSlots = stream.packet.Slots();
    if (bNew || !std::equal(pLevels, pLevels + sacn::SlotCount, pSlots)) {
        std::copy_n(pLevels, sacn::SlotCount, pSlots);
        stream.repeats = bNew ? NewRepeats : std::max(stream.repeats, ChangeRepeats);
    } else if (stream.repeats > 0) {
        --stream.repeats;
    } else if (nNowMs < stream.dueMs) {
        return;
    }
    const bool bSent = Transmit(stream.packet.Next(), iUniverse + 1);
    stream.dueMs = !bSent ? nNowMs + RetryMs : stream.repeats > 0 ? nNowMs : nNowMs + RepeatMs;
}

void SacnSender::SendEnd(int iUniverse) {
    Stream& stream = m_streams[static_cast<std::size_t>(iUniverse)];
    Transmit(stream.packet.Next(true), iUniverse + 1);
    m_ending[static_cast<std::size_t>(iUniverse)] = --stream.ends > 0;
}

void SacnSender::SendDiscovery(qint64 nNowMs) {
    std::vector<int> universes;
    for (int i = 0; i < Universes::Count; ++i) {
        if (m_running[static_cast<std::size_t>(i)]) {
            universes.push_back(i + 1);
        }
    }
    m_nDiscoveryMs = nNowMs + DiscoveryMs;
    Transmit(sacn::Discovery(m_source, universes), sacn::DiscoveryUniverse);
}

bool SacnSender::Transmit(const QByteArray& packet, int nUniverse) {
    bool bSent = true;
    for (const QHostAddress& to :
         m_options.to.isEmpty() ? QList{QHostAddress(sacn::GroupOf(nUniverse))} : m_options.to) {
        bSent = m_socket.Send(packet, to) && bSent;
    }
    m_bSent = m_bSent || bSent;
    m_bFailed = m_bFailed || !bSent;
    return bSent;
}

void SacnSender::TellBeginning() {
    QStringList receivers;
    for (const QHostAddress& to : m_options.to) {
        receivers.append(to.toString());
    }
    m_log("sACN: \"" + QString::fromStdString(m_source.name) + "\" sends to " +
          (receivers.isEmpty() ? "239.255.0.1 to 239.255.0.32" : receivers.join(", ")) +
          QString(" port %1 with priority %2").arg(sacn::Port).arg(m_options.priority) +
          (m_options.interface.isEmpty() ? QString() : " by " + m_options.interface));
    m_bBegun = true;
}

void SacnSender::TellUniverses(const UniverseSet& used) {
    QStringList universes;
    for (int i = 0; i < Universes::Count; ++i) {
        if (used[static_cast<std::size_t>(i)]) {
            universes.append(QString::number(i + 1));
        }
    }
    m_log("sACN: sends universes " + (universes.isEmpty() ? QString("none") : universes.join(' ')));
}
