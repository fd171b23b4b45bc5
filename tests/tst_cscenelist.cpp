#include "settings/cinifile.h"
#include "tests/support.h"
#include "widgets/artwork.h"
#include "widgets/cscenelist.h"
#include "widgets/cscenelistwnd.h"
#include "widgets/iconcatalogue.h"

#include <QColorDialog>
#include <QInputDialog>
#include <QMenu>
#include <QPainter>
#include <QScrollArea>
#include <QScrollBar>
#include <QtTest>

#include <algorithm>

class TestSceneList : public QObject {
    Q_OBJECT

    CIniFile m_settings;

    static QList<Scene> Scenes(int nCount, int nArea = 0) {
        QList<Scene> scenes;
        for (int i = 0; i < nCount; ++i) {
            scenes.append(Scene{"Scene", 10 + i, nArea, 0, false});
        }
        return scenes;
    }

    static QString States(const CSceneList& list) {
        QString s;
        for (const auto& item : list.Items()) {
            s += item.state ? '1' : '0';
        }
        return s;
    }

    /// Opens the context menu of a tile and triggers its entry `iEntry`, or that of one of its submenus.
    static void UseMenu(CSceneList& list, int iTile, int iEntry, int iSubEntry = -1) {
        OnNextMenu([=](QMenu* pMenu) {
            QAction* pAction = pMenu->actions()[iEntry];
            pAction = iSubEntry < 0 ? pAction : pAction->menu()->actions()[iSubEntry];
            pMenu->close();
            pAction->trigger();
        });
        QTest::mouseClick(&list, Qt::RightButton, {}, list.Items()[iTile].rect.center());
    }

    template <typename Act>
    static void OnNextMenu(Act act) {
        QTimer::singleShot(20, [act] {
            auto* pMenu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            QVERIFY(pMenu != nullptr);
            act(pMenu);
        });
    }

private slots:
    void geometry() {
        CSceneList list(true, nullptr);
        list.resize(300, 400);
        QCOMPARE(list.minimumHeight(), 0);
        list.Update(Scenes(3), m_settings);
        QCOMPARE(list.Items()[0].rect, QRect(QPoint(0, 0), QPoint(148, 52)));
        QCOMPARE(list.Items()[1].rect, QRect(QPoint(149, 0), QPoint(297, 52)));
        QCOMPARE(list.Items()[2].rect, QRect(QPoint(0, 53), QPoint(148, 105)));
        QCOMPARE(list.minimumHeight(), 105);
        list.resize(401, 400);
        QTest::qWait(0);
        list.Update({}, m_settings);
        QCOMPARE(list.minimumHeight(), 0);
    }

    void presses_data() {
        QTest::addColumn<bool>("scenes");
        QTest::addColumn<QPoint>("at");
        QTest::addColumn<QString>("states");   // from 0100
        QTest::addColumn<QString>("emitted");  // group, id, state
        QTest::newRow("on, its group goes off") << true << QPoint(5, 52) << "1000"
                                                << "0 10 1";
        QTest::newRow("next row") << true << QPoint(5, 53) << "0010"
                                  << "0 12 1";
        QTest::newRow("off, others stay") << true << QPoint(297, 0) << "0000"
                                          << "0 11 0";
        QTest::newRow("programs exclude nothing") << false << QPoint(5, 5) << "1100"
                                                  << "0 10 1";
        QTest::newRow("strip on the right") << true << QPoint(298, 5) << "0100"
                                            << "";
        QTest::newRow("below") << true << QPoint(5, 106) << "0100"
                               << "";
    }

    void presses() {
        QFETCH(bool, scenes);
        QFETCH(QPoint, at);
        CSceneList list(scenes, nullptr);
        list.resize(300, 400);
        list.Update(Scenes(4), m_settings);
        list.Update(Scene{"", 11, 0, 0, true}, true);
        QSignalSpy presses(&list, &CSceneList::mousePressed);
        QString sEmitted;
        connect(&list, &CSceneList::stateChanged, [&](int iArea, int nId, bool bState) {
            QCOMPARE(presses.count(), 1);  // told before anything else
            sEmitted += QString("%1 %2 %3").arg(iArea).arg(nId).arg(int{bState});
        });
        QTest::mouseClick(&list, Qt::LeftButton, {}, at);
        QCOMPARE(presses.count(), 1);
        QTEST(States(list), "states");
        QTEST(sEmitted, "emitted");
    }

