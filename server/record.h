#pragma once

#include "device/recording.h"
#include "server/lamps/patch.h"
#include "server/show/showfile.h"
#include "server/state.h"

#include <QString>

/// Records what the lamps show, by their open levels (see Playback), as a scene: in the file of the show, and
/// in what is played, where it takes the place of whatever gave that light. No lamp moves. Returns the
/// scene's id and the file, in a line; throws std::runtime_error with one line if nothing was recorded.
QString Record(State& state, const Levels& open, ShowFile& file, const Recording& wanted);
