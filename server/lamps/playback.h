#pragma once

#include "server/lamps/latestchannel.h"
#include "server/lamps/layer.h"
#include "server/lamps/patch.h"
#include "server/state.h"

#include <QObject>

#include <cstddef>
#include <functional>
#include <map>
#include <utility>
#include <vector>

/// Plays a show: from what runs and from the time it says what every channel is at. It follows a state and
/// knows no socket.
///
/// The scenes of an area share a layer, each program is one. Of intensities and colours the highest of all
/// layers counts, of every other channel the layer that was started last of those that have a level for it.
class Playback : public QObject {
    Q_OBJECT

public:
    /// Milliseconds of a monotonic clock.
    using Clock = std::function<qint64()>;

    /// What runs begins now; whatever the state takes from now on is done at the time that the clock says
    /// then. The state must outlive it.
    Playback(const State& state, Clock clock);

    /// Whether a frame after `nNowMs` may differ from that of `nNowMs` though the state stays as it is:
    /// something fades or a program runs.
    bool IsMoving(qint64 nNowMs) const;
    /// The universes that have a fixture.
    const UniverseSet& Patched() const { return m_patch.Used(); }
    /// Fills in all levels as they are at `nNowMs`; what is held comes last, over everything.
    void Render(qint64 nNowMs, Levels& levels) { Render(nNowMs, m_state.CurrentCommand(), levels); }
    /// The same as if the dimmer were full and Black off.
    Levels OpenLevels(qint64 nNowMs);

    /// Goes on from the playback of another show, whose open levels these were: what runs in both goes on,
    /// what has ended fades out in its own time, all else stands at once. Levels that differ all the same are
    /// reached in one second.
    void TakeOver(const Playback& last, const Levels& open, qint64 nNowMs);

private:
    struct Place {
        std::size_t layer = 0;
        int cue = 0;  ///< of a scene; a program goes on in the one that it was sent to
    };
    void Render(qint64 nNowMs, const Command& command, Levels& levels);
    /// Returns for each layer of the last one the layer here that goes on from it, or NoPlace. What ended
    /// goes on only if it gives no more than was seen: the operator's colour may have been over it.
    std::vector<std::size_t> TakeOverLayers(const Playback& last, const Levels& open, qint64 nNowMs);
    void TakeOverLatest(const Playback& last, const Levels& open, const std::vector<std::size_t>& places,
                        qint64 nNowMs);
    void TakeOwners(std::size_t at, const LatestChannel& last, const std::vector<std::size_t>& places);
    void AddLayers(const Show& show);
    /// One that does so already goes on as it does.
    void Switch(const Playable& running, bool bOn, bool bReleasesColor, qint64 nNowMs);
    void TakeSpeed(qint64 nNowMs, bool bPause);
    /// Sends a layer to a cue, -1 to nothing. `bStarts`: it comes to be the last started.
    void Send(std::size_t layer, int iCue, bool bStarts, qint64 nNowMs);
    /// Has the layer's cue, to which it comes now, take the channels that it names.
    void Claim(std::size_t layer, qint64 nNowMs);
    /// Lets programs come to the steps that have come due since.
    void Advance(qint64 nNowMs);
    void StepPrograms(int nSteps, qint64 nNowMs);
    /// How far the picture has gone: 0 to 1.
    float FadeProgress(qint64 nNowMs) const;
    /// What all layers and the colour make, before the commands. Returns what the colour replaces.
    ChannelSet Lit(const Color& color, qint64 nNowMs, FineLevels& levels) const;

    const State& m_state;
    Patch m_patch;
    std::vector<Layer> m_layers;     ///< of the areas, of the programs, then what has ended with another show
    std::vector<quint64> m_started;  ///< for each layer the number of its last start
    std::map<std::size_t, LatestChannel> m_latest;  ///< by channel
    /// What was lit when a start released the colour, or when another show was taken over, from which these
    /// channels fade to what plays.
    FineLevels m_picture{};
    ChannelSet m_fading;
    qint64 m_nPictureMs = 0;
    double m_pictureFade = 0;
    std::map<Playable, Place> m_places;
    quint64 m_nStarts = 0;
};
