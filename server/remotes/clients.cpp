#include "server/remotes/clients.h"

#include <QTimer>

#include <algorithm>
#include <iterator>

namespace {

constexpr int TimeoutMs = 15000;
constexpr qint64 SecondMs = 1000;
/// Of so many hosts account is kept. Whoever makes up more names in a second is not held to four answers for
/// each, but had to send a question for every one.
constexpr int MostAccounts = 1024;

}  // namespace

bool Clients::Admit(const Client& sender) {
    const auto gone = [](const Client& client) { return client.lastHeard.hasExpired(TimeoutMs); };
    m_clients.erase(std::remove_if(m_clients.begin(), m_clients.end(), gone), m_clients.end());
    if (Find(sender) == nullptr) {
        if (static_cast<int>(m_clients.size()) >= m_nMost) {
            return false;
        }
        m_clients.push_back(sender);
    }
    return Hear(sender);
}

bool Clients::Hear(const Client& sender) {
    Client* pClient = Find(sender);
    if (pClient != nullptr) {
        pClient->lastHeard.start();
    }
    return pClient != nullptr;
}

Client* Clients::Find(const Client& sender) {
    const auto client = std::find(m_clients.begin(), m_clients.end(), sender);
    return client != m_clients.end() ? &*client : nullptr;
}

void Clients::Forget(const Client& client) {
    m_clients.erase(std::remove(m_clients.begin(), m_clients.end(), client), m_clients.end());
}

void Clients::Owe(const Client& client, int nAnswer) {
    const QPair<QHostAddress, int> debt(client.address, nAnswer);
    if (m_owed.contains(debt)) {
        m_owed[debt] = client.port;
        return;
    }
    const qint64 nWaitMs = WaitMs(client.address);
    if (nWaitMs == 0) {
        emit due(client, nAnswer);
        return;
    }
    m_owed.insert(debt, client.port);
    QTimer::singleShot(static_cast<int>(nWaitMs), this, [this, debt] {
        const Client waiting{debt.first, m_owed.take(debt), {}};
        if (Find(waiting) != nullptr) {
            Owe(waiting, debt.second);
        }
    });
}

qint64 Clients::WaitMs(const QHostAddress& host) {
    const qint64 nNow = m_clock.elapsed();
    if (!m_accounts.contains(host)) {
        ForgetOldAccounts();
        Times never;
        never.fill(nNow - SecondMs);
        m_accounts.insert(host, never);
    }
    Times& times = m_accounts[host];
    if (times.front() + SecondMs > nNow) {
        return times.front() + SecondMs - nNow;
    }
    std::rotate(times.begin(), times.begin() + 1, times.end());
    times.back() = nNow;
    return 0;
}

/// A newcomer is always answered: where there is no room, the account goes that has been quiet for longest.
void Clients::ForgetOldAccounts() {
    for (auto known = m_accounts.begin(); known != m_accounts.end();) {
        known = known->back() + SecondMs <= m_clock.elapsed() ? m_accounts.erase(known) : std::next(known);
    }
    if (m_accounts.size() >= MostAccounts) {
        m_accounts.erase(
            std::min_element(m_accounts.begin(), m_accounts.end(),
                             [](const Times& one, const Times& other) { return one.back() < other.back(); }));
    }
}
