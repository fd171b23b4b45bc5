#pragma once

#include "server/lamps/layer.h"

#include <QtGlobal>

#include <algorithm>
#include <cstddef>
#include <vector>

/// A channel that is no light, such as pan or gobo. Of the layers that have a level for it the one that was
/// started last owns it, and it moves there from where it was. Where nobody owns it, it stays, and is at its
/// default, if it has one, when what let it go has faded.
class LatestChannel {
public:
    struct Owner {
        std::size_t layer = 0;
        quint64 start = 0;  ///< the number of the layer's start
        float level = 0;
    };
    /// It moves from a level to its owner's: in a time by the owner's clock, or by the caller's, in ms.
    struct Motion {
        float from = 0;
        bool byOwner = false;
        double since = 0;
        double fade = 0;
    };
    static constexpr float NoDefault = -1;

    explicit LatestChannel(float standard) : m_default(standard), m_motion{std::max(standard, 0.0F)} {}

    bool Has(std::size_t layer) const;
    bool IsOwnedBy(std::size_t layer) const { return !m_owners.empty() && m_owners.back().layer == layer; }
    /// A layer comes to have a level, or another level, for it, or has none any more.
    void Add(const Owner& owner);
    void Remove(std::size_t layer);

    void Move(const Motion& motion) { m_motion = motion; }
    const Motion& CurrentMotion() const { return m_motion; }

    float LevelAt(const std::vector<Layer>& layers, qint64 nNowMs) const;
    /// Whether it moves though no layer does.
    bool IsMoving(qint64 nNowMs) const;

private:
    float m_default;
    std::vector<Owner> m_owners;  ///< in the order in which they were started
    Motion m_motion;
};
