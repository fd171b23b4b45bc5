#include "app/branding.h"
#include "app/cgetnidlg.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QPushButton>
#include <QTemporaryFile>
#include <QtTest>

/// What comes before the window: the profile and the choice of a network.
class TestStartup : public QObject {
    Q_OBJECT

private slots:
    void branding() {
        Branding branding;
        QVERIFY(!branding.Load(99));
        for (const QByteArray text : {"{", "[]", R"({"type":4})", R"({"type":5,"name":"n","icon":"i"})"}) {
            QTemporaryFile file;
            QVERIFY(file.open() && file.write(text) == text.size() && file.flush());
            QVERIFY2(!branding.Load(file.fileName(), 4) && branding.name.isEmpty(), text);
        }
        QVERIFY(branding.Load(Branding::ApplicationType));
        QVERIFY(branding.type == 4 && branding.type != Branding::TypeWithoutStores);
        QVERIFY(branding.androidStore.endsWith("/android") && branding.iosStore.endsWith("/ios"));
    }

    void offeredAddresses() {
        for (const char* pText : {"192.168.0.7", "172.16.1.1", "10.0.0.5", "2.1.1.1", "192.299.0.0",
                                  "10.1.1.1.", "10.07.255.0"}) {
            QVERIFY2(IsLightingAddress(pText), pText);
        }
        for (const char* pText : {"127.0.0.1", "169.254.1.1", "8.8.8.8", "fe80::1", "10.0.0", "10.0.0.300",
                                  "", "10.0.0.1\n", "110.0.0.1", "::ffff:10.0.0.1", "10.0.0.1.1"}) {
            QVERIFY2(!IsLightingAddress(pText), pText);
        }
    }

    void dialog() {
        CGetNiDlg bare({}, nullptr);
        CGetNiDlg full({{"eth0", "10.0.0.5", "10.0.0.255"}, {"eth0", "2.1.1.1", "2.255.255.255"}}, nullptr);
        const QString sFull =
            "Auto|Auto|10.0.0.255 eth0 : 10.0.0.5|10.0.0.5|10.0.0.255 "
            "eth0 : 2.1.1.1|2.1.1.1|2.255.255.255 Localhost : 127.0.0.1|127.0.0.1|127.0.0.1 ||";
        for (const auto& [pDialog, sOffered] :
             {std::pair{&bare, QString("Auto|Auto|127.0.0.1 Localhost : 127.0.0.1|127.0.0.1| ||")},
              {&full, sFull}}) {
            auto* pCombo = pDialog->findChild<QComboBox*>();
            QCOMPARE(pCombo->currentIndex(), 0);
            QStringList texts;
            for (int i = 0; i <= pCombo->count(); ++i) {
                pCombo->setCurrentIndex(i < pCombo->count() ? i : -1);
                texts += pCombo->currentText() + '|' + pDialog->GetIp() + '|' + pDialog->GetBroadcast();
            }
            QCOMPARE(texts.join(' '), sOffered);
        }
        QSignalSpy finished(&full, &QDialog::finished);
        for (const auto button : {QDialogButtonBox::Ok, QDialogButtonBox::Cancel}) {
            full.findChild<QDialogButtonBox*>()->button(button)->click();
        }
        QCOMPARE(finished, QList<QVariantList>({{QDialog::Accepted}, {QDialog::Rejected}}));
    }

    /// The dialog grows with what it holds.
    void dialogSize() {
        const QFont font = QApplication::font();
        for (const auto& [nPoints, sName] : {std::pair{9, "lo"}, {9, "wlx00c0ca123456"}, {18, "lo"}}) {
            QApplication::setFont(QFont(font.family(), nPoints));
            CGetNiDlg dialog({{sName, "192.168.178.100", {}}}, nullptr);
            dialog.show();
            for (const auto* pPart : dialog.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
                QCOMPARE(pPart->size().expandedTo(pPart->sizeHint()), pPart->size());
            }
            QCOMPARE(dialog.size() == QSize(200, 100), nPoints == 9 && sName == QString("lo"));
        }
        QApplication::setFont(font);
    }
};

QTEST_MAIN(TestStartup)
#include "tst_startup.moc"
