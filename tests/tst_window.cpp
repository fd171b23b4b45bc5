#include "tests/peer.h"
#include "tests/remote.h"

/// The frame around the pages: shape, drag, closing, and what is kept for the next time.
class TestWindow : public QObject {
    Q_OBJECT

    static std::unique_ptr<Corvane> Open(const QByteArray& menuVisible = "1|1|1|1") {
        auto pWindow = OpenRemote("MenuVisible=" + menuVisible);
        pWindow->show();
        return pWindow;
    }

private slots:
    void shape() {
        const auto window = Open();
        // The mask takes whole pixels; none may show the light ground behind the picture's smooth edge.
        const QImage shown = window->grab().toImage();
        for (int y = 0; y < shown.height(); ++y) {
            const QRegion row = window->mask() & QRect(0, y, shown.width(), 1);
            QVERIFY2(qGray(shown.pixel(row.boundingRect().topLeft())) < 128, qPrintable(QString::number(y)));
        }
    }

    void firstPage() {
        for (const auto& [pVisible, nPage] :
             {std::pair{"1|1|1|1", 2}, {"0|0|1|0", 2}, {"1|1|0|1", 0}, {"0|1|0|1", 1}, {"0|0|0|0", 4}}) {
            const auto window = Open(pVisible);
            QVERIFY(window->CurrentPage() == nPage && window->Menu()->Selected() == nPage);
            QCOMPARE(window->SceneList()->isVisible(), nPage == 0);
            QCOMPARE(window->ProgramList()->isVisible(), nPage == 1);
            window->OnMenuChanged(6);  // no page: none is left on screen
            QVERIFY(window->childAt(410, 300) == nullptr && window->CurrentPage() == 6);
        }
    }

    void drag() {
        const auto window = Open();
        window->move(100, 100);
        const auto mouse = [&window](QEvent::Type type, const QPoint& onScreen) {
            Mouse(window.get(), type, window->mapFromGlobal(onScreen));
            return window->pos();
        };
        mouse(QEvent::MouseButtonPress, {400, 120});
        QCOMPARE(mouse(QEvent::MouseMove, {430, 160}), QPoint(130, 140));
        QCOMPARE(mouse(QEvent::MouseMove, {429, 160}), QPoint(129, 140));
        mouse(QEvent::MouseButtonRelease, {429, 160});
        mouse(QEvent::MouseMove, {529, 230});
        // Neither the second of two clicks, even on the close button, nor a press on the page takes hold.
        for (const auto& [type, at] : {std::pair{QEvent::MouseButtonDblClick, QPoint(780, 30)},
                                       std::pair{QEvent::MouseButtonPress, QPoint(58, 58)}}) {
            Mouse(window.get(), type, at);
            mouse(QEvent::MouseMove, {600, 400});
        }
        QVERIFY(window->isVisible() && window->pos() == QPoint(129, 140));
    }

    void closing() {
        const QRect button(QPoint(765, 20), QPoint(796, 51));
        for (const QPoint at :
             {QPoint(765, 20), QPoint(796, 51), QPoint(764, 20), QPoint(797, 51), QPoint(796, 52)}) {
            const auto window = Open();
            Click(window.get(), at);
            QCOMPARE(window->isVisible(), !button.contains(at));
        }
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
};

QTEST_MAIN(TestWindow)
#include "tst_window.moc"
