#include "server/lamps/playback.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace {

constexpr double Second = 1000;
constexpr int FullDimmer = 100;
/// A speed of so many percent is as written, and so many more or less double or halve it.
constexpr double WrittenSpeed = 50;
constexpr double SpeedStep = 25;
/// Longer than any fade takes, at any speed: what started then stands, a program that is paused in its first
/// step.
constexpr qint64 LongAgoMs = qint64{86400} * 1000 * 5;

constexpr std::size_t NoPlace = std::numeric_limits<std::size_t>::max();

/// Whether a layer is anywhere brighter than these levels.
bool ShowsMore(const Layer& layer, const Levels& levels, qint64 nNowMs) {
    FineLevels shown{};
    layer.MergeInto(shown, nNowMs);
    return !std::equal(shown.begin(), shown.end(), levels.begin(), [](float level, unsigned char ucMost) {
        return level < static_cast<float>(ucMost) + 1;
    });
}

}  // namespace

Playback::Playback(const State& state, Clock clock) : m_state(state), m_patch(state.CurrentShow().fixtures) {
    AddLayers(state.CurrentShow());
    const qint64 nStartMs = clock() - (state.IsTakenUp() ? LongAgoMs : 0);
    TakeSpeed(nStartMs, state.IsTakenUp());
    for (const Playable& running : state.Runs()) {
        Switch(running, true, false, nStartMs);
    }
    TakeSpeed(clock(), state.CurrentCommand().hold);
    connect(&state, &State::switched, this, [this, clock](const Playable& running, bool bOn, bool bReleases) {
        Switch(running, bOn, bReleases, clock());
    });
    connect(&state, &State::colorTaken, this, [this] {
        // Remotes release a colour once more that a start has released: that goes on fading.
        FineLevels levels{};
        m_fading &=
            m_state.CurrentColor().state ? ~m_patch.Paint(m_state.CurrentColor(), levels) : ~ChannelSet();
    });
    connect(&state, &State::commandTaken, this, [this, clock](bool bNext, bool bPrevious) {
        TakeSpeed(clock(), m_state.CurrentCommand().hold);
        StepPrograms((bNext ? 1 : 0) - (bPrevious ? 1 : 0), clock());
    });
}

void Playback::AddLayers(const Show& show) {
    static const Look Dark{{{}}};
    std::map<int, std::size_t> areas;
    std::vector<std::vector<Layer::Cue>> layers;
    for (const auto& [pEntries, bProgram] : {std::pair{&show.scenes, false}, {&show.programs, true}}) {
        for (const Scene& entry : *pEntries) {
            const std::size_t layer =
                bProgram ? layers.size() : areas.emplace(entry.area, layers.size()).first->second;
            layers.resize(std::max(layers.size(), layer + 1));
            m_places[{bProgram, entry.id}] = {layer, static_cast<int>(layers[layer].size())};
            const auto found = show.looks.find({bProgram, entry.id});
            const Look& look = found == show.looks.end() ? Dark : found->second;
            for (const Look::Step& step : look.steps) {
                layers[layer].push_back({&step, look.submaster});
            }
        }
    }
    for (std::size_t i = 0; i < layers.size(); ++i) {
        m_layers.emplace_back(layers[i], i >= areas.size(), m_patch);
    }
    m_started.resize(layers.size());
    for (const auto& [at, standard] : m_patch.Defaults()) {
        m_latest.emplace(at, standard);
    }
    for (const Layer& layer : m_layers) {
        for (int i = 0; i < layer.CueCount(); ++i) {
            for (const auto& other : layer.OthersOf(i)) {
                m_latest.emplace(other.first, LatestChannel::NoDefault);
            }
        }
    }
}

void Playback::Switch(const Playable& running, bool bOn, bool bReleasesColor, qint64 nNowMs) {
    Advance(nNowMs);
    const auto [layer, iScene] = m_places.at(running);
    const int iCue = running.program ? std::max(m_layers[layer].CurrentCue(), 0) : iScene;
    const bool bFades = FadeProgress(nNowMs) < 1;
    const bool bFromPicture = bOn && (bReleasesColor || bFades);
    if (bFromPicture) {
        Color color = m_state.CurrentColor();
        color.state = bReleasesColor;
        FineLevels lit{};
        m_fading = (bFades ? m_fading : ChannelSet()) | Lit(color, nNowMs, lit);
        m_picture = lit;
    }
    if ((m_layers[layer].CurrentCue() == iCue) != bOn) {
        Send(layer, bOn ? iCue : -1, true, nNowMs);
    }
    if (bFromPicture) {
        // Under the picture nothing is seen of the layer's own fade; with both, same levels would dip
        // half-way.
        m_layers[layer].Skip(m_fading);
        m_nPictureMs = nNowMs;
        m_pictureFade = m_layers[layer].FadeMs();
    }
}

