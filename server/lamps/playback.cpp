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

constexpr float Full = 255;
constexpr std::size_t NoPlace = std::numeric_limits<std::size_t>::max();

const Slots NoLevels;

/// Whether a layer is anywhere brighter than these levels.
bool ShowsMore(const Layer& layer, const Levels& levels, qint64 nNowMs) {
    FineLevels shown{};
    layer.MergeInto(shown, layer.At(nNowMs));
    return !std::equal(shown.begin(), shown.end(), levels.begin(), [](float level, unsigned char ucMost) {
        return level < static_cast<float>(ucMost) + 1;
    });
}

}  // namespace

Playback::Playback(const State& state, Clock clock) : m_state(state), m_patch(state.CurrentShow().fixtures) {
    AddScenes(state.CurrentShow());
    AddPrograms(state.CurrentShow());
    FindLatest();
    TakeSpeed(clock());
    for (const State::Running& running : state.Runs()) {
        if (running.program) {
            SwitchProgram(running.id, true, clock());
        } else {
            SwitchScene(running.id, true, clock());
        }
    }
    connect(&state, &State::sceneSwitched, this,
            [this, clock](int nId, bool bOn) { SwitchScene(nId, bOn, clock()); });
    connect(&state, &State::programSwitched, this,
            [this, clock](int nId, bool bOn) { SwitchProgram(nId, bOn, clock()); });
    connect(&state, &State::commandTaken, this, [this, clock](bool bNext, bool bPrevious) {
        TakeSpeed(clock());
        StepPrograms((bNext ? 1 : 0) - (bPrevious ? 1 : 0), clock());
    });
}

void Playback::AddScenes(const Show& show) {
    std::map<int, std::vector<Layer::Cue>> areas;
    for (const Scene& scene : show.scenes) {
        const auto look = show.looks.find(scene.id);
        std::vector<Layer::Cue>& cues = areas[scene.area];
        m_scenes.insert({scene.id, {0, static_cast<int>(cues.size())}});
        cues.push_back(look == show.looks.end() ? Layer::Cue{&NoLevels}
                                                : Layer::Cue{&look->second.levels, look->second.submaster,
                                                             look->second.fade * Second});
    }
    std::map<int, std::size_t> layers;
    for (const auto& [nArea, cues] : areas) {
        layers[nArea] = m_layers.size();
        AddLayer(cues, false);
    }
    for (const Scene& scene : show.scenes) {
        m_scenes[scene.id].layer = layers[scene.area];
    }
}

void Playback::AddPrograms(const Show& show) {
    for (const Scene& program : show.programs) {
        const auto chase = show.chases.find(program.id);
        std::vector<Layer::Cue> cues;
        if (chase != show.chases.end()) {
            for (const Chase::Step& step : chase->second.steps) {
                cues.push_back(
                    {&step.levels, chase->second.submaster, step.fade * Second, step.hold * Second});
            }
        }
        if (cues.empty()) {
            cues.push_back({&NoLevels});
        }
        m_programs.insert({program.id, m_layers.size()});
        AddLayer(cues, true);
    }
}

void Playback::AddLayer(const std::vector<Layer::Cue>& cues, bool bFollows) {
    m_layers.emplace_back(cues, bFollows, m_patch);
    m_started.push_back(0);
}

void Playback::FindLatest() {
    std::vector<std::size_t> known(std::tuple_size_v<Levels>, m_latest.max_size());
    m_uses.resize(m_layers.size());
    for (std::size_t layer = 0; layer < m_layers.size(); ++layer) {
        for (const std::size_t at : m_layers[layer].Others()) {
            if (known[at] == m_latest.max_size()) {
                known[at] = m_latest.size();
                m_latest.emplace_back().at = at;
            }
            std::vector<User>& users = m_latest[known[at]].users;
            users.push_back({layer, m_uses[layer].size()});
            m_uses[layer].push_back({known[at], static_cast<int>(users.size()) - 1});
        }
    }
}

void Playback::SwitchScene(int nId, bool bOn, qint64 nNowMs) {
    const auto scene = m_scenes.find(nId);
    if (scene == m_scenes.end()) {
        return;
    }
    const Place& place = scene->second;
    if ((m_layers[place.layer].Sent() == place.cue) != bOn) {
        Send(place.layer, bOn ? place.cue : -1, true, nNowMs);
    }
}

void Playback::SwitchProgram(int nId, bool bOn, qint64 nNowMs) {
    const auto program = m_programs.find(nId);
    if (program != m_programs.end() && m_layers[program->second].IsOn() != bOn) {
        Send(program->second, bOn ? 0 : -1, true, nNowMs);
    }
}

