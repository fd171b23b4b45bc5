#pragma once

#include "server/show/show.h"

#include <QStringList>

/// Which unit of which fixture is to be set to which channel, a line each, for whoever addresses the lamps.
/// In the order of universes and channels, numbers as people count them; empty if nothing is patched.
QStringList PatchSheet(const Show& show);
