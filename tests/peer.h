#pragma once

#include "device/jsonnode.h"

#include <QtNetwork>

/// A scripted server on a real socket: notes what it is sent, answers what it is told to answer.
class Peer : public QObject {
public:
    explicit Peer(quint16 nPort = 8093) {
        connect(&m_socket, &QUdpSocket::readyRead, this, &Peer::Read);
        if (!m_socket.bind(QHostAddress::AnyIPv4, nPort)) {
            qFatal("the peer cannot have port %d", nPort);
        }
    }

    /// How many datagrams of a type it was sent, or of all (-1).
    int Count(int nType) const { return static_cast<int>(nType < 0 ? m_texts.size() : m_texts.count(nType)); }
    /// The latest of a type.
    QByteArray Last(int nType) const { return m_texts.value(nType); }

    /// All that it was sent, in order.
    const QList<QByteArray>& All() const { return m_all; }

    /// Sends to whoever sent last.
    void Send(const QByteArray& text) { m_socket.writeDatagram(text, m_sender, m_nSenderPort); }

    bool answersState = true;
    bool answersAlive = true;
    QByteArray state = R"({"typ":7,"content":{}})";

private:
    void Read() {
        while (m_socket.hasPendingDatagrams()) {
            const QNetworkDatagram datagram = m_socket.receiveDatagram();
            m_sender = datagram.senderAddress();
            m_nSenderPort = static_cast<quint16>(datagram.senderPort());
            int nType = 0;
            const JSONDocument document(datagram.data());
            document.Root().ForEachMember("typ", [&nType](const JSONNode& value) { nType = value.AsInt(); });
            m_texts.insert(nType, datagram.data());
            m_all += datagram.data();
            if (nType == 14) {
                Send(R"({"typ":15,"content":{"serial":"0042"}})");
            } else if (nType == 6 && answersState) {
                Send(state);
            } else if (nType == 1 && answersAlive) {
                Send(R"({"typ":1})");
            }
        }
    }

    QUdpSocket m_socket;
    QMultiMap<int, QByteArray> m_texts;  ///< by type
    QList<QByteArray> m_all;
    QHostAddress m_sender;
    quint16 m_nSenderPort = 0;
};
