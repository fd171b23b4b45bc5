#pragma once

#include "settings/sceneparam.h"

#include <QList>
#include <QString>

#include <array>

/// Everything the user sets up, and the text file that keeps it between runs: lines of
/// key=value, read once at start and written once at exit. Failures are silent: a remote that cannot read or
/// write its settings still works.
///
/// Records are found by the scene's or program's id alone, whichever server it belongs to; the first record
/// of an id counts.
class CIniFile {
public:
    /// The defaults, and a path beside the program, where there is such a file or may be one; else in the
    /// user's configuration folder. Reads no file.
    CIniFile();

    /// Loads the file. Without one the records are emptied and the rest stays as it is; a malformed line,
    /// flag list or record costs itself only. What is no regular file, or larger than 16 MB, is not opened.
    /// What could not be read is never written over.
    void Read();

    /// Replaces the file, or the one it links to, as a whole, so that a crash or a full disk leaves the old
    /// one. Where it cannot be replaced but written (its folder takes no new file, it is mounted there), it
    /// is written in place. A new file is its owner's alone; what is no regular file is left alone.
    ///
    /// Texts are written as they are, but for their control characters: a name with ';' or '|' in it does not
    /// come back, and one with '%' and a digit may come back changed.
    void Write() const;

    /// A text on one line: with a blank for each control character or line separator, but for those at its
    /// ends.
    static QString OneLine(QString sText);

    /// Overlay what the user made of a scene or program onto its name, icon and colour, each only if the user
    /// set it and its kind of customisation is switched on.
    void SetSceneParams(int nId, QString& sName, QString& sIcon, QColor& color) const;
    void SetProgramParams(int nId, QString& sName, QString& sIcon, QColor& color) const;

    /// Merge a change into the records. An empty text or an invalid colour leaves that field as it is stored,
    /// so nothing can be cleared this way.
    void SaveSceneParams(int nId, const QString& sName, const QString& sIcon, const QColor& color);
    void SaveProgramParams(int nId, const QString& sName, const QString& sIcon, const QColor& color);

    QString path;
    bool pwdState = false;  ///< the parameters page starts locked
    QString pwdValue;       ///< as typed: the lock guards against careless hands, it keeps no secret
    std::array<bool, 4> menuVisible{true, true, true, true};  ///< scenes, programs, colour, channels
    std::array<bool, 3> sceneParams{true, true, true};        ///< apply names, icons, colours
    QList<SceneParam> scenes;
    QList<SceneParam> programs;

private:
    bool m_bRefused = false;  ///< there is a file that could not be read

    QByteArray Text() const;
    void Overlay(const QList<SceneParam>& records, int nId, QString& sName, QString& sIcon,
                 QColor& color) const;
};
