#include "app/interfaceaddress.h"
#include "device/jsonwriter.h"
#include "server/remotes/server.h"
#include "server/show/show.h"
#include "tests/program.h"
#include "tests/remote.h"

/// The server as a program, alone and with remotes around it, and what goes over the wire: the
/// examples of docs/protocol.md are the golden texts, byte for byte.
class TestServer : public QObject {
    Q_OBJECT

    /// Sends from an address of its own, as anyone can, and counts what comes back.
    struct Stranger {
        QUdpSocket socket;

        explicit Stranger(int nHost, quint16 nPort = 0) {
            QVERIFY(socket.bind(QHostAddress(0x7f000000U + static_cast<quint32>(nHost)), nPort));
        }
        void Send(const std::string& sText, int nTimes = 1) {
            for (; nTimes > 0; --nTimes) {
                socket.writeDatagram(QByteArray::fromStdString(sText), QHostAddress::LocalHost, 8093);
                QThread::usleep(100);
            }
        }
        void Send(MessageType type, int nTimes = 1) { Send(messages::Bare(type), nTimes); }
        /// How many answers with a text have come until now.
        int Count(const char* pText) {
            int nCount = 0;
            while (socket.hasPendingDatagrams()) {
                nCount += int{socket.receiveDatagram().data().contains(pText)};
            }
            return nCount;
        }
    };

    /// Two remotes that the server has answered.
    struct Two {
        std::unique_ptr<Corvane> first = OpenRemote({}, "10.77.0.2");
        std::unique_ptr<Corvane> second = OpenRemote({}, "10.77.0.3");

        Two() { QTRY_VERIFY(first->IsAnswered() && second->IsAnswered()); }
    };

    /// The fenced blocks of a document that have a name, as in ```json alive
    static QMap<QString, QString> Examples(const QString& sDocument) {
        QMap<QString, QString> examples;
        for (const QString& sBlock :
             QString(TextOf(DOCS_FOLDER "/" + sDocument)).split("\n```json ").mid(1)) {
            const auto nName = sBlock.indexOf('\n');
            examples[sBlock.left(nName)] = sBlock.mid(nName + 1, sBlock.indexOf("\n```") - nName - 1);
        }
        return examples;
    }

    const QMap<QString, QString> m_examples = Examples("protocol.md");

private slots:
    /// Whoever makes up a sender's address gets it four long answers a second, and no universe.
    void strangers() {
        Program server({"--address", "127.0.0.1", "--fragment", "60000"});
        Stranger stranger(2);
        stranger.Send(messages::Channel({-1, 0, 127, true}));
        stranger.Send(MessageType::ChannelPoll, 50);
        QTest::qWait(1200);
        QCOMPARE(stranger.Count("channels"), 0);
        // As a client, which leaves and comes again: in any second four, and what was asked last is answered.
        QElapsedTimer clock;
        clock.start();
        for (int i = 0; i < 100; ++i) {
            stranger.Send(MessageType::Goodbye);
            stranger.Send(MessageType::Alive);
            stranger.Send(MessageType::ChannelPoll);
            stranger.Send(MessageType::StateRequest);
            QTest::qWait(5);
        }
        const auto most = [&clock] { return 4 * (1 + static_cast<int>(clock.elapsed() / 1000)); };
        int nLong = stranger.Count("content");
        QVERIFY(nLong >= 4 && nLong <= most());
        QTRY_VERIFY((nLong += stranger.Count("content")) > 4);
        QVERIFY(nLong <= most());
    }

    /// One line a second for noise, with a count; no answer to a server, which would answer that in turn; and
    /// who leaves makes room, in however many names.
    void noise() {
        Program server({"--address", "127.0.0.1", "--limit", "1"});
        Stranger(2).Send("noise", 15);
        Stranger(2).Send(R"({"typ":99})", 15);
        Stranger other(3, 8093);
        Stranger fallBack(3, 8011);
        other.Send(MessageType::Alive);
        fallBack.Send(MessageType::Alive);
        QTRY_VERIFY(server.log.contains(" more datagrams were of no use"));
        QCOMPARE(server.log.count(" sent "), 1);
        QVERIFY2(server.log.contains(" 29 more"), server.log);
        QCOMPARE(other.Count("typ") + fallBack.Count("typ"), 0);
        for (int nHost = 6; nHost < 70; ++nHost) {
            Stranger leaving(nHost);
            leaving.Send(MessageType::StateRequest);
            leaving.Send(MessageType::Goodbye);
        }
        Stranger(4).Send(messages::Scene(1, 0, true));  // a button takes no place
        Stranger next(5);
        next.Send(MessageType::StateRequest);
        QVERIFY(QTest::qWaitFor([&next] { return next.Count("\"scn\"") == 1; }));
    }

