#include "widgets/serverlist.h"

#include <algorithm>

int ServerList::Add(const QString& sSerial, const QString& sAddress) {
    if (m_addresses.size() == MaxServers || m_addresses.contains(sAddress)) {
        return -1;
    }
    QString sLabel = sSerial.left(MaxLabel);
    if (sSerial.isEmpty()) {
        sLabel = sAddress;
    } else if (sSerial == "0000") {
        sLabel = tr("Server - ") + sAddress;
    }
    const auto next = std::upper_bound(m_labels.cbegin(), m_labels.cend(), sLabel);
    const int nPlace = static_cast<int>(next - m_labels.cbegin());
    m_addresses.insert(nPlace, sAddress);
    m_labels.insert(nPlace, sLabel);
    return nPlace;
}
