#include "server/lamps/lampoutput.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace {

constexpr int FrameMs = 25;
/// While nothing moves and nothing is due.
constexpr int StillMs = 1000;
/// The first and the two that tell once more that streams end.
constexpr int LastFrames = 3;

UniverseSet WithHeldChannels(const Universes& universes) {
    UniverseSet held;
    for (int i = 0; i < Universes::Count; ++i) {
        held[static_cast<std::size_t>(i)] = universes.IsHeld(i);
    }
    return held;
}

QElapsedTimer Started() {
    QElapsedTimer clock;
    clock.start();
    return clock;
}

}  // namespace

LampOutput::LampOutput(const State& state, const SacnSender::Options& options, const SacnSender::Log& log)
    : m_state(state),
      m_clock(Started()),
      m_pPlayback(std::make_unique<Playback>(state, [this] { return m_clock.elapsed(); })),
      m_sender(state.CurrentShow().serial, options, log) {
    connect(&state, &State::showLeaves, this, [this] { m_open = OpenLevels(); });
    connect(&state, &State::showReplaced, this, &LampOutput::PlayNewShow);
    connect(&state, &State::changed, this, &LampOutput::SendSoon);
    connect(&m_timer, &QTimer::timeout, this, &LampOutput::SendFrame);
}

void LampOutput::Start() {
    m_timer.setTimerType(Qt::PreciseTimer);
    m_timer.start(0);
}

void LampOutput::Finish() {
    m_nLastFrames = LastFrames;
    m_used.reset();
    SendFrame();
}

void LampOutput::PlayNewShow() {
    auto pPlayback = std::make_unique<Playback>(m_state, [this] { return m_clock.elapsed(); });
    pPlayback->TakeOver(*m_pPlayback, m_open, m_clock.elapsed());
    m_pPlayback = std::move(pPlayback);
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
    if (m_nLastFrames < 0 && (m_bChanged || m_pPlayback->IsMoving(m_nFrameMs))) {
        m_pPlayback->Render(nNowMs, m_levels);
        m_used = m_pPlayback->Patched() | WithHeldChannels(m_state.Held());
        m_bChanged = false;
    }
    m_sender.Send(m_levels, m_used, nNowMs);
    if (m_nLastFrames >= 0 && (m_nLastFrames-- == 0 || !m_sender.IsRunning())) {
        m_timer.stop();
        emit finished();
        return;
    }
    const qint64 nOffMs = nNowMs - m_nFrameMs - m_timer.interval();
    m_nFrameMs = nNowMs;
    const qint64 nWaitMs = m_pPlayback->IsMoving(nNowMs) ? FrameMs : m_sender.DueMs() - nNowMs;
    const int nNextMs = static_cast<int>(std::clamp<qint64>(nWaitMs, FrameMs, StillMs));
    // Left alone, the timer keeps its phase: the next would follow a late frame too soon, and one out of
    // turn.
    if (std::abs(nOffMs) > 1 || nNextMs != m_timer.interval()) {
        m_timer.start(nNextMs);
    }
}
