#include "server/sacnsender.h"

#include <QNetworkDatagram>
#include <QNetworkInterface>
#include <QProcess>
#include <QTemporaryFile>
#include <QUdpSocket>
#include <QtTest>

#include <csignal>

/// What leaves for the lamps, as a receiver on the network hears it.
class TestLamps : public QObject {
    Q_OBJECT

    QUdpSocket m_receiver;
    QStringList m_log;

    static int Byte(const QByteArray& packet, int nAt) { return static_cast<unsigned char>(packet[nAt]); }

    SacnSender::Options Loopback() {
        SacnSender::Options options;
        options.interface = QHostAddress::LocalHost;
        return options;
    }

    auto Log() {
        return [this](const QString& sLine) { m_log.append(sLine); };
    }

    /// All that has arrived, in a word each: "universe:first slot", "!" before what ends, "d" and the
    /// universes.
    QString Heard() {
        QStringList words;
        while (m_receiver.waitForReadyRead(30) || m_receiver.hasPendingDatagrams()) {
            while (m_receiver.hasPendingDatagrams()) {
                const QByteArray packet = m_receiver.receiveDatagram().data();
                if (Byte(packet, 21) == 8) {
                    words.append('d' + packet.mid(120).toHex());
                } else {
                    words.append(QString("%1%2:%3")
                                     .arg(Byte(packet, 112) == 0x40 ? "!" : "")
                                     .arg(Byte(packet, 114))
                                     .arg(Byte(packet, 126)));
                }
            }
        }
        return words.join(' ');
    }

private slots:
    void init() {
        m_log.clear();
        QVERIFY(m_receiver.bind(QHostAddress::AnyIPv4, sacn::Port, QUdpSocket::ShareAddress));
        const QNetworkInterface loopback = QNetworkInterface::interfaceFromName("lo");
        for (const int nUniverse : {1, 2, 32, sacn::DiscoveryUniverse}) {
            QVERIFY(m_receiver.joinMulticastGroup(QHostAddress(sacn::GroupOf(nUniverse)), loopback));
        }
    }
    void cleanup() { m_receiver.close(); }

    /// Every byte of both kinds of packet, against the tables of ANSI E1.31.
    void bytes() {
        sacn::Source source{QUuid("{00112233-4455-6677-8899-aabbccddeeff}"), "Corvane é", 150};
        source.name += std::string(52, '.') + "é";  // its second byte would be the 64th
        const QByteArray root = "001000004153432d45312e3137000000";
        const QByteArray cid = "00112233445566778899aabbccddeeff";
        const QByteArray name = QByteArray("Corvane é" + QByteArray(52, '.')).toHex() + "0000";
        sacn::DataPacket packet(source, 0x1234);
        packet.Slots()[0] = 255;
        packet.Slots()[511] = 1;
        packet.Next();
        QCOMPARE(packet.Next().toHex(), root + "726e00000004" + cid + "725800000002" + name +
                                            "96000002001234" + "720b02a100000001020100" + "ff" +
                                            QByteArray(1020, '0') + "01");
        QCOMPARE(packet.Next(true).mid(111, 2).toHex(), QByteArray("0340"));
        QCOMPARE(sacn::Discovery(source, {1, 0x0203}).toHex(), root + "706c00000008" + cid + "705600000002" +
                                                                   name + "00000000" + "700c000000010000" +
                                                                   "00010203");
        source.name = "Corvane 0042";
        QCOMPARE(sacn::DataPacket(source, 1).Next().mid(44, 64), "Corvane 0042" + QByteArray(52, '\0'));
    }

    /// Frame by frame: what is sent, and what is not.
    void frames() {
        Levels levels{};
        struct Frame {
            qint64 at;
            unsigned char level;  ///< of the first channel of universe 1
            const char* used;     ///< universes 2 and 1
            const char* heard;
        };
        {
            SacnSender sender("0042", Loopback(), Log());
            QVERIFY(sender.Open());
            for (const Frame& frame : std::initializer_list<Frame>{
                     {0, 0, "00", ""},
                     {25, 9, "01", "1:9 d0001"},
                     {50, 9, "01", ""},
                     {75, 10, "01", "1:10"},
                     {100, 10, "11", "2:0"},
                     {775, 10, "11", ""},
                     {800, 10, "11", "1:10"},  // both within 800 ms
                     {825, 10, "11", "2:0"},
                     {850, 0, "10", "1:0 !1:0 !1:0 !1:0"},
                     {875, 7, "10", ""},
                     {900, 7, "11", "1:7"},
                     {10024, 8, "11", "1:8 2:0"},
                     {10025, 8, "11", "d00010002"},
                 }) {
                levels[0] = frame.level;
                sender.Send(levels, UniverseSet(std::string(frame.used)), frame.at);
                QVERIFY2(Heard() == frame.heard, qPrintable(QString("frame at %1").arg(frame.at)));
            }
        }
        QCOMPARE(Heard(), QString("!1:8 !1:8 !1:8 !2:0 !2:0 !2:0"));
    }

