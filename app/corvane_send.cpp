#include "app/corvane.h"
#include "device/messages.h"
#include "widgets/channelsgrid.h"
#include "widgets/cparamsctrl.h"

// A request's answer may come in fragments: pieces of an earlier one must not get in its way.

void Corvane::SendAlive() {
    SendPacket(messages::Bare(MessageType::Alive), false);
    m_aliveTimer.start();
}

void Corvane::SendSerial() {
    m_fragments.Clear();
    SendPacket(messages::Bare(MessageType::Discovery), false);
    m_requestTimer.start();
}

void Corvane::SendState() {
    m_fragments.Clear();
    m_pParams->UpdateIp();
    SetServer(m_pParams->GetIp());
    SendPacket(messages::Bare(MessageType::StateRequest), false);
}

void Corvane::SendSceneState() {
    m_fragments.Clear();
    SendPacket(messages::Bare(MessageType::ScenePoll), true);
}

void Corvane::SendCmdState() {
    m_fragments.Clear();
    SendPacket(messages::Bare(MessageType::CommandPoll), true);
}

void Corvane::SendDmxState() {
    m_fragments.Clear();
    SendPacket(messages::Bare(MessageType::ChannelPoll), true);
}

void Corvane::SendColor() {
    SendPacket(messages::Color(m_color), true);
    m_release.reset();  // an older one would undo this
}

void Corvane::SendCommand() {
    SendPacket(messages::Command(m_command), true);
}

void Corvane::SendUniverse() {
    static bool bHold = false;
    bHold = !bHold;
    SendPacket(messages::Universe(0, 127, bHold), true);
    m_pGrid->Update(0, 127, bHold);
}

void Corvane::SendUniverseSingleLevel() {
    static bool bHold = false;
    bHold = !bHold;
    SendPacket(messages::Channel({-1, 0, 127, bHold}), true);
    m_pGrid->Update(0, 127, bHold);
}

void Corvane::SendUniverseColor() {
    SendPacket(messages::UniverseColor(0, 0, 100, {50, 100, 200, 0, false, false}), true);
    m_pGrid->Update(0, 0, 100, 50, 100, 200, 0, false);
}
