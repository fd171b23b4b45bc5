#pragma once

#include <QtNetwork>

/// A scripted server on a real socket: notes what it is sent, answers what it is told to answer.
class Peer : public QObject {
    Q_OBJECT

public:
    explicit Peer(quint16 nPort = 8093);

    /// How many datagrams of a type it was sent, or of all (-1).
    int Count(int nType) const { return static_cast<int>(nType < 0 ? m_texts.size() : m_texts.count(nType)); }
    /// The latest of a type.
    QByteArray Last(int nType) const { return m_texts.value(nType); }

    /// Sends to whoever sent last.
    void Send(const QByteArray& text);

    bool answersSerial = true;
    bool answersState = true;
    bool answersAlive = true;
    QByteArray state = R"({"typ":7,"content":{}})";

private:
    void Read();

    QUdpSocket m_socket;
    QMultiMap<int, QByteArray> m_texts;  ///< by type
    QHostAddress m_sender;
    quint16 m_nSenderPort = 0;
};