void Playback::Send(std::size_t layer, int iCue, bool bStarts, qint64 nNowMs) {
    const Positions before = PositionsAt(nNowMs);
    std::vector<float> shown;
    for (const Use& use : m_uses[layer]) {
        shown.push_back(LevelOf(m_latest[use.latest], before, nNowMs));
    }
    double fade = m_layers[layer].FadeMs(nNowMs);
    if (iCue < 0) {
        m_layers[layer].Stop(nNowMs);
    } else {
        m_layers[layer].GoTo(iCue, nNowMs);
        fade = m_layers[layer].FadeMs(nNowMs);
        m_started[layer] = bStarts ? ++m_nStarts : m_started[layer];
    }
    for (std::size_t iOther = 0; iOther < shown.size(); ++iOther) {
        const auto& [iLatest, iUser] = m_uses[layer][iOther];
        Latest& channel = m_latest[iLatest];
        const bool bHas = Has({layer, iOther});
        if (channel.iOwner == iUser || (bHas && bStarts)) {
            channel.from = shown[iOther];
            channel.iOwner = bHas ? iUser : LastStarted(channel);
            channel.bInherited = !bHas;
            channel.start = nNowMs;
            channel.fade = fade;
        }
    }
}

int Playback::LastStarted(const Latest& channel) const {
    int iLast = -1;
    quint64 nLast = 0;
    for (std::size_t i = 0; i < channel.users.size(); ++i) {
        const User& user = channel.users[i];
        if (Has(user) && m_started[user.layer] > nLast) {
            nLast = m_started[user.layer];
            iLast = static_cast<int>(i);
        }
    }
    return iLast;
}

bool Playback::Has(const User& user) const {
    const Layer& layer = m_layers[user.layer];
    return layer.IsOn() && layer.HasOther(layer.Sent(), user.other);
}

void Playback::TakeSpeed(qint64 nNowMs) {
    const Command& command = m_state.CurrentCommand();
    const double rate = std::exp2((command.speed - WrittenSpeed) / SpeedStep);
    for (const auto& [nId, layer] : m_programs) {
        m_layers[layer].SetRate(rate, nNowMs);
        m_layers[layer].Pause(command.hold, nNowMs);
    }
}

void Playback::StepPrograms(int nSteps, qint64 nNowMs) {
    for (const auto& [nId, layer] : m_programs) {
        if (nSteps != 0 && m_layers[layer].IsOn()) {
            const int nCues = m_layers[layer].CueCount();
            Send(layer, (m_layers[layer].At(nNowMs).cue + nSteps + nCues) % nCues, false, nNowMs);
        }
    }
}

bool Playback::IsMoving(qint64 nNowMs) const {
    return (!m_left.empty() && LeftOver(nNowMs) > 0) ||
           std::any_of(m_layers.begin(), m_layers.end(),
                       [nNowMs](const Layer& layer) { return layer.IsMoving(nNowMs); }) ||
           std::any_of(m_latest.begin(), m_latest.end(), [nNowMs](const Latest& channel) {
               return channel.bInherited && channel.iOwner >= 0 && InheritedProgress(channel, nNowMs) < 1;
           });
}

Playback::Positions Playback::PositionsAt(qint64 nNowMs) const {
    Positions positions(m_layers.size());
    std::transform(m_layers.begin(), m_layers.end(), positions.begin(),
                   [nNowMs](const Layer& layer) { return layer.At(nNowMs); });
    return positions;
}

float Playback::InheritedProgress(const Latest& channel, qint64 nNowMs) {
    const auto elapsed = static_cast<double>(nNowMs - channel.start);
    return elapsed < channel.fade ? static_cast<float>(elapsed / channel.fade) : 1;
}

float Playback::LevelOf(const Latest& channel, const Positions& positions, qint64 nNowMs) const {
    if (channel.iOwner < 0) {
        return channel.from;
    }
    const User& user = channel.users[static_cast<std::size_t>(channel.iOwner)];
    const Layer::Position& position = positions[user.layer];
    const float progress = channel.bInherited  ? InheritedProgress(channel, nNowMs)
                           : position.bEntered ? position.progress
                                               : 1;
    const float level = m_layers[user.layer].Other(position, user.other);
    return progress < 1 ? channel.from + (level - channel.from) * progress : level;
}

