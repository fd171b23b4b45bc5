#include "server/show/showreader.h"

#include "device/universes.h"
#include "server/show/jsontext.h"

#include <map>
#include <optional>
#include <stdexcept>
#include <utility>

namespace {

/// All levels of a show, so that an absurd one is refused and does not eat the memory: what 610 looks of 32
/// whole universes have.
constexpr std::size_t MostLevels = 10'000'000;

/// Makes a show of its text.
class ShowReader {
public:
    explicit ShowReader(const JsonText& text) : m_text(text) {}

    Show Read() {
        simdjson::ondemand::parser parser;
        simdjson::ondemand::document document = parser.iterate(m_text.Padded());
        // Levels go by the names of fixtures, wherever in the text those stand.
        ReadShow(document, [this](const std::string& sKey, JsonItem& item) {
            if (sKey == "fixtures") {
                item.ForEachElement("the fixtures", [this](JsonItem& fixture) { ReadFixture(fixture); });
            }
            return true;
        });
        document.rewind();
        ReadShow(document, [this](const std::string& sKey, JsonItem& item) {
            if (sKey == "serial") {
                m_show.serial = item.Text("\"serial\"");
            } else if (sKey == "scenes") {
                item.ForEachElement("the scenes", [this](JsonItem& scene) { ReadScene(scene); });
            } else if (sKey == "programs") {
                item.ForEachElement("the programs", [this](JsonItem& program) { ReadProgram(program); });
            } else {
                return sKey == "fixtures";
            }
            return true;
        });
        return std::move(m_show);
    }

private:
    /// What levels may be given to by its name: all units of a fixture, or one.
    struct Target {
        std::size_t fixture;
        int unit;  ///< from 0 on; -1 is all of them
    };
    /// What scenes and programs have in common.
    struct Entry {
        Scene scene;
        std::optional<int> submaster;
        const char* pSubmaster = nullptr;
    };

    template <typename Read>
    void ReadShow(simdjson::ondemand::document& document, Read read) {
        simdjson::ondemand::value root;
        if (document.get_value().get(root) != simdjson::SUCCESS) {
            m_text.Fail(m_text.Begin(), "a show must stand in { }");
        }
        JsonItem(m_text, root).ForEachMember("a show", read);
    }

    void ReadFixture(JsonItem& item) {
        Fixture fixture;
        fixture.universe = -1;
        fixture.channel = -1;
        std::vector<int> defaults;
        const char* pDefaults = nullptr;
        item.ForEachMember("a fixture", [&](const std::string& sKey, JsonItem& member) {
            if (sKey == "name") {
                fixture.name = member.Text("\"name\"");
            } else if (sKey == "universe") {
                fixture.universe = member.Int("\"universe\"", 1, Universes::Count) - 1;
            } else if (sKey == "channel") {
                fixture.channel = member.Int("\"channel\"", 1, Universes::Channels) - 1;
            } else if (sKey == "layout") {
                fixture.layout = LayoutOf(member);
            } else if (sKey == "count") {
                fixture.count = member.Int("\"count\"", 1, Universes::Channels);
            } else if (sKey == "default") {
                pDefaults = member.Place();
                defaults = ListOf(member, "the default");
            } else if (sKey == "independent") {
                fixture.independent = member.Bool("\"independent\"");
            } else {
                return false;
            }
            return true;
        });
        for (const auto& [bMissing, pKey] : {std::pair{fixture.name.empty(), "\"name\""},
                                             {fixture.universe < 0, "\"universe\""},
                                             {fixture.channel < 0, "\"channel\""},
                                             {fixture.layout.empty(), "\"layout\""}}) {
            if (bMissing) {
                item.Fail(std::string("this fixture has no ") + pKey);
            }
        }
        Patch(item, fixture);
        if (pDefaults != nullptr) {
            SetDefaults(pDefaults, defaults, fixture);
        }
        AddNames(item, fixture);
        m_show.fixtures.push_back(fixture);
    }

