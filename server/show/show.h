#pragma once

#include "device/scene.h"
#include "device/universes.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QtGlobal>

#include <map>
#include <string>
#include <tuple>
#include <vector>

/// Units of one kind, patched side by side.
struct Fixture {
    std::string name;  ///< by which levels are given; unit 3 of "Par" is also "Par 3"
    int universe = 0;  ///< index, 0 to 31 (a file says 1 to 32)
    int channel = 0;   ///< index of the first unit's first channel, 0 to 511 (a file says 1 to 512)
    /// A letter for each channel of one unit: i intensity, r g b w colour, a any other colour of light, x
    /// what is no light, f the fine half of the channel before it.
    std::string layout;
    int count = 1;                   ///< units, each right after the one before
    bool independent = false;        ///< neither dimmer nor white, black and colour act on it
    std::vector<int> defaults = {};  ///< of all its channels; counts for x and its f; empty if it has none

    /// All channels.
    int Width() const { return count * static_cast<int>(layout.size()); }
    /// Where a unit's first channel is, as Universes::At says; of `count`, where the fixture ends.
    std::size_t At(int iUnit) const {
        return Universes::At(universe, channel) + static_cast<std::size_t>(iUnit) * layout.size();
    }
    /// Of the only one, the fixture's.
    std::string UnitName(int iUnit) const {
        return count > 1 ? name + ' ' + std::to_string(iUnit + 1) : name;
    }
};

/// The level of one channel in a look. There are millions of them.
struct Slot {
    quint16 at = 0;  ///< where, as Universes::At says
    quint8 level = 0;
};

/// Each channel once at most, in rising order; both halves of a channel with a fine half, or none.
using Slots = std::vector<Slot>;

/// What the lamps do: in a scene one step, in a program one after the other, and round again.
struct Look {
    struct Step {
        Slots levels;
        double fade = 0;  ///< seconds until it stands, from 0 on
        double hold = 0;  ///< seconds that it stands, from 0 on
    };
    std::vector<Step> steps;
    int submaster = 255;  ///< 0 to 255, over all of it
};

/// Which scene or, by its own ids, which program.
struct Playable {
    bool program = false;
    int id = 0;
    bool operator==(const Playable& other) const { return program == other.program && id == other.id; }
    bool operator<(const Playable& other) const {
        return std::tie(program, id) < std::tie(other.program, other.id);
    }
};

/// What a server plays: its serial, its scenes and its programs, and the lamps that they light.
struct Show {
    std::string serial;
    std::vector<Scene> scenes;
    std::vector<Scene> programs;
    std::vector<Fixture> fixtures;
    std::map<Playable, Look> looks;  ///< what has none lights nothing

    /// A small house with a stage, for people who have no show of their own at hand: shows/house.json.
    static Show BuiltIn();
    static QByteArray BuiltInText();
};

/// Reads a show from the text of a JSON file; `sPath` is what complaints call it:
///
///     { "serial": "0123",
///       "scenes":   [ { "id": 1, "name": "Warm", "area": 0, "level": 255, "state": true }, ... ],
///       "programs": [ { "id": 1, "name": "Chase" }, ... ] }
///
/// and what docs/lamps.md says of lamps. "id" and "name" must be there; a list that is left out is empty.
/// Throws std::runtime_error with one line that names the file, the line and what is wrong there: text that
/// is not JSON, an unknown key, a key twice, a value of the wrong kind, an id that is missing or stands
/// twice, two scenes of an area that both run, more levels than can be played.
Show ReadShow(const QString& sPath, const QByteArray& text);

/// Which unit of which fixture is to be set to which channel, a line each, for whoever addresses the lamps.
/// In the order of universes and channels, numbers as people count them; empty if nothing is patched.
QStringList PatchSheet(const Show& show);
