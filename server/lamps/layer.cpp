#include "server/lamps/layer.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <utility>

namespace {

/// Runs that are no further apart are one: a few levels of 0 cost less than another run.
constexpr std::size_t Gap = 16;

float Between(float from, float to, float progress) {
    return from + (to - from) * progress;
}

float Progress(double elapsed, double duration) {
    return elapsed < duration ? static_cast<float>(std::max(elapsed, 0.0) / duration) : 1;
}

/// Calls visit(channel, count, from, to) for what either row has a level of.
template <typename Visit>
void ForEachRun(Layer::Row from, Layer::Row to, Visit visit) {
    static const FineLevels Dark{};
    constexpr std::size_t End = std::tuple_size_v<FineLevels>;
    for (std::size_t at = 0; at < End;) {
        std::size_t end = End;
        // Where the row's run goes on or the next one begins; what lies before is dark.
        const auto levels = [&at, &end](Layer::Row& row) {
            while (row.pBegin != row.pEnd && row.pBegin->End() <= at) {
                ++row.pBegin;
            }
            if (row.pBegin == row.pEnd || row.pBegin->at > at) {
                end = std::min<std::size_t>(end, row.pBegin == row.pEnd ? End : row.pBegin->at);
                return Dark.data() + at;
            }
            end = std::min(end, row.pBegin->End());
            return row.pLevels + row.pBegin->first + (at - row.pBegin->at);
        };
        const float* const pFrom = levels(from);
        const float* const pTo = levels(to);
        const bool bDark = pFrom == pTo && pFrom == Dark.data() + at;
        if (!bDark) {
            visit(at, end - at, pFrom, pTo);
        }
        at = end;
    }
}

}  // namespace

Layer::Layer(const std::vector<Cue>& cues, bool bFollows, const Patch& patch) : m_bFollows(bFollows) {
    for (const auto& [pStep, nSubmaster] : cues) {
        Timing cue{pStep->fade * 1000, pStep->hold * 1000, {}};
        const Slots& levels = pStep->levels;
        for (std::size_t i = 0; i < levels.size(); ++i) {
            const std::size_t at = levels[i].at;
            const bool bFine = patch.HasFine(at) && i + 1 < levels.size();
            const float level = static_cast<float>(levels[i].level) +
                                (bFine ? static_cast<float>(levels[i + 1].level) / 256 : 0);
            if (patch.IsLit(at)) {
                m_rows.Add(at, patch.IsDimmed(at) ? level * static_cast<float>(nSubmaster) / 255 : level);
            } else if (patch.IsOther(at)) {
                cue.others.emplace_back(at, level);
            }
        }
        m_rows.EndRow();
        m_cycle += cue.fade + cue.hold;
        m_cues.push_back(std::move(cue));
    }
    m_kept.EndRow();
}

void Layer::Rows::Add(std::size_t at, float level) {
    const bool bNewRow = runs.size() == (ends.empty() ? 0 : ends.back());
    if (bNewRow || at >= runs.back().End() + Gap) {
        runs.push_back({static_cast<quint16>(at), 0, static_cast<quint32>(levels.size())});
    }
    levels.resize(runs.back().first + (at - runs.back().at), 0);
    levels.push_back(level);
    runs.back().count = static_cast<quint16>(at + 1 - runs.back().at);
}

std::optional<float> Layer::OtherLevel(std::size_t at) const {
    for (int i = 0; i < (m_bFollows ? CueCount() : 1); ++i) {
        const Others& others = OthersOf((m_iCue - i + CueCount()) % CueCount());
        const auto other = std::lower_bound(others.begin(), others.end(), std::pair(at, 0.0F));
        if (other != others.end() && other->first == at) {
            return other->second;
        }
    }
    return {};
}

double Layer::NextAt() const {
    constexpr double Never = std::numeric_limits<double>::infinity();
    constexpr double ShortestMs = 1;  // what is shorter counts as no time
    const bool bGoesOn = IsOn() && m_bFollows && !m_bWaits && CueCount() > 1 && m_cycle >= ShortestMs;
    return bGoesOn ? m_start + TimingOf(m_iCue).fade + TimingOf(m_iCue).hold : Never;
}