    /// To one receiver go all universes, and nothing to any group.
    void unicast() {
        SacnSender::Options options = Loopback();
        options.to = QHostAddress("127.0.0.7");
        QUdpSocket one;
        QVERIFY(one.bind(options.to, sacn::Port, QUdpSocket::ShareAddress));
        SacnSender sender("0042", options, Log());
        QVERIFY(sender.Open());
        sender.Send({}, UniverseSet().set(), 0);
        QCOMPARE(Heard(), QString());
        int nHeard = 0;
        while (one.hasPendingDatagrams()) {
            QCOMPARE(Byte(one.receiveDatagram().data(), 114), ++nHeard);
        }
        QCOMPARE(nHeard, Universes::Count);
    }

    /// The network goes and comes back: two lines, and with the next frame all universes are there again.
    void networkLost() {
        const auto link = [](const char* pState) { QProcess::execute("ip", {"link", "set", "lo", pState}); };
        SacnSender sender("0042", Loopback(), Log());
        QVERIFY(sender.Open());
        const Levels levels{};
        const UniverseSet both(3);
        sender.Send(levels, both, 0);
        QCOMPARE(Heard(), QString("1:0 2:0 d00010002"));
        m_log.clear();
        link("down");
        for (qint64 nMs = 25; nMs <= 2000; nMs += 25) {
            sender.Send(levels, both, nMs);
        }
        QCOMPARE(m_log.size(), 1);
        QVERIFY2(m_log[0].contains("Network is unreachable"), qPrintable(m_log[0]));
        link("up");
        sender.Send(levels, both, 2025);
        QCOMPARE(Heard(), QString("1:0 2:0"));
        QCOMPARE(m_log.size(), 2);
        QVERIFY2(m_log[1].contains("works again"), qPrintable(m_log[1]));
        link("down");  // once more within a minute
        sender.Send(levels, both, 4000);
        QCOMPARE(m_log.size(), 2);
        sender.Send(levels, both, 60725);
        QCOMPARE(m_log.size(), 3);
        link("up");
    }

    /// The program: a remote's held channel goes to the lamps, and every way to end it is told to receivers.
    /// The source stays the same from start to start, and is another one for another serial.
    void program() {
        QTemporaryFile show;  // without lamps
        QVERIFY(show.open() && show.write("{}") > 0 && show.flush());
        QByteArrayList sources;
        for (const auto& [nSignal, pSerial] :
             {std::pair{SIGTERM, "0042"}, {SIGINT, "0042"}, {SIGHUP, "0043"}}) {
            QProcess program;
            program.start(SERVER_PROGRAM, {"--sacn", "--sacn-interface", "127.0.0.1", "--sacn-priority", "33",
                                           "--serial", pSerial, "--show", show.fileName()});
            QVERIFY(program.waitForReadyRead());
            QUdpSocket remote;
            remote.writeDatagram(R"({"typ":12,"content":{"chan":0,"univ":31,"level":77,"s":true}})",
                                 QHostAddress::LocalHost, 8093);
            QByteArray packet;
            QTRY_VERIFY(m_receiver.waitForReadyRead(0) || m_receiver.hasPendingDatagrams());
            while (packet.size() != 638 || Byte(packet, 114) != 32) {
                QTRY_VERIFY(m_receiver.hasPendingDatagrams());
                packet = m_receiver.receiveDatagram().data();
            }
            QCOMPARE(Byte(packet, 126), 77);
            QCOMPARE(Byte(packet, 108), 33);
            sources.append(packet.mid(22, 16));
            Heard();
            kill(static_cast<pid_t>(program.processId()), nSignal);
            QVERIFY(program.waitForFinished());
            QVERIFY2(Heard().endsWith("!32:77 !32:77 !32:77"), "not ended");
            QCOMPARE(program.exitCode(), 0);
        }
        QVERIFY(sources[0] == sources[1] && sources[1] != sources[2]);
    }
};

QTEST_GUILESS_MAIN(TestLamps)
#include "tst_lamps.moc"
