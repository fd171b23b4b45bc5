#include "server/show/showreader.h"

#include "device/universes.h"
#include "server/show/jsontext.h"

#include <algorithm>
#include <map>
#include <set>
#include <utility>

namespace {

/// All levels of a show, so that an absurd one is refused and does not eat the memory: what 610 looks of 32
/// whole universes have.
constexpr std::size_t MostLevels = 10'000'000;
constexpr bool Needed = true;
constexpr bool Optional = false;

/// Makes a show of its text.
class ShowReader {
public:
    Show Read(const JsonItem& root) {
        const auto list = [this](const char* pName, void (ShowReader::*read)(const JsonItem&)) {
            return [this, pName, read](const JsonItem& item) {
                item.ForEachElement(pName, [this, read](const JsonItem& element) { (this->*read)(element); });
            };
        };
        root.ReadMembers({{"serial", Optional, [this](const auto& item) { m_show.serial = item.Text(0); }},
                          {"fixtures", Optional, list("a fixture", &ShowReader::ReadFixture)},
                          {"scenes", Optional, list("a scene", &ShowReader::ReadScene)},
                          {"programs", Optional, list("a program", &ShowReader::ReadProgram)}});
        return std::move(m_show);
    }

private:
    using Keys = std::vector<JsonItem::Key>;
    /// What levels may be given to by its name: all units of a fixture, or one.
    struct Target {
        std::size_t fixture;
        int unit;  ///< from 0 on; -1 is all of them
    };

    void ReadFixture(const JsonItem& item) {
        Fixture fixture;
        item.ReadMembers(
            {{"name", Needed, [&](const auto& m) { fixture.name = m.Text(); }},
             {"universe", Needed, [&](const auto& m) { fixture.universe = m.Int(1, Universes::Count) - 1; }},
             {"channel", Needed, [&](const auto& m) { fixture.channel = m.Int(1, Universes::Channels) - 1; }},
             {"layout", Needed, [&](const auto& m) { fixture.layout = LayoutOf(m); }},
             {"count", Optional, [&](const auto& m) { fixture.count = m.Int(1, Universes::Channels); }},
             {"independent", Optional, [&](const auto& m) { fixture.independent = m.Bool(); }},
             {"default", Optional, [&](const auto& m) { fixture.defaults = DefaultsOf(m, fixture); }}});
        Patch(item, fixture);
        AddNames(item, fixture);
        m_show.fixtures.push_back(fixture);
    }

