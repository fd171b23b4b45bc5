#include "device/messages.h"
#include "server/replies.h"
#include "tests/peer.h"
#include "tests/remote.h"

#include <QMessageBox>
#include <QThread>

#include <atomic>
#include <ctime>
#include <random>

namespace {

Show LargeShow() {
    Show show;
    show.serial = "0042";
    for (int i = 0; i < 60; ++i) {
        (i < 40 ? show.scenes : show.programs).push_back(Scene{"Scene", i, i % 4 - 1, 0, i % 8 == 0});
    }
    return show;
}

/// A network of its own thread: answers on the server's port, and floods the remote with all that a server,
/// or a stranger, could send.
class Storm : public QThread {
public:
    explicit Storm(int nRate) : m_nRate(nRate) { start(); }
    ~Storm() override {
        m_bOver = true;
        wait();
    }

    std::atomic<bool> blows{false};
    std::atomic<bool> alive{true};  ///< whether alive answers are among what it sends
    std::atomic<qint64> sent{0};
    std::atomic<int> switches{0};  ///< how many scenes were switched

protected:
    void run() override {
        const std::string state = replies::State(LargeShow(), {}, {});
        std::vector<std::string> texts(8, R"({"typ":1})");
        std::mt19937 random(7);
        for (const std::string& piece : replies::Split(state, 400)) {
            std::string noise(200, '\0');
            std::generate(noise.begin(), noise.end(), [&random] { return static_cast<char>(random()); });
            texts.insert(texts.end(), {noise, "", piece, state});
        }
        texts.insert(texts.end(), {messages::Universe(0, 10, true), messages::Universe(1, 20, false)});
        QUdpSocket socket;
        socket.bind(QHostAddress::AnyIPv4, 8093);
        const auto send = [&socket](const std::string& text) {
            socket.writeDatagram(text.data(), static_cast<qint64>(text.size()), QHostAddress::LocalHost,
                                 8094);
        };
        std::size_t iNext = 0;
        QElapsedTimer clock;
        clock.start();
        for (qint64 nBegan = 0; !m_bOver; msleep(1)) {
            while (socket.hasPendingDatagrams()) {
                QByteArray text(static_cast<int>(socket.pendingDatagramSize()), '\0');
                socket.readDatagram(text.data(), text.size());
                if (text.contains("\"typ\" : 14\n")) {
                    send(replies::Serial("0042"));
                } else if (text.contains("\"typ\" : 6\n")) {
                    send(state);
                } else if (text.contains("\"typ\" : 1\n") && alive) {
                    send(texts[0]);
                } else if (text.contains("\"typ\" : 8,")) {
                    ++switches;
                }
            }
            if (!blows) {
                nBegan = clock.elapsed();
                sent = 0;
            }
            for (const qint64 nDue = (clock.elapsed() - nBegan) * m_nRate / 1000; sent < nDue; ++sent) {
                iNext = (iNext + 1) % texts.size();
                send(texts[alive ? iNext : std::max<std::size_t>(8, iNext)]);
            }
        }
    }

private:
    int m_nRate;
    std::atomic<bool> m_bOver{false};
};

/// The time that the machine gave this thread, in ms: what else it has to do makes it no longer.
double OwnTime() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

double ResidentMiB() {
    QFile file("/proc/self/statm");
    return file.open(QIODevice::ReadOnly) ? file.readAll().split(' ')[1].toDouble() / 256 : 0.0;
}

#ifdef __SANITIZE_ADDRESS__
constexpr int Rate = 4000;
constexpr double MostGrownMiB = 1e9;  // the sanitizer keeps what is freed aside
#else
constexpr int Rate = 20000;
constexpr double MostGrownMiB = 8;
#endif

}  // namespace

/// What no network, no server and no hand may bring down.
class TestUnderFire : public QObject {
    Q_OBJECT

    std::unique_ptr<Corvane> m_pWindow;
    int m_nNextId = 1;

    void Open() {
        m_pWindow = OpenRemote();
        m_pWindow->show();
        QTRY_VERIFY(m_pWindow->IsAnswered());
        m_pWindow->OnMenuChanged(0);
    }

private slots:
    void cleanup() { m_pWindow.reset(); }

