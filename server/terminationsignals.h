#pragma once

#include <QObject>

/// Ends the event loop when the program is told to end (Ctrl+C, SIGTERM, the terminal's end), so that what is
/// open can be closed. A second such signal ends the program at once.
class TerminationSignals : public QObject {
    Q_OBJECT

public:
    TerminationSignals();
    ~TerminationSignals() override;
    TerminationSignals(const TerminationSignals&) = delete;
    TerminationSignals& operator=(const TerminationSignals&) = delete;

private:
    int m_nDescriptor;
};
