#pragma once

#include "server/show/show.h"

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QTimer>

#include <tuple>

/// The file of the show that is played. It is looked at by its name, so that it does not matter whether it is
/// written in place, replaced, or reached by a link, nor on what kind of disk it lies.
class ShowFile : public QObject {
    Q_OBJECT

public:
    explicit ShowFile(QString sPath);

    const QString& Path() const { return m_sPath; }

    /// Throws std::runtime_error with one line: no such file, no regular file or one of 16 MB and more
    /// (neither is opened).
    QByteArray Text() const;

    /// The show as it is now; edited() is about later ones. Throws as Text and ReadShow.
    Show Load();

    /// Replaces the whole text, or nothing of it; the file's rights, its owner and a link to it stay. One of
    /// several names is written in place. Throws std::runtime_error with one line if that cannot be.
    void Save(const QByteArray& text);

    /// From now on edited() is told.
    void Watch() { m_timer.start(); }

signals:
    /// It was saved by someone else, and has rested since. Once for each time; never for a file that is gone.
    void edited();

private:
    using Version = std::tuple<quint64, quint64, qint64, qint64, qint64>;

    [[noreturn]] void Fail(const QString& sWhat) const;
    /// Differs after each change; Version() while there is no file.
    Version CurrentVersion() const;
    void Look();

    QString m_sPath;
    QTimer m_timer;
    Version m_known;  ///< as it was read or written
    Version m_seen;   ///< as it was at the last look
};
