#pragma once

#include "server/lamps/patch.h"
#include "server/show/show.h"

#include <QtGlobal>

#include <cstddef>
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
    /// Where a layer is at one moment: so far from one row of levels to another.
    struct Position {
        int cue = -1;  ///< the cue that it fades to or stands in; -1 is nothing
        Row from;
        Row to;
        float progress = 1;    ///< 0 to 1
        bool bEntered = true;  ///< in the cue that it was sent to, not in one that followed by itself
    };

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

    /// Stands at once in the cue that it was sent to.
    void Stand();
    /// Goes on where another one is: in a cue like this one's, with what it shows, and by its clock.
    void GoOnFrom(const Layer& other);

    bool IsOn() const { return m_iCue >= 0; }
    bool Follows() const { return m_bFollows; }
    /// Where it was sent last; -1 to nothing.
    int Sent() const { return m_iCue; }
    int CueCount() const { return static_cast<int>(m_cues.size()); }
    Position At(qint64 nNowMs) const;
    bool IsMoving(qint64 nNowMs) const;
    /// How long the cue that it is in takes to fade by the caller's clock.
    double FadeMs(qint64 nNowMs) const;

    /// Raises levels to what it does to the lit channels.
    void MergeInto(FineLevels& levels, const Position& position) const;

    /// Goes to its cue's levels at once in these channels, which nobody sees at the moment.
    void Skip(const ChannelSet& hidden);

    /// Its own clock, which stands where it pauses.
    double Clock(qint64 nNowMs) const;
    /// How many milliseconds of the caller's have gone by since its own clock showed this.
    double SinceMs(double clock, qint64 nNowMs) const { return (Clock(nNowMs) - clock) / m_rate; }
    /// When by its own clock it comes to a cue, since it was sent where it is; infinity for never.
    double ReachedAt(int iCue) const;
    double CueFade(int iCue) const { return TimingOf(iCue).fade; }

    /// The channels that are no light, in rising order.
    const std::vector<std::size_t>& Others() const { return m_others; }
    /// The first cue from this one on, round and round where cues follow each other, that gives a level to
    /// one of them, by its place in Others(); -1 for none.
    int NextNaming(int iCue, std::size_t iOther) const;
    /// The level of one of them in a cue. In a program it keeps what an earlier step gave it, round and
    /// round; -1 is none.
    float OtherLevel(int iCue, std::size_t iOther) const;
    /// What one of them is at.
    float Other(const Position& position, std::size_t iOther) const;

private:
    /// Rows, one behind the other.
    struct Rows {
        std::vector<Run> runs;
        std::vector<float> levels;
        std::vector<std::size_t> ends;  ///< for each row its end among the runs

        void Add(std::size_t at, float level);
        void EndRow() { ends.push_back(runs.size()); }
        Row At(std::size_t iRow) const {
            return {runs.data() + (iRow > 0 ? ends[iRow - 1] : 0), runs.data() + ends[iRow], levels.data()};
        }
    };
    /// Where a cue names one of the other channels.
    struct Named {
        std::size_t at;
        int cue;
        float level;
    };
    struct Timing {
        double fade;  ///< milliseconds, as all times but those of a show
        double hold;
        double end;  ///< of the hold, since the first cue's beginning
    };

    void Add(int iCue, const Cue& cue, const Patch& patch);
    /// Where cues name one of the other channels.
    std::pair<const Named*, const Named*> NamingOf(std::size_t iOther) const {
        return {m_named.data() + (iOther > 0 ? m_otherEnds[iOther - 1] : 0),
                m_named.data() + m_otherEnds[iOther]};
    }
    const Timing& TimingOf(int iCue) const { return m_cues[static_cast<std::size_t>(iCue)]; }
    int Before(int iCue) const { return iCue > 0 ? iCue - 1 : static_cast<int>(m_cues.size()) - 1; }
    void SetClock(qint64 nNowMs);
    void KeepWhatShows(qint64 nNowMs);

    bool m_bFollows;
    std::vector<Timing> m_cues;
    Rows m_rows;                 ///< one for each cue
    std::vector<Named> m_named;  ///< by channel, then by cue
    std::vector<std::size_t> m_others;
    std::vector<std::size_t> m_otherEnds;  ///< for each of them its end in m_named

    int m_iCue = -1;        ///< where it was sent; -1 to nothing
    double m_start = 0;     ///< when, by its own clock
    double m_stopFade = 0;  ///< how long it takes to nothing
    Rows m_kept;            ///< one: what it showed then
    bool m_bPaused = false;
    bool m_bWaits = false;  ///< sent to a cue while paused: stays in it
    double m_rate = 1;
    double m_clock = 0;      ///< its own clock
    qint64 m_nClockSet = 0;  ///< at this time of the caller's
};
