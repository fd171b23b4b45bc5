#pragma once

#include "device/color.h"
#include "device/command.h"
#include "device/dmxchan.h"
#include "device/recording.h"
#include "device/universes.h"

#include <string>

class JSONWriter;

/// What a message is about: its "typ". Several numbers mean one thing in both directions.
enum class MessageType {
    Alive = 1,           ///< both ways: "I am here" and its answer
    TooManyClients = 2,  ///< from the server
    Goodbye = 3,         ///< to the server
    Address = 5,         ///< from the server; of no use to a remote
    StateRequest = 6,    ///< to the server
    State = 7,           ///< from the server: everything
    Scene = 8,           ///< both ways: one scene starts or stops
    Program = 9,         ///< both ways: one program starts or stops
    Color = 10,          ///< both ways
    Command = 11,        ///< both ways
    Channel = 12,        ///< both ways: one DMX channel
    Universe = 13,       ///< both ways: the channels of one universe
    Discovery = 14,      ///< to every server: who is there?
    Serial = 15,         ///< from the server: its serial
    UniverseColor = 16,  ///< to the server: a run of channels takes a colour
    ScenePoll = 17,      ///< to the server
    SceneStates = 18,    ///< from the server: what runs
    CommandPoll = 19,    ///< to the server
    ChannelPoll = 20,    ///< to the server
    Record = 21,         ///< to the server, from its own computer: the lamps become a scene
    Recorded = 22,       ///< from the server: what came of that
};

/// The texts that a remote sends, built from values. They know no socket and no window.
namespace messages {

/// A message that is only its type: alive, goodbye, discovery, the state request and the three polls.
std::string Bare(MessageType type);

/// Starts (true) or stops one scene of an area.
std::string Scene(int nId, int nArea, bool bState);
/// Starts (true) or stops one program.
std::string Program(int nId, bool bState);

std::string Color(const ::Color& color);
std::string Command(const ::Command& command);

/// One channel's level and hold flag; channel -1 stands for all of the universe.
std::string Channel(const DmxChan& channel);
/// Every channel of a universe at one level, held (true) or released.
std::string Universe(int nUniverse, unsigned char ucLevel, bool bState);
/// The held channels of one universe, all others being released; none for a universe that is none.
std::string Universe(int nUniverse, const Universes& universes);
/// A colour on `nNumber` fixtures side by side in a universe, from channel `nChannel` on.
std::string UniverseColor(int nUniverse, int nChannel, int nNumber, const ::Color& color);

/// What the lamps show becomes a scene. No remote sends it.
std::string Record(const Recording& recording);

/// The members of a colour's or a command's content, for whoever builds a larger message around them.
void WriteContent(JSONWriter& writer, const ::Color& color);
void WriteContent(JSONWriter& writer, const ::Command& command);

}  // namespace messages
