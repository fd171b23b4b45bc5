#include "app/cgetnidlg.h"
#include "app/corvane.h"
#include "device/logging.h"
#include "widgets/ccolorpicker.h"
#include "widgets/channelsgrid.h"
#include "widgets/cparamsctrl.h"
#include "widgets/cscenelist.h"
#include "widgets/serverlist.h"

#include <QHostAddress>
#include <QMessageBox>
#include <QNetworkDatagram>
#include <QTimer>
#include <QUdpSocket>

#include <array>
#include <utility>

using logging::Summary;

namespace {

constexpr std::array<int, 2> FirstPorts{8094, 8093};
constexpr std::array<int, 2> FallBackPorts{8012, 8011};

constexpr int TickMs = 25;
constexpr int FallBackMs = 1000;
constexpr int AliveMs = 2000;
constexpr int LostMs = 5000;
constexpr int PollMs = 5000;

/// How much of a flood is read before the timer and the user get their turn again: so many datagrams, or for
/// so long when each of them is dear.
constexpr int DatagramsPerRead = 64;
constexpr int ReadMs = 8;
/// A large state comes as a burst of fragments, and the window may be painting.
constexpr int ReceiveBufferSize = 4 * 1024 * 1024;

}  // namespace

bool Corvane::Connect() {
    if (!ChooseNetwork()) {
        return false;
    }
    if (m_pSocket == nullptr) {
        m_pSocket = new QUdpSocket(this);
        connect(m_pSocket, &QUdpSocket::readyRead, this, &Corvane::ReadPacket);
    }
    // "Auto" stays with IPv4, so that a sender's address reads as plain a.b.c.d.
    const QHostAddress address =
        m_sInterface == "Auto" ? QHostAddress(QHostAddress::AnyIPv4) : QHostAddress(m_sInterface);
    if (!m_pSocket->bind(address, static_cast<quint16>(m_nLocalPort), QAbstractSocket::ReuseAddressHint)) {
        qCInfo(logNet) << "cannot listen on" << address.toString() << "port" << m_nLocalPort
                       << m_pSocket->errorString();
        if (m_sNetwork.isEmpty()) {
            QMessageBox::warning(this, tr("Error"), tr("Cannot connect to the Network Interface"),
                                 QMessageBox::Ok);
        }
        return false;
    }
    qCInfo(logNet) << "listening on" << address.toString() << "port" << m_nLocalPort;
    m_pSocket->setSocketOption(QAbstractSocket::ReceiveBufferSizeSocketOption, ReceiveBufferSize);

    m_bConnected = true;
    m_bConnectionLost = false;
    m_bAnswered = false;
    m_aliveTimer.start();
    m_answerTimer.start();
    m_requestTimer.start();
    if (m_pTimer == nullptr) {
        m_pTimer = new QTimer(this);
        connect(m_pTimer, &QTimer::timeout, this, &Corvane::OnTimer);
        m_pTimer->start(TickMs);
    }
    ShowParts();
    return true;
}

/// Asks the user, the first time; or looks whether the network that was given is there, each time.
bool Corvane::ChooseNetwork() {
    if (!m_sNetwork.isEmpty()) {
        const auto found = FindNetwork(m_sNetwork);
        if (!found) {
            qCInfo(logNet) << "no network" << m_sNetwork << "yet";
            return false;
        }
        m_sInterface = found->address;
        m_sBroadcast = found->broadcast;
    } else if (m_pSocket == nullptr) {
        CGetNiDlg dialog(nullptr);
        if (dialog.exec() != QDialog::Accepted) {
            qCInfo(logNet) << "no network chosen";
            return false;
        }
        m_sInterface = dialog.GetIp();
        m_sBroadcast = dialog.GetBroadcast();
    }
    qCInfo(logNet) << "network" << m_sInterface << "broadcast" << m_sBroadcast;
    return !m_sInterface.isEmpty();
}

/// With no one there to ask for it, the search begins again by itself. Until it has found a server the sign
/// stands, and warnings that were closed stay closed.
void Corvane::KeepLooking() {
    if (m_bConnected && m_bAnswered && !m_bConnectionLost) {
        return;
    }
    m_bSignStands = true;
    InitConnection(FirstPorts[0], FirstPorts[1]);
    ShowParts();
}

void Corvane::InitConnection(int nLocalPort, int nRemotePort) {
    Disconnect();
    m_nLocalPort = nLocalPort;
    m_nRemotePort = nRemotePort;
    if (!Connect()) {
        return;
    }
    if (m_pParams->Servers().count() == 0) {
        SetServer(m_sBroadcast);
        m_pParams->SetIp(m_sBroadcast);
        qCInfo(logNet) << "looking: no server is known, asking at" << m_sBroadcast << "port" << nRemotePort;
        SendSerial();
    } else {
        qCInfo(logNet) << "looking: asking the chosen server on port" << nRemotePort;
        SendState();
    }
}

