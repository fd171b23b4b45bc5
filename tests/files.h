#pragma once

#include <QFile>
#include <QStringList>

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

/// The rows of a table, each a list of its cells, which have "=>" between them. A row goes on in lines that
/// are set in.
inline QList<QStringList> Table(QString sText) {
    QList<QStringList> rows;
    for (const QString& sRow : sText.replace("\n ", " ").split('\n', Qt::SkipEmptyParts)) {
        rows.append(QStringList());
        for (const QString& sCell : sRow.split("=>")) {
            rows.last() += sCell.simplified();
        }
    }
    return rows;
}