    /// A remote that crashes keeps its place for 15 seconds.
    void crashedRemote() {
        const Program server({"--address", "127.0.0.1", "--limit", "1"});
        QElapsedTimer clock;
        clock.start();
        Stranger(2).Send(MessageType::Alive);
        QTRY_VERIFY(server.log.contains("is alive"));
        Stranger other(3);
        const auto comesIn = [&other] {
            return other.Send(MessageType::Alive), other.Count("\"typ\" : 1\n") > 0;
        };
        QVERIFY(Within(17000, comesIn) && clock.elapsed() >= 15000);
    }

    /// 16 hosts ask for 59 MB of universes, which all wait: but for 16 they are lost, as on a network.
    void lateDatagrams() {
        Program server(
            {"--address", "127.0.0.1", "--fragment", "60000", "--delay", "60000", "--limit", "17"});
        const QString sProcess = QString::number(server.program.processId());
        Stranger holder(2);
        for (int nUniverse = 0; nUniverse < Universes::Count; ++nUniverse) {
            holder.Send(messages::Channel({-1, nUniverse, 127, true}));
        }
        QTRY_VERIFY(server.log.contains("universe 32 "));
        const double before = ResidentMiB(sProcess);
        for (int nHost = 3; nHost < 19; ++nHost) {
            Stranger stranger(nHost);
            stranger.Send(MessageType::Alive);
            stranger.Send(MessageType::ChannelPoll, 4);
        }
        QTRY_VERIFY_WITH_TIMEOUT(server.log.count("polls the channels") >= 4 * 16, 30000);
        QVERIFY2(ResidentMiB(sProcess) - before < 30, qPrintable(QString::number(ResidentMiB(sProcess))));
    }

    /// As at a start with the mains: the network gives the address later.
    void lateAddress() {
        Program server({"--address", "10.77.0.9"});
        QVERIFY(!server.log.contains("listens"));
        QCOMPARE(QProcess::execute("ip", {"address", "add", "10.77.0.9/24", "dev", "lo"}), 0);
        QTRY_VERIFY_WITH_TIMEOUT(server.log.contains("listens on 10.77.0.9"), 20000);
        QUdpSocket remote;
        remote.writeDatagram(R"({"typ":14})", QHostAddress("10.77.0.9"), 8093);
        QVERIFY(remote.waitForReadyRead(20000));
    }

    /// All servers of a network are listed; the one that is chosen is talked to, and no other.
    void threeServers() {
        Program beta({"--address", "10.77.0.2", "--serial", "Beta"});
        Program alpha({"--address", "10.77.0.3", "--serial", "Alpha"});
        Program gamma({"--address", "10.77.0.4", "--serial", "Gamma"});
        QCOMPARE(FindNetwork("auto")->broadcast, QString("10.77.0.255"));  // all hear it
        const auto remote = OpenRemote();
        const ServerList& servers = remote->Params()->Servers();
        QTRY_COMPARE(servers.count(), 3);
        QCOMPARE(servers.itemText(0) + servers.itemText(1) + servers.itemText(2), QString("AlphaBetaGamma"));
        QTRY_VERIFY(remote->IsAnswered());
        QCOMPARE(remote->ServerAddress(), QString("10.77.0.3"));
        remote->Params()->findChild<QComboBox*>()->setCurrentIndex(2);
        QTRY_VERIFY(remote->IsAnswered());
        QTest::qWait(300);  // what they wrote before may still be under way
        alpha.log.clear();
        beta.log.clear();
        Click(remote->SceneList(), remote->SceneList()->PartRect(5).center());
        QTRY_VERIFY(gamma.log.contains("scene 6 on") && gamma.log.contains("is alive"));
        QCOMPARE(alpha.log + beta.log, QByteArray());
    }

    /// A drag over the wheel at 200 moves a second: at most a datagram a tick, and the last pick stays.
    void wheelDrag() {
        Program server;
        const Two remotes;
        remotes.first->OnMenuChanged(2);
        server.log.clear();
        CColorPicker* pOther = remotes.second->Picker();
        CColorCircle* pWheel = remotes.first->Picker()->Wheel();
        Mouse(pWheel, QEvent::MouseButtonPress, {210, 210});
        QElapsedTimer clock;
        clock.start();
        int nMoves = 0;
        for (; clock.elapsed() < 2000; ++nMoves) {
            Mouse(pWheel, QEvent::MouseMove, {30 + nMoves % 360, 60 + nMoves * 3 % 300});
            QTest::qWait(5);
        }
        Mouse(pWheel, QEvent::MouseMove, {300, 130});
        Mouse(pWheel, QEvent::MouseButtonRelease, {300, 130});
        QVERIFY(Within(1000, [&] {
            return pOther->Wheel()->GetColor() == pWheel->GetColor() && pOther->Wheel()->IsOn();
        }));
        const auto nSent = server.log.count(" color ");
        QVERIFY(nSent > nMoves / 20 && nSent <= clock.elapsed() / 25 + 3);
        QVERIFY(!server.log.contains("10.77.0.3:8094 color"));  // nothing is echoed
        // A scene that a client starts releases the colour at the others, and that is told.
        emit remotes.first->SceneList()->stateChanged(0, 2, true);
        QVERIFY(Within(
            1000, [&] { return server.log.contains("10.77.0.3:8094 color") && !pOther->Wheel()->IsOn(); }));
        // Commands pass the same way.
        Click(pOther->Commands(), {50, 120});
        QVERIFY(Within(1000, [&] { return remotes.first->Picker()->Commands()->IsOn(CCommandWnd::Black); }));
        emit remotes.first->Picker()->Dimmer()->valueChanged(128);
        QVERIFY(Within(1000, [&] { return pOther->Dimmer()->Value() == 128; }));
    }

