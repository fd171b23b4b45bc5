#include "server/change.h"

#include "device/readers.h"

#include <QStringList>

namespace {

const char* OnOff(bool bState) {
    return bState ? "on" : "off";
}

/// As people count, from 1 on.
QString Universe(int nUniverse) {
    return "universe " + QString::number(qint64{nUniverse} + 1);
}

Change TakeSwitch(State& state, const JSONNode& content, bool bProgram) {
    Scene asked;
    readInto(content, asked);
    const Playable running{bProgram, asked.id};
    Change change;
    change.words =
        QString::asprintf("%s %d %s", bProgram ? "program" : "scene", asked.id, OnOff(asked.state));
    if (state.Switch(running, asked.state)) {
        change.message = bProgram ? messages::Program(asked.id, asked.state)
                                  : messages::Scene(asked.id, state.Find(running)->area, asked.state);
        change.starts = asked.state;
    }
    return change;
}

Change TakeColor(State& state, const JSONNode& content) {
    Color color = state.CurrentColor();
    readInto(content, color);
    state.Take(color);
    const QString sWords = QString::asprintf("color %d %d %d white %d %s", color.r, color.g, color.b, color.w,
                                             OnOff(color.state));
    return {sWords, messages::Color(state.CurrentColor())};
}

Change TakeCommand(State& state, const JSONNode& content) {
    Command command = state.CurrentCommand();
    readInto(content, command);
    state.Take(command);
    QStringList flags{command.white ? "white" : "", command.bo ? "black" : "", command.next ? "next" : "",
                      command.prev ? "previous" : "", command.hold ? "pause" : ""};
    flags.removeAll("");
    const QString sWords =
        QString("commands [%1] dimmer %2 % speed %3 %")
            .arg(flags.join(' '), QString::number(command.dim), QString::number(command.speed));
    return {sWords, messages::Command(state.CurrentCommand())};
}

Change TakeChannel(State& state, const JSONNode& content) {
    DmxChan channel;
    readInto(content, channel);
    state.Hold(channel);
    Change change;
    const QString sChannels = channel.chan == -1 ? "all" : QString::number(qint64{channel.chan} + 1);
    change.words = Universe(channel.univ) + " channel " + sChannels +
                   QString::asprintf(" level %d %s", channel.level, OnOff(channel.state));
    if (channel.chan == -1) {
        change.universe = channel.univ;
    } else if (Universes::HasUniverse(channel.univ) && Universes::HasChannel(channel.chan)) {
        channel.level = state.Held().levels[Universes::At(channel.univ, channel.chan)];
        change.message = messages::Channel(channel);
        change.isLevel = true;
    }
    return change;
}

Change TakeRun(State& state, const JSONNode& content) {
    int nUniverse = -1;
    int nStart = -1;
    int nCount = 0;
    Color color;
    readInto(content, color);
    content.ForEachMember("universe", [&](const JSONNode& value) { nUniverse = value.AsInt(); });
    content.ForEachMember("chan", [&](const JSONNode& value) { nStart = value.AsInt(); });
    content.ForEachMember("number", [&](const JSONNode& value) { nCount = value.AsInt(); });
    state.HoldRun(nUniverse, nStart, nCount, color);
    const QString sWords = Universe(nUniverse) +
                           QString::asprintf(" color on %d fixtures from channel %lld", nCount, nStart + 1LL);
    return {sWords, {}, nUniverse};
}

}  // namespace

std::optional<Change> TakeMessage(State& state, MessageType type, const JSONNode& content) {
    switch (type) {
        case MessageType::Scene:
        case MessageType::Program:
            return TakeSwitch(state, content, type == MessageType::Program);
        case MessageType::Color:
            return TakeColor(state, content);
        case MessageType::Command:
            return TakeCommand(state, content);
        case MessageType::Channel:
            return TakeChannel(state, content);
        case MessageType::Universe: {
            const int nUniverse = state.HoldUniverse(content);
            return Change{Universe(nUniverse), {}, nUniverse};
        }
        case MessageType::UniverseColor:
            return TakeRun(state, content);
        default:
            return {};
    }
}
