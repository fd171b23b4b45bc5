#include "app/corvane.h"
#include "tests/peer.h"
#include "tests/support.h"
#include "widgets/cscenelist.h"

#include <QMessageBox>
#include <QtTest>

#include <memory>

/// Every way from one state of the connection to another, in real time, with a scripted server on real
/// sockets.
class TestTransport : public QObject {
    Q_OBJECT

    static constexpr int First = 8094;
    static constexpr int FallBack = 8012;

    static std::unique_ptr<Corvane> Open() {
        ChooseInterface();
        return std::make_unique<Corvane>();
    }

    static void AnswerBusyPort(int* pBoxes) {
        OnNext<QMessageBox>([pBoxes](QMessageBox* pBox) {
            QCOMPARE(pBox->windowTitle(), QString("Error"));
            QCOMPARE(pBox->text(), QString("Cannot connect to the Network Interface"));
            ++*pBoxes;
            pBox->accept();
        });
    }

private slots:
    void initTestCase() { QFile::remove(QCoreApplication::applicationDirPath() + "/Corvane.ini"); }

    void idle() {
        Peer peer;
        OnNext<QDialog>([](QDialog* pDialog) { pDialog->reject(); });
        Corvane window;
        QVERIFY(!window.IsConnected());
        QVERIFY(window.Close());
        window.OnSceneStateChanged(0, 1, true);
        QTest::qWait(200);
        QCOMPARE(peer.Count(-1), 0);
        OnNext<QDialog>([](QDialog* pDialog) {
            pDialog->findChild<QComboBox*>()->setCurrentIndex(-1);  // accepted with no address
            pDialog->accept();
        });
        window.Refresh();
        QVERIFY(!window.IsConnected());
        ChooseInterface();
        window.Refresh();
        QVERIFY(window.IsConnected());
        QTRY_VERIFY(window.IsAnswered());
    }

    void busyPort() {
        QUdpSocket blocker;
        QVERIFY(blocker.bind(QHostAddress::AnyIPv4, First, QAbstractSocket::DontShareAddress));
        int nBoxes = 0;
        AnswerBusyPort(&nBoxes);
        const auto window = Open();
        QCOMPARE(nBoxes, 1);
        QVERIFY(!window->IsConnected());
        blocker.close();
        window->Refresh();  // asks for no interface again
        QVERIFY(window->IsConnected());
    }

    void firstPair() {
        Peer peer;
        QElapsedTimer clock;
        clock.start();
        const auto window = Open();
        QCOMPARE(window->ServerAddress(), QString("127.0.0.1"));
        QTRY_VERIFY(window->IsAnswered());
        QVERIFY(clock.elapsed() < 900);
        QCOMPARE(window->LocalPort(), First);
        QCOMPARE(peer.Received()[0].text, QByteArray("{\n\t\"typ\" : 14\n}"));
        QCOMPARE(peer.Received()[1].text, QByteArray("{\n\t\"typ\" : 6\n}"));
        // Alive every two seconds from then on, and nothing else before the poll.
        QTRY_COMPARE_WITH_TIMEOUT(peer.Count(1), 2, 5000);
        const qint64 nFirst = peer.Received(1)[0].at - peer.Received()[0].at;
        const qint64 nGap = peer.Received(1)[1].at - peer.Received(1)[0].at;
        QVERIFY2(nFirst > 2000 && nFirst < 2300 && nGap > 2000 && nGap < 2300,
                 qPrintable(QString::number(nGap)));
        QCOMPARE(peer.Count(-1), 4);
        QVERIFY(!window->IsConnectionLost());
    }

    void fallBack() {
        Peer peer(8011);
        QElapsedTimer clock;
        clock.start();
        const auto window = Open();
        QTRY_VERIFY(window->IsAnswered());
        QVERIFY2(clock.elapsed() > 1000 && clock.elapsed() < 2000,
                 qPrintable(QString::number(clock.elapsed())));
        QCOMPARE(window->LocalPort(), FallBack);
        window->Refresh();
        QCOMPARE(window->LocalPort(), First);
    }

    void fallBackBusy() {
        QUdpSocket blocker;
        QVERIFY(blocker.bind(QHostAddress::AnyIPv4, FallBack, QAbstractSocket::DontShareAddress));
        const auto window = Open();
        QVERIFY(window->IsConnected());
        int nBoxes = 0;
        AnswerBusyPort(&nBoxes);
        QTRY_COMPARE(nBoxes, 1);
        QVERIFY(!window->IsConnected());
        QTest::qWait(1500);
        QCOMPARE(nBoxes, 1);
    }

    void neverAnswered() {
        Peer peer;
        peer.answersSerial = false;
        const auto window = Open();
        QTRY_COMPARE(window->LocalPort(), FallBack);
        QTest::qWait(4800);
        QVERIFY(!window->IsConnectionLost());
        QTRY_VERIFY_WITH_TIMEOUT(window->IsConnectionLost(), 600);
        QTest::qWait(1500);
        QCOMPARE(window->LocalPort(), FallBack);
        QVERIFY(!window->IsAnswered());
        // An answer takes the sign away, a state answers; a refresh begins again.
        Peer::SendTo(FallBack, R"({"typ":1})");
        QTRY_VERIFY(!window->IsConnectionLost());
        QVERIFY(!window->IsAnswered());
        Peer::SendTo(FallBack, R"({"typ":7,"content":{}})");
        QTRY_VERIFY(window->IsAnswered());
        window->Refresh();
        QCOMPARE(window->LocalPort(), First);
        QVERIFY(!window->IsAnswered());
    }