void Layer::GoOn(qint64 nNowMs) {
    m_start = NextAt();
    const double rounds = std::floor((Clock(nNowMs) - m_start) / m_cycle);
    m_start += std::max(rounds - 1, 0.0) * m_cycle;
    m_iFrom = m_iCue;
    m_iCue = (m_iCue + 1) % CueCount();
}

void Layer::Skip(const ChannelSet& hidden) {
    Rows kept;
    ForEachRun(m_kept.At(0), m_rows.At(m_iCue),
               [&](std::size_t at, std::size_t nCount, const float* pFrom, const float* pTo) {
                   for (std::size_t i = 0; i < nCount; ++i) {
                       kept.Add(at + i, hidden[at + i] ? pTo[i] : pFrom[i]);
                   }
               });
    kept.EndRow();
    m_kept = std::move(kept);
}

void Layer::GoTo(int iCue, qint64 nNowMs) {
    KeepWhatShows(nNowMs);
    m_bWaits = m_bPaused;
    m_iCue = iCue;
}

void Layer::Stop(qint64 nNowMs) {
    m_stopFade = CueFade();
    KeepWhatShows(nNowMs);
    m_bWaits = false;
    m_iCue = -1;
}

void Layer::KeepWhatShows(qint64 nNowMs) {
    const Position position = At(nNowMs);
    Rows shown;
    ForEachRun(position.from, position.to,
               [&](std::size_t at, std::size_t nCount, const float* pFrom, const float* pTo) {
                   for (std::size_t i = 0; i < nCount; ++i) {
                       shown.Add(at + i, Between(pFrom[i], pTo[i], position.progress));
                   }
               });
    shown.EndRow();
    m_kept = std::move(shown);
    m_iFrom = -1;
    SetClock(nNowMs);
    m_start = m_clock;
}

void Layer::Stand() {
    m_start -= CueFade();
}

void Layer::GoOnFrom(const Layer& other) {
    m_iCue = m_bFollows ? std::min(other.m_iCue, CueCount() - 1) : m_iCue;
    m_iFrom = std::min(other.m_iFrom, CueCount() - 1);
    m_start = other.m_start;
    m_kept = other.m_kept;
    m_bPaused = other.m_bPaused;
    m_bWaits = other.m_bWaits;
    m_rate = other.m_rate;
    m_clock = other.m_clock;
    m_nClockSet = other.m_nClockSet;
}

void Layer::Pause(bool bPause, qint64 nNowMs) {
    SetClock(nNowMs);
    m_bPaused = bPause;
    if (!bPause && m_bWaits) {
        // What it was sent to while paused has faded in; its hold begins now.
        m_start = std::max(m_start, m_clock - TimingOf(m_iCue).fade);
        m_bWaits = false;
    }
}

void Layer::SetRate(double rate, qint64 nNowMs) {
    SetClock(nNowMs);
    m_rate = rate;
}

double Layer::Clock(qint64 nNowMs) const {
    return Stands() ? m_clock
                    : m_clock + m_rate * static_cast<double>(std::max<qint64>(nNowMs - m_nClockSet, 0));
}

void Layer::SetClock(qint64 nNowMs) {
    m_clock = Clock(nNowMs);
    m_nClockSet = nNowMs;
}

Layer::Position Layer::At(qint64 nNowMs) const {
    const float progress = Progress(Clock(nNowMs) - m_start, IsOn() ? CueFade() : m_stopFade);
    const Row to = IsOn() ? m_rows.At(m_iCue) : Row();
    const Row from = m_iFrom < 0 ? m_kept.At(0) : m_rows.At(m_iFrom);
    return {progress < 1 ? from : to, to, progress};
}

bool Layer::IsMoving(qint64 nNowMs) const {
    return !Stands() && (std::isfinite(NextAt()) || At(nNowMs).progress < 1);
}

void Layer::MergeInto(FineLevels& levels, qint64 nNowMs) const {
    const auto [from, to, progress] = At(nNowMs);
    ForEachRun(from, to,
               [&levels, between = progress](std::size_t at, std::size_t nCount, const float* pFrom,
                                             const float* pTo) {
                   float* const pOut = levels.data() + at;
                   for (std::size_t i = 0; i < nCount; ++i) {
                       const float level = Between(pFrom[i], pTo[i], between);
                       pOut[i] = level > pOut[i] ? level : pOut[i];
                   }
               });
}
