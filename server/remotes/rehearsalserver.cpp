#include "server/remotes/rehearsalserver.h"

#include "device/logging.h"
#include "device/messages.h"
#include "device/readers.h"
#include "server/remotes/replies.h"

#include <QNetworkDatagram>
#include <QNetworkInterface>
#include <QRandomGenerator>
#include <QTimer>
#include <QUdpSocket>

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace {

/// A client that has said nothing for this long has left without a goodbye.
constexpr int ClientTimeoutMs = 15000;
/// How late a datagram is that others overtake.
constexpr int OvertakenMs = 30;
/// How much of a flood is read before timers have their turn: so many datagrams, or for so long.
constexpr int DatagramsPerRead = 64;
constexpr int ReadMs = 8;
constexpr int MaxDatagram = 65536;
/// What may wait in all, each datagram with what its timer takes beside it.
constexpr qint64 MaxLateBytes = qint64{16} * 1024 * 1024;
constexpr int TimerBytes = 512;
constexpr int NoiseMs = 1000;
/// Among the long answers those about a universe come behind the types of all questions.
constexpr int UniverseAnswer = 1000;

Scene* Find(std::vector<Scene>& entries, int nId) {
    const auto entry =
        std::find_if(entries.begin(), entries.end(), [nId](const Scene& s) { return s.id == nId; });
    return entry != entries.end() ? &*entry : nullptr;
}

bool HasWhite(const Show& show) {
    return std::any_of(show.fixtures.begin(), show.fixtures.end(),
                       [](const Fixture& fixture) { return fixture.layout.find('w') != std::string::npos; });
}

bool Happens(int nPercent) {
    return QRandomGenerator::global()->bounded(100) < nPercent;
}

QString OnOff(bool bState) {
    return bState ? "on" : "off";
}

}  // namespace

RehearsalServer::RehearsalServer(Show show, const Options& options, Log log, QObject* parent)
    : QObject(parent),
      m_show(std::move(show)),
      m_options(options),
      m_log(std::move(log)),
      m_pSocket(new QUdpSocket(this)),
      m_pBroadcasts(new QUdpSocket(this)),
      m_datagram(MaxDatagram, Qt::Uninitialized),
      m_quota(2 * options.maxClients) {  // some may have just left
    m_color.rgbw = m_options.lightsLamps && HasWhite(m_show);
    for (QUdpSocket* pSocket : {m_pSocket, m_pBroadcasts}) {
        connect(pSocket, &QUdpSocket::readyRead, this, [this, pSocket] { ReadPackets(*pSocket); });
    }
    m_noiseTimer.setSingleShot(true);
    connect(&m_noiseTimer, &QTimer::timeout, this, [this] {
        if (const int nMissed = std::exchange(m_nNoise, 0); nMissed > 0) {
            LogNoise(QString::number(nMissed) + " more datagrams were no message");
        }
    });
}

bool RehearsalServer::Listen() {
    m_upTime.start();
    return m_pSocket->bind(m_options.address, m_options.port, QAbstractSocket::DontShareAddress) &&
           ListenToBroadcasts();
}