void Playback::Send(std::size_t layer, int iCue, bool bStarts, qint64 nNowMs) {
    Layer& sent = m_layers[layer];
    double fade = sent.FadeMs();
    if (iCue < 0) {
        sent.Stop(nNowMs);
    } else {
        sent.GoTo(iCue, nNowMs);
        fade = sent.FadeMs();
        m_started[layer] = bStarts ? ++m_nStarts : m_started[layer];
    }
    for (auto& [at, channel] : m_latest) {
        const float shown = channel.LevelAt(m_layers, nNowMs);
        if (channel.IsOwnedBy(layer) && bStarts) {
            channel.Move({shown, false, static_cast<double>(nNowMs), fade});
        } else if (channel.IsOwnedBy(layer)) {
            channel.Move({shown, true, sent.Since(), sent.CueFade()});
        }
        if (bStarts) {
            channel.Remove(layer);
        }
    }
    if (iCue >= 0) {
        Claim(layer, nNowMs);
    }
}

void Playback::Claim(std::size_t layer, qint64 nNowMs) {
    const Layer& claims = m_layers[layer];
    for (const auto& [at, level] : claims.OthersOf(claims.CurrentCue())) {
        LatestChannel& channel = m_latest.at(at);
        const float shown = channel.LevelAt(m_layers, nNowMs);
        channel.Add({layer, m_started[layer], level});
        if (channel.IsOwnedBy(layer)) {
            channel.Move({shown, true, claims.Since(), claims.CueFade()});
        }
    }
}

void Playback::Advance(qint64 nNowMs) {
    const auto isSooner = [nNowMs](const Layer& a, const Layer& b) {
        return a.SinceMs(a.NextAt(), nNowMs) > b.SinceMs(b.NextAt(), nNowMs);
    };
    for (;;) {
        const auto next = std::min_element(m_layers.begin(), m_layers.end(), isSooner);
        const double sinceMs = next == m_layers.end() ? -1 : next->SinceMs(next->NextAt(), nNowMs);
        if (sinceMs < 0) {
            return;
        }
        next->GoOn(nNowMs);
        Claim(static_cast<std::size_t>(next - m_layers.begin()), nNowMs - static_cast<qint64>(sinceMs));
    }
}

void Playback::TakeSpeed(qint64 nNowMs, bool bPause) {
    Advance(nNowMs);
    const double rate = std::exp2((m_state.CurrentCommand().speed - WrittenSpeed) / SpeedStep);
    for (Layer& layer : m_layers) {
        if (layer.Follows()) {
            layer.SetRate(rate, nNowMs);
            layer.Pause(bPause, nNowMs);
        }
    }
}

void Playback::StepPrograms(int nSteps, qint64 nNowMs) {
    Advance(nNowMs);
    for (std::size_t i = 0; nSteps != 0 && i < m_layers.size(); ++i) {
        if (m_layers[i].Follows() && m_layers[i].IsOn()) {
            const int nCues = m_layers[i].CueCount();
            Send(i, (m_layers[i].CurrentCue() + nSteps + nCues) % nCues, false, nNowMs);
        }
    }
}

bool Playback::IsMoving(qint64 nNowMs) const {
    return FadeProgress(nNowMs) < 1 ||
           std::any_of(m_layers.begin(), m_layers.end(),
                       [nNowMs](const Layer& layer) { return layer.IsMoving(nNowMs); }) ||
           std::any_of(m_latest.begin(), m_latest.end(),
                       [nNowMs](const auto& latest) { return latest.second.IsMoving(nNowMs); });
}

float Playback::FadeProgress(qint64 nNowMs) const {
    const auto elapsed = static_cast<double>(nNowMs - m_nPictureMs);
    return m_fading.any() && elapsed < m_pictureFade ? static_cast<float>(elapsed / m_pictureFade) : 1;
}

ChannelSet Playback::Lit(const Color& color, qint64 nNowMs, FineLevels& levels) const {
    for (const Layer& layer : m_layers) {
        layer.MergeInto(levels, nNowMs);
    }
    const float progress = FadeProgress(nNowMs);
    for (std::size_t at = 0; progress < 1 && at < levels.size(); ++at) {
        if (m_fading[at]) {
            levels[at] = m_picture[at] + (levels[at] - m_picture[at]) * progress;
        }
    }
    return color.state ? m_patch.Paint(color, levels) : ChannelSet();
}

