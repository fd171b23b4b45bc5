#include "tests/remote.h"
#include "widgets/artwork.h"
#include "widgets/colorarithmetic.h"
#include "widgets/cscenelistwnd.h"
#include "widgets/iconcatalogue.h"

/// The lists of scenes and programs, the colour page, the channels page and all that is on them.
class TestPages : public QObject {
    Q_OBJECT

    std::unique_ptr<CColorPicker> m_pPage;
    QStringList m_told;

    CColorCircle* Wheel() const { return m_pPage->Wheel(); }

    /// From now on every sending of a signal is noted under a name, with its values.
    template <typename Sender, typename Signal>
    void Note(const Sender* pSender, Signal signal, const QString& sName) {
        connect(pSender, signal, this, [this, sName](auto... values) {
            m_told += QStringList{sName, QString::number(values)...}.join(' ');
        });
    }

    /// What was noted since the last call.
    QString Told() { return std::exchange(m_told, {}).join(", "); }

    static void Clicks(QWidget* pWidget, std::initializer_list<QPoint> points) {
        for (const QPoint& at : points) {
            Click(pWidget, at);
        }
    }

    std::unique_ptr<ChannelsGrid> m_pGrid;

    void Press(const QRect& rect) { Click(m_pGrid.get(), rect.center()); }

    /// Level of a channel, and whether it is held.
    std::pair<int, bool> At(int nUniverse, int nChannel) const {
        const auto at = Universes::At(nUniverse, nChannel);
        return {m_pGrid->Tables().levels.at(at), m_pGrid->Tables().states.at(at)};
    }

    CIniFile m_settings;
    std::unique_ptr<CSceneList> m_pList;

    /// Named alike, with ids from 10.
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
    void init() {
        m_pPage = std::make_unique<CColorPicker>(nullptr);
        m_pPage->resize(704, 484);
        m_pPage->show();
        Note(m_pPage.get(), &CColorPicker::colorChanged, "color");
        Note(Wheel(), &CColorCircle::colorStateChanged, "state");
        Note(Wheel(), &CColorCircle::mousePressed, "press");
        m_told.clear();
        m_pGrid = std::make_unique<ChannelsGrid>(nullptr);
        m_pGrid->resize(704, 484);
        m_pGrid->show();
    }

    void conversions() {
        const auto text = [](const auto& color) {
            const auto [a, b, c] = color;
            return QString("%1 %2 %3").arg(a).arg(b).arg(c);
        };
        for (const QString sRow :
             {"1 255 255 > 255 4 0", "61 255 255 > 250 255 0", "119 255 255 > 4 255 0",
              "179 255 255 > 0 255 250", "239 255 255 > 0 4 255", "299 255 255 > 250 0 255",
              "301 255 255 > 255 0 250", "359 255 255 > 255 0 4", "360 255 255 > 255 0 0",
              "0 128 200 > 200 99 99",
              "6 170 5 > 5 2 1",  // fused operations would give 5 1 1
              "217 0 77 > 77 77 77", "0 0 0 < 0 0 0", "255 255 255 < 0 0 255", "255 0 1 < 359 255 255",
              "10 20 30 < 210 170 30", "0 255 255 < 180 255 255"}) {
            const auto at = [&sRow](int i) { return sRow.section(' ', i, i).toInt(); };
            QCOMPARE(sRow.contains('>') ? text(HSVColor{at(0), at(1), at(2)}.toRGB())
                                        : text(RGBColor{at(0), at(1), at(2)}.toHSV()),
                     sRow.section(' ', 4));
        }
    }

    /// The picture under the pointer is what a click sends.
    void wheelPicture() {
        const QImage sharp(":/Corvane/Images/ColorPicker@2x.png");
        QVERIFY(sharp.size() == QSize(760, 760) && qAlpha(sharp.pixel(0, 0)) == 0);
        const QImage shown = Wheel()->grab().toImage();
        for (int i = 0; i < 55 * 55; ++i) {
            const QPoint pixel(i % 55 * 7, i / 55 * 7);
            const double fromCentre = Distance(pixel, {190, 190});
            if (fromCentre <= 187 && fromCentre >= 6) {  // there lies the marker
                Click(Wheel(), pixel + QPoint(20, 20));
                QCOMPARE(shown.pixelColor(pixel + QPoint(20, 20)), Wheel()->GetColor());
                QCOMPARE(sharp.pixelColor(pixel * 2), Wheel()->GetColor());
            }
        }
    }

