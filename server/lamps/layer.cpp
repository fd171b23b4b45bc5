#include "server/lamps/layer.h"

#include <algorithm>
#include <cmath>

namespace {

/// Runs that are no further apart are one: a few empty cells cost less than another run.
constexpr std::size_t Gap = 16;

float Between(float from, float to, float progress) {
    return from + (to - from) * progress;
}

float Progress(double elapsed, double duration) {
    return elapsed < duration ? static_cast<float>(std::max(elapsed, 0.0) / duration) : 1;
}

}  // namespace

Layer::Layer(const std::vector<Cue>& cues, bool bFollows, const Patch& patch) : m_bFollows(bFollows) {
    double end = 0;
    for (const Cue& cue : cues) {
        end += cue.fade + cue.hold;
        m_cues.push_back({cue.fade, cue.hold, end});
    }
    LayOut(cues, patch);
    FillRows(cues, patch);
    if (m_bFollows) {
        TrackOthers();
    }
    m_kept.assign(m_nCells, 0);
    m_nothing.assign(m_nCells, 0);
}

void Layer::LayOut(const std::vector<Cue>& cues, const Patch& patch) {
    std::vector<std::size_t> lit;
    for (const Cue& cue : cues) {
        for (const Slot& slot : *cue.pLevels) {
            if (patch.IsLit(slot.at)) {
                lit.push_back(slot.at);
            } else if (patch.IsOther(slot.at)) {
                m_others.push_back(slot.at);
            }
        }
    }
    for (std::vector<std::size_t>* pList : {&lit, &m_others}) {
        std::sort(pList->begin(), pList->end());
        pList->erase(std::unique(pList->begin(), pList->end()), pList->end());
    }
    for (const std::size_t at : lit) {
        if (m_runs.empty() || at >= m_runs.back().at + m_runs.back().count + Gap) {
            m_nCells += m_runs.empty() ? 0 : m_runs.back().count;
            m_runs.push_back({at, 0, m_nCells});
        }
        m_runs.back().count = at + 1 - m_runs.back().at;
    }
    m_nCells += m_runs.empty() ? 0 : m_runs.back().count;
}

void Layer::FillRows(const std::vector<Cue>& cues, const Patch& patch) {
    m_rows.assign(cues.size() * m_nCells, 0);
    m_otherRows.assign(cues.size() * m_others.size(), -1);
    for (std::size_t i = 0; i < cues.size(); ++i) {
        for (const Slot& slot : *cues[i].pLevels) {
            const auto level = static_cast<float>(slot.level);
            if (patch.IsLit(slot.at)) {
                const float gain = patch.IsDimmed(slot.at) ? static_cast<float>(cues[i].submaster) / 255 : 1;
                m_rows[i * m_nCells + CellOf(slot.at)] = level * gain;
            } else if (patch.IsOther(slot.at)) {
                const auto other = std::lower_bound(m_others.begin(), m_others.end(), slot.at);
                m_otherRows[i * m_others.size() + static_cast<std::size_t>(other - m_others.begin())] = level;
            }
        }
    }
}

void Layer::TrackOthers() {
    for (std::size_t iOther = 0; iOther < m_others.size(); ++iOther) {
        float kept = -1;
        for (std::size_t i = 0; i < 2 * m_cues.size(); ++i) {
            float& level = m_otherRows[i % m_cues.size() * m_others.size() + iOther];
            level = level < 0 ? kept : level;
            kept = level;
        }
    }
}

std::size_t Layer::CellOf(std::size_t at) const {
    const auto after = std::upper_bound(m_runs.begin(), m_runs.end(), at,
                                        [](std::size_t n, const Run& run) { return n < run.at; });
    const Run& run = *std::prev(after);
    return run.cell + at - run.at;
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
    for (std::size_t i = 0; i < m_kept.size(); ++i) {
        m_kept[i] = Between(position.from[i], position.to[i], position.progress);
    }
    SetClock(nNowMs);
    m_start = m_clock;
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
    const auto position = [this](int iCue, const float* pFrom, float progress, bool bEntered) {
        const float* const pTo = iCue < 0 ? m_nothing.data() : Row(iCue);
        return Position{iCue, progress < 1 ? pFrom : pTo, pTo, progress, bEntered};
    };
    const double elapsed = Clock(nNowMs) - m_start;
    if (!IsOn()) {
        return position(-1, m_kept.data(), Progress(elapsed, m_stopFade), true);
    }
    const Timing& entered = TimingOf(m_iCue);
    const double cycle = m_cues.back().end;
    if (!m_bFollows || m_bWaits || elapsed < entered.fade + entered.hold || cycle <= 0) {
        return position(m_iCue, m_kept.data(), Progress(elapsed, entered.fade), true);
    }
    const double fromFirst = std::fmod(entered.end + elapsed - entered.fade - entered.hold, cycle);
    const auto timing = std::upper_bound(m_cues.begin(), std::prev(m_cues.end()), fromFirst,
                                         [](double t, const Timing& cue) { return t < cue.end; });
    const int iCue = static_cast<int>(timing - m_cues.begin());
    const double inCue = fromFirst - (timing->end - timing->fade - timing->hold);
    return position(iCue, Row(Before(iCue)), Progress(inCue, timing->fade), false);
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
    if (position.from == m_nothing.data()) {
        return;  // and so is what it fades to
    }
    const float progress = position.progress;
    for (const Run& run : m_runs) {
        const float* const pFrom = position.from + run.cell;
        const float* const pTo = position.to + run.cell;
        float* const pOut = levels.data() + run.at;
        for (std::size_t i = 0; i < run.count; ++i) {
            const float level = Between(pFrom[i], pTo[i], progress);
            pOut[i] = level > pOut[i] ? level : pOut[i];
        }
    }
}

float Layer::Other(const Position& position, std::size_t iOther) const {
    const float level = OtherLevel(position.cue, iOther);
    return position.bEntered ? level
                             : Between(OtherLevel(Before(position.cue), iOther), level, position.progress);
}
