#include "app/corvane.h"
#include "app/cpopupmenu.h"
#include "app/cpopuptab.h"
#include "tests/peer.h"
#include "tests/support.h"
#include "widgets/cchannelslider.h"
#include "widgets/ccolorcircle.h"
#include "widgets/ccolorpicker.h"
#include "widgets/ccommandwnd.h"
#include "widgets/channelsgrid.h"
#include "widgets/cparamsctrl.h"
#include "widgets/cscenelist.h"
#include "widgets/csliderctrl.h"

#include <QLineEdit>
#include <QtTest>

#include <functional>
#include <memory>

/// What each thing the user can do becomes: a message, a setting, another page.
class TestActions : public QObject {
    Q_OBJECT

    std::unique_ptr<Peer> m_pPeer;
    std::unique_ptr<Corvane> m_pWindow;

    static QString SettingsPath() { return QCoreApplication::applicationDirPath() + "/Corvane.ini"; }

    void Open(const QByteArray& settings = {}, bool bConnect = true) {
        m_pWindow.reset();
        QFile file(SettingsPath());
        if (!file.open(QIODevice::WriteOnly) || file.write(settings) < 0) {
            qFatal("no settings file");
        }
        file.close();
        if (bConnect) {
            ChooseInterface();
        } else {
            OnNext<QDialog>([](QDialog* pDialog) { pDialog->reject(); });
        }
        m_pWindow = std::make_unique<Corvane>();
        m_pWindow->show();
        if (bConnect) {
            QTRY_VERIFY(m_pWindow->IsAnswered());
        }
    }

