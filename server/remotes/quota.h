#pragma once

#include <QHash>
#include <QHostAddress>

#include <array>

/// How often hosts are answered: each four times in any second. A sender's address can be made up, so this is
/// also how often a host is sent what it never asked for.
class Quota {
public:
    static constexpr int PerSecond = 4;

    /// Keeps account of so many hosts in any second; what would be one more is not answered.
    explicit Quota(int nMaxHosts) : m_nMaxHosts(nMaxHosts) {}

    /// Asks for an answer to a host at a time in ms that never goes back. 0: it may leave, and counts. Else
    /// in how many ms to ask again, or -1 for no answer at all.
    qint64 Take(const QHostAddress& host, qint64 nNow);

private:
    using Times = std::array<qint64, PerSecond>;  ///< of the last answers, the oldest first

    int m_nMaxHosts;
    QHash<QHostAddress, Times> m_hosts;
};
