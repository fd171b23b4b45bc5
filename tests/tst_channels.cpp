#include "app/corvane.h"
#include "device/dmxchan.h"
#include "device/messages.h"
#include "tests/peer.h"
#include "tests/support.h"
#include "widgets/cchannelslider.h"
#include "widgets/channelsgrid.h"
#include "widgets/csliderctrl.h"

#include <QPushButton>
#include <QtTest>

#include <algorithm>
#include <memory>

class TestChannels : public QObject {
    Q_OBJECT

    std::unique_ptr<ChannelsGrid> m_pGrid;

    void Click(const QRect& rect) { QTest::mouseClick(m_pGrid.get(), Qt::LeftButton, {}, rect.center()); }
    int Level(int nUniverse, int nChannel) {
        return m_pGrid->Tables().levels.at(Universes::At(nUniverse, nChannel));
    }
    bool Held(int nUniverse, int nChannel) {
        return m_pGrid->Tables().states.at(Universes::At(nUniverse, nChannel));
    }
    QPushButton* Button(const QString& sText) {
        const auto buttons = m_pGrid->Editor()->findChildren<QPushButton*>();
        return *std::find_if(buttons.begin(), buttons.end(), [&](auto* p) { return p->text() == sText; });
    }

    static double ResidentMiB() {
        QFile file("/proc/self/statm");
        return file.open(QIODevice::ReadOnly) ? file.readAll().split(' ')[1].toDouble() * 4096 / 1048576
                                              : 0.0;
    }

private slots:
    void init() {
        m_pGrid = std::make_unique<ChannelsGrid>(nullptr);
        m_pGrid->resize(704, 484);
        m_pGrid->show();
    }

    void geometry() {
        QCOMPARE(m_pGrid->LeftRect(), QRect(QPoint(10, 10), QPoint(41, 41)));
        QCOMPARE(m_pGrid->UnivLessRect(), QRect(QPoint(292, 10), QPoint(323, 41)));
        QCOMPARE(m_pGrid->UnivPlusRect(), QRect(QPoint(379, 10), QPoint(410, 41)));
        QCOMPARE(m_pGrid->RightRect(), QRect(QPoint(661, 10), QPoint(692, 41)));
        QCOMPARE(m_pGrid->CellRect(0), QRect(QPoint(1, 53), QPoint(88, 160)));
        QCOMPARE(m_pGrid->CellRect(31), QRect(QPoint(617, 377), QPoint(704, 484)));
    }

    void pagesAndUniversesGoRound() {
        QList<int> seen;
        for (int i = 0; i < 16; ++i) {
            Click(m_pGrid->RightRect());
            seen += m_pGrid->FirstChannel();
        }
        QCOMPARE(seen[0] + seen[14] + seen[15], 33 + 481 + 1);
        Click(m_pGrid->LeftRect());
        QCOMPARE(m_pGrid->FirstChannel(), 481);
        Click(m_pGrid->UnivLessRect());
        QCOMPARE(m_pGrid->CurrentUniverse(), 31);
        Click(m_pGrid->UnivPlusRect());
        Click(m_pGrid->UnivPlusRect());
        QCOMPARE(m_pGrid->CurrentUniverse(), 1);
    }

    void editor() {
        QSignalSpy presses(m_pGrid.get(), &ChannelsGrid::mousePressed);
        Click(m_pGrid->RightRect());
        m_pGrid->Update(DmxChan{33, 0, 200, true});
        Click(m_pGrid->CellRect(1));
        CChannelSlider* pEditor = m_pGrid->Editor();
        QVERIFY(pEditor->isVisible());
        QCOMPARE(pEditor->geometry(), QRect(QPoint(302, 42), QPoint(401, 441)));
        QCOMPARE(pEditor->Channel(), 34);
        QCOMPARE(m_pGrid->SelectedChannel(), 33);
        QCOMPARE(pEditor->Control()->Value(), 200);
        // While it is open the grid takes no press, though it tells of each.
        Click(m_pGrid->LeftRect());
        Click(m_pGrid->CellRect(8));
        QCOMPARE(m_pGrid->FirstChannel(), 33);
        QCOMPARE(pEditor->Channel(), 34);
        QCOMPARE(presses.count(), 4);
        pEditor->Control()->SetValue(90);
        QCOMPARE(Level(0, 33), 200);
        QSignalSpy ok(pEditor, &CChannelSlider::ok);
        QTest::mousePress(Button("OK"), Qt::LeftButton);
        QCOMPARE(ok, QList<QVariantList>({{90}}));
        QVERIFY(!pEditor->isVisible() && Level(0, 33) == 90 && Held(0, 33));
        Click(m_pGrid->CellRect(1));
        pEditor->Control()->SetValue(17);
        QTest::mousePress(Button("Off"), Qt::LeftButton);
        QVERIFY(!pEditor->isVisible() && Level(0, 33) == 17 && !Held(0, 33));
    }

