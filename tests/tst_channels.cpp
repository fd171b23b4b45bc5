#include "device/dmxchan.h"
#include "tests/remote.h"

#include <QPushButton>

#include <algorithm>

class TestChannels : public QObject {
    Q_OBJECT

    std::unique_ptr<ChannelsGrid> m_pGrid;

    void Press(const QRect& rect) { Click(m_pGrid.get(), rect.center()); }

    /// Level of a channel, and whether it is held.
    std::pair<int, bool> At(int nUniverse, int nChannel) const {
        const auto at = Universes::At(nUniverse, nChannel);
        return {m_pGrid->Tables().levels.at(at), m_pGrid->Tables().states.at(at)};
    }

private slots:
    void init() {
        m_pGrid = std::make_unique<ChannelsGrid>(nullptr);
        m_pGrid->resize(704, 484);
        m_pGrid->show();
    }

    void pagesAndUniversesGoRound() {
        const QRect left(QPoint(10, 10), QPoint(41, 41));
        const QRect less(QPoint(292, 10), QPoint(323, 41));
        const QRect plus(QPoint(379, 10), QPoint(410, 41));
        const QRect right(QPoint(661, 10), QPoint(692, 41));
        const auto press = [this](const QRect& rect) {
            for (const QPoint& corner : {rect.topLeft() - QPoint(1, 0), rect.bottomRight() + QPoint(1, 0)}) {
                Click(m_pGrid.get(), corner);  // just beside
            }
            Click(m_pGrid.get(), rect.bottomRight());
            return std::pair(m_pGrid->CurrentUniverse(), m_pGrid->FirstChannel());
        };
        for (int i = 1; i <= 16; ++i) {
            QCOMPARE(press(right), std::pair(0, i % 16 * 32 + 1));
        }
        QCOMPARE(press(left), std::pair(0, 481));
        QCOMPARE(press(less), std::pair(31, 481));
        QCOMPARE(press(plus), std::pair(0, 481));
        QCOMPARE(press(plus), std::pair(1, 481));
        for (const char* pText : {"2", "#481", "#512"}) {
            QVERIFY2(Paints(m_pGrid.get(), pText), pText);
        }
    }

    void editor() {
        QSignalSpy presses(m_pGrid.get(), &ChannelsGrid::mousePressed);
        Press(m_pGrid->RightRect());
        m_pGrid->Update(DmxChan{33, 0, 200, true});
        Press(m_pGrid->CellRect(1));
        CChannelSlider* pEditor = m_pGrid->Editor();
        QCOMPARE(pEditor->geometry(), QRect(QPoint(302, 42), QPoint(401, 441)));
        QVERIFY(pEditor->Control()->Value() == 200 && Paints(pEditor, "200") && Paints(pEditor, "#34"));
        // While it is open the grid takes no press, though it tells of each.
        Press(m_pGrid->LeftRect());
        Press(m_pGrid->CellRect(8));
        QCOMPARE(presses.count(), 4);
        QVERIFY(m_pGrid->FirstChannel() == 33 && pEditor->Channel() == 34);
        QSignalSpy ok(pEditor, &CChannelSlider::ok);
        for (auto* pButton : pEditor->findChildren<QPushButton*>()) {
            const bool bOk = pButton->text() == "OK";
            Press(m_pGrid->CellRect(1));
            pEditor->Control()->SetValue(bOk ? 90 : 17);
            QTest::mousePress(pButton, Qt::LeftButton);
            QVERIFY(!pEditor->isVisible());
            QCOMPARE(At(0, 33), std::pair(bOk ? 90 : 17, bOk));
        }
        QCOMPARE(ok, QList<QVariantList>({{90}}));
    }

    void updates() {
        const auto& [levels, states] = m_pGrid->Tables();
        for (const auto& [nUniverse, nChannel] :
             {std::pair{0, 512}, {0, -1}, {32, 0}, {-1, 0}, {INT_MIN, INT_MAX}}) {
            m_pGrid->Update(DmxChan{nChannel, nUniverse, 9, true});
            m_pGrid->Update(nUniverse, nChannel, 5, 9, 9, 9, 9, true);
            m_pGrid->Update(nUniverse == 0 ? 33 : nUniverse, 9, true);
        }
        QCOMPARE(std::count(states.begin(), states.end(), true), 0);
        m_pGrid->Update(DmxChan{511, 31, 257, true});
        QCOMPARE(At(31, 511), std::pair(1, true));
        for (const bool bHeld : {true, false}) {
            m_pGrid->Update(5, 200, bHeld);
            QCOMPARE(std::count(states.begin(), states.end(), true), bHeld ? 513 : 1);
            QCOMPARE(std::count(levels.begin(), levels.end(), 200), bHeld ? 512 : 0);
        }
        for (const auto& [nStart, nCount, bRgbw, pRun] : {std::tuple{506, 5, true, "01020304000000"},
                                                          {506, 5, false, "01020300000000"},
                                                          {506, 0, true, "00000000000000"},
                                                          {0, 2, false, "01020301020300"}}) {
            m_pGrid->ReleaseChannels();
            m_pGrid->Update(7, nStart, nCount, 1, 2, 3, 4, bRgbw);
            const auto* pLevels = &levels.at(Universes::At(7, nStart));
            QCOMPARE(QByteArray(reinterpret_cast<const char*>(pLevels), 7).toHex(), QByteArray(pRun));
        }
    }

    void painting() {
        QCOMPARE(m_pGrid->CellRect(31), QRect(QPoint(617, 377), QPoint(704, 484)));
        const QColor held(100, 160, 255);
        const QColor released(200, 200, 200);
        const QColor outline(160, 160, 160);
        m_pGrid->Update(DmxChan{0, 0, 255, true});
        m_pGrid->Update(DmxChan{1, 0, 100, false});
        m_pGrid->Update(DmxChan{2, 0, 2, true});
        const QImage image = m_pGrid->grab().toImage();
        // Of 108 rows, 255 fills all below the outline, 100 fills 41 and 2 none.
        const auto shows = [&image](const QColor& color, const QPoint& at) {
            return image.pixelColor(at) == color;
        };
        QVERIFY(shows(outline, {1, 110}) && shows(outline, {2, 53}));
        QVERIFY(shows(held, {2, 54}) && shows(held, {2, 160}) && !shows(held, {178, 160}));
        QVERIFY(shows(released, {90, 120}) && shows(released, {90, 160}) && !shows(released, {90, 119}));
    }
};

QTEST_MAIN(TestChannels)
#include "tst_channels.moc"
