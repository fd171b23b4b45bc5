#pragma once

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
    void Render(qint64 nNowMs, Levels& levels) const { Render(nNowMs, m_state.CurrentCommand(), levels); }
    /// The same as if the dimmer were full and Black off.
    Levels OpenLevels(qint64 nNowMs) const;

    /// Goes on from the playback of another show, whose open levels these were: what runs in both goes on,
    /// what has ended fades out in its own time, all else stands at once. Levels that differ all the same are
    /// reached in one second.
    void TakeOver(const Playback& last, const Levels& open, qint64 nNowMs);

private:
    struct Place {
        std::size_t layer = 0;
        int cue = 0;
    };
    /// A layer that has a channel, and the channel's place in its Layer::Others().
    struct User {
        std::size_t layer = 0;
        std::size_t other = 0;
    };
    /// A channel that goes by whoever was started last. It moves there from where it was.
    struct Latest {
        std::size_t at = 0;
        std::vector<User> users;
        int iOwner = -1;  ///< which of the users; -1 leaves it where it is
        float from = 0;
        bool bInherited = false;  ///< given back by one that ended, in that one's time; else in the owner's
        qint64 start = 0;
        double fade = 0;
    };
    /// The other way round.
    struct Use {
        std::size_t latest = 0;
        int user = 0;
    };
    using Positions = std::vector<Layer::Position>;

    void Render(qint64 nNowMs, const Command& command, Levels& levels) const;
    /// Returns for each layer of the last one the layer here that goes on from it, or NoPlace. What ended
    /// goes on only if it gives no more than was seen: the operator's colour may have been over it.
    std::vector<std::size_t> TakeOverLayers(const Playback& last, const Levels& open, qint64 nNowMs);
    void TakeOverLatest(const Playback& last, const Levels& open, const std::vector<std::size_t>& places,
                        qint64 nNowMs);
    /// How much is left of the difference to a last show: 1 at first, 0 a second later.
    float LeftOver(qint64 nNowMs) const;
    void AddScenes(const Show& show);
    void AddPrograms(const Show& show);
    void FindLatest();
    /// One that does so already goes on as it does.
    void SwitchScene(int nId, bool bOn, qint64 nNowMs);
    void SwitchProgram(int nId, bool bOn, qint64 nNowMs);
    void TakeSpeed(qint64 nNowMs);
    void AddLayer(const std::vector<Layer::Cue>& cues, bool bFollows);
    /// Sends a layer to a cue, -1 to nothing. `bStarts`: it comes to be the last started.
    void Send(std::size_t layer, int iCue, bool bStarts, qint64 nNowMs);
    /// Which user of a channel runs, has a level for it, and was started last; -1 is none.
    int LastStarted(const Latest& channel) const;
    bool Has(const User& user) const;
    void StepPrograms(int nSteps, qint64 nNowMs);
    Positions PositionsAt(qint64 nNowMs) const;
    static float InheritedProgress(const Latest& channel, qint64 nNowMs);
    float LevelOf(const Latest& channel, const Positions& positions, qint64 nNowMs) const;

    const State& m_state;
    Patch m_patch;
    std::vector<Layer> m_layers;     ///< of the areas, of the programs, then what has ended with another show
    std::vector<quint64> m_started;  ///< for each layer the number of its last start
    std::vector<Latest> m_latest;
    std::vector<std::vector<Use>> m_uses;   ///< for each layer those of its Others()
    std::map<int, Place> m_scenes;          ///< by id
    std::map<int, std::size_t> m_programs;  ///< the layer, by id
    quint64 m_nStarts = 0;
    std::vector<std::pair<std::size_t, float>>
        m_left;              ///< by how much levels differed from those of a last show
    qint64 m_nTookOver = 0;  ///< when
};
