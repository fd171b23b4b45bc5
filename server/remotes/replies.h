#pragma once

#include "device/color.h"
#include "device/command.h"
#include "server/show/show.h"

#include <string>
#include <vector>

/// The texts that only a server sends; what goes both ways is built by `messages`.
namespace replies {

std::string Serial(const std::string& sSerial);

/// Everything a remote needs to begin.
std::string State(const Show& show, const Color& color, const Command& command);

/// Which scenes and programs run.
std::string SceneStates(const Show& show);

/// What came of a recording, in a line for people.
std::string Recorded(bool bDone, const std::string& sLine);

/// Splits a text that is longer than `nSize` bytes into pieces of so many, each with the marker of a fragment
/// at its end.
std::vector<std::string> Split(const std::string& sText, std::size_t nSize);

}  // namespace replies
