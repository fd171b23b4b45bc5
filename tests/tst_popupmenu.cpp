#include "app/cpopupmenu.h"
#include "tests/support.h"

#include <memory>

class TestPopupMenu : public QObject {
    Q_OBJECT

    std::unique_ptr<CPopupMenu> m_pMenu;

    QImage Shown(const QRect& rect) { return m_pMenu->grab(rect).toImage(); }

private slots:
    void init() { m_pMenu = std::make_unique<CPopupMenu>(nullptr); }

    void geometry() {
        // What is hidden, and the places of the entries from the top, or -1.
        const std::pair<QList<int>, QList<int>> rows[] = {
            {{}, {0, 1, 2, 3, 4, 5}},
            {{0, 1}, {-1, -1, 0, 1, 2, 3}},
            {{1, 3}, {0, -1, 1, -1, 2, 3}},
            {{0, 1, 2, 3}, {-1, -1, -1, -1, 0, 1}},
            {{5, -1, 6}, {0, 1, 2, 3, 4, 5}}};  // none of these can be
        for (const auto& [hidden, places] : rows) {
            m_pMenu = std::make_unique<CPopupMenu>(nullptr);
            std::for_each(hidden.begin(), hidden.end(), [this](int i) { m_pMenu->ShowMenu(i, false); });
            m_pMenu->SetSelected(-1);
            const auto place = [](int i) { return QRect(QPoint(6, 10 + 52 * i), QPoint(55, 48 + 52 * i)); };
            const QImage ground = Shown(place(7));
            for (int i = 0; i < CPopupMenu::Entries; ++i) {
                const QRect rect = m_pMenu->EntryRect(i);
                QCOMPARE(rect, places[i] < 0 ? QRect() : place(places[i]));
                QCOMPARE(Shown(place(i)) != ground, places.contains(i));  // a picture only where an entry is
                // The last pixel that belongs to it chooses it; the next does not.
                QSignalSpy chosen(m_pMenu.get(), &CPopupMenu::menuChanged);
                for (const QPoint off : {QPoint(1, 0), QPoint(0, 1), QPoint(0, 0)}) {
                    QCOMPARE(chosen.count(), 0);
                    Click(m_pMenu.get(), rect.bottomRight() + off);
                }
                QCOMPARE(chosen.value(0).value(0), rect.isNull() ? QVariant() : QVariant(i));
            }
        }
    }

    void selecting() {
        QSignalSpy chosen(m_pMenu.get(), &CPopupMenu::menuChanged);
        Click(m_pMenu.get(), m_pMenu->EntryRect(2).center());  // selected at first
        Click(m_pMenu.get(), QPoint(2, 2));
        Click(m_pMenu.get(), m_pMenu->EntryRect(4).center());
        // Refresh is lit while held.
        const QRect refresh(6, 270, 50, 39);
        const QImage calm = Shown(refresh);
        QTest::mousePress(m_pMenu.get(), Qt::LeftButton, {}, refresh.center());
        QVERIFY(Shown(refresh) != calm);
        QTest::mouseRelease(m_pMenu.get(), Qt::LeftButton, {}, QPoint(-50, 0));
        QVERIFY(Shown(refresh) == calm && m_pMenu->Selected() == 4);
        QCOMPARE(chosen, QList<QVariantList>({{4}, {5}}));
        // The parameters can be taken out of the places, but not out of the picture.
        const QImage corner = Shown({0, 0, 6, 39});
        m_pMenu->ShowMenu(4, false);
        QVERIFY(Shown({0, 0, 6, 39}) != corner);
    }
};

QTEST_MAIN(TestPopupMenu)
#include "tst_popupmenu.moc"
