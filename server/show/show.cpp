#include "server/show/show.h"

#include "server/show/showreader.h"

#include <QFile>
#include <QFileInfo>

#include <stdexcept>

namespace {

constexpr qint64 MaxFile = qint64{16} * 1024 * 1024;

}  // namespace

Show Show::Load(const QString& sPath) {
    const QFileInfo info(sPath);
    if (info.exists() && (!info.isFile() || info.size() >= MaxFile)) {
        throw std::runtime_error(sPath.toStdString() + ": not a regular file below 16 MB");
    }
    QFile file(sPath);
    if (!file.open(QIODevice::ReadOnly)) {
        throw std::runtime_error(sPath.toStdString() + ": " + file.errorString().toStdString());
    }
    return ReadShow(sPath, file.read(MaxFile));
}
