#include "device/color.h"
#include "device/command.h"
#include "widgets/artwork.h"
#include "widgets/ccolorcircle.h"
#include "widgets/ccolorpicker.h"
#include "widgets/ccommandwnd.h"
#include "widgets/colorarithmetic.h"
#include "widgets/csliderctrl.h"

#include <QtTest>

#include <algorithm>
#include <memory>

namespace {

QString Text(const RGBColor& c) {
    return QString("%1 %2 %3").arg(c.red).arg(c.green).arg(c.blue);
}
QString Text(const HSVColor& c) {
    return QString("%1 %2 %3").arg(c.hue).arg(c.saturation).arg(c.value);
}

}  // namespace

/// The colour page and all that is on it.
class TestColor : public QObject {
    Q_OBJECT

    std::unique_ptr<CColorPicker> m_pPage;
    QStringList m_told;

    CColorCircle* Wheel() const { return m_pPage->Wheel(); }

    /// What was told since the last call.
    QString Told() { return std::exchange(m_told, {}).join(", "); }

    static void Mouse(QWidget* pWidget, QEvent::Type type, const QPoint& at) {
        QMouseEvent event(type, at, Qt::LeftButton,
                          type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton, {});
        QCoreApplication::sendEvent(pWidget, &event);
    }

private slots:
    void init() {
        m_pPage = std::make_unique<CColorPicker>(nullptr);
        m_pPage->resize(704, 484);
        m_pPage->show();
        connect(m_pPage.get(), &CColorPicker::colorChanged, [this](int r, int g, int b, int w) {
            m_told += QString("%1 %2 %3 %4").arg(r).arg(g).arg(b).arg(w);
        });
        connect(Wheel(), &CColorCircle::colorStateChanged, [this](bool b) { m_told += b ? "on" : "off"; });
        m_told.clear();
    }

    void toRGB_data() {
        QTest::addColumn<QString>("rgb");
        for (const auto& [sHsv, sRgb] : {std::pair{"0 255 255", "255 0 0"},
                                         {"60 255 255", "255 255 0"},
                                         {"61 255 255", "250 255 0"},
                                         {"119 255 255", "4 255 0"},
                                         {"179 255 255", "0 255 250"},
                                         {"239 255 255", "0 4 255"},
                                         {"300 255 255", "255 0 255"},
                                         {"301 255 255", "255 0 250"},
                                         {"359 255 255", "255 0 4"},
                                         {"360 255 255", "255 0 0"},
                                         {"0 128 200", "200 99 99"},
                                         {"360 128 200", "200 99 99"},
                                         {"217 0 77", "77 77 77"}}) {
            QTest::newRow(sHsv) << QString(sRgb);
        }
    }

    void toRGB() {
        const auto hsv = QString(QTest::currentDataTag()).split(' ');
        QTEST(Text(HSVColor{hsv[0].toInt(), hsv[1].toInt(), hsv[2].toInt()}.toRGB()), "rgb");
    }

    void toHSV_data() {
        QTest::addColumn<QString>("hsv");
        for (const auto& [sRgb, sHsv] : {std::pair{"0 0 0", "0 0 0"},
                                         {"255 255 255", "0 0 255"},
                                         {"255 0 1", "359 255 255"},
                                         {"255 255 0", "60 255 255"},
                                         {"10 20 30", "210 170 30"},
                                         {"0 255 255", "180 255 255"}}) {
            QTest::newRow(sRgb) << QString(sHsv);
        }
    }

    void toHSV() {
        const auto rgb = QString(QTest::currentDataTag()).split(' ');
        QTEST(Text(RGBColor{rgb[0].toInt(), rgb[1].toInt(), rgb[2].toInt()}.toHSV()), "hsv");
    }

    void wholeDomain() {
        const auto order = [](const RGBColor& c) {
            return std::array{c.red < c.green, c.green < c.blue, c.blue < c.red};
        };
        for (int nHue = 0; nHue <= 360; ++nHue) {
            for (int nSaturation = 0; nSaturation < 256; ++nSaturation) {
                for (const int nValue : {255, 254, 100, 1, 0}) {
                    const RGBColor rgb = HSVColor{nHue, nSaturation, nValue}.toRGB();
                    const auto [nMin, nMax] = std::minmax({rgb.red, rgb.green, rgb.blue});
                    QVERIFY2(nMin >= 0 && nMax == nValue, qPrintable(Text(rgb)));
                    const HSVColor back = rgb.toHSV();
                    QCOMPARE(back.value, nValue);
                    QVERIFY(back.hue >= 0 && back.hue < 360 && back.saturation >= 0 &&
                            back.saturation <= 255);
                    // Truncated once more, but no two parts change places.
                    const RGBColor again = back.toRGB();
                    for (std::size_t i = 0; i < 3; ++i) {
                        QVERIFY2(!order(again).at(i) || order(rgb).at(i),
                                 qPrintable(Text(rgb) + " -> " + Text(again)));
                    }
                }
            }
        }
    }

