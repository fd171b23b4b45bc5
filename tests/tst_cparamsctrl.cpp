#include "settings/cinifile.h"
#include "widgets/cparamsctrl.h"
#include "widgets/cswitchctrl.h"
#include "widgets/cswitchiconctrl.h"

#include <QComboBox>
#include <QCommandLinkButton>
#include <QDesktopServices>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QtTest>

#include <memory>

class TestParams : public QObject {
    Q_OBJECT

    CIniFile m_settings;
    std::unique_ptr<CParamsCtrl> m_pPage;
    QUrl m_opened;

    QList<QLineEdit*> Fields() const {
        QList<QLineEdit*> fields;
        for (auto* pEdit : m_pPage->findChildren<QLineEdit*>()) {
            if (pEdit->inputMask() == "000") {
                fields += pEdit;
            }
        }
        return fields;
    }

    QLineEdit* Password() const {
        const auto edits = m_pPage->findChildren<QLineEdit*>();
        return *std::find_if(edits.begin(), edits.end(),
                             [](auto* pEdit) { return pEdit->inputMask().isEmpty(); });
    }

    CSwitchCtrl* LockSwitch() const {
        const auto switches = m_pPage->findChildren<CSwitchCtrl*>();
        return *std::find_if(switches.begin(), switches.end(), [](auto* p) { return p->width() == 70; });
    }

    void Open(bool bLocked, const QString& sPassword, bool bStores = true) {
        m_settings.pwdState = bLocked;
        m_settings.pwdValue = sPassword;
        m_pPage = std::make_unique<CParamsCtrl>(
            m_settings, "192.168.0.255",
            bStores ? std::make_optional(StoreLinks{"https://a.example/x", "https://b.example/y"})
                    : std::nullopt,
            nullptr);
        m_pPage->resize(704, 484);
        m_pPage->show();
    }

private slots:
    void OnUrl(const QUrl& url) { m_opened = url; }

    void init() { Open(false, ""); }

    void serverList() {
        QSignalSpy refresh(m_pPage.get(), &CParamsCtrl::refresh);
        auto* pCombo = m_pPage->findChild<QComboBox*>();
        QCOMPARE(m_pPage->GetIp(), QString("192.168.0.255"));
        m_pPage->UpdateIp();  // no server: the address stays
        QCOMPARE(m_pPage->GetIp(), QString("192.168.0.255"));
        for (const auto& [sSerial, sAddress] :
             {std::pair{"Beta", "10.0.0.2"}, std::pair{"Alpha", "10.0.0.3"},
              std::pair{"<b>G</b>&amp;", "10.0.0.4"}, std::pair{"Beta", "10.0.0.2"}}) {
            m_pPage->AddSerial(sSerial, sAddress);
            QCOMPARE(pCombo->currentIndex(), 0);
        }
        QCOMPARE(refresh.count(), 0);
        QCOMPARE(pCombo->count(), 3);
        QCOMPARE(pCombo->itemText(0), QString("<b>G</b>&amp;"));  // as it came, and shown as plain text
        QCOMPARE(pCombo->itemText(1), QString("Alpha"));
        QCOMPARE(m_pPage->GetIp(), QString("192.168.0.255"));
        m_pPage->UpdateIp();
        QCOMPARE(m_pPage->GetIp(), QString("10.0.0.4"));
        m_pPage->AddSerial("", "10.0.0.9");  // no name: its address is shown at once
        QCOMPARE(m_pPage->GetIp(), QString("10.0.0.9"));
        QCOMPARE(refresh.count(), 0);
        pCombo->setCurrentIndex(3);
        QCOMPARE(m_pPage->GetIp(), QString("10.0.0.2"));
        QCOMPARE(refresh.count(), 1);
    }

    void addressFields() {
        QCOMPARE(Fields().size(), 4);
        m_pPage->SetIp("1.2.3.4");
        m_pPage->SetIp("10.0.1");
        QCOMPARE(m_pPage->GetIp(), QString("10.0.1.4"));
        Fields()[0]->clear();
        QTest::keyClicks(Fields()[3], "a9");
        Fields()[3]->setText("999");
        QCOMPARE(m_pPage->GetIp(), QString(".0.1.999"));
        QSignalSpy refresh(m_pPage.get(), &CParamsCtrl::refresh);
        QTest::mousePress(m_pPage->findChild<QPushButton*>(), Qt::LeftButton);
        QCOMPARE(refresh.count(), 1);
    }

    void lockFlows_data() {
        QTest::addColumn<bool>("locked");
        QTest::addColumn<QString>("stored");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<bool>("opens");
        QTest::addColumn<bool>("switchOn");
        QTest::addColumn<int>("told");  // -1 nothing, else the state to be saved
        QTest::newRow("unlocked, lock switched on: locks next time") << false << ""
                                                                     << "pw" << true << true << 1;
        QTest::newRow("locked, right password") << true << "pw"
                                                << "pw" << true << true << -1;
        QTest::newRow("locked, wrong password") << true << "pw"
                                                << "PW" << false << false << -1;
        QTest::newRow("locked, no password typed") << true << "pw"
                                                   << "" << false << false << -1;
        QTest::newRow("locked with an empty password") << true << ""
                                                       << "" << true << true << -1;
    }