    /// What the settings file holds once the window is gone.
    QByteArray Saved() {
        m_pWindow.reset();
        QFile file(SettingsPath());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    /// The next message of a type as one line, "" when none leaves.
    QString Next(int nType) {
        const int nBefore = m_pPeer->Count(nType);
        for (int i = 0; i < 20 && m_pPeer->Count(nType) == nBefore; ++i) {
            QTest::qWait(10);
        }
        return m_pPeer->Count(nType) > nBefore
                   ? QString(m_pPeer->Received(nType).last().text).remove(QRegularExpression("[\\s\"]"))
                   : QString();
    }

private slots:
    void init() {
        m_pPeer = std::make_unique<Peer>();
        Open();
    }

    void cleanup() {
        m_pWindow.reset();
        m_pPeer.reset();
    }

    void connections() {
        CSceneList* pScenes = m_pWindow->SceneList();
        CSceneList* pPrograms = m_pWindow->ProgramList();
        CColorPicker* pPicker = m_pWindow->Picker();
        ChannelsGrid* pGrid = m_pWindow->Grid();
        CParamsCtrl* pParams = m_pWindow->Params();
        emit m_pWindow->Tab()->tabPressed();
        QVERIFY(m_pWindow->Menu()->isVisible());
        emit m_pWindow->Menu()->menuChanged(1);
        QCOMPARE(m_pWindow->CurrentPage(), 1);
        emit pScenes->stateChanged(2, 7, true);
        QCOMPARE(Next(8), QString("{typ:8,content:{id:7,a:2,s:true}}"));
        emit pPrograms->stateChanged(-1, 7, true);
        QCOMPARE(Next(9), QString("{typ:9,content:{id:7,s:true}}"));
        emit pPicker->colorChanged(1, 2, 3, 4);
        QCOMPARE(Next(10), QString("{typ:10,content:{color:{r:1,g:2,b:3,w:4},rgbw:false,s:true}}"));
        emit pPicker->Wheel()->colorStateChanged(false);
        QCOMPARE(Next(10), QString("{typ:10,content:{color:{r:1,g:2,b:3,w:4},rgbw:false,s:false}}"));
        emit pPicker->Dimmer()->valueChanged(255);
        QVERIFY(Next(11).contains("dim:100,speed:0"));
        emit pPicker->Speed()->valueChanged(128);
        QVERIFY(Next(11).contains("dim:100,speed:50"));
        emit pPicker->Commands()->whiteChanged(true);
        QVERIFY(Next(11).contains("bo:false,next:false,prev:false,white:true,hold:false"));
        emit pPicker->Commands()->blackChanged(true);
        QVERIFY(Next(11).contains("bo:true,next:false,prev:false,white:false,hold:false"));
        emit pPicker->Commands()->nextChanged(true);
        QVERIFY(Next(11).contains("bo:true,next:true,prev:false,white:false,hold:false"));
        emit pPicker->Commands()->pauseChanged(true);
        QVERIFY(Next(11).contains("bo:true,next:false,prev:false,white:false,hold:true"));
        CChannelSlider* pEditor = pGrid->Editor();
        pEditor->Edit(34, 0);
        emit pEditor->Control()->valueChanged(9);
        QCOMPARE(Next(12), QString("{typ:12,content:{chan:33,univ:0,level:9,s:true}}"));
        emit pEditor->ok(10);
        QCOMPARE(Next(12), QString("{typ:12,content:{chan:33,univ:0,level:10,s:true}}"));
        emit pEditor->off();
        QCOMPARE(Next(12), QString("{typ:12,content:{chan:33,univ:0,level:0,s:false}}"));
        emit pParams->refresh();
        QVERIFY(!m_pWindow->IsAnswered());
        QTRY_VERIFY(m_pWindow->IsAnswered());
        emit pParams->showMenu(1, false);
        QVERIFY(m_pWindow->Menu()->EntryRect(1).isNull());
        QCOMPARE(m_pWindow->CurrentPage(), 1);  // the page on screen stays
        emit pParams->enableParam(2, false);
        QVERIFY(!Next(6).isEmpty());
        emit pParams->pwdStateChanged(true);
        const std::function<void()> presses[] = {[&] { emit pScenes->mousePressed(); },
                                                 [&] { emit pPrograms->mousePressed(); },
                                                 [&] { emit pPicker->Wheel()->mousePressed(); },
                                                 [&] { emit pPicker->Commands()->mousePressed(); },
                                                 [&] { emit pGrid->mousePressed(); },
                                                 [&] { emit pParams->mousePressed(); }};
        for (const auto& press : presses) {
            m_pWindow->ShowPopupMenu();
            press();
            QVERIFY(!m_pWindow->Menu()->isVisible() && m_pWindow->Tab()->isVisible());
        }
        emit pScenes->nameChanged(3, "Party");
        emit pScenes->iconChanged(3, ":/x.png");
        emit pScenes->colorChanged(3, Qt::red);
        emit pPrograms->nameChanged(4, "Loop");
        emit pPrograms->iconChanged(4, ":/y.png");
        emit pPrograms->colorChanged(4, Qt::green);
        QVERIFY(QFileInfo(SettingsPath()).size() == 0);  // nothing is written before the end
        QCOMPARE(Saved(), QByteArray("PwdState=1\nPwdValue=\nMenuVisible=1|0|1|1\nSceneParams=1|1|0\n"
                                     "Scenes=3;Party;:/x.png;255\nPrograms=4;Loop;:/y.png;65280\n"));
    }

    void colorAndCommands() {
        m_pWindow->OnColorChanged(1, 2, 3, 255);
        QCOMPARE(Next(10), QString("{typ:10,content:{color:{r:1,g:2,b:3,w:255},rgbw:false,s:true}}"));
        m_pPeer->Send(R"({"typ":10,"content":{"s":true}})");
        QTRY_VERIFY(m_pWindow->Picker()->Wheel()->IsOn());
        m_pWindow->OnColorStateChanged(true);
        QCOMPARE(Next(10), QString("{typ:10,content:{color:{r:1,g:2,b:3,w:255},rgbw:false,s:false}}"));
        const QString sCommand =
            "{typ:11,content:{bo:%1,next:%2,prev:false,white:%3,hold:%4,dim:%5,speed:%6}}";
        const auto command = [&sCommand](const char* pBo, const char* pNext, const char* pWhite,
                                         const char* pHold, int nDim, int nSpeed) {
            return sCommand.arg(pBo, pNext, pWhite, pHold).arg(nDim).arg(nSpeed);
        };
        m_pWindow->OnBlackChanged(true);
        QCOMPARE(Next(11), command("true", "false", "false", "false", 0, 0));
        m_pWindow->OnWhiteChanged(true);
        QCOMPARE(Next(11), command("false", "false", "true", "false", 0, 0));
        m_pWindow->OnWhiteChanged(false);
        QCOMPARE(Next(11), command("false", "false", "false", "false", 0, 0));
        m_pWindow->OnNextChanged(true);
        QCOMPARE(Next(11), command("false", "true", "false", "false", 0, 0));
        m_pWindow->OnPauseChanged(true);
        QCOMPARE(Next(11), command("false", "false", "false", "true", 0, 0));
        for (const auto& [nLevel, nPercent] : {std::pair{255, 100}, {254, 99}, {128, 50}, {2, 0}}) {
            m_pWindow->OnDimmerValueChanged(nLevel);
            m_pWindow->OnSpeedValueChanged(255 - nLevel);
            QCOMPARE(Next(11),
                     command("false", "false", "false", "true", nPercent, (255 - nLevel) * 100 / 255));
        }
    }

    void nothingWhileNotConnected() {
        Open({}, false);
        QVERIFY(!m_pWindow->IsConnected());
        const int nBefore = m_pPeer->Count(-1);
        m_pWindow->Picker()->Update(Color{0, 0, 0, 0, false, true},
                                    Command{true, false, false, false, true, 0, 0});
        m_pWindow->OnSceneStateChanged(0, 1, true);
        QVERIFY(!m_pWindow->Picker()->Wheel()->IsOn());  // released all the same
        QVERIFY(!m_pWindow->Picker()->Commands()->IsOn(CCommandWnd::Pause));
        m_pWindow->OnProgramStateChanged(0, 1, true);
        m_pWindow->OnColorChanged(1, 2, 3, 4);
        m_pWindow->OnColorStateChanged(false);
        m_pWindow->OnDimmerValueChanged(255);
        m_pWindow->OnSpeedValueChanged(255);
        m_pWindow->OnWhiteChanged(true);
        m_pWindow->OnBlackChanged(true);
        m_pWindow->OnNextChanged(true);
        m_pWindow->OnPauseChanged(true);
        m_pWindow->OnChannelValueChanged(1);
        m_pWindow->OnChannelOff();
        QTest::qWait(100);
        QCOMPARE(m_pPeer->Count(-1), nBefore);
        const Color& color = m_pWindow->ColorState();
        const Command& command = m_pWindow->CommandState();
        QVERIFY(color.r == 0 && color.w == 0 && !color.state);
        QVERIFY(command.dim == 0 && command.speed == 0 && !command.white && !command.bo && !command.hold);
        // What stays on this side is kept all the same.
        m_pWindow->OnSceneNameChanged(1, "Kept");
        m_pWindow->OnPwdStateChanged(true);
        m_pWindow->OnShowMenu(0, false);
        m_pWindow->OnShowMenu(4, false);
        m_pWindow->OnEnableParam(0, false);
        m_pWindow->OnEnableParam(3, false);
        QCOMPARE(
            Saved(),
            QByteArray("PwdState=1\nPwdValue=\nMenuVisible=0|1|1|1\nSceneParams=0|1|1\nScenes=1;Kept;;-1\n"));
    }

    void customisationFlagsRebuildTheLists() {
        m_pPeer->state = R"({"typ":7,"content":{"scn":{"content":[{"n":"Plain","id":3}]}}})";
        m_pWindow->OnSceneNameChanged(3, "Mine");
        m_pWindow->Refresh();
        QTRY_COMPARE(m_pWindow->SceneList()->Items().value(0).name, QString("Mine"));
        emit m_pWindow->Params()->enableParam(0, false);
        QTRY_COMPARE(m_pWindow->SceneList()->Items().value(0).name, QString("Plain"));
        emit m_pWindow->Params()->enableParam(0, true);
        QTRY_COMPARE(m_pWindow->SceneList()->Items().value(0).name, QString("Mine"));
    }

    void leavingTheParameters_data() {
        QTest::addColumn<QByteArray>("settings");
        QTest::addColumn<bool>("lockedAfter");
        QTest::addColumn<QByteArray>("saved");  // the password at the end
        QTest::newRow("lock on: relocks with the new password")
            << QByteArray("PwdState=1\nPwdValue=old\n") << true << QByteArray("");
        QTest::newRow("lock off: stays open")
            << QByteArray("PwdState=0\nPwdValue=old\n") << false << QByteArray("new");
    }

    void leavingTheParameters() {
        QFETCH(QByteArray, settings);
        QFETCH(bool, lockedAfter);
        Open(settings);
        CParamsCtrl* pParams = m_pWindow->Params();
        m_pWindow->OnMenuChanged(4);
        QVERIFY(pParams->isVisible());
        const auto edits = pParams->findChildren<QLineEdit*>();
        auto* pPassword =
            *std::find_if(edits.begin(), edits.end(), [](auto* p) { return p->inputMask().isEmpty(); });
        pPassword->setText("old");
        if (pParams->IsLocked()) {
            pParams->OnPwdStateChanged(true);
        }
        QVERIFY(!pParams->IsLocked());
        m_pWindow->OnMenuChanged(4);  // going where one is locks nothing
        QVERIFY(!pParams->IsLocked());
        pPassword->setText("new");
        m_pWindow->OnMenuChanged(1);
        QVERIFY(!pParams->isVisible());
        QCOMPARE(pParams->IsLocked(), lockedAfter);
        if (lockedAfter) {
            m_pWindow->OnMenuChanged(4);
            pPassword->setText("old");
            pParams->OnPwdStateChanged(true);
            QVERIFY(pParams->IsLocked());
            pPassword->setText("new");
            pParams->OnPwdStateChanged(true);
            QVERIFY(!pParams->IsLocked());
            m_pWindow->OnMenuChanged(0);
        }
        QFETCH(QByteArray, saved);
        QVERIFY(Saved().contains("\nPwdValue=" + saved + "\n"));
    }

    void menu() {
        m_pWindow->OnMenuChanged(1);
        QCOMPARE(m_pWindow->Tab()->geometry(), QRect(QPoint(58, 482), QPoint(71, 531)));
        QTest::mouseClick(m_pWindow->Tab(), Qt::LeftButton);
        QVERIFY(m_pWindow->Menu()->isVisible() && !m_pWindow->Tab()->isVisible());
        QCOMPARE(m_pWindow->Menu()->geometry(), QRect(QPoint(58, 58), QPoint(119, 541)));
        QVERIFY(m_pWindow->childAt(80, 100) == m_pWindow->Menu());
        // Refresh connects again and leaves page and menu alone.
        QTest::mousePress(m_pWindow->Menu(), Qt::LeftButton, {}, m_pWindow->Menu()->EntryRect(5).center());
        QVERIFY(!m_pWindow->IsAnswered() && m_pWindow->Menu()->isVisible());
        QCOMPARE(m_pWindow->CurrentPage(), 1);
        QTest::mouseRelease(m_pWindow->Menu(), Qt::LeftButton);
        QTest::mouseClick(m_pWindow.get(), Qt::LeftButton, {}, QPoint(300, 20));
        QVERIFY(!m_pWindow->Menu()->isVisible() && m_pWindow->Tab()->isVisible());
        QTRY_VERIFY(m_pWindow->IsAnswered());
        // A page: shown, and the menu closes.
        m_pWindow->ShowPopupMenu();
        QTest::mouseClick(m_pWindow->Menu(), Qt::LeftButton, {}, m_pWindow->Menu()->EntryRect(4).center());
        QVERIFY(m_pWindow->Params()->isVisible() && !m_pWindow->Menu()->isVisible());
        QCOMPARE(m_pWindow->Params()->geometry(), QRect(QPoint(58, 58), QPoint(761, 541)));
        QVERIFY(!m_pWindow->ProgramList()->isVisible());
    }

    void addressesThatAreNone() {
        m_pWindow = nullptr;
        m_pPeer->answersSerial = false;
        ChooseInterface();
        m_pWindow = std::make_unique<Corvane>();
        for (const char* pAddress : {"...", "999.0.0.1", "256.1.1.1"}) {
            m_pWindow->Params()->SetIp(pAddress);
            const int nBefore = m_pPeer->Count(6);
            m_pWindow->SendState();
            QTest::qWait(50);
            QCOMPARE(m_pPeer->Count(6), nBefore);
        }
        m_pPeer->answersSerial = true;
        m_pWindow->Refresh();
        QTRY_VERIFY(m_pWindow->IsAnswered());
    }
};

QTEST_MAIN(TestActions)
#include "tst_actions.moc"
