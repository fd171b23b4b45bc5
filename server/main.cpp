#include "server/patchsheet.h"
#include "server/playback.h"
#include "server/rehearsalserver.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QTime>

#include <cstdio>
#include <stdexcept>

namespace {

constexpr quint16 Port = 8093;
constexpr quint16 FallBackPort = 8011;

/// A whole number within bounds; throws std::runtime_error with one line for anything else.
int Number(const QCommandLineParser& parser, const QString& sOption, int nLeast, int nMost) {
    bool bOk = false;
    const int nValue = parser.value(sOption).toInt(&bOk);
    if (!bOk || nValue < nLeast || nValue > nMost) {
        throw std::runtime_error(QString("--%1 takes a whole number from %2 to %3, not \"%4\"")
                                     .arg(sOption)
                                     .arg(nLeast)
                                     .arg(nMost)
                                     .arg(parser.value(sOption))
                                     .toStdString());
    }
    return nValue;
}

void AddOptions(QCommandLineParser& parser) {
    parser.setApplicationDescription(
        "The rehearsal server: plays a networked lighting interface for the Corvane remote.\n"
        "It logs one line for each message. Bad options or a bad show file end it with status 2.");
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addOptions({
        {"show", "Play the scenes and programs of this JSON file instead of the built-in show.", "file"},
        {"check", "Say whether this show is good, print its patch sheet, and end.", "file"},
        {"serial", "Go by this serial instead of the show's.", "text"},
        {"address", "Listen on this address of the machine (default: all of them).", "address"},
        {"fall-back", "Listen on the fall-back port 8011 instead of 8093."},
        {"limit", "Refuse a client when this many are there (default: 8).", "clients", "8"},
        {"fragment", "Split longer messages into marked fragments of this many bytes (default: 1400).",
         "bytes", "1400"},
        {"silent-after", "Answer nothing any more after this many seconds.", "seconds", "-1"},
        {"delay", "Let every answer wait this long.", "ms", "0"},
        {"drop", "Lose this share of all datagrams, in both directions.", "percent", "0"},
        {"duplicate", "Bring this share of all datagrams twice.", "percent", "0"},
        {"reorder", "Let this share of all datagrams be overtaken by others.", "percent", "0"},
    });
}

RehearsalServer::Options ReadOptions(const QCommandLineParser& parser) {
    RehearsalServer::Options options;
    if (parser.isSet("address") && !options.address.setAddress(parser.value("address"))) {
        throw std::runtime_error("--address takes an address such as 127.0.0.1, not \"" +
                                 parser.value("address").toStdString() + '"');
    }
    options.port = parser.isSet("fall-back") ? FallBackPort : Port;
    options.maxClients = Number(parser, "limit", 0, 1000);
    options.fragmentSize = Number(parser, "fragment", 1, 60000);
    options.silentAfter = Number(parser, "silent-after", -1, 86400);
    options.delayMs = Number(parser, "delay", 0, 60000);
    options.dropPercent = Number(parser, "drop", 0, 100);
    options.duplicatePercent = Number(parser, "duplicate", 0, 100);
    options.reorderPercent = Number(parser, "reorder", 0, 100);
    return options;
}

/// A line holds texts of others: what would move a terminal's cursor, or turn a line around, is escaped.
QString Printable(const QString& sText) {
    QString sPrintable;
    for (const uint nChar : sText.toUcs4()) {
        const auto cChar = static_cast<char32_t>(nChar);
        const QChar::Category category = QChar::category(nChar);
        const bool bBreaks = category == QChar::Separator_Line || category == QChar::Separator_Paragraph;
        sPrintable += QChar::isPrint(nChar) && !bBreaks ? QString::fromUcs4(&cChar, 1)
                                                        : QString("\\u%1").arg(nChar, 4, 16, QChar('0'));
    }
    return sPrintable;
}

void WriteLine(std::FILE* stream, const QString& sLine) {
    std::fprintf(stream, "%s\n", qPrintable(Printable(sLine)));
    std::fflush(stream);
}

/// Complains by a std::runtime_error.
void Check(const QString& sPath) {
    const Show show = Show::Load(sPath);
    const Playback playback(show);
    WriteLine(stdout, QString("%1 is good: %2 scenes, %3 programs, %4 universes of lamps")
                          .arg(sPath)
                          .arg(show.scenes.size())
                          .arg(show.programs.size())
                          .arg(playback.Patched().count()));
    for (const QString& sLine : PatchSheet(show)) {
        WriteLine(stdout, sLine);
    }
}

}  // namespace

int main(int argc, char* argv[]) {
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName("corvane-server");
    QCoreApplication::setApplicationVersion(CORVANE_VERSION);
    QCommandLineParser parser;
    AddOptions(parser);
    if (!parser.parse(QCoreApplication::arguments()) || !parser.positionalArguments().isEmpty()) {
        WriteLine(stderr,
                  "corvane-server: " + (parser.positionalArguments().isEmpty()
                                            ? parser.errorText()
                                            : "no use for \"" + parser.positionalArguments().first() + '"'));
        return 2;
    }
    if (parser.isSet("help")) {
        parser.showHelp();
    }
    if (parser.isSet("version")) {
        parser.showVersion();
    }
    try {
        if (parser.isSet("check")) {
            Check(parser.value("check"));
            return 0;
        }
        const RehearsalServer::Options options = ReadOptions(parser);
        Show show = parser.isSet("show") ? Show::Load(parser.value("show")) : Show::BuiltIn();
        if (parser.isSet("serial")) {
            show.serial = parser.value("serial").toStdString();
        }
        RehearsalServer server(show, options, [](const QString& sLine) {
            WriteLine(stdout, QTime::currentTime().toString("HH:mm:ss.zzz ") + sLine);
        });
        if (!server.Listen()) {
            WriteLine(stderr, QString("corvane-server: cannot listen on %1 port %2: %3")
                                  .arg(options.address.toString())
                                  .arg(options.port)
                                  .arg(server.ErrorText()));
            return 1;
        }
        WriteLine(stdout, QString("Serial %1 with %2 scenes and %3 programs listens on %4 port %5")
                              .arg(QString::fromStdString(show.serial))
                              .arg(show.scenes.size())
                              .arg(show.programs.size())
                              .arg(options.address.toString())
                              .arg(options.port));
        return QCoreApplication::exec();
    } catch (const std::runtime_error& error) {
        WriteLine(stderr, QString("corvane-server: ") + error.what());
        return 2;
    }
}
