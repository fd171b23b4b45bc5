#include "server/remotes/server.h"

#include "device/logging.h"
#include "device/readers.h"
#include "server/change.h"
#include "server/remotes/replies.h"

#include <QNetworkInterface>
#include <QTimer>

#include <map>
#include <stdexcept>
#include <utility>
#include <vector>

namespace {

/// How much of a flood is read before timers have their turn: so many datagrams, or for so long.
constexpr int DatagramsPerRead = 64;
constexpr int ReadMs = 8;
constexpr int MaxDatagram = 65536;
constexpr int NoiseMs = 1000;
/// Long answers that nobody asked for come behind the types of all questions: the state and what is held, of
/// another show; and a universe, from here on.
constexpr int NewShow = 999;
constexpr int NewUniverse = 1000;

enum class Asker { Anyone, Newcomer, Client };

struct Question {
    Asker asker;     ///< who is answered; a newcomer becomes a client by it, if there is room
    bool isLong;     ///< its answer is owed: see Clients::Owe
    bool isRoutine;  ///< asked all day long, so that the log may do without
    const char* words;
};

const std::map<MessageType, Question> Questions{
    {MessageType::Discovery, {Asker::Anyone, false, true, " asks who is there"}},
    {MessageType::Alive, {Asker::Newcomer, false, true, " is alive"}},
    {MessageType::StateRequest, {Asker::Newcomer, true, false, " asks for the state"}},
    {MessageType::ScenePoll, {Asker::Client, true, true, " polls the scenes"}},
    {MessageType::CommandPoll, {Asker::Client, true, true, " polls the commands"}},
    {MessageType::ChannelPoll, {Asker::Client, true, true, " polls the channels"}},
};

/// The messages of an answer, by the type of its question or one of the numbers above.
std::vector<std::string> AnswerTo(int nQuestion, const State& state) {
    const Show& show = state.CurrentShow();
    std::vector<std::string> texts;
    switch (nQuestion) {
        case static_cast<int>(MessageType::Discovery):
            return {replies::Serial(show.serial)};
        case static_cast<int>(MessageType::Alive):
            return {messages::Bare(MessageType::Alive)};
        case static_cast<int>(MessageType::ScenePoll):
            return {replies::SceneStates(show)};
        case static_cast<int>(MessageType::CommandPoll):
            return {messages::Color(state.CurrentColor()), messages::Command(state.CurrentCommand())};
        case static_cast<int>(MessageType::StateRequest):
            return {replies::State(show, state.CurrentColor(), state.CurrentCommand())};
        case NewShow:
            texts = AnswerTo(static_cast<int>(MessageType::StateRequest), state);
            [[fallthrough]];
        case static_cast<int>(MessageType::ChannelPoll):
            for (int nUniverse = 0; nUniverse < Universes::Count; ++nUniverse) {
                if (state.Held().IsHeld(nUniverse)) {
                    texts.push_back(messages::Universe(nUniverse, state.Held()));
                }
            }
            return texts;
        default:
            return {messages::Universe(nQuestion - NewUniverse, state.Held())};
    }
}

}  // namespace

Server::Server(State& state, const Options& options, Log log)
    : m_state(state), m_options(options), m_log(std::move(log)), m_clients(options.maxClients) {
    if (options.badNetwork) {
        m_badNetwork.emplace(*options.badNetwork);
    }
    for (QUdpSocket* pSocket : {&m_socket, &m_broadcasts}) {
        connect(pSocket, &QUdpSocket::readyRead, this, [this, pSocket] { ReadPackets(*pSocket); });
    }
    connect(&m_clients, &Clients::due, this, &Server::Give);
    connect(&m_state, &State::showReplaced, this, [this] {
        for (const Client& client : m_clients.All()) {
            m_clients.Owe(client, NewShow);
        }
    });
}

bool Server::Listen() {
    m_socket.abort();
    if (!m_socket.bind(m_options.address, m_options.port, QUdpSocket::DontShareAddress)) {
        return false;
    }
    // A socket with an address of its own hears no broadcast; a second one on the broadcast address does,
    // shared with the other servers of this machine.
    for (const QNetworkInterface& interface : QNetworkInterface::allInterfaces()) {
        for (const QNetworkAddressEntry& entry : interface.addressEntries()) {
            if (entry.ip() == m_options.address && !entry.broadcast().isNull()) {
                return m_broadcasts.bind(entry.broadcast(), m_options.port,
                                         QUdpSocket::ShareAddress | QUdpSocket::ReuseAddressHint);
            }
        }
    }
    return true;
}

QString Server::ErrorText() const {
    return (m_socket.state() == QUdpSocket::BoundState ? m_broadcasts : m_socket).errorString();
}