    void reportsAreShownWithoutEcho() {
        CSceneList list(true, nullptr);
        QList<Scene> scenes = Scenes(3, -1) + Scenes(1, 2);  // the last repeats the first's id
        list.Update(scenes, m_settings);
        QSignalSpy echo(&list, &CSceneList::stateChanged);
        list.Update(Scene{"", 10, -1, 0, true}, true);
        QCOMPARE(States(list), QString("1000"));
        list.Update(Scene{"", 12, -1, 0, true}, false);
        QCOMPARE(States(list), QString("1010"));
        list.Update(Scene{"", 11, -1, 0, true}, true);  // group -1 excludes too
        QCOMPARE(States(list), QString("0100"));
        list.Update(Scene{"", 99, -1, 0, true}, true);
        QCOMPARE(States(list), QString("0100"));
        list.ResetState();
        QCOMPARE(States(list), QString("0000"));
        QCOMPARE(echo.count(), 0);
    }

    void painting() {
        for (const bool bScenes : {true, false}) {
            CSceneList list(bScenes, nullptr);
            list.resize(300, 159);
            list.Update(Scenes(3), m_settings);
            list.Update(Scene{"", 11, 0, 0, true}, true);
            const QImage image = list.grab().toImage();
            const QColor on = bScenes ? QColor(100, 160, 255) : QColor(Qt::green);
            const QRect tile = list.Items()[1].rect;
            QCOMPARE(image.pixelColor(tile.left() + 1, tile.top() + 1), on);
            QCOMPARE(image.pixelColor(tile.right(), tile.bottom()), on);
            for (const QPoint line :
                 {QPoint(0, 0), QPoint(149, 20), QPoint(298, 20), QPoint(20, 53), QPoint(20, 106)}) {
                QCOMPARE(image.pixelColor(line), QColor(180, 180, 180));
            }
            QVERIFY(image.pixelColor(1, 1) != on);
            // Check box and icon: inside the first tile, at their places and nowhere before.
            const QImage box = artwork::Picture(":/Corvane/Images/CheckBox.png").toImage();
            QCOMPARE(image.pixelColor(148 - 30 + 12, 6 + 12), box.pixelColor(12, 12));
            QCOMPARE(image.pixelColor(10 + 4, 6 + 20), QColor("#2b3038"));
            QVERIFY(image.pixelColor(9, 26) != QColor("#2b3038"));
        }
    }

    void paintsOnlyWhatIsAsked() {
        CSceneListWnd window(true, nullptr);
        window.resize(704, 484);
        window.show();
        window.List()->Update(Scenes(2000), m_settings);
        auto* pBar = window.findChild<QScrollArea*>()->verticalScrollBar();
        QTRY_VERIFY(pBar->maximum() > 50000);
        QElapsedTimer timer;
        timer.start();
        for (int i = 1; i <= 100; ++i) {
            pBar->setValue(pBar->maximum() * i / 100);
            window.repaint();
        }
        QVERIFY2(timer.elapsed() < 1600, qPrintable(QString("100 screens in %1 ms").arg(timer.elapsed())));
        const QPoint last(20, 484 - 20);
        QVERIFY(window.grab().toImage().pixelColor(14, last.y()) != window.palette().color(QPalette::Window));
        QTest::mouseClick(window.List(), Qt::LeftButton, {}, window.List()->mapFrom(&window, last));
        QVERIFY(window.List()->Items()[1998].state);
    }

    void everyIconExists() {
        QStringList icons = catalogue::DefaultIconList();
        for (const QStringList& list :
             {catalogue::IconList1(), catalogue::IconList2(), catalogue::IconList3(), catalogue::IconList4(),
              catalogue::IconList5()}) {
            icons += list;
        }
        QCOMPARE(icons.size(), 52);
        for (const QString& sPath : icons) {
            QCOMPARE(artwork::Picture(sPath).size(), QSize(80, 80));
            QCOMPARE(QPixmap(QString(sPath).replace(".png", "@2x.png")).size(), QSize(160, 160));
        }
    }

