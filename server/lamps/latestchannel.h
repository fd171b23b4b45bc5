#pragma once

#include "server/lamps/layer.h"

#include <QtGlobal>

#include <cstddef>
#include <vector>

/// A channel that is no light, such as pan or gobo. Of the layers that have a level for it the one that was
/// started last owns it, and it moves there from where it was. Where nobody owns it, it stays, and is at its
/// default, if it has one, when what let it go has faded.
class LatestChannel {
public:
    struct Owner {
        std::size_t layer = 0;
        std::size_t other = 0;  ///< its place in Layer::Others()
        quint64 start = 0;      ///< the number of the layer's start
    };
    static constexpr float NoDefault = -1;

    LatestChannel(std::size_t at, float standard)
        : m_at(at), m_default(standard), m_from(standard < 0 ? 0 : standard) {}

    std::size_t At() const { return m_at; }
    bool Has(std::size_t layer) const;
    bool IsOwnedBy(std::size_t layer) const { return !m_owners.empty() && m_owners.back().layer == layer; }
    /// A layer comes to have a level for it, or has none any more.
    void Add(const Owner& owner);
    void Remove(std::size_t layer);

    /// It moves from a level to its owner's: in a time by the owner's clock, or by the caller's, in ms.
    void MoveByOwner(float from, double since, double fade) {
        m_from = from, m_bByOwner = true, m_since = since, m_fade = fade;
    }
    void MoveByCaller(float from, double since, double fade) {
        m_from = from, m_bByOwner = false, m_since = since, m_fade = fade;
    }

    /// It stands at once where its owner has it.
    void Stand(qint64 nNowMs) { MoveByCaller(m_from, static_cast<double>(nNowMs), 0); }
    /// It goes on as another one moves, whose owner has the same clock.
    void MoveLike(const LatestChannel& other) {
        m_from = other.m_from;
        m_bByOwner = other.m_bByOwner;
        m_since = other.m_since;
        m_fade = other.m_fade;
    }

    /// `positions`: of all layers, at `nNowMs`.
    float LevelAt(const std::vector<Layer>& layers, const std::vector<Layer::Position>& positions,
                  qint64 nNowMs) const;
    /// Whether it moves though no layer does.
    bool IsMoving(qint64 nNowMs) const;

private:
    std::size_t m_at;
    float m_default;
    std::vector<Owner> m_owners;  ///< in the order in which they were started
    float m_from;
    bool m_bByOwner = false;
    double m_since = 0;
    double m_fade = 0;
};
