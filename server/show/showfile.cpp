#include "server/show/showfile.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <stdexcept>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace {

/// How often it is looked at, and how long it must rest before it is read.
constexpr int LookMs = 200;

}  // namespace

ShowFile::ShowFile(QString sPath) : m_sPath(std::move(sPath)) {
    m_timer.setInterval(LookMs);
    connect(&m_timer, &QTimer::timeout, this, &ShowFile::Look);
}

Show ShowFile::Load() {
    m_known = CurrentVersion();  // before the text: what is saved meanwhile is another version
    return Show::Load(m_sPath);
}

void ShowFile::Save(const QByteArray& text) {
    const QString sTarget = QFileInfo(m_sPath).canonicalFilePath();
    struct stat before {};
    ::stat(QFile::encodeName(sTarget), &before);
    QSaveFile file(sTarget);
    file.setDirectWriteFallback(true);
    const bool bWritten = text.size() <= Show::MostBytes && file.open(QIODevice::WriteOnly) &&
                          file.write(text) == text.size() && file.flush() && file.commit();
    if (!bWritten) {
        throw std::runtime_error(m_sPath.toStdString() + ": " +
                                 (text.size() <= Show::MostBytes ? file.errorString().toStdString()
                                                                 : "the show would be too large"));
    }
    // A server that root started must not take the file away from its author; others cannot.
    static_cast<void>(::chown(QFile::encodeName(sTarget), before.st_uid, before.st_gid) == 0);
    m_known = CurrentVersion();
}

std::optional<ShowFile::Version> ShowFile::CurrentVersion() const {
    struct stat now {};
    if (::stat(QFile::encodeName(m_sPath), &now) != 0) {
        return std::nullopt;
    }
    return Version(now.st_dev, now.st_ino, now.st_size, now.st_mtim.tv_sec, now.st_mtim.tv_nsec);
}

void ShowFile::Look() {
    const std::optional<Version> now = CurrentVersion();
    const bool bRests = now == std::exchange(m_seen, now);
    if (now && bRests && now != m_known) {
        m_known = now;
        emit edited();
    }
}
