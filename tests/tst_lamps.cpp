#include "server/lamps/lampoutput.h"
#include "server/show/show.h"
#include "tests/files.h"
#include "tests/program.h"

#include <csignal>
#include <memory>
#include <sys/stat.h>

/// What leaves for the lamps, as a receiver on the network hears it.
class TestLamps : public QObject {
    Q_OBJECT

    QUdpSocket m_receiver;
    std::unique_ptr<SacnSender> m_pSender;
    QStringList m_log;
    QByteArray m_packet;  ///< the last one of levels
    int m_nRouters = 0;   ///< that it could have passed, and one
    int m_nMs = 0;        ///< of the next frame
    QString m_sLast;      ///< what the last frame was heard as

    static int Byte(const QByteArray& packet, int nAt) { return static_cast<unsigned char>(packet[nAt]); }

    void Open(const QHostAddress& to = {}) {
        SacnSender::Options options;
        options.interface = "lo";
        if (!to.isNull()) {
            options.to = {to};
        }
        m_pSender =
            std::make_unique<SacnSender>("0042", options, [this](const QString& sLine) { m_log += sLine; });
    }

    /// Sends frames up to a time: the first level of universe 1, and whether universes 2 and 1 are used.
    /// Appends what is heard, with the times of the first and the last frame that were heard so.
    void Send(int nUntilMs, int nLevel, const char* pUsed, QStringList& heard) {
        for (; m_nMs <= nUntilMs; m_nMs += 25) {
            m_pSender->Send({static_cast<unsigned char>(nLevel)}, UniverseSet(pUsed), m_nMs);
            const QString sHeard = Heard();
            if (sHeard.isEmpty()) {
                m_sLast.clear();
            } else if (sHeard == m_sLast) {
                heard.last().replace(QRegularExpression("^(\\d+)\\S*"), QString("\\1-%1").arg(m_nMs));
            } else {
                heard += QString("%1 %2").arg(m_nMs).arg(sHeard);
                m_sLast = sHeard;
            }
        }
    }

