#pragma once

#include "device/linewriter.h"

/// What happens, one line each, on standard output: with date and time, unless the system's journal, which
/// has its own, reads it. No line ever waits: see LineWriter.
class Log {
public:
    Log();

    void Write(const QString& sLine);

private:
    bool m_bStamps;
    LineWriter m_lines;
};