    /// The user's channel 1 is the server's first channel, and its answer lands in the same cell.
    void channels() {
        Program server;
        const Two remotes;
        remotes.first->OnMenuChanged(3);
        ChannelsGrid* pGrid = remotes.first->Grid();
        const Universes& other = remotes.second->Grid()->Tables();
        Click(pGrid, pGrid->CellRect(0).center());
        Click(pGrid->Editor()->Control()->Slider(), {5, 0});
        // Shown by the answer, before the editor is closed.
        QTRY_VERIFY(remotes.first->ChannelState().level == 255 && pGrid->Tables().states[0] &&
                    other.states[0]);
        QTRY_COMPARE(int{other.levels[0]}, 255);
        emit pGrid->Editor()->off();
        QTRY_VERIFY(!other.states[0]);
        // Whole universes and runs, in fragments; a poll brings what is held.
        for (const auto send : {&Corvane::SendUniverse, &Corvane::SendUniverseSingleLevel}) {
            for (const bool bHold : {true, false}) {
                (remotes.first.get()->*send)();
                QTRY_VERIFY(other.states[511] == bHold && (!bHold || other.levels[511] == 127));
            }
        }
        remotes.first->SendUniverseColor();
        QTRY_VERIFY(other.levels[299] == 200 && !other.states[300]);
        pGrid->ReleaseChannels();
        remotes.first->SendDmxState();
        QTRY_VERIFY(pGrid->Tables().levels[1] == 100 && pGrid->Tables().states[298]);
    }

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
            {"channel poll", messages::Bare(MessageType::ChannelPoll)},
            {"record", messages::Record({"Evening", 0, 3000, "Par,Head 1"})}};
        QCOMPARE(m_examples.size(), built.size() + 8);  // what only a server sends is met in the conversation
        for (auto it = built.begin(); it != built.end(); ++it) {
            QCOMPARE(it.key() + ": " + QString::fromStdString(*it), it.key() + ": " + m_examples[it.key()]);
        }
        JSONWriter writer;
        writer.BeginObject().Member("n", std::string_view("a\"b\\c\n\x1f\xC3\xA9\0d", 11)).EndObject();
        QCOMPARE(writer.Take(), std::string("{\n\t\"n\" : \"a\\\"b\\\\c\\u000a\\u001f\xC3\xA9\"\n}"));
    }

    /// The server, sent one example after the other, answers with the examples that the document gives.
    void conversation() {
        const Show show = ReadShow("manual", Examples("manual.md")["show"].toUtf8());
        const auto talk = [&](int nClients, int nFragment, const QStringList& turns) {
            State state(show);
            Server server(state, {QHostAddress::LocalHost, 8093, nClients, nFragment, false, {}},
                          [](const QString&) {});
            server.SetRecorder([](const Recording&) -> QString {
                throw std::runtime_error("the built-in show has no file to record into");
            });
            QVERIFY(server.Listen());
            Stranger remote(1, 8094);
            for (const QString& sTurn : turns) {
                QStringList names = sTurn.split(',');
                remote.Send(m_examples[names.takeFirst()].toStdString());
                for (const QString& sAnswer : names) {
                    QTRY_VERIFY2(remote.socket.hasPendingDatagrams(), qPrintable(sTurn));
                    QCOMPARE(QString(remote.socket.receiveDatagram().data()), m_examples[sAnswer]);
                }
            }
            QTest::qWait(50);
            QVERIFY(!remote.socket.hasPendingDatagrams());
        };
        talk(8, 1400,
             {"discovery,serial", "state request,state", "alive,alive", "scene", "program",
              "scene poll,scene states", "color", "next", "command poll,color,commands", "channel,channel",
              "channel poll,held channels", "record,recorded", "scene,commands",
              "program,commands",  // what a remote shows as off after a start, and is on
              "goodbye"});
        talk(8, 36, {"discovery,fragment 1,fragment 2"});
        talk(0, 1400, {"state request,too many"});
    }
};

QTEST_MAIN(TestServer)
#include "tst_server.moc"