    /// All that has arrived, in a word each: "universe:first slot", "!" before what ends, "d" and the
    /// universes.
    QString Heard(int nWaitMs = 0) {
        QStringList words;
        while (m_receiver.hasPendingDatagrams() || (nWaitMs > 0 && m_receiver.waitForReadyRead(nWaitMs))) {
            const QNetworkDatagram datagram = m_receiver.receiveDatagram();
            const QByteArray packet = datagram.data();
            m_nRouters = datagram.hopLimit();
            if (Byte(packet, 21) == 8) {
                words.append('d' + packet.mid(120).toHex());
            } else {
                m_packet = packet;
                words.append(Byte(packet, 112) == 0x40 ? "!%1:%2" : "%1:%2");
                words.last() = words.last().arg(Byte(packet, 114)).arg(Byte(packet, 126));
            }
        }
        return words.join(' ');
    }

private slots:
    void init() {
        m_pSender.reset();
        m_log.clear();
        m_nMs = 0;
        m_sLast.clear();
        QVERIFY(m_receiver.bind(QHostAddress::AnyIPv4, 5568, QUdpSocket::ShareAddress));
        const QNetworkInterface loopback = QNetworkInterface::interfaceFromName("lo");
        for (const char* pGroup : {"239.255.0.1", "239.255.0.2", "239.255.0.32", "239.255.250.214"}) {
            QVERIFY(m_receiver.joinMulticastGroup(QHostAddress(pGroup), loopback));
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
        const QByteArray levels = '\xff' + QByteArray(510, '\0') + '\1';
        QCOMPARE(sacn::Data(source, 0x1234, 2, levels).toHex(),
                 root + "726e00000004" + cid + "725800000002" + name +
                     "96000002001234720b02a100000001020100" + levels.toHex());
        QCOMPARE(sacn::Data(source, 0x1234, 3, levels, true).mid(111, 2).toHex(), QByteArray("0340"));
        QCOMPARE(sacn::Discovery(source, {1, 0x0203}).toHex(),
                 root + "706c00000008" + cid + "705600000002" + name + "00000000700c00000001000000010203");
        source.name = "Corvane 0042";
        QCOMPARE(sacn::Data(source, 1, 1, levels).mid(44, 64), "Corvane 0042" + QByteArray(52, '\0'));
    }

    /// Frame by frame: what is sent, and what is not. A packet may get lost, also those that tell of an end,
    /// and a receiver may take the first 20 of a new stream for old ones.
    void frames() {
        Open();
        QStringList heard;
        Send(25, 0, "00", heard);
        Send(1475, 9, "01", heard);
        Send(3100, 10, "01", heard);
        Send(3175, 10, "11", heard);
        Send(3200, 0, "10", heard);
        Send(4700, 7, "10", heard);
        Send(6100, 7, "01", heard);
        m_nMs = 10050;
        Send(10100, 8, "01", heard);
        QCOMPARE(
            heard.join(" | "),
            QString("50 1:9 d0001 | 75-550 1:9 | 1400 1:9 | 1500-1575 1:10 | 2425 1:10 | 3125-3175 2:0 | "
                    "3200 1:0 !1:0 2:0 | 3225-3250 !1:0 2:0 | 3275-3625 2:0 | 4475 2:0 | "
                    "4725-4775 1:7 !2:0 | 4800-5225 1:7 | 6075 1:7 | 10050 1:8 d0001 | 10075-10100 1:8"));
        QCOMPARE(Byte(m_packet, 111), 56);  // each packet of a universe has the next number
        QCOMPARE(m_nRouters, 32);
    }

    /// To one receiver go all universes, and nothing to any group.
    void unicast() {
        QUdpSocket one;
        QVERIFY(one.bind(QHostAddress("127.0.0.7"), 5568, QUdpSocket::ShareAddress));
        Open(one.localAddress());
        m_pSender->Send({}, UniverseSet().set(), 0);
        QCOMPARE(Heard(30), QString());
        int nHeard = 0;
        while (one.hasPendingDatagrams()) {
            QCOMPARE(Byte(one.receiveDatagram().data(), 114), ++nHeard);
        }
        QCOMPARE(nHeard, 32);
    }

    /// The network goes and comes back: two lines, and within a second all universes are there again.
    void networkLost() {
        const auto link = [](const char* pState) { QProcess::execute("ip", {"link", "set", "lo", pState}); };
        Open();
        QStringList heard;
        Send(2000, 0, "11", heard);
        m_log.clear();
        heard.clear();
        link("down");
        Send(5000, 0, "11", heard);
        QCOMPARE(heard, QStringList());
        QCOMPARE(m_log, QStringList("sACN: cannot send: the interface \"lo\" is down; goes on trying"));
        link("up");
        Send(6000, 0, "11", heard);
        QVERIFY2(heard.join(' ').contains("1:0 2:0"), qPrintable(heard.join('|')));
        QVERIFY2(m_log.size() == 2 && m_log[1].contains("works again"), qPrintable(m_log.join('\n')));
    }

    /// A fade of a second, in levels that say when each frame was made; beside it a held channel where no
    /// lamp is. A frame that was late is not made up for, and ends are told a frame apart.
    void fade() {
        State state(ReadShow("rig", R"({
"fixtures": [{"name": "Lamp", "universe": 2, "channel": 1, "layout": "if"}],
"scenes": [{"id": 1, "name": "On", "fade": 1, "levels": {"Lamp": [255, 255]}}]})"));
        SacnSender::Options options;
        options.interface = "lo";
        LampOutput lamps(state, options, [](const QString&) {});
        lamps.Start();
        state.Hold({0, 31, 7, true});
        QString sHeard;
        QVERIFY(QTest::qWaitFor([&] { return (sHeard += Heard()).contains("32:7"); }));
        int nTicks = 0;
        QTimer ticks;
        ticks.setTimerType(Qt::PreciseTimer);
        connect(&ticks, &QTimer::timeout, [&nTicks] { QThread::msleep(++nTicks % 9 == 0 ? 60 : 0); });
        ticks.start(25);
        state.Switch({false, 1}, true);
        QElapsedTimer clock;
        clock.start();
        QVector<int> levels;
        const auto hear = [&] {
            while (m_receiver.hasPendingDatagrams()) {
                const QByteArray packet = m_receiver.receiveDatagram().data();
                levels += Byte(packet, 114) == 2 ? 256 * Byte(packet, 126) + Byte(packet, 127) : 0;
            }
            return levels.removeAll(0), levels.count(65535) == 4;
        };
        QVERIFY(QTest::qWaitFor(hear, 20000));
        QVERIFY(clock.elapsed() >= 999 && levels.size() > nTicks / 2);
        for (int i = 1; levels[i] < 65535; ++i) {
            QVERIFY2(levels[i] > levels[i - 1] + 18 * 65, qPrintable(QString::number(i)));
        }
        QSignalSpy finished(&lamps, &LampOutput::finished);
        ticks.stop();
        clock.start();
        lamps.Finish();
        QVERIFY(finished.wait(20000) && clock.elapsed() >= 45);
        sHeard = Heard(30);
        QVERIFY2(sHeard.count("!2:255") == 3 && sHeard.count("!32:7") == 3, qPrintable(sHeard));
    }

    /// The program: whatever a remote switches goes to the lamps, and every way to end it is told to
    /// receivers. The source stays the same from start to start, and is another one for another serial.
    void program() {
        const QTemporaryDir folder;
        const QString sShow = WriteFile(folder.filePath("show.json"), R"({
"scenes": [{"id": 1, "name": "A", "levels": {"Lamp": [77, 0, 0]}},
           {"id": 2, "name": "B", "area": 1, "state": true, "levels": {"Stairs": [5]}}],
"programs": [{"id": 1, "name": "A", "steps": [{"levels": {"Lamp": [77, 0, 0]}}]},
             {"id": 3, "name": "B", "state": true, "steps": [{"levels": {"Door": [6]}}]}],
"fixtures": [{"name": "Lamp", "universe": 32, "channel": 1, "layout": "rgb"},
             {"name": "Stairs", "universe": 1, "channel": 1, "layout": "x"},
             {"name": "Door", "universe": 2, "channel": 1, "layout": "x"}]})");
        QByteArrayList sources;
        for (const auto& [nSignal, pSerial, pMessage] :
             {std::tuple{SIGTERM, "0042", R"(12,"content":{"chan":0,"univ":31,"level":77,"s":true})"},
              {SIGINT, "0042", R"(8,"content":{"id":1,"s":true})"},
              {SIGHUP, "0042", R"(9,"content":{"id":1,"s":true})"},
              {SIGTERM, "0042", R"(10,"content":{"color":{"r":77,"g":0,"b":0},"s":true})"},
              {SIGTERM, "0043", R"(11,"content":{"white":true,"dim":30})"}}) {
            Program server({"--sacn", "--sacn-interface", "127.0.0.1", "--sacn-priority", "33", "--serial",
                            pSerial, "--show", sShow});
            Tell(pMessage);
            QString sHeard;
            QVERIFY2(QTest::qWaitFor([&] { return (sHeard += Heard(30)).contains("32:77"); }),
                     qPrintable(sHeard + server.log));
            QVERIFY(sHeard.contains("1:5") && sHeard.contains("2:6"));  // what runs from the start
            QCOMPARE(Byte(m_packet, 108), 33);
            sources.append(m_packet.mid(22, 16));
            // As a closing terminal does, with one more right behind.
            kill(static_cast<pid_t>(server.program.processId()), nSignal);
            kill(static_cast<pid_t>(server.program.processId()), SIGHUP);
            QVERIFY(server.program.waitForFinished() && server.program.exitCode() == 0);
            QVERIFY(Heard(30).endsWith("!32:77 !1:5 !2:6 !32:77 !1:5 !2:6 !32:77"));
        }
        QVERIFY(sources.count(sources[0]) == 4 && sources[4] != sources[0]);
    }