    void whiteLevels() {
        const auto levels = [](unsigned char r, unsigned char g, unsigned char b) {
            return QString("%1 %2 %3")
                .arg(GetWValue(r, g, b, wcmLinear))
                .arg(GetWValue(r, g, b, wcmThreshold))
                .arg(GetWValue(QColor(r, g, b), wcmExponential));
        };
        QCOMPARE(levels(255, 255, 255), QString("255 255 255"));
        QCOMPARE(levels(0, 255, 0), QString("0 0 0"));
        QCOMPARE(levels(0, 0, 0), QString("0 0 0"));
        QCOMPARE(levels(255, 128, 128), QString("128 1 12"));
        QCOMPARE(levels(128, 128, 128), QString("128 1 12"));
        QCOMPARE(levels(10, 20, 30), QString("10 0 0"));
        QCOMPARE(levels(200, 100, 50), QString("50 0 2"));
        QCOMPARE(GetWValue(255, 128, 128, wcmLinearToo), 128);
        for (const eWChanMode mode : {wcmLinear, wcmThreshold, wcmExponential}) {
            for (int nPale = 1; nPale < 256; ++nPale) {
                const auto at = [mode](int n) {
                    return GetWValue(255, static_cast<unsigned char>(n), static_cast<unsigned char>(n), mode);
                };
                QVERIFY(at(nPale) >= at(nPale - 1));
            }
        }
    }

    void points() {
        const QPoint centre(50, 50);
        QCOMPARE(PtFromAngle(0, 100, 255, centre), QPoint(150, 50));
        QCOMPARE(PtFromAngle(90, 100, 255, centre), QPoint(50, -50));
        QCOMPARE(AngleFromPoint(centre, centre), 0.0);
        QCOMPARE(AngleFromPoint({50, 10}, centre), M_PI / 2);
        QCOMPARE(Distance({0, 0}, {3, 4}), 5);
        QCOMPARE(Distance({1, 1}, {2, 2}), 1);
    }

    /// The picture under the pointer is what a click sends.
    void wheelPicture() {
        for (const int nScale : {1, 2}) {
            const QImage wheel(nScale == 1 ? ":/Corvane/Images/ColorPicker.png"
                                           : ":/Corvane/Images/ColorPicker@2x.png");
            QCOMPARE(wheel.size(), QSize(380, 380) * nScale);
            QCOMPARE(qAlpha(wheel.pixel(0, 0)), 0);
            for (int y = 0; y < 380; y += 7) {
                for (int x = 0; x < 380; x += 7) {
                    const QPoint point(20 + x, 20 + y);
                    if (Distance(point, Wheel()->Centre()) > 187) {
                        continue;
                    }
                    QTest::mouseClick(Wheel(), Qt::LeftButton, {}, point);
                    QCOMPARE(wheel.pixelColor(x * nScale, y * nScale), Wheel()->GetColor());
                }
            }
        }
    }

