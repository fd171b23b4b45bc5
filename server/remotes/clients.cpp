#include "server/remotes/clients.h"

#include <QTimer>

#include <algorithm>

namespace {

constexpr int TimeoutMs = 15000;
constexpr qint64 SecondMs = 1000;
constexpr int PerSecond = 4;
/// Of so many answers account is kept, of 1,024 hosts. Whoever makes up more names in a second is not held to
/// four answers for each, but had to send a question for every one.
constexpr std::size_t MostGiven = std::size_t{PerSecond} * 1024;

}  // namespace

bool Clients::Admit(const Client& sender) {
    const auto gone = [](const Client& client) { return client.lastHeard.hasExpired(TimeoutMs); };
    m_clients.erase(std::remove_if(m_clients.begin(), m_clients.end(), gone), m_clients.end());
    if (!Hear(sender) && m_clients.size() < m_nMost) {
        m_clients.append(sender);
    }
    return Hear(sender);
}

bool Clients::Hear(const Client& sender) {
    const auto iClient = m_clients.indexOf(sender);
    if (iClient >= 0) {
        m_clients[iClient].lastHeard.start();
    }
    return iClient >= 0;
}

void Clients::Owe(const Client& client, int nAnswer) {
    const QPair<QHostAddress, int> debt(client.address, nAnswer);
    if (m_owed.contains(debt)) {
        m_owed[debt] = client.port;
    } else if (const qint64 nWaitMs = WaitMs(client.address); nWaitMs == 0) {
        emit due(client, nAnswer);
    } else {
        m_owed.insert(debt, client.port);
        QTimer::singleShot(static_cast<int>(nWaitMs), this, [this, debt] {
            const Client waiting{debt.first, m_owed.take(debt), {}};
            if (m_clients.contains(waiting)) {
                Owe(waiting, debt.second);
            }
        });
    }
}

qint64 Clients::WaitMs(const QHostAddress& host) {
    const qint64 nNow = m_clock.elapsed();
    while (!m_given.empty() && m_given.front().atMs + SecondMs <= nNow) {
        m_given.pop_front();
    }
    const auto toHost = [&host](const Given& given) { return given.host == host; };
    if (std::count_if(m_given.begin(), m_given.end(), toHost) >= PerSecond) {
        return std::find_if(m_given.begin(), m_given.end(), toHost)->atMs + SecondMs - nNow;
    }
    // A newcomer is always answered.
    if (m_given.size() == MostGiven) {
        m_given.pop_front();
    }
    m_given.push_back({host, nNow});
    return 0;
}
