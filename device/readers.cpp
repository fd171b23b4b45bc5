#include "device/readers.h"

#include "device/members.h"

#include <algorithm>
#include <cstring>

namespace {

/// Whether a member goes by that name. A universe asks this 1,500 times; with a length that the compiler
/// knows, the names are compared in place, without a call.
inline bool Is(std::string_view sName, std::string_view sWanted) {
    return sName.size() == sWanted.size() && std::memcmp(sName.data(), sWanted.data(), sWanted.size()) == 0;
}

template <typename Record, typename... Members>
void ReadMembers(const JSONNode& node, Record& record, const std::tuple<Members...>& members) {
    node.ForEachMember([&](std::string_view sName, const JSONNode& value) {
        const auto take = [&](const auto& member) {
            if (Is(sName, member.name)) {
                value.Store(record.*member.field);
            }
        };
        std::apply([&](const auto&... member) { (take(member), ...); }, members);
    });
}

}  // namespace

void readInto(const JSONNode& node, Scene& scene) {
    ReadMembers(node, scene, SceneMembers);
}

void readInto(const JSONNode& node, Color& color) {
    ReadMembers(node, color, ColorMembers);
    node.ForEachMember("color", [&](const JSONNode& levels) { ReadMembers(levels, color, LevelMembers); });
}

void readInto(const JSONNode& node, Command& command) {
    ReadMembers(node, command, CommandMembers);
}

void readInto(const JSONNode& node, DmxChan& channel) {
    ReadMembers(node, channel, ChannelMembers);
}

void readInto(const JSONNode& node, Recording& recording) {
    ReadMembers(node, recording, RecordingMembers);
}

namespace {

/// Into the tables of one universe. By pointer: the index is checked once, here, for two writes.
void readChannel(const JSONNode& node, unsigned char* pLevels, bool* pStates, int (*pLevel)(int)) {
    int nChannel = -1;
    node.ForEachMember([&](std::string_view sName, const JSONNode& value) {
        if (Is(sName, "c")) {
            nChannel = value.AsInt();
        } else if (!Universes::HasChannel(nChannel)) {
            return;
        } else if (Is(sName, "l")) {
            const int nLevel = pLevel == nullptr ? value.AsInt() : pLevel(value.AsInt());
            pLevels[nChannel] = static_cast<unsigned char>(nLevel);
        } else if (Is(sName, "s")) {
            pStates[nChannel] = value.AsBool();
        }
    });
}

}  // namespace

int readInto(const JSONNode& node, Universes& universes, int (*pLevel)(int)) {
    int nUniverse = -1;
    node.ForEachMember([&](std::string_view sName, const JSONNode& value) {
        if (Is(sName, "universe")) {
            nUniverse = value.AsInt();
        } else if (Is(sName, "channels") && value.IsArray() && Universes::HasUniverse(nUniverse)) {
            unsigned char* pLevels = &universes.levels[Universes::At(nUniverse, 0)];
            bool* pStates = &universes.states[Universes::At(nUniverse, 0)];
            std::fill_n(pStates, Universes::Channels, false);
            value.ForEachElement(
                [&](const JSONNode& channel) { readChannel(channel, pLevels, pStates, pLevel); });
        }
    });
    return nUniverse;
}
