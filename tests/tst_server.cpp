#include "app/corvane.h"
#include "server/rehearsalserver.h"
#include "tests/support.h"
#include "widgets/cchannelslider.h"
#include "widgets/ccolorcircle.h"
#include "widgets/ccolorpicker.h"
#include "widgets/ccommandwnd.h"
#include "widgets/channelsgrid.h"
#include "widgets/cparamsctrl.h"
#include "widgets/cscenelist.h"
#include "widgets/csliderctrl.h"

#include <QMessageBox>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>
#include <memory>
#include <vector>

/// The rehearsal server: alone, and as a program with remotes around it.
class TestServer : public QObject {
    Q_OBJECT

    /// The program, running.
    struct Server {
        QProcess program;
        QByteArray log;

        explicit Server(const QStringList& arguments) {
            QObject::connect(&program, &QProcess::readyReadStandardOutput,
                             [this] { log += program.readAllStandardOutput(); });
            program.start(SERVER_PROGRAM, arguments);
            for (int i = 0; i < 100 && !log.contains("listens"); ++i) {
                QTest::qWait(20);
            }
        }

        ~Server() {
            program.kill();
            program.waitForFinished();
        }
    };

    /// What the program says on its way out; its exit status must be 2.
    static QString Refusal(const QStringList& arguments) {
        QProcess program;
        program.start(SERVER_PROGRAM, arguments);
        if (!program.waitForFinished(5000) || program.exitCode() != 2) {
            program.kill();
            program.waitForFinished();
            return "status " + QString::number(program.exitCode());
        }
        return program.readAllStandardError();
    }

    static std::unique_ptr<Corvane> OpenRemote(const QString& sInterface) {
        ChooseInterface(sInterface);
        return std::make_unique<Corvane>();
    }

    static void Click(const Corvane& remote, int iTile) {
        QTest::mouseClick(remote.SceneList(), Qt::LeftButton, {},
                          remote.SceneList()->Items()[iTile].rect.center());
    }

private slots:
    void badOptions_data() {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("complaint");
        QTest::newRow("unknown") << QStringList("--bogus") << "bogus";
        QTest::newRow("rest") << QStringList("extra") << "extra";
        QTest::newRow("limit") << QStringList({"--limit", "many"})
                               << "--limit takes a whole number from 0 to 1000";
        QTest::newRow("fragment") << QStringList({"--fragment", "60001"}) << "60001";
        QTest::newRow("address") << QStringList({"--address", "here"}) << "here";
        QTest::newRow("no file") << QStringList({"--show", "/no/such/show.json"})
                                 << "/no/such/show.json: No such file";
        QTest::newRow("a folder") << QStringList({"--show", "/"}) << "/: ";
    }

    void badOptions() {
        QFETCH(QStringList, arguments);
        QFETCH(QString, complaint);
        const QString sSaid = Refusal(arguments);
        QVERIFY2(sSaid.contains(complaint) && sSaid.count('\n') == 1, qPrintable(sSaid));
    }

    void badShows_data() {
        QTest::addColumn<QByteArray>("show");
        QTest::addColumn<QString>("complaint");
        QTest::newRow("empty") << QByteArray("") << "line 1: ";
        QTest::newRow("cut") << QByteArray("{\n\"scenes\": [\n{\"id\":1}") << "line 3: not JSON";
        QTest::newRow("no object") << QByteArray("[]") << "line 1: a show must stand in { }";
        QTest::newRow("unknown key") << QByteArray("{\n\n\"scnes\": []}")
                                     << "line 3: a show has no key \"scnes\"";
        QTest::newRow("no list") << QByteArray("{\"scenes\":\n{}}") << "line 2: the scenes must be a list";
        QTest::newRow("no id") << QByteArray("{\"programs\":[{\"id\":1},\n{\"name\":\n\"x\"}]}")
                               << "line 2: this program has no \"id\"";
        QTest::newRow("id twice") << QByteArray("{\"scenes\":[\n{\"id\":1},\n{\"id\":1}]}")
                                  << "line 3: the id 1 stands";
        QTest::newRow("id text") << QByteArray("{\"scenes\":[{\n\"id\":\"1\"}]}")
                                 << "line 2: \"id\" must be a whole";
        QTest::newRow("id large") << QByteArray("{\"scenes\":[{\n\"id\":3e9}]}")
                                  << "line 2: \"id\" must be a whole";
        QTest::newRow("program area")
            << QByteArray("{\"programs\":[{\"id\":1,\n\"area\":1}]}") << "line 2: a program has no";
        QTest::newRow("serial") << QByteArray("{\n\"serial\":5}") << "line 2: \"serial\" must be a text";
    }

