#include "server/show/showfile.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <algorithm>
#include <stdexcept>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace {

constexpr qint64 MostBytes = qint64{16} * 1024 * 1024 - 1;
/// How often it is looked at, and how long it must rest before it is read.
constexpr int LookMs = 200;

}  // namespace

ShowFile::ShowFile(QString sPath) : m_sPath(std::move(sPath)) {
    m_timer.setInterval(LookMs);
    connect(&m_timer, &QTimer::timeout, this, &ShowFile::Look);
}

void ShowFile::Fail(const QString& sWhat) const {
    throw std::runtime_error((m_sPath + ": " + sWhat).toStdString());
}

QByteArray ShowFile::Text() const {
    const QFileInfo info(m_sPath);
    if (info.exists() && (!info.isFile() || info.size() > MostBytes)) {
        Fail("not a regular file below 16 MB");
    }
    QFile file(m_sPath);
    if (!file.open(QIODevice::ReadOnly)) {
        Fail(file.errorString());
    }
    return file.read(std::min(MostBytes, file.size()));
}

Show ShowFile::Load() {
    m_known = CurrentVersion();  // before the text: what is saved meanwhile is another version
    return ReadShow(m_sPath, Text());
}

void ShowFile::Save(const QByteArray& text) {
    if (text.size() > MostBytes) {
        Fail("the show would be too large");
    }
    const QString sTarget = QFileInfo(m_sPath).canonicalFilePath();
    struct stat before {};
    ::stat(QFile::encodeName(sTarget), &before);
    QSaveFile other(sTarget);
    other.setDirectWriteFallback(true);
    QFile same(sTarget);
    // Another file would take one name only.
    QFileDevice& file = before.st_nlink > 1 ? static_cast<QFileDevice&>(same) : other;
    const bool bWritten = file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && file.flush();
    if (!bWritten || (&file == &other && !other.commit())) {
        Fail(file.errorString());
    }
    // A server that root started must not take the file away from its author; others cannot.
    static_cast<void>(::chown(QFile::encodeName(sTarget), before.st_uid, before.st_gid) == 0);
    m_known = CurrentVersion();
}

ShowFile::Version ShowFile::CurrentVersion() const {
    struct stat now {};
    ::stat(QFile::encodeName(m_sPath), &now);
    return {now.st_dev, now.st_ino, now.st_size, now.st_mtim.tv_sec, now.st_mtim.tv_nsec};
}

void ShowFile::Look() {
    const Version now = CurrentVersion();
    const bool bRests = now == std::exchange(m_seen, now);
    if (now != Version() && bRests && now != m_known) {
        m_known = now;
        emit edited();
    }
}
