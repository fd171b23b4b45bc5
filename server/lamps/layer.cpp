#include "server/lamps/layer.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>
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
    double end = 0;
    for (std::size_t i = 0; i < cues.size(); ++i) {
        const double fade = cues[i].pStep->fade * 1000;
        const double hold = cues[i].pStep->hold * 1000;
        m_cues.push_back({fade, hold, end += fade + hold});
        Add(static_cast<int>(i), cues[i], patch);
    }
    std::stable_sort(m_named.begin(), m_named.end(),
                     [](const Named& a, const Named& b) { return a.at < b.at; });
    for (std::size_t i = 0; i < m_named.size(); ++i) {
        if (i == 0 || m_named[i].at != m_named[i - 1].at) {
            m_others.push_back(m_named[i].at);
            m_otherEnds.push_back(i);
        }
        ++m_otherEnds.back();
    }
    m_kept.EndRow();
}

void Layer::Add(int iCue, const Cue& cue, const Patch& patch) {
    const Slots& levels = cue.pStep->levels;
    for (std::size_t i = 0; i < levels.size(); ++i) {
        const std::size_t at = levels[i].at;
        const bool bFine = patch.HasFine(at) && i + 1 < levels.size();
        const float level =
            static_cast<float>(levels[i].level) + (bFine ? static_cast<float>(levels[i + 1].level) / 256 : 0);
        if (patch.IsLit(at)) {
            m_rows.Add(at, patch.IsDimmed(at) ? level * static_cast<float>(cue.submaster) / 255 : level);
        } else if (patch.IsOther(at)) {
            m_named.push_back({at, iCue, level});
        }
    }
    m_rows.EndRow();
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

int Layer::NextNaming(int iCue, std::size_t iOther) const {
    const auto [pBegin, pEnd] = NamingOf(iOther);
    const Named* const pNext =
        std::lower_bound(pBegin, pEnd, iCue, [](const Named& named, int nCue) { return named.cue < nCue; });
    if (m_bFollows) {
        return (pNext == pEnd ? pBegin : pNext)->cue;
    }
    return pNext != pEnd && pNext->cue == iCue ? iCue : -1;
}

float Layer::OtherLevel(int iCue, std::size_t iOther) const {
    const auto [pBegin, pEnd] = NamingOf(iOther);
    const Named* const pAfter =
        std::upper_bound(pBegin, pEnd, iCue, [](int nCue, const Named& named) { return nCue < named.cue; });
    if (m_bFollows) {
        return std::prev(pAfter == pBegin ? pEnd : pAfter)->level;
    }
    return pAfter != pBegin && std::prev(pAfter)->cue == iCue ? std::prev(pAfter)->level : -1;
}

double Layer::ReachedAt(int iCue) const {
    constexpr double Never = std::numeric_limits<double>::infinity();
    if (iCue == m_iCue) {
        return m_start;
    }
    const double cycle = m_cues.back().end;
    if (!m_bFollows || m_bWaits || cycle <= 0) {
        return Never;
    }
    const Timing& entered = TimingOf(m_iCue);
    const Timing& reached = TimingOf(iCue);
    const double between = reached.end - reached.fade - reached.hold - entered.end;
    return m_start + entered.fade + entered.hold + between + (iCue < m_iCue ? cycle : 0);
}

void Layer::Skip(const ChannelSet& hidden) {
    Rows kept;
    ForEachRun(m_kept.At(0), m_rows.At(static_cast<std::size_t>(m_iCue)),
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
    const Position position = At(nNowMs);
    m_stopFade = position.cue < 0 ? 0 : TimingOf(position.cue).fade;
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
    SetClock(nNowMs);
    m_start = m_clock;
}

void Layer::Stand() {
    m_start -= IsOn() ? TimingOf(m_iCue).fade : 0;
}

void Layer::GoOnFrom(const Layer& other) {
    m_iCue = m_bFollows ? std::min(other.m_iCue, CueCount() - 1) : m_iCue;
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
    const bool bStands = m_bPaused && IsOn() && !m_bWaits;
    return bStands ? m_clock
                   : m_clock + m_rate * static_cast<double>(std::max<qint64>(nNowMs - m_nClockSet, 0));
}

void Layer::SetClock(qint64 nNowMs) {
    m_clock = Clock(nNowMs);
    m_nClockSet = nNowMs;
}

Layer::Position Layer::At(qint64 nNowMs) const {
    const auto position = [this](int iCue, const Row& from, float progress, bool bEntered) {
        const Row to = iCue < 0 ? Row() : m_rows.At(static_cast<std::size_t>(iCue));
        return Position{iCue, progress < 1 ? from : to, to, progress, bEntered};
    };
    const double elapsed = Clock(nNowMs) - m_start;
    if (!IsOn()) {
        return position(-1, m_kept.At(0), Progress(elapsed, m_stopFade), true);
    }
    const Timing& entered = TimingOf(m_iCue);
    const double cycle = m_cues.back().end;
    if (!m_bFollows || m_bWaits || elapsed < entered.fade + entered.hold || cycle <= 0) {
        return position(m_iCue, m_kept.At(0), Progress(elapsed, entered.fade), true);
    }
    const double fromFirst = std::fmod(entered.end + elapsed - entered.fade - entered.hold, cycle);
    const auto timing = std::upper_bound(m_cues.begin(), std::prev(m_cues.end()), fromFirst,
                                         [](double t, const Timing& cue) { return t < cue.end; });
    const int iCue = static_cast<int>(timing - m_cues.begin());
    const double inCue = fromFirst - (timing->end - timing->fade - timing->hold);
    return position(iCue, m_rows.At(static_cast<std::size_t>(Before(iCue))), Progress(inCue, timing->fade),
                    false);
}

bool Layer::IsMoving(qint64 nNowMs) const {
    if (m_bPaused && IsOn() && !m_bWaits) {
        return false;
    }
    const bool bGoesOn = IsOn() && m_bFollows && !m_bWaits && m_cues.size() > 1 && m_cues.back().end > 0;
    return bGoesOn || At(nNowMs).progress < 1;
}

double Layer::FadeMs(qint64 nNowMs) const {
    const int iCue = At(nNowMs).cue;
    return iCue < 0 ? 0 : TimingOf(iCue).fade / m_rate;
}

void Layer::MergeInto(FineLevels& levels, const Position& position) const {
    const float progress = position.progress;
    ForEachRun(position.from, position.to,
               [&levels, progress](std::size_t at, std::size_t nCount, const float* pFrom, const float* pTo) {
                   float* const pOut = levels.data() + at;
                   for (std::size_t i = 0; i < nCount; ++i) {
                       const float level = Between(pFrom[i], pTo[i], progress);
                       pOut[i] = level > pOut[i] ? level : pOut[i];
                   }
               });
}

float Layer::Other(const Position& position, std::size_t iOther) const {
    const float level = OtherLevel(position.cue, iOther);
    return position.bEntered ? level
                             : Between(OtherLevel(Before(position.cue), iOther), level, position.progress);
}
