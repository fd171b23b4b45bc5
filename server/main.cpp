#include "device/linewriter.h"
#include "device/logging.h"
#include "device/messages.h"
#include "device/terminationsignals.h"
#include "server/lamps/lampoutput.h"
#include "server/lamps/playback.h"
#include "server/record.h"
#include "server/remotes/server.h"
#include "server/resume.h"
#include "server/state.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDateTime>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkDatagram>
#include <QNetworkInterface>
#include <QRegularExpression>
#include <QTimer>
#include <QUdpSocket>

#include <cmath>
#include <cstdio>
#include <exception>
#include <limits>
#include <optional>
#include <stdexcept>
#include <sys/stat.h>
#include <unistd.h>

namespace {

/// How long a recording may take to be answered, and a fade.
constexpr int AnswerMs = 5000;
constexpr int MostSeconds = 86400;

/// Complains of what an option is given.
[[noreturn]] void Refuse(const QString& sOption, const QString& sTakes, const QString& sValue) {
    throw std::runtime_error(QString("--%1 takes %2, not \"%3\"").arg(sOption, sTakes, sValue).toStdString());
}

/// A whole number within bounds.
int Number(const QCommandLineParser& parser, const QString& sOption, int nLeast, int nMost) {
    bool bOk = false;
    const int nValue = parser.value(sOption).toInt(&bOk);
    if (!bOk || nValue < nLeast || nValue > nMost) {
        Refuse(sOption, QString("a whole number from %1 to %2").arg(nLeast).arg(nMost),
               parser.value(sOption));
    }
    return nValue;
}

void AddOptions(QCommandLineParser& parser) {
    parser.setApplicationDescription(
        "The server for the Corvane remote: a networked lighting interface, which lights lamps by sACN.\n"
        "It logs one line for each message that changes something. Bad options or a bad show file end it "
        "with status 2.");
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addOptions({
        {"show", "Play the scenes and programs of this JSON file instead of the built-in show.", "file"},
        {"no-watch", "Do not follow when that file is saved anew."},
        {"record", "Have the server on this computer record what is lit as a scene, and end.", "name"},
        {"area", "The area of a scene that is recorded (default: none).", "number", "-1"},
        {"fade", "The time that a scene that is recorded fades in (default: 0).", "seconds", "0"},
        {"only", "Record these fixtures alone, such as \"Par,Head 1\" (default: all).", "names"},
        {"check", "Say whether this show is good, print its patch sheet, and end.", "file"},
        {"print-show", "Print the file of the built-in show, and end."},
        {"serial", "Go by this serial instead of the show's.", "text"},
        {"resume", "Keep what runs in this file, and begin with what it says.", "file"},
        {"address", "Listen on this address of the machine (default: all of them).", "address"},
        {"verbose", "Log every sign of life and every poll, too."},
        {"fall-back", "Listen on the fall-back port 8011 instead of 8093."},
        {"limit", "Refuse a client when this many are there (default: 8).", "clients", "8"},
        {"fragment", "Split longer messages into fragments of so many bytes (default: 1400).", "bytes",
         "1400"},
        {"silent-after", "Answer nothing any more after this many seconds.", "seconds", "-1"},
        {"delay", "Let every answer wait this long.", "ms", "0"},
        {"drop", "Lose this share of all datagrams, in both directions.", "percent", "0"},
        {"duplicate", "Bring this share of all datagrams twice.", "percent", "0"},
        {"reorder", "Let this share of all datagrams be overtaken by others.", "percent", "0"},
        {"sacn", "Light lamps: send the show's levels as streaming ACN (E1.31)."},
        {"sacn-priority", "Of several sources the one with the highest priority is obeyed (default: 100).",
         "0 to 200", "100"},
        {"sacn-interface",
         "Send by this interface (eth0) or address of the machine, and by no other; while it is missing it "
         "is waited for (default: as the system routes it).",
         "name or address"},
        {"sacn-to",
         "Send to this receiver alone, or, given several times, to these (default: by multicast to "
         "239.255.0.1 and up).",
         "address"},
    });
}

Server::Options ReadOptions(const QCommandLineParser& parser) {
    Server::Options options;
    if (parser.isSet("address") && !options.address.setAddress(parser.value("address"))) {
        Refuse("address", "an address such as 127.0.0.1", parser.value("address"));
    }
    options.port = parser.isSet("fall-back") ? Server::FallBackPort : Server::Port;
    options.maxClients = Number(parser, "limit", 0, 1000);
    options.fragmentSize = Number(parser, "fragment", 1, 60000);
    options.isVerbose = parser.isSet("verbose");
    const BadNetwork::Options bad{Number(parser, "silent-after", -1, MostSeconds),
                                  Number(parser, "delay", 0, 60000), Number(parser, "drop", 0, 100),
                                  Number(parser, "duplicate", 0, 100), Number(parser, "reorder", 0, 100)};
    if (bad.silentAfter >= 0 ||
        bad.delayMs + bad.dropPercent + bad.duplicatePercent + bad.reorderPercent > 0) {
        options.badNetwork = bad;
    }
    return options;
}

/// An IPv4 address that a host can have, in four numbers: no network, no group.
bool IsHost(const QString& sText) {
    const quint32 nAddress = QHostAddress(sText).toIPv4Address();
    const quint32 nFirst = nAddress >> 24U;
    return nFirst > 0 && nFirst < 224 && QHostAddress(nAddress).toString() == sText;
}

/// Complains, too, of the address of more receivers than one.
QHostAddress Receiver(const QString& sTo) {
    const QHostAddress to(sTo);
    bool bOne = IsHost(sTo) && to != QHostAddress("127.255.255.255");
    for (const QNetworkInterface& interface : QNetworkInterface::allInterfaces()) {
        for (const QNetworkAddressEntry& entry : interface.addressEntries()) {
            bOne = bOne && entry.broadcast() != to;
        }
    }
    if (!bOne) {
        Refuse("sacn-to", "an IPv4 address of one receiver, such as 192.168.1.20", sTo);
    }
    return to;
}

SacnSender::Options ReadSacnOptions(const QCommandLineParser& parser) {
    for (const auto& [sOption, sOther] : {std::pair<QString, QString>{"sacn-priority", "sacn"},
                                          {"sacn-interface", "sacn"},
                                          {"sacn-to", "sacn"},
                                          {"area", "record"},
                                          {"fade", "record"},
                                          {"only", "record"}}) {
        if (parser.isSet(sOption) && !parser.isSet(sOther)) {
            throw std::runtime_error(
                QString("--%1 is of no use without --%2").arg(sOption, sOther).toStdString());
        }
    }
    static const QRegularExpression name("^(?![0-9.]*$)[^\\s/:]{1,15}$");
    SacnSender::Options options;
    options.priority = Number(parser, "sacn-priority", 0, 200);
    options.interface = parser.value("sacn-interface");
    if (parser.isSet("sacn-interface") && !IsHost(options.interface) &&
        !name.match(options.interface).hasMatch()) {
        Refuse("sacn-interface", "a name such as eth0 or an address", options.interface);
    }
    for (const QString& sTo : parser.values("sacn-to")) {
        options.to.append(Receiver(sTo));
    }
    return options;
}

/// Complaints begin with the program's name.
void WriteLine(std::FILE* stream, const QString& sLine) {
    std::fprintf(stream, "%s%s\n", stream == stderr ? "corvane-server: " : "", qPrintable(Printable(sLine)));
    std::fflush(stream);
}

/// Whoever starts the program by systemd says so, by the device and the file that the journal reads.
bool IsReadByJournal() {
    struct stat output {};
    return fstat(STDOUT_FILENO, &output) == 0 &&
           qgetenv("JOURNAL_STREAM") ==
               QByteArray::number(quint64{output.st_dev}) + ':' + QByteArray::number(quint64{output.st_ino});
}

/// Complains by a std::runtime_error.
void Check(const QString& sPath) {
    const Show show = ShowFile(sPath).Load();
    const State state(show);
    const Playback playback(state, [] { return 0; });
    WriteLine(stdout, sPath + QString::asprintf(" is good: %zu scenes, %zu programs, %zu universes of lamps",
                                                show.scenes.size(), show.programs.size(),
                                                playback.Patched().count()));
    for (const QString& sLine : PatchSheet(show)) {
        WriteLine(stdout, sLine);
    }
}

/// Has the server on this computer record what is lit, prints its line, and returns the status.
int AskToRecord(const QCommandLineParser& parser) {
    const Server::Options server = ReadOptions(parser);
    bool bOk = false;
    const double fade = parser.value("fade").toDouble(&bOk);
    if (!bOk || !(fade >= 0 && fade <= MostSeconds)) {
        Refuse("fade", "a number of seconds from 0 to 86400", parser.value("fade"));
    }
    const Recording wanted{parser.value("record").toStdString(),
                           Number(parser, "area", -1, std::numeric_limits<int>::max()),
                           static_cast<int>(std::lround(fade * 1000)), parser.value("only").toStdString()};
    QUdpSocket socket;
    socket.writeDatagram(QByteArray::fromStdString(messages::Record(wanted)),
                         server.address == QHostAddress::AnyIPv4 ? QHostAddress::LocalHost : server.address,
                         server.port);
    if (!socket.waitForReadyRead(AnswerMs)) {
        WriteLine(stderr, QString("no server answers on port %1 of this computer").arg(server.port));
        return 1;
    }
    const QJsonObject answer = QJsonDocument::fromJson(socket.receiveDatagram().data())["content"].toObject();
    const bool bDone = answer["s"].toBool();
    WriteLine(bDone ? stdout : stderr, answer["text"].toString());
    return bDone ? 0 : 1;
}

/// Plays until the program is told to end, and returns its status. Complains of options and of the show by a
/// std::runtime_error.
int Serve(const QCommandLineParser& parser) {
    const Server::Options options = ReadOptions(parser);
    const SacnSender::Options sacnOptions = ReadSacnOptions(parser);
    std::optional<ShowFile> file;
    if (parser.isSet("show")) {
        file.emplace(parser.value("show"));
    }
    Show show = file ? file->Load() : Show::BuiltIn();
    if (parser.isSet("serial")) {
        show.serial = parser.value("serial").toStdString();
    }
    // First of all: a thread that Qt starts before the signals are taken would still be ended by them.
    TerminationSignals termination;
    LineWriter lines(STDOUT_FILENO);
    // The system's journal has date and time of its own.
    const QString sStamp = IsReadByJournal() ? "" : "yyyy-MM-dd HH:mm:ss.zzz ";
    const auto log = [&lines, sStamp](const QString& sLine) {
        lines.Write(QDateTime::currentDateTime().toString(sStamp) + sLine);
    };
    State state(show);
    std::optional<Resume> resume;
    if (parser.isSet("resume")) {
        resume.emplace(state, parser.value("resume"), log);
    }
    Server server(state, options, log);
    std::optional<LampOutput> lamps;
    if (parser.isSet("sacn")) {
        lamps.emplace(state, sacnOptions, log);
    }
    server.SetRecorder([&](const Recording& wanted) {
        if (!lamps || !file) {
            throw std::runtime_error(lamps ? "the built-in show has no file to record into"
                                           : "the server lights no lamps: it was started without --sacn");
        }
        return Record(state, lamps->OpenLevels(), *file, wanted);
    });
    if (file && !parser.isSet("no-watch")) {
        QObject::connect(&*file, &ShowFile::edited, [&] {
            try {
                state.Replace(file->Load(), state.Runs(), state.CurrentColor(), state.Held());
                log("plays " + file->Path() + " as it was saved");
            } catch (const std::runtime_error& error) {
                log(error.what());
            }
        });
        file->Watch();
    }
    QTimer retries;
    const auto listen = [&] {
        if (server.Listen()) {
            retries.stop();
            log("corvane-server " CORVANE_VERSION ": serial " + QString::fromStdString(show.serial) +
                QString::asprintf(" with %zu scenes and %zu programs listens on %s port %d",
                                  show.scenes.size(), show.programs.size(),
                                  qPrintable(options.address.toString()), options.port));
        }
    };
    QObject::connect(&retries, &QTimer::timeout, listen);
    retries.start(1000);
    listen();
    if (retries.isActive() && !server.LacksAddress()) {
        WriteLine(stderr, "cannot listen on " + options.address.toString() + " port " +
                              QString::number(options.port) + ": " + server.ErrorText());
        return 1;
    }
    if (retries.isActive()) {
        log("waits for " + options.address.toString() + ", which is no address of this machine yet");
    }
    if (lamps) {
        QObject::connect(&termination, &TerminationSignals::asked, &*lamps, &LampOutput::Finish);
        QObject::connect(&*lamps, &LampOutput::finished, &QCoreApplication::quit);
        if (show.fixtures.empty()) {
            log("sACN: the show has no fixtures, so there is nothing to send but channels that are held");
        }
        lamps->Start();
    } else {
        QObject::connect(&termination, &TerminationSignals::asked, &QCoreApplication::quit);
    }
    const int nStatus = QCoreApplication::exec();
    log("corvane-server " CORVANE_VERSION " ends");
    return nStatus;
}

}  // namespace

int main(int argc, char* argv[]) {
    const logging::Session logging;
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName("corvane-server");
    QCoreApplication::setApplicationVersion(CORVANE_VERSION);
    QCommandLineParser parser;
    AddOptions(parser);
    try {
        if (!parser.parse(QCoreApplication::arguments())) {
            throw std::runtime_error(parser.errorText().toStdString());
        }
        if (const QStringList more = parser.positionalArguments(); !more.isEmpty()) {
            throw std::runtime_error("no use for \"" + more.first().toStdString() + '"');
        }
        parser.process(application);  // which shows help and version
        if (parser.isSet("check")) {
            Check(parser.value("check"));
            return 0;
        }
        if (parser.isSet("print-show")) {
            std::fputs(Show::BuiltInText().constData(), stdout);
            return 0;
        }
        return parser.isSet("record") ? AskToRecord(parser) : Serve(parser);
    } catch (const std::exception& error) {
        WriteLine(stderr, error.what());
        return 2;
    }
}
