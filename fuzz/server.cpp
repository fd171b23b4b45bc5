// Feeds datagrams to the whole rehearsal server: JSON, readers, answers, and the playback of what they
// switch, which is rendered. An input holds one datagram or several, with 0x1e between them.

#include "server/lamps/playback.h"
#include "server/remotes/rehearsalserver.h"

#include <QCoreApplication>

#include <cstdint>

namespace {

RehearsalServer::Options LoseAllAnswers() {
    RehearsalServer::Options options;
    options.dropPercent = 100;
    options.lightsLamps = true;
    return options;
}

/// A server that listens nowhere, and the playback that follows it.
class Rehearsal {
public:
    Rehearsal() : m_server(Show::BuiltIn(), LoseAllAnswers(), [](const QString&) {}) {
        QObject::connect(&m_server, &RehearsalServer::sceneSwitched,
                         [this](int nId, bool bState) { m_playback.SwitchScene(nId, bState, m_nNowMs); });
        QObject::connect(&m_server, &RehearsalServer::programSwitched,
                         [this](int nId, bool bState) { m_playback.SwitchProgram(nId, bState, m_nNowMs); });
        QObject::connect(&m_server, &RehearsalServer::colorTaken,
                         [this](const Color& color) { m_playback.Take(color); });
        QObject::connect(&m_server, &RehearsalServer::commandTaken,
                         [this](const Command& command) { m_playback.Take(command, m_nNowMs); });
    }

    void Take(const QByteArray& datagram, quint16 port) {
        m_server.ReadMessage(datagram, QHostAddress::LocalHost, port);
        m_nNowMs += 137;  // in step with no fade and no hold
    }

    void Render() { m_playback.Render(m_server.Held(), m_nNowMs, m_levels); }

private:
    RehearsalServer m_server;
    Playback m_playback{Show::BuiltIn()};
    Levels m_levels{};
    qint64 m_nNowMs = 0;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize) {
    static int nArgs = 1;
    static char name[] = "fuzz_server";
    static char* args[] = {name, nullptr};
    static QCoreApplication application(nArgs, args);
    static Rehearsal rehearsal;
    const QByteArray input(reinterpret_cast<const char*>(pData), static_cast<int>(nSize));
    quint16 port = 9000;  // more clients than there is room for
    for (const QByteArray& datagram : input.split('\x1e')) {
        rehearsal.Take(datagram, port++);
    }
    rehearsal.Render();
    QCoreApplication::processEvents();
    return 0;
}
