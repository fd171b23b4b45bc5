#pragma once

#include "server/lamps/complaints.h"
#include "server/lamps/patch.h"
#include "server/lamps/sacnpacket.h"
#include "server/lamps/sacnsocket.h"

#include <QHostAddress>
#include <QList>
#include <QString>

#include <array>
#include <optional>
#include <string>

/// Sends levels as streaming ACN: what changes at once and, as packets get lost, three times more; what
/// stands still often enough that no receiver gives the source up. It has no clock; times are milliseconds of
/// a monotonic clock of the caller's.
class SacnSender {
public:
    struct Options {
        QList<QHostAddress> to;  ///< receivers, who get no discovery; empty for each universe's group
        QString interface;       ///< name or address; see SacnSocket
        int priority = 100;      ///< 0 to 200
    };

    using Log = Complaints::Log;

    /// The source is called "Corvane" and the serial. `log` gets a line when sending begins, fails and works
    /// again.
    SacnSender(const std::string& sSerial, const Options& options, const Log& log);

    /// One frame: sends each of the `used` universes that is new, has changed or is to be repeated, and ends
    /// the streams of all others, which takes three frames. What cannot be sent is due again soon.
    void Send(const Levels& levels, const UniverseSet& used, qint64 nNowMs);
    /// When something is to be sent though nothing has changed.
    qint64 DueMs() const;
    /// Whether any stream has begun, and has not yet ended.
    bool IsRunning() const { return (m_running | m_ending).any(); }

private:
    struct Stream {
        QByteArray levels;
        quint8 number = 0;  ///< of the last packet
        qint64 dueMs = 0;   ///< when the same levels are sent once more
        int repeats = 0;    ///< how many of the next frames they are sent with
        int ends = 0;       ///< how many more packets tell that it ends
    };

    void SendStream(int iUniverse, const unsigned char* pLevels, bool bNew, qint64 nNowMs);
    bool Transmit(const QByteArray& packet, int nUniverse);
    void TellUniverses(const UniverseSet& used);

    sacn::Source m_source;
    Options m_options;
    Log m_log;
    Complaints m_complaints;
    SacnSocket m_socket;
    std::array<Stream, Universes::Count> m_streams;
    UniverseSet m_running;
    UniverseSet m_ending;
    qint64 m_nDiscoveryMs = 0;  ///< when the next one is due
    qint64 m_nRetryMs = 0;      ///< when opening is tried again; 0 while it is open
    bool m_bBegun = false;
    std::optional<bool> m_sent;  ///< whether all of this frame was, if there was something to send
};
