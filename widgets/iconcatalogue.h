#pragma once

#include <QStringList>

/// The pictures a user may give a scene or a program, as resource paths.
namespace catalogue {

const QStringList& DefaultIconList();  ///< the scene's and the program's own
const QStringList& IconList1();        ///< lighting
const QStringList& IconList2();        ///< outdoors
const QStringList& IconList3();        ///< indoors
const QStringList& IconList4();        ///< music
const QStringList& IconList5();        ///< time of day

}  // namespace catalogue
