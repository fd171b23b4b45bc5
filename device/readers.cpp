#include "device/readers.h"

#include <algorithm>
#include <cstring>

namespace {

/// Whether a member goes by that name. A universe asks this 1,500 times; with a length that the compiler
/// knows, the names are compared in place, without a call.
template <std::size_t N>
bool Is(std::string_view sName, const char (&name)[N]) {
    return sName.size() == N - 1 && std::memcmp(sName.data(), name, N - 1) == 0;
}

}  // namespace

void readInto(const JSONNode& node, Scene& scene) {
    node.ForEachMember([&scene](std::string_view sName, const JSONNode& value) {
        if (Is(sName, "n")) {
            scene.name = value.AsText();
        } else if (Is(sName, "id")) {
            scene.id = value.AsInt();
        } else if (Is(sName, "a")) {
            scene.area = value.AsInt();
        } else if (Is(sName, "l")) {
            scene.level = value.AsInt();
        } else if (Is(sName, "s")) {
            scene.state = value.AsBool();
        }
    });
}

void readInto(const JSONNode& node, Color& color) {
    node.ForEachMember([&color](std::string_view sName, const JSONNode& value) {
        if (Is(sName, "rgbw")) {
            color.rgbw = value.AsBool();
        } else if (Is(sName, "s")) {
            color.state = value.AsBool();
        } else if (Is(sName, "color")) {
            value.ForEachMember([&color](std::string_view sLevel, const JSONNode& level) {
                if (Is(sLevel, "r")) {
                    color.r = level.AsInt();
                } else if (Is(sLevel, "g")) {
                    color.g = level.AsInt();
                } else if (Is(sLevel, "b")) {
                    color.b = level.AsInt();
                } else if (Is(sLevel, "w")) {
                    color.w = level.AsInt();
                }
            });
        }
    });
}

void readInto(const JSONNode& node, Command& command) {
    node.ForEachMember([&command](std::string_view sName, const JSONNode& value) {
        if (Is(sName, "bo")) {
            command.bo = value.AsBool();
        } else if (Is(sName, "next")) {
            command.next = value.AsBool();
        } else if (Is(sName, "prev")) {
            command.prev = value.AsBool();
        } else if (Is(sName, "white")) {
            command.white = value.AsBool();
        } else if (Is(sName, "hold")) {
            command.hold = value.AsBool();
        } else if (Is(sName, "dim")) {
            command.dim = value.AsInt();
        } else if (Is(sName, "speed")) {
            command.speed = value.AsInt();
        }
    });
}

void readInto(const JSONNode& node, DmxChan& channel) {
    node.ForEachMember([&channel](std::string_view sName, const JSONNode& value) {
        if (Is(sName, "chan")) {
            channel.chan = value.AsInt();
        } else if (Is(sName, "univ")) {
            channel.univ = value.AsInt();
        } else if (Is(sName, "level")) {
            channel.level = value.AsInt();
        } else if (Is(sName, "s")) {
            channel.state = value.AsBool();
        }
    });
}

void readInto(const JSONNode& node, Recording& recording) {
    node.ForEachMember([&recording](std::string_view sName, const JSONNode& value) {
        if (Is(sName, "n")) {
            recording.name = value.AsText();
        } else if (Is(sName, "a")) {
            recording.area = value.AsInt();
        } else if (Is(sName, "fade")) {
            recording.fadeMs = value.AsInt();
        } else if (Is(sName, "only")) {
            recording.only = value.AsText();
        }
    });
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
