#include "app/cgetnidlg.h"
#include "app/language.h"
#include "app/look.h"
#include "tests/remote.h"
#include "widgets/fonts.h"

/// The program in each of its languages: nothing left in English, nothing cut off.
class TestTranslations : public QObject {
    Q_OBJECT

    const QStringList m_languages{"de", "fr", "es", "it"};
    QStringList m_texts;

    /// Notes what it has no text for. Without a translation it marks each text, so that one which never
    /// passes here is found.
    struct Recorder : QTranslator {
        mutable QStringList missed;

        bool isEmpty() const override { return false; }
        QString translate(const char* pContext, const char* pSource, const char* pComment,
                          int n) const override {
            const QString sText = filePath().isEmpty()
                                      ? QString("§") + pSource
                                      : QTranslator::translate(pContext, pSource, pComment, n);
            missed += sText.isEmpty() ? QStringList(pSource) : QStringList();
            return sText;
        }
    };

    /// Takes down what a window says, and looks whether each of its texts has its room.
    void Read(QWidget* pWindow) {
        QCoreApplication::processEvents();
        Listen(QAccessible::queryAccessibleInterface(pWindow));
        // These are as wide as the layout says, whatever they hold.
        const QRegularExpression fixed("LineEdit|CommandLink");
        const auto widgets = pWindow->findChildren<QWidget*>() << pWindow;
        for (const QWidget* pWidget : widgets) {
            const QString sText =
                pWidget->property("text").toString() + pWidget->property("currentText").toString();
            const bool bFixed = QString(pWidget->metaObject()->className()).contains(fixed);
            const bool bRoom = pWidget->size().expandedTo(pWidget->minimumSizeHint()) == pWidget->size();
            QVERIFY2(bRoom || bFixed || sText.isEmpty() || !pWidget->isVisible(), qPrintable(sText));
        }
    }

    void Listen(QAccessibleInterface* pAccess) {
        m_texts << pAccess->text(QAccessible::Name) << pAccess->text(QAccessible::Description);
        for (int i = 0; i < pAccess->childCount(); ++i) {
            Listen(pAccess->child(i));
        }
    }

    template <typename Dialog>
    void ReadNext() {
        OnNext<Dialog>([this](Dialog* pDialog) {
            Read(pDialog);
            pDialog->reject();
        });
    }

    /// All that the program shows.
    void ReadProgram() {
        CGetNiDlg dialog({{"0", "10.0.0.5", {}}}, nullptr);
        dialog.show();
        Read(&dialog);
        const auto window = OpenRemote();
        window->SceneList()->Update({{"W", 1, 0, 0, false}, {"", 2, -1, 0, true}}, {});
        window->Params()->AddSerial("0000", "10.0.0.5");
        for (const int iPage : {0, 1, 2, 3, 4, 2, 3}) {
            window->OnMenuChanged(iPage);
            Read(window.get());
            if (iPage == 4) {
                window->Picker()->SwitchCmdMode();
                window->ShowPopupMenu();
            }
        }
        Click(window->Grid(), window->Grid()->CellRect(0).center());
        Read(window.get());
        const int nOff =
            QFontMetrics(fonts::Bold("Arial", 16)).horizontalAdvance(window->Grid()->Part(5).value);
        QVERIFY(nOff <= window->Grid()->CellRect(0).width() - 12);

        window->OnMenuChanged(0);
        QTimer::singleShot(50, this, [this] {
            QWidget* pMenu = QApplication::activePopupWidget();
            Read(pMenu);
            pMenu->close();
        });
        QTest::mouseClick(window->SceneList(), Qt::RightButton, {}, QPoint(20, 20));
        ReadNext<QInputDialog>();
        window->SceneList()->OnRename();
        ReadNext<QColorDialog>();
        window->SceneList()->OnColor();
        ReadNext<QMessageBox>();
        const auto nTexts = m_texts.size();
        window->ReadData(R"({"typ":2})", "10.0.0.5");
        QTRY_VERIFY(m_texts.size() > nTexts);
        Read(QLineEdit(window.get()).createStandardContextMenu());
    }

private slots:
    void initTestCase() {
        ApplyLook();
        QApplication::setFont(QFont("Sans", 9));
        QApplication::setApplicationDisplayName("C");
    }

    void pages() {
        for (const QString& sLanguage : QStringList("") + m_languages) {
            Recorder recorder;
            QVERIFY(sLanguage.isEmpty() || recorder.load(TranslationFor({sLanguage})));
            QCoreApplication::installTranslator(&recorder);
            m_texts.clear();
            ReadProgram();
            QCoreApplication::removeTranslator(&recorder);
            const QRegularExpression unmarked("^[^§]*[a-z]{2}[^§]*$");
            const QStringList wrong = (sLanguage.isEmpty() ? m_texts : recorder.missed).filter(unmarked);
            QVERIFY2(wrong.isEmpty(), qPrintable(sLanguage + ": " + wrong.join("; ")));
        }
    }

    void choice() {
        for (const QString sCase : {"de-AT>de", "pt-BR es>es", "fr>fr", "en-GB de>", "C>", "ja>", ">"}) {
            const QString sPath = TranslationFor(sCase.section('>', 0, 0).split(' '));
            QCOMPARE(sPath.section('/', -1).section('.', 0, 0), sCase.section('>', 1));
        }
    }
};

QTEST_MAIN(TestTranslations)
#include "tst_translations.moc"
