#include "settings/cinifile.h"
#include "widgets/cparamsctrl.h"
#include "widgets/cswitchctrl.h"
#include "widgets/cswitchiconctrl.h"

#include <QComboBox>
#include <QCommandLinkButton>
#include <QDesktopServices>
#include <QLineEdit>
#include <QPushButton>
#include <QtTest>

#include <memory>

class TestParams : public QObject {
    Q_OBJECT

    CIniFile m_settings;
    std::unique_ptr<CParamsCtrl> m_pPage;
    QList<QUrl> m_opened;

    /// The four parts of the address and, behind them, the password.
    QLineEdit* Field(int i) const { return m_pPage->findChildren<QLineEdit*>().value(i); }
    QComboBox* Servers() const { return m_pPage->findChild<QComboBox*>(); }

    void Open(bool bLocked = false, const QString& sPassword = {}, bool bStores = true) {
        m_settings.pwdState = bLocked;
        m_settings.pwdValue = sPassword;
        const StoreLinks stores{"https://a.example/x", "https://b.example/y"};
        m_pPage = std::make_unique<CParamsCtrl>(m_settings, "192.168.0.255",
                                                bStores ? std::make_optional(stores) : std::nullopt, nullptr);
        m_pPage->resize(704, 484);
        m_pPage->show();
    }

private slots:
    void OnUrl(const QUrl& url) { m_opened += url; }

    void init() { Open(); }

    void serverList() {
        QSignalSpy refresh(m_pPage.get(), &CParamsCtrl::refresh);
        m_pPage->UpdateIp();  // no server: the address stays
        for (const QString sServer : {"Beta 10.0.0.2", "Alpha 10.0.0.9", "Gamma 10.0.0.1", "Beta 10.0.0.3",
                                      "Omega 10.0.0.9", "0000 10.0.0.4", "<b>G</b>&amp; 10.0.0.7"}) {
            m_pPage->AddSerial(sServer.section(' ', 0, 0), sServer.section(' ', 1));
            QVERIFY(Servers()->currentIndex() == 0 && m_pPage->GetIp() == "192.168.0.255");
        }
        m_pPage->UpdateIp();
        QCOMPARE(m_pPage->GetIp(), QString("10.0.0.7"));
        m_pPage->AddSerial("", "10.0.0.5");  // no name: its address is shown at once
        QCOMPARE(m_pPage->GetIp(), QString("10.0.0.5"));
        QCOMPARE(refresh.count(), 0);
        QStringList listed;
        for (int i = Servers()->count() - 1; i >= 0; --i) {
            Servers()->setCurrentIndex(i);
            listed.prepend(Servers()->itemText(i) + " " + m_pPage->GetIp());
        }
        QCOMPARE(listed, QStringList({"10.0.0.5 10.0.0.5", "<b>G</b>&amp; 10.0.0.7", "Alpha 10.0.0.9",
                                      "Beta 10.0.0.2", "Beta 10.0.0.3", "Gamma 10.0.0.1",
                                      "Server - 10.0.0.4 10.0.0.4"}));
        QCOMPARE(refresh.count(), 7);
        // The user's choice stays, whoever answers from now on.
        Servers()->setCurrentIndex(2);
        m_pPage->AddSerial("", "1.1.1.1");
        QCOMPARE(Servers()->currentText() + ' ' + m_pPage->GetIp(), QString("Alpha 10.0.0.9"));
        m_pPage->UpdateIp();
        QCOMPARE(m_pPage->GetIp(), QString("10.0.0.9"));
    }

    void addressFields() {
        m_pPage->SetIp("1.2.3.4");
        m_pPage->SetIp("10.0.1");
        m_pPage->SetIp("");
        QCOMPARE(m_pPage->GetIp(), QString("10.0.1.4"));
        Field(0)->clear();
        QTest::keyClicks(Field(3), "a9");
        Field(3)->setText("999");
        QCOMPARE(m_pPage->GetIp(), QString(".0.1.999"));
        QSignalSpy refresh(m_pPage.get(), &CParamsCtrl::refresh);
        QTest::mousePress(m_pPage->findChild<QPushButton*>(), Qt::LeftButton);
        QCOMPARE(refresh.count(), 1);
    }

