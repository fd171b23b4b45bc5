#include "server/state.h"

#include "device/readers.h"

#include <algorithm>
#include <utility>

namespace {

constexpr int FullDimmer = 100;
/// At which programs run as they are written.
constexpr int WrittenSpeed = 50;
constexpr int FullSpeed = 100;

int Level(int nLevel) {
    return std::clamp(nLevel, 0, 255);
}

Color Clamped(const Color& color) {
    return {Level(color.r), Level(color.g), Level(color.b), Level(color.w), color.rgbw, color.state};
}

/// Of a const show a const one.
template <typename AnyShow>
auto FindIn(AnyShow& show, const Playable& running) {
    auto& entries = running.program ? show.programs : show.scenes;
    const auto entry =
        std::find_if(entries.begin(), entries.end(), [&](const Scene& s) { return s.id == running.id; });
    return entry != entries.end() ? &*entry : nullptr;
}

bool HasWhite(const Show& show) {
    return std::any_of(show.fixtures.begin(), show.fixtures.end(),
                       [](const Fixture& fixture) { return fixture.layout.find('w') != std::string::npos; });
}

}  // namespace

State::State(Show show) : m_show(std::move(show)) {
    m_color.rgbw = HasWhite(m_show);
    m_command.dim = FullDimmer;
    m_command.speed = WrittenSpeed;
    for (const auto& [pEntries, bProgram] : {std::pair{&m_show.scenes, false}, {&m_show.programs, true}}) {
        for (const Scene& entry : *pEntries) {
            if (entry.state) {
                m_runs.push_back({bProgram, entry.id});
            }
        }
    }
}

const Scene* State::Find(const Playable& running) const {
    return FindIn(m_show, running);
}

void State::Replace(Show show, std::vector<Playable> runs, const Color& color, const Universes& held) {
    emit showLeaves();
    show.serial = m_show.serial;
    m_show = std::move(show);
    for (std::vector<Scene>* pEntries : {&m_show.scenes, &m_show.programs}) {
        for (Scene& entry : *pEntries) {
            entry.state = false;
        }
    }
    m_runs.clear();
    for (const Playable& running : runs) {
        Run(running, true);
    }
    m_color = color;
    m_color.rgbw = HasWhite(m_show);
    m_held = held;
    emit showReplaced();
    emit changed();
}

bool State::Switch(const Playable& running, bool bOn) {
    if (!Run(running, bOn)) {
        return false;
    }
    const bool bReleasesColor = bOn && m_color.state;
    m_color.state = m_color.state && !bOn;
    emit switched(running, bOn, bReleasesColor);
    emit changed();
    return true;
}

bool State::Run(const Playable& running, bool bOn) {
    Scene* const pEntry = FindIn(m_show, running);
    if (pEntry == nullptr) {
        return false;
    }
    for (const Scene& other : m_show.scenes) {
        if (bOn && !running.program && other.state && other.area == pEntry->area) {
            Run({false, other.id}, false);
        }
    }
    m_runs.erase(std::remove(m_runs.begin(), m_runs.end(), running), m_runs.end());
    if (bOn) {
        m_runs.push_back(running);
    }
    pEntry->state = bOn;
    return true;
}

void State::StopAll() {
    m_bTakenUp = true;
    while (!m_runs.empty()) {
        Switch(Playable(m_runs.back()), false);
    }
}

void State::Take(const Color& color) {
    const bool bWhite = m_show.fixtures.empty() ? color.rgbw : m_color.rgbw;
    m_color = Clamped(color);
    m_color.rgbw = bWhite;
    emit colorTaken();
    emit changed();
}

void State::Take(const Command& command) {
    m_command = command;
    m_command.dim = std::clamp(command.dim, 0, FullDimmer);
    m_command.speed = std::clamp(command.speed, 0, FullSpeed);
    m_command.next = false;
    m_command.prev = false;
    emit commandTaken(command.next, command.prev);
    emit changed();
}

void State::Hold(const DmxChan& channel) {
    if (channel.chan == -1) {
        m_held.SetAll(channel.univ, static_cast<unsigned char>(Level(channel.level)), channel.state);
    } else {
        m_held.Set(channel.univ, channel.chan, Level(channel.level), channel.state);
    }
    emit changed();
}

int State::HoldUniverse(const JSONNode& content) {
    const int nUniverse = readInto(content, m_held, Level);
    emit changed();
    return nUniverse;
}

void State::HoldRun(int nUniverse, int nStart, int nCount, const Color& color) {
    m_held.SetRun(nUniverse, nStart, nCount, Clamped(color));
    emit changed();
}
