#include "server/remotes/server.h"

#include "device/logging.h"
#include "device/messages.h"
#include "device/readers.h"
#include "server/change.h"
#include "server/remotes/replies.h"

#include <QNetworkInterface>
#include <QUdpSocket>

#include <stdexcept>
#include <utility>

namespace {

/// How much of a flood is read before timers have their turn: so many datagrams, or for so long.
constexpr int DatagramsPerRead = 64;
constexpr int ReadMs = 8;
constexpr int MaxDatagram = 65536;
constexpr int NoiseMs = 1000;
/// Among the long answers those about a universe come behind the types of all questions.
constexpr int UniverseAnswer = 1000;
/// The state and what is held, of a show that nobody asked for.
constexpr int NewShow = 999;

/// A remote's address can be made up, but not as one of this computer: the kernel takes no such datagram from
/// a network.
bool IsOfThisComputer(const QHostAddress& address) {
    return address.isLoopback() || QNetworkInterface::allAddresses().contains(address);
}

}  // namespace

Server::Server(State& state, const Options& options, Log log)
    : m_state(state),
      m_options(options),
      m_log(std::move(log)),
      m_pSocket(new QUdpSocket(this)),
      m_pBroadcasts(new QUdpSocket(this)),
      m_datagram(MaxDatagram, Qt::Uninitialized),
      m_clients(options.maxClients) {
    if (options.badNetwork) {
        m_badNetwork.emplace(*options.badNetwork);
    }
    for (QUdpSocket* pSocket : {m_pSocket, m_pBroadcasts}) {
        connect(pSocket, &QUdpSocket::readyRead, this, [this, pSocket] { ReadPackets(*pSocket); });
    }
    connect(&m_clients, &Clients::due, this, &Server::GiveLongAnswer);
    connect(&m_state, &State::showReplaced, this, [this] {
        for (const Client& client : std::vector<Client>(m_clients.All())) {
            m_clients.Owe(client, NewShow);
        }
    });
    m_noiseTimer.setSingleShot(true);
    connect(&m_noiseTimer, &QTimer::timeout, this, [this] {
        if (const int nMissed = std::exchange(m_nNoise, 0); nMissed > 0) {
            LogNoise(QString::number(nMissed) + " more datagrams were of no use");
        }
    });
}

bool Server::Listen() {
    m_pSocket->abort();
    return m_pSocket->bind(m_options.address, m_options.port, QAbstractSocket::DontShareAddress) &&
           ListenToBroadcasts();
}

/// A socket with an address of its own hears no broadcast; a second one on the broadcast address does, shared
/// with the other servers of this machine.
bool Server::ListenToBroadcasts() {
    const QList<QNetworkInterface> interfaces = QNetworkInterface::allInterfaces();
    for (const QNetworkInterface& interface : interfaces) {
        const QList<QNetworkAddressEntry> entries = interface.addressEntries();
        for (const QNetworkAddressEntry& entry : entries) {
            if (entry.ip() == m_options.address && !entry.broadcast().isNull()) {
                return m_pBroadcasts->bind(entry.broadcast(), m_options.port,
                                           QAbstractSocket::ShareAddress | QAbstractSocket::ReuseAddressHint);
            }
        }
    }
    return true;
}

bool Server::LacksAddress() const {
    return m_pSocket->error() == QAbstractSocket::SocketAddressNotAvailableError;
}

QString Server::ErrorText() const {
    return (m_pSocket->state() == QAbstractSocket::BoundState ? m_pBroadcasts : m_pSocket)->errorString();
}

