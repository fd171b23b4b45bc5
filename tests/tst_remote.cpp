#include "tests/remote.h"

/// The window and a server: what each thing the user can do becomes, a message, a setting, another page; and
/// what becomes of what the server says, as real datagrams.
class TestRemote : public QObject {
    Q_OBJECT

    /// What is done, and type and content of the message it leads to.
    using Step = std::tuple<std::function<void()>, int, const char*>;

    std::unique_ptr<Peer> m_pPeer;
    std::unique_ptr<Corvane> m_pWindow;

    void Open(const QByteArray& settings = {}, const QString& sInterface = "Auto") {
        m_pWindow.reset();
        m_pWindow = OpenRemote(settings, sInterface);
        QTRY_VERIFY(m_pWindow->IsAnswered());
    }

    /// What the settings file holds once the window is gone.
    QByteArray Saved() {
        m_pWindow.reset();
        return TextOf(CIniFile().path);
    }

    /// The content of the next message of a type, without what is false in its midst; "" when none leaves.
    QString Next(int nType) {
        const int nBefore = m_pPeer->Count(nType);
        const bool bSent = QTest::qWaitFor([=] { return m_pPeer->Count(nType) > nBefore; });
        QString sText = bSent ? m_pPeer->Last(nType) : "";
        sText.remove(QRegularExpression("[\\s\"{}]"));
        return sText.remove(QRegularExpression("typ:\\d+,|content:|color:|\\w+:false,"));
    }

    /// What the pages tell, one after the other.
    std::vector<Step> Steps() const {
        CColorPicker* pPicker = m_pWindow->Picker();
        CCommandWnd* pCommands = pPicker->Commands();
        CChannelSlider* pEditor = m_pWindow->Grid()->Editor();
        return {{[=] { emit m_pWindow->Params()->enableParam(2, false); }, 6, "typ:6"},
                {[=] { emit m_pWindow->SceneList()->stateChanged(2, 7, true); }, 8, "id:7,a:2,s:true"},
                {[=] { emit m_pWindow->ProgramList()->stateChanged(-1, 7, true); }, 9, "id:7,s:true"},
                {[=] { emit pPicker->colorChanged(1, 2, 3, 255); }, 10, "r:1,g:2,b:3,w:255,s:true"},
                {[=] { emit pPicker->Wheel()->colorStateChanged(true); }, 10, "r:1,g:2,b:3,w:255,s:false"},
                {[=] { emit pPicker->Dimmer()->valueChanged(255); }, 11, "dim:100,speed:0"},
                {[=] { emit pPicker->Speed()->valueChanged(127); }, 11, "dim:100,speed:49"},
                {[=] { emit pPicker->Speed()->valueChanged(255); }, 11, "dim:100,speed:100"},
                {[=] { emit pPicker->Dimmer()->valueChanged(2); }, 11, "dim:0,speed:100"},
                {[=] { emit pCommands->whiteChanged(true); }, 11, "white:true,dim:0,speed:100"},
                {[=] { emit pCommands->blackChanged(true); }, 11, "bo:true,dim:0,speed:100"},
                {[=] { emit pCommands->nextChanged(true); }, 11, "bo:true,next:true,dim:0,speed:100"},
                {[=] { emit pCommands->pauseChanged(true); }, 11, "bo:true,hold:true,dim:0,speed:100"},
                {[=] { emit pCommands->whiteChanged(true); }, 11, "white:true,hold:true,dim:0,speed:100"},
                {[=] { emit pCommands->whiteChanged(false); }, 11, "hold:true,dim:0,speed:100"},
                {[=] { emit pEditor->Control()->valueChanged(9); }, 12, "chan:511,univ:31,level:9,s:true"},
                {[=] { emit pEditor->ok(10); }, 12, "chan:511,univ:31,level:10,s:true"},
                {[=] { emit pEditor->off(); }, 12, "chan:511,univ:31,level:0,s:false"}};
    }

