#include "device/jsonwriter.h"
#include "device/messages.h"
#include "server/rehearsalserver.h"

#include <QNetworkDatagram>
#include <QTemporaryFile>
#include <QUdpSocket>
#include <QtTest>

/// The examples of docs/protocol.md are what goes over the wire, byte for byte: they are the golden texts.
class TestMessages : public QObject {
    Q_OBJECT

    /// The fenced blocks of a document that have a name, as in ```json alive
    static QMap<QString, QString> Examples(const QString& sDocument) {
        QFile file(DOCS_FOLDER "/" + sDocument);
        const QString sText = file.open(QIODevice::ReadOnly) ? file.readAll() : QString();
        QMap<QString, QString> examples;
        for (const QString& sBlock : sText.split("\n```json ").mid(1)) {
            const auto nName = sBlock.indexOf('\n');
            examples[sBlock.left(nName)] = sBlock.mid(nName + 1, sBlock.indexOf("\n```") - nName - 1);
        }
        return examples;
    }

    /// The manual's show, which the server of the examples plays.
    static Show ExampleShow() {
        QTemporaryFile file;
        if (file.open()) {
            file.write(Examples("manual.md")["show"].toUtf8());
            file.flush();
        }
        return Show::Load(file.fileName());
    }

    const QMap<QString, QString> m_examples = Examples("protocol.md");

private slots:
    void golden() {
        // Of 512 channels the example shows the first two and the last.
        QString sUniverse = QString::fromStdString(messages::Universe(0, 127, true));
        QVERIFY(sUniverse.count("\"c\" : ") == 512 && sUniverse.size() < 65507);
        const auto nThird = sUniverse.indexOf("\t\t\t{\n\t\t\t\t\"c\" : 2,");
        const auto nLast = sUniverse.indexOf("\t\t\t{\n\t\t\t\t\"c\" : 511,");
        sUniverse.replace(nThird, nLast - nThird, "\t\t\t...\n");

        const QMap<QString, std::string> built{
            {"alive", messages::Bare(MessageType::Alive)},
            {"goodbye", messages::Bare(MessageType::Goodbye)},
            {"state request", messages::Bare(MessageType::StateRequest)},
            {"scene", messages::Scene(2, 0, true)},
            {"program", messages::Program(1, true)},
            {"color", messages::Color({255, 180, 1, 2, false, true})},
            {"next", messages::Command({false, true, false, false, true, 80, 7})},
            {"commands", messages::Command({false, false, false, false, true, 80, 7})},
            {"channel", messages::Channel({511, 31, 255, true})},
            {"universe", sUniverse.toStdString()},
            {"discovery", messages::Bare(MessageType::Discovery)},
            {"universe color", messages::UniverseColor(0, 0, 100, {50, 100, 200, 0, false, false})},
            {"scene poll", messages::Bare(MessageType::ScenePoll)},
            {"command poll", messages::Bare(MessageType::CommandPoll)},
            {"channel poll", messages::Bare(MessageType::ChannelPoll)}};
        QCOMPARE(m_examples.size(), built.size() + 7);  // what only a server sends is met in the conversation
        for (auto it = built.begin(); it != built.end(); ++it) {
            QCOMPARE(it.key() + ": " + QString::fromStdString(*it), it.key() + ": " + m_examples[it.key()]);
        }
        JSONWriter writer;
        writer.BeginObject().Member("n", std::string_view("a\"b\\c\n\xC3\xA9\0d", 10)).EndObject();
        QCOMPARE(writer.Take(), std::string("{\n\t\"n\" : \"a\\\"b\\\\c\\u000a\xC3\xA9\"\n}"));
    }

    /// The server, sent one example after the other, answers with the examples that the document gives.
    void conversation() {
        const auto talk = [this](int nClients, int nFragment, const QStringList& turns) {
            RehearsalServer server(ExampleShow(), {QHostAddress::LocalHost, 8093, nClients, nFragment},
                                   [](const QString&) {});
            QUdpSocket remote;
            QVERIFY(server.Listen() && remote.bind(QHostAddress::LocalHost, 8094));
            for (const QString& sTurn : turns) {
                QStringList names = sTurn.split(',');
                const QByteArray asked = m_examples[names.takeFirst()].toUtf8();
                remote.writeDatagram(asked, QHostAddress::LocalHost, 8093);
                for (const QString& sAnswer : names) {
                    QTRY_VERIFY2(remote.hasPendingDatagrams(), qPrintable(sTurn));
                    QCOMPARE(QString(remote.receiveDatagram().data()), m_examples[sAnswer]);
                }
            }
            QTest::qWait(50);
            QVERIFY(!remote.hasPendingDatagrams());
        };
        talk(8, 1400,
             {"discovery,serial", "state request,state", "alive,alive", "scene", "program",
              "scene poll,scene states", "color", "next", "command poll,color,commands", "channel,channel",
              "channel poll,held channels", "goodbye"});
        talk(8, 36, {"discovery,fragment 1,fragment 2"});
        talk(0, 1400, {"state request,too many"});
    }
};

QTEST_GUILESS_MAIN(TestMessages)
#include "tst_messages.moc"
