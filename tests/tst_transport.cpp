#include "app/interfaceaddress.h"
#include "tests/remote.h"

/// Every way from one state of the connection to another, in real time, with a scripted server.
class TestTransport : public QObject {
    Q_OBJECT

    static constexpr quint16 First = 8094;
    static constexpr quint16 FallBack = 8012;

    std::unique_ptr<Corvane> m_pWindow;
    QElapsedTimer m_clock;  ///< since just before the window came

    void Open(bool bUntilAnswered = true, const QByteArray& settings = {}) {
        m_pWindow.reset();
        m_clock.start();
        m_pWindow = OpenRemote(settings);
        QTRY_VERIFY(m_pWindow->IsAnswered() || !bUntilAnswered);
    }

    static inline QStringList lines;

private slots:
    void cleanup() { m_pWindow.reset(); }

    void idle() {
        Peer peer;
        OnNext<QDialog>([](QDialog* pDialog) { pDialog->reject(); });
        Corvane window;
        QVERIFY(!window.IsConnected() && window.Close());
        QTest::qWait(200);
        QCOMPARE(peer.Count(-1), 0);
        ChooseInterface("none so named");  // accepted with no address
        window.Refresh();
        QVERIFY(!window.IsConnected());
        ChooseInterface();
        window.Refresh();
        QTRY_VERIFY(window.IsAnswered());
    }

    /// What a report of a fault tells: nothing unasked, no secret, nothing that moves a terminal's cursor.
    void log() {
        const auto before =
            qInstallMessageHandler([](QtMsgType, const QMessageLogContext& context, const QString& sLine) {
                if (QByteArray(context.category).startsWith("corvane.")) {
                    lines += context.category + (' ' + sLine);
                }
            });
        Peer peer;
        const auto play = [&] {
            Open(true, "PwdState=1\nPwdValue=hush\n");
            m_pWindow->ReadData("{\"typ\":15,\"content\":{\"serial\":\"\\u001b[31mred\\n\"}}", "10.0.0.5");
            m_pWindow->ReadData("{", "10.0.0.6");
            m_pWindow->ReadData(R"({"typ":99,"content":{}})", "10.0.0.7");
            m_pWindow->ReadData(R"({"typ":12,"content":{"univ":32,"chan":0}})", "10.0.0.8");
            m_pWindow->OnBlackChanged(true);
            m_pWindow->OnBlackChanged(false);
        };
        play();
        QCOMPARE(lines, QStringList());
        QLoggingCategory::setFilterRules("corvane.*=true");
        play();
        m_pWindow.reset();
        QLoggingCategory::setFilterRules({});
        qInstallMessageHandler(before);
        for (const char* pTold : {"net network \"Auto\" broadcast \"127.0.0.1\"",
                                  "net looking: ", "wire out who is there. .14., 15 bytes to 127.0.0.1 8093",
                                  "wire in serial .* from 127.0.0.1 8093", "net online: ",
                                  "net server .*31mred.n\" at \"10.0.0.5\"", "drop in: .* from \"10.0.0.6\"",
                                  "drop in: type 99 .* \"10.0.0.7\"", "drop no such channel: 32 0",
                                  "drop out command .* replaced by command", "net left port 8094"}) {
            QVERIFY2(!lines.filter(QRegularExpression(QString("^corvane.") + pTold)).isEmpty(), pTold);
        }
        QCOMPARE(lines.filter(QRegularExpression("[^ -~]|hush")), QStringList());
    }

    /// Comes upon a port that another program has: says so once, and is not connected.
    void busyPort() {
        for (const quint16 nPort : {First, FallBack}) {
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
            blocker.close();
            m_pWindow->Refresh();  // asks for no interface again
            QVERIFY(m_pWindow->IsConnected());
        }
    }

    void fallBack() {
        Peer peer(8011);
        Open(false);
        QVERIFY(Within(1500, [this] { return m_pWindow->IsAnswered(); }));
        QVERIFY(m_clock.elapsed() >= 1000);
        m_pWindow->Refresh();
        QCOMPARE(m_pWindow->LocalPort(), First);
    }

