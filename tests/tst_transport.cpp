#include "app/interfaceaddress.h"
#include "server/remotes/replies.h"
#include "tests/remote.h"

#include <random>

/// Every way from one state of the connection to another, in real time, with a scripted server, and what no
/// network and no hand may bring down.
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
        for (const bool bChosen : {false, true}) {
            ChooseInterface(bChosen ? "Auto" : "none so named");  // accepted with no address
            window.Refresh();
            QCOMPARE(window.IsConnected(), bChosen);
        }
        QTRY_VERIFY(window.IsAnswered());
    }

    /// What a report of a fault tells: nothing unasked, no secret, nothing that moves a terminal's cursor.
    void log() {
        const auto note = [](QtMsgType, const QMessageLogContext& context, const QString& sLine) {
            lines += QStringList(context.category + (' ' + sLine)).filter(QRegularExpression("^corvane\\."));
        };
        const auto before = qInstallMessageHandler(note);
        Peer peer;
        for (const char* pRules : {"", "corvane.*=true"}) {
            QCOMPARE(lines, QStringList());
            QLoggingCategory::setFilterRules(pRules);
            Open(true, "PwdState=1\nPwdValue=hush\n");
            for (const char* pText :
                 {"{\"typ\":15,\"content\":{\"serial\":\"\\u001b[31mred\\n\"}}", "{",
                  R"({"typ":99,"content":{}})", R"({"typ":12,"content":{"univ":32,"chan":0}})"}) {
                m_pWindow->ReadData(pText, "10.0.0.5");
            }
            m_pWindow->OnBlackChanged(true);
            m_pWindow->OnBlackChanged(false);
        }
        m_pWindow.reset();
        QLoggingCategory::setFilterRules({});
        qInstallMessageHandler(before);
        for (const QStringList& row : Table(R"(
net network .Auto. broadcast .127.0.0.1.
net looking: .*
wire out who is there. .14., 15 bytes to 127.0.0.1 8093
wire in serial .* from 127.0.0.1 8093
net online: .*
net server .*31mred.n. at .10.0.0.5.
drop in: [^t].* from .10.0.0.5.
drop in: type 99 .* .10.0.0.5.
drop no such channel: 32 0
drop out command .* replaced by command.*
net left port 8094
)")) {
            const QRegularExpression told("^corvane." + row[0] + '$');
            QVERIFY2(!lines.filter(told).isEmpty(), qPrintable(row[0]));
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

    /// A box left open keeps nothing waiting, and there is never a second one beside it.
    void boxes() {
        Peer peer;
        Open();
        m_pWindow->OnMenuChanged(0);
        for (const bool bRenames : {false, true}) {
            bool bTold = false;
            OnNext<QDialog>([&](QDialog* pDialog) {
                const int nAlive = peer.Count(1);
                const int nPolls = peer.Count(17);
                QTRY_VERIFY_WITH_TIMEOUT(peer.Count(1) >= nAlive + 2 && peer.Count(17) > nPolls, 20000);
                QVERIFY(!m_pWindow->IsConnectionLost());
                peer.Send(QByteArray(R"({"typ":7,"content":{"scn":{"content":[{"id":@,"s":1}]}}})")
                              .replace('@', bRenames ? '3' : '2'));
                QTRY_COMPARE(Running(m_pWindow->SceneList()), QString(bRenames ? "3" : "2"));
                QCOMPARE(QApplication::activeModalWidget(), pDialog);
                QCOMPARE(pDialog->windowTitle(), QString(bRenames ? "Rename" : "Error"));
                bTold = true;
                pDialog->accept();
            });
            for (int i = 0; i < 500 && !bRenames; ++i) {
                peer.Send(R"({"typ":2})");
            }
            bRenames ? UseMenu(m_pWindow->SceneList(), 0, 0) : void();
            QTRY_VERIFY_WITH_TIMEOUT(bTold, 60000);
            QTRY_VERIFY(QApplication::activeModalWidget() == nullptr);
        }
    }

    /// Anything a hand can do, and a server meanwhile, in no order. CORVANE_SEED repeats a run.
    void monkey() {
        const QString sNow = QString::number(QDateTime::currentSecsSinceEpoch() % 1000000);
        const QString sSeed = qEnvironmentVariable("CORVANE_SEED", sNow);
        qInfo("CORVANE_SEED=%s", qPrintable(sSeed));
        std::mt19937 random(sSeed.toUInt());
        const auto below = [&random](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
        OnNext<QDialog>([](QDialog* pDialog) { pDialog->reject(); });
        m_pWindow = std::make_unique<Corvane>();
        m_pWindow->show();
        // Whatever opens is used a little and goes. Keys to a menu go from the event loop, since one may open
        // a dialog, which would hold this timer up.
        const Qt::Key keys[] = {Qt::Key_Escape,   Qt::Key_Down,  Qt::Key_Return, Qt::Key_Right,
                                Qt::Key_Tab,      Qt::Key_Space, Qt::Key_A,      Qt::Key_Backspace,
                                Qt::Key_PageDown, Qt::Key_Up};
        QTimer closer;
        connect(&closer, &QTimer::timeout, [&] {
            if (QWidget* pDialog = QApplication::activeModalWidget()) {
                pDialog->close();
            } else if (QWidget* pMenu = QApplication::activePopupWidget()) {
                QCoreApplication::postEvent(pMenu, new QKeyEvent(QEvent::KeyPress, keys[below(4)], {}));
            }
        });
        closer.start(1);
        QPoint at;
        QWidget* pTarget = nullptr;
        const auto mouse = [&](QEvent::Type type, Qt::MouseButton button = Qt::LeftButton) {
            Mouse(pTarget, type, pTarget->mapFrom(m_pWindow.get(), at), button);
        };
        const auto type = [&] {
            const Qt::Key key = keys[1 + below(9)];
            QWidget* pFocus = m_pWindow->focusWidget();
            if (pFocus == m_pWindow.get() && (key == Qt::Key_Return || key == Qt::Key_Space)) {
                return;  // the close button
            }
            QKeyEvent event(QEvent::KeyPress, key, {}, "7");
            QCoreApplication::sendEvent(pFocus != nullptr ? pFocus : m_pWindow.get(), &event);
        };
        const auto says = [this](const std::string& sText) {
            m_pWindow->ReadData(QByteArray::fromStdString(sText), "10.0.0.1");
        };
        const auto state = [](int nScenes) {
            Show show;
            for (int i = 0; i < nScenes + 20; ++i) {
                (i < nScenes ? show.scenes : show.programs)
                    .push_back(Scene{"Scene", i, i % 4 - 1, 0, i % 8 == 0});
            }
            return replies::State(show, {}, {});
        };
        const auto acts = [&](int n) {
            n < 39    ? mouse(QEvent::MouseButtonPress)
            : n < 40  ? mouse(QEvent::MouseButtonPress, Qt::RightButton)
            : n < 60  ? mouse(QEvent::MouseButtonRelease)
            : n < 100 ? mouse(QEvent::MouseMove)
            : n < 120 ? Wheel(pTarget, pTarget->mapFrom(m_pWindow.get(), at), below(400) - 200)
            : n < 152 ? type()
            : n < 154 ? m_pWindow->OnMenuChanged(below(5))
            : n < 156 ? pTarget->resize(below(900), below(700))
            : n < 158 ? says(state(below(41)))
                      : says(messages::Channel({below(600) - 40, below(40) - 4, below(300), true}));
        };
        for (int i = 0; i < 100000; ++i) {
            at = {below(900) - 40, below(680) - 40};
            pTarget = m_pWindow->childAt(at) != nullptr ? m_pWindow->childAt(at) : m_pWindow.get();
            if (QRect(700, 0, 120, 60).contains(at)) {
                continue;  // the close button
            }
            acts(below(160));
            if (QWidget::mouseGrabber() != nullptr && below(20) == 0) {
                QWidget::mouseGrabber()->releaseMouse();
            }
            if (i % 200 == 0) {
                QCoreApplication::processEvents();
                m_pWindow->grab();
            }
        }
        QVERIFY(m_pWindow->isVisible());
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
