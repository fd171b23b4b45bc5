#include "settings/cinifile.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStandardPaths>
#include <QStringList>
#include <QTextStream>

#include <algorithm>
#include <sys/stat.h>

namespace {

constexpr int MaxLinks = 40;
constexpr qint64 MaxFile = qint64{16} * 1024 * 1024;

/// Beside the program, or in the user's own folder, which is made for the user alone. What lies in /usr
/// belongs to all: settings that root left there would be everyone's, and nobody's to change.
QString SettingsPath() {
    const QFileInfo beside(QCoreApplication::applicationDirPath() + "/Corvane.ini");
    const bool bOwn = QFileInfo(beside.path()).isWritable() && !beside.path().startsWith("/usr/");
    if (bOwn || beside.exists() || beside.isSymLink()) {
        return beside.filePath();
    }
    const QString sFolder =
        QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + "/corvane";
    const mode_t mask = ::umask(S_IRWXG | S_IRWXO);
    QDir().mkpath(sFolder);
    ::umask(mask);
    return sFolder + "/Corvane.ini";
}

/// "1|0|1" for as many flags as there are; any other count leaves them alone.
template <std::size_t N>
void ReadFlags(const QString& sValue, std::array<bool, N>& flags) {
    const QStringList parts = sValue.split('|');
    if (parts.size() != static_cast<int>(N)) {
        return;
    }
    std::transform(parts.begin(), parts.end(), flags.begin(),
                   [](const QString& s) { return s.toInt() == 1; });
}

template <std::size_t N>
QString FlagsText(const std::array<bool, N>& flags) {
    QStringList parts;
    for (const bool bFlag : flags) {
        parts.append(QString::number(int{bFlag}));
    }
    return parts.join('|');
}

void ReadRecords(const QString& sValue, QList<SceneParam>& records) {
    const QStringList parts = sValue.split('|');
    for (const QString& sPart : parts) {
        const QStringList fields = sPart.split(';');
        if (fields.size() != 4) {
            continue;
        }
        SceneParam record{fields[0].toInt(), fields[1], fields[2], QColor()};
        const int nColor = fields[3].toInt();
        if (nColor >= 0) {
            record.color.setRgb(nColor & 255, (nColor >> 8) & 255, (nColor >> 16) & 255);
        }
        records.append(record);
    }
}

/// The arguments are filled in one after the other: a "%4" in a name takes part, which is how files have
/// always been written.
QString RecordsText(const QList<SceneParam>& records) {
    QStringList parts;
    for (const SceneParam& record : records) {
        if (record.color.isValid()) {
            const int nColor = record.color.red() + 256 * record.color.green() + 65536 * record.color.blue();
            parts.append(QString("%1;%2;%3;%4").arg(record.id).arg(record.name).arg(record.icon).arg(nColor));
        } else {
            parts.append(QString("%1;%2;%3;-1").arg(record.id).arg(record.name).arg(record.icon));
        }
    }
    return parts.join('|');
}

template <typename Records>
auto Find(Records& records, int nId) {
    return std::find_if(records.begin(), records.end(), [nId](const SceneParam& r) { return r.id == nId; });
}

/// False where there may be a new file but not in the old one's place.
bool Replace(const QString& sPath, const QByteArray& text) {
    QSaveFile file(sPath);
    const mode_t mask = ::umask(S_IRWXG | S_IRWXO);
    const bool bOpen = file.open(QIODevice::WriteOnly);
    ::umask(mask);
    if (!bOpen) {
        return true;
    }
    // What is still in the file's own buffer fails on a full disk, too, and commit() does not look at that.
    if (file.write(text) != text.size() || !file.flush()) {
        file.cancelWriting();
    }
    return file.commit() || file.error() != QFileDevice::RenameError;
}

/// Shortens the file last, so that a full disk leaves most of it.
void Overwrite(const QString& sPath, const QByteArray& text) {
    QFile file(sPath);
    if (file.open(QIODevice::ReadWrite | QIODevice::ExistingOnly) && file.write(text) == text.size() &&
        file.flush()) {
        file.resize(text.size());
    }
}

template <typename Value>
void ReplaceIf(bool bSet, Value& old, const Value& value) {
    if (bSet) {
        old = value;
    }
}

void Merge(QList<SceneParam>& records, int nId, const QString& sName, const QString& sIcon,
           const QColor& color) {
    const auto record = Find(records, nId);
    if (record == records.end()) {
        records.append({nId, sName, sIcon, color});
    } else {
        ReplaceIf(!sName.isEmpty(), record->name, sName);
        ReplaceIf(!sIcon.isEmpty(), record->icon, sIcon);
        ReplaceIf(color.isValid(), record->color, color);
    }
}

}  // namespace

