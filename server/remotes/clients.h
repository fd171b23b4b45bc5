#pragma once

#include <QElapsedTimer>
#include <QHash>
#include <QHostAddress>
#include <QObject>
#include <QPair>
#include <QVector>

#include <deque>

/// An address that answers go to.
struct Client {
    QHostAddress address;
    quint16 port = 0;
    QElapsedTimer lastHeard;

    QString Name() const { return QString("%1:%2").arg(address.toString()).arg(port); }
    bool operator==(const Client& other) const { return port == other.port && address == other.address; }
};

/// Who is served, and how often. A client is who has asked for the state or said that it is alive, until it
/// leaves or has been silent for 15 s.
///
/// A sender's address can be made up, so how often a host gets a long answer is also how often a host is sent
/// what it never asked for: four times in any second. What is asked beyond that waits for its turn.
class Clients : public QObject {
    Q_OBJECT

public:
    explicit Clients(int nMost) : m_nMost(nMost) { m_clock.start(); }

    /// Makes the sender a client; false if there is no room.
    bool Admit(const Client& sender);
    /// Whether the sender is one; if so, it has been heard.
    bool Hear(const Client& sender);
    void Forget(const Client& client) { m_clients.removeAll(client); }
    const QVector<Client>& All() const { return m_clients; }

    /// Has a client given a long answer as soon as its host may have one. `nAnswer` says which; what is asked
    /// again while it waits is given once, to the port that asked last.
    void Owe(const Client& client, int nAnswer);

signals:
    /// Give the client its answer now.
    void due(const Client& client, int nAnswer);

private:
    struct Given {
        QHostAddress host;
        qint64 atMs;
    };

    /// Takes account of an answer if the host may have one now (0); else in how many ms to ask again.
    qint64 WaitMs(const QHostAddress& host);

    int m_nMost;
    QElapsedTimer m_clock;
    QVector<Client> m_clients;
    std::deque<Given> m_given;                        ///< the long answers of the last second
    QHash<QPair<QHostAddress, int>, quint16> m_owed;  ///< answers that wait, and to which port
};
