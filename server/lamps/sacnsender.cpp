#include "server/lamps/sacnsender.h"

#include <QStringList>
#include <QSysInfo>

#include <algorithm>
#include <arpa/inet.h>
#include <cerrno>
#include <cstring>
#include <limits>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

namespace {

/// Receivers give a source up after 2.5 s and want to hear it every 0.8 s; a frame may come late.
constexpr qint64 RepeatMs = 725;
constexpr qint64 DiscoveryMs = 10000;
constexpr qint64 TellMs = 60000;
/// How many packets tell that a stream ends.
constexpr int EndCount = 3;
/// Through how many routers of a lighting network multicast passes.
constexpr int TimeToLive = 32;

/// Receivers know a source by this, so it outlives the program. Where the machine has no id, the serial alone
/// makes it, and two such machines that go by one serial are one source to them.
QUuid CidOf(const std::string& sSerial) {
    const QUuid corvane("{5b8cbb7c-3d1e-4c3f-9a55-0c0a5e7f1d42}");
    return QUuid::createUuidV5(corvane,
                               QSysInfo::machineUniqueId() + '/' + QByteArray::fromStdString(sSerial));
}

sockaddr_in SocketAddress(quint32 nAddress, quint16 nPort) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(nAddress);
    address.sin_port = htons(nPort);
    return address;
}

}  // namespace

SacnSender::SacnSender(const std::string& sSerial, const Options& options, Log log)
    : m_source{CidOf(sSerial), "Corvane " + sSerial, options.priority},
      m_options(options),
      m_log(std::move(log)) {
    for (int nUniverse = 1; nUniverse <= Universes::Count; ++nUniverse) {
        m_streams.push_back({sacn::DataPacket(m_source, nUniverse)});
    }
}

SacnSender::~SacnSender() {
    for (int i = 0; i < Universes::Count; ++i) {
        if (m_running[static_cast<std::size_t>(i)]) {
            End(i);
        }
    }
    CloseSocket();
}

bool SacnSender::Open() {
    if (!OpenSocket()) {
        m_sError = std::strerror(errno);
        return false;
    }
    m_log(QString("sACN: \"%1\" sends to %2 port %3 with priority %4")
              .arg(QString::fromStdString(m_source.name),
                   m_options.to.isNull() ? "239.255.0.1 to 239.255.0.32" : m_options.to.toString())
              .arg(sacn::Port)
              .arg(m_options.priority) +
          (m_options.interface.isNull() ? QString() : " from " + m_options.interface.toString()));
    return true;
}

bool SacnSender::OpenSocket() {
    CloseSocket();
    m_nSocket = socket(AF_INET, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    const sockaddr_in from = SocketAddress(m_options.interface.toIPv4Address(), 0);
    const int nYes = 1;
    return m_nSocket >= 0 && bind(m_nSocket, reinterpret_cast<const sockaddr*>(&from), sizeof from) == 0 &&
           setsockopt(m_nSocket, IPPROTO_IP, IP_MULTICAST_IF, &from.sin_addr, sizeof from.sin_addr) == 0 &&
           setsockopt(m_nSocket, IPPROTO_IP, IP_MULTICAST_TTL, &TimeToLive, sizeof TimeToLive) == 0 &&
           setsockopt(m_nSocket, IPPROTO_IP, IP_MULTICAST_LOOP, &nYes, sizeof nYes) == 0;
}

void SacnSender::CloseSocket() {
    if (m_nSocket >= 0) {
        close(m_nSocket);
        m_nSocket = -1;
    }
}

void SacnSender::Send(const Levels& levels, const UniverseSet& used, qint64 nNowMs) {
    // The interface by which a socket sends is gone for it even if it comes back.
    const bool bOpen = m_nFailure == 0 || OpenSocket();
    m_nFailure = bOpen ? 0 : errno;
    m_nSent = 0;
    if (used != m_running) {
        TellUniverses(used);
    }
    for (int i = 0; i < Universes::Count; ++i) {
        const auto at = static_cast<std::size_t>(i);
        if (used[at] || m_running[at]) {
            // Released channels go to what they are now before their universe goes silent.
            SendStream(i, &levels.at(Universes::At(i, 0)), !m_running[at], nNowMs);
        }
        if (m_running[at] && !used[at]) {
            End(i);
        }
    }
    m_running = used;
    if (m_options.to.isNull() && m_running.any() && nNowMs >= m_nDiscoveryMs) {
        SendDiscovery(nNowMs);
    }
    TellFailure(nNowMs);
}

qint64 SacnSender::DueMs() const {
    qint64 nDueMs =
        m_options.to.isNull() && m_running.any() ? m_nDiscoveryMs : std::numeric_limits<qint64>::max();
    for (std::size_t i = 0; i < m_streams.size(); ++i) {
        nDueMs = m_running[i] ? std::min(nDueMs, m_streams[i].dueMs) : nDueMs;
    }
    return nDueMs;
}

void SacnSender::SendStream(int iUniverse, const unsigned char* pLevels, bool bNew, qint64 nNowMs) {
    Stream& stream = m_streams[static_cast<std::size_t>(iUniverse)];
    if (!bNew && nNowMs < stream.dueMs &&
        std::equal(pLevels, pLevels + sacn::SlotCount, stream.packet.Slots())) {
        return;
    }
    std::copy_n(pLevels, sacn::SlotCount, stream.packet.Slots());
    stream.dueMs = Transmit(stream.packet.Next(), iUniverse + 1) ? nNowMs + RepeatMs : nNowMs;
}

void SacnSender::End(int iUniverse) {
    for (int i = 0; i < EndCount; ++i) {
        Transmit(m_streams[static_cast<std::size_t>(iUniverse)].packet.Next(true), iUniverse + 1);
    }
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
    const sockaddr_in to = SocketAddress(
        m_options.to.isNull() ? sacn::GroupOf(nUniverse) : m_options.to.toIPv4Address(), sacn::Port);
    if (sendto(m_nSocket, packet.constData(), static_cast<std::size_t>(packet.size()), 0,
               reinterpret_cast<const sockaddr*>(&to), sizeof to) < 0) {
        m_nFailure = m_nFailure == 0 ? errno : m_nFailure;
        return false;
    }
    ++m_nSent;
    return true;
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

void SacnSender::TellFailure(qint64 nNowMs) {
    if (m_nFailure == 0 && m_nSent > 0 && m_bTold) {
        m_log("sACN: works again");
        m_bTold = false;
    }
    if (m_nFailure != 0 && (!m_nLastToldMs || nNowMs - *m_nLastToldMs >= TellMs)) {
        const bool bNoRoute = m_nFailure == ENETUNREACH && m_options.interface.isNull();
        m_log(QString("sACN: cannot send: %1%2; goes on trying")
                  .arg(std::strerror(m_nFailure),
                       bNoRoute ? " (--sacn-interface chooses a network without a route)" : ""));
        m_bTold = true;
        m_nLastToldMs = nNowMs;
    }
}