    void slider() {
        CSlider slider(slcRed, nullptr);
        slider.resize(34, 234);  // a track of 200
        Note(&slider, &CSlider::valueChanged, "level");
        Clicks(&slider, {{5, 18}, {5, 17}, {5, 217}, {5, 218}, {5, 117}});
        Drag(&slider, {5, 100, 300, 900});
        Mouse(&slider, QEvent::MouseMove, {5, 100});
        QVERIFY(QWidget::mouseGrabber() == nullptr);
        QCOMPARE(Told(), QString("level 253, level 255, level 0, level 0, level 127, level 149, level 0"));
        // Nothing is filled at 0; whatever the level, nothing is painted beyond the track's ends.
        const auto image = [&slider](int nLevel) { return slider.SetLevel(nLevel), slider.grab().toImage(); };
        QVERIFY(image(128).pixelColor(17, 150) != image(0).pixelColor(17, 150));
        QVERIFY(image(100000) == image(255) && image(-5) == image(0));
    }

    void sliderControl() {
        for (const bool bHalf : {true, false}) {
            CSliderCtrl control(slcGrey, bHalf, nullptr);
            Note(&control, &CSliderCtrl::valueChanged, "level");
            control.resize(54, 400);
            control.show();
            control.SetValue(40);
            Clicks(&control, {{7, 25}, {45, 44}});
            QCOMPARE(control.Value(), 255);
            Clicks(&control, {{7, 350}, {45, 369}});
            Clicks(&control, {{6, 30}, {46, 30}, {20, 45}, {20, 349}, {20, 370}});  // just beside them
            QCOMPARE(control.Value(), bHalf ? 128 : 255);
            QCOMPARE(Told(), QString("level 255, level 255") + (bHalf ? ", level 128, level 128" : ""));
        }
    }

    void commands() {
        CCommandWnd* pCommands = m_pPage->Commands();
        Note(pCommands, &CCommandWnd::mousePressed, "press");
        Note(pCommands, &CCommandWnd::whiteChanged, "white");
        Note(pCommands, &CCommandWnd::blackChanged, "black");
        Note(pCommands, &CCommandWnd::nextChanged, "next");
        Clicks(pCommands, {{84, 149}, {25, 10}});
        QTest::mousePress(pCommands, Qt::LeftButton, {}, {50, 200});
        pCommands->Update(Command());
        QVERIFY(pCommands->IsOn(CCommandWnd::Next));  // it is the hand's
        QCOMPARE(Told(), QString("press, black 1, press, white 1, press, next 1"));
        Clicks(pCommands, {{24, 10}, {85, 10}, {50, 70}, {50, 310}});  // just beside them
        QCOMPARE(Told(), QString("press, press, press, press"));
    }

    void picking() {
        Mouse(Wheel(), QEvent::MouseButtonPress, {399, 210});  // 189 pixels of 190
        QVERIFY(Wheel()->IsOn() && Wheel()->Marker() == QPoint(398, 210));
        Mouse(Wheel(), QEvent::MouseMove, {210, -4000});  // beyond the rim
        QVERIFY(Wheel()->Marker() == QPoint(210, 20) && m_pPage->Red()->Value() == 127);
        QCOMPARE(m_pPage->Green()->Value(), 255);
        emit m_pPage->Red()->valueChanged(3);  // while the wheel is dragged, it decides
        Mouse(Wheel(), QEvent::MouseMove, {210, 210});
        Mouse(Wheel(), QEvent::MouseButtonRelease, {210, 210});
        Mouse(Wheel(), QEvent::MouseMove, {300, 210});
        QCOMPARE(Told(), QString("press, color 255 2 2 0, color 127 255 0 0, color 255 255 255 0"));
        // A corner of the square is no part of the wheel, nor is a drag from there or from the switch.
        Drag(Wheel(), {79, 35, 300, 210});
        Drag(Wheel(), {100, 30, 300, 210});
        Click(Wheel(), {22, 22});  // switched on by sending
        QCOMPARE(Told(), QString("press, state 0, press, press, color 255 255 255 0"));
        // A pick is bright, however dark the colour was that the server reported.
        m_pPage->Update(Color{9, 0, 0, 0, false, true}, {});
        Click(Wheel(), {399, 210});
        QCOMPARE(Told(), QString("press, color 255 2 2 0"));
    }

