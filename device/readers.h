#pragma once

#include "device/color.h"
#include "device/command.h"
#include "device/dmxchan.h"
#include "device/jsonnode.h"
#include "device/recording.h"
#include "device/scene.h"
#include "device/universes.h"

/// Each fills a record from the members of a message's content, in their order. A key that is missing leaves
/// its field as it was; a key that the record does not know is passed over.

void readInto(const JSONNode& node, Scene& scene);
void readInto(const JSONNode& node, Color& color);
void readInto(const JSONNode& node, Command& command);
void readInto(const JSONNode& node, DmxChan& channel);
void readInto(const JSONNode& node, Recording& recording);

/// Levels and hold flags of one universe. The universe's number must stand before its channels, a channel's
/// index before its level and flag. Whatever is out of range is dropped. Returns the universe that the
/// content named last, in range or not; -1 when it named none. Of a level its lower 8 bits are kept, or what
/// `pLevel` makes of it.
int readInto(const JSONNode& node, Universes& universes, int (*pLevel)(int) = nullptr);