    void slider() {
        CSlider slider(slcRed, nullptr);
        slider.resize(34, 234);  // a track of 200
        QSignalSpy told(&slider, &CSlider::valueChanged);
        QCOMPARE(slider.GetSliderRect(), QRect(QPoint(0, 18), QPoint(33, 217)));
        const auto last = [&told] { return told.takeLast()[0].toInt(); };
        for (const auto& [nY, nLevel] :
             {std::pair{18, 253}, {17, 255}, {217, 0}, {218, 0}, {117, 127}, {117, 127}}) {
            QTest::mouseClick(&slider, Qt::LeftButton, {}, QPoint(5, nY));
            QCOMPARE(told.count(), 1);  // told again even when it is the same
            QCOMPARE(last(), nLevel);
        }
        Mouse(&slider, QEvent::MouseButtonPress, {5, 100});
        QCOMPARE(QWidget::mouseGrabber(), &slider);
        Mouse(&slider, QEvent::MouseMove, {-300, -500});
        QCOMPARE(last(), 255);
        Mouse(&slider, QEvent::MouseMove, {300, 900});
        QCOMPARE(last(), 0);
        Mouse(&slider, QEvent::MouseButtonRelease, {300, 900});
        QVERIFY(QWidget::mouseGrabber() == nullptr);
        told.clear();
        Mouse(&slider, QEvent::MouseMove, {5, 100});
        slider.SetLevel(77);
        QCOMPARE(told.count(), 0);
        // Nothing is filled at 0; whatever the level, nothing is painted beyond the track's ends.
        slider.SetLevel(0);
        const QImage empty = slider.grab().toImage();
        for (const int nLevel : {255, 256, 100000, 128, -5}) {
            slider.SetLevel(nLevel);
            const QImage image = slider.grab().toImage();
            QCOMPARE(image.pixelColor(17, 150) == empty.pixelColor(17, 150), nLevel < 0);
            slider.SetLevel(std::clamp(nLevel, 0, 255));
            QVERIFY(slider.grab().toImage() == image);
        }
    }

    void sliderControl() {
        CSliderCtrl control(slcGrey, true, nullptr);
        CSliderCtrl plain(slcBlue, false, nullptr);
        QSignalSpy told(&control, &CSliderCtrl::valueChanged);
        QSignalSpy toldPlain(&plain, &CSliderCtrl::valueChanged);
        for (CSliderCtrl* pControl : {&control, &plain}) {
            pControl->resize(54, 400);
            pControl->show();
        }
        QCOMPARE(control.Slider()->geometry(), QRect(QPoint(10, 54), QPoint(43, 339)));
        QCOMPARE(plain.Slider()->geometry(), QRect(QPoint(10, 54), QPoint(43, 399)));
        control.SetValue(40);
        QCOMPARE(told.count(), 0);
        for (const QPoint at : {QPoint(7, 25), QPoint(45, 44), QPoint(7, 350), QPoint(45, 369)}) {
            QTest::mouseClick(&control, Qt::LeftButton, {}, at);
            QTest::mouseClick(&plain, Qt::LeftButton, {}, at);
        }
        for (const QPoint at :
             {QPoint(6, 30), QPoint(46, 30), QPoint(20, 45), QPoint(20, 349), QPoint(20, 370)}) {
            QTest::mouseClick(&control, Qt::LeftButton, {}, at);
        }
        QCOMPARE(told, QList<QVariantList>({{255}, {255}, {128}, {128}}));
        QCOMPARE(toldPlain, QList<QVariantList>({{255}, {255}}));
        QTest::mouseClick(control.Slider(), Qt::LeftButton, {}, QPoint(5, 0));
        QCOMPARE(told.last()[0].toInt(), 255);
    }

    void commands() {
        CCommandWnd* pCommands = m_pPage->Commands();
        QStringList told;
        connect(pCommands, &CCommandWnd::mousePressed, [&] { told += "press"; });
        connect(pCommands, &CCommandWnd::whiteChanged, [&](bool b) { told += b ? "white" : "no white"; });
        connect(pCommands, &CCommandWnd::blackChanged, [&](bool b) { told += b ? "black" : "no black"; });
        connect(pCommands, &CCommandWnd::nextChanged, [&](bool b) { told += b ? "next" : "no next"; });
        connect(pCommands, &CCommandWnd::pauseChanged, [&](bool b) { told += b ? "pause" : "no pause"; });
        const auto press = [&](const QPoint& at) {
            told.clear();
            QTest::mousePress(pCommands, Qt::LeftButton, {}, at);
            return told.join(", ");
        };
        const auto shown = [&] {
            QString s;
            for (int i = 0; i < CCommandWnd::Buttons; ++i) {
                s += pCommands->IsOn(static_cast<CCommandWnd::Button>(i)) ? '1' : '0';
            }
            return s;
        };
        QCOMPARE(press({25, 10}), QString("press, white"));
        QCOMPARE(press({84, 149}), QString("press, black"));
        QCOMPARE(shown(), QString("0100"));
        QCOMPARE(press({84, 69}), QString("press, white"));
        QCOMPARE(press({50, 30}), QString("press, no white"));
        QCOMPARE(shown(), QString("0000"));
        QCOMPARE(press({50, 280}), QString("press, pause"));
        QCOMPARE(press({50, 200}), QString("press, next"));
        QCOMPARE(shown(), QString("0011"));
        pCommands->Update(Command{true, false, false, true, false, 0, 0});
        QCOMPARE(shown(), QString("1110"));
        pCommands->ReleaseCommands();
        QCOMPARE(shown(), QString("0010"));
        told.clear();
        QTest::mouseRelease(pCommands, Qt::LeftButton);
        QCOMPARE(shown(), QString("0000"));
        QCOMPARE(told, QStringList());
        for (const QPoint miss : {QPoint(24, 10), QPoint(85, 10), QPoint(50, 70), QPoint(50, 310)}) {
            QCOMPARE(press(miss), QString("press"));
        }
    }

