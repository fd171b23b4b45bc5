#include "app/branding.h"
#include "app/corvane.h"
#include "app/cpopupmenu.h"
#include "app/look.h"
#include "tests/support.h"
#include "widgets/artwork.h"
#include "widgets/ccolorcircle.h"
#include "widgets/ccolorpicker.h"
#include "widgets/channelsgrid.h"
#include "widgets/cscenelist.h"
#include "widgets/csliderctrl.h"

#include <QDirIterator>
#include <QMenu>
#include <QtTest>

#include <cmath>
#include <memory>

/// The pictures: all there, at both densities, none too many, and right at every scale of the display.
class TestArtwork : public QObject {
    Q_OBJECT

    std::unique_ptr<Corvane> m_pWindow;

    static QStringList Pictures() {
        QStringList paths;
        for (QDirIterator it(":/Corvane/Images", QDir::Files, QDirIterator::Subdirectories); it.hasNext();) {
            paths += it.next();
        }
        return paths.filter(QRegularExpression("^((?!@2x).)*$"));
    }

    /// Of two colours, as accessibility guidelines count it.
    static double Contrast(const QColor& a, const QColor& b) {
        const auto light = [](const QColor& color) {
            const auto part = [](double v) {
                return v <= 0.03928 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
            };
            return 0.2126 * part(color.redF()) + 0.7152 * part(color.greenF()) +
                   0.0722 * part(color.blueF()) + 0.05;
        };
        return std::max(light(a), light(b)) / std::min(light(a), light(b));
    }

private slots:
    void initTestCase() {
        ApplyLook();
        OnNext<QDialog>([](QDialog* pDialog) { pDialog->reject(); });
        m_pWindow = std::make_unique<Corvane>();
        m_pWindow->show();
    }

    void cleanupTestCase() { m_pWindow.reset(); }

    void allThereAndNoneTooMany() {
        Branding branding;
        QVERIFY(branding.Load(Branding::ApplicationType));
        artwork::Picture(branding.icon);
        for (int iPage = 0; iPage < 5; ++iPage) {
            m_pWindow->OnMenuChanged(iPage);
            m_pWindow->ShowPopupMenu();
            m_pWindow->grab();
            m_pWindow->ShowPopupTab();
            m_pWindow->grab();
        }
        m_pWindow->OnMenuChanged(2);
        m_pWindow->Picker()->SwitchCmdMode();
        m_pWindow->Picker()->grab();
        m_pWindow->Picker()->SwitchCmdMode();
        m_pWindow->OnMenuChanged(3);
        QTest::mouseClick(m_pWindow->Grid(), Qt::LeftButton, {}, m_pWindow->Grid()->CellRect(0).center());
        m_pWindow->grab();
        m_pWindow->OnMenuChanged(0);
        m_pWindow->SceneList()->Update({Scene()}, CIniFile());
        QTimer::singleShot(20, [] { QApplication::activePopupWidget()->close(); });
        QTest::mouseClick(m_pWindow->SceneList(), Qt::RightButton, {}, QPoint(20, 20));
        QStringList asked = artwork::Asked();
        QStringList there = Pictures();
        asked.sort();
        there.sort();
        QCOMPARE(asked, there);
        QVERIFY(there.size() > 110);
    }

    void sizes() {
        const std::pair<const char*, QSize> assumed[] = {{"Tablet", {820, 600}},
                                                         {"Close", {32, 32}},
                                                         {"ConnectionLost", {50, 50}},
                                                         {"MenuTab", {14, 50}},
                                                         {"MenuBut.*", {50, 39}},
                                                         {"CheckBox(Sel)?", {24, 24}},
                                                         {"Switch(On|Off)", {70, 26}},
                                                         {"slider[A-Z][a-z]+Bot", {34, 11}},
                                                         {"slider[A-Z][a-z]+Center", {34, 8}},
                                                         {"sliderBot", {34, 11}},
                                                         {"sliderCursor", {34, 34}},
                                                         {"Max.*", {39, 20}},
                                                         {"ColorPicker", {380, 380}},
                                                         {"(RGBSliders|Commands)(Sel)?", {60, 35}},
                                                         {"(White|Black|Next|Pause)(Sel)?", {60, 60}},
                                                         {"(Left|Right|Less|Plus)", {32, 32}},
                                                         {"UnivBox", {56, 32}},
                                                         {"(Dimmer|Speed)", {20, 20}},
                                                         {"(Text|Icon|Color)", {50, 32}},
                                                         {"(Serial|IP|Lock|Android|iOS)", {32, 32}}};
        for (const QString& sPath : Pictures()) {
            const QSize size = QImage(sPath).size();
            QCOMPARE(QImage(QString(sPath).replace(".png", "@2x.png")).size(), size * 2);
            for (const auto& [pName, expected] : assumed) {
                const QRegularExpression name(QRegularExpression::anchoredPattern(pName));
                if (name.match(QFileInfo(sPath).baseName()).hasMatch()) {
                    QVERIFY2(size == expected, qPrintable(sPath));
                }
            }
        }
    }

