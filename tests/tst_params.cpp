#include "app/branding.h"
#include "app/cgetnidlg.h"
#include "tests/remote.h"
#include "widgets/cswitchiconctrl.h"

/// The parameters page, the menu, and what comes before the window: the profile and the choice of a network.
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
        QString sListed;
        for (int i = Servers()->count() - 1; i >= 0; --i) {
            Servers()->setCurrentIndex(i);
            sListed.prepend(' ' + Servers()->itemText(i) + ' ' + m_pPage->GetIp());
        }
        QCOMPARE(sListed, QString(" 10.0.0.5 10.0.0.5 <b>G</b>&amp; 10.0.0.7 Alpha 10.0.0.9 Beta 10.0.0.2 "
                                  "Beta 10.0.0.3 Gamma 10.0.0.1 Server - 10.0.0.4 10.0.0.4"));
        QCOMPARE(refresh.count(), 7);
        // The user's choice stays, whoever answers from now on.
        Servers()->setCurrentIndex(2);
        Wheel(Servers(), {5, 5}, -120);
        m_pPage->AddSerial("", "1.1.1.1");
        m_pPage->UpdateIp();
        QCOMPARE(Servers()->currentText() + ' ' + m_pPage->GetIp(), QString("Alpha 10.0.0.9"));
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
        for (const QString sRow :
             {" open pw opens", "pw locked pw opens", "pw locked PW", "pw locked ", " locked  opens"}) {
            const bool bLocked = sRow.contains("locked");
            const bool bOpens = sRow.endsWith("opens");
            Open(bLocked, sRow.section(' ', 0, 0));
            auto* pLock = m_pPage->findChild<CSwitchCtrl*>();
            QVERIFY(Field(4)->text().isEmpty() && Field(4)->echoMode() == QLineEdit::Normal);
            QVERIFY(m_pPage->IsLocked() == bLocked && Field(0)->isHidden() == bLocked && !pLock->State());
            QTest::keyClicks(Field(4), sRow.section(' ', 2, 2));
            QSignalSpy told(m_pPage.get(), &CParamsCtrl::pwdStateChanged);
            QTest::mouseClick(pLock, Qt::LeftButton);
            QCOMPARE(told, bLocked ? QList<QVariantList>() : QList<QVariantList>({{true}}));
            QVERIFY(pLock->State() == bOpens && m_pPage->IsLocked() != bOpens);
            for (auto* pSwitch : m_pPage->findChildren<CSwitchIconCtrl*>()) {
                QCOMPARE(pSwitch->isVisible(), bOpens);
            }
            QCOMPARE(m_pPage->findChild<QPushButton*>()->isVisible(), bOpens);
            QVERIFY(Servers()->isVisible() && Field(4)->isVisible());
            if (bOpens) {  // switching off again is the user's choice for the next time
                QTest::mouseClick(pLock, Qt::RightButton);
                QCOMPARE(told.last()[0].toBool(), false);
                QTest::mouseClick(pLock, Qt::LeftButton);  // on again, so that locking has to show it off
                m_pPage->Lock();
                QVERIFY(Field(4)->text().isEmpty() && !pLock->State() && Field(3)->isHidden());
            }
        }
        Open(false, "shown");
        QCOMPARE(Field(4)->text(), QString("shown"));
    }

    void switches() {
        m_settings.menuVisible = {true, false, true, false};
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
        QCOMPARE(menu, QList<QVariantList>({{0, false}, {1, true}, {2, false}, {3, true}}));
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

    void branding() {
        Branding branding;
        for (const QByteArray text : {"{", "[]", R"({"type":4})", R"({"type":5,"name":"n","icon":"i"})"}) {
            const QString sPath = WriteFile(m_settings.path, text);
            QVERIFY2(!branding.Load(sPath, 4) && branding.name.isEmpty(), text);
        }
        QVERIFY(!branding.Load(99) && branding.Load(Branding::ApplicationType) && branding.type == 4);
        QVERIFY(branding.androidStore.endsWith("/android") && branding.iosStore.endsWith("/ios"));
    }

    void offeredAddresses() {
        for (const QString sRow :
             {"192.168.0.7 offered", "172.16.1.1 offered", "10.0.0.5 offered", "2.1.1.1 offered",
              "192.299.0.0 offered", "10.1.1.1. offered", "10.07.255.0 offered", "127.0.0.1", "169.254.1.1",
              "8.8.8.8", "fe80::1", "10.0.0", "10.0.0.300", "", "10.0.0.1\n", "110.0.0.1", "::ffff:10.0.0.1",
              "10.0.0.1.1"}) {
            QVERIFY2(IsLightingAddress(sRow.section(' ', 0, 0)) == sRow.contains(' '), qPrintable(sRow));
        }
    }

    void dialog() {
        // A font that does not fit is made smaller, and names that do not are shortened.
        for (const int nPoints : {6, 14, 9}) {
            QApplication::setFont(QFont("Liberation Sans", nPoints));
            CGetNiDlg dialog({{"enx00c0ca123456 of the stage", "10.0.0.5", {}}}, nullptr);
            QVERIFY(dialog.size() == QSize(200, 100) &&
                    dialog.layout()->totalMinimumSize().boundedTo(dialog.size()) ==
                        dialog.layout()->totalMinimumSize());
            QVERIFY(nPoints == 14 || dialog.font().pointSize() == nPoints);
        }
        CGetNiDlg bare({}, nullptr);
        CGetNiDlg full({{"wlx00c0ca123456", "10.0.0.5", "10.0.0.255"}, {"lo", "2.1.1.1", "2.255.255.255"}},
                       nullptr);
        for (const auto& [pDialog, pOffered] :
             {std::pair{&bare, "Auto|Auto|127.0.0.1 Localhost : 127.0.0.1|127.0.0.1| ||"},
              {&full,
               "Auto|Auto|10.0.0.255 wlx00c0ca123456 : 10.0.0.5|10.0.0.5|10.0.0.255 lo : 2.1.1.1|2.1.1.1|"
               "2.255.255.255 Localhost : 127.0.0.1|127.0.0.1|127.0.0.1 ||"}}) {
            auto* pCombo = pDialog->findChild<QComboBox*>();
            QCOMPARE(pCombo->currentIndex(), 0);
            QStringList texts;
            for (int i = 0; i <= pCombo->count(); ++i) {
                pCombo->setCurrentIndex(i < pCombo->count() ? i : -1);
                texts += pCombo->currentText() + '|' + pDialog->GetIp() + '|' + pDialog->GetBroadcast();
            }
            QCOMPARE(texts.join(' '), QString(pOffered));
        }
        QSignalSpy finished(&full, &QDialog::finished);
        for (const auto button : {QDialogButtonBox::Ok, QDialogButtonBox::Cancel}) {
            full.findChild<QDialogButtonBox*>()->button(button)->click();
        }
        QCOMPARE(finished, QList<QVariantList>({{QDialog::Accepted}, {QDialog::Rejected}}));
    }
};

QTEST_MAIN(TestParams)
#include "tst_params.moc"
