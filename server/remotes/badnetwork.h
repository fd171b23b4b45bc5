#pragma once

#include <QElapsedTimer>
#include <QObject>

#include <functional>

/// A bad network to rehearse with: what it is asked to carry comes late, twice, in another order or not at
/// all. It is as bad as its options say, which leave everything as it is where they are left alone.
class BadNetwork : public QObject {
    Q_OBJECT

public:
    struct Options {
        int silentAfter = -1;  ///< seconds until nothing comes in any more; -1 never
        int delayMs = 0;       ///< how late each datagram leaves; 16 MiB may be waiting, more are lost
        // For what comes as well as for what leaves: how many of 100 datagrams it
        int dropPercent = 0;       ///< loses
        int duplicatePercent = 0;  ///< brings twice
        int reorderPercent = 0;    ///< lets others overtake
    };
    enum Way { In, Out };

    explicit BadNetwork(const Options& options) : m_options(options) { m_upTime.start(); }

    /// Has `deliver` called for a datagram of `nBytes`: not at all, once or twice, now or later.
    void Carry(Way way, qint64 nBytes, const std::function<void()>& deliver);

private:
    Options m_options;
    QElapsedTimer m_upTime;
    qint64 m_nLateBytes = 0;  ///< of the datagrams that wait
};
