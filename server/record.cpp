#include "server/record.h"

#include "server/show/showtext.h"

#include <QRegularExpression>
#include <QStringList>

#include <algorithm>
#include <limits>
#include <stdexcept>
#include <utility>
#include <vector>

namespace {

constexpr int FullDimmer = 100;
constexpr int NoSubmaster = 255;

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

/// Adds the levels of a fixture's units, which are empty for one without: one name for those that are alike.
void AddLevels(QStringList& levels, const Fixture& fixture, const QStringList& units) {
    const QString sMost = *std::max_element(
        units.begin(), units.end(),
        [&units](const QString& a, const QString& b) { return units.count(a) < units.count(b); });
    const bool bOneName = !units.contains(QString()) && units.count(sMost) > 1;
    if (bOneName) {
        levels += LevelsText(fixture.name, sMost);
    }
    for (int i = 0; i < fixture.count; ++i) {
        if (!units[i].isEmpty() && !(bOneName && units[i] == sMost)) {
            levels += LevelsText(fixture.UnitName(i), units[i]);
        }
    }
}

/// The levels that a scene is to have: of the fixtures and units that a list names, or of all if it names
/// none, what is open, but for units that nobody lights, nor moves; of others what the scene has. `channels`
/// gets those of the former. Throws std::runtime_error for a name that is unknown.
QStringList LevelsOf(const Playable& scene, const Show& show, const Patch& patch,
                     const std::vector<Playable>& runs, const Levels& open, const std::string& sNames,
                     ChannelSet& channels) {
    Levels atRest{};
    for (const auto& [at, level] : patch.Defaults()) {
        patch.Put(at, level, atRest);
    }
    ChannelSet moved;
    for (const Playable& running : runs) {
        ForEachSlot(show, running, [&](const Slot& slot) { moved.set(slot.at); });
    }
    Levels own = atRest;
    ChannelSet owned;
    ForEachSlot(show, scene, [&](const Slot& slot) {
        own.at(slot.at) = slot.level;
        owned.set(slot.at);
    });
    const QStringList names =
        QString::fromStdString(sNames).trimmed().split(QRegularExpression("\\s*,\\s*"), Qt::SkipEmptyParts);
    QStringList unknown = names;
    QStringList levels;
    for (const Fixture& fixture : show.fixtures) {
        const QString sFixture = QString::fromStdString(fixture.name);
        unknown.removeAll(sFixture);
        QStringList units;
        for (int i = 0; i < fixture.count; ++i) {
            const QString sUnit = QString::fromStdString(fixture.UnitName(i));
            unknown.removeAll(sUnit);
            const bool bMeant = names.isEmpty() || names.contains(sFixture) || names.contains(sUnit);
            bool bTaken = false;
            QStringList unit;
            for (std::size_t at = fixture.At(i); at < fixture.At(i + 1); ++at) {
                channels[at] = bMeant;
                const int nLevel = (bMeant ? open : own).at(at);
                unit += QString::number(nLevel);
                bTaken =
                    bTaken || nLevel != atRest.at(at) || ((bMeant ? moved : owned)[at] && patch.IsOther(at));
            }
            units += bTaken ? unit.join(", ") : QString();
        }
        AddLevels(levels, fixture, units);
    }
    if (!unknown.isEmpty()) {
        throw std::runtime_error("there is no fixture \"" + unknown.first().toStdString() + '"');
    }
    return levels;
}

/// What is to run when a scene is recorded of these channels: it, and all that runs, but for what lights them
/// alone. `names` gets those that go on and light some of them. Throws std::runtime_error if one would have
/// to make room in the scene's area that lights more.
std::vector<Playable> RunsWith(const Scene& scene, const Show& show, const State& state,
                               const ChannelSet& channels, QStringList& names) {
    std::vector<Playable> runs;
    for (const Playable& running : state.Runs()) {
        if (running == Playable{false, scene.id}) {
            continue;
        }
        const Scene* const pEntry = state.Find(running);
        const QString sName = '"' + QString::fromStdString(pEntry->name) + '"';
        bool bLights = false;
        ChannelSet reached;
        ForEachSlot(show, running, [&](const Slot& slot) {
            bLights = bLights || (channels[slot.at] && slot.level > 0);
            reached.set(slot.at);
        });
        const bool bOutside = (reached & ~channels).any();
        if (bOutside && !running.program && pEntry->area == scene.area) {
            throw std::runtime_error(sName.toStdString() +
                                     " runs in that area and lights more: stop it, or give another --area");
        }
        if (bOutside || reached.none()) {
            runs.push_back(running);
            names += bLights ? QStringList(sName) : QStringList();
        }
    }
    runs.push_back({false, scene.id});
    return runs;
}

/// Releases the channels; where the operator's commands or colour go on, not those that these act on. Returns
/// how many stay.
int Release(Universes& held, const ChannelSet& channels, const Patch& patch, bool bHandStays) {
    int nStay = 0;
    for (std::size_t at = 0; at < channels.size(); ++at) {
        if (channels[at] && held.states[at]) {
            held.states[at] = bHandStays && patch.IsGraded(at);
            held.levels[at] = held.states[at] ? held.levels[at] : 0;
            nStay += held.states[at] ? 1 : 0;
        }
    }
    return nStay;
}

}  // namespace

