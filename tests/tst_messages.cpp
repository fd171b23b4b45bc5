#include "device/jsonwriter.h"
#include "device/messages.h"

#include <QtTest>

/// Compares whole texts, byte for byte, with what servers have always been sent.
class TestMessages : public QObject {
    Q_OBJECT

private slots:
    void golden_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("golden");
        const auto row = [](const char* pName, const std::string& sText, const char* pGolden) {
            QTest::newRow(pName) << QString::fromStdString(sText) << QString(pGolden);
        };
        row("alive", messages::Bare(MessageType::Alive), "{\n\t\"typ\" : 1\n}");
        row("goodbye", messages::Bare(MessageType::Goodbye), "{\n\t\"typ\" : 3\n}");
        row("state", messages::Bare(MessageType::StateRequest), "{\n\t\"typ\" : 6\n}");
        row("discovery", messages::Bare(MessageType::Discovery), "{\n\t\"typ\" : 14\n}");
        row("scene poll", messages::Bare(MessageType::ScenePoll), "{\n\t\"typ\" : 17\n}");
        row("command poll", messages::Bare(MessageType::CommandPoll), "{\n\t\"typ\" : 19\n}");
        row("channel poll", messages::Bare(MessageType::ChannelPoll), "{\n\t\"typ\" : 20\n}");
        row("scene", messages::Scene(5, -1, true),
            "{\n\t\"typ\" : 8,\n\t\"content\" : {\n\t\t\"id\" : 5,\n\t\t\"a\" : -1,\n\t\t\"s\" : "
            "true\n\t}\n}");
        row("program", messages::Program(2147483647, false),
            "{\n\t\"typ\" : 9,\n\t\"content\" : {\n\t\t\"id\" : 2147483647,\n\t\t\"s\" : false\n\t}\n}");
        row("color", messages::Color({255, 0, 1, 2, false, true}),
            "{\n\t\"typ\" : 10,\n\t\"content\" : {\n\t\t\"color\" : {\n\t\t\t\"r\" : 255,\n\t\t\t\"g\" : 0,\n"
            "\t\t\t\"b\" : 1,\n\t\t\t\"w\" : 2\n\t\t},\n\t\t\"rgbw\" : false,\n\t\t\"s\" : true\n\t}\n}");
        row("command", messages::Command({true, false, true, false, true, 100, 7}),
            "{\n\t\"typ\" : 11,\n\t\"content\" : {\n\t\t\"bo\" : true,\n\t\t\"next\" : false,\n"
            "\t\t\"prev\" : true,\n\t\t\"white\" : false,\n\t\t\"hold\" : true,\n\t\t\"dim\" : 100,\n"
            "\t\t\"speed\" : 7\n\t}\n}");
        row("channel", messages::Channel({511, 31, 255, true}),
            "{\n\t\"typ\" : 12,\n\t\"content\" : {\n\t\t\"chan\" : 511,\n\t\t\"univ\" : 31,\n"
            "\t\t\"level\" : 255,\n\t\t\"s\" : true\n\t}\n}");
        row("universe color", messages::UniverseColor(0, 0, 100, {50, 100, 200, 0, false, false}),
            "{\n\t\"typ\" : 16,\n\t\"content\" : {\n\t\t\"universe\" : 0,\n\t\t\"chan\" : 0,\n"
            "\t\t\"number\" : 100,\n\t\t\"color\" : {\n\t\t\t\"r\" : 50,\n\t\t\t\"g\" : 100,\n"
            "\t\t\t\"b\" : 200,\n\t\t\t\"w\" : 0\n\t\t},\n\t\t\"rgbw\" : false\n\t}\n}");
        JSONWriter writer;
        writer.BeginObject().Member("n", std::string_view("a\"b\\c\n\xC3\xA9\0d", 10)).EndObject();
        row("text", writer.Take(), "{\n\t\"n\" : \"a\\\"b\\\\c\\u000a\xC3\xA9\"\n}");
    }

    void golden() {
        QFETCH(QString, text);
        QTEST(text, "golden");
    }

    void universe() {
        const QString sText = QString::fromStdString(messages::Universe(3, 127, true));
        const QString sHead =
            "{\n\t\"typ\" : 13,\n\t\"content\" : {\n\t\t\"universe\" : 3,\n\t\t\"channels\" : [\n";
        const QString sChannel =
            "\t\t\t{\n\t\t\t\t\"c\" : %1,\n\t\t\t\t\"l\" : 127,\n\t\t\t\t\"s\" : true\n\t\t\t}%2\n";
        QVERIFY(sText.startsWith(sHead + sChannel.arg(0).arg(',') + sChannel.arg(1).arg(',')));
        QVERIFY(sText.endsWith(sChannel.arg(510).arg(',') + sChannel.arg(511).arg("") + "\t\t]\n\t}\n}"));
        QCOMPARE(sText.count("\"c\" : "), 512);
        QVERIFY2(sText.size() < 65507, "must fit one datagram");
    }
};

QTEST_APPLESS_MAIN(TestMessages)
#include "tst_messages.moc"
