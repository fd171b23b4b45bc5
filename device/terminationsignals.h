#pragma once

#include <QObject>

/// Takes what tells the program to end (Ctrl+C, SIGTERM, the terminal's end), so that what is open can be
/// closed. Terminals and service managers send two of them side by side: after the first no other is let
/// through, until the program has ended.
class TerminationSignals : public QObject {
    Q_OBJECT

public:
    TerminationSignals();
    ~TerminationSignals() override;
    Q_DISABLE_COPY_MOVE(TerminationSignals)

    /// Has the signals wait for such an object: to be called before another thread is made, whose end by a
    /// signal would be the program's.
    static void Hold();

signals:
    /// The program is told to end. A tenth of a second later the event loop ends, unless it has before.
    void asked();

private:
    int m_nDescriptor;
};