    void lostAndFound() {
        Peer peer;
        peer.answersAlive = false;
        Open();
        QVERIFY(Within(5500, [this] { return m_pWindow->IsConnectionLost(); }));
        QVERIFY(m_clock.elapsed() >= 5000);
        // Deferred packets wait and polls are not made, but alive goes on, every two seconds.
        m_pWindow->OnSceneStateChanged(0, 7, true);
        const int nAlive = peer.Count(1);
        QVERIFY(Within(6600, [&] { return peer.Count(1) >= nAlive + 3; }));
        QVERIFY(peer.Count(1) <= m_clock.elapsed() / 2000);
        QCOMPARE(peer.Count(8) + peer.Count(17), 0);
        peer.answersAlive = true;
        QVERIFY(Within(2400, [this] { return !m_pWindow->IsConnectionLost(); }));
        QTRY_COMPARE(peer.Count(8), 1);
    }

    /// With no one there to be asked: no dialog, no box, and the sign stands until a server has come.
    void unattended() {
        QUdpSocket blocker;
        QVERIFY(blocker.bind(QHostAddress::AnyIPv4, First, QAbstractSocket::DontShareAddress));
        Corvane later(nullptr, {}, "wall0");  // an interface that is not there yet
        Corvane window(nullptr, {}, "127.0.0.1");
        window.show();
        QVERIFY(!later.IsConnected() && !window.IsConnected());
        blocker.close();
        const auto sign = [&window] { return !window.PartRect(Corvane::LostSign).isNull(); };
        QVERIFY(Within(10500, [&window] { return window.IsConnected(); }));
        QVERIFY(sign());
        const Peer peer;
        QVERIFY(Within(10500, [&window] { return window.IsAnswered(); }));
        QVERIFY(!sign() && !later.IsConnected() && QApplication::activeModalWidget() == nullptr);
        for (const QString sRight : {"auto", "10.0.0.1", "eth0", "wlp3s0.7", "br-lan"}) {
            QVERIFY2(IsNetwork(sRight), qPrintable(sRight));
        }
        for (const QString sWrong : {"", "10.0.0", "10.0.0.256", "::1", "a b", "-x", "abcdefghijklmnop"}) {
            QVERIFY2(!IsNetwork(sWrong), qPrintable(sWrong));
        }
    }

    void firstStateChoosesPage() {
        Peer peer;
        peer.answersState = false;
        Open(false);
        QTRY_COMPARE(peer.Count(6), 1);
        for (const auto& [pScenes, nPage] : {std::pair{"", 0}, {R"("scn":{"content":[{}]})", 1}}) {
            m_pWindow->OnMenuChanged(1);
            peer.Send(QByteArray(R"({"typ":7,"content":{)") + pScenes + "}}");
            QTRY_VERIFY(m_pWindow->IsAnswered() && m_pWindow->Scenes().size() == nPage);
            QCOMPARE(m_pWindow->CurrentPage(), nPage);  // chosen once, never again
        }
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
        const auto polls = [&] { return others() > 2; };  // discovery and the state
        if (type == 0) {
            QVERIFY(!Within(5700, polls));
            m_pWindow->OnMenuChanged(0);  // the request timer was restarted all the same
            QVERIFY(Within(5500, polls) && m_clock.elapsed() >= 10000);
            return;
        }
        QVERIFY(Within(5500, polls) && m_clock.elapsed() >= 5000);
        QCOMPARE(peer.Count(type), 1);
        // A switch puts the next poll off.
        QTest::qWait(2500);
        m_clock.start();
        page == 1 ? m_pWindow->OnProgramStateChanged(0, 1, false)
                  : m_pWindow->OnSceneStateChanged(0, 1, false);
        QVERIFY(Within(5500, [&] { return peer.Count(type) == 2; }) && m_clock.elapsed() >= 5000);
    }
};

QTEST_MAIN(TestTransport)
#include "tst_transport.moc"
