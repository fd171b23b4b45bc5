#include "server/lamps/latestchannel.h"

#include <algorithm>

bool LatestChannel::Has(std::size_t layer) const {
    return std::any_of(m_owners.begin(), m_owners.end(),
                       [layer](const Owner& owner) { return owner.layer == layer; });
}

void LatestChannel::Add(const Owner& owner) {
    Remove(owner.layer);
    const auto after = std::find_if(m_owners.begin(), m_owners.end(),
                                    [&owner](const Owner& other) { return other.start > owner.start; });
    m_owners.insert(after, owner);
}

void LatestChannel::Remove(std::size_t layer) {
    m_owners.erase(std::remove_if(m_owners.begin(), m_owners.end(),
                                  [layer](const Owner& owner) { return owner.layer == layer; }),
                   m_owners.end());
}

float LatestChannel::LevelAt(const std::vector<Layer>& layers, qint64 nNowMs) const {
    const auto& [from, bByOwner, since, fade] = m_motion;
    if (m_owners.empty()) {
        return m_default >= 0 && !IsMoving(nNowMs) ? m_default : from;
    }
    const auto& [nLayer, nStart, level] = m_owners.back();
    const double elapsed = (bByOwner ? layers[nLayer].Clock(nNowMs) : static_cast<double>(nNowMs)) - since;
    return elapsed < fade ? from + (level - from) * static_cast<float>(elapsed / fade) : level;
}

bool LatestChannel::IsMoving(qint64 nNowMs) const {
    return !m_motion.byOwner && static_cast<double>(nNowMs) - m_motion.since < m_motion.fade;
}
