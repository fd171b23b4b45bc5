#include "server/show/show.h"

#include "server/show/showreader.h"

#include <QFile>
#include <QFileInfo>

#include <stdexcept>

QByteArray Show::BuiltInText() {
    Q_INIT_RESOURCE(shows);
    QFile file(":/shows/house.json");
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

Show Show::BuiltIn() {
    return ReadShow("the built-in show", BuiltInText());
}

Show Show::Load(const QString& sPath) {
    return ReadShow(sPath, ReadFile(sPath));
}

QByteArray Show::ReadFile(const QString& sPath) {
    const QFileInfo info(sPath);
    if (info.exists() && (!info.isFile() || info.size() > MostBytes)) {
        throw std::runtime_error(sPath.toStdString() + ": not a regular file below 16 MB");
    }
    QFile file(sPath);
    if (!file.open(QIODevice::ReadOnly)) {
        throw std::runtime_error(sPath.toStdString() + ": " + file.errorString().toStdString());
    }
    return file.read(MostBytes);
}
