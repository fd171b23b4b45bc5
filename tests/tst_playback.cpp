#include "server/patchsheet.h"
#include "server/playback.h"
#include "server/showreader.h"

#include <QRegularExpression>
#include <QtTest>

#include <memory>
#include <random>

/// What the lamps do, as scripts of a clock. The words of a script:
///
///     500                       the time is 500 ms
///     s1+ p2-                   scene 1 starts, program 2 stops
///     rgb=1,2,3 rgbw=1,2,3,4    the colour comes on; "rgb" alone: it goes off
///     dim=50 speed=75 hold=1 bo=1 white=1 next prev
///     c3=10 c3                  channel 3 is held at 10; released
///     3=10,11                   channel 3 is at 10 and 4 at 11, or the script fails
///     still moving              whether frames may change by themselves
class TestPlayback : public QObject {
    Q_OBJECT

    std::unique_ptr<Playback> m_pPlayback;
    std::unique_ptr<Universes> m_pHeld;
    Levels m_levels;
    Command m_command;
    qint64 m_nNowMs = 0;

    static Show Rig() {
        return ReadShow("rig", QByteArray(R"({
            'scenes': [
                { 'id': 1, 'area': 0, 'fade': 1, 'levels': { 'Dim': [200, 100, 0, 0] } },
                { 'id': 2, 'area': 0, 'fade': 2, 'levels': { 'Dim': [200, 0, 100, 0] } },
                { 'id': 3, 'area': 0 },
                { 'id': 4, 'area': 1, 'levels': { 'Dim': [150, 0, 0, 50] } },
                { 'id': 5, 'area': 1, 'level': 128,
                  'levels': { 'Spot': [200, 100, 0, 0, 0], 'Par 1': [200, 0, 0, 0], 'Head 1': [60, 250] } },
                { 'id': 6, 'fade': 1, 'levels': { 'Head': [100, 0] } },
                { 'id': 7, 'area': 2, 'fade': 2, 'levels': { 'Head 1': [200, 0] } },
                { 'id': 8, 'levels': { 'Par': [10, 20, 30, 40], 'Spot': [0, 1, 2, 3, 4] } } ],
            'programs': [
                { 'id': 1, 'steps': [ { 'fade': 1, 'hold': 1, 'levels': { 'Dim': [100, 0, 0, 0] } },
                                      { 'fade': 1, 'hold': 1, 'levels': { 'Dim': [0, 100, 0, 0] } } ] },
                { 'id': 2, 'steps': [ { 'levels': { 'Dim 4': [10] } }, { 'levels': { 'Dim 4': [20] } },
                                      { 'levels': { 'Dim 4': [30] } } ] },
                { 'id': 3, 'steps': [ { 'fade': 1, 'hold': 1, 'levels': { 'Head 1': [0, 0] } },
                                      { 'fade': 1, 'hold': 1, 'levels': { 'Head 1': [100, 0] } } ] },
                { 'id': 4, 'steps': [ { 'hold': 0.5, 'levels': { 'Dim 1': [10], 'Head 2': [77, 0] } },
                                      { 'levels': { 'Dim 2': [20] } },
                                      { 'hold': 0.5, 'levels': { 'Dim 3': [30] } } ] } ],
            'fixtures': [
                { 'name': 'Par', 'universe': 1, 'channel': 1, 'layout': 'rgbw', 'count': 2 },
                { 'name': 'Spot', 'universe': 1, 'channel': 11, 'layout': 'irgbw' },
                { 'name': 'Head', 'universe': 1, 'channel': 21, 'layout': 'xi', 'count': 2 },
                { 'name': 'Dim', 'universe': 1, 'channel': 31, 'layout': 'i', 'count': 4 },
                { 'name': 'Flood', 'universe': 1, 'channel': 51, 'layout': 'iw' },
                { 'name': 'Fog', 'universe': 3, 'channel': 512, 'layout': 'x' } ] })")
                                   .replace('\'', '"'));
    }

    /// What is wrong with a show of two fixtures and a further member; empty if it is good.
    static QString Complaint(const QByteArray& member) {
        try {
            ReadShow("rig", "{\n" + QByteArray(member).replace('\'', '"') + R"(,
                "fixtures": [ { "name": "Par", "universe": 1, "channel": 1, "layout": "rgbw", "count": 2 },
                              { "name": "Dim", "universe": 2, "channel": 512, "layout": "i" } ] })");
            return {};
        } catch (const std::runtime_error& error) {
            return error.what();
        }
    }

    void Render() { m_pPlayback->Render(*m_pHeld, m_nNowMs, m_levels); }

    void Switch(const QString& sKind, int nId, bool bOn) {
        if (sKind == "s") {
            m_pPlayback->SwitchScene(nId, bOn, m_nNowMs);
        } else {
            m_pPlayback->SwitchProgram(nId, bOn, m_nNowMs);
        }
    }

    bool TakeCommand(const QString& sKey, int nValue) {
        if (sKey == "dim" || sKey == "speed") {
            (sKey == "dim" ? m_command.dim : m_command.speed) = nValue;
        } else if (sKey == "hold" || sKey == "bo" || sKey == "white") {
            (sKey == "hold" ? m_command.hold : sKey == "bo" ? m_command.bo : m_command.white) = nValue != 0;
        } else if (sKey == "next" || sKey == "prev") {
            (sKey == "next" ? m_command.next : m_command.prev) = true;
        } else {
            return false;
        }
        m_pPlayback->Take(m_command, m_nNowMs);
        m_command.next = false;
        m_command.prev = false;
        return true;
    }

    /// Does what a word says; what is seen instead, if that does not hold.
    QString Obey(const QString& sWord) {
        static const QRegularExpression switching("^([sp])(\\d+)([+-])$");
        const auto match = switching.match(sWord);
        const QString sKey = sWord.section('=', 0, 0);
        const QStringList values = sWord.section('=', 1).split(',', Qt::SkipEmptyParts);
        const auto value = [&values](int i) { return values.value(i).toInt(); };
        bool bNumber = false;
        const int nNumber = sKey.toInt(&bNumber);
        if (match.hasMatch()) {
            Switch(match.captured(1), match.captured(2).toInt(), match.captured(3) == "+");
        } else if (sKey.startsWith("rgb")) {
            m_pPlayback->Take({value(0), value(1), value(2), value(3), sKey == "rgbw", !values.isEmpty()});
        } else if (sKey.startsWith('c')) {
            m_pHeld->Set(0, sKey.mid(1).toInt() - 1, value(0), !values.isEmpty());
        } else if (sWord == "still" || sWord == "moving") {
            return m_pPlayback->IsMoving(m_nNowMs) == (sWord == "moving") ? "" : "it is not";
        } else if (bNumber && values.isEmpty()) {
            m_nNowMs = nNumber;
        } else if (bNumber) {
            Render();
            for (int i = 0; i < values.size(); ++i) {
                const int nLevel = m_levels[Universes::At(0, nNumber - 1 + i)];
                if (nLevel != value(i)) {
                    return QString("channel %1 is at %2").arg(nNumber + i).arg(nLevel);
                }
            }
        } else if (!TakeCommand(sKey, value(0))) {
            return "that is no word";
        }
        return {};
    }