    /// Killed under a fade and started again: what ran, the colour, what is held and Black stand at once.
    /// What the show has not is left out, and a file that is none costs a line.
    void resume() {
        const QTemporaryDir folder;
        const QString sKept = folder.filePath("kept");
        const QStringList options{"--sacn", "--sacn-interface", "127.0.0.1", "--resume", sKept};
        const auto level = [this](int nChannel) {
            return m_packet.isEmpty() ? -1 : Byte(m_packet, 125 + nChannel);
        };
        {
            const Program server(options);
            for (
                const char* pMessage :
                {R"(8,"content":{"id":4,"s":true})", R"(9,"content":{"id":5,"s":true})",
                 R"(13,"content":{"universe":0,"channels":[{"c":97,"l":300,"s":true},{"c":98,"l":-7,"s":true}]})",
                 R"(12,"content":{"chan":99,"univ":0,"level":999,"s":true})", R"(11,"content":{"dim":50})"}) {
                Tell(pMessage);
            }
            QVERIFY(QTest::qWaitFor([&] { return TextOf(sKept).contains("\"dim\" : 50"); }, 20000));
        }
        Heard();
        m_packet.clear();
        {
            const Program server(options);
            QTRY_VERIFY2(server.log.contains("takes up " + sKept.toUtf8() + ": 4 run, 0 left out"),
                         server.log);
            QVERIFY(QTest::qWaitFor([&] { return Heard(), level(1) > 0; }));
            QCOMPARE(level(1), 128);  // of Stage warm; 255 at half, with no fade
            QCOMPARE(level(33), 128);
            QCOMPARE(level(49), 70);  // pan of the program that was started last, in its first step
            QCOMPARE(m_packet.mid(126 + 97, 3), QByteArray("\xff\0\xff", 3));  // held, within 0 to 255
        }
        for (const auto& [text, pSays] :
             {std::pair{QByteArray(R"({"content":[{"typ":8,"content":{"id":99,"s":true}}]})"),
                        ": 0 run, 1 left out"},
              {"{\"content\":[", ".damaged"},
              {QByteArray(5000000, ' '), "not a file below 4 MB"},
              {"", "not a regular file"}}) {
            QVERIFY(!text.isEmpty() || mkfifo(qPrintable(sKept), 0600) == 0);
            text.isEmpty() ? QString() : WriteFile(sKept, text);
            const Program server(options);
            QTRY_VERIFY2(server.log.contains(pSays), server.log);
        }
        QVERIFY(!QFileInfo(sKept).isFile() && QFileInfo(sKept + ".damaged").size() == 5000000);
    }

