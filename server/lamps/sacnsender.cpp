#include "server/lamps/sacnsender.h"

#include <QStringList>
#include <QSysInfo>

#include <algorithm>
#include <limits>
#include <utility>

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

/// Universes count from 1 on the network.
std::vector<int> NumbersOf(const UniverseSet& universes) {
    std::vector<int> numbers;
    for (int i = 0; i < Universes::Count; ++i) {
        if (universes[static_cast<std::size_t>(i)]) {
            numbers.push_back(i + 1);
        }
    }
    return numbers;
}

}  // namespace

SacnSender::SacnSender(const std::string& sSerial, const Options& options, const Log& log)
    : m_source{CidOf(sSerial), "Corvane " + sSerial, options.priority},
      m_options(options),
      m_log(log),
      m_complaints(log),
      m_socket(options.interface) {}

void SacnSender::Send(const Levels& levels, const UniverseSet& used, qint64 nNowMs) {
    if (nNowMs < m_nRetryMs) {
        return;
    }
    m_nRetryMs = m_socket.Open(nNowMs) ? 0 : nNowMs + RetryMs;
    if (m_nRetryMs > 0) {
        m_complaints.Fails(m_socket.ErrorText(), nNowMs);
        return;
    }
    if (used != m_running) {
        TellUniverses(used);
    }
    m_sent.reset();
    const UniverseSet before = std::exchange(m_running, used);
    m_ending = (m_ending | before) & ~used;
    for (int i = 0; i < Universes::Count; ++i) {
        const auto at = static_cast<std::size_t>(i);
        Stream& stream = m_streams[at];
        if (used[at] || before[at]) {
            // Released channels go to what they are now before their universe goes silent.
            stream.ends = EndCount;
            SendStream(i, &levels.at(Universes::At(i, 0)), !before[at], nNowMs);
        }
        if (m_ending[at]) {
            Transmit(sacn::Data(m_source, i + 1, ++stream.number, stream.levels, true), i + 1);
            m_ending[at] = --stream.ends > 0;
        }
    }
    if (m_options.to.isEmpty() && m_running.any() && nNowMs >= m_nDiscoveryMs) {
        m_nDiscoveryMs = nNowMs + DiscoveryMs;
        Transmit(sacn::Discovery(m_source, NumbersOf(m_running)), sacn::DiscoveryUniverse);
    }
    if (!m_sent.value_or(true)) {
        m_complaints.Fails(m_socket.ErrorText(), nNowMs);
        m_socket.Close();
    } else if (m_sent) {
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
    const QByteArray levels(reinterpret_cast<const char*>(pLevels), sacn::SlotCount);
    if (bNew || levels != stream.levels) {
        stream.levels = levels;
        stream.repeats = bNew ? NewRepeats : std::max(stream.repeats, ChangeRepeats);
    } else if (stream.repeats > 0) {
        --stream.repeats;
    } else if (nNowMs < stream.dueMs) {
        return;
    }
    const bool bSent = Transmit(sacn::Data(m_source, iUniverse + 1, ++stream.number, levels), iUniverse + 1);
    stream.dueMs = !bSent ? nNowMs + RetryMs : stream.repeats > 0 ? nNowMs : nNowMs + RepeatMs;
}

bool SacnSender::Transmit(const QByteArray& packet, int nUniverse) {
    bool bSent = true;
    for (const QHostAddress& to :
         m_options.to.isEmpty() ? QList{QHostAddress(sacn::GroupOf(nUniverse))} : m_options.to) {
        bSent = m_socket.Send(packet, to) && bSent;
    }
    m_sent = m_sent.value_or(true) && bSent;
    return bSent;
}

void SacnSender::TellUniverses(const UniverseSet& used) {
    if (!std::exchange(m_bBegun, true)) {
        QStringList receivers;
        for (const QHostAddress& to : m_options.to) {
            receivers.append(to.toString());
        }
        m_log("sACN: \"" + QString::fromStdString(m_source.name) + "\" sends to " +
              (receivers.isEmpty() ? "239.255.0.1 to 239.255.0.32" : receivers.join(", ")) +
              QString(" port %1 with priority %2").arg(sacn::Port).arg(m_options.priority) +
              (m_options.interface.isEmpty() ? QString() : " by " + m_options.interface));
    }
    QString sUniverses;
    for (const int nUniverse : NumbersOf(used)) {
        sUniverses += ' ' + QString::number(nUniverse);
    }
    m_log("sACN: sends universes" + (sUniverses.isEmpty() ? " none" : sUniverses));
}
