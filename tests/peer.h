#pragma once

#include <QByteArray>
#include <QElapsedTimer>
#include <QHostAddress>
#include <QList>
#include <QObject>
#include <QUdpSocket>

/// A scripted server on a real socket: notes what it is sent, answers what it is told to answer.
class Peer : public QObject {
    Q_OBJECT

public:
    struct Packet {
        int type;
        QByteArray text;
        qint64 at;  ///< ms since the peer began
    };

    explicit Peer(quint16 nPort = 8093);

    /// The packets of one type, or all of them (-1).
    QList<Packet> Received(int nType = -1) const;
    int Count(int nType) const { return static_cast<int>(Received(nType).size()); }

    /// Sends to whoever sent last.
    void Send(const QByteArray& text);
    /// Sends from a socket of its own straight to a port of this machine, as any stranger can.
    static void SendTo(quint16 nPort, const QByteArray& bytes);

    bool answersSerial = true;
    bool answersState = true;
    bool answersAlive = true;
    QByteArray state = R"({"typ":7,"content":{}})";

private:
    void Read();

    QUdpSocket m_socket;
    QElapsedTimer m_clock;
    QList<Packet> m_packets;
    QHostAddress m_sender;
    quint16 m_nSenderPort = 0;
};
