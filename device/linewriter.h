#pragma once

#include "device/worker.h"

#include <QString>

/// A line holds texts of others: what would move a terminal's cursor, break the line or turn it around is
/// escaped.
QString Printable(const QString& sText);

/// Writes lines to a descriptor without ever waiting for it: a terminal stopped by Ctrl+S, a pipe that nobody
/// reads. What there is no room for is lost, and counted: "12 lines lost" stands before the next line that is
/// written. The descriptor stays as it is, for it is shared with the shell and whoever else writes there.
class LineWriter {
public:
    explicit LineWriter(int nDescriptor);

    /// Writes a line, given without its end, as Printable() has it; of more than 4,000 characters the rest is
    /// left out.
    void Write(const QString& sLine);
    /// Waits half a second at most for all lines to be written.
    void Finish() { m_worker.Finish(); }

private:
    int m_nDescriptor;
    int m_nLost = 0;
    Worker m_worker;
};
