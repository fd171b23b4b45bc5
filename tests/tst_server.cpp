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
#include <QTemporaryFile>
#include <QtTest>

#include <csignal>
#include <memory>

/// The rehearsal server: alone, and as a program with remotes around it.
class TestServer : public QObject {
    Q_OBJECT

    /// The program, running.
    struct Server {
        QByteArray log;
        QProcess program;

        explicit Server(const QStringList& arguments) {
            QObject::connect(&program, &QProcess::readyReadStandardOutput,
                             [this] { log += program.readAllStandardOutput(); });
            program.start(SERVER_PROGRAM, arguments);
            QVERIFY(QTest::qWaitFor([this] { return log.contains("listens"); }, 2000));
        }
        ~Server() { program.close(); }
    };

    /// The program ends with status 2 and one line that holds the complaint.
    static void Refuses(const QStringList& arguments, const QString& sComplaint) {
        QProcess program;
        program.start(SERVER_PROGRAM, arguments);
        QVERIFY2(program.waitForFinished(5000), qPrintable(sComplaint));
        const QString sSaid = program.readAllStandardError();
        QVERIFY2(sSaid.contains(sComplaint) && sSaid.count('\n') == 1, qPrintable(sSaid));
        QCOMPARE(program.exitCode(), 2);
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
    void badOptions() {
        Refuses({"--bogus"}, "bogus");
        Refuses({"extra"}, "extra");
        Refuses({"--limit", "many"}, "--limit takes a whole number from 0 to 1000");
        Refuses({"--fragment", "60001"}, "60001");
        Refuses({"--address", "here"}, "here");
        Refuses({"--show", "/no/such/show.json"}, "/no/such/show.json: No such file");
        Refuses({"--show", "/"}, "/: ");
    }

    void badShows() {
        const auto refuses = [](const char* pShow, const QString& sComplaint) {
            QTemporaryFile file;
            QVERIFY(file.open() && file.write(pShow) >= 0 && file.flush());
            Refuses({"--show", file.fileName()}, file.fileName() + ": " + sComplaint);
        };
        refuses("", "line 1: ");
        refuses("{\n\"scenes\": [\n{\"id\":1}", "line 3: not JSON");
        refuses("[]", "line 1: a show must stand in { }");
        refuses("{\n\n\"scnes\": []}", "line 3: a show has no key \"scnes\"");
        refuses("{\"scenes\":\n{}}", "line 2: the scenes must be a list");
        refuses("{\"programs\":[{\"id\":1},\n{\"name\":\n\"x\"}]}", "line 2: this program has no \"id\"");
        refuses("{\"scenes\":[\n{\"id\":1},\n{\"id\":1}]}", "line 3: the id 1 stands");
        refuses("{\"scenes\":[{\n\"id\":\"1\"}]}", "line 2: \"id\" must be a whole");
        refuses("{\"scenes\":[{\n\"id\":3e9}]}", "line 2: \"id\" must be a whole");
        refuses("{\"programs\":[{\"id\":1,\n\"area\":1}]}", "line 2: a program has no");
        refuses("{\n\"serial\":5}", "line 2: \"serial\" must be a text");
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
        QVERIFY(clock.elapsed() <= 150);  // two ticks, and what a busy machine adds
        QTRY_VERIFY_WITH_TIMEOUT(first->SceneList()->Items()[3].state, 200);
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
    }

    /// All servers of a network are listed; the one that is chosen is talked to, and no other.
    void threeServers() {
        Server beta({"--address", "10.77.0.2", "--serial", "Beta"});
        Server alpha({"--address", "10.77.0.3", "--serial", "Alpha"});
        Server gamma({"--address", "10.77.0.4", "--serial", "Gamma"});
        const auto remote = OpenRemote("Auto");
        QTRY_COMPARE(remote->Params()->Servers().Labels(), QStringList({"Alpha", "Beta", "Gamma"}));
        QTRY_VERIFY(remote->IsAnswered());
        QCOMPARE(remote->ServerAddress(), QString("10.77.0.3"));
        auto* pCombo = remote->Params()->findChild<QComboBox*>();
        pCombo->setCurrentIndex(2);
        QTRY_VERIFY(remote->IsAnswered());
        QCOMPARE(remote->ServerAddress(), QString("10.77.0.4"));
        for (Server* pServer : {&alpha, &beta, &gamma}) {
            pServer->log.clear();
        }
        Click(*remote, 5);
        QTRY_VERIFY(gamma.log.contains("scene 6 on"));
        QTest::qWait(2500);  // alive messages go there too
        QVERIFY(gamma.log.contains("is alive"));
        QCOMPARE(alpha.log + beta.log, QByteArray());
        QCOMPARE(pCombo->currentIndex(), 2);
    }

    /// A drag over the wheel at 200 moves a second: at most a datagram a tick, and the last pick stays.
    void wheelDrag() {
        Server server({});
        const auto first = OpenRemote("10.77.0.2");
        const auto second = OpenRemote("10.77.0.3");
        QTRY_VERIFY(first->IsAnswered() && second->IsAnswered());
        first->OnMenuChanged(2);
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
            QTest::qWait(static_cast<int>(std::max<qint64>(0, qint64{5} * (nMoves + 1) - clock.elapsed())));
        }
        mouse(QEvent::MouseMove, {300, 130});
        mouse(QEvent::MouseButtonRelease, {300, 130});
        const QColor last = pWheel->GetColor();
        QTRY_COMPARE(second->Picker()->Wheel()->GetColor(), last);
        QVERIFY(second->Picker()->Wheel()->IsOn());
        const QString sLast = QString("color %1 %2 %3 white 0 on");
        QTRY_VERIFY(server.log.contains(sLast.arg(last.red()).arg(last.green()).arg(last.blue()).toUtf8()));
        const int nSent = server.log.count(" color ");
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
        const Universes& other = second->Grid()->Tables();
        QTest::mouseClick(pGrid, Qt::LeftButton, {}, pGrid->CellRect(0).center());
        QTest::mouseClick(pGrid->Editor()->Control()->Slider(), Qt::LeftButton, {}, QPoint(5, 0));
        QTRY_VERIFY(server.log.contains("universe 0 channel 0 level 255 on"));
        QTRY_VERIFY(first->ChannelState().level == 255 && first->ChannelState().chan == 0);
        QVERIFY(pGrid->Tables().states[0]);  // shown by the answer, before the editor is closed
        QTRY_VERIFY(other.states[0] && other.levels[0] == 255);
        emit pGrid->Editor()->off();
        QTRY_VERIFY(!other.states[0]);
        // Whole universes and runs, in fragments; a poll brings what is held.
        for (const auto send : {&Corvane::SendUniverse, &Corvane::SendUniverseSingleLevel}) {
            for (const bool bHold : {true, false}) {
                (first.get()->*send)();
                QTRY_VERIFY(other.states[511] == bHold && (!bHold || other.levels[511] == 127));
            }
        }
        first->SendUniverseColor();
        QTRY_VERIFY(other.levels[299] == 200 && !other.states[300]);
        pGrid->ReleaseChannels();
        first->SendDmxState();
        QTRY_VERIFY(pGrid->Tables().levels[1] == 100 && pGrid->Tables().states[298]);
    }

    void clients() {
        {
            Server server({"--limit", "0", "--fall-back", "--delay", "20"});
            int nBoxes = 0;
            OnNext<QMessageBox>([&nBoxes](QMessageBox* pBox) { pBox->done(++nBoxes); });
            const auto remote = OpenRemote("Auto");
            QTRY_COMPARE(nBoxes, 1);
            QVERIFY(server.log.contains("too many clients"));
        }
        // Silence from the start on: it hears, and says nothing.
        Server server({"--silent-after", "0"});
        const auto remote = OpenRemote("Auto");
        QTest::qWait(500);
        QVERIFY(!remote->IsAnswered() && !server.log.contains("who is there"));
    }
};

QTEST_MAIN(TestServer)
#include "tst_server.moc"
