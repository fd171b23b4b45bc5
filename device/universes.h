#pragma once

#include <array>
#include <cstddef>

/// Levels and hold flags of every DMX channel, addressed by universe x 512 + channel.
struct Universes {
    static constexpr int Count = 32;
    static constexpr int Channels = 512;

    /// Whether there is such a universe. A negative number is out of range, never an address.
    static constexpr bool HasUniverse(int nUniverse) { return nUniverse >= 0 && nUniverse < Count; }
    static constexpr bool HasChannel(int nChannel) { return nChannel >= 0 && nChannel < Channels; }

    /// Position of a channel in both tables; universe and channel must exist.
    static constexpr std::size_t At(int nUniverse, int nChannel) {
        return static_cast<std::size_t>(nUniverse) * Channels + static_cast<std::size_t>(nChannel);
    }

    std::array<unsigned char, std::size_t{Count} * Channels> levels{};
    std::array<bool, std::size_t{Count} * Channels> states{};
};
