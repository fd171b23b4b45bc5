// Feeds datagrams to the whole server: JSON, readers, the state, answers, and the playback that follows,
// which is rendered. An input holds one datagram or several, with 0x1e between them.

#include "server/remotes/server.h"

#include "server/lamps/playback.h"

#include <QCoreApplication>

#include <cstdint>

namespace {

Server::Options LoseAllAnswers() {
    Server::Options options;
    options.badNetwork = BadNetwork::Options{-1, 0, 100};
    return options;
}

/// A server that listens nowhere, and the playback that follows its state.
class House {
public:
    void Take(const QByteArray& datagram, quint16 port) {
        m_server.ReadMessage(datagram, QHostAddress::LocalHost, port);
        m_nNowMs += 137;  // in step with no fade and no hold
    }

    void Render() { m_playback.Render(m_nNowMs, m_levels); }

private:
    State m_state{Show::BuiltIn()};
    Server m_server{m_state, LoseAllAnswers(), [](const QString&) {}};
    Playback m_playback{m_state, [this] { return m_nNowMs; }};
    Levels m_levels{};
    qint64 m_nNowMs = 0;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize) {
    static int nArgs = 1;
    static char name[] = "fuzz_server";
    static char* args[] = {name, nullptr};
    static QCoreApplication application(nArgs, args);
    static House house;
    const QByteArray input(reinterpret_cast<const char*>(pData), static_cast<int>(nSize));
    quint16 port = 9000;  // more clients than there is room for
    for (const QByteArray& datagram : input.split('\x1e')) {
        house.Take(datagram, port++);
    }
    house.Render();
    QCoreApplication::processEvents();
    return 0;
}
