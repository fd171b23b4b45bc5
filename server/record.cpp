#include "server/record.h"

#include "server/show/showreader.h"
#include "server/show/showtext.h"

#include <QStringList>

#include <algorithm>
#include <bitset>
#include <limits>
#include <stdexcept>
#include <utility>
#include <vector>

namespace {

using Channels = std::bitset<std::tuple_size_v<Levels>>;

constexpr int FullDimmer = 100;
constexpr int NoSubmaster = 255;
constexpr double Second = 1000;

std::size_t FirstOf(const Fixture& fixture, int iUnit) {
    return Universes::At(fixture.universe, fixture.channel) +
           static_cast<std::size_t>(iUnit) * fixture.layout.size();
}

/// Those of the fixtures and units that a list names; all if it names none. Throws std::runtime_error for a
/// name that is unknown.
Channels ChannelsOf(const Show& show, const std::string& sList) {
    QStringList names = QString::fromStdString(sList).split(',', Qt::SkipEmptyParts);
    std::transform(names.begin(), names.end(), names.begin(), [](const QString& s) { return s.trimmed(); });
    QStringList unknown = names;
    Channels channels;
    for (const Fixture& fixture : show.fixtures) {
        const QString sFixture = QString::fromStdString(fixture.name);
        for (int i = 0; i < fixture.count; ++i) {
            const QString sUnit = fixture.count > 1 ? sFixture + ' ' + QString::number(i + 1) : sFixture;
            const bool bMeant = names.isEmpty() || names.contains(sFixture) || names.contains(sUnit);
            for (std::size_t iLetter = 0; bMeant && iLetter < fixture.layout.size(); ++iLetter) {
                channels.set(FirstOf(fixture, i) + iLetter);
            }
            unknown.removeAll(sUnit);
        }
        unknown.removeAll(sFixture);
    }
    if (!unknown.isEmpty()) {
        throw std::runtime_error("there is no fixture \"" + unknown.first().toStdString() + '"');
    }
    return channels;
}

/// Where the scene of a name stands; behind all if there is none. Throws std::runtime_error for several.
std::size_t PlaceOf(const std::vector<Scene>& scenes, const std::string& sName) {
    const auto named = [&sName](const Scene& scene) { return scene.name == sName; };
    if (std::count_if(scenes.begin(), scenes.end(), named) > 1) {
        throw std::runtime_error("several scenes have the name \"" + sName + '"');
    }
    return static_cast<std::size_t>(std::find_if(scenes.begin(), scenes.end(), named) - scenes.begin());
}

/// Above all others, so that no remote takes the new scene for one that it knew.
int NewId(const std::vector<Scene>& scenes) {
    const auto last = std::max_element(scenes.begin(), scenes.end(),
                                       [](const Scene& a, const Scene& b) { return a.id < b.id; });
    return last == scenes.end() ? 1 : last->id + (last->id < std::numeric_limits<int>::max() ? 1 : 0);
}

/// Calls visit for each slot of what runs.
template <typename Visit>
void ForEachSlot(const Show& show, const Playable& running, Visit visit) {
    const auto look = show.looks.find(running);
    for (std::size_t i = 0; look != show.looks.end() && i < look->second.steps.size(); ++i) {
        const Slots& levels = look->second.steps[i].levels;
        std::for_each(levels.begin(), levels.end(), visit);
    }
}

/// The units among the channels at these levels, but for those that nobody lights, nor moves.
showtext::NamedLevels LevelsOf(const Show& show, const Channels& channels, const Channels& moved,
                               const Levels& levels) {
    const Patch patch(show.fixtures);
    Levels atRest{};
    for (const auto& [at, level] : patch.Defaults()) {
        patch.Put(at, level, atRest);
    }
    showtext::NamedLevels named;
    for (const Fixture& fixture : show.fixtures) {
        std::vector<std::vector<int>> units;
        for (int i = 0; i < fixture.count; ++i) {
            std::vector<int>& unit = units.emplace_back();
            bool bTaken = false;
            for (std::size_t iLetter = 0; iLetter < fixture.layout.size(); ++iLetter) {
                const std::size_t at = FirstOf(fixture, i) + iLetter;
                unit.push_back(levels.at(at));
                bTaken = bTaken ||
                         (channels[at] && (unit.back() != atRest.at(at) || (moved[at] && patch.IsOther(at))));
            }
            unit.resize(bTaken ? unit.size() : 0);
        }
        showtext::AddNamed(named, fixture, units);
    }
    return named;
}

/// What is to run when a scene is recorded of these channels: it, and all that runs, but for what lights them
/// alone or makes room in its area. `names` gets those that go on and light some of them. Throws
/// std::runtime_error if one would have to make room that lights more.
std::vector<Playable> RunsWith(const Scene& scene, const Show& show, const State& state,
                               const Channels& channels, QStringList& names) {
    std::vector<Playable> runs;
    for (const Playable& running : state.Runs()) {
        const Scene* const pEntry = state.Find(running);
        const QString sName = '"' + QString::fromStdString(pEntry->name) + '"';
        bool bLights = false;
        bool bInside = false;
        bool bOutside = false;
        ForEachSlot(show, running, [&](const Slot& slot) {
            bLights = bLights || (channels[slot.at] && slot.level > 0);
            bInside = bInside || channels[slot.at];
            bOutside = bOutside || !channels[slot.at];
        });
        const bool bItself = running == Playable{false, scene.id};
        const bool bMakesRoom = !running.program && pEntry->area == scene.area;
        if (!bItself && bMakesRoom && bOutside) {
            throw std::runtime_error(sName.toStdString() +
                                     " runs in that area and lights more: --area gives another");
        }
        if (!bItself && !bMakesRoom && (bOutside || !bInside)) {
            runs.push_back(running);
            names += bLights ? QStringList(sName) : QStringList();
        }
    }
    runs.push_back({false, scene.id});
    return runs;
}

/// Releases the channels; where the operator's commands or colour go on, not those that these act on. Returns
/// how many stay.
int Release(Universes& held, const Channels& channels, const Patch& patch, bool bHandStays) {
    int nStay = 0;
    for (std::size_t at = 0; at < channels.size(); ++at) {
        const bool bStays = bHandStays && patch.IsGraded(at);
        if (channels[at] && held.states[at]) {
            held.states[at] = bStays;
            held.levels[at] = bStays ? held.levels[at] : 0;
            nStay += bStays ? 1 : 0;
        }
    }
    return nStay;
}

/// Whether a colour would leave others than these channels when it goes.
bool ColorsOthers(const Color& color, const Channels& channels, const Patch& patch) {
    for (std::size_t at = 0; at < channels.size(); ++at) {
        if (color.state && !channels[at] && patch.TakesColor(at, color)) {
            return true;
        }
    }
    return false;
}

}  // namespace

