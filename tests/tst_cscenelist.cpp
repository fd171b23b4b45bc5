#include "settings/cinifile.h"
#include "tests/support.h"
#include "widgets/artwork.h"
#include "widgets/cscenelist.h"
#include "widgets/cscenelistwnd.h"
#include "widgets/iconcatalogue.h"

#include <QColorDialog>
#include <QInputDialog>
#include <QMenu>
#include <QScrollArea>
#include <QScrollBar>
#include <QtTest>

#include <memory>

class TestSceneList : public QObject {
    Q_OBJECT

    CIniFile m_settings;
    std::unique_ptr<CSceneList> m_pList;

    static QList<Scene> Scenes(int nCount, int nArea = 0) {
        QList<Scene> scenes;
        for (int i = 0; i < nCount; ++i) {
            scenes.append(Scene{"Scene", 10 + i, nArea, 0, false});
        }
        return scenes;
    }

    void Open(const QList<Scene>& scenes, bool bScenes = true) {
        m_pList = std::make_unique<CSceneList>(bScenes, nullptr);
        m_pList->resize(300, 400);
        m_pList->Update(scenes, m_settings);
        m_pList->show();
    }

    const CSceneList::SceneItem& Item(int i) const { return m_pList->Items()[i]; }

    /// While the dialog is open, the server sends the list again, or another.
    void Rename(int iTile, const QString& sName, const QList<Scene>& meanwhile = Scenes(3)) {
        OnNext<QInputDialog>([=](QInputDialog* pDialog) {
            QCOMPARE(pDialog->textValue(), Item(iTile).name);
            m_pList->Update(meanwhile, m_settings);
            pDialog->setTextValue(sName);
            pDialog->accept();
        });
        UseMenu(m_pList.get(), iTile, 0);
    }

private slots:
    void presses() {
        // The list and where it is pressed; what runs then, from 11, and what is told: group, id, state.
        for (const QString sRow :
             {"scenes 148 52 > 10 press 0,10,1",                                  // on, its group goes off
              "scenes 148 53 > 12 press 0,12,1", "scenes 149 0 >  press 0,11,0",  // off, others stay
              "scenes 297 52 >  press 0,11,0", "scenes 298 5 > 11 press",
              "programs 0 1 > 10 11 press 0,10,1"}) {  // programs exclude nothing
            Open(Scenes(4), sRow.startsWith("scenes"));
            m_pList->Update(Scene{"", 11, 0, 0, true}, true);
            QString sTold;
            connect(m_pList.get(), &CSceneList::mousePressed, [&] { sTold += " press"; });
            connect(m_pList.get(), &CSceneList::stateChanged, [&](int iArea, int nId, bool bState) {
                sTold += QString(" %1,%2,%3").arg(iArea).arg(nId).arg(int{bState});
            });
            Click(m_pList.get(), {sRow.section(' ', 1, 1).toInt(), sRow.section(' ', 2, 2).toInt()});
            QCOMPARE(Running(m_pList.get()) + sTold, sRow.section(" > ", 1));
        }
        // What the server reports is shown without an echo; group -1 excludes too.
        Open(Scenes(3, -1) + Scenes(1, 2));  // the last repeats the first's id
        QSignalSpy echo(m_pList.get(), &CSceneList::stateChanged);
        for (const auto& [nId, bExclusive, pRuns] :
             {std::tuple{10, true, "10"}, {12, false, "10 12"}, {11, true, "11"}, {99, true, "11"}}) {
            m_pList->Update(Scene{"", nId, -1, 0, true}, bExclusive);
            QCOMPARE(Running(m_pList.get()), QString(pRuns));
        }
        QCOMPARE(echo.count(), 0);
    }

    void painting() {
        for (const bool bScenes : {true, false}) {
            Open(Scenes(3), bScenes);
            m_pList->Update(Scene{"", 11, 0, 0, true}, true);
            const QImage image = m_pList->grab().toImage();
            const QColor on = bScenes ? QColor(100, 160, 255) : QColor(Qt::green);
            for (const QPoint at :
                 {QPoint(0, 0), QPoint(149, 20), QPoint(298, 20), QPoint(20, 53), QPoint(20, 106)}) {
                QCOMPARE(image.pixelColor(at), QColor(180, 180, 180));  // the outline
            }
            QVERIFY(image.pixelColor(150, 1) == on &&
                    image.pixelColor(297, 52) == on);  // the second tile runs
            QVERIFY(image.pixelColor(1, 1) != on);
            const QColor badge("#2b3038");
            QVERIFY(image.pixelColor(14, 26) == badge && image.pixelColor(9, 26) != badge);
            for (const auto& [iTile, pBox] : {std::pair{0, "CheckBox"}, {1, "CheckBoxSel"}}) {
                const QPixmap box = artwork::Picture(QString(":/Corvane/Images/%1.png").arg(pBox));
                QCOMPARE(image.pixelColor(130 + iTile * 149, 18), box.toImage().pixelColor(12, 12));
            }
            QVERIFY(Paints(m_pList.get(), "#1.10") && Paints(m_pList.get(), "#1.12"));
        }
    }

    void longLists() {
        CSceneListWnd window(true, nullptr);
        window.resize(704, 484);
        window.show();
        window.List()->Update(Scenes(2000), m_settings);
        auto* pBar = window.findChild<QScrollArea*>()->verticalScrollBar();
        QTRY_VERIFY(pBar->maximum() > 50000);
        pBar->setValue(pBar->maximum());
        const QPoint last(14, 484 - 20);
        QVERIFY(window.grab().toImage().pixelColor(last) != window.palette().color(QPalette::Window));
        Click(window.List(), window.List()->mapFrom(&window, last));
        QVERIFY(window.List()->Items()[1998].state);
    }

