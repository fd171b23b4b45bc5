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
    if (m_nSocket >= 0 && nNowMs - m_nLookedMs < LookMs) {
        return true;
    }
    m_nLookedMs = nNowMs;
    const std::optional<Interface> found = Look();
    if (m_nSocket < 0 || found != m_interface) {
        Close();
        m_interface = found;
        if (found && !OpenBy(*found)) {
            m_sError = std::strerror(errno);
            Close();
        }
    }
    return m_nSocket >= 0;
}

std::optional<SacnSocket::Interface> SacnSocket::Look() {
    if (m_sInterface.isEmpty()) {
        return Interface();
    }
    m_sError = QHostAddress(m_sInterface).isNull() ? "there is no interface \"" + m_sInterface + '"'
                                                   : m_sInterface + " is no address of this machine";
    for (const QNetworkInterface& interface : QNetworkInterface::allInterfaces()) {
        const bool bNamed = interface.name() == m_sInterface;
        const bool bUp = interface.flags().testFlag(QNetworkInterface::IsUp);
        bool bHere = bNamed;
        for (const QNetworkAddressEntry& entry : interface.addressEntries()) {
            const bool bMeant = bNamed ? entry.ip().protocol() == QAbstractSocket::IPv4Protocol
                                       : entry.ip().toString() == m_sInterface;
            if (bMeant && bUp) {
                return Interface(interface.index(), entry.ip().toIPv4Address());
            }
            bHere = bHere || bMeant;
        }
        if (bHere) {
            m_sError = "the interface \"" + interface.name() + (bUp ? "\" has no address" : "\" is down");
        }
    }
    return {};
}

bool SacnSocket::OpenBy(const Interface& interface) {
    const auto set = [this](int nLevel, int nOption, int nValue) {
        return setsockopt(m_nSocket, nLevel, nOption, &nValue, sizeof nValue) == 0;
    };
    const sockaddr_in from = SocketAddress(interface.second, 0);
    m_nSocket = socket(AF_INET, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    // By its index: an address that goes would leave the choice to the routes again.
    return m_nSocket >= 0 && set(IPPROTO_IP, IP_MULTICAST_TTL, TimeToLive) &&
           (interface.first == 0 || set(SOL_SOCKET, SO_BINDTOIFINDEX, interface.first)) &&
           bind(m_nSocket, reinterpret_cast<const sockaddr*>(&from), sizeof from) == 0;
}

bool SacnSocket::Send(const QByteArray& packet, const QHostAddress& to) {
    const sockaddr_in address = SocketAddress(to.toIPv4Address(), sacn::Port);
    if (sendto(m_nSocket, packet.constData(), static_cast<std::size_t>(packet.size()), 0,
               reinterpret_cast<const sockaddr*>(&address), sizeof address) >= 0) {
        return true;
    }
    const int nError = errno;
    if (Look()) {
        m_sError = std::strerror(nError);
    }
    if (nError == ENETUNREACH && m_sInterface.isEmpty()) {
        m_sError += " (--sacn-interface chooses a network without a route)";
    }
    return false;
}

void SacnSocket::Close() {
    if (m_nSocket >= 0) {
        close(m_nSocket);
        m_nSocket = -1;
    }
}
