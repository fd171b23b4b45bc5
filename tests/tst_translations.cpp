#include "app/cgetnidlg.h"
#include "app/language.h"
#include "app/look.h"
#include "tests/remote.h"
#include "widgets/fonts.h"

#include <QColorDialog>
#include <QDirIterator>
#include <QInputDialog>
#include <QMenu>
#include <QMessageBox>
#include <QTranslator>

/// The program in each of its languages: nothing left in English, nothing cut off.
class TestTranslations : public QObject {
    Q_OBJECT

    /// Notes what it has no text for. Without a translation it marks each text, so that one which never
    /// passes here is found.
    class Recorder : public QTranslator {
    public:
        static constexpr auto Mark = "\u00a7";
        mutable QStringList missed;

        bool isEmpty() const override { return false; }
        QString translate(const char* pContext, const char* pSource, const char* pComment,
                          int n) const override {
            if (filePath().isEmpty()) {
                return Mark + QString(pSource);
            }
            const QString sText = QTranslator::translate(pContext, pSource, pComment, n);
            if (sText.isEmpty() && QString(pSource).contains(QRegularExpression("[a-z]{2}"))) {
                missed += QString("%1: %2").arg(pContext, pSource);
            }
            return sText;
        }
    };

    QStringList m_texts;

    /// Takes down what a window says, and looks whether each of its texts has its room.
    void Read(QWidget* pWindow) {
        QCoreApplication::processEvents();
        Listen(QAccessible::queryAccessibleInterface(pWindow));
        // These are as wide as the layout says, whatever they hold.
        const QRegularExpression fixed("LineEdit|CommandLink");
        const auto widgets = pWindow->findChildren<QWidget*>() << pWindow;
        for (const QWidget* pWidget : widgets) {
            m_texts << pWidget->toolTip() << pWidget->windowTitle();
            for (const QAction* pAction : pWidget->actions()) {
                m_texts += pAction->text();
            }
            const QString sText =
                pWidget->property("text").toString() + pWidget->property("currentText").toString();
            if (!sText.isEmpty() && pWidget->isVisible() &&
                !QString(pWidget->metaObject()->className()).contains(fixed)) {
                QVERIFY2(pWidget->size().expandedTo(pWidget->minimumSizeHint()) == pWidget->size(),
                         qPrintable(sText));
            }
        }
    }

    void Listen(QAccessibleInterface* pAccess) {
        m_texts += pAccess->text(QAccessible::Name);
        m_texts += pAccess->text(QAccessible::Description);
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
        window->show();
        for (const int iPage : {0, 1, 2, 3, 4}) {
            window->OnMenuChanged(iPage);
            Read(window.get());
        }
        window->Picker()->SwitchCmdMode();
        window->ShowPopupMenu();
        window->OnMenuChanged(2);
        Read(window.get());
        window->OnMenuChanged(3);
        QTest::mouseClick(window->Grid(), Qt::LeftButton, {}, window->Grid()->CellRect(0).center());
        Read(window.get());
        const QFontMetrics cellMetrics(fonts::Bold("Arial", 16));
        const QString sOff = window->Grid()->Part(5).value;
        QVERIFY(cellMetrics.horizontalAdvance(sOff) <= window->Grid()->CellRect(0).width() - 12);

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

    /// The texts of a file with their translations; one that is not finished is empty.
    static QMap<QString, QString> Texts(const QString& sPath) {
        QFile file(sPath);
        file.open(QIODevice::ReadOnly);
        const QRegularExpression message("<source>(.*?)</source>.*?<translation(.*?)</translation>",
                                         QRegularExpression::DotMatchesEverythingOption);
        QMap<QString, QString> texts;
        auto it = message.globalMatch(QString::fromUtf8(file.readAll()).replace("&quot;", "\""));
        while (it.hasNext()) {
            const auto found = it.next();
            texts[found.captured(1)] = found.captured(2).section('>', 1);
        }
        return texts;
    }

private slots:
    void initTestCase() {
        ApplyLook();
        QApplication::setFont(QFont("Sans", 9));
        QApplication::setApplicationDisplayName("C");
    }

    void pages_data() {
        QTest::addColumn<QString>("language");
        for (const char* pLanguage : {"", "de", "fr", "es", "it"}) {
            QTest::newRow(pLanguage) << QString(pLanguage);
        }
    }

    void pages() {
        QFETCH(QString, language);
        Recorder recorder;
        QVERIFY(language.isEmpty() || recorder.load(TranslationFor({language})));
        QCoreApplication::installTranslator(&recorder);
        m_texts.clear();
        ReadProgram();
        QCoreApplication::removeTranslator(&recorder);
        QCOMPARE(recorder.missed.join("; "), QString());
        if (language.isEmpty()) {
            const QStringList words =
                m_texts.filter(QRegularExpression("[a-z]{2}")).filter(QRegularExpression("^((?!\u00a7).)*$"));
            QCOMPARE(words.join("; "), QString());
        }
    }

    void everyTextIsFinished() {
        QStringList sources;
        const QRegularExpression call("\\btr\\(\\s*\"((?:[^\"\\\\]|\\\\.)*)\"");
        for (const QString sFolder : {"/app", "/widgets"}) {
            for (QDirIterator it(SOURCE_FOLDER + sFolder, {"*.cpp"}); it.hasNext();) {
                QFile file(it.next());
                QVERIFY(file.open(QIODevice::ReadOnly));
                auto found = call.globalMatch(file.readAll());
                while (found.hasNext()) {
                    sources += found.next().captured(1);
                }
            }
        }
        QVERIFY(sources.size() > 60);
        const QString sFolder = SOURCE_FOLDER "/resources/translations/";
        for (const QString sLanguage : {"de", "fr", "es", "it"}) {
            const auto own = Texts(sFolder + "corvane_" + sLanguage + ".ts");
            for (const QString& sSource : sources) {
                QVERIFY2(!own[sSource].isEmpty(), qPrintable(sLanguage + ": " + sSource));
                QCOMPARE(own[sSource].count('%'), sSource.count('%'));
            }
            const auto ofQt = Texts(sFolder + "qt_" + sLanguage + ".ts");
            QCOMPARE(ofQt.keys(), Texts(sFolder + "qt_de.ts").keys());
            QVERIFY(!ofQt.values().contains(QString()));
        }
    }

    void choice() {
        for (const auto& [sWanted, sLanguage] : {std::pair{"de-AT", "de"},
                                                 {"pt-BR es", "es"},
                                                 {"fr", "fr"},
                                                 {"en-GB de", ""},
                                                 {"C", ""},
                                                 {"ja", ""},
                                                 {"", ""}}) {
            QCOMPARE(TranslationFor(QString(sWanted).split(' ')).section('/', -1).section('.', 0, 0),
                     QString(sLanguage));
        }
    }
};

QTEST_MAIN(TestTranslations)
#include "tst_translations.moc"
