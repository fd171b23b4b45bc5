#pragma once

#include "server/lamps/playback.h"
#include "server/lamps/sacnpacket.h"

#include <QHostAddress>
#include <QString>

#include <functional>
#include <optional>
#include <string>
#include <vector>

/// Sends levels as streaming ACN: what changes at once, what stands still often enough that no receiver gives
/// the source up. It has no clock; times are milliseconds of a monotonic clock of the caller's.
class SacnSender {
public:
    struct Options {
        QHostAddress to;         ///< one receiver, who gets no discovery; null for each universe's group
        QHostAddress interface;  ///< of this machine, by which packets leave; null for the system's choice
        int priority = 100;      ///< 0 to 200
    };
    using Log = std::function<void(const QString&)>;

    /// The source is called "Corvane" and the serial. `log` gets a line when sending begins, fails
    /// (once a minute at most) and works again.
    SacnSender(const std::string& sSerial, const Options& options, Log log);
    /// Tells receivers that all streams end.
    ~SacnSender();
    SacnSender(const SacnSender&) = delete;
    SacnSender& operator=(const SacnSender&) = delete;

    /// Opens the socket. False when the system gives none or the interface is none of this machine's; see
    /// ErrorText().
    bool Open();
    QString ErrorText() const { return m_sError; }

    /// One frame: sends each of the `used` universes that is new, has changed or was last sent a while ago,
    /// and ends the streams of all others. What cannot be sent is due again with the next frame.
    void Send(const Levels& levels, const UniverseSet& used, qint64 nNowMs);
    /// When something is to be sent though nothing has changed.
    qint64 DueMs() const;

private:
    bool OpenSocket();
    void CloseSocket();

    struct Stream {
        sacn::DataPacket packet;
        qint64 dueMs = 0;  ///< when the same levels are sent once more
    };

    void SendStream(int iUniverse, const unsigned char* pLevels, bool bNew, qint64 nNowMs);
    void End(int iUniverse);
    void SendDiscovery(qint64 nNowMs);
    bool Transmit(const QByteArray& packet, int nUniverse);
    void TellUniverses(const UniverseSet& used);
    void TellFailure(qint64 nNowMs);

    sacn::Source m_source;
    Options m_options;
    Log m_log;
    std::vector<Stream> m_streams;  ///< one a universe
    UniverseSet m_running;
    qint64 m_nDiscoveryMs = 0;  ///< when the next one is due
    int m_nSocket = -1;
    QString m_sError;
    int m_nSent = 0;       ///< packets of this frame that went
    int m_nFailure = 0;    ///< the system's number for what went wrong in this frame; 0 nothing
    bool m_bTold = false;  ///< the log says that it fails
    std::optional<qint64> m_nLastToldMs;  ///< when it last said so
};