Levels Playback::OpenLevels(qint64 nNowMs) const {
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
        if (m_patch.IsLit(at) && now[at] != open[at]) {
            m_left.emplace_back(at, static_cast<float>(open[at]) - static_cast<float>(now[at]));
        }
    }
    m_nTookOver = nNowMs;
}

std::vector<std::size_t> Playback::TakeOverLayers(const Playback& last, const Levels& open, qint64 nNowMs) {
    for (Layer& layer : m_layers) {
        layer.Stand();
    }
    std::vector<std::size_t> places(last.m_layers.size(), NoPlace);
    const auto goOn = [&](std::size_t from, std::size_t to) {
        m_layers[to].GoOnFrom(last.m_layers[from]);
        places[from] = to;
    };
    for (const auto& [nId, from] : last.m_scenes) {
        const auto to = m_scenes.find(nId);
        if (last.m_layers[from.layer].Sent() == from.cue && to != m_scenes.end() &&
            m_layers[to->second.layer].Sent() == to->second.cue) {
            goOn(from.layer, to->second.layer);
        }
    }
    for (const auto& [nId, from] : last.m_programs) {
        const auto to = m_programs.find(nId);
        if (last.m_layers[from].IsOn() && to != m_programs.end() && m_layers[to->second].IsOn()) {
            goOn(from, to->second);
        }
    }
    for (std::size_t from = 0; from < places.size(); ++from) {
        Layer ending = last.m_layers[from];
        if (places[from] != NoPlace) {
            continue;
        }
        if (ending.IsOn()) {
            ending.Stop(nNowMs);
        }
        if (ending.IsMoving(nNowMs) && !ShowsMore(ending, open, nNowMs)) {
            m_layers.push_back(std::move(ending));
        }
    }
    return places;
}

void Playback::TakeOverLatest(const Playback& last, const Levels& open,
                              const std::vector<std::size_t>& places, qint64 nNowMs) {
    std::map<std::size_t, const Latest*> known;
    for (const Latest& channel : last.m_latest) {
        known[channel.at] = &channel;
    }
    Levels now{};
    const Positions positions = PositionsAt(nNowMs);
    const auto goesOn = [&places](const Latest& from, const Latest& to) {
        return from.iOwner >= 0 && to.iOwner >= 0 &&
               places[from.users[static_cast<std::size_t>(from.iOwner)].layer] ==
                   to.users[static_cast<std::size_t>(to.iOwner)].layer;
    };
    const auto openLevel = [&](std::size_t at) {
        return static_cast<float>(open[at]) +
               (m_patch.HasFine(at) ? static_cast<float>(open[at + 1]) / 256 : 0);
    };
    for (Latest& channel : m_latest) {
        const auto was = known.find(channel.at);
        if (was != known.end() && goesOn(*was->second, channel)) {
            channel.from = was->second->from;
            channel.bInherited = was->second->bInherited;
            channel.start = was->second->start;
            channel.fade = was->second->fade;
        }
        m_patch.Put(channel.at, LevelOf(channel, positions, nNowMs), now);
        const std::size_t fine = channel.at + (m_patch.HasFine(channel.at) ? 1 : 0);
        if (now[channel.at] != open[channel.at] || now[fine] != open[fine]) {
            channel.from = openLevel(channel.at);
            channel.bInherited = true;
            channel.start = nNowMs;
            channel.fade = Second;
        }
        known.erase(channel.at);
    }
    for (const auto& [at, pLast] : known) {
        if (m_patch.IsOther(at)) {  // which nobody names any more: it stays
            m_latest.push_back({at, {}, -1, openLevel(at)});
        }
    }
}

float Playback::LeftOver(qint64 nNowMs) const {
    return std::max(0.0F, 1 - static_cast<float>(nNowMs - m_nTookOver) / static_cast<float>(Second));
}

void Playback::Render(qint64 nNowMs, const Command& command, Levels& levels) const {
    const Universes& held = m_state.Held();
    const Positions positions = PositionsAt(nNowMs);
    FineLevels merged{};
    for (std::size_t layer = 0; layer < m_layers.size(); ++layer) {
        m_layers[layer].MergeInto(merged, positions[layer]);
    }
    for (const auto& [at, difference] : m_left) {
        merged[at] = std::clamp(merged[at] + difference * LeftOver(nNowMs), 0.0F, Full);
    }
    m_patch.Grade(merged, m_state.CurrentColor(), command, levels);
    for (const Latest& channel : m_latest) {
        m_patch.Put(channel.at, LevelOf(channel, positions, nNowMs), levels);
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