    void picking() {
        QSignalSpy presses(Wheel(), &CColorCircle::mousePressed);
        QCOMPARE(Wheel()->size(), QSize(420, 420));
        QCOMPARE(Wheel()->PreviewRect(), QRect(QPoint(349, 10), QPoint(408, 69)));
        QCOMPARE(Wheel()->SlidersRect(), QRect(QPoint(10, 374), QPoint(69, 408)));
        QCOMPARE(Wheel()->CommandsRect(), QRect(QPoint(349, 374), QPoint(408, 408)));
        Mouse(Wheel(), QEvent::MouseButtonPress, {400 - 1, 210});
        QCOMPARE(Told(), QString("255 2 2 0"));  // 189 pixels of 190
        QVERIFY(Wheel()->IsOn());
        QCOMPARE(Wheel()->Marker(), PtFromAngle(0, 253, 190, {210, 210}));
        Mouse(Wheel(), QEvent::MouseMove, {210, -4000});  // beyond the rim
        QCOMPARE(Told(), QString("127 255 0 0"));
        QCOMPARE(m_pPage->Green()->Value(), 255);
        QCOMPARE(m_pPage->Red()->Value(), 127);
        m_pPage->Red()->valueChanged(3);  // while the wheel is dragged, it decides
        QCOMPARE(Told(), QString());
        Mouse(Wheel(), QEvent::MouseMove, {210, 210});
        QCOMPARE(Told(), QString("255 255 255 0"));
        Mouse(Wheel(), QEvent::MouseButtonRelease, {210, 210});
        Mouse(Wheel(), QEvent::MouseMove, {300, 210});
        // A corner of the square is no part of the wheel, nor is a drag from there or from the switch.
        for (const QPoint start : {QPoint(22, 380), QPoint(22, 22)}) {
            Told();
            Mouse(Wheel(), QEvent::MouseButtonPress, start);
            const QString sSwitched = Told();
            QVERIFY(sSwitched == (start.y() == 22 ? "off" : ""));
            Mouse(Wheel(), QEvent::MouseMove, {300, 210});
            Mouse(Wheel(), QEvent::MouseButtonRelease, {300, 210});
            QCOMPARE(Told(), QString());
        }
        QTest::mouseClick(Wheel(), Qt::LeftButton, {}, QPoint(79, 35));
        QCOMPARE(Told(), QString("255 255 255 0"));  // switched on by sending
        QCOMPARE(presses.count(), 4);
    }

    void onlyWhatChangedIsRepainted() {
        QTest::mouseClick(Wheel(), Qt::LeftButton, {}, QPoint(300, 210));
        QTest::qWait(20);
        const QImage before = m_pPage->grab().toImage();
        QTest::mouseClick(Wheel(), Qt::LeftButton, {}, QPoint(210, 300));
        QTest::qWait(20);
        const QImage after = m_pPage->grab().toImage();
        const QPoint origin = Wheel()->pos();
        QVERIFY(before.pixel(origin + QPoint(378, 40)) != after.pixel(origin + QPoint(378, 40)));
        QCOMPARE(QColor(after.pixel(origin + QPoint(378, 40))), Wheel()->GetColor());
        // Where the old marker was there is wheel again.
        QCOMPARE(QColor(after.pixel(origin + QPoint(300 - 4, 210))),
                 QColor(QImage(":/Corvane/Images/ColorPicker.png").pixel(300 - 4 - 20, 190)));
        // One move of a drag, with its repaint.
        Mouse(Wheel(), QEvent::MouseButtonPress, {300, 210});
        std::vector<double> times;
        for (int i = 0; i < 500; ++i) {
            QElapsedTimer timer;
            timer.start();
            Mouse(Wheel(), QEvent::MouseMove, {210 + i % 150, 60 + i * 7 % 290});
            QCoreApplication::sendPostedEvents();
            times.push_back(static_cast<double>(timer.nsecsElapsed()) / 1e6);
        }
        Mouse(Wheel(), QEvent::MouseButtonRelease, {300, 210});
        std::sort(times.begin(), times.end());
        qInfo("one move: median %.3f ms, worst %.3f ms", times[times.size() / 2], times.back());
        QVERIFY(times[times.size() / 2] < 2.0);
    }

