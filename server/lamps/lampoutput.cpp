#include "server/lamps/lampoutput.h"

#include <algorithm>
#include <utility>

namespace {

constexpr int FrameMs = 25;
/// While nothing moves and nothing is due.
constexpr int StillMs = 1000;

UniverseSet WithHeldChannels(const Universes& universes) {
    UniverseSet held;
    for (int i = 0; i < Universes::Count; ++i) {
        held[static_cast<std::size_t>(i)] = universes.IsHeld(i);
    }
    return held;
}

}  // namespace

LampOutput::LampOutput(const State& state, const SacnSender::Options& options, SacnSender::Log log)
    : m_state(state),
      m_playback(state, [this] { return m_clock.elapsed(); }),
      m_sender(state.CurrentShow().serial, options, std::move(log)) {
    connect(&state, &State::changed, this, &LampOutput::SendSoon);
    connect(&m_timer, &QTimer::timeout, this, &LampOutput::SendFrame);
}

bool LampOutput::Start() {
    m_timer.setTimerType(Qt::PreciseTimer);
    m_timer.start(FrameMs);
    return m_sender.Open();
}

/// At once, unless the last frame has only just left.
void LampOutput::SendSoon() {
    if (!m_bChanged) {
        m_bChanged = true;
        m_timer.start(static_cast<int>(std::max<qint64>(0, m_nFrameMs + FrameMs - m_clock.elapsed())));
    }
}

void LampOutput::SendFrame() {
    const qint64 nNowMs = m_clock.elapsed();
    if (m_bChanged || m_playback.IsMoving(m_nFrameMs)) {
        m_playback.Render(nNowMs, m_levels);
        m_used = m_playback.Patched() | WithHeldChannels(m_state.Held());
        m_bChanged = false;
    }
    m_nFrameMs = nNowMs;
    m_sender.Send(m_levels, m_used, nNowMs);
    const qint64 nWaitMs = m_playback.IsMoving(nNowMs) ? FrameMs : m_sender.DueMs() - nNowMs;
    const int nNextMs = static_cast<int>(std::clamp<qint64>(nWaitMs, FrameMs, StillMs));
    if (nNextMs != m_timer.interval()) {
        m_timer.start(nNextMs);
    }
}
