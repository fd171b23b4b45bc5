#include "tests/peer.h"

#include "device/jsonnode.h"

Peer::Peer(quint16 nPort) {
    connect(&m_socket, &QUdpSocket::readyRead, this, &Peer::Read);
    if (!m_socket.bind(QHostAddress::AnyIPv4, nPort)) {
        qFatal("the peer cannot have port %d", nPort);
    }
}

void Peer::Send(const QByteArray& text) {
    m_socket.writeDatagram(text, m_sender, m_nSenderPort);
}

void Peer::Read() {
    while (m_socket.hasPendingDatagrams()) {
        const QNetworkDatagram datagram = m_socket.receiveDatagram();
        m_sender = datagram.senderAddress();
        m_nSenderPort = static_cast<quint16>(datagram.senderPort());
        int nType = 0;
        const JSONDocument document(datagram.data());
        document.Root().ForEachMember("typ", [&nType](const JSONNode& value) { nType = value.AsInt(); });
        m_texts.insert(nType, datagram.data());
        if (nType == 14 && answersSerial) {
            Send(R"({"typ":15,"content":{"serial":"0042"}})");
        } else if (nType == 6 && answersState) {
            Send(state);
        } else if (nType == 1 && answersAlive) {
            Send(R"({"typ":1})");
        }
    }
}