/// A socket with an address of its own hears no broadcast; a second one on the broadcast address does, shared
/// with the other servers of this machine.
bool RehearsalServer::ListenToBroadcasts() {
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

QString RehearsalServer::ErrorText() const {
    return (m_pSocket->state() == QAbstractSocket::BoundState ? m_pBroadcasts : m_pSocket)->errorString();
}

/// Reads until there is nothing, and even when there is nothing: the kernel drops a datagram with a wrong
/// checksum only here, after it was signalled, and without a read Qt never signals again.
void RehearsalServer::ReadPackets(QUdpSocket& socket) {
    QElapsedTimer turn;
    turn.start();
    for (int i = 0; i < DatagramsPerRead && !turn.hasExpired(ReadMs); ++i) {
        QHostAddress address;
        quint16 port = 0;
        const qint64 nRead = socket.readDatagram(m_datagram.data(), m_datagram.size(), &address, &port);
        if (nRead < 0) {
            return;
        }
        if (IsSilent() || port == m_options.port) {
            qCInfo(logDrop) << (IsSilent() ? "silent by option:" : "from a server's port:") << nRead
                            << "bytes";
        } else {
            const QByteArray datagram(m_datagram.constData(), static_cast<int>(nRead));
            qCInfo(logWire).noquote()
                << "in" << logging::Summary(datagram) << "from" << address.toString() << port;
            Carry(0, nRead, [this, datagram, address, port] { ReadMessage(datagram, address, port); });
        }
    }
}

void RehearsalServer::Carry(int nDelayMs, qint64 nBytes, const std::function<void()>& deliver) {
    if (Happens(m_options.dropPercent)) {
        qCInfo(logDrop) << "lost by option:" << nBytes << "bytes";
        return;
    }
    for (int nCopies = Happens(m_options.duplicatePercent) ? 2 : 1; nCopies > 0; --nCopies) {
        const int nLate = nDelayMs + (Happens(m_options.reorderPercent) ? OvertakenMs : 0);
        if (nLate == 0) {
            deliver();
        } else if (const qint64 nRoom = nBytes + TimerBytes; m_nLateBytes + nRoom <= MaxLateBytes) {
            m_nLateBytes += nRoom;
            QTimer::singleShot(nLate, this, [this, nRoom, deliver] {
                m_nLateBytes -= nRoom;
                deliver();
            });
        } else {
            qCInfo(logDrop) << "too much is delayed:" << nBytes << "bytes";
        }
    }
}

void RehearsalServer::ReadMessage(const QByteArray& datagram, const QHostAddress& address, quint16 port) {
    const Client stranger{address, port, {}};
    try {
        const JSONDocument document(datagram);
        int nType = 0;
        document.Root().ForEachMember("typ", [&nType](const JSONNode& value) { nType = value.AsInt(); });
        if (nType == static_cast<int>(MessageType::Discovery)) {
            m_log(stranger.Name() + " asks who is there");
            Send(stranger, replies::Serial(m_show.serial));
            return;
        }
        Client* pClient = Admit(address, port);
        if (pClient == nullptr) {
            m_log(stranger.Name() + " refused: too many clients");
            Send(stranger, messages::Bare(MessageType::TooManyClients));
            return;
        }
        pClient->known = pClient->known || nType == static_cast<int>(MessageType::StateRequest) ||
                         nType == static_cast<int>(MessageType::Alive);
        JSONNode content = document.Root();
        document.Root().ForEachMember("content", [&content](const JSONNode& value) { content = value; });
        Answer(nType, content, Client(*pClient));
    } catch (const std::invalid_argument& error) {
        LogNoise(stranger.Name() + " sent " + QString::number(datagram.size()) +
                 " bytes of no message: " + error.what());
    }
}

/// At most a line a second: noise must not fill a disk.
void RehearsalServer::LogNoise(const QString& sLine) {
    if (m_noiseTimer.isActive()) {
        ++m_nNoise;
        return;
    }
    m_log(sLine);
    m_noiseTimer.start(NoiseMs);
}

void RehearsalServer::Answer(int nType, const JSONNode& content, const Client& client) {
    Scene change;
    switch (static_cast<MessageType>(nType)) {
        case MessageType::Alive:
            m_log(client.Name() + " is alive");
            Send(client, messages::Bare(MessageType::Alive));
            break;
        case MessageType::Goodbye:
            m_log(client.Name() + " says goodbye");
            Forget(client);
            break;
        case MessageType::StateRequest:
        case MessageType::ScenePoll:
        case MessageType::CommandPoll:
        case MessageType::ChannelPoll:
            Owe(client, nType);
            break;
        case MessageType::Scene:
            readInto(content, change);
            SwitchScene(change, client);
            break;
        case MessageType::Program:
            readInto(content, change);
            SwitchProgram(change, client);
            break;
        case MessageType::Color:
            readInto(content, m_color);
            m_log(client.Name() + QString(" color %1 %2 %3 white %4 %5")
                                      .arg(m_color.r)
                                      .arg(m_color.g)
                                      .arg(m_color.b)
                                      .arg(m_color.w)
                                      .arg(OnOff(m_color.state)));
            TellOthers(client, messages::Color(m_color));
            emit colorTaken(m_color);
            break;
        case MessageType::Command:
            TakeCommand(content, client);
            break;
        case MessageType::Channel:
            TakeChannel(content, client);
            break;
        case MessageType::Universe:
            TakeUniverse(content, client);
            break;
        case MessageType::UniverseColor:
            TakeRun(content, client);
            break;
        default:
            m_log(client.Name() + " sent type " + QString::number(nType) + ", which is not rehearsed");
            break;
    }
}

/// An answer that must wait is given once, however often it is asked for meanwhile, and to the port that
/// asked last. It tells what is so when it leaves.
void RehearsalServer::Owe(const Client& client, int nAnswer) {
    if (nAnswer == static_cast<int>(MessageType::ChannelPoll) && !client.known) {
        m_log(client.Name() + " polls the channels and, a stranger, gets none");
        return;
    }
    const QPair<QHostAddress, int> debt(client.address, nAnswer);
    if (m_owed.contains(debt)) {
        m_owed[debt] = client.port;
        return;
    }
    const qint64 nWaitMs = m_quota.Take(client.address, m_upTime.elapsed());
    if (nWaitMs == 0) {
        GiveLongAnswer(client, nAnswer);
    } else if (nWaitMs > 0) {
        m_owed.insert(debt, client.port);
        QTimer::singleShot(static_cast<int>(nWaitMs), this, [this, debt] {
            const Client* pClient = FindClient(debt.first, m_owed.take(debt));
            if (pClient != nullptr) {
                Owe(Client(*pClient), debt.second);
            }
        });
    }
}

void RehearsalServer::GiveLongAnswer(const Client& client, int nAnswer) {
    switch (nAnswer) {
        case static_cast<int>(MessageType::StateRequest):
            m_log(client.Name() + " asks for the state");
            Send(client, replies::State(m_show, m_color, m_command));
            break;
        case static_cast<int>(MessageType::ScenePoll):
            m_log(client.Name() + " polls the scenes");
            Send(client, replies::SceneStates(m_show));
            break;
        case static_cast<int>(MessageType::CommandPoll):
            m_log(client.Name() + " polls the commands");
            Send(client, messages::Color(m_color));
            Send(client, messages::Command(m_command));
            break;
        case static_cast<int>(MessageType::ChannelPoll):
            m_log(client.Name() + " polls the channels");
            SendHeldUniverses(client);
            break;
        default:
            Send(client, replies::Universe(m_universes, nAnswer - UniverseAnswer));
            break;
    }
}

void RehearsalServer::SwitchScene(const Scene& change, const Client& from) {
    m_log(from.Name() + QString(" scene %1 %2").arg(change.id).arg(OnOff(change.state)));
    Scene* pScene = Find(m_show.scenes, change.id);
    if (pScene == nullptr) {
        return;
    }
    if (change.state) {
        for (Scene& other : m_show.scenes) {
            other.state = other.state && other.area != pScene->area;
        }
    }
    pScene->state = change.state;
    m_color.state = m_color.state && !(change.state && m_options.lightsLamps);
    TellOthers(from, messages::Scene(pScene->id, pScene->area, pScene->state));
    emit sceneSwitched(pScene->id, pScene->state);
}

void RehearsalServer::SwitchProgram(const Scene& change, const Client& from) {
    m_log(from.Name() + QString(" program %1 %2").arg(change.id).arg(OnOff(change.state)));
    Scene* pProgram = Find(m_show.programs, change.id);
    if (pProgram == nullptr) {
        return;
    }
    pProgram->state = change.state;
    m_color.state = m_color.state && !(change.state && m_options.lightsLamps);
    TellOthers(from, messages::Program(pProgram->id, pProgram->state));
    emit programSwitched(pProgram->id, pProgram->state);
}

void RehearsalServer::TakeCommand(const JSONNode& content, const Client& from) {
    readInto(content, m_command);
    QStringList flags;
    for (const auto& [bFlag, pName] : {std::pair{m_command.white, "white"},
                                       {m_command.bo, "black"},
                                       {m_command.next, "next"},
                                       {m_command.prev, "previous"},
                                       {m_command.hold, "pause"}}) {
        if (bFlag) {
            flags.append(pName);
        }
    }
    m_log(from.Name() + QString(" commands [%1] dimmer %2 % speed %3 %")
                            .arg(flags.join(' '))
                            .arg(m_command.dim)
                            .arg(m_command.speed));
    emit commandTaken(m_command);
    // Next and previous are done once they are taken.
    m_command.next = false;
    m_command.prev = false;
    TellOthers(from, messages::Command(m_command));
}

/// Channel -1 stands for all of the universe.
void RehearsalServer::TakeChannel(const JSONNode& content, const Client& from) {
    DmxChan channel;
    readInto(content, channel);
    m_log(from.Name() + QString(" universe %1 channel %2 level %3 %4")
                            .arg(channel.univ)
                            .arg(channel.chan)
                            .arg(channel.level)
                            .arg(OnOff(channel.state)));
    if (channel.chan == -1) {
        m_universes.SetAll(channel.univ, static_cast<unsigned char>(channel.level), channel.state);
        TellUniverse(from, channel.univ);
        emit channelsTaken();
        return;
    }
    m_universes.Set(channel.univ, channel.chan, channel.level, channel.state);
    TellOthers(from, messages::Channel(channel));
    // A remote shows what the server holds, not what it asked for.
    Send(from, messages::Channel(channel));
    emit channelsTaken();
}

void RehearsalServer::TakeUniverse(const JSONNode& content, const Client& from) {
    const int nUniverse = readInto(content, m_universes);
    m_log(from.Name() + QString(" universe %1").arg(nUniverse));
    TellUniverse(from, nUniverse);
    emit channelsTaken();
}

void RehearsalServer::TakeRun(const JSONNode& content, const Client& from) {
    int nUniverse = -1;
    int nStart = -1;
    int nCount = 0;
    Color color;
    readInto(content, color);
    content.ForEachMember([&](std::string_view sName, const JSONNode& value) {
        if (sName == "universe") {
            nUniverse = value.AsInt();
        } else if (sName == "chan") {
            nStart = value.AsInt();
        } else if (sName == "number") {
            nCount = value.AsInt();
        }
    });
    m_log(
        from.Name() +
        QString(" universe %1 color on %2 fixtures from channel %3").arg(nUniverse).arg(nCount).arg(nStart));
    m_universes.SetRun(nUniverse, nStart, nCount, color);
    TellUniverse(from, nUniverse);
    emit channelsTaken();
}

void RehearsalServer::SendHeldUniverses(const Client& to) {
    for (int nUniverse = 0; nUniverse < Universes::Count; ++nUniverse) {
        if (m_universes.IsHeld(nUniverse)) {
            Send(to, replies::Universe(m_universes, nUniverse));
        }
    }
}

RehearsalServer::Client* RehearsalServer::Admit(const QHostAddress& address, quint16 port) {
    const auto gone = [](const Client& client) { return client.lastHeard.hasExpired(ClientTimeoutMs); };
    m_clients.erase(std::remove_if(m_clients.begin(), m_clients.end(), gone), m_clients.end());

    Client* pClient = FindClient(address, port);
    if (pClient == nullptr) {
        if (static_cast<int>(m_clients.size()) >= m_options.maxClients) {
            return nullptr;
        }
        pClient = &m_clients.emplace_back(Client{address, port, {}});
    }
    pClient->lastHeard.start();
    return pClient;
}

RehearsalServer::Client* RehearsalServer::FindClient(const QHostAddress& address, quint16 port) {
    const auto client = std::find_if(m_clients.begin(), m_clients.end(), [&](const Client& known) {
        return known.address == address && known.port == port;
    });
    return client != m_clients.end() ? &*client : nullptr;
}

void RehearsalServer::Forget(const Client& client) {
    const auto same = [&client](const Client& known) { return known.Name() == client.Name(); };
    m_clients.erase(std::remove_if(m_clients.begin(), m_clients.end(), same), m_clients.end());
}

void RehearsalServer::TellOthers(const Client& from, const std::string& sText) {
    for (const Client& client : m_clients) {
        if (client.Name() != from.Name()) {
            Send(client, sText);
        }
    }
}

void RehearsalServer::TellUniverse(const Client& from, int nUniverse) {
    if (!Universes::HasUniverse(nUniverse)) {
        return;
    }
    for (const Client& client : m_clients) {
        if (client.known && client.Name() != from.Name()) {
            Owe(client, UniverseAnswer + nUniverse);
        }
    }
}

void RehearsalServer::Send(const Client& to, const std::string& sText) {
    const auto nLimit = static_cast<std::size_t>(m_options.fragmentSize);
    if (sText.size() <= nLimit) {
        SendDatagram(to, sText);
        return;
    }
    for (const std::string& sPiece : replies::Split(sText, nLimit)) {
        SendDatagram(to, sPiece);
    }
}

void RehearsalServer::SendDatagram(const Client& to, const std::string& sText) {
    const QNetworkDatagram datagram(QByteArray::fromStdString(sText), to.address, to.port);
    Carry(m_options.delayMs, datagram.data().size(), [this, datagram] {
        qCInfo(logWire).noquote() << "out" << logging::Summary(datagram.data()) << "to"
                                  << datagram.destinationAddress().toString() << datagram.destinationPort();
        m_pSocket->writeDatagram(datagram);
    });
}

bool RehearsalServer::IsSilent() const {
    return m_options.silentAfter >= 0 && m_upTime.hasExpired(qint64{1000} * m_options.silentAfter);
}
