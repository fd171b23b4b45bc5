#include "server/log.h"

#include <QDateTime>

#include <sys/stat.h>
#include <unistd.h>

namespace {

/// Whoever starts the program by systemd says so, by the device and the file that the journal reads.
bool IsReadByJournal() {
    struct stat output {};
    return fstat(STDOUT_FILENO, &output) == 0 &&
           qgetenv("JOURNAL_STREAM") ==
               QByteArray::number(quint64{output.st_dev}) + ':' + QByteArray::number(quint64{output.st_ino});
}

}  // namespace

Log::Log() : m_bStamps(!IsReadByJournal()), m_lines(STDOUT_FILENO) {}

void Log::Write(const QString& sLine) {
    const QString sStamp =
        m_bStamps ? QDateTime::currentDateTime().toString("yyyy-MM-dd HH:mm:ss.zzz ") : QString();
    m_lines.Write(sStamp + sLine);
}
