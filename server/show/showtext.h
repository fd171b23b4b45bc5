#pragma once

#include "server/show/show.h"

#include <QByteArray>

#include <string>
#include <utility>
#include <vector>

/// Writes scenes into the text of a show as its author would, and leaves all else as it is, to the byte. The
/// texts must be good shows: what ReadShow refuses is none to write into.
namespace showtext {

/// Levels as a scene gives them: by the name of a fixture or of one of its units.
using NamedLevels = std::vector<std::pair<std::string, std::vector<int>>>;

/// Names the levels of a fixture's units, which are empty for a unit without: one name for those that are
/// alike, where that says it shorter.
void AddNamed(NamedLevels& named, const Fixture& fixture, const std::vector<std::vector<int>>& units);

/// The text with a scene more, at the end of its scenes. An area or a fade that it has not is left out.
QByteArray WithScene(const QByteArray& text, const Scene& scene, double fade, const NamedLevels& levels);

/// The text with other levels in the scene at a place in Show::scenes, whose other keys stay.
QByteArray WithLevels(const QByteArray& text, std::size_t iScene, const NamedLevels& levels);

}  // namespace showtext