    void flood() {
        Storm storm(Rate);
        Open();
        storm.blows = true;
        QTest::qWait(1000);
        const double before = ResidentMiB();
        QList<double> delays;
        while (storm.sent < qint64{10} * Rate) {
            const double pressed = OwnTime();
            const int nBefore = storm.switches;
            ClickTile(m_pWindow->SceneList(), static_cast<int>(delays.size() % 40));
            QTRY_COMPARE_WITH_TIMEOUT(storm.switches.load(), nBefore + 1, 5000);
            delays += OwnTime() - pressed;
            QTest::qWait(20);
        }
        std::sort(delays.begin(), delays.end());
        qInfo("%lld datagrams, %lld clicks: half within %.0f ms, all within %.0f ms; memory grew by %.1f MiB",
              storm.sent.load(), qint64{delays.size()}, delays[delays.size() / 2], delays.last(),
              ResidentMiB() - before);
        QVERIFY(delays.last() <= 100);
        QVERIFY(ResidentMiB() - before < MostGrownMiB);
        QVERIFY(!m_pWindow->IsConnectionLost());
        // All but the one thing that tells that the server lives.
        storm.alive = false;
        QTRY_VERIFY_WITH_TIMEOUT(m_pWindow->IsConnectionLost(), 20000);
        storm.alive = true;
        QTRY_VERIFY(!m_pWindow->IsConnectionLost());
    }

    /// A box left open keeps nothing waiting, and there is never a second one beside it.
    void boxes() {
        Peer peer;
        peer.state = R"({"typ":7,"content":{"scn":{"content":[{"id":1}]}}})";
        Open();
        CSceneList* pList = m_pWindow->SceneList();
        for (const QString sTitle : {"Error", "Rename"}) {
            bool bTold = false;
            OnNext<QDialog>([&](QDialog* pDialog) {
                const int nAlive = peer.Count(1);
                const int nPolls = peer.Count(17);
                QTRY_VERIFY_WITH_TIMEOUT(peer.Count(1) >= nAlive + 2 && peer.Count(17) > nPolls, 20000);
                QVERIFY(!m_pWindow->IsConnectionLost());
                const int nId = ++m_nNextId;
                peer.Send(QString(R"({"typ":7,"content":{"scn":{"content":[{"id":%1,"s":1}]}}})")
                              .arg(nId)
                              .toUtf8());
                QTRY_COMPARE(Running(pList), QString::number(nId));
                QCOMPARE(QApplication::activeModalWidget(), pDialog);
                QCOMPARE(pDialog->windowTitle(), sTitle);
                bTold = true;
                pDialog->accept();
            });
            for (int i = 0; i < 500 && sTitle == "Error"; ++i) {
                peer.Send(R"({"typ":2})");
            }
            sTitle == "Error" ? void() : UseMenu(pList, 0, 0);
            QTRY_VERIFY_WITH_TIMEOUT(bTold, 60000);
            QTRY_VERIFY(QApplication::activeModalWidget() == nullptr);
        }
    }

    /// The end of the desktop's session closes everything, whatever is open.
    void closingWithABoxOpen() {
        Peer peer;
        Open();
        OnNext<QMessageBox>([](QMessageBox*) { QApplication::closeAllWindows(); });
        peer.Send(R"({"typ":2})");
        QTimer::singleShot(30000, [] { QCoreApplication::exit(1); });
        QCOMPARE(QApplication::exec(), 0);
        QVERIFY(!m_pWindow->isVisible());
        m_pWindow.reset();
        QVERIFY(QFile::exists(QCoreApplication::applicationDirPath() + "/Corvane.ini"));
    }

