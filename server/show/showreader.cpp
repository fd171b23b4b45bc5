#include "device/universes.h"
#include "server/show/jsontext.h"
#include "server/show/show.h"

#include <algorithm>
#include <map>
#include <set>
#include <utility>

namespace {

/// All levels of a show, so that an absurd one is refused and does not eat the memory: what 610 looks of 32
/// whole universes have.
constexpr std::size_t MostLevels = 10'000'000;
/// Makes a show of its text.
class ShowReader {
public:
    Show Read(const JsonItem& item) {
        const JsonObject root(item, {"serial", "fixtures", "scenes", "programs"});
        m_show.serial = root.Has("serial") ? root["serial"].Text(0) : std::string();
        root.ForEachElementOf("fixtures", "a fixture", [this](const JsonItem& read) { ReadFixture(read); });
        root.ForEachElementOf("scenes", "a scene", [this](const JsonItem& read) { ReadEntry(read, false); });
        root.ForEachElementOf("programs", "a program",
                              [this](const JsonItem& read) { ReadEntry(read, true); });
        return std::move(m_show);
    }

private:
    /// Channels side by side, as a name stands for them: all of a fixture, or those of one unit.
    struct Target {
        std::size_t first;
        std::size_t unit;  ///< how many one unit has
        std::size_t all;
    };

    void ReadFixture(const JsonItem& item) {
        const JsonObject read(item,
                              {"name", "universe", "channel", "layout", "count", "independent", "default"});
        Fixture fixture;
        fixture.name = read["name"].Text();
        fixture.universe = read["universe"].Int(1, Universes::Count) - 1;
        fixture.channel = read["channel"].Int(1, Universes::Channels) - 1;
        fixture.layout = LayoutOf(read["layout"]);
        fixture.count = read.Has("count") ? read["count"].Int(1, Universes::Channels) : 1;
        fixture.independent = read.Has("independent") && read["independent"].Bool();
        if (read.Has("default")) {
            fixture.defaults = DefaultsOf(read["default"], fixture);
        }
        Patch(item, fixture);
        m_show.fixtures.push_back(fixture);
    }

    static std::string LayoutOf(const JsonItem& item) {
        const std::string sLayout =
            QByteArray::fromStdString(item.Text(1, Universes::Channels)).toLower().toStdString();
        if (sLayout.find_first_not_of("irgbwaxf") != std::string::npos) {
            item.Fail("\"layout\" must be of the letters i r g b w a x f");
        }
        if (sLayout.front() == 'f' || sLayout.find("ff") != std::string::npos) {
            item.Fail("an f of \"layout\" must follow the letter whose fine half it is");
        }
        return sLayout;
    }

    /// Those of all channels; a list may give them for one unit, and means each.
    static std::vector<int> LevelsOf(const JsonItem& list, std::size_t nUnit, std::size_t nAll) {
        std::vector<int> levels;
        list.ForEachElement("a level", [&](const auto& level) { levels.push_back(level.Int(0, 255)); });
        if (levels.size() != nUnit && levels.size() != nAll) {
            list.Fail(JsonItem::Quoted(list.Name()) + " takes " + std::to_string(nUnit) +
                      (nAll == nUnit ? "" : " or " + std::to_string(nAll)) +
                      (nAll > 1 ? " levels, not " : " level, not ") + std::to_string(levels.size()));
        }
        while (levels.size() < nAll) {
            levels.push_back(levels[levels.size() - nUnit]);
        }
        return levels;
    }

    static std::vector<int> DefaultsOf(const JsonItem& list, const Fixture& fixture) {
        const std::string& sLayout = fixture.layout;
        const std::vector<int> levels =
            LevelsOf(list, sLayout.size(), static_cast<std::size_t>(fixture.Width()));
        for (std::size_t i = 0; i < levels.size(); ++i) {
            if (levels[i] != 0 && sLayout[sLayout.find_last_not_of('f', i % sLayout.size())] != 'x') {
                list.Fail("the default of light is 0: only x and its f have another");
            }
        }
        return levels;
    }

