#include "device/readers.h"

#include <algorithm>

void readInto(const JSONNode& node, Scene& scene) {
    node.ForEachMember([&scene](std::string_view sName, const JSONNode& value) {
        if (sName == "n") {
            scene.name = value.AsText();
        } else if (sName == "id") {
            scene.id = value.AsInt();
        } else if (sName == "a") {
            scene.area = value.AsInt();
        } else if (sName == "l") {
            scene.level = value.AsInt();
        } else if (sName == "s") {
            scene.state = value.AsBool();
        }
    });
}

void readInto(const JSONNode& node, Color& color) {
    node.ForEachMember([&color](std::string_view sName, const JSONNode& value) {
        if (sName == "rgbw") {
            color.rgbw = value.AsBool();
        } else if (sName == "s") {
            color.state = value.AsBool();
        } else if (sName == "color") {
            value.ForEachMember([&color](std::string_view sLevel, const JSONNode& level) {
                if (sLevel == "r") {
                    color.r = level.AsInt();
                } else if (sLevel == "g") {
                    color.g = level.AsInt();
                } else if (sLevel == "b") {
                    color.b = level.AsInt();
                } else if (sLevel == "w") {
                    color.w = level.AsInt();
                }
            });
        }
    });
}

void readInto(const JSONNode& node, Command& command) {
    node.ForEachMember([&command](std::string_view sName, const JSONNode& value) {
        if (sName == "bo") {
            command.bo = value.AsBool();
        } else if (sName == "next") {
            command.next = value.AsBool();
        } else if (sName == "prev") {
            command.prev = value.AsBool();
        } else if (sName == "white") {
            command.white = value.AsBool();
        } else if (sName == "hold") {
            command.hold = value.AsBool();
        } else if (sName == "dim") {
            command.dim = value.AsInt();
        } else if (sName == "speed") {
            command.speed = value.AsInt();
        }
    });
}

void readInto(const JSONNode& node, DmxChan& channel) {
    node.ForEachMember([&channel](std::string_view sName, const JSONNode& value) {
        if (sName == "chan") {
            channel.chan = value.AsInt();
        } else if (sName == "univ") {
            channel.univ = value.AsInt();
        } else if (sName == "level") {
            channel.level = value.AsInt();
        } else if (sName == "s") {
            channel.state = value.AsBool();
        }
    });
}

namespace {

void readChannel(const JSONNode& node, Universes& universes, int nUniverse) {
    int nChannel = -1;
    node.ForEachMember([&](std::string_view sName, const JSONNode& value) {
        if (sName == "c") {
            nChannel = value.AsInt();
        } else if (!Universes::HasChannel(nChannel)) {
            return;
        } else if (sName == "l") {
            universes.levels[Universes::At(nUniverse, nChannel)] = static_cast<unsigned char>(value.AsInt());
        } else if (sName == "s") {
            universes.states[Universes::At(nUniverse, nChannel)] = value.AsBool();
        }
    });
}

}  // namespace

int readInto(const JSONNode& node, Universes& universes) {
    int nUniverse = -1;
    node.ForEachMember([&](std::string_view sName, const JSONNode& value) {
        if (sName == "universe") {
            nUniverse = value.AsInt();
        } else if (sName == "channels" && value.IsArray() && Universes::HasUniverse(nUniverse)) {
            std::fill_n(&universes.states[Universes::At(nUniverse, 0)], Universes::Channels, false);
            value.ForEachElement(
                [&](const JSONNode& channel) { readChannel(channel, universes, nUniverse); });
        }
    });
    return nUniverse;
}