    void replacing() {
        CIniFile settings;
        settings.SaveSceneParams(10, "Mine", "icon", Qt::red);
        Open(Scenes(3));
        QCOMPARE(m_pList->minimumHeight(), 105);
        m_pList->Update({Scene{"caf\xC3\xA9", 5, 0, 0, false}, Scene{"x", 10, 0, 0, true}}, settings);
        const auto shown = [this](int i) { return Item(i).name + Item(i).icon + Item(i).color.name(); };
        QCOMPARE(shown(0), "caf\u00E9" + catalogue::DefaultIconList()[0] + "#787878");
        QCOMPARE(shown(1), QString("Mineicon#ff0000"));
        m_pList->Update(Scene{"", 10, 0, 0, false}, true);
        const QImage name = m_pList->grab(Item(1).rect.adjusted(60, 0, -40, 0)).toImage();
        QVERIFY(name.createMaskFromColor(qRgb(255, 0, 0)) != name.createMaskFromColor(0));
        m_pList->Update({}, settings);
        QCOMPARE(m_pList->minimumHeight(), 0);
    }

    /// What a server names its scenes is neither slow to paint nor part of the settings.
    void oddNames() {
        CIniFile settings;
        const QString sOutside = settings.path + ".png";
        QVERIFY(artwork::Picture(":/Corvane/Images/Text.png").save(sOutside));
        settings.SaveSceneParams(7, "", sOutside, {});
        settings.SaveSceneParams(8, "", ":/Corvane/Images/Text.png", {});
        Open({});
        m_pList->Update(
            {Scene{"Fog\nPwdState=1\t2\u2028", 7, 2147483647, 0, false}, Scene{"", 8, -1, 0, false}},
            settings);
        QVERIFY(QFile::remove(sOutside) && Item(0).pixmap.isNull() && !Item(1).pixmap.isNull());
        QCOMPARE(m_pList->Part(0).value + m_pList->Part(1).value, QString("#2147483648.7#8"));
        QSignalSpy names(m_pList.get(), &CSceneList::nameChanged);
        OnNext<QInputDialog>([](QInputDialog* pDialog) {
            QCOMPARE(pDialog->textValue(), QString("Fog PwdState=1 2 "));
            pDialog->setTextValue("a\r\nb");
            pDialog->accept();
        });
        UseMenu(m_pList.get(), 0, 0);
        QCOMPARE(names, QList<QVariantList>({{7, "a  b"}}));

        const auto paint = [this](std::size_t nLength) {
            Open(QList<Scene>(QVector<Scene>(8, Scene{std::string(nLength, 'x'), 1, 0, 0, false}).toList()));
            QImage image = m_pList->grab().toImage();
            QElapsedTimer clock;
            clock.start();
            for (int i = 0; i < 50; ++i) {
                m_pList->grab();
            }
            return std::pair(image, clock.nsecsElapsed());
        };
        const auto [usual, nUsual] = paint(40);
        const auto [giant, nGiant] = paint(250000);
        QVERIFY2(giant == usual && nGiant < 4 * nUsual, qPrintable(QString::number(nGiant / nUsual)));
        QVERIFY(m_pList->Part(0).name.size() < 1000);
    }

    void iconsAndColors() {
        Open(Scenes(3));
        QSignalSpy icons(m_pList.get(), &CSceneList::iconChanged);
        QSignalSpy colors(m_pList.get(), &CSceneList::colorChanged);
        m_pList->SetSceneIcon("x");  // nothing was right-clicked yet
        for (const auto finish : {&QDialog::accept, &QDialog::reject}) {
            OnNext<QColorDialog>([finish](QColorDialog* pDialog) {
                pDialog->setCurrentColor(Qt::magenta);
                (pDialog->*finish)();
            });
            UseMenu(m_pList.get(), 2, 1);
        }
        QCOMPARE(colors, QList<QVariantList>({{12, QColor(Qt::magenta)}}));
        // After the separator come the two defaults and the families; what is chosen is what was shown.
        for (int iEntry = 3; iEntry < 10; ++iEntry) {
            QImage offered;
            UseMenu(m_pList.get(), 0, iEntry, iEntry < 5 ? -1 : 4, &offered);
            QVERIFY(icons.takeLast() == QVariantList({10, Item(0).icon}) && icons.isEmpty());
            QCOMPARE(Item(0).pixmap.toImage(), offered);
            QTRY_VERIFY(IsUpToDate(m_pList.get()));
        }
        QCOMPARE(Running(m_pList.get()), QString());
    }

    void renaming() {
        const QList<Scene> scenes = Scenes(3);
        Open(scenes);
        QSignalSpy names(m_pList.get(), &CSceneList::nameChanged);
        m_pList->OnRename();  // nothing was right-clicked yet
        Rename(1, "Party", scenes);
        QTRY_VERIFY(IsUpToDate(m_pList.get()));
        Rename(1, "");
        Rename(0, "Fog", {scenes[2], scenes[1], scenes[0]});
        QCOMPARE(Item(2).name + Item(0).name, QString("FogScene"));
        Rename(0, "Lost", Scenes(1));  // the scene is gone
        QCOMPARE(Item(0).name, QString("Scene"));
        QCOMPARE(names, QList<QVariantList>({{11, "Party"}, {10, "Fog"}}));
    }
};

QTEST_MAIN(TestSceneList)
#include "tst_cscenelist.moc"