/// Reads until there is nothing, and even when there is nothing: the kernel drops a datagram with a wrong
/// checksum only here, after it was signalled, and without a read Qt never signals again.
void Server::ReadPackets(QUdpSocket& socket) {
    QElapsedTimer turn;
    turn.start();
    for (int i = 0; i < DatagramsPerRead && !turn.hasExpired(ReadMs); ++i) {
        QHostAddress address;
        quint16 port = 0;
        const qint64 nRead = socket.readDatagram(m_datagram.data(), m_datagram.size(), &address, &port);
        if (nRead < 0) {
            return;
        }
        const QByteArray datagram(m_datagram.constData(), static_cast<int>(nRead));
        const auto read = [this, datagram, address, port] { ReadMessage(datagram, address, port); };
        if (m_badNetwork) {
            m_badNetwork->CarryIn(nRead, read);
        } else {
            read();
        }
    }
}

void Server::ReadMessage(const QByteArray& datagram, const QHostAddress& address, quint16 port) {
    if (port == Port || port == FallBackPort) {
        qCInfo(logDrop) << "from a server's port:" << datagram.size() << "bytes";
        return;
    }
    const Client sender{address, port, {}};
    qCInfo(logWire).noquote() << "in" << logging::Summary(datagram) << "from" << sender.Name();
    try {
        const JSONDocument document(datagram);
        int nType = 0;
        document.Root().ForEachMember("typ", [&nType](const JSONNode& value) { nType = value.AsInt(); });
        JSONNode content = document.Root();
        document.Root().ForEachMember("content", [&content](const JSONNode& value) { content = value; });
        Answer(nType, content, sender);
    } catch (const std::invalid_argument& error) {
        LogNoise(sender.Name() + " sent " + QString::number(datagram.size()) +
                 " bytes of no message: " + error.what());
    }
}

void Server::Answer(int nType, const JSONNode& content, const Client& sender) {
    switch (static_cast<MessageType>(nType)) {
        case MessageType::Discovery:
            LogRoutine(sender.Name() + " asks who is there");
            Send(sender, replies::Serial(m_state.CurrentShow().serial));
            break;
        case MessageType::Goodbye:
            m_log(sender.Name() + " says goodbye");
            m_clients.Forget(sender);
            break;
        case MessageType::Alive:
        case MessageType::StateRequest:
            if (m_clients.Admit(sender)) {
                AnswerClient(nType, sender);
            } else {
                LogNoise(sender.Name() + " refused: too many clients");
                Send(sender, messages::Bare(MessageType::TooManyClients));
            }
            break;
        case MessageType::ScenePoll:
        case MessageType::CommandPoll:
        case MessageType::ChannelPoll:
            if (m_clients.Hear(sender)) {
                AnswerClient(nType, sender);
            } else {
                LogNoise(sender.Name() + " polls and, a stranger, gets no answer");
            }
            break;
        case MessageType::Record:
            TakeRecord(content, sender);
            break;
        default:
            if (!TakeChange(nType, content, sender)) {
                LogNoise(sender.Name() + " sent type " + QString::number(nType) + ", which changes nothing");
            }
            break;
    }
}

void Server::AnswerClient(int nType, const Client& sender) {
    if (nType == static_cast<int>(MessageType::Alive)) {
        LogRoutine(sender.Name() + " is alive");
        Send(sender, messages::Bare(MessageType::Alive));
    } else {
        m_clients.Owe(sender, nType);
    }
}

/// It tells what is so when it leaves.
void Server::GiveLongAnswer(const Client& client, int nAnswer) {
    switch (nAnswer) {
        case static_cast<int>(MessageType::StateRequest):
            m_log(client.Name() + " asks for the state");
            SendState(client);
            break;
        case NewShow:
            SendState(client);
            SendHeldUniverses(client);
            break;
        case static_cast<int>(MessageType::ScenePoll):
            LogRoutine(client.Name() + " polls the scenes");
            Send(client, replies::SceneStates(m_state.CurrentShow()));
            break;
        case static_cast<int>(MessageType::CommandPoll):
            LogRoutine(client.Name() + " polls the commands");
            Send(client, messages::Color(m_state.CurrentColor()));
            Send(client, messages::Command(m_state.CurrentCommand()));
            break;
        case static_cast<int>(MessageType::ChannelPoll):
            LogRoutine(client.Name() + " polls the channels");
            SendHeldUniverses(client);
            break;
        default:
            Send(client, messages::Universe(nAnswer - UniverseAnswer, m_state.Held()));
            break;
    }
}