QString Record(State& state, const Levels& open, ShowFile& file, const Recording& wanted) {
    const QByteArray text = file.Text();
    const Show show = ReadShow(file.Path(), text);
    const Patch patch(show.fixtures);
    const std::size_t iScene = PlaceOf(show.scenes, wanted.name);
    const Scene scene = iScene < show.scenes.size() ? show.scenes[iScene]
                                                    : Scene{wanted.name, NewId(show.scenes), wanted.area};
    const Playable recorded{false, scene.id};
    ChannelSet channels;
    const QStringList levels = LevelsOf(recorded, show, patch, state.Runs(), open, wanted.only, channels);
    if (levels.isEmpty()) {
        throw std::runtime_error("nothing is lit");
    }
    const QByteArray newText = WithScene(text, iScene, scene, wanted.fadeMs / 1000.0, levels);
    Show newShow = ReadShow(file.Path(), newText);
    if (newShow.looks.at(recorded).submaster != NoSubmaster) {
        throw std::runtime_error("the \"level\" of that scene would dim it: take it out of the file first");
    }
    const std::vector<Playable>& before = state.Runs();
    bool bMoves = false;
    ForEachSlot(newShow, recorded, [&](const Slot& slot) {
        const int nMore = slot.level - open.at(slot.at);
        bMoves = bMoves || (!channels[slot.at] && (nMore > 0 || (nMore < 0 && patch.IsOther(slot.at))));
    });
    if (bMoves && std::find(before.begin(), before.end(), recorded) == before.end()) {
        throw std::runtime_error('"' + scene.name +
                                 "\" has other fixtures, which would move: start it first");
    }
    QStringList lighting;
    const std::vector<Playable> runs = RunsWith(scene, newShow, state, channels, lighting);
    Color color = state.CurrentColor();
    FineLevels painted{};
    color.state = color.state && (patch.Paint(color, painted) & ~channels).any();
    Universes held = state.Held();
    const Command& command = state.CurrentCommand();
    const int nHeld = Release(held, channels, patch,
                              command.bo || command.white || command.dim < FullDimmer || color.state);
    file.Save(newText);
    state.Replace(std::move(newShow), runs, color, held);
    QString sLine = QString("scene %1 in %2").arg(scene.id).arg(file.Path());
    if (!lighting.isEmpty()) {
        sLine += "; it is lit by " + lighting.join(", ") + ", too";
    }
    if (color.state) {
        sLine += "; the colour stays, for others have it, too";
    }
    if (nHeld > 0) {
        sLine +=
            QString("; %1 channels stay held, for dimmer, White, Black or colour act on them").arg(nHeld);
    }
    return sLine;
}
