#include "tests/peer.h"
#include "tests/remote.h"

#include <QMessageBox>

/// Every way from one state of the connection to another, in real time, with a scripted server.
class TestTransport : public QObject {
    Q_OBJECT

    static constexpr int First = 8094;
    static constexpr int FallBack = 8012;

    std::unique_ptr<Corvane> m_pWindow;

    void Open(bool bUntilAnswered = true) {
        m_pWindow = OpenRemote();
        QTRY_VERIFY(m_pWindow->IsAnswered() || !bUntilAnswered);
    }

    /// Comes upon a port that another program has: says so once, and is not connected.
    void FindBusy(quint16 nPort) {
        QUdpSocket blocker;
        QVERIFY(blocker.bind(QHostAddress::AnyIPv4, nPort, QAbstractSocket::DontShareAddress));
        int nBoxes = 0;
        OnNext<QMessageBox>([&nBoxes](QMessageBox* pBox) {
            QCOMPARE(pBox->text(), QString("Cannot connect to the Network Interface"));
            ++nBoxes;
            pBox->accept();
        });
        Open(false);
        QTRY_COMPARE(nBoxes, 1);
        QTest::qWait(1500);
        QVERIFY(m_pWindow->LocalPort() == nPort && !m_pWindow->IsConnected());
    }

private slots:
    void cleanup() { m_pWindow.reset(); }

    void idle() {
        Peer peer;
        OnNext<QDialog>([](QDialog* pDialog) { pDialog->reject(); });
        Corvane window;
        QVERIFY(!window.IsConnected() && window.Close());
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
        QTRY_VERIFY(window.IsAnswered());
    }

    void busyPort() {
        FindBusy(First);
        m_pWindow->Refresh();  // asks for no interface again
        QVERIFY(m_pWindow->IsConnected());
    }

    void fallBackBusy() { FindBusy(FallBack); }

    void firstPair() {
        Peer peer;
        Open();
        QCOMPARE(m_pWindow->ServerAddress(), QString("127.0.0.1"));
        QVERIFY(m_pWindow->LocalPort() == First && peer.Received()[1].at < 900);
        // Alive every two seconds from then on, and nothing else before the poll.
        QTRY_COMPARE_WITH_TIMEOUT(peer.Count(1), 2, 5000);
        const qint64 nFirst = peer.Received(1)[0].at - peer.Received()[0].at;
        const qint64 nGap = peer.Received(1)[1].at - peer.Received(1)[0].at;
        QVERIFY(nFirst > 2000 && nFirst < 2300 && nGap > 2000 && nGap < 2300);
        QCOMPARE(peer.Count(-1), 4);
        // A server that is known is asked for its state at once.
        m_pWindow->Refresh();
        QVERIFY(!m_pWindow->IsAnswered());
        QTRY_VERIFY(m_pWindow->IsAnswered());
        QVERIFY(peer.Count(14) == 1 && peer.Count(6) == 2);
    }

    void fallBack() {
        Peer peer(8011);
        Open();
        QVERIFY(peer.Received()[0].at > 1000 && peer.Received()[1].at < 2000);
        m_pWindow->Refresh();
        QCOMPARE(m_pWindow->LocalPort(), First);
    }

    void neverAnswered() {
        Open(false);
        QTRY_COMPARE(m_pWindow->LocalPort(), FallBack);
        QTest::qWait(4800);
        QVERIFY(!m_pWindow->IsConnectionLost());
        QTRY_VERIFY_WITH_TIMEOUT(m_pWindow->IsConnectionLost(), 600);
        // An answer takes the sign away, only a state answers.
        Peer::SendTo(FallBack, R"({"typ":1})");
        QTRY_VERIFY(!m_pWindow->IsConnectionLost());
        QVERIFY(!m_pWindow->IsAnswered());
        Peer::SendTo(FallBack, R"({"typ":7,"content":{}})");
        QTRY_VERIFY(m_pWindow->IsAnswered());
    }

    void lostAndFound() {
        Peer peer;
        peer.answersAlive = false;
        Open();
        QTest::qWait(4700);
        QVERIFY(!m_pWindow->IsConnectionLost());
        QTRY_VERIFY_WITH_TIMEOUT(m_pWindow->IsConnectionLost(), 600);
        // Deferred packets wait and polls are not made, but alive goes on.
        m_pWindow->OnSceneStateChanged(0, 7, true);
        QTest::qWait(5500);
        QCOMPARE(peer.Count(8) + peer.Count(17), 0);
        QVERIFY(peer.Count(1) >= 4);
        peer.answersAlive = true;
        QTRY_VERIFY_WITH_TIMEOUT(!m_pWindow->IsConnectionLost(), 2200);
        QTRY_COMPARE_WITH_TIMEOUT(peer.Count(8), 1, 100);
    }

    /// A burst leaves in ticks, of two within one the later, and its last state is the last sent.
    void deferred() {
        Peer peer;
        Open();
        QElapsedTimer clock;
        for (clock.start(); clock.elapsed() < 400; QTest::qWait(2)) {
            m_pWindow->OnProgramStateChanged(-1, static_cast<int>(clock.elapsed()), true);
        }
        m_pWindow->SendCommand();
        m_pWindow->OnProgramStateChanged(-1, 999, false);
        QTest::qWait(100);
        QVERIFY2(peer.Count(9) > 4 && peer.Count(9) <= 18, qPrintable(QString::number(peer.Count(9))));
        QVERIFY(peer.Received().last().text.contains("\"id\" : 999") && peer.Count(11) == 0);
    }

    void firstStateChoosesPage() {
        Peer peer;
        peer.answersState = false;
        Open(false);
        m_pWindow->OnMenuChanged(1);
        QTRY_COMPARE(peer.Count(6), 1);
        peer.Send(peer.state);
        QTRY_VERIFY(m_pWindow->IsAnswered());
        QCOMPARE(m_pWindow->CurrentPage(), 0);
        // Never again.
        m_pWindow->OnMenuChanged(1);
        peer.Send(R"({"typ":7,"content":{"scn":{"content":[{"id":1}]}}})");
        QTRY_COMPARE(m_pWindow->Scenes().size(), 1);
        QCOMPARE(m_pWindow->CurrentPage(), 1);
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
        Open();
        m_pWindow->OnMenuChanged(page);
        const auto others = [&peer] { return peer.Count(-1) - peer.Count(1); };
        QTest::qWait(4700);
        QCOMPARE(others(), 2);  // discovery and the state
        if (type == 0) {
            QTest::qWait(1000);
            m_pWindow->OnMenuChanged(0);  // the request timer was restarted all the same
            QTest::qWait(3000);
            QCOMPARE(others(), 2);
            return;
        }
        QTRY_COMPARE_WITH_TIMEOUT(peer.Count(type), 1, 700);
        // A switch puts the next poll off.
        QTest::qWait(2500);
        m_pWindow->OnSceneStateChanged(0, 1, false);
        QTest::qWait(4700);
        QCOMPARE(peer.Count(type), 1);
        QTRY_COMPARE_WITH_TIMEOUT(peer.Count(type), 2, 700);
    }
};

QTEST_MAIN(TestTransport)
#include "tst_transport.moc"
