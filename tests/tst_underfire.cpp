#include "app/corvane.h"
#include "device/messages.h"
#include "server/rehearsalserver.h"
#include "server/replies.h"
#include "tests/peer.h"
#include "tests/support.h"
#include "widgets/cscenelist.h"

#include <QInputDialog>
#include <QMenu>
#include <QMessageBox>
#include <QThread>
#include <QtTest>

#include <array>
#include <atomic>
#include <memory>
#include <random>
#include <vector>

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
    explicit Storm(int nRate) : m_nRate(nRate) {
        clock.start();
        start();
    }
    ~Storm() override {
        m_bOver = true;
        wait();
    }

    QElapsedTimer clock;
    std::atomic<bool> blows{false};
    std::atomic<bool> alive{true};  ///< whether alive answers are among what it sends
    std::atomic<qint64> sent{0};
    std::atomic<int> switches{0};  ///< how many scenes were switched, and when the last came
    std::atomic<qint64> lastSwitch{0};

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
        QUdpSocket socket;
        socket.bind(QHostAddress::AnyIPv4, 8093);
        const auto send = [&socket](const std::string& text) {
            socket.writeDatagram(text.data(), static_cast<qint64>(text.size()), QHostAddress::LocalHost,
                                 8094);
        };
        std::size_t iNext = 0;
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
                    lastSwitch = clock.elapsed();
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

double ResidentMiB() {
    QFile file("/proc/self/statm");
    return file.open(QIODevice::ReadOnly) ? file.readAll().split(' ')[1].toDouble() / 256 : 0.0;
}

