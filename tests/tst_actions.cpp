#include "device/messages.h"
#include "tests/peer.h"
#include "tests/remote.h"

#include <QLineEdit>

#include <functional>

/// What each thing the user can do becomes: a message, a setting, another page.
class TestActions : public QObject {
    Q_OBJECT

    /// What is done, and type and content of the message it leads to.
    using Step = std::tuple<std::function<void()>, int, const char*>;

    std::unique_ptr<Peer> m_pPeer;
    std::unique_ptr<Corvane> m_pWindow;

    void Open(const QByteArray& settings = {}) {
        m_pWindow.reset();
        m_pWindow = OpenRemote(settings);
        m_pWindow->show();
        QTRY_VERIFY(m_pWindow->IsAnswered());
    }

    /// What the settings file holds once the window is gone.
    QByteArray Saved() {
        m_pWindow.reset();
        QFile file(CIniFile().path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    /// The content of the next message of a type, without what is false in its midst; "" when none leaves.
    QString Next(int nType) {
        static const QRegularExpression marks("[\\s\"{}]");
        static const QRegularExpression noise("typ:\\d+,|content:|color:|\\w+:false,");
        const int nBefore = m_pPeer->Count(nType);
        const bool bSent = QTest::qWaitFor([=] { return m_pPeer->Count(nType) > nBefore; }, 200);
        return bSent ? QString(m_pPeer->Received(nType).last().text).remove(marks).remove(noise) : "";
    }

    /// What the pages tell, one after the other.
    std::vector<Step> Steps() const {
        CColorPicker* pPicker = m_pWindow->Picker();
        CCommandWnd* pCommands = pPicker->Commands();
        CChannelSlider* pEditor = m_pWindow->Grid()->Editor();
        pEditor->Edit(34, 0);
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
                {[=] { emit pEditor->Control()->valueChanged(9); }, 12, "chan:33,univ:0,level:9,s:true"},
                {[=] { emit pEditor->ok(10); }, 12, "chan:33,univ:0,level:10,s:true"},
                {[=] { emit pEditor->off(); }, 12, "chan:33,univ:0,level:0,s:false"}};
    }

private slots:
    void init() {
        m_pPeer.reset();
        m_pPeer = std::make_unique<Peer>();
        Open();
    }

    void messagesWhileConnected() {
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
            emit pList->nameChanged(nId, nId == 3 ? "Party" : "Loop");
            emit pList->iconChanged(nId, nId == 3 ? ":/x.png" : ":/y.png");
            emit pList->colorChanged(nId, nId == 3 ? Qt::red : Qt::green);
        }
        emit pParams->pwdStateChanged(true);
        for (const int i : {1, 4, -1}) {
            emit pParams->showMenu(i, false);
            emit pParams->enableParam(i == 1 ? 2 : i - 1, false);
        }
        QVERIFY(m_pWindow->Menu()->EntryRect(1).isNull() && m_pWindow->CurrentPage() == 1);  // it stays
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
        QTest::mousePress(pMenu, Qt::LeftButton, {}, pMenu->EntryRect(5).center());
        QVERIFY(!m_pWindow->IsAnswered() && pMenu->isVisible() && m_pWindow->CurrentPage() == 1);
        // A press anywhere else closes the menu, on the frame, on any page, on an entry.
        CColorPicker* pPicker = m_pWindow->Picker();
        const auto press = [](QObject* pPage) {
            return [pPage] { QMetaObject::invokeMethod(pPage, "mousePressed"); };
        };
        for (const std::function<void()>& act : std::initializer_list<std::function<void()>>{
                 [this] {
                     Click(m_pWindow.get(), {300, 20});
                 },
                 press(m_pWindow->SceneList()), press(m_pWindow->ProgramList()), press(m_pWindow->Grid()),
                 press(m_pWindow->Params()), press(pPicker->Wheel()), press(pPicker->Commands()),
                 [=] { Click(pMenu, pMenu->EntryRect(4).center()); }}) {
            m_pWindow->ShowPopupMenu();
            act();
            QVERIFY(!pMenu->isVisible() && pTab->isVisible());
        }
        QVERIFY(m_pWindow->Params()->isVisible() && !m_pWindow->ProgramList()->isVisible());
    }

    /// Is sent to this machine, as any address that Qt cannot read.
    void addressesThatAreNone() {
        m_pPeer->answersSerial = false;
        m_pWindow.reset();
        m_pWindow = OpenRemote();
        const int nBefore = m_pPeer->Count(6);
        for (const char* pAddress : {"...", "999.0.0.1", "256.1.1.1"}) {
            m_pWindow->Params()->SetIp(pAddress);
            m_pWindow->SendState();
        }
        QTRY_COMPARE(m_pPeer->Count(6), nBefore + 3);
    }
};

QTEST_MAIN(TestActions)
#include "tst_actions.moc"
