#include "app/branding.h"
#include "app/look.h"
#include "tests/remote.h"
#include "widgets/artwork.h"

#include <QDirIterator>
#include <QMenu>

#include <cstdlib>

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
        for (int iPage = 4; iPage >= 0; --iPage) {
            m_pWindow->OnMenuChanged(iPage);
            m_pWindow->grab();
        }
        m_pWindow->ShowPopupMenu();
        m_pWindow->grab();
        m_pWindow->Picker()->SwitchCmdMode();
        m_pWindow->Picker()->grab();
        m_pWindow->Picker()->SwitchCmdMode();
        m_pWindow->Grid()->Editor()->grab();
        m_pWindow->SceneList()->Update({Scene()}, CIniFile());
        UseMenu(m_pWindow->SceneList(), 0, 2);
        QStringList asked = artwork::Asked();
        QStringList there = Pictures();
        asked.sort();
        there.sort();
        QCOMPARE(asked, there);
        QVERIFY(there.size() > 110);
    }

    /// Texts stand out by a brightness of 125 of 255, which accessibility guidelines ask for.
    void readableTexts() {
        const QPalette palette = QApplication::palette();
        for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
            for (const auto& [text, ground] : {std::pair{QPalette::WindowText, QPalette::Window},
                                               {QPalette::Text, QPalette::Base},
                                               {QPalette::ButtonText, QPalette::Button},
                                               {QPalette::ToolTipText, QPalette::ToolTipBase},
                                               {QPalette::HighlightedText, QPalette::Highlight}}) {
                const auto brightness = [&](auto role) { return qGray(palette.color(group, role).rgb()); };
                QVERIFY(std::abs(brightness(text) - brightness(ground)) >= 125);
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
        QCOMPARE(artwork::Picture(":/Corvane/Images/Close.png").devicePixelRatio(), ratio);
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
            const auto row = [ratio](int y) { return static_cast<int>(y * ratio); };
            const QImage strip = image.copy(image.width() / 2, row(nLevel == 0 ? 11 : 40), 1, row(318));
            QImage even = strip;
            even.fill(strip.pixelColor(0, 0));
            QCOMPARE(strip, even);
        }
    }
};

QTEST_MAIN(TestArtwork)
#include "tst_artwork.moc"
