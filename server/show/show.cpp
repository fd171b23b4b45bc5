#include "server/show/show.h"

#include "server/show/showreader.h"

#include <QFile>
#include <QFileInfo>

#include <stdexcept>

namespace {

constexpr qint64 MaxFile = qint64{16} * 1024 * 1024;

}  // namespace

QByteArray Show::BuiltInText() {
    Q_INIT_RESOURCE(shows);
    QFile file(":/shows/house.json");
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

Show Show::BuiltIn() {
    return ReadShow("the built-in show", BuiltInText());
}

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