    /// In one mode the white control dims the colour, in the other it is a channel of its own.
    void whiteModes() {
        for (const bool bRgbw : {false, true}) {
            m_pPage->Update(Color{0, 0, 0, 7, true, true}, {});  // a white level, kept when the mode goes
            m_pPage->Update(Color{9, 9, 30, 7, bRgbw, false}, {});
            QVERIFY(!Wheel()->IsOn() && m_pPage->White()->Value() == (bRgbw ? 7 : 30));
            emit m_pPage->Red()->valueChanged(10);
            emit m_pPage->Green()->valueChanged(20);
            const QPoint marker = Wheel()->Marker();
            emit m_pPage->White()->valueChanged(0);
            QCOMPARE(Wheel()->Marker(), marker);
            emit m_pPage->Blue()->valueChanged(200);
            QCOMPARE(Told(), "color 10 9 30 7, " +
                                 QString(bRgbw ? "color 10 20 30 7, color 10 20 30 0, color 10 20 200 0"
                                               : "color 10 20 30 7, color 0 0 0 7, color 0 0 200 7"));
            QCOMPARE(m_pPage->White()->Value(), bRgbw ? 7 : 200);
        }
    }

    void serverState() {
        for (const auto& [n, nDimmer, nWhite] : {std::tuple{0, 0, 0},
                                                 {1, 3, 1},
                                                 {50, 128, 50},
                                                 {99, 253, 99},
                                                 {100, 256, 100},
                                                 {256, 256, 255},
                                                 {INT_MIN, 0, 0},
                                                 {-1, 0, 0},
                                                 {INT_MAX, 256, 255}}) {
            m_pPage->Update(Color{n, n, n, n, true, true}, Command{false, false, false, false, false, n, n});
            QCOMPARE(m_pPage->Dimmer()->Value(), nDimmer);
            QCOMPARE(m_pPage->Speed()->Value(), nDimmer);
            QCOMPARE(m_pPage->White()->Value(), nWhite);
            QCOMPARE(Wheel()->GetColor(), QColor(nWhite, nWhite, nWhite));
            m_pPage->grab();
        }
        m_pPage->ReleaseCommands();
        m_pPage->ReleaseCommands();
        QCOMPARE(Told(), QString("state 0"));
    }

    void pagesAndUniversesGoRound() {
        // Each field is pressed just beside its ends, then in its last pixel.
        const auto press = [this](int nLeft) {
            Clicks(m_pGrid.get(), {{nLeft - 1, 10}, {nLeft + 32, 41}, {nLeft + 31, 41}});
            return std::pair(m_pGrid->CurrentUniverse(), m_pGrid->FirstChannel());
        };
        for (int i = 1; i <= 16; ++i) {
            QCOMPARE(press(661), std::pair(0, i % 16 * 32 + 1));
        }
        for (const auto& [nLeft, nUniverse] :
             {std::pair{10, 0}, {292, 31}, {292, 30}, {379, 31}, {379, 0}, {379, 1}}) {
            QCOMPARE(press(nLeft), std::pair(nUniverse, 481));
        }
        QVERIFY(Paints(m_pGrid.get(), "2") && Paints(m_pGrid.get(), "#481") && Paints(m_pGrid.get(), "#512"));
    }

    void editor() {
        QSignalSpy presses(m_pGrid.get(), &ChannelsGrid::mousePressed);
        Press(m_pGrid->PartRect(ChannelsGrid::UnivPlus));
        Press(m_pGrid->PartRect(ChannelsGrid::RightArrow));
        m_pGrid->Update(DmxChan{33, 1, 200, true});
        Press(m_pGrid->CellRect(1));
        CChannelSlider* pEditor = m_pGrid->Editor();
        QCOMPARE(pEditor->geometry(), QRect(QPoint(302, 42), QPoint(401, 441)));
        QVERIFY(pEditor->Control()->Value() == 200 && Paints(pEditor, "200") && Paints(pEditor, "#34"));
        // While it is open the grid takes no press, though it tells of each.
        Press(m_pGrid->PartRect(ChannelsGrid::LeftArrow));
        Press(m_pGrid->CellRect(8));
        QCOMPARE(presses.count(), 5);
        QVERIFY(m_pGrid->FirstChannel() == 33 && pEditor->Channel() == 34);
        QSignalSpy ok(pEditor, &CChannelSlider::ok);
        for (auto* pButton : pEditor->findChildren<QPushButton*>()) {
            const bool bOk = pButton->text() == "OK";
            Press(m_pGrid->CellRect(1));
            pEditor->Control()->SetValue(bOk ? 90 : 17);
            QTest::mousePress(pButton, Qt::LeftButton);
            QVERIFY(!pEditor->isVisible());
            QCOMPARE(At(1, 33), std::pair(bOk ? 90 : 17, bOk));
            QCOMPARE(At(0, 33), std::pair(0, false));
        }
        QCOMPARE(ok, QList<QVariantList>({{90}}));
    }

