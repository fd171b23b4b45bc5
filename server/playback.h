#pragma once

#include "device/color.h"
#include "device/command.h"
#include "device/universes.h"
#include "server/show.h"

#include <QtGlobal>

#include <array>
#include <bitset>
#include <cstddef>

/// A level for each channel of each universe, at Universes::At.
using Levels = std::array<unsigned char, std::size_t{Universes::Count} * Universes::Channels>;
/// Some of the universes, by index.
using UniverseSet = std::bitset<Universes::Count>;

/// Plays a show: from what runs and from the time it says what every channel is at. It knows no socket and no
/// clock; times are milliseconds of a monotonic clock of the caller's and never go back.
class Playback {
public:
    /// The scenes and programs that the show says are running begin now.
    explicit Playback(const Show& show, qint64 nNowMs = 0);

    /// A scene or program starts (true) or stops. One that the show has not, or that does so already, changes
    /// nothing, except that whatever starts releases the colour.
    void SwitchScene(int nId, bool bOn, qint64 nNowMs);
    void SwitchProgram(int nId, bool bOn, qint64 nNowMs);
    void Take(const Color& color);
    /// Flags, dimmer and speed; a "next" or "previous" in it is obeyed once. What is out of range is clamped.
    void Take(const Command& command, qint64 nNowMs);

    /// Whether a frame after `nNowMs` may differ from that of `nNowMs` though nothing is switched or taken:
    /// something fades or a program runs.
    bool IsMoving(qint64 nNowMs) const;
    /// The universes that have a fixture.
    UniverseSet Patched() const { return m_patched; }
    /// Fills in all levels as they are at `nNowMs`; what is held comes last, over everything.
    void Render(const Universes& held, qint64 nNowMs, Levels& levels) const;

private:
    UniverseSet m_patched;
};