CIniFile::CIniFile() : path(SettingsPath()) {}

void CIniFile::Read() {
    scenes.clear();
    programs.clear();
    const QFileInfo info(path);
    QFile file(path);
    m_bRefused = info.exists() && (!info.isFile() || info.size() > MaxFile ||
                                   !file.open(QIODevice::ReadOnly | QIODevice::Text));
    if (m_bRefused || !info.exists()) {
        return;
    }
    QTextStream stream(file.read(std::min(MaxFile, file.size())));
    QString sLine;
    while (stream.readLineInto(&sLine)) {
        const auto nEquals = sLine.indexOf('=');
        if (nEquals < 1) {
            continue;
        }
        const QString sKey = sLine.left(nEquals);
        const QString sValue = sLine.mid(nEquals + 1);
        if (sKey == "PwdState") {
            pwdState = sValue.toInt() == 1;
        } else if (sKey == "PwdValue") {
            pwdValue = sValue;
        } else if (sKey == "MenuVisible") {
            ReadFlags(sValue, menuVisible);
        } else if (sKey == "SceneParams") {
            ReadFlags(sValue, sceneParams);
        } else if (sKey == "Scenes") {
            ReadRecords(sValue, scenes);
        } else if (sKey == "Programs") {
            ReadRecords(sValue, programs);
        }
    }
}

void CIniFile::Write() const {
    QFileInfo target(path);
    for (int nLinks = 0; target.isSymLink() && nLinks < MaxLinks; ++nLinks) {
        target.setFile(target.symLinkTarget());  // which need not be there yet
    }
    if (m_bRefused || target.isSymLink() || (target.exists() && !target.isFile())) {
        return;
    }
    if (!QFileInfo(target.path()).isWritable() || !Replace(target.filePath(), Text())) {
        Overwrite(target.filePath(), Text());
    }
}

QByteArray CIniFile::Text() const {
    QByteArray text;
    QTextStream stream(&text);
    stream << "PwdState=" << int{pwdState} << '\n';
    stream << "PwdValue=" << OneLine(pwdValue) << '\n';
    stream << "MenuVisible=" << FlagsText(menuVisible) << '\n';
    stream << "SceneParams=" << FlagsText(sceneParams) << '\n';
    if (!scenes.isEmpty()) {
        stream << "Scenes=" << OneLine(RecordsText(scenes)) << '\n';
    }
    if (!programs.isEmpty()) {
        stream << "Programs=" << OneLine(RecordsText(programs)) << '\n';
    }
    stream.flush();
    return text;
}

QString CIniFile::OneLine(QString sText) {
    const auto breaks = [](QChar c) {
        return c.category() == QChar::Other_Control || c.category() == QChar::Separator_Line ||
               c.category() == QChar::Separator_Paragraph;
    };
    while (!sText.isEmpty() && breaks(sText.back())) {
        sText.chop(1);
    }
    const auto first = std::find_if_not(sText.begin(), sText.end(), breaks);
    sText.remove(0, static_cast<int>(first - sText.begin()));
    std::replace_if(sText.begin(), sText.end(), breaks, QChar(' '));
    return sText;
}

void CIniFile::SetSceneParams(int nId, QString& sName, QString& sIcon, QColor& color) const {
    Overlay(scenes, nId, sName, sIcon, color);
}

void CIniFile::SetProgramParams(int nId, QString& sName, QString& sIcon, QColor& color) const {
    Overlay(programs, nId, sName, sIcon, color);
}

void CIniFile::SaveSceneParams(int nId, const QString& sName, const QString& sIcon, const QColor& color) {
    Merge(scenes, nId, sName, sIcon, color);
}

void CIniFile::SaveProgramParams(int nId, const QString& sName, const QString& sIcon, const QColor& color) {
    Merge(programs, nId, sName, sIcon, color);
}

void CIniFile::Overlay(const QList<SceneParam>& records, int nId, QString& sName, QString& sIcon,
                       QColor& color) const {
    const auto record = Find(records, nId);
    if (record != records.end()) {
        ReplaceIf(sceneParams[0] && !record->name.isEmpty(), sName, record->name);
        ReplaceIf(sceneParams[1] && !record->icon.isEmpty(), sIcon, record->icon);
        ReplaceIf(sceneParams[2] && record->color.isValid(), color, record->color);
    }
}