private slots:
    void init() {
        m_pPlayback = std::make_unique<Playback>(Rig());
        m_pHeld = std::make_unique<Universes>();
        m_command = {false, false, false, false, false, 100, 50};
        m_nNowMs = 0;
    }

    void rules_data() {
        QTest::addColumn<QString>("script");
        for (const auto& [pName, pScript] : {
                 std::pair{"crossfade",
                           "s1+ 31=0 500 31=100,50 1000 31=200,100 still s2+ moving 31=200,100 "
                           "2000 31=200,50,50 3000 31=200,0,100 still"},
                 {"crossfade back and forth",
                  "s1+ 1000 s2+ 2000 31=200,50,50 s1+ 31=200,50,50 2500 "
                  "31=200,75,25 s2+ 31=200,75,25 4500 31=200,0,100"},
                 {"scene stops", "s1+ 1000 s2- 31=200,100 s1- 31=200,100 1500 31=100,50 2000 31=0,0 still"},
                 {"scene stops half-way", "s1+ 500 s1- 31=100 1000 31=50 1500 31=0 still"},
                 {"scene without lamps", "s1+ 1000 s3+ 31=0,0 still s3- still"},
                 {"started again", "s1+ 500 s1+ 31=100 1000 31=200"},
                 {"unknown", "s99+ p99+ s99- still 31=0"},
                 {"highest",
                  "s1+ 1000 s4+ 31=200,100,0,50 s1- 1500 31=150,50,0,50 2000 31=150,0,0,50 s4- "
                  "31=0,0,0,0 still"},
                 {"latest", "s6+ 500 21=50 1000 21=100 s7+ 21=100 2000 21=150 3000 21=200 23=100 still"},
                 {"latest gives back", "s6+ 1000 s7+ 3000 s7- 21=200 4000 21=150 5000 21=100 still"},
                 {"latest of two", "s7+ 2000 s6+ 2500 21=150 3000 21=100 s7- 9000 21=100 still"},
                 {"latest stays", "s7+ 1000 s7- 21=100 9000 21=100 s6+ 9500 21=100 23=50"},
                 {"latest dropped by its area", "s5+ 21=60,125 s4+ 21=60,0 s5+ 21=60,125"},
                 {"latest in a program", "p3+ 1000 21=0 2500 21=50 hold=1 9000 21=50 next 9500 21=25"},
                 {"program takes and gives back",
                  "s7+ 2000 p3+ 2500 21=100 3000 21=0 5000 21=100 p3- 5500 "
                  "21=150 6000 21=200 still"},
                 {"back to a program",
                  "p3+ 3000 21=100 s7+ 4000 21=150 5000 21=200 s7- 6000 21=100 7000 "
                  "21=100 8500 21=50"},
                 {"latest of three", "s7+ 2000 s6+ 3000 p3+ 4000 21=0 p3- 5000 21=100"},
                 {"gives back at its speed",
                  "s7+ 2000 speed=75 p3+ 2500 21=0 2700 p3- 2950 21=100 3200 21=200"},
                 {"next takes nothing", "p3+ 500 s7+ 2500 21=200 next 9000 21=200"},
                 {"submaster", "s5+ 11=100,100 1=100 21=60,125"},
                 {"dimmer",
                  "s5+ dim=50 11=50,100 1=50 21=60,63 dim=0 11=0,100 1=0 dim=-5 1=0 dim=1000 1=100"},
                 {"colour",
                  "s8+ 11=0,1,2,3,4 rgb=9,8,7 1=9,8,7,40,9,8,7,40 11=255,9,8,7,4 31=0 22=0 51=0,0 "
                  "rgbw=9,8,7,6 1=9,8,7,6 11=255,9,8,7,6 51=255,6 dim=50 1=5 11=128,9 rgb dim=100 "
                  "1=10,20,30,40 11=0,1,2,3,4"},
                 {"colour released", "rgb=9,8,7 s1- 1=9 s1+ 1=0 rgb=9,8,7 p1- 1=9 p1+ 1=0"},
                 {"colour out of range", "rgb=999,-9,256 1=255,0,255"},
                 {"white",
                  "s5+ white=1 1=255,255,255,255 11=255,255,255,255,255 21=60,255 31=255 dim=50 "
                  "1=128 11=128,255 bo=1 1=0 bo=0 white=0 dim=100 1=100,0 31=0"},
                 {"blackout", "s5+ rgb=1,2,3 bo=1 1=0,0 11=0,0 21=60,0 bo=0 1=1,2,3 21=60,125"},
                 {"held",
                  "c31=77 31=77 bo=1 31=77 white=1 31=77 c21=5 21=5 c31=0 31=0 bo=0 31=0 c31 31=255 "
                  "c500=9 500=9 c500 500=0"},
                 {"program",
                  "p1+ 500 31=50 1999 31=100 2500 31=50,50 4500 31=50,50 moving p1- 5000 31=25,25 "
                  "5500 31=0 still"},
                 {"program for ten days",
                  "p1+ 864000500 31=50,50 864001500 31=100,0 next 864002000 31=50,50"},
                 {"program of no time",
                  "p2+ 34=10 still 9000 34=10 next 34=20 next next 34=10 prev 34=30 "
                  "hold=1 prev 34=20 hold=0 34=20 p2- 34=0"},
                 {"program with one step of no time",
                  "p4+ 31=10 499 31=10,0,0 500 31=0,0,30 23=77 1000 31=10,0,0"},
                 {"pause",
                  "p1+ 500 s4+ hold=1 still 32=0 9000 34=50 s4- 31=50 s1+ moving 9500 32=50 s3+ "
                  "hold=0 moving 9750 31=75"},
                 {"started while paused",
                  "hold=1 p1+ 500 31=50 5000 31=100 still hold=0 5999 31=100 6500 "
                  "31=50,50"},
                 {"stopped while paused", "p1+ 1500 hold=1 p1- 2000 31=50 2500 31=0 still hold=0 still"},
                 {"next", "p1+ 1500 next 31=100,0 2000 31=50,50 3499 31=0,100 4000 31=50,50"},
                 {"next half-way", "p1+ 500 next 31=50,0 1000 31=25,50 1500 31=0,100"},
                 {"next while paused",
                  "p1+ 1500 hold=1 next moving 2000 31=50,50 9000 31=0,100 still next 9500 31=50,50 "
                  "12000 31=100,0 hold=0 12999 31=100,0 13500 31=50,50"},
                 {"on while next fades",
                  "p1+ 1500 hold=1 next 2000 hold=0 31=50,50 3499 31=0,100 4000 31=50,50"},
                 {"previous", "p1+ 1500 prev 2000 31=50,50 2500 31=0,100 prev 3000 31=50,50"},
                 {"speed",
                  "p1+ 500 31=50 speed=75 31=50 750 31=100 1250 31=100 1500 31=50,50 speed=25 "
                  "31=50,50 2500 31=0,100"},
                 {"speed to its ends",
                  "speed=100 p1+ 125 31=50 500 31=100 speed=0 2500 31=50,50 speed=999 2625 "
                  "31=0,100"},
                 {"speed is for programs", "speed=100 s1+ 500 31=100"},
             }) {
            QTest::newRow(pName) << pScript;
        }
    }

    void rules() {
        QFETCH(QString, script);
        for (const QString& sWord : script.split(' ')) {
            const QString sSeen = Obey(sWord);
            QVERIFY2(sSeen.isEmpty(),
                     qPrintable(QString("at %1: %2, but %3").arg(m_nNowMs).arg(sWord, sSeen)));
        }
    }

    void mistakes() {
        const auto scene = [](const char* pMembers) {
            return QByteArray("'scenes': [ { 'id': 1,\n ") + pMembers + " } ]";
        };
        const auto fixture = [](const char* pMembers) {
            return QByteArray("'fixtures': [\n{ ") + pMembers + " } ]";
        };
        for (const auto& [member, pComplaint] :
             {std::pair{scene("'levels': { 'Par': [1, 2, 3, 4], 'Par 2': [1, 2, 3, 4] }, 'fade': 86400"), ""},
              {scene("'levels': { 'Par': [1, 2, 3, 4, 5, 6, 7, 8], 'Dim': [255] }, 'level': 255"), ""},
              {scene("'level': 999"), ""},  // only for remotes
              {QByteArray("'programs': [ { 'id': 1, 'steps': [] } ]"), ""},
              {scene("'levels': { 'Pra': [1] }"), "3: there is no fixture \"Pra\""},
              {scene("'levels': { 'Par 3': [1, 2, 3, 4] }"), "3: there is no fixture"},
              {scene("'levels': { 'Par': [1, 2, 3] }"), "3: \"Par\" takes 4 or 8 levels, not 3"},
              {scene("'levels': { 'Par 1': [1, 2, 3, 4, 5] }"), "3: \"Par 1\" takes 4 levels, not 5"},
              {scene("'levels': { 'Dim': [] }"), "3: \"Dim\" takes 1 level, not 0"},
              {scene("'levels': { 'Dim':\n [256] }"), "4: a level must be from 0 to 255, not 256"},
              {scene("'levels': { 'Dim': [1.5] }"), "3: a level must be a whole number"},
              {scene("'levels': { 'Dim': 1 }"), "3: the levels of \"Dim\" must be a list"},
              {scene("'levels': [], 'fade': 1"), "3: the levels must stand in { }"},
              {scene("'levels': {},\n'level': 256"), "4: \"level\" must be from 0 to 255"},
              {scene("'fade': -1"), "3: \"fade\" must be a number of seconds"},
              {scene("'fade': 1e300"), "3: \"fade\" must be"},
              {scene("'hold': 1"), "3: a scene has no key \"hold\""},
              {QByteArray("'programs': [ { 'id': 1, 'steps': [\n{ 'fade': 1 } ] } ]"),
               "3: this step has no \"levels\""},
              {fixture("'name': 'A', 'universe': 33"), "3: \"universe\" must be from 1 to 32"},
              {fixture("'name': 'A', 'universe': 1, 'channel': 0"), "3: \"channel\" must be"},
              {fixture("'name': 'A', 'universe': 1, 'channel': 9"), "3: this fixture has no \"layout\""},
              {fixture("'name': 'A', 'universe': 1, 'channel': 9, 'layout': 'rgbq'"),
               "3: \"layout\" must be"},
              {fixture("'name': 'A', 'universe': 1, 'channel': 510, 'layout': 'rgbw'"),
               "3: \"A\" reaches channel 513, past 512"},
              {fixture("'name': 'A', 'universe': 1, 'channel': 1, 'layout': 'i', 'count': 513"),
               "3: \"count\" must be"},
              {fixture("'name': 'A', 'universe': 1, 'channel': 8, 'layout': 'x'"),
               "4: \"Par\" overlaps \"A\" at universe 1 channel 8"},
              {fixture("'name': 'Par 2', 'universe': 1, 'channel': 9, 'layout': 'x'"),
               "4: the name \"Par 2\" stands for a fixture already"}}) {
            const QString sSaid = Complaint(member);
            const QString sPlace = *pComplaint == '\0' ? "" : "rig: line ";
            QVERIFY2(*pComplaint == '\0' ? sSaid.isEmpty() : sSaid.startsWith(sPlace + pComplaint),
                     qPrintable(member + ": " + sSaid));
        }
    }

    /// The rig of docs/lamps.md is one, and its patch sheet is the one shown there.
    void documentedRig() {
        QFile file(DOCS_FOLDER "/lamps.md");
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QString sText = file.readAll();
        const QString sShow = sText.section("```json show\n", 1).section("\n```", 0, 0);
        const Show show = ReadShow("lamps.md", sShow.toUtf8());
        QVERIFY(sText.contains("    " + PatchSheet(show).join("\n    ") + "\n"));
        m_pPlayback = std::make_unique<Playback>(show);
        for (const char* pWord : {"s1+", "1500", "1=128,70,10,60"}) {
            QCOMPARE(Obey(pWord), QString());
        }
    }

    /// The built-in show lights something, whatever is pressed first, and all of it on universe 1.
    void builtIn() {
        const Show show = Show::BuiltIn();
        const QStringList dark{"House out", "Blackbox"};
        const auto isLit = [this, &show](void (Playback::*change)(int, bool, qint64), int nId) {
            Playback playback(show);
            for (const int nScene : {1, 9}) {
                playback.SwitchScene(nScene, false, 0);
            }
            (playback.*change)(nId, true, 0);
            playback.Render(*m_pHeld, 60000, m_levels);
            return *std::max_element(m_levels.begin(), m_levels.begin() + Universes::Channels) > 0;
        };
        for (const Scene& scene : show.scenes) {
            const QString sName = QString::fromStdString(scene.name);
            QVERIFY2(isLit(&Playback::SwitchScene, scene.id) != dark.contains(sName), qPrintable(sName));
        }
        for (const Scene& program : show.programs) {
            QVERIFY2(isLit(&Playback::SwitchProgram, program.id), program.name.c_str());
        }
        QCOMPARE(Playback(show).Patched().to_ulong(), 1UL);
        QCOMPARE(m_pPlayback->Patched().to_ulong(), 5UL);
    }

    void tooLarge() {
        Show show = Rig();
        show.chases[1].steps.resize(10000);
        show.chases[1].steps[0].levels.resize(16384);
        QVERIFY_EXCEPTION_THROWN(Playback{show}, std::runtime_error);
    }

    /// However wildly scenes and programs are switched, nothing moves faster than its fade, and what all
    /// scenes of an area have in common does not move at all.
    void nothingJumps() {
        std::mt19937 random(1);
        const auto any = [&random](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
        const QStringList words{"s1+", "s2+",  "s6+",  "s7+",    "s7-",    "p1+",      "p1-",      "p3+",
                                "p3-", "next", "prev", "hold=1", "hold=0", "speed=75", "speed=50", "speed=0"};
        Obey("s1+");
        Obey("1000");
        Render();
        for (int nFrame = 0; nFrame < 5000; ++nFrame) {
            const Levels before = m_levels;
            for (int n = any(8) == 0 ? 1 + any(3) : 0; n > 0; --n) {
                QCOMPARE(Obey(words[any(static_cast<int>(words.size()))]), QString());
            }
            m_nNowMs += 10;
            Render();
            int nFastest = 0;
            for (std::size_t i = 0; i < Universes::Channels; ++i) {
                nFastest = std::max(nFastest, std::abs(m_levels[i] - before[i]));
            }
            QVERIFY2(nFastest <= 6, qPrintable(QString("%1 at %2 ms").arg(nFastest).arg(m_nNowMs)));
            QCOMPARE(int{m_levels[30]}, 200);
        }
    }
};

QTEST_GUILESS_MAIN(TestPlayback)
#include "tst_playback.moc"
