#pragma once

#include <QMap>
#include <QString>
#include <QtGlobal>

#include <functional>
#include <utility>

/// Tells a log of what goes wrong over and over: each reason at once when it is new, and then once a minute
/// at most; and when all is well again.
class Complaints {
public:
    using Log = std::function<void(const QString&)>;

    explicit Complaints(Log log) : m_log(std::move(log)) {}

    void Fails(const QString& sReason, qint64 nNowMs) {
        if (!m_told.contains(sReason) || nNowMs - m_told[sReason] >= 60000) {
            m_log("sACN: cannot send: " + sReason + "; goes on trying");
            m_told[sReason] = nNowMs;
            m_bTold = true;
        }
    }
    void Works() {
        if (std::exchange(m_bTold, false)) {
            m_log("sACN: works again");
        }
    }

private:
    Log m_log;
    QMap<QString, qint64> m_told;  ///< when each reason was told last
    bool m_bTold = false;          ///< the log says that it fails
};