    void lockFlows() {
        // What is stored, whether the page is locked, what is typed, whether a press on the lock opens it.
        for (const auto& [pStored, bLocked, pTyped, bOpens] : {std::tuple{"", false, "pw", true},
                                                               {"pw", true, "pw", true},
                                                               {"pw", true, "PW", false},
                                                               {"pw", true, "", false},
                                                               {"", true, "", true}}) {
            Open(bLocked, pStored);
            auto* pLock = m_pPage->findChild<CSwitchCtrl*>();
            QVERIFY(Field(4)->text().isEmpty() && Field(4)->echoMode() == QLineEdit::Normal);
            QVERIFY(m_pPage->IsLocked() == bLocked && Field(0)->isHidden() == bLocked && !pLock->State());
            QTest::keyClicks(Field(4), pTyped);
            QSignalSpy told(m_pPage.get(), &CParamsCtrl::pwdStateChanged);
            QTest::mouseClick(pLock, Qt::LeftButton);
            QCOMPARE(told, bLocked ? QList<QVariantList>() : QList<QVariantList>({{true}}));
            QVERIFY(pLock->State() == bOpens && m_pPage->IsLocked() != bOpens);
            for (auto* pSwitch : m_pPage->findChildren<CSwitchIconCtrl*>()) {
                QCOMPARE(pSwitch->isVisible(), bOpens);
            }
            QVERIFY(m_pPage->findChild<QPushButton*>()->isVisible() == bOpens);
            QVERIFY(Servers()->isVisible() && Field(4)->isVisible());
            if (bOpens) {  // switching off again is the user's choice for the next time
                QTest::mouseClick(pLock, Qt::RightButton);
                QCOMPARE(told.last()[0].toBool(), false);
                m_pPage->Lock();
                QVERIFY(Field(4)->text().isEmpty() && !pLock->State() && Field(3)->isHidden());
            }
        }
        Open(false, "shown");
        QCOMPARE(Field(4)->text(), QString("shown"));
    }

    void switches() {
        m_settings.menuVisible = {true, false, true, true};
        m_settings.sceneParams = {true, true, false};
        Open();
        QSignalSpy menu(m_pPage.get(), &CParamsCtrl::showMenu);
        QSignalSpy params(m_pPage.get(), &CParamsCtrl::enableParam);
        QSignalSpy presses(m_pPage.get(), &CParamsCtrl::mousePressed);
        for (auto* pSwitch : m_pPage->findChildren<CSwitchIconCtrl*>()) {
            QVERIFY(!pSwitch->toolTip().isEmpty() && !pSwitch->accessibleName().isEmpty());
            const QImage before = pSwitch->grab().toImage();
            for (const QPoint at : {QPoint(249, 10), QPoint(260, 26), QPoint(319, 25)}) {
                QVERIFY(pSwitch->grab().toImage() == before);
                QTest::mouseClick(pSwitch, Qt::MiddleButton, {}, at);
            }
            QVERIFY(pSwitch->grab().toImage() != before);
        }
        QCOMPARE(menu, QList<QVariantList>({{0, false}, {1, true}, {2, false}, {3, false}}));
        QCOMPARE(params, QList<QVariantList>({{0, false}, {1, false}, {2, true}}));
        QCOMPARE(presses.count(), 14);  // what misses a switch reaches the page
    }

    void stores() {
        QDesktopServices::setUrlHandler("https", this, "OnUrl");
        for (auto* pButton : m_pPage->findChildren<QCommandLinkButton*>()) {
            QTest::mousePress(pButton, Qt::LeftButton);
        }
        QCOMPARE(m_opened, QList<QUrl>({QUrl("https://a.example/x"), QUrl("https://b.example/y")}));
        QDesktopServices::unsetUrlHandler("https");
        Open(false, {}, false);
        QVERIFY(m_pPage->findChildren<QCommandLinkButton*>().isEmpty());
    }
};

QTEST_MAIN(TestParams)
#include "tst_cparamsctrl.moc"
