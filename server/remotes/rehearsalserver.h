#pragma once

#include "device/color.h"
#include "device/command.h"
#include "device/jsonnode.h"
#include "device/universes.h"
#include "server/remotes/quota.h"
#include "server/show/show.h"

#include <QElapsedTimer>
#include <QHash>
#include <QHostAddress>
#include <QObject>
#include <QPair>
#include <QTimer>

#include <functional>
#include <string>
#include <vector>

class QUdpSocket;

/// Plays the lighting interface for people without one at hand and for tests: answers discovery, state, alive
/// and polls, switches scenes and programs, and tells each change to its other clients.
///
/// Answers that are longer than their question (states, polls, universes) leave at most four times a second
/// for each host, the rest later and only once. Universes go only to clients that have asked for the state or
/// said that they are alive. Whatever comes from a server's port is passed over: two servers would never stop
/// answering each other.
class RehearsalServer : public QObject {
    Q_OBJECT

public:
    struct Options {
        QHostAddress address{QHostAddress::AnyIPv4};
        quint16 port = 8093;
        int maxClients = 8;
        int fragmentSize = 1400;  ///< longer messages leave in marked pieces of so many bytes
        int silentAfter = -1;     ///< seconds until it answers no more; -1 never
        int delayMs = 0;  ///< how late each of its datagrams leaves; 16 MiB may be waiting, more are lost
        // A bad network, for what comes as well as for what leaves: how many of 100 datagrams it
        int dropPercent = 0;       ///< loses
        int duplicatePercent = 0;  ///< brings twice
        int reorderPercent = 0;    ///< lets others overtake

        /// Its colour is seen: it has white where a fixture has, and a scene or program that starts releases
        /// it.
        bool lightsLamps = false;
    };
    using Log = std::function<void(const QString&)>;

    /// `log` gets one readable line for each message that is acted on, and at most one a second for what is
    /// none.
    RehearsalServer(Show show, const Options& options, Log log, QObject* parent = nullptr);

    /// Binds the port. False when it is taken or the address is not this machine's; see ErrorText().
    bool Listen();
    QString ErrorText() const;

    /// Takes one datagram, which may hold anything, and answers its sender.
    void ReadMessage(const QByteArray& datagram, const QHostAddress& address, quint16 port);

    const Show& CurrentShow() const { return m_show; }
    /// The channels that remotes hold.
    const Universes& Held() const { return m_universes; }

signals:
    // What remotes have it do, for whoever lights lamps by it.
    void sceneSwitched(int nId, bool bState);
    void programSwitched(int nId, bool bState);
    void colorTaken(const Color& color);
    /// Next and previous are still set.
    void commandTaken(const Command& command);
    void channelsTaken();

private:
    struct Client {
        QHostAddress address;
        quint16 port;
        QElapsedTimer lastHeard;
        bool known = false;  ///< has begun or kept a connection, as remotes do

        QString Name() const { return QString("%1:%2").arg(address.toString()).arg(port); }
    };

    bool ListenToBroadcasts();
    void ReadPackets(QUdpSocket& socket);
    /// Lets the network do its worst with a datagram of `nBytes` before `deliver` gets it: not at all, once
    /// or twice, now or `nDelayMs` and more later.
    void Carry(int nDelayMs, qint64 nBytes, const std::function<void()>& deliver);
    void LogNoise(const QString& sLine);
    void Answer(int nType, const JSONNode& content, const Client& client);
    /// Gives a client a long answer as soon as it may have one; `nAnswer` is the type of its question or,
    /// from UniverseAnswer on, a universe.
    void Owe(const Client& client, int nAnswer);
    void GiveLongAnswer(const Client& client, int nAnswer);
    void SwitchScene(const Scene& change, const Client& from);
    void SwitchProgram(const Scene& change, const Client& from);
    void TakeCommand(const JSONNode& content, const Client& from);
    void TakeChannel(const JSONNode& content, const Client& from);
    void TakeUniverse(const JSONNode& content, const Client& from);
    void TakeRun(const JSONNode& content, const Client& from);
    void SendHeldUniverses(const Client& to);
    /// The client of an address; a new one while there is room, else null.
    Client* Admit(const QHostAddress& address, quint16 port);
    Client* FindClient(const QHostAddress& address, quint16 port);
    void Forget(const Client& client);
    void TellOthers(const Client& from, const std::string& sText);
    void TellUniverse(const Client& from, int nUniverse);
    void Send(const Client& to, const std::string& sText);
    void SendDatagram(const Client& to, const std::string& sText);
    bool IsSilent() const;

    Show m_show;
    Options m_options;
    Log m_log;
    QUdpSocket* m_pSocket;
    QUdpSocket* m_pBroadcasts;  ///< hears what is sent to everyone when m_pSocket has an address of its own
    QElapsedTimer m_upTime;
    QByteArray m_datagram;    ///< room for the longest
    qint64 m_nLateBytes = 0;  ///< of the datagrams that wait
    QTimer m_noiseTimer;      ///< runs for a second after a line about noise
    int m_nNoise = 0;         ///< datagrams that came meanwhile
    std::vector<Client> m_clients;
    Quota m_quota;
    QHash<QPair<QHostAddress, int>, quint16> m_owed;  ///< answers that wait for their turn, and to which port
    Universes m_universes;
    Color m_color;
    Command m_command{false, false, false, false, false, 100, 50};
};
