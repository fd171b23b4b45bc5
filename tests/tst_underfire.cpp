#include "server/remotes/replies.h"
#include "tests/remote.h"

#include <random>

namespace {

std::string LargeState(int nScenes = 40) {
    Show show;
    for (int i = 0; i < nScenes + 20; ++i) {
        (i < nScenes ? show.scenes : show.programs).push_back(Scene{"Scene", i, i % 4 - 1, 0, i % 8 == 0});
    }
    return replies::State(show, {}, {});
}

}  // namespace

/// What no network, no server and no hand may bring down.
class TestUnderFire : public QObject {
    Q_OBJECT

    std::unique_ptr<Corvane> m_pWindow;

    void Open() {
        m_pWindow = OpenRemote();
        QTRY_VERIFY(m_pWindow->IsAnswered());
        m_pWindow->OnMenuChanged(0);
    }

private slots:
    void cleanup() { m_pWindow.reset(); }

    /// What a server, or a stranger, sends all the time takes no memory for good.
    void flood() {
        Peer peer;
        Open();
        const std::string state = LargeState();
        std::vector<std::string> texts{state, std::string(200, '\xff'), messages::Universe(0, 10, true)};
        for (const std::string& piece : replies::Split(state, 400)) {
            texts.insert(texts.end(), {piece, "{"});
        }
        double grown = 0;
        for (std::size_t i = 0; i < 20000; ++i) {
            m_pWindow->ReadData(QByteArray::fromStdString(texts[i % texts.size()]),
                                "10.0.0." + QString::number(i % 200));
            i % 500 == 0 ? QCoreApplication::processEvents() : void();
            grown = i == 2000 ? -ResidentMiB() : grown;
        }
        grown += ResidentMiB();
        qInfo("memory grew by %.1f MiB", grown);
#ifndef __SANITIZE_ADDRESS__  // which keeps what is freed aside
        QVERIFY(grown < 8);
#endif
    }

    /// A box left open keeps nothing waiting, and there is never a second one beside it.
    void boxes() {
        Peer peer;
        Open();
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
        const auto wheel = [&] {
            QWheelEvent event(pTarget->mapFrom(m_pWindow.get(), at), m_pWindow->mapToGlobal(at), {},
                              {0, below(400) - 200}, {}, {}, Qt::NoScrollPhase, false);
            QCoreApplication::sendEvent(pTarget, &event);
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
        const auto acts = [&](int n) {
            n < 39    ? mouse(QEvent::MouseButtonPress)
            : n < 40  ? mouse(QEvent::MouseButtonPress, Qt::RightButton)
            : n < 60  ? mouse(QEvent::MouseButtonRelease)
            : n < 100 ? mouse(QEvent::MouseMove)
            : n < 120 ? wheel()
            : n < 152 ? type()
            : n < 154 ? m_pWindow->OnMenuChanged(below(5))
            : n < 156 ? pTarget->resize(below(900), below(700))
            : n < 158 ? says(LargeState(below(41)))
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
};

QTEST_MAIN(TestUnderFire)
#include "tst_underfire.moc"
