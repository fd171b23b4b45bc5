#pragma once

#include "device/scene.h"

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <map>
#include <string>
#include <vector>

/// Units of one kind, patched side by side.
struct Fixture {
    std::string name;    ///< by which levels are given; unit 3 of "Par" is also "Par 3"
    int universe = 0;    ///< index, 0 to 31 (a file says 1 to 32)
    int channel = 0;     ///< index of the first unit's first channel, 0 to 511 (a file says 1 to 512)
    std::string layout;  ///< a letter for each channel of one unit: i intensity, r g b w colour, x other
    int count = 1;       ///< units, each right after the one before
};

/// The level of one channel in a look.
struct Slot {
    std::size_t at = 0;  ///< where, as Universes::At says
    int level = 0;       ///< 0 to 255
};

/// What the lamps do in a scene. A channel stands in it once at most; in no order.
struct Look {
    std::vector<Slot> levels;
    int submaster = 255;  ///< 0 to 255, over all of it
    double fade = 0;      ///< seconds, from 0 on
};

/// What they do in a program: one step after the other, and round again.
struct Chase {
    struct Step {
        std::vector<Slot> levels;
        double fade = 0;  ///< seconds until it stands, from 0 on
        double hold = 0;  ///< seconds that it stands, from 0 on
    };
    std::vector<Step> steps;
    int submaster = 255;
};

/// What a rehearsal server plays: its serial, its scenes and its programs, and the lamps that they light.
struct Show {
    std::string serial;
    std::vector<Scene> scenes;
    std::vector<Scene> programs;
    std::vector<Fixture> fixtures;
    std::map<int, Look> looks;    ///< by the scene's id; a scene that has none lights nothing
    std::map<int, Chase> chases;  ///< by the program's id; the same

    /// A small house with a stage, for people who have no show of their own at hand: shows/house.json.
    static Show BuiltIn();
    static QByteArray BuiltInText();

    /// Reads a show from a JSON file:
    ///
    ///     { "serial": "0123",
    ///       "scenes":   [ { "id": 1, "name": "Warm", "area": 0, "level": 255, "state": true }, ... ],
    ///       "programs": [ { "id": 1, "name": "Chase" }, ... ] }
    ///
    /// Only "id" must be there; a list that is left out is empty. Throws std::runtime_error with one line
    /// that names the file, the line and what is wrong there: no such file, no regular file or one of 16 MB
    /// and more (neither is opened), text that is not JSON, an unknown key, a value of the wrong kind, an id
    /// that is missing or stands twice.
    static Show Load(const QString& sPath);
};