    void lockFlows() {
        QFETCH(bool, locked);
        QFETCH(QString, stored);
        QFETCH(QString, typed);
        QFETCH(bool, opens);
        Open(locked, stored);
        QCOMPARE(Password()->text(), locked ? QString() : stored);
        QCOMPARE(Password()->echoMode(), QLineEdit::Normal);
        QCOMPARE(m_pPage->IsLocked(), locked);
        QCOMPARE(Fields()[0]->isHidden(), locked);
        QTest::keyClicks(Password(), typed);
        QSignalSpy told(m_pPage.get(), &CParamsCtrl::pwdStateChanged);
        QTest::mouseClick(LockSwitch(), Qt::LeftButton);
        QTEST(LockSwitch()->State(), "switchOn");
        QTEST(told.isEmpty() ? -1 : told[0][0].toInt(), "told");
        QCOMPARE(m_pPage->IsLocked(), !opens);
        for (auto* pSwitch : m_pPage->findChildren<CSwitchIconCtrl*>()) {
            QCOMPARE(pSwitch->isVisible(), opens);
        }
        QCOMPARE(m_pPage->findChild<QPushButton*>()->isVisible(), opens);
        QVERIFY(m_pPage->findChild<QComboBox*>()->isVisible() && Password()->isVisible());
        if (opens) {  // switching off again is the user's choice for the next time
            QTest::mouseClick(LockSwitch(), Qt::RightButton);
            QCOMPARE(told.last()[0].toBool(), false);
            m_pPage->Lock();
            QVERIFY(Password()->text().isEmpty() && !LockSwitch()->State() && Fields()[3]->isHidden());
        }
    }

    void switches() {
        m_settings.menuVisible = {true, false, true, true};
        m_settings.sceneParams = {true, true, false};
        Open(false, "");
        const auto switches = m_pPage->findChildren<CSwitchIconCtrl*>();
        QCOMPARE(switches.size(), 7);
        QStringList told;
        connect(m_pPage.get(), &CParamsCtrl::showMenu,
                [&told](int i, bool b) { told += QString("menu %1 %2").arg(i).arg(b); });
        connect(m_pPage.get(), &CParamsCtrl::enableParam,
                [&told](int i, bool b) { told += QString("param %1 %2").arg(i).arg(b); });
        QSignalSpy presses(m_pPage.get(), &CParamsCtrl::mousePressed);
        for (auto* pSwitch : switches) {
            QCOMPARE(pSwitch->size(), QSize(320, 32));
            QVERIFY(!pSwitch->toolTip().isEmpty() && !pSwitch->accessibleName().isEmpty());
            for (const QPoint off : {QPoint(20, 10), QPoint(249, 10), QPoint(260, 26)}) {
                QTest::mouseClick(pSwitch, Qt::LeftButton, {}, off);
            }
            QTest::mouseClick(pSwitch, Qt::MiddleButton, {}, QPoint(319, 25));
        }
        QCOMPARE(told, QStringList({"menu 0 0", "menu 1 1", "menu 2 0", "menu 3 0", "param 0 0", "param 1 0",
                                    "param 2 1"}));
        QCOMPARE(presses.count(), 21);  // what misses a switch reaches the page
        // The picture shows the state.
        const QImage on = switches[1]->grab().toImage();
        const QImage off = switches[0]->grab().toImage();
        QVERIFY(on.pixelColor(258, 13) != off.pixelColor(258, 13) ||
                on.pixelColor(312, 13) != off.pixelColor(312, 13));
    }

    void stores() {
        QDesktopServices::setUrlHandler("https", this, "OnUrl");
        const auto buttons = m_pPage->findChildren<QCommandLinkButton*>();
        QCOMPARE(buttons.size(), 2);
        QTest::mousePress(buttons[0], Qt::LeftButton);
        QCOMPARE(m_opened, QUrl("https://a.example/x"));
        QTest::mousePress(buttons[1], Qt::LeftButton);
        QCOMPARE(m_opened, QUrl("https://b.example/y"));
        QDesktopServices::unsetUrlHandler("https");
        Open(false, "", false);
        QVERIFY(m_pPage->findChildren<QCommandLinkButton*>().isEmpty());
    }

    void tabOrder() {
        QStringList order;
        QWidget* pFirst = m_pPage->findChild<QComboBox*>();
        pFirst->setFocus();
        for (QWidget* p = pFirst; order.size() < 7; p = p->nextInFocusChain()) {
            if ((p->focusPolicy() & Qt::TabFocus) != 0 && p->window() == m_pPage.get() &&
                p->focusProxy() == nullptr) {
                QVERIFY2(!p->accessibleName().isEmpty(), p->metaObject()->className());
                order += p->accessibleName().section(',', -1).trimmed();
            }
        }
        QCOMPARE(order, QStringList({"Server", "part 1 of 4", "part 2 of 4", "part 3 of 4", "part 4 of 4",
                                     "Connect again", "Password of this page"}));
    }
};

QTEST_MAIN(TestParams)
#include "tst_cparamsctrl.moc"
