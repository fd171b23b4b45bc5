#pragma once

#include "device/jsonnode.h"
#include "device/messages.h"
#include "device/recording.h"
#include "server/remotes/badnetwork.h"
#include "server/remotes/clients.h"
#include "server/state.h"

#include <QObject>
#include <QUdpSocket>

#include <functional>
#include <optional>
#include <string>

/// The conversation with the remotes: says what the state is, changes it as they ask, and tells each change
/// to the other clients.
///
/// Answers that are longer than their question (states, polls, universes) go to clients alone and leave at
/// most four times a second for each host, the rest later and only once. Whoever is no client can switch,
/// colour and hold all the same, and takes no place by it. Whatever comes from a server's port is passed
/// over: two servers would never stop answering each other.
class Server : public QObject {
    Q_OBJECT

public:
    static constexpr quint16 Port = 8093;
    static constexpr quint16 FallBackPort = 8011;

    struct Options {
        QHostAddress address{QHostAddress::AnyIPv4};
        quint16 port = Port;
        int maxClients = 8;
        int fragmentSize = 1400;  ///< longer messages leave in marked pieces of so many bytes
        bool isVerbose = false;   ///< logs also what every remote says all day long
        std::optional<BadNetwork::Options> badNetwork = {};
    };
    using Log = std::function<void(const QString&)>;

    /// The state must outlive it. `log` gets one readable line for each message that is acted on, and at most
    /// one a second for those that are not.
    Server(State& state, const Options& options, Log log);

    /// Binds the port. False when it is taken or the address is not this machine's; see ErrorText(). It may
    /// be tried again.
    bool Listen();
    /// Whether that failed for want of the address.
    bool LacksAddress() const { return m_socket.error() == QUdpSocket::SocketAddressNotAvailableError; }
    QString ErrorText() const;

    /// Records what the lamps show, as Record() does. Whoever asks for it on this computer is obeyed.
    void SetRecorder(std::function<QString(const Recording&)> recorder) { m_recorder = std::move(recorder); }

    /// Takes one datagram, which may hold anything, and answers its sender.
    void ReadMessage(const QByteArray& datagram, const QHostAddress& address, quint16 port);

private:
    void ReadPackets(QUdpSocket& socket);
    void Answer(MessageType type, const JSONNode& content, const Client& sender);
    /// Gives what is asked by a type of question, or a long answer that nobody asked for.
    void Give(const Client& client, int nAnswer);
    void TakeRecord(const JSONNode& content, const Client& sender);
    /// What changes nothing is noise.
    void TakeChange(MessageType type, const JSONNode& content, const Client& sender);
    void Send(const Client& to, const std::string& sText);
    /// At most a line a second: what strangers send for no use must not fill a disk.
    void LogNoise(const QString& sLine);

    State& m_state;
    Options m_options;
    Log m_log;
    std::function<QString(const Recording&)> m_recorder;
    QUdpSocket m_socket;
    QUdpSocket m_broadcasts;  ///< hears what is sent to everyone when m_socket has an address of its own
    std::optional<BadNetwork> m_badNetwork;  ///< which all datagrams pass, if it is asked for
    Clients m_clients;
    int m_nNoise = 0;  ///< datagrams of no use since the last line, with the one that it is about
};
