#pragma once

#include "device/color.h"

#include <array>
#include <cstddef>

/// Levels and hold flags of every DMX channel, addressed by universe x 512 + channel. What lies out of range
/// changes nothing; a negative number is out of range, never an address.
struct Universes {
    static constexpr int Count = 32;
    static constexpr int Channels = 512;

    static constexpr bool HasUniverse(int nUniverse) { return nUniverse >= 0 && nUniverse < Count; }
    static constexpr bool HasChannel(int nChannel) { return nChannel >= 0 && nChannel < Channels; }

    /// Position of a channel in both tables; universe and channel must exist.
    static constexpr std::size_t At(int nUniverse, int nChannel) {
        return static_cast<std::size_t>(nUniverse) * Channels + static_cast<std::size_t>(nChannel);
    }

    /// Sets one channel; the level keeps its lower 8 bits.
    void Set(int nUniverse, int nChannel, int nLevel, bool bState);
    /// Holds a whole universe at a level, or releases it, which zeroes its levels.
    void SetAll(int nUniverse, unsigned char ucLevel, bool bState);
    /// Holds the channels of `nCount` fixtures side by side, of three channels each or four with white, from
    /// `nStart` on. A fixture that would reach the universe's last channel is left out, and all after it.
    void SetRun(int nUniverse, int nStart, int nCount, const Color& color);
    /// Whether any channel of a universe, which must exist, is held.
    bool IsHeld(int nUniverse) const;

    std::array<unsigned char, std::size_t{Count} * Channels> levels{};
    std::array<bool, std::size_t{Count} * Channels> states{};
};