    void badShows() {
        QFETCH(QByteArray, show);
        QFETCH(QString, complaint);
        QTemporaryDir folder;
        QFile file(folder.filePath("show.json"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(show);
        file.close();
        const QString sSaid = Refusal({"--show", file.fileName()});
        QVERIFY2(sSaid.contains(file.fileName() + ": " + complaint) && sSaid.count('\n') == 1,
                 qPrintable(sSaid));
    }

    void goodShow() {
        QTemporaryDir folder;
        QFile file(folder.filePath("show.json"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(
            R"({"serial":"77","scenes":[{"id":4,"name":"Caf\u00e9","area":2,"level":9,"state":true},{"id":5}]})");
        file.close();
        const Show show = Show::Load(file.fileName());
        QCOMPARE(show.serial, std::string("77"));
        QCOMPARE(show.scenes[0].name, std::string("Caf\xC3\xA9"));
        QVERIFY(show.scenes[0].area == 2 && show.scenes[0].level == 9 && show.scenes[0].state);
        QVERIFY(show.scenes[1].area == -1 && show.programs.empty());
    }

    /// The main job: two remotes, fragments, a click, a silence.
    void rehearsal() {
        Server server({"--fragment", "400"});
        const auto first = OpenRemote("10.77.0.2");
        const auto second = OpenRemote("10.77.0.3");
        QTRY_VERIFY(first->IsAnswered() && second->IsAnswered());
        QCOMPARE(first->SceneList()->Items().size(), 13);

        QElapsedTimer clock;
        clock.start();
        Click(*second, 3);
        QTRY_VERIFY_WITH_TIMEOUT(server.log.contains("scene 4 on"), 200);
        const qint64 nToServer = clock.elapsed();
        QTRY_VERIFY_WITH_TIMEOUT(first->SceneList()->Items()[3].state, 200);
        qInfo("a click is in the server's log after %lld ms, on the other remote after %lld ms", nToServer,
              clock.elapsed());
        QVERIFY(nToServer <= 150);  // two ticks, and what a busy machine adds
        Click(*first, 4);
        QTRY_VERIFY_WITH_TIMEOUT(second->SceneList()->Items()[4].state, 200);
        QVERIFY(!second->SceneList()->Items()[3].state);

        // The server hangs for seven seconds: the sign comes, goes, and what was due then is not lost.
        QVERIFY(::kill(static_cast<pid_t>(server.program.processId()), SIGSTOP) == 0);
        clock.start();
        QTRY_VERIFY_WITH_TIMEOUT(first->IsConnectionLost(), 7000);
        const qint64 nLost = clock.elapsed();
        QVERIFY2(nLost > 2900 && nLost < 5300, qPrintable(QString::number(nLost)));
        Click(*first, 0);
        QTest::qWait(static_cast<int>(7000 - clock.elapsed()));
        QVERIFY(!server.log.contains("scene 1 "));
        QVERIFY(::kill(static_cast<pid_t>(server.program.processId()), SIGCONT) == 0);
        QTRY_VERIFY_WITH_TIMEOUT(!first->IsConnectionLost(), 2500);
        QTRY_VERIFY_WITH_TIMEOUT(server.log.contains("scene 1 off"), 200);
        QTRY_VERIFY(!second->SceneList()->Items()[0].state);
        qInfo("lost %lld ms after the server stopped", nLost);
    }

    /// All servers of a network are listed; the one that is chosen is talked to, and no other.
    void threeServers() {
        std::vector<std::unique_ptr<Server>> servers;
        for (const QStringList& identity :
             {QStringList{"10.77.0.2", "Beta"}, {"10.77.0.3", "Alpha"}, {"10.77.0.4", "Gamma"}}) {
            servers.push_back(
                std::make_unique<Server>(QStringList{"--address", identity[0], "--serial", identity[1]}));
        }
        const auto remote = OpenRemote("Auto");
        QTRY_COMPARE(remote->Params()->Servers().Labels(), QStringList({"Alpha", "Beta", "Gamma"}));
        QTRY_VERIFY(remote->IsAnswered());
        QCOMPARE(remote->ServerAddress(), QString("10.77.0.3"));
        auto* pCombo = remote->Params()->findChild<QComboBox*>();
        pCombo->setCurrentIndex(2);
        QTRY_VERIFY(remote->IsAnswered());
        QCOMPARE(remote->ServerAddress(), QString("10.77.0.4"));
        for (const auto& pServer : servers) {
            pServer->log.clear();
        }
        Click(*remote, 5);
        QTRY_VERIFY(servers[2]->log.contains("scene 6 on"));
        QTest::qWait(2500);  // alive messages go there too
        QVERIFY(servers[2]->log.contains("is alive"));
        QCOMPARE(servers[0]->log + servers[1]->log, QByteArray());
        QCOMPARE(pCombo->currentIndex(), 2);
    }

    /// A drag over the wheel at 200 moves a second: at most a datagram a tick, and the last pick is what
    /// stays.
    void wheelDrag() {
        Server server({});
        const auto first = OpenRemote("10.77.0.2");
        const auto second = OpenRemote("10.77.0.3");
        QTRY_VERIFY(first->IsAnswered() && second->IsAnswered());
        first->OnMenuChanged(2);
        second->OnMenuChanged(2);
        server.log.clear();
        CColorCircle* pWheel = first->Picker()->Wheel();
        const auto mouse = [pWheel](QEvent::Type type, const QPoint& at) {
            QMouseEvent event(type, at, Qt::LeftButton, Qt::LeftButton, {});
            QCoreApplication::sendEvent(pWheel, &event);
        };
        mouse(QEvent::MouseButtonPress, {210, 210});
        QElapsedTimer clock;
        clock.start();
        int nMoves = 0;
        for (; clock.elapsed() < 2000; ++nMoves) {
            mouse(QEvent::MouseMove, {30 + nMoves % 360, 60 + nMoves * 3 % 300});
            QTest::qWait(static_cast<int>(std::max<qint64>(0, 5 * (nMoves + 1) - clock.elapsed())));
        }
        mouse(QEvent::MouseMove, {300, 130});
        mouse(QEvent::MouseButtonRelease, {300, 130});
        const QColor last = pWheel->GetColor();
        QTRY_COMPARE(second->Picker()->Wheel()->GetColor(), last);
        QVERIFY(second->Picker()->Wheel()->IsOn());
        QTRY_VERIFY(server.log.contains(QString("color %1 %2 %3 white 0 on")
                                            .arg(last.red())
                                            .arg(last.green())
                                            .arg(last.blue())
                                            .toUtf8()));
        const int nSent = server.log.count(" color ");
        qInfo("%d moves in 2 s left in %d datagrams", nMoves, nSent);
        QVERIFY(nMoves > 250 && nSent > 20 && nSent <= 2000 / 25 + 3);
        QVERIFY(!server.log.contains("10.77.0.3:8094 color"));  // nothing is echoed
        // A scene that a client starts releases the colour at the others, and that is told.
        first->SceneList()->stateChanged(0, 2, true);
        QTRY_VERIFY(server.log.contains("10.77.0.3:8094 color") && !second->Picker()->Wheel()->IsOn());
        // Commands pass the same way.
        QTest::mouseClick(second->Picker()->Commands(), Qt::LeftButton, {}, QPoint(50, 120));
        QTRY_VERIFY(first->Picker()->Commands()->IsOn(CCommandWnd::Black));
        emit first->Picker()->Dimmer()->valueChanged(128);
        QTRY_COMPARE(second->Picker()->Dimmer()->Value(), 128);
    }

    /// The user's channel 1 is the server's first channel, and its answer lands in the same cell.
    void channels() {
        Server server({});
        const auto first = OpenRemote("10.77.0.2");
        const auto second = OpenRemote("10.77.0.3");
        QTRY_VERIFY(first->IsAnswered() && second->IsAnswered());
        first->OnMenuChanged(3);
        first->show();
        ChannelsGrid* pGrid = first->Grid();
        QTest::mouseClick(pGrid, Qt::LeftButton, {}, pGrid->CellRect(0).center());
        QCOMPARE(pGrid->Editor()->Channel(), 1);
        QTest::mouseClick(pGrid->Editor()->Control()->Slider(), Qt::LeftButton, {}, QPoint(5, 0));
        QTRY_VERIFY(server.log.contains("universe 0 channel 0 level 255 on"));
        QTRY_VERIFY(first->ChannelState().level == 255 && first->ChannelState().chan == 0);
        QVERIFY(pGrid->Tables().states[0]);  // shown by the answer, before the editor is closed
        QTRY_VERIFY(second->Grid()->Tables().states[0] && second->Grid()->Tables().levels[0] == 255);
        emit pGrid->Editor()->off();
        QTRY_VERIFY(!second->Grid()->Tables().states[0]);
        // Whole universes and runs, in fragments; a poll brings what is held.
        first->SendUniverse();
        QTRY_VERIFY(second->Grid()->Tables().states[511] && second->Grid()->Tables().levels[511] == 127);
        first->SendUniverseSingleLevel();
        first->SendUniverseSingleLevel();
        QTRY_VERIFY(!second->Grid()->Tables().states[0]);
        first->SendUniverseColor();
        QTRY_VERIFY(second->Grid()->Tables().levels[299] == 200 && !second->Grid()->Tables().states[300]);
        first->Grid()->ReleaseChannels();
        first->SendDmxState();
        QTRY_VERIFY(first->Grid()->Tables().levels[1] == 100 && first->Grid()->Tables().states[298]);
    }

    void clients() {
        {
            Server server({"--limit", "0", "--fall-back", "--delay", "20"});
            int nBoxes = 0;
            OnNext<QMessageBox>([&nBoxes](QMessageBox* pBox) {
                ++nBoxes;
                pBox->accept();
            });
            const auto remote = OpenRemote("Auto");
            QTRY_COMPARE(nBoxes, 1);
            QVERIFY(server.log.contains("too many clients"));
        }
        // Silence from the start on: it hears, and says nothing.
        Server server({"--silent-after", "0"});
        const auto remote = OpenRemote("Auto");
        QTest::qWait(500);
        QVERIFY(!remote->IsAnswered());
        QVERIFY(!server.log.contains("who is there"));
    }
};

QTEST_MAIN(TestServer)
#include "tst_server.moc"
