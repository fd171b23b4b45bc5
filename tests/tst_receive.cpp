#include "tests/peer.h"
#include "tests/remote.h"

/// What the server says, as real datagrams, and what becomes of it.
class TestReceive : public QObject {
    Q_OBJECT

    std::unique_ptr<Peer> m_pPeer;
    std::unique_ptr<Corvane> m_pWindow;

    /// Sends a datagram, then one that can be seen to arrive after it.
    void Send(const QByteArray& bytes) {
        static int nMark = 0;
        m_pPeer->Send(bytes);
        m_pPeer->Send(QString(R"({"typ":12,"content":{"chan":%1}})").arg(++nMark).toUtf8());
        QTRY_COMPARE(m_pWindow->ChannelState().chan, nMark);
    }

private slots:
    void init() {
        m_pPeer = std::make_unique<Peer>();
        m_pPeer->state = R"({"typ":7,"content":{
            "scn":{"content":[{"n":"A","id":1,"a":0,"l":9,"s":true},{"id":2,"n":"B","a":0},{"id":3}]},
            "prg":{"content":[{"id":1,"a":5},{"id":2,"s":1}]},
            "clr":{"content":{"color":{"r":1,"g":2,"b":3,"w":4},"rgbw":true,"s":true}},
            "cmd":{"content":{"dim":50,"speed":60,"bo":true}}}})";
        m_pWindow = OpenRemote();
        QTRY_VERIFY(m_pWindow->IsAnswered());
    }

    void cleanup() {
        m_pWindow.reset();
        m_pPeer.reset();
    }

    void fullState() {
        const Scene& bare = m_pWindow->Scenes()[2];  // nothing is left of the entry before
        QVERIFY(m_pWindow->Scenes()[0].level == 9 && bare.area == -1 && bare.name.empty());
        QCOMPARE(m_pWindow->Programs()[0].area, -1);  // programs have none
        const CColorPicker* pPicker = m_pWindow->Picker();
        QVERIFY(pPicker->Wheel()->IsOn() && pPicker->Wheel()->GetColor() == QColor(1, 2, 3));
        QCOMPARE(pPicker->White()->Value(), 4);
        QVERIFY(pPicker->Dimmer()->Value() == 128 && pPicker->Speed()->Value() == 154);
        Send(R"({"typ":12,"content":{"chan":500,"level":9,"s":true}})");
        QVERIFY(m_pWindow->Grid()->Tables().states[500]);
        // Each "content" in "scn" counts; what is missing stays as it was, but lists are emptied.
        Send(R"({"typ":7,"content":{"scn":{"content":[{"id":8}],"content":[{"id":9}]}}})");
        QCOMPARE(m_pWindow->SceneList()->Items().size(), 2);
        QVERIFY(m_pWindow->ProgramList()->Items().isEmpty());
        QCOMPARE(m_pWindow->ColorState().g, 2);
        QVERIFY(!m_pWindow->Grid()->Tables().states[500]);
    }

    void messages() {
        // Scenes | programs that run, from 1 | 2, and whether that puts color and commands out.
        const std::pair<const char*, const char*> rows[] = {
            {R"({"typ":8,"content":{"id":2,"s":true}})", "2 | 2 | out"},
            {R"({"typ":8,"content":{"id":1}})", " | 2"},
            {R"({"typ":9,"content":{"id":2}})", "1 | "},
            {R"({"typ":9,"content":{"id":1,"s":true}})", "1 | 1 2 | out"},
            // Lists of states are complete, each for itself.
            {R"({"typ":18,"content":{"scn":{"content":[{"id":2},{"id":3}]},"prg":{"content":[]}}})",
             "2 3 | "},
            {R"({"typ":18,"content":{"prg":{"content":[{"id":1,"s":false}]}}})", "1 | 1"},
            // Several messages, and several contents, in one.
            {R"({"typ":9,"content":{"id":2},"typ":8,"content":{"id":3,"s":1}})", "1 3 |  | out"},
            {R"({"typ":9,"content":{"id":2},"content":{"id":1,"s":1}})", "1 | 1 | out"},
            {R"({"typ":"8","content":{"id":"1"}})", " | 2"},
            // What is none, unknown or of no concern.
            {R"({"content":{"id":1},"typ":8})", "1 | 2"},
            {R"({"typ":8,"content":[{"id":1}]})", "1 | 2"},
            {R"([{"typ":8,"content":{"id":1}}])", "1 | 2"},
            {R"({"typ":8,"content":{"id":77,"s":true}})", "1 | 2 | out"},
            {R"({"typ":4,"content":{"id":1}})", "1 | 2"},
            {R"({"typ":5,"content":{"id":1}})", "1 | 2"},
        };
        for (const auto& [pText, pRunning] : rows) {
            Send(m_pPeer->state);
            Send(pText);
            const CColorPicker* pPicker = m_pWindow->Picker();
            const bool bOut = !pPicker->Wheel()->IsOn() && !pPicker->Commands()->IsOn(CCommandWnd::Black);
            QCOMPARE(Running(m_pWindow->SceneList()) + " | " + Running(m_pWindow->ProgramList()) +
                         (bOut ? " | out" : ""),
                     QString(pRunning));
        }
        QCOMPARE(m_pPeer->Count(8) + m_pPeer->Count(9), 0);  // nothing is echoed
    }

    void answerOlderThanTheSwitchIsPassedOver() {
        for (CSceneList* pList : {m_pWindow->SceneList(), m_pWindow->ProgramList()}) {
            ClickTile(pList, 0);
            const QString sShown = Running(pList);
            const QByteArray other =
                R"({"typ":18,"content":{"scn":{"content":[{"id":3}]},"prg":{"content":[]}}})";
            Send(other);
            QCOMPARE(Running(pList), sShown);
            Send(other);
            QVERIFY(Running(pList) != sShown);
        }
    }

    void hostileDatagrams() {
        QByteArray noise(65507, '\0');
        for (int i = 0; i < noise.size(); ++i) {
            noise[i] = static_cast<char>(1 + (i * 7919) % 255);
        }
        QList<QByteArray> texts{"", noise, noise.left(65000) + "!#(", "!#("};
        for (const char brace : {'[', '{', '}'}) {
            texts += QByteArray(50000, brace) + "!#(";
        }
        // Each type with each member that any reader knows, all of one odd value. Type 2 opens a box, which
        // has a test of its own.
        const QByteArray content =
            R"("typ":@,"content":@,"scn":@,"prg":@,"clr":@,"cmd":@,"n":@,"id":@,"a":@,"l":@,"s":@,"color":@,)"
            R"("r":@,"rgbw":@,"dim":@,"next":@,"chan":@,"univ":@,"universe":@,"channels":@,"c":@,"serial":@)";
        for (const char* pValue : {"null", "\"x\"", "-1e99", "[[],{},1]", "{\"content\":7}", "true"}) {
            QByteArray text = "{";
            for (const int nType : {1, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20, 21}) {
                text += "\"typ\":" + QByteArray::number(nType) + ",\"content\":{" + content + "},";
            }
            texts += text.replace("@", pValue) + "\"end\":0}";
        }
        m_pPeer->answersState = false;  // a serial among the noise asks for it
        for (const QByteArray& text : texts) {
            m_pWindow->SendState();  // forgets the fragments
            QTest::qWait(20);
            m_pPeer->Send(text);
            m_pPeer->Send(text);
            // A good message works next, whatever is in its names and behind its end.
            m_pPeer->Send(
                "{\"typ\":7,\"content\":{\"scn\":{\"content\":[{\"id\":5,\"n\":\"\xE9\",\"s\":true}]}}}");
            QTRY_COMPARE(Running(m_pWindow->SceneList()), QString("5"));
            QCOMPARE(m_pWindow->SceneList()->Items()[0].name, QString("\uFFFD"));
            m_pPeer->Send(QByteArray(R"({"typ":8,"content":{"id":5}})") + '\0');
            QTRY_COMPARE(Running(m_pWindow->SceneList()), QString());
        }
    }

    void serials() {
        const int nRequests = m_pPeer->Count(6);
        Send(R"({"typ":15,"content":{"other":1}})");
        QCOMPARE(m_pPeer->Count(6), nRequests);
        Send(R"({"typ":15,"content":{"serial":"9","serial":"8"}})");
        QTRY_COMPARE(m_pPeer->Count(6), nRequests + 1);
        QCOMPARE(m_pWindow->Params()->Servers().Labels(), QStringList("0042"));  // the address was known
    }
};

QTEST_MAIN(TestReceive)
#include "tst_receive.moc"