    void onePalette() {
        QFile file(ARTWORK_FOLDER "/palette.txt");
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QString sPalette = file.readAll();
        for (QDirIterator it(ARTWORK_FOLDER, {"*.svg"}, QDir::Files, QDirIterator::Subdirectories);
             it.hasNext();) {
            QFile drawing(it.next());
            QVERIFY(drawing.open(QIODevice::ReadOnly));
            const QString sText = drawing.readAll();
            for (auto match = QRegularExpression("#[0-9a-fA-F]{3,8}\\b").globalMatch(sText);
                 match.hasNext();) {
                const QString sColor = match.next().captured();
                QVERIFY2(sPalette.contains("\n" + sColor),
                         qPrintable(drawing.fileName() + " uses " + sColor));
            }
        }
    }

    void readableTexts() {
        const QPalette palette = QApplication::palette();
        for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
            for (const auto& [text, ground] : {std::pair{QPalette::WindowText, QPalette::Window},
                                               {QPalette::Text, QPalette::Base},
                                               {QPalette::ButtonText, QPalette::Button},
                                               {QPalette::ToolTipText, QPalette::ToolTipBase},
                                               {QPalette::HighlightedText, QPalette::Highlight}}) {
                QVERIFY(Contrast(palette.color(group, text), palette.color(group, ground)) >= 4.5);
            }
        }
    }

    /// Run at several scales of the display.
    void scale() {
        const double ratio = m_pWindow->devicePixelRatioF();
        QCOMPARE(ratio, qEnvironmentVariable("QT_SCALE_FACTOR", "1").toDouble());
        QCOMPARE(m_pWindow->size(), QSize(820, 600));
        QCOMPARE(m_pWindow->mask().boundingRect(), QRect(0, 0, 820, 600));
        QCOMPARE(m_pWindow->grab().size(), QSize(820, 600) * ratio);
        QCOMPARE(artwork::Picture(":/Corvane/Images/Close.png").devicePixelRatio(), ratio > 1.0 ? 2.0 : 1.0);
        m_pWindow->OnMenuChanged(2);
        QTest::qWait(20);
        CColorPicker* pPicker = m_pWindow->Picker();
        QCOMPARE(pPicker->geometry(), QRect(58, 58, 704, 484));
        QCOMPARE(pPicker->Wheel()->SwitchRect(), QRect(10, 10, 70, 26));
        QCOMPARE(pPicker->Wheel()->y(), 32);
        QCOMPARE(pPicker->Red()->Slider()->size(), QSize(34, 372));
        // The slider's parts meet without a seam: below the cap the groove has one colour, and so has the
        // fill.
        for (const int nLevel : {0, 255}) {
            pPicker->Red()->SetValue(nLevel);
            const QImage image = pPicker->Red()->Slider()->grab().toImage();
            const int nX = image.width() / 2;
            const int nFirst = static_cast<int>((nLevel == 0 ? 11 : 40) * ratio);
            const int nLast = static_cast<int>((nLevel == 0 ? 330 : 360) * ratio);
            for (int y = nFirst; y < nLast; ++y) {
                QVERIFY2(image.pixel(nX, y) == image.pixel(nX, nFirst),
                         qPrintable(QString("level %1 row %2").arg(nLevel).arg(y)));
            }
        }
    }
};

QTEST_MAIN(TestArtwork)
#include "tst_artwork.moc"
