#pragma once

#include "device/linewriter.h"

#include <QByteArray>
#include <QLoggingCategory>
#include <QString>

#include <mutex>

// What a report of a fault needs to know. Silent unless asked for: QT_LOGGING_RULES="corvane.*=true". What
// came from the network is printed as a QString or QByteArray, quoted, which escapes all that could move a
// terminal's cursor; no setting is ever printed.
Q_DECLARE_LOGGING_CATEGORY(logNet)   ///< corvane.net: the network and each change of the connection's state
Q_DECLARE_LOGGING_CATEGORY(logWire)  ///< corvane.wire: each datagram, in and out
Q_DECLARE_LOGGING_CATEGORY(logDrop)  ///< corvane.drop: each text that changes nothing, and why

namespace logging {

/// While it lives, what Qt and the categories above say is written to standard error by a LineWriter, with
/// time and category before each line unless QT_MESSAGE_PATTERN says otherwise. One at a time.
class Session {
public:
    Session();
    ~Session();
    Q_DISABLE_COPY_MOVE(Session)

private:
    static void Take(QtMsgType type, const QMessageLogContext& context, const QString& sText);

    std::mutex m_mutex;
    LineWriter m_errors;
};

/// What kind of message a datagram is, from its first "typ", and its size: "state (7), 433 bytes". The later
/// pieces of a split message, and whatever has no type, are "piece".
QString Summary(const QByteArray& datagram);

}  // namespace logging