void Server::SendState(const Client& to) {
    Send(to, replies::State(m_state.CurrentShow(), m_state.CurrentColor(), m_state.CurrentCommand()));
}

void Server::SendHeldUniverses(const Client& to) {
    for (int nUniverse = 0; nUniverse < Universes::Count; ++nUniverse) {
        if (m_state.Held().IsHeld(nUniverse)) {
            Send(to, messages::Universe(nUniverse, m_state.Held()));
        }
    }
}

void Server::TakeRecord(const JSONNode& content, const Client& sender) {
    if (!m_recorder || !IsOfThisComputer(sender.address)) {
        LogNoise(sender.Name() + " wants to record, which another computer may not");
        return;
    }
    Recording wanted;
    readInto(content, wanted);
    bool bDone = false;
    QString sLine;
    try {
        sLine = m_recorder(wanted);
        bDone = true;
    } catch (const std::runtime_error& error) {
        sLine = error.what();
    }
    m_log(sender.Name() + (bDone ? " records " : " records nothing: ") + sLine);
    Send(sender, replies::Recorded(bDone, sLine.toStdString()));
}

bool Server::TakeChange(int nType, const JSONNode& content, const Client& sender) {
    const auto change = TakeMessage(m_state, static_cast<MessageType>(nType), content);
    if (!change) {
        return false;
    }
    const Command& command = m_state.CurrentCommand();
    m_log(sender.Name() + ' ' + change->words + (change->starts && command.bo ? ", while Black is on" : ""));
    const bool bClient = m_clients.Hear(sender);
    if (!change->message.empty()) {
        TellOthers(sender, change->message);
    }
    if (change->starts && (command.bo || command.white || command.hold)) {
        // Remotes show these as off after a start, which they are not.
        TellOthers({}, messages::Command(command));
    }
    if (change->isLevel && bClient) {
        // A remote shows what the server holds, not what it asked for.
        Send(sender, change->message);
    }
    if (Universes::HasUniverse(change->universe)) {
        for (const Client& client : m_clients.All()) {
            if (!(client == sender)) {
                m_clients.Owe(client, UniverseAnswer + change->universe);
            }
        }
    }
    return true;
}

void Server::TellOthers(const Client& from, const std::string& sText) {
    for (const Client& client : m_clients.All()) {
        if (!(client == from)) {
            Send(client, sText);
        }
    }
}

void Server::Send(const Client& to, const std::string& sText) {
    const auto nLimit = static_cast<std::size_t>(m_options.fragmentSize);
    if (sText.size() <= nLimit) {
        SendDatagram(to, QByteArray::fromStdString(sText));
        return;
    }
    for (const std::string& sPiece : replies::Split(sText, nLimit)) {
        SendDatagram(to, QByteArray::fromStdString(sPiece));
    }
}

void Server::SendDatagram(const Client& to, const QByteArray& datagram) {
    const auto send = [this, to, datagram] {
        qCInfo(logWire).noquote() << "out" << logging::Summary(datagram) << "to" << to.Name();
        m_pSocket->writeDatagram(datagram, to.address, to.port);
    };
    if (m_badNetwork) {
        m_badNetwork->CarryOut(datagram.size(), send);
    } else {
        send();
    }
}

void Server::LogRoutine(const QString& sLine) {
    if (m_options.isVerbose) {
        m_log(sLine);
    }
}

void Server::LogNoise(const QString& sLine) {
    if (m_noiseTimer.isActive()) {
        ++m_nNoise;
        return;
    }
    m_log(sLine);
    m_noiseTimer.start(NoiseMs);
}
