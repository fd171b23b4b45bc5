#pragma once

#include "device/jsonnode.h"
#include "device/messages.h"
#include "server/state.h"

#include <QString>

#include <optional>
#include <string>

/// What a message changed, for whoever is to be told.
struct Change {
    QString words;         ///< what was asked for, in a line of the log: "scene 3 on"
    std::string message;   ///< what other remotes are told; empty where nothing or a whole universe changed
    int universe = -1;     ///< that changed as a whole; -1 for none
    bool starts = false;   ///< a scene or program started
    bool isLevel = false;  ///< one channel, which a remote shows as it was taken
};

/// Does to the state what a message of a remote says, by its type and content; keys that it lacks leave what
/// was. Nothing for a type that changes nothing.
std::optional<Change> TakeMessage(State& state, MessageType type, const JSONNode& content);