    static std::string LayoutOf(JsonItem& item) {
        std::string sLayout = item.Text("\"layout\"", Universes::Channels);
        std::transform(sLayout.begin(), sLayout.end(), sLayout.begin(),
                       [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
        if (sLayout.find_first_not_of("irgbwaxf") != std::string::npos) {
            item.Fail("\"layout\" must be of the letters i r g b w a x f");
        }
        if (sLayout.rfind('f', 0) == 0 || sLayout.find("ff") != std::string::npos) {
            item.Fail("an f of \"layout\" must follow the letter whose fine half it is");
        }
        return sLayout;
    }

    static std::vector<int> ListOf(JsonItem& item, const std::string& sWhat) {
        std::vector<int> levels;
        item.ForEachElement(sWhat, [&](JsonItem& level) { levels.push_back(level.Int("a level", 0, 255)); });
        return levels;
    }

    void Patch(JsonItem& item, const Fixture& fixture) {
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

    void SetDefaults(const char* pAt, const std::vector<int>& given, Fixture& fixture) {
        CheckCount(pAt, "the default", given.size(), fixture, false);
        for (std::size_t i = 0; i < static_cast<std::size_t>(fixture.Width()); ++i) {
            const std::size_t nLetter = i % fixture.layout.size();
            const char cKind = fixture.layout[nLetter - (fixture.layout[nLetter] == 'f' ? 1 : 0)];
            const int nLevel = given[i % given.size()];
            if (nLevel != 0 && cKind != 'x') {
                m_text.Fail(pAt, "the default of light is 0: only x and its f have another");
            }
            fixture.defaults.push_back(nLevel);
        }
    }

    void AddNames(JsonItem& item, const Fixture& fixture) {
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

    void ReadScene(JsonItem& item) {
        Look look;
        bool bLook = false;
        Entry entry =
            EntryOf(item, "scene", m_sceneIds, [&](const std::string& sKey, JsonItem& member, Scene& scene) {
                if (sKey == "area") {
                    scene.area = member.Int("\"area\"", 0);
                    return true;
                }
                bLook = bLook || sKey == "levels" || sKey == "fade";
                return ReadLook(sKey, member, look.levels, look.fade);
            });
        const Scene& scene = entry.scene;
        if (scene.state && scene.area >= 0 && !m_runningAreas.insert(scene.area).second) {
            item.Fail("another scene of area " + std::to_string(scene.area) + " runs at the start already");
        }
        if (bLook) {
            look.submaster = SubmasterOf(entry);
            m_show.looks[scene.id] = std::move(look);
        }
        m_show.scenes.push_back(scene);
    }

    void ReadProgram(JsonItem& item) {
        Chase chase;
        const Entry entry = EntryOf(item, "program", m_programIds,
                                    [&](const std::string& sKey, JsonItem& member, Scene& /*program*/) {
                                        if (sKey == "steps") {
                                            member.ForEachElement("the steps", [&](JsonItem& step) {
                                                chase.steps.push_back(StepOf(step));
                                            });
                                        }
                                        return sKey == "steps";
                                    });
        if (!chase.steps.empty()) {
            chase.submaster = SubmasterOf(entry);
            m_show.chases[entry.scene.id] = std::move(chase);
        }
        m_show.programs.push_back(entry.scene);
    }

    /// Reads a scene or program; its own keys go to readMore(key, item, entry).
    template <typename ReadMore>
    Entry EntryOf(JsonItem& item, const std::string& sWhat, std::set<int>& ids, ReadMore readMore) {
        Entry entry;
        std::optional<int> id;
        item.ForEachMember("a " + sWhat, [&](const std::string& sKey, JsonItem& member) {
            if (sKey == "id") {
                id = member.Int("\"id\"");
            } else if (sKey == "name") {
                entry.scene.name = member.Text("\"name\"");
            } else if (sKey == "level") {
                entry.pSubmaster = member.Place();
                entry.submaster = entry.scene.level = member.Int("\"level\"");
            } else if (sKey == "state") {
                entry.scene.state = member.Bool("\"state\"");
            } else {
                return readMore(sKey, member, entry.scene);
            }
            return true;
        });
        if (!id || entry.scene.name.empty()) {
            item.Fail("this " + sWhat + " has no " + (id ? "\"name\"" : "\"id\""));
        }
        if (!ids.insert(*id).second) {
            item.Fail("the id " + std::to_string(*id) + " stands for a " + sWhat + " already");
        }
        entry.scene.id = *id;
        return entry;
    }

    /// The "level" of an entry that has lamps. Without, any number does: it only goes to remotes.
    int SubmasterOf(const Entry& entry) const {
        const int nSubmaster = entry.submaster.value_or(255);
        if (nSubmaster < 0 || nSubmaster > 255) {
            m_text.Fail(entry.pSubmaster,
                        "\"level\" must be from 0 to 255, not " + std::to_string(nSubmaster));
        }
        return nSubmaster;
    }

    Chase::Step StepOf(JsonItem& item) {
        Chase::Step step;
        bool bLevels = false;
        item.ForEachMember("a step", [&](const std::string& sKey, JsonItem& member) {
            bLevels = bLevels || sKey == "levels";
            if (sKey == "hold") {
                step.hold = member.Seconds("\"hold\"");
                return true;
            }
            return ReadLook(sKey, member, step.levels, step.fade);
        });
        if (!bLevels) {
            item.Fail("this step has no \"levels\"");
        }
        return step;
    }

    /// Reads what a scene and a step have in common.
    bool ReadLook(const std::string& sKey, JsonItem& item, Slots& levels, double& fade) {
        if (sKey == "levels") {
            item.ForEachMember("the levels", [&](const std::string& sName, JsonItem& list) {
                ReadLevels(list, sName, levels);
                return true;
            });
            Sort(levels);
        } else if (sKey == "fade") {
            fade = item.Seconds("\"fade\"");
        } else {
            return false;
        }
        return true;
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
    void ReadLevels(JsonItem& list, const std::string& sName, Slots& levels) {
        const auto target = m_targets.find(sName);
        if (target == m_targets.end()) {
            list.Fail("there is no fixture " + JsonItem::Quoted(sName));
        }
        const auto [nFixture, nUnit] = target->second;
        const Fixture& fixture = m_show.fixtures[nFixture];
        const std::vector<int> given = ListOf(list, "the levels of " + JsonItem::Quoted(sName));
        CheckCount(list.Place(), JsonItem::Quoted(sName), given.size(), fixture, nUnit >= 0);
        const std::size_t nWidth = fixture.layout.size();
        const std::size_t nAll = nUnit < 0 ? static_cast<std::size_t>(fixture.Width()) : nWidth;
        m_nLevels += nAll;
        if (m_nLevels > MostLevels) {
            list.Fail("here the show comes to have more than " + std::to_string(MostLevels) + " levels");
        }
        const std::size_t first = Universes::At(fixture.universe, fixture.channel) +
                                  nWidth * static_cast<std::size_t>(std::max(nUnit, 0));
        for (std::size_t i = 0; i < nAll; ++i) {
            levels.push_back({static_cast<quint16>(first + i), static_cast<quint8>(given[i % given.size()])});
        }
    }

    /// Complains unless so many levels are as many as one unit has, or as many as all have.
    void CheckCount(const char* pAt, const std::string& sWhat, std::size_t nGiven, const Fixture& fixture,
                    bool bOneUnit) const {
        const std::size_t nWidth = fixture.layout.size();
        const std::size_t nAll = bOneUnit ? nWidth : static_cast<std::size_t>(fixture.Width());
        if (nGiven != nWidth && nGiven != nAll) {
            m_text.Fail(pAt, sWhat + " takes " + std::to_string(nWidth) +
                                 (nAll == nWidth ? "" : " or " + std::to_string(nAll)) +
                                 (nAll > 1 ? " levels, not " : " level, not ") + std::to_string(nGiven));
        }
    }

    const JsonText& m_text;
    Show m_show;
    std::map<std::string, Target, std::less<>> m_targets;
    std::map<std::size_t, std::size_t> m_patched;  ///< the fixture that has a channel
    std::set<int> m_sceneIds;
    std::set<int> m_programIds;
    std::set<int> m_runningAreas;
    std::size_t m_nLevels = 0;
};

}  // namespace

Show ReadShow(const QString& sPath, const QByteArray& text) {
    try {
        const JsonText json(sPath, text);
        return ShowReader(json).Read();
    } catch (const simdjson::simdjson_error& error) {
        throw std::runtime_error(sPath.toStdString() + ": " + error.what());
    }
}
