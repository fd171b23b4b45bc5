#include "app/cpopupmenu.h"
#include "app/cpopuptab.h"

#include <QAccessible>
#include <QtTest>

class TestPopupMenu : public QObject {
    Q_OBJECT

private slots:
    void geometry_data() {
        QTest::addColumn<QList<int>>("hidden");
        QTest::addColumn<QList<int>>("tops");  // -1: not in the menu
        QTest::newRow("all shown") << QList<int>{} << QList<int>{10, 62, 114, 166, 218, 270};
        QTest::newRow("scenes and programs hidden")
            << QList<int>{0, 1} << QList<int>{-1, -1, 10, 62, 114, 166};
        QTest::newRow("programs and channels hidden")
            << QList<int>{1, 3} << QList<int>{10, -1, 62, -1, 114, 166};
        QTest::newRow("pages hidden") << QList<int>{0, 1, 2, 3} << QList<int>{-1, -1, -1, -1, 10, 62};
        QTest::newRow("refresh cannot be") << QList<int>{5, -1, 6} << QList<int>{10, 62, 114, 166, 218, 270};
    }

    void geometry() {
        QFETCH(QList<int>, hidden);
        QFETCH(QList<int>, tops);
        CPopupMenu menu(nullptr);
        menu.resize(62, 484);
        QCOMPARE(menu.width(), 62);
        for (const int iMenu : hidden) {
            menu.ShowMenu(iMenu, false);
        }
        QSignalSpy chosen(&menu, &CPopupMenu::menuChanged);
        for (int i = 0; i < tops.size(); ++i) {
            const QRect rect = menu.EntryRect(i);
            QCOMPARE(rect, tops[i] < 0 ? QRect() : QRect(QPoint(6, tops[i]), QPoint(55, tops[i] + 38)));
            // The last pixel that belongs to it chooses it; the next does not.
            if (!rect.isNull() && i != menu.Selected()) {
                QTest::mouseClick(&menu, Qt::LeftButton, {}, rect.bottomRight() + QPoint(1, 0));
                QTest::mouseClick(&menu, Qt::LeftButton, {}, rect.bottomRight() + QPoint(0, 1));
                const int nBefore = chosen.count();
                QTest::mouseClick(&menu, Qt::LeftButton, {}, rect.bottomRight());
                QCOMPARE(chosen.count(), nBefore + 1);
                QCOMPARE(chosen.last()[0].toInt(), i);
            }
        }
        // Pictures only where entries are.
        const QImage image = menu.grab().toImage();
        const QColor ground = image.pixelColor(3, 3);
        for (int nSlot = 0; nSlot < 6; ++nSlot) {
            QImage plain(50, 39, image.format());
            plain.fill(ground);
            const bool bPainted = image.copy(6, 10 + 52 * nSlot, 50, 39) != plain;
            QCOMPARE(bPainted, tops.contains(10 + 52 * nSlot));
        }
    }

    void selecting() {
        CPopupMenu menu(nullptr);
        menu.resize(62, 484);
        QSignalSpy chosen(&menu, &CPopupMenu::menuChanged);
        QTest::mouseClick(&menu, Qt::LeftButton, {}, menu.EntryRect(2).center());  // selected at first
        QTest::mouseClick(&menu, Qt::LeftButton, {}, QPoint(2, 2));
        QCOMPARE(chosen.count(), 0);
        QTest::mouseClick(&menu, Qt::LeftButton, {}, menu.EntryRect(4).center());
        QCOMPARE(menu.Selected(), 4);
        // Refresh is lit while held.
        const QRect refresh = menu.EntryRect(5);
        const QImage calm = menu.grab(refresh).toImage();
        QTest::mousePress(&menu, Qt::LeftButton, {}, refresh.center());
        QVERIFY(menu.grab(refresh).toImage() != calm);
        QTest::mouseRelease(&menu, Qt::LeftButton, {}, QPoint(-50, 0));
        QVERIFY(menu.grab(refresh).toImage() == calm);
        QCOMPARE(menu.Selected(), 4);
        QCOMPARE(chosen, QList<QVariantList>({{4}, {5}}));
    }

    void access() {
        CPopupMenu menu(nullptr);
        menu.ShowMenu(1, false);
        QSignalSpy chosen(&menu, &CPopupMenu::menuChanged);
        QAccessibleInterface* pMenu = QAccessible::queryAccessibleInterface(&menu);
        QCOMPARE(pMenu->childCount(), 6);
        QStringList names;
        for (int i = 0; i < pMenu->childCount(); ++i) {
            names += pMenu->child(i)->text(QAccessible::Name);
            QCOMPARE(pMenu->indexOfChild(pMenu->child(i)), i);
            pMenu->child(i)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        }
        QCOMPARE(names,
                 QStringList({"Scenes", "Programs", "Color", "Channels", "Parameters", "Connect again"}));
        QCOMPARE(chosen, QList<QVariantList>({{0}, {2}, {3}, {4}, {5}}));
        QVERIFY(pMenu->child(4)->state().selected && pMenu->child(1)->state().invisible);
        QVERIFY(pMenu->child(4)->parent() == pMenu);
    }

    void tab() {
        CPopupTab tab(nullptr);
        tab.resize(14, 50);
        QSignalSpy pressed(&tab, &CPopupTab::tabPressed);
        QTest::mouseClick(&tab, Qt::LeftButton, {}, QPoint(13, 49));
        QCOMPARE(pressed.count(), 1);
    }
};

QTEST_MAIN(TestPopupMenu)
#include "tst_popupmenu.moc"