    /// Nobody reads the log for a while, or its reader dies: lamps follow and streams end all the same, and
    /// what could not be written is counted.
    void log() {
        for (const QString sReader : {"sleep 3; cat", "true"}) {
            QProcess program;
            QProcess reader;
            program.setStandardOutputProcess(&reader);
            program.setProcessChannelMode(QProcess::MergedChannels);
            QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
            environment.insert("QT_LOGGING_RULES", "corvane.*=true");
            program.setProcessEnvironment(environment);
            reader.start("sh", {"-c", sReader});
            program.start(SERVER_PROGRAM, {"--sacn", "--sacn-interface", "127.0.0.1"});
            QVERIFY(QTest::qWaitFor([this] { return Heard().contains("1:"); }));
            for (int i = 0; i < 6000; ++i) {
                Tell(R"(9,"content":{"id":99})");
                QThread::usleep(50);
            }
            QVERIFY(QTest::qWaitFor([&] {  // it may be lost among the others
                Tell(R"(12,"content":{"chan":0,"univ":0,"level":77,"s":true})");
                return Heard().contains("1:77");
            }));
            if (sReader != "true") {
                QVERIFY(reader.waitForReadyRead());
                QTest::qWait(200);
                Tell(R"(9,"content":{"id":99})");
            }
            kill(static_cast<pid_t>(program.processId()), SIGTERM);
            QVERIFY(program.waitForFinished() && program.exitStatus() == QProcess::NormalExit);
            QVERIFY(Heard().contains("!1:77"));
            QVERIFY(reader.state() == QProcess::NotRunning || reader.waitForFinished());
            QCOMPARE(reader.readAll().contains(" lines lost\n"), sReader != "true");
        }
    }
};

QTEST_GUILESS_MAIN(TestLamps)
#include "tst_lamps.moc"