    void updates() {
        for (const DmxChan& channel : {DmxChan{512, 0, 9, true},
                                       {0, 32, 9, true},
                                       {-1, 0, 9, true},
                                       {0, -1, 9, true},
                                       {INT_MAX, INT_MIN, 9, true}}) {
            m_pGrid->Update(channel);
        }
        for (const int nUniverse : {-1, 32}) {
            m_pGrid->Update(nUniverse, 9, true);
            m_pGrid->Update(nUniverse, 0, 5, 9, 9, 9, 9, true);
            m_pGrid->Update(0, nUniverse < 0 ? -1 : 512, 5, 9, 9, 9, 9, true);
        }
        const auto& states = m_pGrid->Tables().states;
        QVERIFY(std::none_of(states.begin(), states.end(), [](bool b) { return b; }));
        m_pGrid->Update(DmxChan{511, 31, 257, true});
        QVERIFY(Level(31, 511) == 1 && Held(31, 511));
        m_pGrid->Update(5, 200, true);
        QVERIFY(Level(5, 0) == 200 && Level(5, 511) == 200 && Held(5, 511) && Level(4, 511) == 0 &&
                Level(6, 0) == 0);
        m_pGrid->Update(5, 200, false);
        QVERIFY(Level(5, 0) == 0 && !Held(5, 511));
        const auto filled = [this](bool bRgbw, int nCount) {
            m_pGrid->ReleaseChannels();
            m_pGrid->Update(7, 506, nCount, 1, 2, 3, 4, bRgbw);
            QString s;
            for (int i = 500; i < 512; ++i) {
                s += QString::number(Level(7, i));
            }
            return s;
        };
        QCOMPARE(filled(true, 5), QString("000000123400"));
        QCOMPARE(filled(false, 5), QString("000000123000"));
        QCOMPARE(filled(true, 0), QString("000000000000"));
        m_pGrid->Update(7, 0, 2, 1, 2, 3, 4, false);
        QVERIFY(Level(7, 5) == 3 && Level(7, 6) == 0);
    }

    void painting() {
        m_pGrid->Update(DmxChan{0, 0, 255, true});
        m_pGrid->Update(DmxChan{1, 0, 100, false});
        m_pGrid->Update(DmxChan{2, 0, 2, true});
        const QImage image = m_pGrid->grab().toImage();
        const QColor held(100, 160, 255);
        const QColor released(200, 200, 200);
        const QColor outline(160, 160, 160);
        const auto at = [&](int iCell, int nX, int nFromBottom) {
            const QRect cell = m_pGrid->CellRect(iCell);
            return image.pixelColor(cell.left() + nX, cell.bottom() - nFromBottom);
        };
        // Cells are 108 high: 255 fills all below the outline, 100 fills 42 rows (41 above the bottom one), 2
        // none.
        QCOMPARE(at(0, 0, 50), outline);
        QCOMPARE(at(0, 1, 0), held);
        QCOMPARE(at(0, 1, 106), held);
        QCOMPARE(at(0, 1, 107), outline);
        QCOMPARE(at(1, 1, 0), released);
        QCOMPARE(at(1, 1, 40), released);
        QVERIFY(at(1, 1, 41) != released);
        QVERIFY(at(2, 1, 0) != held && at(3, 1, 0) != released);
        // An update of another universe repaints nothing.
        QTest::qWait(50);
        struct PaintCount : QObject {
            int n = 0;
            bool eventFilter(QObject*, QEvent* event) override {
                n += event->type() == QEvent::Paint ? 1 : 0;
                return false;
            }
        } paints;
        m_pGrid->installEventFilter(&paints);
        m_pGrid->Update(DmxChan{0, 1, 255, true});
        QTest::qWait(50);
        QCOMPARE(paints.n, 0);
        m_pGrid->Update(DmxChan{0, 0, 25, true});
        QTRY_COMPARE(paints.n, 1);
    }

    /// Sixteen thousand channels, 40 times a second.
    void load() {
        Peer peer;
        ChooseInterface();
        Corvane window;
        window.show();
        QTRY_VERIFY(window.IsAnswered());
        window.OnMenuChanged(3);
        // Two texts for each universe, as compact as a server would send them.
        QList<QByteArray> texts;
        for (int i = 0; i < 64; ++i) {
            texts += QString::fromStdString(
                         messages::Universe(i % 32, static_cast<unsigned char>(i < 32 ? 10 : 20), true))
                         .remove(QRegularExpression("\\s"))
                         .toUtf8();
        }
        QUdpSocket flood;
        const auto play = [&](int nSeconds) {
            double worst = 0;
            int nSent = 0;
            QElapsedTimer clock;
            for (clock.start(); clock.elapsed() < 1000 * nSeconds;) {
                // A few universes at a time, as the wire would bring them.
                for (const qint64 nDue = clock.elapsed() * 1280 / 1000; nSent < nDue; ++nSent) {
                    flood.writeDatagram(texts[nSent % 64], QHostAddress::LocalHost, 8094);
                }
                QElapsedTimer answer;
                answer.start();
                const int nBefore = window.Grid()->FirstChannel();
                QTest::mouseClick(window.Grid(), Qt::LeftButton, {}, window.Grid()->RightRect().center());
                QCoreApplication::processEvents();
                window.Grid()->repaint();
                worst = std::max(worst, static_cast<double>(answer.nsecsElapsed()) / 1e6);
                if (window.Grid()->FirstChannel() == nBefore) {
                    worst = 1e9;
                }
                QTest::qWait(1);
            }
            qInfo("%d universe messages in %d s, slowest click %.1f ms", nSent, nSeconds, worst);
            return worst;
        };
        play(1);
        const double before = ResidentMiB();
        const double worst = play(4);
        const double grown = ResidentMiB() - before;
        qInfo("memory grew by %.1f MiB", grown);
        QVERIFY(worst < 100);
        QVERIFY(grown < 8);
        QVERIFY(!window.IsConnectionLost());
        for (int i = 32; i < 64; ++i) {
            flood.writeDatagram(texts[i], QHostAddress::LocalHost, 8094);
            QTest::qWait(2);
        }
        const auto& levels = window.Grid()->Tables().levels;
        QTRY_VERIFY(std::all_of(levels.begin(), levels.end(), [](unsigned char uc) { return uc == 20; }));
        // Half a universe is never applied.
        peer.Send(texts[0].left(6000) + "!#(");
        peer.Send(texts[0].left(6000));
        QTest::qWait(50);
        QCOMPARE(int{levels[0]}, 20);
    }
};

QTEST_MAIN(TestChannels)
#include "tst_channels.moc"
