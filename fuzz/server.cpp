// Feeds datagrams to the whole server: JSON, readers, the state, answers, recordings, and the playback that
// follows, which is rendered. An input holds one datagram or several, with 0x1e between them.

#include "server/remotes/server.h"

#include "server/lamps/playback.h"
#include "server/record.h"

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

#include <cstdint>
#include <memory>
#include <optional>

namespace {

Server::Options LoseAllAnswers() {
    Server::Options options;
    options.badNetwork = BadNetwork::Options{-1, 0, 100};
    return options;
}

/// A server that listens nowhere, and the playback that follows its state, also into a show with a recording
/// more.
class House {
public:
    explicit House(const QString& sFile) : m_file(sFile) {
        QFile file(sFile);
        if (!file.open(QIODevice::WriteOnly) || file.write(Show::BuiltInText()) < 0) {
            qFatal("cannot write %s", qPrintable(sFile));
        }
        m_server.SetRecorder([this](const Recording& wanted) {
            const Levels open = m_pPlayback->OpenLevels(m_nNowMs);
            const QString sLine = Record(m_state, open, m_file, wanted);
            auto pPlayback = std::make_unique<Playback>(m_state, [this] { return m_nNowMs; });
            pPlayback->TakeOver(*m_pPlayback, open, m_nNowMs);
            m_pPlayback = std::move(pPlayback);
            m_bRecorded = true;
            return sLine;
        });
    }

    void Take(const QByteArray& datagram, quint16 port) {
        m_server.ReadMessage(datagram, QHostAddress::LocalHost, port);
        m_nNowMs += 137;  // in step with no fade and no hold
    }

    void Render() { m_pPlayback->Render(m_nNowMs, m_levels); }

    bool HasRecorded() const { return m_bRecorded; }

private:
    State m_state{Show::BuiltIn()};
    ShowFile m_file;
    Server m_server{m_state, LoseAllAnswers(), [](const QString&) {}};
    std::unique_ptr<Playback> m_pPlayback{std::make_unique<Playback>(m_state, [this] { return m_nNowMs; })};
    Levels m_levels{};
    qint64 m_nNowMs = 0;
    bool m_bRecorded = false;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize) {
    static int nArgs = 1;
    static char name[] = "fuzz_server";
    static char* args[] = {name, nullptr};
    static QCoreApplication application(nArgs, args);
    static QTemporaryDir folder("/dev/shm/fuzz_server");
    static std::optional<House> house;
    if (!house || house->HasRecorded()) {
        house.emplace(folder.filePath("show.json"));
    }
    const QByteArray input(reinterpret_cast<const char*>(pData), static_cast<int>(nSize));
    quint16 port = 9000;  // more clients than there is room for
    for (const QByteArray& datagram : input.split('\x1e')) {
        house->Take(datagram, port++);
    }
    house->Render();
    QCoreApplication::processEvents();
    return 0;
}
