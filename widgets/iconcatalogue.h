#pragma once

#include <QStringList>

#include <array>

/// The pictures a user may give a scene or a program, as resource paths.
namespace catalogue {

/// The scene's and the program's own, then five families: lighting, outdoors, indoors, music, time of day.
const std::array<QStringList, 6>& IconLists();

}  // namespace catalogue