    static constexpr char FullState[] = R"({"typ":7,"content":{
            "scn":{"content":[{"n":"A","id":1,"a":0,"l":9,"s":true},{"id":2,"n":"B","a":0},{"id":3}]},
            "prg":{"content":[{"id":1,"a":5},{"id":2,"s":1}]},
            "clr":{"content":{"color":{"r":1,"g":2,"b":3,"w":4},"rgbw":true,"s":true}},
            "cmd":{"content":{"dim":50,"speed":60,"bo":true}}}})";

    /// Sends a datagram, then one that can be seen to arrive after it.
    void Send(const QByteArray& bytes) {
        static int nMark = 0;
        m_pPeer->Send(bytes);
        m_pPeer->Send(QString(R"({"typ":12,"content":{"chan":%1}})").arg(++nMark).toUtf8());
        QTRY_COMPARE(m_pWindow->ChannelState().chan, nMark);
    }

    void Read(const QByteArray& text, const QString& sSender = "10.0.0.9") {
        m_pWindow->ReadData(text, sSender);
    }

private slots:
    void init() {
        m_pPeer.reset();
        m_pPeer = std::make_unique<Peer>();
        m_pPeer->state = R"({"typ":7,"content":{"scn":{"content":[{"id":1,"a":0},{"id":2,"a":1}]}}})";
        Open();
    }

    void messagesWhileConnected() {
        ChannelsGrid* pGrid = m_pWindow->Grid();
        m_pWindow->OnMenuChanged(3);
        for (const int iPart : {ChannelsGrid::UnivLess, ChannelsGrid::LeftArrow}) {
            Click(pGrid, pGrid->PartRect(iPart).center());
        }
        Click(pGrid, pGrid->CellRect(31).center());
        for (const auto& [act, nType, pSent] : Steps()) {
            act();
            QCOMPARE(Next(nType), QString(pSent));
        }
        // Without a connection a scene takes the lights over all the same, but nothing is told or kept.
        m_pWindow->Disconnect();
        const int nBefore = m_pPeer->Count(-1);
        const auto mirror = [this] {
            return messages::Color(m_pWindow->ColorState()) + messages::Command(m_pWindow->CommandState());
        };
        const std::string sBefore = mirror();
        CColorPicker* pPicker = m_pWindow->Picker();
        for (CSceneList* pList : {m_pWindow->SceneList(), m_pWindow->ProgramList()}) {
            pPicker->Update(Color{0, 0, 0, 0, false, true}, Command{true, false, false, false, true, 0, 0});
            for (const bool bStarts : {false, true}) {
                emit pList->stateChanged(0, 1, bStarts);
                QVERIFY(pPicker->Wheel()->IsOn() != bStarts &&
                        pPicker->Commands()->IsOn(CCommandWnd::Pause) != bStarts);
            }
        }
        for (const auto& step : Steps()) {
            std::get<0>(step)();
            QVERIFY(mirror() == sBefore);
        }
        m_pWindow->Refresh();
        QTest::qWait(100);
        QCOMPARE(m_pPeer->Count(-1), nBefore + 1);  // its own request: nothing waited to be sent
    }

    void settings() {
        CSceneList* pScenes = m_pWindow->SceneList();
        CParamsCtrl* pParams = m_pWindow->Params();
        m_pWindow->OnMenuChanged(1);
        m_pWindow->Disconnect();  // what stays on this side is kept all the same
        for (const auto& [pList, nId] : {std::pair{pScenes, 3}, {m_pWindow->ProgramList(), 4}}) {
            emit pList->colorChanged(nId, nId == 3 ? Qt::red : Qt::green);
            emit pList->iconChanged(nId, nId == 3 ? ":/x.png" : ":/y.png");
            emit pList->nameChanged(nId, nId == 3 ? "Party" : "Loop");
        }
        emit pParams->pwdStateChanged(true);
        for (const int i : {1, 4, -1}) {
            emit pParams->showMenu(i, false);
            emit pParams->enableParam(i == 1 ? 2 : i - 1, false);
        }
        QVERIFY(m_pWindow->Menu()->PartRect(1).isNull() && m_pWindow->CurrentPage() == 1);  // it stays
        m_pPeer->state = R"({"typ":7,"content":{"scn":{"content":[{"n":"Plain","id":3}]}}})";
        emit pParams->refresh();
        for (const bool bOwn : {true, false, true}) {
            emit pParams->enableParam(0, bOwn);
            QTRY_COMPARE(pScenes->Items().value(0).name, QString(bOwn ? "Party" : "Plain"));
        }
        QCOMPARE(Saved(), QByteArray("PwdState=1\nPwdValue=\nMenuVisible=1|0|1|1\nSceneParams=1|1|0\n"
                                     "Scenes=3;Party;:/x.png;255\nPrograms=4;Loop;:/y.png;65280\n"));
    }

    void leavingTheParameters() {
        for (const bool bLocks : {true, false}) {
            Open(QByteArray(bLocks ? "PwdState=1" : "PwdState=0") + "\nPwdValue=old\n");
            CParamsCtrl* pParams = m_pWindow->Params();
            auto* pPassword = pParams->findChildren<QLineEdit*>().last();
            const auto unlocks = [&](const char* pText) {
                pPassword->setText(pText);
                pParams->OnPwdStateChanged(true);
                return !pParams->IsLocked();
            };
            m_pWindow->OnMenuChanged(4);
            QVERIFY(!bLocks || unlocks("old"));
            m_pWindow->OnMenuChanged(4);  // going where one is locks nothing
            QVERIFY(!pParams->IsLocked());
            pPassword->setText("new");
            m_pWindow->OnMenuChanged(1);
            QVERIFY(!pParams->isVisible() && pParams->IsLocked() == bLocks);
            QVERIFY(!bLocks || (!unlocks("old") && unlocks("new")));
            m_pWindow->OnMenuChanged(0);
            QVERIFY(Saved().contains(bLocks ? "\nPwdValue=\n" : "\nPwdValue=new\n"));
        }
    }

    void menu() {
        CPopupMenu* pMenu = m_pWindow->Menu();
        CPopupTab* pTab = m_pWindow->Tab();
        m_pWindow->OnMenuChanged(1);
        QCOMPARE(pTab->geometry(), QRect(QPoint(58, 482), QPoint(71, 531)));
        Click(pTab, {13, 49});
        QVERIFY(!pTab->isVisible() && m_pWindow->childAt(80, 100) == pMenu);
        QCOMPARE(pMenu->geometry(), QRect(QPoint(58, 58), QPoint(119, 541)));
        // Refresh connects again and leaves page and menu alone.
        QTest::mousePress(pMenu, Qt::LeftButton, {}, pMenu->PartRect(5).center());
        QVERIFY(!m_pWindow->IsAnswered() && pMenu->isVisible() && m_pWindow->CurrentPage() == 1);
        // A press anywhere else closes the menu, on the frame, on any page, on an entry.
        CColorPicker* pPicker = m_pWindow->Picker();
        const QList<QObject*> pages{m_pWindow->SceneList(), m_pWindow->ProgramList(), m_pWindow->Grid(),
                                    m_pWindow->Params(),    pPicker->Wheel(),         pPicker->Commands()};
        for (int i = 0; i < 8; ++i) {
            m_pWindow->ShowPopupMenu();
            i < 6    ? void(QMetaObject::invokeMethod(pages[i], "mousePressed"))
            : i == 6 ? Click(m_pWindow.get(), {300, 20})
                     : Click(pMenu, pMenu->PartRect(4).center());
            QVERIFY(!pMenu->isVisible() && pTab->isVisible());
        }
        QVERIFY(m_pWindow->Params()->isVisible() && !m_pWindow->ProgramList()->isVisible());
    }

    void messages() {
        const CColorPicker* pPicker = m_pWindow->Picker();
        Send(FullState);
        const Scene& bare = m_pWindow->Scenes()[2];  // nothing is left of the entry before
        QVERIFY(m_pWindow->Scenes()[0].level == 9 && bare.area == -1 && bare.name.empty());
        QCOMPARE(m_pWindow->Programs()[0].area, -1);  // programs have none
        QVERIFY(pPicker->Wheel()->IsOn() && pPicker->Wheel()->GetColor() == QColor(1, 2, 3));
        QVERIFY(pPicker->White()->Value() == 4 && pPicker->Dimmer()->Value() == 128);
        // Each "content" in "scn" counts; what is missing stays as it was.
        Send(R"({"typ":7,"content":{"scn":{"content":[{"id":8}],"content":[{"id":9}]}}})");
        QVERIFY(m_pWindow->SceneList()->Items().size() == 2 && m_pWindow->ColorState().g == 2);
        QCOMPARE(pPicker->Speed()->Value(), 154);
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
            {R"({"typ":4,"content":{"id":1},"typ":5,"content":{"id":1}})", "1 | 2"},
        };
        for (const auto& [pText, pRunning] : rows) {
            Send(FullState);
            Send(pText);
            const bool bOut = !pPicker->Wheel()->IsOn() && !pPicker->Commands()->IsOn(CCommandWnd::Black);
            const QString sRunning =
                Running(m_pWindow->SceneList()) + " | " + Running(m_pWindow->ProgramList());
            QCOMPARE(sRunning + (bOut ? " | out" : ""), QString(pRunning));
        }
        QCOMPARE(m_pPeer->Count(8) + m_pPeer->Count(9), 0);  // nothing is echoed
    }

    void hostileDatagrams() {
        QByteArray noise;
        while (noise.size() < 65507) {
            noise += static_cast<char>(1 + noise.size() * 7919 % 255);
        }
        QList<QByteArray> texts{"", noise, "!#(", noise.left(65000) + "!#("};
        for (const char cBracket : {'[', '{', '}'}) {
            texts += QByteArray(50000, cBracket) + "!#(";
        }
        // Each type with each member that any reader knows, all of one odd value. Type 2 opens a box, which
        // has a test of its own.
        for (const char* pValue : {"null", "\"x\"", "-1e99", "[[],{},1]", "{\"content\":7}", "true"}) {
            texts += "{";
            for (int nType = 1; nType < 22; nType += nType == 1 ? 2 : 1) {
                texts.last() +=
                    "\"typ\":" + QByteArray::number(nType) +
                    R"(,"content":{"typ":@,"content":@,"scn":@,)"
                    R"("prg":@,"clr":@,"cmd":@,"n":@,"id":@,"a":@,"l":@,"s":@,"color":@,"r":@,"rgbw":@,"dim":@,)"
                    R"("next":@,"chan":@,"univ":@,"universe":@,"channels":@,"c":@,"serial":@},)";
            }
            texts.last() = texts.last().replace("@", pValue) + "\"end\":0}";
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

    void heldWhenABoxOpens() {
        CColorPicker* pPicker = m_pWindow->Picker();
        CCommandWnd* pCommands = pPicker->Commands();
        const auto warn = [this] {
            bool bLetGo = false;
            OnNext<QMessageBox>([&](QMessageBox* pBox) {
                bLetGo = QWidget::mouseGrabber() == nullptr;
                pBox->accept();
            });
            Read(R"({"typ":2})");
            QTRY_VERIFY(bLetGo);
        };
        const auto press = [&](int nPage, QWidget* pHeld, const QPoint& at) {
            m_pWindow->Refresh();  // who asks again is told again
            m_pWindow->OnMenuChanged(nPage);
            Mouse(pHeld, QEvent::MouseButtonPress, at);
            warn();
        };
        press(2, pPicker->Red()->Slider(), {17, 100});
        QTRY_VERIFY(m_pWindow->IsAnswered());
        press(2, pPicker->Wheel(), QPoint(260, 210));
        // The sliders send again, and moves over the page move nothing.
        const int nColors = m_pPeer->Count(10);
        Mouse(pPicker->Green()->Slider(), QEvent::MouseButtonPress, {17, 150});
        QTRY_VERIFY(m_pPeer->Count(10) > nColors);
        m_pWindow->OnMenuChanged(3);  // hidden while it is held
        QVERIFY(QWidget::mouseGrabber() == nullptr);
        press(3, m_pWindow.get(), {410, 20});
        const QPoint before = m_pWindow->pos();
        Mouse(m_pWindow.get(), QEvent::MouseMove, {500, 300});
        QCOMPARE(m_pWindow->pos(), before);
        pPicker->SwitchCmdMode();
        press(2, pCommands, pCommands->PartRect(CCommandWnd::Next).center());
        QVERIFY(!pCommands->IsOn(CCommandWnd::Next));
        emit m_pWindow->Params()->enableParam(0, true);
        warn();                // of what the user has asked for
        Read(R"({"typ":2})");  // told a moment ago
        QTest::qWait(100);
        QVERIFY(QApplication::activeModalWidget() == nullptr);
    }

    /// Without an address of a private network, the choice of this computer has no broadcast address.
    void localhost() {
        Open({}, "Localhost");
        QCOMPARE(m_pWindow->Params()->GetIp(), QString("127.0.0.1"));
    }

    void oneMessage() {
        const auto several = [](const QByteArray& text, int nTimes) {
            return text.repeated(nTimes).chopped(1);
        };
        // Each content switches the scene on or off; the last that is obeyed switches it on.
        const QByteArray off = R"("content":{"id":1},)";
        const QByteArray on = R"("content":{"id":1,"s":true},)";
        const std::pair<QByteArray, int> rows[] = {{R"("content":[)" + several("{},", 20000) + "]", 10000},
                                                   {several(R"("content":[{}],)", 100), 64},
                                                   {R"("content":[{"id":1},{"id":2}])", 2}};
        for (const auto& [scenes, nTiles] : rows) {
            Read(R"({"typ":7,"content":{"scn":{)" + scenes + "}}}");
            QCOMPARE(m_pWindow->SceneList()->Items().size(), nTiles);
        }
        Read(R"({"typ":8,)" + off.repeated(63) + on + several(off, 9) + '}');
        QVERIFY(m_pWindow->SceneList()->Items()[0].state);
        const int nRequests = m_pPeer->Count(6);
        Read(R"({"typ":15,"content":{"other":1}})");
        Read(R"({"typ":15,)" + several(R"("content":{"serial":"9","serial":"8"},)", 50) + '}', "127.0.0.1");
        QTest::qWait(100);
        QCOMPARE(m_pPeer->Count(6), nRequests + 1);
        const ServerList& servers = m_pWindow->Params()->Servers();
        QVERIFY(servers.count() == 1 && servers.itemText(0) == "0042");  // the address was known
    }

    /// The servers of a large house are listed, and what they, or strangers, say all the time takes no memory
    /// for good.
    void manyServers() {
        const ServerList& servers = m_pWindow->Params()->Servers();
        double grown = 0;
        for (int i = 0; i < 5000; ++i) {
            const QByteArray sender =
                "10.1." + QByteArray::number(i / 250) + '.' + QByteArray::number(i % 250);
            Read(R"({"typ":15,"content":{"serial":")" + QByteArray(1000, 'x') + R"("}})", sender);
            Read('{' + QByteArray(5000, ' ') + "!#(", sender);  // a piece, of which there will be no more
            Read(FullState, sender);
            grown = i == 1000 ? -ResidentMiB() : grown;
        }
        grown += ResidentMiB();
        QCOMPARE(servers.count(), 256);
        QCOMPARE(servers.itemText(255).size(), 64);
#ifndef __SANITIZE_ADDRESS__  // which keeps what is freed aside
        QVERIFY2(grown < 8, qPrintable(QString("memory grew by %1 MiB").arg(grown)));
#endif
    }

    /// What a scene that someone starts releases does not take the place of the user's click, and follows it.
    void clickBesideAStart() {
        const auto start = [this] { Read(R"({"typ":8,"content":{"id":1,"a":0,"s":true}})"); };
        const auto click = [this] { m_pWindow->OnSceneStateChanged(1, 2, false); };
        for (int i = 1; i <= 21; ++i) {
            Read(R"({"typ":10,"content":{"s":true}})");
            i % 2 == 0 ? click() : void();
            start();
            i % 2 == 1 && i < 21 ? click() : void();
            QTRY_COMPARE(m_pPeer->Count(8), std::min(i, 20));
            QTRY_COMPARE(m_pPeer->Count(10), i);
            QVERIFY(m_pPeer->Last(10).contains(R"("s" : false)"));
        }
        // A click that waits is for its own server, and a color that was picked since is no release.
        Read(R"({"typ":10,"content":{"s":true}})");
        click();
        start();
        emit m_pWindow->Picker()->colorChanged(1, 2, 3, 4);
        QTRY_VERIFY(m_pPeer->Last(10).contains(R"("s" : true)"));
        QTest::qWait(100);
        QCOMPARE(m_pPeer->Count(10), 22);
        click();
        m_pWindow->Params()->AddSerial("0001", "127.0.0.2");
        m_pWindow->Refresh();
        QTest::qWait(100);
        QCOMPARE(m_pPeer->Count(8), 20);
    }
};

QTEST_MAIN(TestRemote)
#include "tst_remote.moc"
