#include "server/remotes/quota.h"

#include <algorithm>

namespace {

constexpr qint64 SecondMs = 1000;

}  // namespace

qint64 Quota::Take(const QHostAddress& host, qint64 nNow) {
    if (!m_hosts.contains(host)) {
        for (auto known = m_hosts.begin(); known != m_hosts.end();) {
            known = known->back() + SecondMs <= nNow ? m_hosts.erase(known) : std::next(known);
        }
        if (m_hosts.size() >= m_nMaxHosts) {
            return -1;
        }
        Times never;
        never.fill(nNow - SecondMs);
        m_hosts.insert(host, never);
    }
    Times& times = m_hosts[host];
    if (times.front() + SecondMs > nNow) {
        return times.front() + SecondMs - nNow;
    }
    std::rotate(times.begin(), times.begin() + 1, times.end());
    times.back() = nNow;
    return 0;
}
