#pragma once

#include "server/lamps/patch.h"
#include "server/show/show.h"

#include <QtGlobal>

#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

/// What fades as one: the scenes of an area, of which one shows at a time, or the steps of a program, which
/// follow each other. It fades from whatever it shows to the next cue, so that nothing dips and nothing
/// jumps. What it keeps grows with what its cues name, and not with how many there are.
class Layer {
public:
    /// A scene or a step of a program, which the constructor reads.
    struct Cue {
        const Look::Step* pStep;
        int submaster;
    };
    /// Channels side by side, and where their levels stand among all of them.
    struct Run {
        quint16 at;
        quint16 count;
        quint32 first;
        std::size_t End() const { return std::size_t{at} + count; }
    };
    /// Levels of some lit channels, in rising order; the others are at 0.
    struct Row {
        const Run* pBegin = nullptr;
        const Run* pEnd = nullptr;
        const float* pLevels = nullptr;
    };
    /// Levels of channels that are no light, in rising order.
    using Others = std::vector<std::pair<std::size_t, float>>;

    /// `bFollows`: the cues follow each other, the first one the last.
    Layer(const std::vector<Cue>& cues, bool bFollows, const Patch& patch);

    // Times go by the caller's clock, in milliseconds; the layer's own may be faster, slower or stand still.

    /// Fades to a cue in its time. While the layer is paused it does that all the same, and stays there.
    void GoTo(int iCue, qint64 nNowMs);
    /// Fades to nothing in the time of the cue that it is in.
    void Stop(qint64 nNowMs);
    void Pause(bool bPause, qint64 nNowMs);
    /// How fast time goes by for it; 1 as written.
    void SetRate(double rate, qint64 nNowMs);
    /// When by its own clock it is to go on to the cue that follows; infinity for never.
    double NextAt() const;
    /// Does that, when the time has come. Rounds that nobody sees are left out.
    void GoOn(qint64 nNowMs);

    /// Stands at once in the cue that it was sent to.
    void Stand();
    /// Goes on where another one is: in a cue like this one's, with what it shows, and by its clock.
    void GoOnFrom(const Layer& other);

    bool IsOn() const { return m_iCue >= 0; }
    bool Follows() const { return m_bFollows; }
    /// The cue that it is in or fades to; -1 is nothing.
    int CurrentCue() const { return m_iCue; }
    int CueCount() const { return static_cast<int>(m_cues.size()); }
    bool IsMoving(qint64 nNowMs) const;
    /// When it came there, by its own clock.
    double Since() const { return m_start; }
    /// How long the cue that it is in takes to fade, by its own clock.
    double CueFade() const { return IsOn() ? TimingOf(m_iCue).fade : 0; }
    /// The same by the caller's.
    double FadeMs() const { return CueFade() / m_rate; }

    /// Raises levels to what it does to the lit channels.
    void MergeInto(FineLevels& levels, qint64 nNowMs) const;

    /// Goes to its cue's levels at once in these channels, which nobody sees at the moment.
    void Skip(const ChannelSet& hidden);

    /// Its own clock, which stands where it pauses.
    double Clock(qint64 nNowMs) const;
    /// How many milliseconds of the caller's have gone by since its own clock showed this.
    double SinceMs(double clock, qint64 nNowMs) const { return (Clock(nNowMs) - clock) / m_rate; }

    /// Which channels that are no light a cue names.
    const Others& OthersOf(int iCue) const { return TimingOf(iCue).others; }
    /// What the cue that it is in gives one of them. In a program it is what an earlier step gave it, round
    /// and round.
    std::optional<float> OtherLevel(std::size_t at) const;

private:
    /// Rows, one behind the other.
    struct Rows {
        std::vector<Run> runs;
        std::vector<float> levels;
        std::vector<std::size_t> ends;  ///< for each row its end among the runs

        void Add(std::size_t at, float level);
        void EndRow() { ends.push_back(runs.size()); }
        Row At(int iRow) const {
            const auto row = static_cast<std::size_t>(iRow);
            return {runs.data() + (row > 0 ? ends[row - 1] : 0), runs.data() + ends[row], levels.data()};
        }
    };
    struct Timing {
        double fade;  ///< milliseconds, as all times but those of a show
        double hold;
        Others others;
    };
    /// So far from one row of levels to another.
    struct Position {
        Row from;
        Row to;
        float progress;  ///< 0 to 1
    };

    const Timing& TimingOf(int iCue) const { return m_cues[static_cast<std::size_t>(iCue)]; }
    Position At(qint64 nNowMs) const;
    bool Stands() const { return m_bPaused && IsOn() && !m_bWaits; }
    void SetClock(qint64 nNowMs);
    void KeepWhatShows(qint64 nNowMs);

    bool m_bFollows;
    std::vector<Timing> m_cues;
    Rows m_rows;         ///< one for each cue
    double m_cycle = 0;  ///< how long all of them take

    int m_iCue = -1;
    double m_start = 0;     ///< when it came there, by its own clock
    double m_stopFade = 0;  ///< how long it takes to nothing
    Rows m_kept;            ///< one: what it showed when it was sent there
    int m_iFrom = -1;       ///< the cue that it came from by itself; -1: it was sent
    bool m_bPaused = false;
    bool m_bWaits = false;  ///< sent to a cue while paused: stays in it
    double m_rate = 1;
    double m_clock = 0;      ///< its own clock
    qint64 m_nClockSet = 0;  ///< at this time of the caller's
};