Levels Playback::OpenLevels(qint64 nNowMs) {
    Command open = m_state.CurrentCommand();
    open.bo = false;
    open.dim = FullDimmer;
    Levels levels;
    Render(nNowMs, open, levels);
    return levels;
}

void Playback::TakeOver(const Playback& last, const Levels& open, qint64 nNowMs) {
    TakeOverLatest(last, open, TakeOverLayers(last, open, nNowMs), nNowMs);
    const Levels now = OpenLevels(nNowMs);
    for (std::size_t at = 0; at < now.size(); ++at) {
        m_fading[at] = m_patch.IsLit(at) && now[at] != open[at];
        m_picture[at] = open[at];
    }
    m_nPictureMs = nNowMs;
    m_pictureFade = Second;
}

std::vector<std::size_t> Playback::TakeOverLayers(const Playback& last, const Levels& open, qint64 nNowMs) {
    for (Layer& layer : m_layers) {
        layer.Stand();
    }
    std::vector<std::size_t> places(last.m_layers.size(), NoPlace);
    for (const Playable& running : m_state.Runs()) {
        const std::size_t to = m_places.at(running).layer;
        const auto from = last.m_places.find(running);
        if (from == last.m_places.end()) {
            continue;
        }
        const auto [layer, iCue] = from->second;
        const int iLast = last.m_layers[layer].CurrentCue();
        if (running.program ? iLast >= 0 : iLast == iCue) {
            m_layers[to].GoOnFrom(last.m_layers[layer]);
            places[layer] = to;
        }
    }
    for (std::size_t from = 0; from < places.size(); ++from) {
        Layer ending = last.m_layers[from];
        if (ending.IsOn()) {
            ending.Stop(nNowMs);
        }
        if (places[from] == NoPlace && ending.IsMoving(nNowMs) && !ShowsMore(ending, open, nNowMs)) {
            m_layers.push_back(std::move(ending));
        }
    }
    return places;
}

void Playback::TakeOverLatest(const Playback& last, const Levels& open,
                              const std::vector<std::size_t>& places, qint64 nNowMs) {
    static const LatestChannel Unknown(LatestChannel::NoDefault);
    for (const auto& was : last.m_latest) {
        if (m_patch.IsOther(was.first)) {  // what nobody names any more stays
            m_latest.emplace(was.first, LatestChannel::NoDefault);
        }
    }
    Levels now{};
    for (auto& [at, channel] : m_latest) {
        const auto was = last.m_latest.find(at);
        TakeOwners(at, was == last.m_latest.end() ? Unknown : was->second, places);
        m_patch.Put(at, channel.LevelAt(m_layers, nNowMs), now);
        const std::size_t fine = at + (m_patch.HasFine(at) ? 1 : 0);
        if (now[at] != open[at] || now[fine] != open[fine]) {
            const float level =
                static_cast<float>(open[at]) + (fine == at ? 0 : static_cast<float>(open[fine]) / 256);
            channel.Move({level, false, static_cast<double>(nNowMs), Second});
        }
    }
}

/// What a program of the last show had come to, its successor has come to as well.
void Playback::TakeOwners(std::size_t at, const LatestChannel& last, const std::vector<std::size_t>& places) {
    LatestChannel& channel = m_latest.at(at);
    channel.Move({});
    for (std::size_t from = 0; from < places.size(); ++from) {
        const std::size_t to = places[from];
        if (to == NoPlace || !(last.Has(from) || channel.Has(to))) {
            continue;
        }
        if (const std::optional<float> level = m_layers[to].OtherLevel(at)) {
            channel.Add({to, m_started[to], *level});
        }
        if (last.IsOwnedBy(from) && channel.IsOwnedBy(to)) {
            channel.Move(last.CurrentMotion());
        }
    }
}

void Playback::Render(qint64 nNowMs, const Command& command, Levels& levels) {
    Advance(nNowMs);
    const Universes& held = m_state.Held();
    FineLevels merged{};
    Lit(m_state.CurrentColor(), nNowMs, merged);
    m_patch.Grade(merged, command, levels);
    for (const auto& [at, channel] : m_latest) {
        m_patch.Put(at, channel.LevelAt(m_layers, nNowMs), levels);
    }
    for (int nUniverse = 0; nUniverse < Universes::Count; ++nUniverse) {
        if (!held.IsHeld(nUniverse)) {
            continue;  // as most universes at most times
        }
        const std::size_t begin = Universes::At(nUniverse, 0);
        for (std::size_t at = begin; at < begin + Universes::Channels; ++at) {
            levels[at] = held.states[at] ? held.levels[at] : levels[at];
        }
    }
}
