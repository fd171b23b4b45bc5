#pragma once

#include "device/color.h"
#include "device/command.h"
#include "device/universes.h"
#include "server/show/show.h"

#include <array>
#include <bitset>
#include <cstddef>
#include <map>
#include <vector>

/// A level for each channel of each universe, at Universes::At.
using Levels = std::array<unsigned char, std::size_t{Universes::Count} * Universes::Channels>;
/// The same before it is rounded, from 0 to 255.
using FineLevels = std::array<float, std::tuple_size_v<Levels>>;
/// A level from 0 to 255, rounded; many at a time, for which the library's functions are too slow.
inline unsigned char Rounded(float level) {
    constexpr float Half = 0.5F;
    return static_cast<unsigned char>(level + Half);
}
/// Some of the channels, where Universes::At says.
using ChannelSet = std::bitset<std::tuple_size_v<Levels>>;
/// Some of the universes, by index.
using UniverseSet = std::bitset<Universes::Count>;

/// What every channel is for, and what colour, white, dimmer and black-out make of it.
class Patch {
public:
    /// Of fixtures within their universes, none over another, as a show that was read has them.
    explicit Patch(const std::vector<Fixture>& fixtures);

    /// The universes that have a fixture.
    const UniverseSet& Used() const { return m_used; }
    bool IsLit(std::size_t at) const;    ///< intensity or colour
    bool IsOther(std::size_t at) const;  ///< pan, tilt, gobo: what neither dims nor goes black
    /// Whether a submaster acts on it: intensity, or colour where the fixture has no intensity.
    bool IsDimmed(std::size_t at) const;

    /// Whether dimmer and black-out act on it.
    bool IsGraded(std::size_t at) const;

    /// Whether the next channel is its fine half. The two are one channel then, at its place, in levels from
    /// 0 to 255 and 255/256.
    bool HasFine(std::size_t at) const { return m_fine[at]; }
    /// What channels that are no light are at while nobody names them, by where they are; of the others none.
    const std::map<std::size_t, float>& Defaults() const { return m_defaults; }

    /// Rounds a level, into both halves of a channel that has a fine one.
    void Put(std::size_t at, float level, Levels& levels) const;
    /// Replaces what a colour replaces. Returns where.
    ChannelSet Paint(const Color& color, FineLevels& show) const;
    /// Rounds levels, after the operator's commands. Channels that are not lit come out as 0.
    void Grade(const FineLevels& show, const Command& command, Levels& levels) const;

private:
    void Add(const Fixture& fixture, int iUnit);

    std::array<unsigned char, std::tuple_size_v<Levels>> m_kinds{};
    ChannelSet m_fine;
    std::vector<std::size_t> m_widened;  ///< the lit ones of them
    std::map<std::size_t, float> m_defaults;
    UniverseSet m_used;
};
