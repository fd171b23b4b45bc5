#pragma once

#include <QObject>

/// Takes what tells the program to end (Ctrl+C, SIGTERM, the terminal's end), so that what is open can be
/// closed. Terminals and service managers send two of them side by side: what comes while that goes on is
/// taken as well.
class TerminationSignals : public QObject {
    Q_OBJECT

public:
    TerminationSignals();
    ~TerminationSignals() override;
    TerminationSignals(const TerminationSignals&) = delete;
    TerminationSignals& operator=(const TerminationSignals&) = delete;

    /// Has the signals wait for such an object: to be called before another thread is made, whose end by a
    /// signal would be the program's.
    static void Hold();

    /// Ends the event loop. From here on another signal ends the program at once.
    static void End();

signals:
    /// The program is told to end. Unless End() is called before, that is done a tenth of a second later.
    void asked();

private:
    int m_nDescriptor;
};
