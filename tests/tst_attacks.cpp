#include "tests/peer.h"
#include "tests/remote.h"

#include <QMessageBox>

namespace {

QByteArray Repeated(const QByteArray& text, int nTimes) {
    return (text + ',').repeated(nTimes - 1) + text;
}

}  // namespace

/// What any host of the network, or a bad moment, can do to the remote, and what must come of it.
class TestAttacks : public QObject {
    Q_OBJECT

    std::unique_ptr<Peer> m_pPeer;
    std::unique_ptr<Corvane> m_pWindow;

    void Read(const QByteArray& text, const char* pSender = "10.0.0.9") {
        m_pWindow->ReadData(text, pSender);
    }

    /// Opens the box that the server has no room, does something meanwhile and closes it. False if none
    /// comes.
    template <typename Act>
    bool TakeNoRoom(Act act) {
        bool bOpened = false;
        OnNext<QMessageBox>([&](QMessageBox* pBox) {
            act();
            bOpened = true;
            pBox->accept();
        });
        Read(R"({"typ":2})");
        QTest::qWait(100);
        return bOpened;
    }

private slots:
    void init() {
        m_pPeer = std::make_unique<Peer>();
        m_pPeer->state = R"({"typ":7,"content":{"scn":{"content":[{"id":1,"a":0},{"id":2,"a":1}]}}})";
        m_pWindow = OpenRemote();
        m_pWindow->show();
        QTRY_VERIFY(m_pWindow->IsAnswered());
    }

    void cleanup() {
        m_pWindow.reset();
        m_pPeer.reset();
    }

    void heldWhenABoxOpens() {
        CColorPicker* pPicker = m_pWindow->Picker();
        CColorCircle* pWheel = pPicker->Wheel();
        CCommandWnd* pCommands = pPicker->Commands();
        m_pWindow->OnMenuChanged(2);
        const auto press = [this](QWidget* pHeld, const QPoint& at) {
            Mouse(pHeld, QEvent::MouseButtonPress, at);
            return TakeNoRoom([] { QVERIFY(QWidget::mouseGrabber() == nullptr); });
        };
        QVERIFY(press(pPicker->Red()->Slider(), {17, 100}));
        m_pWindow->Refresh();
        QTRY_VERIFY(m_pWindow->IsAnswered());
        QVERIFY(press(pWheel, pWheel->Centre() + QPoint(50, 0)));
        // The sliders send again, and moves over the page move nothing.
        const int nColors = m_pPeer->Count(10);
        Mouse(pPicker->Green()->Slider(), QEvent::MouseButtonPress, {17, 150});
        QTRY_VERIFY(m_pPeer->Count(10) > nColors);
        m_pWindow->OnMenuChanged(3);  // hidden while it is held
        QVERIFY(QWidget::mouseGrabber() == nullptr);
        m_pWindow->Refresh();
        QVERIFY(press(m_pWindow.get(), {410, 20}));
        const QPoint before = m_pWindow->pos();
        Mouse(m_pWindow.get(), QEvent::MouseMove, {500, 300});
        QCOMPARE(m_pWindow->pos(), before);
        m_pWindow->OnMenuChanged(2);
        pPicker->SwitchCmdMode();
        m_pWindow->Refresh();
        QVERIFY(press(pCommands, CCommandWnd::ButtonRect(CCommandWnd::Next).center()));
        QVERIFY(!pCommands->IsOn(CCommandWnd::Next));
    }

    /// Without an address of a private network, the choice of this computer has no broadcast address.
    void localhost() {
        m_pWindow.reset();
        m_pWindow = OpenRemote({}, "Localhost");
        QTRY_VERIFY(m_pWindow->IsAnswered());
        m_pWindow->Refresh();
        QTRY_VERIFY(m_pWindow->IsAnswered());
        QCOMPARE(m_pWindow->Params()->GetIp(), QString("127.0.0.1"));
    }

    void oneMessage() {
        const auto tiles = [this] { return m_pWindow->SceneList()->Items().size(); };
        const auto state = [](const QByteArray& scenes) {
            return R"({"typ":7,"content":{"scn":{)" + scenes + "}}}";
        };
        Read(state(R"("content":[)" + Repeated("{}", 20000) + "]"));
        QCOMPARE(tiles(), 10000);
        Read(state(Repeated(R"("content":[{}])", 100)));
        QCOMPARE(tiles(), 64);
        Read(state(R"("content":[{"id":1},{"id":2}])"));
        QCOMPARE(tiles(), 2);
        // Each content switches the scene on or off; the last that is obeyed switches it on.
        const QByteArray on = R"("content":{"id":1,"s":true})";
        const QByteArray off = R"("content":{"id":1})";
        Read(R"({"typ":8,)" + Repeated(off, 63) + ',' + on + ',' + Repeated(off, 9) + '}');
        QVERIFY(m_pWindow->SceneList()->Items()[0].state);
        const int nRequests = m_pPeer->Count(6);
        Read(R"({"typ":15,)" + Repeated(R"("content":{"serial":"9"})", 50) + '}', "127.0.0.1");
        QTest::qWait(100);
        QCOMPARE(m_pPeer->Count(6), nRequests + 1);
    }

    void manyServers() {
        const ServerList& servers = m_pWindow->Params()->Servers();
        QByteArray serial = R"({"typ":15,"content":{"serial":"@"}})";
        serial.replace("@", QByteArray(1000, 'x'));
        for (int i = 0; i < 1000; ++i) {
            Read(serial, qPrintable(QString("10.1.%1.%2").arg(i / 250).arg(i % 250)));
        }
        QCOMPARE(servers.Addresses().size(), ServerList::MaxServers);
        QCOMPARE(servers.Labels().last().size(), ServerList::MaxLabel);
    }

    /// What a scene that someone starts releases must not take the place of the user's click.
    void clickBesideAStart() {
        const int nReleases = m_pPeer->Count(10);
        for (int i = 0; i < 20; ++i) {
            Read(R"({"typ":10,"content":{"s":true}})");
            m_pWindow->OnSceneStateChanged(1, 2, i % 2 == 0);
            Read(R"({"typ":8,"content":{"id":1,"a":0,"s":true}})");
            QTRY_COMPARE(m_pPeer->Count(8), i + 1);
        }
        QCOMPARE(m_pPeer->Count(10), nReleases);
        // Where nothing of the user's waits, the release is sent.
        Read(R"({"typ":10,"content":{"s":true}})");
        Read(R"({"typ":8,"content":{"id":1,"a":0,"s":true}})");
        QTRY_COMPARE(m_pPeer->Count(10), nReleases + 1);
    }

    void noRoomAgainAndAgain() {
        QVERIFY(TakeNoRoom([] {}));
        bool bAgain = false;
        QTimer::singleShot(100, [&bAgain] {
            if (QWidget* pBox = QApplication::activeModalWidget()) {
                bAgain = pBox->close();
            }
        });
        Read(R"({"typ":2})");
        QTest::qWait(150);
        QVERIFY(!bAgain);
        m_pWindow->Refresh();  // who asks again is told again
        QVERIFY(TakeNoRoom([] {}));
    }
};

QTEST_MAIN(TestAttacks)
#include "tst_attacks.moc"