    void levels_data() {
        QTest::addColumn<bool>("rgbw");
        QTest::addColumn<QString>("white");  // told when the white control goes to 0
        QTest::newRow("white dims") << false << "0 0 0 7";
        QTest::newRow("white is a channel") << true << "10 20 30 0";
    }

    void levels() {
        QFETCH(bool, rgbw);
        m_pPage->Update(Color{0, 0, 0, 7, true, true}, {});  // a white level that is kept when the mode goes
        m_pPage->Update(Color{9, 20, 30, 7, rgbw, false}, {});
        QCOMPARE(Told(), QString());
        QVERIFY(!Wheel()->IsOn());
        QCOMPARE(m_pPage->White()->Value(), rgbw ? 7 : 30);
        emit m_pPage->Red()->valueChanged(10);
        QCOMPARE(Told(), QString("10 20 30 7"));
        QVERIFY(Wheel()->IsOn());
        const QPoint marker = Wheel()->Marker();
        emit m_pPage->White()->valueChanged(0);
        QTEST(Told(), "white");
        QCOMPARE(Wheel()->Marker(), marker);
        emit m_pPage->Blue()->valueChanged(200);
        QCOMPARE(Told(), rgbw ? QString("10 20 200 0") : QString("0 0 200 7"));
        QCOMPARE(m_pPage->White()->Value(), rgbw ? 7 : 200);
    }

    void serverState() {
        for (const int nPercent : {0, 1, 50, 99, 100}) {
            m_pPage->Update({}, Command{false, false, false, false, true, nPercent, nPercent});
            const int nLevel = nPercent == 0 ? 0 : nPercent * 255 / 100 + 1;
            QCOMPARE(m_pPage->Dimmer()->Value(), nLevel);
            QCOMPARE(m_pPage->Speed()->Value(), nLevel);
            QCOMPARE(nLevel * 100 / 255, nPercent);  // comes back as itself
        }
        QVERIFY(m_pPage->Commands()->IsOn(CCommandWnd::Pause));
        const int worst[] = {INT_MIN, -1, 256, INT_MAX};
        for (const int n : worst) {
            m_pPage->Update(Color{n, n, n, n, true, true}, Command{false, false, false, false, false, n, n});
            QCOMPARE(m_pPage->Dimmer()->Value(), n < 0 ? 0 : 256);
            QCOMPARE(m_pPage->White()->Value(), n < 0 ? 0 : 255);
            QCOMPARE(Wheel()->GetColor(), QColor(n < 0 ? Qt::black : Qt::white));
            m_pPage->grab();
        }
        QCOMPARE(Told(), QString());
        m_pPage->ReleaseCommands();
        QCOMPARE(Told(), QString("off"));
        m_pPage->ReleaseCommands();
        QCOMPARE(Told(), QString());
    }

    void modes() {
        for (const bool bCommands : {true, false, true}) {
            QTest::mouseClick(Wheel(), Qt::LeftButton, {},
                              (bCommands ? Wheel()->SlidersRect() : Wheel()->CommandsRect()).center());
            QCOMPARE(m_pPage->Commands()->isVisible(), bCommands);
            QCOMPARE(m_pPage->Dimmer()->isVisible(), bCommands);
            QCOMPARE(m_pPage->Red()->isVisible(), !bCommands);
            QCOMPARE(m_pPage->White()->isVisible(), !bCommands);
            QTest::qWait(0);
            QVERIFY(bCommands ? m_pPage->Dimmer()->x() < m_pPage->Speed()->x()
                              : m_pPage->Red()->x() < m_pPage->White()->x());
        }
        QCOMPARE(Told(), QString());
    }
};

QTEST_MAIN(TestColor)
#include "tst_color.moc"