QString Record(State& state, const Levels& open, ShowFile& file, const Recording& wanted) {
    const QByteArray text = Show::ReadFile(file.Path());
    const Show show = ReadShow(file.Path(), text);
    const Patch patch(show.fixtures);
    const std::size_t iScene = PlaceOf(show.scenes, wanted.name);
    const bool bNew = iScene == show.scenes.size();
    const Scene scene = bNew ? Scene{wanted.name, NewId(show.scenes), wanted.area} : show.scenes[iScene];
    const Channels channels = ChannelsOf(show, wanted.only);
    // What the scene has beside them stays.
    Levels levels = open;
    Channels taken = channels;
    Channels moved;
    ForEachSlot(show, {false, scene.id}, [&](const Slot& slot) {
        if (!bNew && !channels[slot.at]) {
            levels.at(slot.at) = slot.level;
            taken.set(slot.at);
            moved.set(slot.at);
        }
    });
    for (const Playable& running : state.Runs()) {
        ForEachSlot(show, running, [&](const Slot& slot) { moved.set(slot.at); });
    }
    const showtext::NamedLevels named = LevelsOf(show, taken, moved, levels);
    if (named.empty()) {
        throw std::runtime_error("nothing is lit");
    }
    const QByteArray newText = bNew ? showtext::WithScene(text, scene, wanted.fadeMs / Second, named)
                                    : showtext::WithLevels(text, iScene, named);
    Show newShow = ReadShow(file.Path(), newText);
    if (newShow.looks.at({false, scene.id}).submaster != NoSubmaster) {
        throw std::runtime_error("the \"level\" of that scene would dim it: take it out of the file first");
    }
    QStringList lighting;
    const std::vector<Playable> runs = RunsWith(scene, newShow, state, channels, lighting);
    Color color = state.CurrentColor();
    const bool bColorStays = ColorsOthers(color, channels, patch);
    color.state = bColorStays;
    Universes held = state.Held();
    const Command& command = state.CurrentCommand();
    const int nHeld = Release(held, channels, patch,
                              command.bo || command.white || command.dim < FullDimmer || bColorStays);
    file.Save(newText);
    state.Replace(std::move(newShow), runs, color, held);
    QStringList line{QString("scene %1 in %2").arg(scene.id).arg(file.Path())};
    line += lighting.isEmpty() ? QStringList() : QStringList("it is lit by " + lighting.join(", ") + ", too");
    line += bColorStays ? QStringList("the colour stays, for others have it, too") : QStringList();
    line +=
        nHeld == 0
            ? QStringList()
            : QStringList(
                  QString("%1 channels stay held, or what else the hand does would move them").arg(nHeld));
    return line.join("; ");
}
