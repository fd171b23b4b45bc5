#pragma once

#include <QFile>

inline QByteArray TextOf(const QString& sPath) {
    QFile file(sPath);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no file");
}

/// Gives the path back.
inline QString WriteFile(const QString& sPath, const QByteArray& text) {
    QFile file(sPath);
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size()) {
        qFatal("cannot write %s", qPrintable(sPath));
    }
    return sPath;
}
