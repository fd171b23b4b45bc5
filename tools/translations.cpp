// Compiles translations as Qt's lrelease does, whose package would bring fifty megabytes of others:
//
//   translations OUT.qm IN.ts...

#include <QByteArray>
#include <QDataStream>
#include <QFile>
#include <QMap>
#include <QXmlStreamReader>

#include <cstdio>

namespace {

constexpr quint8 End = 1, Translation = 3, SourceText = 6, Context = 7, Comment = 8;  // of a message
constexpr quint8 Hashes = 0x42, Messages = 0x69;                                      // of the file
constexpr char Magic[] = "\x3c\xb8\x64\x18\xca\xef\x9c\x95\xcd\x21\x1c\xbf\x60\xa1\xbd\xdd";

/// Under which QTranslator looks a text up.
quint32 Hash(const QByteArray& text) {
    quint32 hash = 0;
    for (const char letter : text) {
        hash = (hash << 4) + static_cast<quint8>(letter);
        const quint32 high = hash & 0xf0000000;
        hash = (hash ^ (high >> 24)) & ~high;
    }
    return hash != 0 ? hash : 1;
}

/// The compiled file: texts, and where each hash finds its own.
struct Release {
    QMap<quint32, QList<quint32>> offsets;
    QByteArray messages;

    void Add(const QByteArray& context, const QByteArray& source, const QByteArray& comment,
             const QString& sTranslation) {
        offsets[Hash(source + comment)].append(static_cast<quint32>(messages.size()));
        QDataStream out(&messages, QIODevice::Append);
        out << Translation << sTranslation << SourceText << source << Context << context;
        if (!comment.isEmpty()) {
            out << Comment << comment;
        }
        out << End;
    }

    QByteArray File() const {
        QByteArray hashes;
        QDataStream table(&hashes, QIODevice::WriteOnly);
        for (auto it = offsets.cbegin(); it != offsets.cend(); ++it) {
            for (const quint32 offset : *it) {
                table << it.key() << offset;
            }
        }
        QByteArray file;
        QDataStream out(&file, QIODevice::WriteOnly);
        out.writeRawData(Magic, sizeof Magic - 1);
        out << Hashes << hashes << Messages << messages;
        return file;
    }
};

/// Adds what is translated. False, after a line that says why, for a file that is no translation.
bool Read(const char* pPath, Release& release) {
    QFile file(pPath);
    file.open(QIODevice::ReadOnly);
    QXmlStreamReader xml(&file);
    QMap<QString, QString> texts;
    while (!xml.atEnd()) {
        const auto token = xml.readNext();
        const QString sName = xml.name().toString();
        if (token == QXmlStreamReader::StartElement && sName == "message") {
            texts = {{"name", texts["name"]}};
        } else if (token == QXmlStreamReader::StartElement && sName == "translation") {
            const bool bDone = !xml.attributes().hasAttribute("type");
            texts[sName] = bDone ? xml.readElementText() : QString();
        } else if (token == QXmlStreamReader::StartElement &&
                   (sName == "name" || sName == "source" || sName == "comment")) {
            texts[sName] = xml.readElementText();
        } else if (token == QXmlStreamReader::EndElement && sName == "message" &&
                   !texts["translation"].isEmpty()) {
            release.Add(texts["name"].toUtf8(), texts["source"].toUtf8(), texts["comment"].toUtf8(),
                        texts["translation"]);
        }
    }
    if (xml.hasError()) {
        std::fprintf(stderr, "%s:%lld: %s\n", pPath, static_cast<long long>(xml.lineNumber()),
                     qPrintable(xml.errorString()));
    }
    return !xml.hasError();
}

}  // namespace

int main(int argc, char* argv[]) {
    if (argc < 3) {
        std::fputs("usage: translations OUT.qm IN.ts...\n", stderr);
        return 2;
    }
    Release release;
    for (int i = 2; i < argc; ++i) {
        if (!Read(argv[i], release)) {
            return 1;
        }
    }
    QFile file(argv[1]);
    const QByteArray compiled = release.File();
    return file.open(QIODevice::WriteOnly) && file.write(compiled) == compiled.size() && file.flush() ? 0 : 1;
}