int Boxes() {
    const QWidgetList windows = QApplication::topLevelWidgets();
    return static_cast<int>(std::count_if(windows.begin(), windows.end(), [](const QWidget* pWindow) {
        return pWindow->isVisible() && pWindow->inherits("QMessageBox");
    }));
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

    void Open() {
        ChooseInterface();
        m_pWindow = std::make_unique<Corvane>();
        m_pWindow->show();
    }

    void Click(int iTile) const {
        CSceneList* pList = m_pWindow->SceneList();
        QTest::mouseClick(pList, Qt::LeftButton, {}, pList->Items()[iTile].rect.center());
    }

private slots:
    void init() { QFile::remove(QCoreApplication::applicationDirPath() + "/Corvane.ini"); }
    void cleanup() { m_pWindow.reset(); }

    void flood() {
        Storm storm(Rate);
        Open();
        QTRY_VERIFY(m_pWindow->IsAnswered());
        m_pWindow->OnMenuChanged(0);
        storm.blows = true;
        QTest::qWait(1000);
        const double before = ResidentMiB();
        QList<qint64> delays;
        while (storm.sent < qint64{10} * Rate) {
            const qint64 nPressed = storm.clock.elapsed();
            const int nBefore = storm.switches;
            Click(static_cast<int>(delays.size() % 40));
            QTRY_COMPARE_WITH_TIMEOUT(storm.switches.load(), nBefore + 1, 1000);
            delays += storm.lastSwitch - nPressed;
            QTest::qWait(20);
        }
        std::sort(delays.begin(), delays.end());
        qInfo("%lld datagrams, %lld clicks: half within %lld ms, all within %lld ms; memory grew by %.1f MiB",
              storm.sent.load(), qint64{delays.size()}, delays[delays.size() / 2], delays.last(),
              ResidentMiB() - before);
        QVERIFY(delays.last() <= 100);
        QVERIFY(ResidentMiB() - before < MostGrownMiB);
        QVERIFY(!m_pWindow->IsConnectionLost());
        // All but the one thing that tells that the server lives.
        storm.alive = false;
        QElapsedTimer silence;
        silence.start();
        QTRY_VERIFY_WITH_TIMEOUT(m_pWindow->IsConnectionLost(), 7000);
        QVERIFY2(silence.elapsed() > 4800 && silence.elapsed() < 6500,
                 qPrintable(QString::number(silence.elapsed())));
        storm.alive = true;
        QTRY_VERIFY_WITH_TIMEOUT(!m_pWindow->IsConnectionLost(), 1000);
    }

    /// A network that loses 30 of 100 datagrams each way, brings 10 twice and lets 10 be overtaken: nothing
    /// that is shown may be wrong for longer than it takes a poll and its answer to get through.
    void badNetwork() {
        RehearsalServer::Options options;
        options.dropPercent = 30;
        options.duplicatePercent = 10;
        options.reorderPercent = 10;
        RehearsalServer server(Show::BuiltIn(), options, [](const QString&) {});
        QVERIFY(server.Listen());
        Open();
        QElapsedTimer clock;
        clock.start();
        int nRefreshes = 0;
        while (!QTest::qWaitFor([this] { return m_pWindow->IsAnswered(); }, 900) && clock.elapsed() < 60000) {
            m_pWindow->Refresh();
            ++nRefreshes;
        }
        QVERIFY(m_pWindow->IsAnswered());
        qInfo("online after %lld ms and %d refreshes", clock.elapsed(), nRefreshes);
        m_pWindow->OnMenuChanged(0);
        for (int i = 0; i < 20; ++i) {
            Click(i * 7 % m_pWindow->SceneList()->PartCount());
            QTest::qWait(100);
        }
        const auto same = [&] {
            const auto& items = m_pWindow->SceneList()->Items();
            const std::vector<Scene>& scenes = server.CurrentShow().scenes;
            return std::equal(items.begin(), items.end(), scenes.begin(), scenes.end(),
                              [](const auto& item, const Scene& scene) {
                                  return item.id == scene.id && item.state == scene.state;
                              });
        };
        clock.start();
        QVERIFY(QTest::qWaitFor(same, 90000));
        qInfo("the same on both sides %lld ms after the last click", clock.elapsed());
    }

    void boxes_data() {
        QTest::addColumn<bool>("warning");
        QTest::newRow("too many users") << true;
        QTest::newRow("renaming") << false;
    }

    /// A box left open keeps nothing waiting, and there is never a second one. CORVANE_BOX_SECONDS leaves it
    /// open for longer.
    void boxes() {
        QFETCH(bool, warning);
        Peer peer;
        peer.state = R"({"typ":7,"content":{"scn":{"content":[{"id":1}]}}})";
        Open();
        QTRY_VERIFY(m_pWindow->IsAnswered());
        m_pWindow->OnMenuChanged(0);
        int nTold = 0;
        OnNext<QDialog>([&](QDialog* pDialog) {
            const int nAlive = peer.Count(1);
            const int nSeconds = std::max(6, qEnvironmentVariableIntValue("CORVANE_BOX_SECONDS"));
            QTest::qWait(nSeconds * 1000);
            QVERIFY(peer.Count(1) - nAlive >= nSeconds / 2 - 1 && peer.Count(17) >= nSeconds / 6);
            QVERIFY(!m_pWindow->IsConnectionLost());
            peer.Send(R"({"typ":7,"content":{"scn":{"content":[{"id":1},{"id":2,"s":true}]}}})");
            QTRY_VERIFY(m_pWindow->SceneList()->PartCount() == 2 && m_pWindow->SceneList()->Items()[1].state);
            QCOMPARE(Boxes(), int{warning});
            QCOMPARE(QApplication::activeModalWidget(), pDialog);
            const auto* pBox = qobject_cast<QMessageBox*>(pDialog);
            QCOMPARE(pBox != nullptr ? pBox->windowTitle() + ": " + pBox->text() : QString(),
                     QString(warning ? "Error: Number of users max exceeded" : ""));
            ++nTold;
            pDialog->accept();
        });
        if (warning) {
            for (int i = 0; i < 500; ++i) {
                peer.Send(R"({"typ":2})");
            }
        } else {
            QTimer::singleShot(20, [] {
                auto* pMenu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
                pMenu->close();
                pMenu->actions()[0]->trigger();
            });
            CSceneList* pList = m_pWindow->SceneList();
            QTest::mouseClick(pList, Qt::RightButton, {}, pList->Items()[0].rect.center());
        }
        QTRY_COMPARE_WITH_TIMEOUT(nTold, 1, 90000);
        QTest::qWait(100);
        QCOMPARE(Boxes(), 0);
    }

    /// The end of the desktop's session closes everything, whatever is open.
    void closingWithABoxOpen() {
        Peer peer;
        Open();
        QTRY_VERIFY(m_pWindow->IsAnswered());
        OnNext<QMessageBox>([](QMessageBox*) { QApplication::closeAllWindows(); });
        peer.Send(R"({"typ":2})");
        QTimer::singleShot(3000, [] { QCoreApplication::exit(1); });
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
                constexpr std::array keys{Qt::Key_Down, Qt::Key_Return, Qt::Key_Right, Qt::Key_Escape};
                const Qt::Key key = keys.at(static_cast<std::size_t>(below(4)));
                QTimer::singleShot(0, [key] {
                    if (QWidget* pMenu = QApplication::activePopupWidget()) {
                        QTest::keyClick(pMenu, key);
                    }
                });
            }
        });
        closer.start(1);
        constexpr std::array keys{Qt::Key_Tab,       Qt::Key_Space,  Qt::Key_A,        Qt::Key_9,
                                  Qt::Key_Backspace, Qt::Key_Return, Qt::Key_PageDown, Qt::Key_Up};
        for (int i = 0; i < 100000; ++i) {
            const QPoint at(below(900) - 40, below(680) - 40);
            QWidget* pTarget = m_pWindow->childAt(at) != nullptr ? m_pWindow->childAt(at) : m_pWindow.get();
            const QPoint place = pTarget->mapFrom(m_pWindow.get(), at);
            const QPoint onScreen = m_pWindow->mapToGlobal(at);
            const auto mouse = [&](QEvent::Type type, Qt::MouseButton button) {
                QMouseEvent event(type, place, onScreen, button, button, {});
                QCoreApplication::sendEvent(pTarget, &event);
            };
            const int nWhat = below(800);
            if (nWhat < 200) {
                if (!QRect(700, 0, 120, 60).contains(at)) {  // not the close button
                    mouse(QEvent::MouseButtonPress, nWhat < 5 ? Qt::RightButton : Qt::LeftButton);
                }
            } else if (nWhat < 300) {
                mouse(QEvent::MouseButtonRelease, nWhat % 2 == 0 ? Qt::LeftButton : Qt::MiddleButton);
            } else if (nWhat < 500) {
                mouse(QEvent::MouseMove, Qt::LeftButton);
            } else if (nWhat < 600) {
                QWheelEvent event(place, onScreen, {}, {0, below(400) - 200}, {}, {}, Qt::NoScrollPhase,
                                  false);
                QCoreApplication::sendEvent(pTarget, &event);
            } else if (nWhat < 770) {
                QKeyEvent event(QEvent::KeyPress, keys.at(static_cast<std::size_t>(nWhat % 8)), {}, "7");
                QWidget* pFocus = m_pWindow->focusWidget();
                QCoreApplication::sendEvent(pFocus != nullptr ? pFocus : m_pWindow.get(), &event);
            } else if (nWhat < 780) {
                m_pWindow->OnMenuChanged(below(5));
            } else if (nWhat < 790) {
                pTarget->resize(below(900), below(700));
            } else {
                Show show = LargeShow();
                show.scenes.resize(static_cast<std::size_t>(below(41)));
                m_pWindow->ReadData(QByteArray::fromStdString(replies::State(show, {}, {})), "10.0.0.1");
            }
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
