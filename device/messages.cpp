#include "device/messages.h"

#include "device/jsonwriter.h"
#include "device/universes.h"

namespace {

/// Begins a message of a type and leaves its "content" open for members.
JSONWriter Begin(MessageType type, std::size_t nReserve = 2048) {
    JSONWriter writer(nReserve);
    writer.BeginObject().Member("typ", static_cast<int>(type)).BeginObject("content");
    return writer;
}

std::string End(JSONWriter& writer) {
    return writer.EndObject().EndObject().Take();
}

void WriteLevels(JSONWriter& writer, const Color& color) {
    writer.BeginObject("color");
    writer.Member("r", color.r).Member("g", color.g).Member("b", color.b).Member("w", color.w);
    writer.EndObject();
}

}  // namespace

namespace messages {

std::string Bare(MessageType type) {
    JSONWriter writer;
    return writer.BeginObject().Member("typ", static_cast<int>(type)).EndObject().Take();
}

std::string Scene(int nId, int nArea, bool bState) {
    JSONWriter writer = Begin(MessageType::Scene);
    writer.Member("id", nId).Member("a", nArea).Member("s", bState);
    return End(writer);
}

std::string Program(int nId, bool bState) {
    JSONWriter writer = Begin(MessageType::Program);
    writer.Member("id", nId).Member("s", bState);
    return End(writer);
}

std::string Color(const ::Color& color) {
    JSONWriter writer = Begin(MessageType::Color);
    WriteContent(writer, color);
    return End(writer);
}

std::string Command(const ::Command& command) {
    JSONWriter writer = Begin(MessageType::Command);
    WriteContent(writer, command);
    return End(writer);
}

void WriteContent(JSONWriter& writer, const ::Color& color) {
    WriteLevels(writer, color);
    writer.Member("rgbw", color.rgbw).Member("s", color.state);
}

void WriteContent(JSONWriter& writer, const ::Command& command) {
    writer.Member("bo", command.bo).Member("next", command.next).Member("prev", command.prev);
    writer.Member("white", command.white).Member("hold", command.hold);
    writer.Member("dim", command.dim).Member("speed", command.speed);
}

std::string Channel(const DmxChan& channel) {
    JSONWriter writer = Begin(MessageType::Channel);
    writer.Member("chan", channel.chan).Member("univ", channel.univ);
    writer.Member("level", channel.level).Member("s", channel.state);
    return End(writer);
}

std::string Universe(int nUniverse, unsigned char ucLevel, bool bState) {
    JSONWriter writer = Begin(MessageType::Universe, std::size_t{64} * 1024);
    writer.Member("universe", nUniverse).BeginArray("channels");
    for (int nChannel = 0; nChannel < Universes::Channels; ++nChannel) {
        writer.BeginObject().Member("c", nChannel).Member("l", int{ucLevel}).Member("s", bState).EndObject();
    }
    writer.EndArray();
    return End(writer);
}

std::string Universe(int nUniverse, const Universes& universes) {
    JSONWriter writer = Begin(MessageType::Universe, std::size_t{64} * Universes::Channels);
    writer.Member("universe", nUniverse).BeginArray("channels");
    for (int nChannel = 0; Universes::HasUniverse(nUniverse) && nChannel < Universes::Channels; ++nChannel) {
        const std::size_t at = Universes::At(nUniverse, nChannel);
        if (universes.states.at(at)) {
            writer.BeginObject().Member("c", nChannel).Member("l", int{universes.levels.at(at)});
            writer.Member("s", true).EndObject();
        }
    }
    writer.EndArray();
    return End(writer);
}

std::string UniverseColor(int nUniverse, int nChannel, int nNumber, const ::Color& color) {
    JSONWriter writer = Begin(MessageType::UniverseColor);
    writer.Member("universe", nUniverse).Member("chan", nChannel).Member("number", nNumber);
    WriteLevels(writer, color);
    writer.Member("rgbw", color.rgbw);
    return End(writer);
}

std::string Record(const Recording& recording) {
    JSONWriter writer = Begin(MessageType::Record);
    writer.Member("n", recording.name).Member("a", recording.area);
    writer.Member("fade", recording.fadeMs).Member("only", recording.only);
    return End(writer);
}

}  // namespace messages
