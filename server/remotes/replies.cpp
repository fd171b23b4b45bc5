#include "server/remotes/replies.h"

#include "device/fragments.h"
#include "device/jsonwriter.h"
#include "device/messages.h"

namespace {

enum class Which { All, Running };

void WriteEntries(JSONWriter& writer, const char* pKey, const std::vector<Scene>& entries, Which which) {
    writer.BeginObject(pKey).BeginArray("content");
    for (const Scene& entry : entries) {
        if (which == Which::Running && !entry.state) {
            continue;
        }
        writer.BeginObject();
        if (which == Which::All) {
            writer.Member("n", entry.name);
        }
        writer.Member("id", entry.id);
        if (entry.area >= 0) {
            writer.Member("a", entry.area);
        }
        if (which == Which::All) {
            writer.Member("l", entry.level).Member("s", entry.state);
        }
        writer.EndObject();
    }
    writer.EndArray().EndObject();
}

}  // namespace

namespace replies {

std::string Serial(const std::string& sSerial) {
    JSONWriter writer;
    writer.BeginObject().Member("typ", static_cast<int>(MessageType::Serial)).BeginObject("content");
    return writer.Member("serial", sSerial).EndObject().EndObject().Take();
}

std::string State(const Show& show, const Color& color, const Command& command) {
    JSONWriter writer(128 * (16 + show.scenes.size() + show.programs.size()));
    writer.BeginObject().Member("typ", static_cast<int>(MessageType::State)).BeginObject("content");
    WriteEntries(writer, "scn", show.scenes, Which::All);
    WriteEntries(writer, "prg", show.programs, Which::All);
    writer.BeginObject("clr").BeginObject("content");
    messages::WriteContent(writer, color);
    writer.EndObject().EndObject();
    writer.BeginObject("cmd").BeginObject("content");
    messages::WriteContent(writer, command);
    writer.EndObject().EndObject();
    return writer.EndObject().EndObject().Take();
}

std::string SceneStates(const Show& show) {
    JSONWriter writer;
    writer.BeginObject().Member("typ", static_cast<int>(MessageType::SceneStates)).BeginObject("content");
    WriteEntries(writer, "scn", show.scenes, Which::Running);
    WriteEntries(writer, "prg", show.programs, Which::Running);
    return writer.EndObject().EndObject().Take();
}

std::string Recorded(bool bDone, const std::string& sLine) {
    JSONWriter writer;
    writer.BeginObject().Member("typ", static_cast<int>(MessageType::Recorded)).BeginObject("content");
    return writer.Member("s", bDone).Member("text", sLine).EndObject().EndObject().Take();
}

std::vector<std::string> Split(const std::string& sText, std::size_t nSize) {
    if (sText.size() <= nSize) {
        return {sText};
    }
    std::vector<std::string> pieces;
    for (std::size_t nAt = 0; nAt < sText.size(); nAt += nSize) {
        pieces.push_back(sText.substr(nAt, nSize) + Fragments::Marker);
    }
    return pieces;
}

}  // namespace replies
