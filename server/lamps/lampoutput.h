#pragma once

#include "server/lamps/playback.h"
#include "server/lamps/sacnsender.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <memory>

/// Sends the levels of what is played: 40 frames a second while something moves, a frame at once when
/// something changes that stood still.
class LampOutput : public QObject {
    Q_OBJECT

public:
    /// The state must outlive it.
    LampOutput(const State& state, const SacnSender::Options& options, const SacnSender::Log& log);

    /// Begins to send, or to wait for what it sends by.
    void Start();
    /// Ends all streams, which takes a few frames.
    void Finish();

    /// See Playback::OpenLevels.
    Levels OpenLevels() const { return m_pPlayback->OpenLevels(m_clock.elapsed()); }

signals:
    /// All streams have ended.
    void finished();

private:
    void PlayNewShow();
    void SendSoon();
    void SendFrame();

    const State& m_state;
    QElapsedTimer m_clock;
    std::unique_ptr<Playback> m_pPlayback;
    Levels m_open{};  ///< of a show that is being replaced
    SacnSender m_sender;
    QTimer m_timer;
    Levels m_levels{};
    UniverseSet m_used;
    qint64 m_nFrameMs = 0;   ///< when the last one left
    int m_nLastFrames = -1;  ///< how many are still sent; -1 is no end
    bool m_bChanged = true;  ///< something was switched, taken, held or released since
};