    /// Anything a hand can do, and a server meanwhile, in no order. CORVANE_SEED repeats a run.
    void monkey() {
        const int nSeed = qEnvironmentVariableIsSet("CORVANE_SEED")
                              ? qEnvironmentVariableIntValue("CORVANE_SEED")
                              : static_cast<int>(QDateTime::currentSecsSinceEpoch() % 1000000);
        qInfo("CORVANE_SEED=%d", nSeed);
        std::mt19937 random(static_cast<unsigned>(nSeed));
        const auto below = [&random](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
        OnNext<QDialog>([](QDialog* pDialog) { pDialog->reject(); });
        m_pWindow = std::make_unique<Corvane>();
        m_pWindow->show();
        // Whatever opens is used a little and goes. Keys to a menu go from the event loop, since one may open
        // a dialog, which would hold this timer up.
        QTimer closer;
        connect(&closer, &QTimer::timeout, [&below] {
            if (QWidget* pDialog = QApplication::activeModalWidget()) {
                pDialog->close();
            } else if (QApplication::activePopupWidget() != nullptr) {
                const auto key =
                    QList<Qt::Key>{Qt::Key_Down, Qt::Key_Return, Qt::Key_Right, Qt::Key_Escape}[below(4)];
                QTimer::singleShot(0, [key] {
                    QWidget* pMenu = QApplication::activePopupWidget();
                    pMenu != nullptr ? QTest::keyClick(pMenu, key) : void();
                });
            }
        });
        closer.start(1);
        QPoint at;
        QWidget* pTarget = nullptr;
        const auto mouse = [&](QEvent::Type type, Qt::MouseButton button) {
            QMouseEvent event(type, pTarget->mapFrom(m_pWindow.get(), at), m_pWindow->mapToGlobal(at), button,
                              button, {});
            QCoreApplication::sendEvent(pTarget, &event);
        };
        const auto says = [this](const std::string& sText) {
            m_pWindow->ReadData(QByteArray::fromStdString(sText), "10.0.0.1");
        };
        // What is done, and how often of 800.
        const std::pair<int, std::function<void()>> deeds[] = {
            {195, [&] { mouse(QEvent::MouseButtonPress, Qt::LeftButton); }},
            {5, [&] { mouse(QEvent::MouseButtonPress, Qt::RightButton); }},
            {100, [&] { mouse(QEvent::MouseButtonRelease, Qt::LeftButton); }},
            {200, [&] { mouse(QEvent::MouseMove, Qt::LeftButton); }},
            {100,
             [&] {
                 QWheelEvent event(pTarget->mapFrom(m_pWindow.get(), at), m_pWindow->mapToGlobal(at), {},
                                   {0, below(400) - 200}, {}, {}, Qt::NoScrollPhase, false);
                 QCoreApplication::sendEvent(pTarget, &event);
             }},
            {160,
             [&] {
                 const QList<Qt::Key> keys{Qt::Key_Tab,    Qt::Key_Space,    Qt::Key_A, Qt::Key_Backspace,
                                           Qt::Key_Return, Qt::Key_PageDown, Qt::Key_Up};
                 QKeyEvent event(QEvent::KeyPress, keys[below(7)], {}, "7");
                 QWidget* pFocus = m_pWindow->focusWidget();
                 QCoreApplication::sendEvent(pFocus != nullptr ? pFocus : m_pWindow.get(), &event);
             }},
            {10, [&] { m_pWindow->OnMenuChanged(below(5)); }},
            {10, [&] { pTarget->resize(below(900), below(700)); }},
            {10,
             [&] {
                 Show show = LargeShow();
                 show.scenes.resize(static_cast<std::size_t>(below(41)));
                 says(replies::State(show, {}, {}));
             }},
            {10, [&] {
                 says(messages::Channel({below(600) - 40, below(40) - 4, below(300), true}));
             }}};
        for (int i = 0; i < 100000; ++i) {
            at = {below(900) - 40, below(680) - 40};
            pTarget = m_pWindow->childAt(at) != nullptr ? m_pWindow->childAt(at) : m_pWindow.get();
            if (QRect(700, 0, 120, 60).contains(at)) {
                continue;  // the close button
            }
            int nWhat = below(800);
            const auto* pDeed = deeds;
            for (; nWhat >= pDeed->first; ++pDeed) {
                nWhat -= pDeed->first;
            }
            pDeed->second();
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
};

QTEST_MAIN(TestUnderFire)
#include "tst_underfire.moc"
