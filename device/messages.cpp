#include "device/messages.h"

#include "device/jsonwriter.h"
#include "device/members.h"
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

JSONWriter& WriteLevels(JSONWriter& writer, const Color& color) {
    return writer.BeginObject("color").Members(color, LevelMembers).EndObject();
}

}  // namespace

namespace messages {

std::string Bare(MessageType type) {
    return JSONWriter().BeginObject().Member("typ", static_cast<int>(type)).EndObject().Take();
}

std::string Scene(int nId, int nArea, bool bState) {
    return End(Begin(MessageType::Scene).Member("id", nId).Member("a", nArea).Member("s", bState));
}

std::string Program(int nId, bool bState) {
    return End(Begin(MessageType::Program).Member("id", nId).Member("s", bState));
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
    WriteLevels(writer, color).Members(color, ColorMembers);
}

void WriteContent(JSONWriter& writer, const ::Command& command) {
    writer.Members(command, CommandMembers);
}

std::string Channel(const DmxChan& channel) {
    return End(Begin(MessageType::Channel).Members(channel, ChannelMembers));
}

std::string Universe(int nUniverse, unsigned char ucLevel, bool bState) {
    JSONWriter writer = Begin(MessageType::Universe, std::size_t{64} * 1024);
    writer.Member("universe", nUniverse).BeginArray("channels");
    for (int nChannel = 0; nChannel < Universes::Channels; ++nChannel) {
        writer.BeginObject().Member("c", nChannel).Member("l", int{ucLevel}).Member("s", bState).EndObject();
    }
    return End(writer.EndArray());
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
    return End(writer.EndArray());
}

std::string UniverseColor(int nUniverse, int nChannel, int nNumber, const ::Color& color) {
    JSONWriter writer = Begin(MessageType::UniverseColor);
    writer.Member("universe", nUniverse).Member("chan", nChannel).Member("number", nNumber);
    return End(WriteLevels(writer, color).Member("rgbw", color.rgbw));
}

std::string Record(const Recording& recording) {
    return End(Begin(MessageType::Record).Members(recording, RecordingMembers));
}

}  // namespace messages
