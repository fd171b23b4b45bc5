#include "tests/peer.h"

#include "device/jsonnode.h"

#include <QNetworkDatagram>

Peer::Peer(quint16 nPort) {
    m_clock.start();
    connect(&m_socket, &QUdpSocket::readyRead, this, &Peer::Read);
    if (!m_socket.bind(QHostAddress::AnyIPv4, nPort)) {
        qFatal("the peer cannot have port %d", nPort);
    }
}

QList<Peer::Packet> Peer::Received(int nType) const {
    QList<Packet> packets;
    for (const Packet& packet : m_packets) {
        if (nType < 0 || packet.type == nType) {
            packets.append(packet);
        }
    }
    return packets;
}

void Peer::Send(const QByteArray& text) {
    m_socket.writeDatagram(text, m_sender, m_nSenderPort);
}

void Peer::SendTo(quint16 nPort, const QByteArray& bytes) {
    QUdpSocket socket;
    socket.writeDatagram(bytes, QHostAddress::LocalHost, nPort);
}

void Peer::Read() {
    while (m_socket.hasPendingDatagrams()) {
        const QNetworkDatagram datagram = m_socket.receiveDatagram();
        m_sender = datagram.senderAddress();
        m_nSenderPort = static_cast<quint16>(datagram.senderPort());
        int nType = 0;
        const JSONDocument document(datagram.data());
        document.Root().ForEachMember("typ", [&nType](const JSONNode& value) { nType = value.AsInt(); });
        m_packets.append({nType, datagram.data(), m_clock.elapsed()});
        if (nType == 14 && answersSerial) {
            Send(R"({"typ":15,"content":{"serial":"0042"}})");
        } else if (nType == 6 && answersState) {
            Send(state);
        } else if (nType == 1 && answersAlive) {
            Send(R"({"typ":1})");
        }
    }
}
