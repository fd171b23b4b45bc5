#include "app/corvane.h"
#include "tests/peer.h"
#include "tests/support.h"
#include "widgets/cscenelist.h"

#include <QtTest>

#include <memory>

/// The frame around the pages: shape, drag, closing, and what is kept for the next time.
class TestWindow : public QObject {
    Q_OBJECT

    QString m_sSettings;

    std::unique_ptr<Corvane> Open(const QByteArray& settings = {}) {
        QFile file(m_sSettings);
        if (!file.open(QIODevice::WriteOnly)) {
            qFatal("no settings file");
        }
        file.write(settings);
        file.close();
        ChooseInterface();
        auto pWindow = std::make_unique<Corvane>();
        pWindow->show();
        return pWindow;
    }

private slots:
    void init() { m_sSettings = QCoreApplication::applicationDirPath() + "/Corvane.ini"; }
    void cleanupTestCase() { QFile::remove(m_sSettings); }

    void shape() {
        const auto window = Open("MenuVisible=1|1|0|1");
        QCOMPARE(window->size(), QSize(820, 600));
        QVERIFY(window->windowTitle().isEmpty());
        QVERIFY(!window->mask().contains(QPoint(0, 0)));
        QVERIFY(window->mask().contains(QPoint(410, 1)));
        QCOMPARE(window->SceneList()->window(), window.get());
        const QRect page(window->SceneList()->parentWidget()->mapTo(window.get(), QPoint()),
                         window->SceneList()->parentWidget()->size());
        QCOMPARE(page, QRect(QPoint(58, 58), QPoint(761, 541)));
    }

    void firstPage_data() {
        QTest::addColumn<int>("page");
        QTest::newRow("1|1|1|1") << 2;
        QTest::newRow("0|0|1|0") << 2;
        QTest::newRow("1|1|0|1") << 0;
        QTest::newRow("0|1|0|1") << 1;
        QTest::newRow("0|0|0|0") << 4;
    }

    void firstPage() {
        QFETCH(int, page);
        const auto window = Open(QByteArray("MenuVisible=") + QTest::currentDataTag());
        QCOMPARE(window->CurrentPage(), page);
        QCOMPARE(window->SceneList()->isVisible(), page == 0);
        QCOMPARE(window->ProgramList()->isVisible(), page == 1);
    }

    void drag() {
        const auto window = Open();
        window->move(100, 100);
        const auto mouse = [&window](QEvent::Type type, const QPoint& at, const QPoint& onScreen) {
            QMouseEvent event(type, at, onScreen, Qt::LeftButton, Qt::LeftButton, {});
            QCoreApplication::sendEvent(window.get(), &event);
        };
        const QPoint pressed = window->mapToGlobal({300, 20});
        mouse(QEvent::MouseButtonPress, {300, 20}, pressed);
        mouse(QEvent::MouseMove, {330, 60}, pressed + QPoint(30, 40));
        QCOMPARE(window->pos(), QPoint(130, 140));
        mouse(QEvent::MouseMove, {299, 20}, pressed + QPoint(29, 40));
        QCOMPARE(window->pos(), QPoint(129, 140));
        mouse(QEvent::MouseButtonRelease, {300, 20}, pressed + QPoint(29, 40));
        mouse(QEvent::MouseMove, {400, 90}, pressed + QPoint(129, 110));
        // Neither the second of two clicks, even on the close button, nor a press on the page takes hold.
        for (const auto& [type, at] : {std::pair{QEvent::MouseButtonDblClick, QPoint(780, 30)},
                                       std::pair{QEvent::MouseButtonPress, QPoint(58, 58)}}) {
            mouse(type, at, window->mapToGlobal(at));
            mouse(QEvent::MouseMove, {500, 300}, window->mapToGlobal({500, 300}));
        }
        QCOMPARE(window->pos(), QPoint(129, 140));
        QVERIFY(window->isVisible());
    }

    void closing_data() {
        QTest::addColumn<QPoint>("at");
        QTest::addColumn<bool>("closes");
        QTest::newRow("first pixel") << QPoint(765, 20) << true;
        QTest::newRow("last pixel") << QPoint(796, 51) << true;
        QTest::newRow("left of it") << QPoint(764, 20) << false;
        QTest::newRow("below it") << QPoint(796, 52) << false;
    }

    void closing() {
        QFETCH(QPoint, at);
        const auto window = Open();
        QTest::mouseClick(window.get(), Qt::LeftButton, {}, at);
        QTEST(!window->isVisible(), "closes");
    }

    void escapeSaysGoodbyeOnce() {
        Peer peer;
        const auto window = Open();
        QTRY_VERIFY(window->IsAnswered());
        QKeyEvent repeated(QEvent::KeyPress, Qt::Key_Escape, {}, QString(), true);
        QCoreApplication::sendEvent(window.get(), &repeated);
        QTest::keyClick(window.get(), Qt::Key_A);
        QVERIFY(window->isVisible());
        QTest::keyClick(window.get(), Qt::Key_Escape);
        QVERIFY(!window->isVisible());
        QTRY_COMPARE(peer.Count(3), 1);
    }

    void lostSign() {
        const auto window = Open();
        const QRect sign(QPoint(385, 4), QPoint(434, 53));
        const QImage calm = window->grab(sign).toImage();
        QTRY_VERIFY_WITH_TIMEOUT(window->IsConnectionLost(), 7000);
        QVERIFY(window->grab(sign).toImage() != calm);
        window->Refresh();
        QVERIFY(window->grab(sign).toImage() == calm);
    }
};

QTEST_MAIN(TestWindow)
#include "tst_window.moc"
