#include "server/playback.h"

Playback::Playback(const Show& show, qint64 /*nNowMs*/) {
    for (const Fixture& fixture : show.fixtures) {
        m_patched.set(static_cast<std::size_t>(fixture.universe));
    }
}

void Playback::SwitchScene(int /*nId*/, bool /*bOn*/, qint64 /*nNowMs*/) {}
void Playback::SwitchProgram(int /*nId*/, bool /*bOn*/, qint64 /*nNowMs*/) {}
void Playback::Take(const Color& /*color*/) {}
void Playback::Take(const Command& /*command*/, qint64 /*nNowMs*/) {}

bool Playback::IsMoving(qint64 /*nNowMs*/) const {
    return false;
}

void Playback::Render(const Universes& held, qint64 /*nNowMs*/, Levels& levels) const {
    for (std::size_t at = 0; at < levels.size(); ++at) {
        levels.at(at) = held.states.at(at) ? held.levels.at(at) : static_cast<unsigned char>(0);
    }
}