    void lostAndFound() {
        Peer peer;
        peer.answersAlive = false;
        const auto window = Open();
        QTRY_VERIFY(window->IsAnswered());
        QTest::qWait(4700);
        QVERIFY(!window->IsConnectionLost());
        QTRY_VERIFY_WITH_TIMEOUT(window->IsConnectionLost(), 600);
        QCOMPARE(peer.Count(1), 2);
        // Deferred packets wait and polls are not made, but alive goes on.
        window->OnSceneStateChanged(0, 7, true);
        QTest::qWait(5500);
        QCOMPARE(peer.Count(8) + peer.Count(17), 0);
        QVERIFY(peer.Count(1) >= 4);
        peer.answersAlive = true;
        QTRY_VERIFY_WITH_TIMEOUT(!window->IsConnectionLost(), 2200);
        QTRY_COMPARE_WITH_TIMEOUT(peer.Count(8), 1, 100);
    }

    void deferred() {
        Peer peer;
        const auto window = Open();
        QTRY_VERIFY(window->IsAnswered());
        // Of two within one tick the later leaves, within two ticks.
        QElapsedTimer clock;
        clock.start();
        window->SendCommand();
        window->SendColor();
        QTRY_COMPARE_WITH_TIMEOUT(peer.Count(10), 1, 60);
        QTest::qWait(100);
        QCOMPARE(peer.Count(11), 0);
        QCOMPARE(peer.Count(10), 1);
        // A burst of 40 ms leaves in ticks, and its last state is the last sent.
        for (clock.start(); clock.elapsed() < 400; QTest::qWait(2)) {
            window->OnProgramStateChanged(-1, static_cast<int>(clock.elapsed()), true);
        }
        window->OnProgramStateChanged(-1, 999, false);
        QTest::qWait(100);
        QVERIFY2(peer.Count(9) > 4 && peer.Count(9) <= 18, qPrintable(QString::number(peer.Count(9))));
        QVERIFY(peer.Received(9).last().text.contains("\"id\" : 999"));
        // What has no address goes nowhere; a text ends at its first NUL.
        window->SendPacket(std::string("{\"typ\":55}\0{", 12), false);
        QTRY_COMPARE(peer.Received(55).value(0).text, QByteArray("{\"typ\":55}"));
        // The patterns alternate between holding and releasing.
        for (const char* pState : {"true", "false"}) {
            window->SendUniverseSingleLevel();
            QTRY_VERIFY(!peer.Received(12).isEmpty() && peer.Received(12).last().text.contains(pState));
        }
    }

    void knownServer() {
        Peer peer;
        const auto window = Open();
        QTRY_VERIFY(window->IsAnswered());
        window->Refresh();
        QVERIFY(!window->IsAnswered());
        QTRY_VERIFY(window->IsAnswered());
        QCOMPARE(peer.Count(14), 1);
        QCOMPARE(peer.Count(6), 2);
    }

    void firstStateChoosesPage() {
        Peer peer;
        peer.answersState = false;
        const auto window = Open();
        window->OnMenuChanged(1);
        QTRY_COMPARE(peer.Count(6), 1);
        QVERIFY(!window->ProgramList()->isHidden());
        peer.Send(peer.state);
        QTRY_VERIFY(window->IsAnswered());
        QCOMPARE(window->CurrentPage(), 0);
        // Never again.
        window->OnMenuChanged(1);
        peer.Send(R"({"typ":7,"content":{"scn":{"content":[{"id":1}]}}})");
        QTRY_COMPARE(window->Scenes().size(), 1);
        QCOMPARE(window->CurrentPage(), 1);
    }

    void polls_data() {
        QTest::addColumn<int>("page");
        QTest::addColumn<int>("type");
        QTest::newRow("scenes") << 0 << 17;
        QTest::newRow("programs") << 1 << 17;
        QTest::newRow("color") << 2 << 19;
        QTest::newRow("channels") << 3 << 20;
        QTest::newRow("parameters") << 4 << 0;
    }

    void polls() {
        QFETCH(int, page);
        QFETCH(int, type);
        Peer peer;
        const auto window = Open();
        QTRY_VERIFY(window->IsAnswered());
        window->OnMenuChanged(page);
        QTest::qWait(4700);
        const auto others = [&peer] {
            return peer.Count(-1) - peer.Count(1) - peer.Count(6) - peer.Count(14);
        };
        QCOMPARE(others(), 0);
        if (type == 0) {
            QTest::qWait(1000);
            window->OnMenuChanged(0);  // the request timer was restarted all the same
            QTest::qWait(3000);
            QCOMPARE(others(), 0);
            return;
        }
        QTRY_COMPARE_WITH_TIMEOUT(peer.Count(type), 1, 700);
        // A switch puts the next poll off.
        QTest::qWait(2500);
        window->OnSceneStateChanged(0, 1, false);
        QTest::qWait(4700);
        QCOMPARE(peer.Count(type), 1);
        QTRY_COMPARE_WITH_TIMEOUT(peer.Count(type), 2, 700);
    }
};

QTEST_MAIN(TestTransport)
#include "tst_transport.moc"
