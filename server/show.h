#pragma once

#include "device/scene.h"

#include <QString>

#include <string>
#include <vector>

/// What a rehearsal server plays: its serial, its scenes and its programs.
struct Show {
    std::string serial;
    std::vector<Scene> scenes;
    std::vector<Scene> programs;

    /// A small house with a stage, for people who have no show of their own at hand.
    static Show BuiltIn();

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