    void customisation() {
        m_settings.SaveSceneParams(10, "Mine", catalogue::IconList2()[1], Qt::red);
        CSceneList list(true, nullptr);
        list.Update({Scene{"caf\xC3\xA9", 5, 0, 0, false}, Scene{"x", 10, 0, 0, true}}, m_settings);
        QCOMPARE(list.Items()[0].name, QString("caf\u00E9"));
        QCOMPARE(list.Items()[0].color, QColor(120, 120, 120));
        QCOMPARE(list.Items()[1].name, QString("Mine"));
        QCOMPARE(list.Items()[1].icon, catalogue::IconList2()[1]);
        QCOMPARE(list.Items()[1].color, QColor(Qt::red));
        m_settings.scenes.clear();
    }

    void contextMenu() {
        CSceneList list(true, nullptr);
        list.resize(300, 400);
        list.show();
        list.Update(Scenes(3), m_settings);
        QSignalSpy names(&list, &CSceneList::nameChanged);
        QSignalSpy icons(&list, &CSceneList::iconChanged);
        QSignalSpy colors(&list, &CSceneList::colorChanged);
        list.OnRename();  // nothing was right-clicked yet
        list.SetSceneIcon("x");

        OnNext<QInputDialog>([](QInputDialog* pDialog) {
            QCOMPARE(pDialog->textValue(), QString("Scene"));
            pDialog->setTextValue("Party");
            pDialog->accept();
        });
        UseMenu(list, 1, 0);
        QCOMPARE(names, QList<QVariantList>({{11, "Party"}}));
        QCOMPARE(list.Items()[1].name, QString("Party"));

        OnNext<QInputDialog>([](QInputDialog* pDialog) {
            pDialog->setTextValue("");
            pDialog->accept();
        });
        UseMenu(list, 1, 0);
        QCOMPARE(names.count(), 1);

        OnNext<QColorDialog>([](QColorDialog* pDialog) {
            pDialog->setCurrentColor(Qt::magenta);
            pDialog->accept();
        });
        UseMenu(list, 2, 1);
        QCOMPARE(colors, QList<QVariantList>({{12, QColor(Qt::magenta)}}));
        OnNext<QColorDialog>([](QColorDialog* pDialog) { pDialog->reject(); });
        UseMenu(list, 2, 1);
        QCOMPARE(colors.count(), 1);

        UseMenu(list, 0, 4);  // after the separator: the two defaults
        UseMenu(list, 0, 9, 6);
        QCOMPARE(icons, QList<QVariantList>(
                            {{10, catalogue::DefaultIconList()[1]}, {10, catalogue::IconList5()[6]}}));
        QCOMPARE(list.Items()[0].icon, catalogue::IconList5()[6]);
        QCOMPARE(States(list), QString("000"));
    }

    void rebuiltUnderAnOpenDialog() {
        CSceneList list(true, nullptr);
        list.resize(300, 400);
        list.show();
        list.Update(Scenes(3), m_settings);
        QSignalSpy names(&list, &CSceneList::nameChanged);
        OnNext<QInputDialog>([&](QInputDialog* pDialog) {
            QList<Scene> scenes = Scenes(3);
            std::reverse(scenes.begin(), scenes.end());
            list.Update(scenes, m_settings);
            pDialog->setTextValue("Party");
            pDialog->accept();
        });
        UseMenu(list, 0, 0);
        QCOMPARE(names, QList<QVariantList>({{10, "Party"}}));
        QCOMPARE(list.Items()[2].name, QString("Party"));
        QCOMPARE(list.Items()[0].name, QString("Scene"));

        OnNext<QInputDialog>([&](QInputDialog* pDialog) {
            list.Update(Scenes(1), m_settings);  // the scene is gone
            pDialog->setTextValue("Lost");
            pDialog->accept();
        });
        UseMenu(list, 0, 0);
        QCOMPARE(names.count(), 1);
        QCOMPARE(list.Items()[0].name, QString("Scene"));
    }
};

QTEST_MAIN(TestSceneList)
#include "tst_cscenelist.moc"
