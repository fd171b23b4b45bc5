#include "server/show/showreader.h"

#include "device/universes.h"

#include <QJsonDocument>

#include <algorithm>
#include <limits>
#include <map>
#include <set>
#include <simdjson.h>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

namespace {

namespace ondemand = simdjson::ondemand;

constexpr int MostSeconds = 86400;

/// Walks the text of a show and knows, whatever it meets, on which line that stands.
class ShowReader {
public:
    ShowReader(const QString& sPath, const QByteArray& text)
        : m_sPath(sPath), m_text(text.constData(), static_cast<std::size_t>(text.size())) {}

    Show Read() {
        CheckSyntax();
        ondemand::parser parser;
        ondemand::document document = parser.iterate(m_text);
        m_pAt = m_text.data();
        // Levels go by the names of fixtures, wherever in the text those stand.
        ForEachMember(document, "a show", [this](std::string_view sKey, ondemand::value& value) {
            if (sKey == "fixtures") {
                ForEachElement(value, "the fixtures", [this](ondemand::value& item) { ReadFixture(item); });
            }
            return true;
        });
        document.rewind();
        ForEachMember(document, "a show", [this](std::string_view sKey, ondemand::value& value) {
            if (sKey == "serial") {
                m_show.serial = TextOf(value, "\"serial\"");
            } else if (sKey == "scenes") {
                ForEachElement(value, "the scenes", [this](ondemand::value& item) { ReadScene(item); });
            } else if (sKey == "programs") {
                ForEachElement(value, "the programs", [this](ondemand::value& item) { ReadProgram(item); });
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

    /// What simdjson meets on its walk it does not place in all cases; Qt's parser names the spot.
    void CheckSyntax() {
        QJsonParseError error{};
        const QByteArray text = QByteArray::fromRawData(m_text.data(), static_cast<int>(m_text.size()));
        QJsonDocument::fromJson(text, &error);
        if (error.error != QJsonParseError::NoError) {
            m_pAt =
                m_text.data() + std::min<std::size_t>(static_cast<std::size_t>(error.offset), m_text.size());
            Fail("not JSON: " + error.errorString().toStdString());
        }
    }

    void ReadFixture(ondemand::value& value) {
        const char* const pFixture = m_pAt;
        Fixture fixture;
        fixture.universe = -1;
        fixture.channel = -1;
        ForEachMember(value, "a fixture", [&](std::string_view sKey, ondemand::value& member) {
            if (sKey == "name") {
                fixture.name = TextOf(member, "\"name\"");
            } else if (sKey == "universe") {
                fixture.universe = IntOf(member, "\"universe\"", 1, Universes::Count) - 1;
            } else if (sKey == "channel") {
                fixture.channel = IntOf(member, "\"channel\"", 1, Universes::Channels) - 1;
            } else if (sKey == "layout") {
                fixture.layout = LayoutOf(member);
            } else if (sKey == "count") {
                fixture.count = IntOf(member, "\"count\"", 1, Universes::Channels);
            } else {
                return false;
            }
            return true;
        });
        m_pAt = pFixture;
        for (const auto& [bMissing, pKey] : {std::pair{fixture.name.empty(), "\"name\""},
                                             {fixture.universe < 0, "\"universe\""},
                                             {fixture.channel < 0, "\"channel\""},
                                             {fixture.layout.empty(), "\"layout\""}}) {
            if (bMissing) {
                Fail(std::string("this fixture has no ") + pKey);
            }
        }
        Patch(fixture);
        AddNames(fixture);
        m_show.fixtures.push_back(fixture);
    }

    std::string LayoutOf(ondemand::value& value) {
        std::string sLayout = TextOf(value, "\"layout\"");
        if (sLayout.find_first_not_of("irgbwx") != std::string::npos) {
            Fail("\"layout\" must be of the letters i r g b w x");
        }
        return sLayout;
    }

    void Patch(const Fixture& fixture) {
        const auto nWidth = static_cast<std::size_t>(fixture.count) * fixture.layout.size();
        const std::size_t nEnd = static_cast<std::size_t>(fixture.channel) + nWidth;
        if (nEnd > Universes::Channels) {
            Fail(Quoted(fixture.name) + " reaches channel " + std::to_string(nEnd) + ", past 512");
        }
        for (int nChannel = fixture.channel; nChannel < static_cast<int>(nEnd); ++nChannel) {
            const auto [taken, bFree] =
                m_patched.insert({Universes::At(fixture.universe, nChannel), fixture.name});
            if (!bFree) {
                Fail(Quoted(fixture.name) + " overlaps " + Quoted(taken->second) + " at universe " +
                     std::to_string(fixture.universe + 1) + " channel " + std::to_string(nChannel + 1));
            }
        }
    }

    void AddNames(const Fixture& fixture) {
        const auto add = [&](const std::string& sName, int nUnit) {
            if (!m_targets.insert({sName, {m_show.fixtures.size(), nUnit}}).second) {
                Fail("the name " + Quoted(sName) + " stands for a fixture already");
            }
        };
        add(fixture.name, -1);
        for (int i = 0; fixture.count > 1 && i < fixture.count; ++i) {
            add(fixture.name + ' ' + std::to_string(i + 1), i);
        }
    }

    void ReadScene(ondemand::value& value) {
        Look look;
        bool bLook = false;
        const auto readMore = [&](std::string_view sKey, ondemand::value& member, Scene& scene) {
            if (sKey == "area") {
                scene.area = IntOf(member, "\"area\"");
                return true;
            }
            bLook = bLook || sKey == "levels" || sKey == "fade";
            return ReadLook(sKey, member, look.levels, look.fade);
        };
        const Scene scene = EntryOf(value, "scene", m_sceneIds, readMore);
        if (bLook) {
            look.submaster = SubmasterOf(scene);
            m_show.looks[scene.id] = std::move(look);
        }
        m_show.scenes.push_back(scene);
    }

    void ReadProgram(ondemand::value& value) {
        Chase chase;
        const auto readMore = [&](std::string_view sKey, ondemand::value& member, Scene& /*program*/) {
            if (sKey == "steps") {
                ForEachElement(member, "the steps",
                               [&](ondemand::value& step) { chase.steps.push_back(StepOf(step)); });
            }
            return sKey == "steps";
        };
        const Scene program = EntryOf(value, "program", m_programIds, readMore);
        if (!chase.steps.empty()) {
            chase.submaster = SubmasterOf(program);
            m_show.chases[program.id] = std::move(chase);
        }
        m_show.programs.push_back(program);
    }

    /// Reads a scene or program; its own keys go to readMore(key, value, entry).
    template <typename ReadMore>
    Scene EntryOf(ondemand::value& value, const std::string& sWhat, std::set<int>& ids, ReadMore readMore) {
        const char* const pEntry = m_pAt;
        Scene entry;
        bool bId = false;
        m_pLevel = nullptr;
        ForEachMember(value, "a " + sWhat, [&](std::string_view sKey, ondemand::value& member) {
            if (sKey == "id") {
                entry.id = IntOf(member, "\"id\"");
                bId = true;
            } else if (sKey == "name") {
                entry.name = TextOf(member, "\"name\"");
            } else if (sKey == "level") {
                m_pLevel = m_pAt;
                entry.level = IntOf(member, "\"level\"");
            } else if (sKey == "state") {
                if (member.get_bool().get(entry.state) != simdjson::SUCCESS) {
                    Fail("\"state\" must be true or false");
                }
            } else {
                return readMore(sKey, member, entry);
            }
            return true;
        });
        m_pAt = pEntry;
        if (!bId) {
            Fail("this " + sWhat + " has no \"id\"");
        }
        if (!ids.insert(entry.id).second) {
            Fail("the id " + std::to_string(entry.id) + " stands for a " + sWhat + " already");
        }
        return entry;
    }

    /// The "level" of an entry that has lamps. Without, any number does: it only goes to remotes.
    int SubmasterOf(const Scene& entry) {
        if (m_pLevel == nullptr) {
            return 255;
        }
        m_pAt = m_pLevel;
        return InRange(entry.level, "\"level\"", 0, 255);
    }

    Chase::Step StepOf(ondemand::value& value) {
        const char* const pStep = m_pAt;
        Chase::Step step;
        bool bLevels = false;
        ForEachMember(value, "a step", [&](std::string_view sKey, ondemand::value& member) {
            bLevels = bLevels || sKey == "levels";
            if (sKey == "hold") {
                step.hold = SecondsOf(member, "\"hold\"");
                return true;
            }
            return ReadLook(sKey, member, step.levels, step.fade);
        });
        m_pAt = pStep;
        if (!bLevels) {
            Fail("this step has no \"levels\"");
        }
        return step;
    }

    /// Reads what a scene and a step have in common.
    bool ReadLook(std::string_view sKey, ondemand::value& member, std::vector<Slot>& levels, double& fade) {
        if (sKey == "levels") {
            std::map<std::size_t, int> byChannel;
            ForEachMember(member, "the levels", [&](std::string_view sName, ondemand::value& list) {
                ReadLevels(list, std::string(sName), byChannel);
                return true;
            });
            levels.clear();
            for (const auto& [at, nLevel] : byChannel) {
                levels.push_back({at, nLevel});
            }
        } else if (sKey == "fade") {
            fade = SecondsOf(member, "\"fade\"");
        } else {
            return false;
        }
        return true;
    }

    /// The levels of one name, over those of names before it: of one unit, or of all the fixture's channels.
    void ReadLevels(ondemand::value& list, const std::string& sName, std::map<std::size_t, int>& levels) {
        const auto target = m_targets.find(sName);
        if (target == m_targets.end()) {
            Fail("there is no fixture " + Quoted(sName));
        }
        const char* const pList = m_pAt;
        std::vector<int> given;
        ForEachElement(list, "the levels of " + Quoted(sName),
                       [&](ondemand::value& level) { given.push_back(IntOf(level, "a level", 0, 255)); });
        m_pAt = pList;
        const auto [nFixture, nUnit] = target->second;
        const Fixture& fixture = m_show.fixtures[nFixture];
        const std::size_t nWidth = fixture.layout.size();
        const std::size_t nAll = nWidth * (nUnit < 0 ? static_cast<std::size_t>(fixture.count) : 1);
        if (given.size() != nWidth && given.size() != nAll) {
            Fail(Quoted(sName) + " takes " + std::to_string(nWidth) +
                 (nAll == nWidth ? "" : " or " + std::to_string(nAll)) +
                 (nAll > 1 ? " levels, not " : " level, not ") + std::to_string(given.size()));
        }
        const std::size_t first = Universes::At(fixture.universe, fixture.channel) +
                                  nWidth * static_cast<std::size_t>(std::max(nUnit, 0));
        for (std::size_t i = 0; i < nAll; ++i) {
            levels[first + i] = given[i % given.size()];
        }
    }

    /// Calls read(value) for each element of a list.
    template <typename ReadElement>
    void ForEachElement(ondemand::value& list, const std::string& sWhat, ReadElement read) {
        ondemand::array array;
        if (list.get_array().get(array) != simdjson::SUCCESS) {
            Fail(sWhat + " must be a list in [ ]");
        }
        for (auto element : array) {
            ondemand::value value = element.value();
            m_pAt = value.raw_json_token().data();
            read(value);
        }
    }

    /// Calls read(key, value) for each member of an object; false from it is no such key.
    template <typename Source, typename ReadMember>
    void ForEachMember(Source& source, const std::string& sWhat, ReadMember read) {
        ondemand::object object;
        if (source.get_object().get(object) != simdjson::SUCCESS) {
            Fail(sWhat + " must stand in { }");
        }
        for (auto field : object) {
            const std::string sKey(field.unescaped_key().value());
            ondemand::value value = field.value();
            m_pAt = value.raw_json_token().data();
            if (!read(sKey, value)) {
                Fail(sWhat + " has no key " + Quoted(sKey));
            }
        }
    }

    static std::string Quoted(const std::string& sText) { return '"' + sText + '"'; }

    std::string TextOf(ondemand::value& value, const std::string& sWhat) {
        std::string_view sText;
        if (value.get_string().get(sText) != simdjson::SUCCESS) {
            Fail(sWhat + " must be a text in quotes");
        }
        return std::string(sText);
    }

    int IntOf(ondemand::value& value, const std::string& sWhat) {
        int64_t nValue = 0;
        if (value.get_int64().get(nValue) != simdjson::SUCCESS || nValue < std::numeric_limits<int>::min() ||
            nValue > std::numeric_limits<int>::max()) {
            Fail(sWhat + " must be a whole number");
        }
        return static_cast<int>(nValue);
    }

    int IntOf(ondemand::value& value, const std::string& sWhat, int nLeast, int nMost) {
        return InRange(IntOf(value, sWhat), sWhat, nLeast, nMost);
    }

    int InRange(int nValue, const std::string& sWhat, int nLeast, int nMost) const {
        if (nValue < nLeast || nValue > nMost) {
            Fail(sWhat + " must be from " + std::to_string(nLeast) + " to " + std::to_string(nMost) +
                 ", not " + std::to_string(nValue));
        }
        return nValue;
    }

    double SecondsOf(ondemand::value& value, const std::string& sWhat) {
        double seconds = -1;
        if (value.get_double().get(seconds) != simdjson::SUCCESS ||
            !(seconds >= 0 && seconds <= MostSeconds)) {
            Fail(sWhat + " must be a number of seconds from 0 to " + std::to_string(MostSeconds));
        }
        return seconds;
    }

    [[noreturn]] void Fail(const std::string& sWhat) const {
        const auto nLine = 1 + std::count(m_text.data(), m_pAt, '\n');
        throw std::runtime_error(m_sPath.toStdString() + ": line " + std::to_string(nLine) + ": " + sWhat);
    }

    QString m_sPath;
    simdjson::padded_string m_text;
    const char* m_pAt = nullptr;     ///< the value being read
    const char* m_pLevel = nullptr;  ///< the "level" of the entry being read
    Show m_show;
    std::map<std::string, Target> m_targets;
    std::map<std::size_t, std::string> m_patched;  ///< the name of the fixture that has a channel
    std::set<int> m_sceneIds;
    std::set<int> m_programIds;
};

}  // namespace

Show ReadShow(const QString& sPath, const QByteArray& text) {
    try {
        return ShowReader(sPath, text).Read();
    } catch (const simdjson::simdjson_error& error) {
        throw std::runtime_error(sPath.toStdString() + ": " + error.what());
    }
}