    static std::string LayoutOf(const JsonItem& item) {
        std::string sLayout = item.Text(1, Universes::Channels);
        std::transform(sLayout.begin(), sLayout.end(), sLayout.begin(),
                       [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
        if (sLayout.find_first_not_of("irgbwaxf") != std::string::npos) {
            item.Fail("\"layout\" must be of the letters i r g b w a x f");
        }
        if (sLayout.front() == 'f' || sLayout.find("ff") != std::string::npos) {
            item.Fail("an f of \"layout\" must follow the letter whose fine half it is");
        }
        return sLayout;
    }

    /// The levels of one unit or of all channels that there are; as many as all.
    static std::vector<int> LevelsOf(const JsonItem& item, const Fixture& fixture, bool bOneUnit) {
        std::vector<int> levels;
        item.ForEachElement("a level", [&](const auto& level) { levels.push_back(level.Int(0, 255)); });
        const std::size_t nWidth = fixture.layout.size();
        const std::size_t nAll = bOneUnit ? nWidth : static_cast<std::size_t>(fixture.Width());
        const std::size_t nGiven = levels.size();
        if (nGiven != nWidth && nGiven != nAll) {
            item.Fail(JsonItem::Quoted(item.Name()) + " takes " + std::to_string(nWidth) +
                      (nAll == nWidth ? "" : " or " + std::to_string(nAll)) +
                      (nAll > 1 ? " levels, not " : " level, not ") + std::to_string(nGiven));
        }
        while (levels.size() < nAll) {
            levels.push_back(levels[levels.size() - nWidth]);
        }
        return levels;
    }

    static std::vector<int> DefaultsOf(const JsonItem& item, const Fixture& fixture) {
        std::vector<int> levels = LevelsOf(item, fixture, false);
        for (std::size_t i = 0; i < levels.size(); ++i) {
            const std::size_t nLetter = i % fixture.layout.size();
            const char cKind = fixture.layout[nLetter - (fixture.layout[nLetter] == 'f' ? 1 : 0)];
            if (levels[i] != 0 && cKind != 'x') {
                item.Fail("the default of light is 0: only x and its f have another");
            }
        }
        return levels;
    }

    void Patch(const JsonItem& item, const Fixture& fixture) {
        const std::string sName = JsonItem::Quoted(fixture.name);
        const int nEnd = fixture.channel + fixture.Width();
        if (nEnd > Universes::Channels) {
            item.Fail(sName + " reaches channel " + std::to_string(nEnd) + ", past 512");
        }
        for (int nChannel = fixture.channel; nChannel < nEnd; ++nChannel) {
            const auto [taken, bFree] =
                m_patched.insert({Universes::At(fixture.universe, nChannel), m_show.fixtures.size()});
            if (!bFree) {
                item.Fail(sName + " overlaps " + JsonItem::Quoted(m_show.fixtures[taken->second].name) +
                          " at universe " + std::to_string(fixture.universe + 1) + " channel " +
                          std::to_string(nChannel + 1));
            }
        }
    }

    void AddNames(const JsonItem& item, const Fixture& fixture) {
        const auto add = [&](const std::string& sName, int nUnit) {
            if (!m_targets.insert({sName, {m_show.fixtures.size(), nUnit}}).second) {
                item.Fail("the name " + JsonItem::Quoted(sName) + " stands for a fixture already");
            }
        };
        add(fixture.name, -1);
        for (int i = 0; fixture.count > 1 && i < fixture.count; ++i) {
            add(fixture.name + ' ' + std::to_string(i + 1), i);
        }
    }

    void ReadScene(const JsonItem& item) {
        Scene scene;
        Look look{{{}}};
        bool bLook = false;
        Keys keys = StepKeys(look.steps.front(), bLook, Optional);
        keys.push_back({"area", Optional, [&](const auto& m) { scene.area = m.Int(0); }});
        ReadEntry(item, keys, {false}, scene, look, bLook);
        if (scene.state && scene.area >= 0 && !m_runningAreas.insert(scene.area).second) {
            item.Fail("another scene of area " + std::to_string(scene.area) + " runs at the start already");
        }
        m_show.scenes.push_back(scene);
    }

    void ReadProgram(const JsonItem& item) {
        Scene program;
        Look look;
        bool bSteps = false;
        const auto readStep = [&](const JsonItem& step) {
            Look::Step& read = look.steps.emplace_back();
            Keys keys = StepKeys(read, bSteps, Needed);
            keys.push_back({"hold", Optional, [&](const auto& m) { read.hold = m.Seconds(); }});
            step.ReadMembers(keys);
        };
        ReadEntry(item, {{"steps", Optional, [&](const auto& m) { m.ForEachElement("a step", readStep); }}},
                  {true}, program, look, bSteps);
        m_show.programs.push_back(program);
    }

    /// Reads a scene or program, its own keys first. Where it has lamps, its level is their submaster; else
    /// any number is one, for it only goes to remotes.
    void ReadEntry(const JsonItem& item, Keys keys, Playable which, Scene& entry, Look& look,
                   const bool& bLamps) {
        const auto readId = [&](const JsonItem& m) {
            entry.id = which.id = m.Int();
            if (!m_ids.insert(which).second) {
                m.Fail("the id " + std::to_string(entry.id) + " stands for " + item.Name() + " already");
            }
        };
        const auto readLevel = [&](const JsonItem& m) {
            entry.level = bLamps ? m.Int(0, 255) : m.Int();
            look.submaster = entry.level;
        };
        keys.push_back({"id", Needed, readId});
        keys.push_back({"name", Needed, [&](const auto& m) { entry.name = m.Text(); }});
        keys.push_back({"level", Optional, readLevel});
        keys.push_back({"state", Optional, [&](const auto& m) { entry.state = m.Bool(); }});
        item.ReadMembers(keys);
        if (bLamps) {
            m_show.looks[which] = std::move(look);
        }
    }

    /// What a scene and a step have in common; `bLook` comes to say that there is some of it.
    Keys StepKeys(Look::Step& step, bool& bLook, bool bNeeded) {
        const auto readLevels = [this, &step, &bLook](const JsonItem& m) {
            bLook = true;
            m.ForEachMember([&](const auto& list) { ReadLevels(list, step.levels); });
            Sort(step.levels);
        };
        const auto readFade = [&step, &bLook](const JsonItem& m) {
            bLook = true;
            step.fade = m.Seconds();
        };
        return {{"levels", bNeeded, readLevels}, {"fade", Optional, readFade}};
    }

    /// By channel; of several levels of one the last stays.
    static void Sort(Slots& levels) {
        std::stable_sort(levels.begin(), levels.end(),
                         [](const Slot& a, const Slot& b) { return a.at < b.at; });
        const auto last = std::unique(levels.rbegin(), levels.rend(),
                                      [](const Slot& a, const Slot& b) { return a.at == b.at; });
        levels.erase(levels.begin(), last.base());
        levels.shrink_to_fit();
    }

    /// The levels of one name: of one unit, or of all the fixture's channels.
    void ReadLevels(const JsonItem& list, Slots& levels) {
        const auto target = m_targets.find(list.Name());
        if (target == m_targets.end()) {
            list.Fail("there is no fixture " + JsonItem::Quoted(list.Name()));
        }
        const auto [nFixture, nUnit] = target->second;
        const Fixture& fixture = m_show.fixtures[nFixture];
        std::size_t at = Universes::At(fixture.universe, fixture.channel) +
                         fixture.layout.size() * static_cast<std::size_t>(std::max(nUnit, 0));
        for (const int nLevel : LevelsOf(list, fixture, nUnit >= 0)) {
            levels.push_back({static_cast<quint16>(at++), static_cast<quint8>(nLevel)});
            if (++m_nLevels > MostLevels) {
                list.Fail("here the show comes to have more than " + std::to_string(MostLevels) + " levels");
            }
        }
    }

    Show m_show;
    std::map<std::string, Target> m_targets;
    std::map<std::size_t, std::size_t> m_patched;  ///< the fixture that has a channel
    std::set<Playable> m_ids;
    std::set<int> m_runningAreas;
    std::size_t m_nLevels = 0;
};

}  // namespace

Show ReadShow(const QString& sPath, const QByteArray& text) {
    const JsonText json(sPath, text);
    return ShowReader().Read(JsonItem(json, "a show"));
}
