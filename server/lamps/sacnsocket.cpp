#include "server/lamps/sacnsocket.h"

#include "server/lamps/sacnpacket.h"

#include <QNetworkInterface>

#include <arpa/inet.h>
#include <cerrno>
#include <cstring>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

/// How often an open socket looks whether its interface is still the one with that address.
constexpr qint64 LookMs = 1000;
/// Through how many routers of a lighting network multicast passes.
constexpr int TimeToLive = 32;

sockaddr_in SocketAddress(quint32 nAddress, quint16 nPort) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(nAddress);
    address.sin_port = htons(nPort);
    return address;
}

}  // namespace

bool SacnSocket::Open(qint64 nNowMs) {
    if (m_nSocket >= 0 && (m_sInterface.isEmpty() || nNowMs - m_nLookedMs < LookMs)) {
        return true;
    }
    m_nLookedMs = nNowMs;
    Interface found;
    if (!m_sInterface.isEmpty() && !Look(found)) {
        Close();
        return false;
    }
    if (m_nSocket >= 0 && found == m_interface) {
        return true;
    }
    Close();
    if (!OpenBy(found)) {
        m_sError = std::strerror(errno);
        Close();
        return false;
    }
    m_interface = found;
    return true;
}

bool SacnSocket::Look(Interface& found) {
    m_sError = QHostAddress(m_sInterface).isNull() ? "there is no interface \"" + m_sInterface + '"'
                                                   : m_sInterface + " is no address of this machine";
    for (const QNetworkInterface& interface : QNetworkInterface::allInterfaces()) {
        const bool bNamed = interface.name() == m_sInterface;
        const bool bUp = interface.flags().testFlag(QNetworkInterface::IsUp);
        if (bNamed) {
            m_sError = "the interface \"" + m_sInterface + (bUp ? "\" has no address" : "\" is down");
        }
        for (const QNetworkAddressEntry& entry : interface.addressEntries()) {
            const bool bMeant = bNamed ? entry.ip().protocol() == QAbstractSocket::IPv4Protocol
                                       : entry.ip().toString() == m_sInterface;
            if (bMeant && !bUp) {
                m_sError = "the interface \"" + interface.name() + "\" is down";
            } else if (bMeant) {
                found = {interface.index(), entry.ip().toIPv4Address()};
                return true;
            }
        }
    }
    return false;
}

bool SacnSocket::OpenBy(const Interface& interface) {
    const auto set = [this](int nLevel, int nOption, const auto& value) {
        return setsockopt(m_nSocket, nLevel, nOption, &value, sizeof value) == 0;
    };
    m_nSocket = socket(AF_INET, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    if (m_nSocket < 0 || !set(IPPROTO_IP, IP_MULTICAST_TTL, TimeToLive) ||
        !set(IPPROTO_IP, IP_MULTICAST_LOOP, int{1})) {
        return false;
    }
    if (interface.index == 0) {
        return true;
    }
    // By its index: an address that goes would leave the choice to the routes again.
    ip_mreqn membership{};
    membership.imr_ifindex = interface.index;
    const sockaddr_in from = SocketAddress(interface.address, 0);
    return set(IPPROTO_IP, IP_MULTICAST_IF, membership) &&
           set(SOL_SOCKET, SO_BINDTOIFINDEX, interface.index) &&
           bind(m_nSocket, reinterpret_cast<const sockaddr*>(&from), sizeof from) == 0;
}

bool SacnSocket::Send(const QByteArray& packet, const QHostAddress& to) {
    const sockaddr_in address = SocketAddress(to.toIPv4Address(), sacn::Port);
    if (sendto(m_nSocket, packet.constData(), static_cast<std::size_t>(packet.size()), 0,
               reinterpret_cast<const sockaddr*>(&address), sizeof address) < 0) {
        const int nError = errno;
        Interface interface;
        if (m_sInterface.isEmpty() || Look(interface)) {
            m_sError = std::strerror(nError);
        }
        if (nError == ENETUNREACH && m_sInterface.isEmpty()) {
            m_sError += " (--sacn-interface chooses a network without a route)";
        }
        return false;
    }
    return true;
}

void SacnSocket::Close() {
    if (m_nSocket >= 0) {
        close(m_nSocket);
        m_nSocket = -1;
    }
}