void Corvane::Disconnect() {
    if (m_bConnected) {
        qCInfo(logNet) << "left port" << m_nLocalPort;
        m_pSocket->abort();
        m_bConnected = false;
    }
}

void Corvane::Refresh() {
    m_warningClosed.invalidate();
    InitConnection(FirstPorts[0], FirstPorts[1]);
}

void Corvane::SendPacket(const std::string& sText, bool bDeferred) {
    const QByteArray text(sText.c_str());
    if (!bDeferred) {
        Write(text);
        return;
    }
    if (m_pending) {
        qCInfo(logDrop).noquote() << "out" << Summary(*m_pending) << "replaced by" << Summary(text);
    }
    m_pending = text;
}

/// What waits was meant for another server.
void Corvane::SetServer(const QString& sAddress) {
    if (sAddress != m_sServerAddress) {
        m_sServerAddress = sAddress;
        m_pending.reset();
        m_release.reset();
    }
}

void Corvane::Write(const QByteArray& text) {
    if (m_pSocket == nullptr) {
        return;
    }
    const QHostAddress address(m_sServerAddress);
    qCInfo(logWire).noquote() << "out" << Summary(text) << "to" << address.toString() << m_nRemotePort;
    if (m_pSocket->writeDatagram(text, address, static_cast<quint16>(m_nRemotePort)) < 0) {
        qCInfo(logDrop) << "out:" << m_pSocket->errorString();
    }
}

void Corvane::ReadPacket() {
    if (!m_pSocket->hasPendingDatagrams()) {
        // The kernel dropped a datagram only on reading it, for its checksum. Unless something is read all
        // the same, the socket never signals again.
        m_pSocket->readDatagram(nullptr, 0);
        return;
    }
    QElapsedTimer turn;
    turn.start();
    for (int i = 0; i < DatagramsPerRead && !turn.hasExpired(ReadMs) && m_pSocket->hasPendingDatagrams();
         ++i) {
        const QNetworkDatagram datagram = m_pSocket->receiveDatagram();
        if (datagram.data().isEmpty()) {
            qCInfo(logDrop) << "in: an empty datagram";
            return;
        }
        const QString sSender = datagram.senderAddress().toString();
        qCInfo(logWire).noquote() << "in" << Summary(datagram.data()) << "from" << sSender
                                  << datagram.senderPort();
        ReadData(datagram.data(), sSender);
    }
}

/// One rule a tick, in this order: what servers and the user count on.
void Corvane::OnTimer() {
    if (!m_bConnected) {
        return;
    }
    if (!m_bConnectionLost && m_answerTimer.hasExpired(LostMs)) {
        m_bConnectionLost = true;
        qCInfo(logNet) << "lost: no answer for" << m_answerTimer.elapsed() << "ms";
        ShowParts();
    } else if (!m_bAnswered) {
        if (m_nLocalPort != FallBackPorts[0] && m_requestTimer.hasExpired(FallBackMs)) {
            qCInfo(logNet) << "fall-back: no state within" << FallBackMs << "ms";
            InitConnection(FallBackPorts[0], FallBackPorts[1]);
        }
    } else if (m_aliveTimer.hasExpired(AliveMs)) {
        SendAlive();
    } else if (m_bConnectionLost) {
        return;
    } else if (m_pending || m_release) {
        Write(*std::exchange(m_pending ? m_pending : m_release, {}));
    } else if (m_requestTimer.hasExpired(PollMs)) {
        PollCurrentPage();
        m_requestTimer.start();
    }
}

void Corvane::PollCurrentPage() {
    using Send = void (Corvane::*)();
    constexpr std::array<Send, ParamsPage> polls{&Corvane::SendSceneState, &Corvane::SendSceneState,
                                                 &Corvane::SendCmdState, &Corvane::SendDmxState};
    if (m_iCurrentPage >= 0 && m_iCurrentPage < ParamsPage) {
        (this->*polls.at(static_cast<std::size_t>(m_iCurrentPage)))();
    }
}

void Corvane::Update() {
    SceneList()->Update(m_scenes, m_settings);
    ProgramList()->Update(m_programs, m_settings);
    m_pPicker->Update(m_color, m_command);
    // A state tells nothing of channels; what is held is asked for by the page that shows it.
    m_pGrid->ReleaseChannels();
    m_pGrid->ShowParts();

    static bool bFirst = true;
    if (bFirst) {
        bFirst = false;
        GoToPage(FirstOffered());
    }
}