/// Reads until there is nothing, and even when there is nothing: the kernel drops a datagram with a wrong
/// checksum only here, after it was signalled, and without a read Qt never signals again.
void Server::ReadPackets(QUdpSocket& socket) {
    QByteArray buffer(MaxDatagram, Qt::Uninitialized);
    QElapsedTimer turn;
    turn.start();
    for (int i = 0; i < DatagramsPerRead && !turn.hasExpired(ReadMs); ++i) {
        QHostAddress address;
        quint16 port = 0;
        const qint64 nRead = socket.readDatagram(buffer.data(), buffer.size(), &address, &port);
        if (nRead < 0) {
            return;
        }
        const QByteArray datagram = buffer.left(static_cast<int>(nRead));
        const auto read = [this, datagram, address, port] { ReadMessage(datagram, address, port); };
        m_badNetwork ? m_badNetwork->Carry(BadNetwork::In, nRead, read) : read();
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
        Answer(static_cast<MessageType>(nType), content, sender);
    } catch (const std::invalid_argument& error) {
        LogNoise(sender.Name() + " sent " + QString::number(datagram.size()) +
                 " bytes of no message: " + error.what());
    }
}

void Server::Answer(MessageType type, const JSONNode& content, const Client& sender) {
    const auto question = Questions.find(type);
    if (type == MessageType::Goodbye) {
        m_log(sender.Name() + " says goodbye");
        m_clients.Forget(sender);
    } else if (type == MessageType::Record) {
        TakeRecord(content, sender);
    } else if (question == Questions.end()) {
        TakeChange(type, content, sender);
    } else if (question->second.asker == Asker::Newcomer && !m_clients.Admit(sender)) {
        LogNoise(sender.Name() + " refused: too many clients");
        Send(sender, messages::Bare(MessageType::TooManyClients));
    } else if (question->second.asker == Asker::Client && !m_clients.Hear(sender)) {
        LogNoise(sender.Name() + " polls and, a stranger, gets no answer");
    } else if (question->second.isLong) {
        m_clients.Owe(sender, static_cast<int>(type));
    } else {
        Give(sender, static_cast<int>(type));
    }
}

/// It tells what is so when it leaves.
void Server::Give(const Client& client, int nAnswer) {
    const auto question = Questions.find(static_cast<MessageType>(nAnswer));
    if (question != Questions.end() && (m_options.isVerbose || !question->second.isRoutine)) {
        m_log(client.Name() + question->second.words);
    }
    for (const std::string& sText : AnswerTo(nAnswer, m_state)) {
        Send(client, sText);
    }
}

void Server::TakeRecord(const JSONNode& content, const Client& sender) {
    // A remote's address can be made up, but not as one of this computer: the kernel takes no such datagram
    // from a network.
    const bool bHere =
        sender.address.isLoopback() || QNetworkInterface::allAddresses().contains(sender.address);
    if (!m_recorder || !bHere) {
        LogNoise(sender.Name() + " wants to record, which another computer may not");
        return;
    }
    Recording wanted;
    readInto(content, wanted);
    try {
        const QString sLine = m_recorder(wanted);
        m_log(sender.Name() + " records " + sLine);
        Send(sender, replies::Recorded(true, sLine.toStdString()));
    } catch (const std::runtime_error& error) {
        m_log(sender.Name() + " records nothing: " + error.what());
        Send(sender, replies::Recorded(false, error.what()));
    }
}

void Server::TakeChange(MessageType type, const JSONNode& content, const Client& sender) {
    const auto change = TakeMessage(m_state, type, content);
    if (!change) {
        LogNoise(
            QString("%1 sent type %2, which changes nothing").arg(sender.Name()).arg(static_cast<int>(type)));
        return;
    }
    const Command& command = m_state.CurrentCommand();
    m_log(sender.Name() + ' ' + change->words + (change->starts && command.bo ? ", while Black is on" : ""));
    m_clients.Hear(sender);
    for (const Client& client : m_clients.All()) {
        const bool bOther = !(client == sender);
        // A remote shows of a level what the server holds, not what it asked for.
        if (!change->message.empty() && (bOther || change->isLevel)) {
            Send(client, change->message);
        }
        // Remotes show these as off after a start, which they are not.
        if (change->starts && (command.bo || command.white || command.hold)) {
            Send(client, messages::Command(command));
        }
        if (bOther && Universes::HasUniverse(change->universe)) {
            m_clients.Owe(client, NewUniverse + change->universe);
        }
    }
}

void Server::Send(const Client& to, const std::string& sText) {
    for (const std::string& sPiece :
         replies::Split(sText, static_cast<std::size_t>(m_options.fragmentSize))) {
        const QByteArray datagram = QByteArray::fromStdString(sPiece);
        const auto send = [this, datagram, to] {
            qCInfo(logWire).noquote() << "out" << logging::Summary(datagram) << "to" << to.Name();
            m_socket.writeDatagram(datagram, to.address, to.port);
        };
        m_badNetwork ? m_badNetwork->Carry(BadNetwork::Out, datagram.size(), send) : send();
    }
}

void Server::LogNoise(const QString& sLine) {
    if (m_nNoise++ > 0) {
        return;
    }
    m_log(sLine);
    QTimer::singleShot(NoiseMs, this, [this] {
        if (const int nMissed = std::exchange(m_nNoise, 0) - 1; nMissed > 0) {
            LogNoise(QString::number(nMissed) + " more datagrams were of no use");
        }
    });
}