    void updates() {
        const auto& [levels, states] = m_pGrid->Tables();
        for (const QPoint none : {QPoint(0, 512), {0, -1}, {32, 0}, {-1, 0}, {INT_MIN, INT_MAX}}) {
            m_pGrid->Update(DmxChan{none.y(), none.x(), 9, true});
            m_pGrid->Update(none.x(), none.y(), 5, 9, 9, 9, 9, true);
            m_pGrid->Update(none.x() == 0 ? 33 : none.x(), 9, true);
        }
        QCOMPARE(std::count(states.begin(), states.end(), true), 0);
        m_pGrid->Update(DmxChan{511, 31, 257, true});
        QCOMPARE(At(31, 511), std::pair(1, true));
        for (const bool bHeld : {true, false}) {
            m_pGrid->Update(5, 200, bHeld);
            QCOMPARE(std::count(states.begin(), states.end(), true), bHeld ? 513 : 1);
            QCOMPARE(std::count(levels.begin(), levels.end(), bHeld ? 200 : 0), bHeld ? 512 : 32 * 512 - 1);
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

    void cells() {
        QCOMPARE(m_pGrid->CellRect(31), QRect(QPoint(617, 377), QPoint(704, 484)));
        m_pGrid->Update(DmxChan{0, 0, 255, true});
        m_pGrid->Update(DmxChan{1, 0, 100, false});
        m_pGrid->Update(DmxChan{2, 0, 2, true});
        // Of 108 rows, 255 fills all below the outline, 100 fills 41 and 2 none.
        const QImage image = m_pGrid->grab().toImage();
        const auto shows = [&image](int nX, int nY) { return image.pixelColor(nX, nY).name(); };
        QVERIFY(shows(1, 110) == "#a0a0a0" && shows(2, 53) == "#a0a0a0");
        QVERIFY(shows(2, 54) == "#64a0ff" && shows(2, 160) == "#64a0ff" && shows(178, 160) != "#64a0ff");
        QVERIFY(shows(90, 120) == "#c8c8c8" && shows(90, 160) == "#c8c8c8" && shows(90, 119) != "#c8c8c8");
    }

    void presses() {
        // The list and where it is pressed; what runs then, from 11, and what is told: group, id, state.
        for (const QStringList& row : Table(R"(
scenes 148 52 => 10 press 0,10,1 => on, its group goes off
scenes 148 53 => 12 press 0,12,1
scenes 149 0 => press 0,11,0 => off, others stay
scenes 297 52 => press 0,11,0
scenes 298 5 => 11 press
programs 0 1 => 10 11 press 0,10,1 => programs exclude nothing
)")) {
            Open(Scenes(4), row[0].startsWith("scenes"));
            m_pList->Update(Scene{"", 11, 0, 0, true}, true);
            QString sTold;
            connect(m_pList.get(), &CSceneList::mousePressed, [&] { sTold += " press"; });
            connect(m_pList.get(), &CSceneList::stateChanged, [&](int iArea, int nId, bool bState) {
                sTold += QString(" %1,%2,%3").arg(iArea).arg(nId).arg(int{bState});
            });
            Click(m_pList.get(), {row[0].section(' ', 1, 1).toInt(), row[0].section(' ', 2, 2).toInt()});
            QCOMPARE((Running(m_pList.get()) + sTold).trimmed(), row[1]);
        }
        // Group -1 excludes too.
        Open(Scenes(3, -1) + Scenes(1, 2));  // the last repeats the first's id
        for (const auto& [nId, bExclusive, pRuns] :
             {std::tuple{10, true, "10"}, {12, false, "10 12"}, {11, true, "11"}, {99, true, "11"}}) {
            m_pList->Update(Scene{"", nId, -1, 0, true}, bExclusive);
            QCOMPARE(Running(m_pList.get()), QString(pRuns));
        }
    }

    void tiles() {
        for (const bool bScenes : {true, false}) {
            Open(Scenes(3), bScenes);
            m_pList->Update(Scene{"", 11, 0, 0, true}, true);
            const QImage image = m_pList->grab().toImage();
            for (const QPoint at : {QPoint(0, 0), {149, 20}, {298, 20}, {20, 53}, {20, 106}}) {
                QCOMPARE(image.pixelColor(at), QColor("#b4b4b4"));  // the outline
            }
            const QColor on(bScenes ? "#64a0ff" : "#00ff00");  // the second tile runs
            QVERIFY(image.pixelColor(150, 1) == on && image.pixelColor(297, 52) == on &&
                    image.pixelColor(1, 1) != on);
            QVERIFY(Paints(m_pList.get(), "#1.10") && Paints(m_pList.get(), "#1.12"));
        }
    }

    /// The tile that the keys have come to is the same scene in another list, or none; they open its menu,
    /// too.
    void keys() {
        const auto scenes = Scenes(3);
        Open(scenes);
        QVERIFY(QTest::qWaitForWindowActive(m_pList.get()));
        QSignalSpy icons(m_pList.get(), &CSceneList::iconChanged);
        const auto press = [this](Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
            QTest::keyClick(m_pList.get(), key, modifiers);
            return Running(m_pList.get());
        };
        press(Qt::Key_Right);  // brings the ring
        press(Qt::Key_Right);
        m_pList->Update({scenes[2], scenes[0], scenes[1]}, m_settings);
        QCOMPARE(press(Qt::Key_Space), QString("11"));
        ChooseNext(3);
        press(Qt::Key_Menu);
        ChooseNext(4);
        press(Qt::Key_F10, Qt::ShiftModifier);
        QVERIFY(icons.size() == 2 && icons[0][0] == 11 && icons[1][0] == 11 && m_pList->HasRing());
        m_pList->Update(Scenes(1), m_settings);
        QVERIFY(!m_pList->HasRing());
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
        QCOMPARE(window.grab().toImage().pixelColor(0, 2), QColor(180, 180, 180));  // of a tile half in sight
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
        QCOMPARE(shown(0), "caf\u00E9" + catalogue::IconLists()[0][0] + "#787878");
        QCOMPARE(shown(1), QString("Mineicon#ff0000"));
        m_pList->Update(Scene{"", 10, 0, 0, false}, true);
        const QImage name = m_pList->grab(m_pList->PartRect(1).adjusted(60, 0, -40, 0)).toImage();
        QVERIFY(name.createMaskFromColor(qRgb(255, 0, 0)) != name.createMaskFromColor(0));
        Open({});
        Open({Scene{"x", 10, -1, 0, false}}, false);  // a program, which is not the scene of its number
        settings.SaveProgramParams(10, "Loop", "", {});
        m_pList->Update({Scene{"x", 10, -1, 0, false}}, settings);
        QCOMPARE(Item(0).name, QString("Loop"));
    }

    /// What a server names its scenes is neither painted to its end nor part of the settings.
    void oddNames() {
        const QString sOutside = m_settings.path + ".png";
        QVERIFY(artwork::Picture(":/Corvane/Images/Text.png").save(sOutside));
        CIniFile settings;
        settings.SaveSceneParams(7, "", sOutside, {});
        settings.SaveSceneParams(8, "", ":/Corvane/Images/Text.png", {});
        Open({});
        m_pList->Update({Scene{"Fog\nPwdState=1\t2\u2028", 7, INT_MAX, 0, false}, Scene{"", 8, -1, 0, false}},
                        settings);
        QVERIFY(QFile::remove(sOutside) && Item(0).pixmap.isNull() && !Item(1).pixmap.isNull());
        QCOMPARE(m_pList->Part(0).value + m_pList->Part(1).value, QString("#2147483648.7#8"));
        QSignalSpy names(m_pList.get(), &CSceneList::nameChanged);
        OnNext<QInputDialog>([](QInputDialog* pDialog) {
            QCOMPARE(pDialog->textValue(), QString("Fog PwdState=1 2"));
            pDialog->setTextValue("a\r\nb");
            pDialog->accept();
        });
        UseMenu(m_pList.get(), 0, 0);
        QCOMPARE(names, QList<QVariantList>({{7, "a  b"}}));

        // What is painted of a name is one line, and of a long one, which takes its time, what fits.
        const auto paint = [this](const std::string& sName) {
            return Open({Scene{sName, 1, 0, 0, false}}), m_pList->grab().toImage();
        };
        const QImage fitting = paint(std::string(40, 'x'));
        QVERIFY(fitting.copy(112, 1, 36, 52) == paint("").copy(112, 1, 36, 52));  // nothing below the box
        QVERIFY(paint("a\u2028b\u2029c\nd") == paint("a b c d"));
        QVERIFY(paint(std::string(250000, 'x')) == fitting && m_pList->Part(0).name.size() < 1000);
    }

    void iconsAndColors() {
        Open(Scenes(3));
        QSignalSpy icons(m_pList.get(), &CSceneList::iconChanged);
        QSignalSpy colors(m_pList.get(), &CSceneList::colorChanged);
        m_pList->SetSceneIcon("x");  // nothing was right-clicked yet
        for (const auto finish : {&QDialog::accept, &QDialog::reject}) {
            OnNext<QColorDialog>([finish](QColorDialog* pDialog) {
                QVERIFY(pDialog->currentColor() == QColor(120, 120, 120) || finish == &QDialog::reject);
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

QTEST_MAIN(TestPages)
#include "tst_pages.moc"
