#pragma once

#include "server/show/show.h"

#include <QByteArray>
#include <QStringList>

#include <string>

/// The text of a show with other levels in the scene at a place in Show::scenes, or at their end with a scene
/// more, without an area or a fade that it has not: written as the author would, and all else as it is, to
/// the byte. The text must be a good show: what ReadShow refuses is none to write into. There must be some
/// levels, as LevelsText gives them.
QByteArray WithScene(const QByteArray& text, std::size_t iScene, const Scene& scene, double fade,
                     const QStringList& levels);

/// Levels as a scene gives them, by the name of a fixture or of one of its units: "Par": [255, 0, 0]
QString LevelsText(const std::string& sName, const QString& sLevels);