    /// Keeps where a fixture is, by its names.
    void Patch(const JsonItem& item, const Fixture& fixture) {
        const std::string sName = JsonItem::Quoted(fixture.name);
        const int nEnd = fixture.channel + fixture.Width();
        if (nEnd > Universes::Channels) {
            item.Fail(sName + " reaches channel " + std::to_string(nEnd) + ", past 512");
        }
        for (const Fixture& other : m_show.fixtures) {
            const std::size_t first = std::max(fixture.At(0), other.At(0));
            if (first < std::min(fixture.At(fixture.count), other.At(other.count))) {
                item.Fail(sName + " overlaps " + JsonItem::Quoted(other.name) + " at universe " +
                          std::to_string(fixture.universe + 1) + " channel " +
                          std::to_string(first % Universes::Channels + 1));
            }
        }
        const auto add = [&](const std::string& sTarget, const Target& target) {
            if (!m_targets.insert({sTarget, target}).second) {
                item.Fail("the name " + JsonItem::Quoted(sTarget) + " stands for a fixture already");
            }
        };
        const std::size_t nUnit = fixture.layout.size();
        add(fixture.name, {fixture.At(0), nUnit, static_cast<std::size_t>(fixture.Width())});
        for (int i = 0; fixture.count > 1 && i < fixture.count; ++i) {
            add(fixture.UnitName(i), {fixture.At(i), nUnit, nUnit});
        }
    }

    /// Reads a scene or program. Where it has lamps, its level is their submaster; else any number is one,
    /// for it only goes to remotes.
    void ReadEntry(const JsonItem& item, bool bProgram) {
        static const std::vector<std::string_view> ProgramKeys{"id", "name", "level", "state", "steps"};
        static const std::vector<std::string_view> SceneKeys{"id",    "name",   "area", "level",
                                                             "state", "levels", "fade"};
        const JsonObject read(item, bProgram ? ProgramKeys : SceneKeys);
        Look look;
        if (read.Has("levels") || read.Has("fade")) {
            look.steps.push_back(StepOf(read, read.Has("levels")));
        }
        read.ForEachElementOf("steps", "a step", [&](const JsonItem& element) {
            look.steps.push_back(StepOf(JsonObject(element, {"levels", "fade", "hold"}), true));
        });
        const bool bLamps = !look.steps.empty();
        Scene entry;
        entry.area = read.Has("area") ? read["area"].Int(0) : entry.area;
        entry.id = read["id"].Int();
        if (!m_ids.insert({bProgram, entry.id}).second) {
            read["id"].Fail("the id " + std::to_string(entry.id) + " stands for " + item.Name() + " already");
        }
        entry.name = read["name"].Text();
        if (read.Has("level")) {
            entry.level = look.submaster = bLamps ? read["level"].Int(0, 255) : read["level"].Int();
        }
        entry.state = read.Has("state") && read["state"].Bool();
        if (entry.state && entry.area >= 0 && !m_runningAreas.insert(entry.area).second) {
            item.Fail("another scene of area " + std::to_string(entry.area) + " runs at the start already");
        }
        if (bLamps) {
            m_show.looks[{bProgram, entry.id}] = std::move(look);
        }
        (bProgram ? m_show.programs : m_show.scenes).push_back(entry);
    }

    /// Levels by channel; of several levels of one the last stays.
    Look::Step StepOf(const JsonObject& read, bool bLevels) {
        Look::Step step;
        Slots& levels = step.levels;
        if (bLevels) {
            read["levels"].ForEachMember([&](const JsonItem& list) { ReadLevels(list, levels); });
        }
        std::reverse(levels.begin(), levels.end());
        std::stable_sort(levels.begin(), levels.end(),
                         [](const Slot& a, const Slot& b) { return a.at < b.at; });
        const auto end = std::unique(levels.begin(), levels.end(),
                                     [](const Slot& a, const Slot& b) { return a.at == b.at; });
        levels.erase(end, levels.end());
        levels.shrink_to_fit();
        step.fade = read.Has("fade") ? read["fade"].Seconds() : 0;
        step.hold = read.Has("hold") ? read["hold"].Seconds() : 0;
        return step;
    }

    /// The levels of one name.
    void ReadLevels(const JsonItem& list, Slots& levels) {
        const auto target = m_targets.find(list.Name());
        if (target == m_targets.end()) {
            list.Fail("there is no fixture " + JsonItem::Quoted(list.Name()));
        }
        std::size_t at = target->second.first;
        for (const int nLevel : LevelsOf(list, target->second.unit, target->second.all)) {
            levels.push_back({static_cast<quint16>(at++), static_cast<quint8>(nLevel)});
        }
        m_nLevels += target->second.all;
        if (m_nLevels > MostLevels) {
            list.Fail("here the show comes to have more than " + std::to_string(MostLevels) + " levels");
        }
    }

    Show m_show;
    std::map<std::string, Target> m_targets;
    std::set<Playable> m_ids;
    std::set<int> m_runningAreas;
    std::size_t m_nLevels = 0;
};

}  // namespace

Show ReadShow(const QString& sPath, const QByteArray& text) {
    const JsonText json(sPath, text);
    return ShowReader().Read(JsonItem(json, "a show"));
}
