#pragma once

#include "device/color.h"
#include "device/command.h"
#include "device/jsonnode.h"
#include "device/universes.h"
#include "server/show.h"

#include <QElapsedTimer>
#include <QHostAddress>
#include <QObject>

#include <functional>
#include <string>
#include <vector>

class QUdpSocket;

/// Plays the lighting interface for people without one at hand and for tests: answers discovery, state, alive
/// and polls, switches scenes and programs, and tells each change to its other clients.
class RehearsalServer : public QObject {
    Q_OBJECT

public:
    struct Options {
        QHostAddress address{QHostAddress::AnyIPv4};
        quint16 port = 8093;
        int maxClients = 8;
        int fragmentSize = 1400;  ///< longer messages leave in marked pieces of so many bytes
        int silentAfter = -1;     ///< seconds until it answers no more; -1 never
        int delayMs = 0;          ///< how late each of its datagrams leaves
        // A bad network, for what comes as well as for what leaves: how many of 100 datagrams it
        int dropPercent = 0;       ///< loses
        int duplicatePercent = 0;  ///< brings twice
        int reorderPercent = 0;    ///< lets others overtake
    };
    using Log = std::function<void(const QString&)>;

    /// `log` gets one readable line for each message.
    RehearsalServer(Show show, const Options& options, Log log, QObject* parent = nullptr);

    /// Binds the port. False when it is taken or the address is not this machine's; see ErrorText().
    bool Listen();
    QString ErrorText() const;

    const Show& CurrentShow() const { return m_show; }

private:
    struct Client {
        QHostAddress address;
        quint16 port;
        QElapsedTimer lastHeard;

        QString Name() const { return QString("%1:%2").arg(address.toString()).arg(port); }
    };

    bool ListenToBroadcasts();
    void ReadPackets(QUdpSocket& socket);
    /// Lets the network do its worst with a datagram before `deliver` gets it: not at all, once or twice, now
    /// or `nDelayMs` and more later.
    void Carry(int nDelayMs, const std::function<void()>& deliver);
    void ReadMessage(const QByteArray& datagram, const QHostAddress& address, quint16 port);
    void Answer(int nType, const JSONNode& content, const Client& client);
    void SwitchScene(const Scene& change, const Client& from);
    void SwitchProgram(const Scene& change, const Client& from);
    void TakeCommand(const JSONNode& content, const Client& from);
    void TakeChannel(const JSONNode& content, const Client& from);
    void TakeUniverse(const JSONNode& content, const Client& from);
    void TakeRun(const JSONNode& content, const Client& from);
    void SendHeldUniverses(const Client& to);
    /// The client of an address; a new one while there is room, else null.
    Client* Admit(const QHostAddress& address, quint16 port);
    void Forget(const Client& client);
    void TellOthers(const Client& from, const std::string& sText);
    void Send(const Client& to, const std::string& sText);
    void SendDatagram(const Client& to, const std::string& sText);
    bool IsSilent() const;

    Show m_show;
    Options m_options;
    Log m_log;
    QUdpSocket* m_pSocket;
    QUdpSocket* m_pBroadcasts;  ///< hears what is sent to everyone when m_pSocket has an address of its own
    QElapsedTimer m_upTime;
    std::vector<Client> m_clients;
    Universes m_universes;
    Color m_color;
    Command m_command{false, false, false, false, false, 100, 50};
};
