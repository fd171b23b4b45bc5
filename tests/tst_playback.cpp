#include "device/jsonnode.h"
#include "device/readers.h"
#include "server/lamps/playback.h"
#include "server/show/show.h"
#include "tests/files.h"

#include <QtTest>

#include <memory>

/// What the lamps do, as scripts of a clock. The words of a script:
///
///     500                       the time is 500 ms
///     s1+ p2-                   scene 1 starts, program 2 stops
///     rgb=1,2,3 rgb=1,2,3,4     the colour comes on, white 0 or 4; "rgb" alone: it goes off
///     dim=50 speed=75 hold=1 bo=1 white=1 next prev
///     c3=10 c3                  channel 3 is held at 10; released
///     3=10,11                   channel 3 is at 10 and 4 at 11, or the script fails
///     still moving              whether frames may change by themselves
class TestPlayback : public QObject {
    Q_OBJECT

    std::unique_ptr<State> m_pState;
    std::unique_ptr<Playback> m_pPlayback;
    Levels m_levels;
    qint64 m_nNowMs = 0;

    static Show Rig() {
        return ReadShow("rig", QString(R"({ 'scenes': [
    { 'id': 1, 'area': 0, 'fade': 1, 'levels': { 'Dim': [200, 100, 0, 0] } },
    { 'id': 2, 'area': 0, 'fade': 2, 'levels': { 'Dim': [200, 0, 100, 0] } },
    { 'id': 3, 'area': 0, 'level': 999 }, { 'id': 4, 'area': 1, 'levels': { 'Dim': [150, 0, 0, 50] } },
    { 'id': 5, 'area': 1, 'level': 128,
      'levels': { 'Spot': [200, 100, 0, 0, 0], 'Par 1': [200, 0, 0, 0], 'Head 1': [60, 250] } },
    { 'id': 6, 'fade': 1, 'levels': { 'Head': [100, 0] } },
    { 'id': 7, 'area': 2, 'fade': 2, 'levels': { 'Head 1': [200, 0] } },
    { 'id': 8, 'level': 255, 'levels': { 'Par': [10, 20, 30, 40], 'Spot': [0, 1, 2, 3, 4] } },
    { 'id': 9, 'fade': 86400, 'levels': { 'Par': [1, 2, 3, 4, 5, 6, 7, 8], 'Par 2': [255, 0, 7, 8] } },
    { 'id': 11, 'area': 5, 'fade': 1, 'levels': { 'Par': [255, 0, 0, 0] } },
    { 'id': 12, 'area': 5, 'fade': 1, 'levels': { 'Par': [0, 0, 255, 0] } },
    { 'id': 10, 'fade': 1, 'levels': { 'Uv': [10, 20, 30, 40], 'Wide': [200, 100, 100, 50], 'Hall': [70, 80] } } ],
'programs': [
    { 'id': 1, 'steps': [ { 'fade': 1, 'hold': 1, 'levels': { 'Dim': [100, 0, 0, 0] } },
                          { 'fade': 1, 'hold': 1, 'levels': { 'Dim': [0, 100, 0, 0] } } ] },
    { 'id': 22, 'steps': [ { 'levels': { 'Dim 4': [10] } }, { 'levels': { 'Dim 4': [20] } },
                          { 'levels': { 'Dim 4': [30] } } ] },
    { 'id': 3, 'steps': [ { 'fade': 1, 'hold': 1, 'levels': { 'Head 1': [0, 0] } },
                          { 'fade': 1, 'hold': 1, 'levels': { 'Head 1': [100, 0] } } ] },
    { 'id': 4, 'steps': [ { 'hold': 0.5, 'levels': { 'Dim 1': [10], 'Head 2': [77, 0] } },
                          { 'levels': { 'Dim 2': [20] } }, { 'hold': 0.5, 'levels': { 'Dim 3': [30] } } ] },
    { 'id': 5, 'steps': [] }, { 'id': 7, 'level': 51, 'steps': [ { 'levels': { 'Dim 1': [100], 'Dim 3': [50] } } ] },
    { 'id': 6, 'steps': [ { 'fade': 1, 'hold': 1, 'levels': { 'Dim 1': [10] } },
                          { 'fade': 1, 'hold': 1, 'levels': { 'Head 1': [100, 0] } } ] } ],
'fixtures': [
    { 'name': 'Par', 'universe': 1, 'channel': 1, 'layout': 'rgbw', 'count': 2 },
    { 'name': 'Spot', 'universe': 1, 'channel': 11, 'layout': 'irgbw' },
    { 'name': 'Head', 'universe': 1, 'channel': 21, 'layout': 'xi', 'count': 2 },
    { 'name': 'Dim', 'universe': 1, 'channel': 31, 'layout': 'i', 'count': 4 },
    { 'name': 'Flood', 'universe': 1, 'channel': 51, 'layout': 'iw' },
    { 'name': 'Uv', 'universe': 1, 'channel': 61, 'layout': 'RGBA' },
    { 'name': 'Wide', 'universe': 1, 'channel': 71, 'layout': 'xfif', 'default': [128, 64, 0, 0] },
    { 'name': 'Hall', 'universe': 1, 'channel': 81, 'layout': 'ir', 'independent': true },
    { 'name': 'Fog', 'universe': 3, 'channel': 512, 'layout': 'x' } ] })")
                                   .replace('\'', '"')
                                   .replace(QRegularExpression(R"(("id": \d+))"), R"(\1, "name": "n")")
                                   .toUtf8());
    }

    /// What is wrong with a show; empty if it is good.
    static QString Complaint(QString sShow) {
        try {
            ReadShow("rig", sShow.replace('\'', '"').toUtf8());
            return {};
        } catch (const std::runtime_error& error) {
            return error.what();
        }
    }

    void Begin(const Show& show) {
        m_pPlayback.reset();
        m_pState = std::make_unique<State>(show);
        m_pPlayback = std::make_unique<Playback>(*m_pState, [this] { return m_nNowMs; });
    }

    void Render() { m_pPlayback->Render(m_nNowMs, m_levels); }

    /// Does what a word says, and gives the word back as it holds.
    QString Obey(const QString& sWord) {
        const QString sKey = sWord.section('=', 0, 0);
        const QStringList values = sWord.section('=', 1).split(',', Qt::SkipEmptyParts);
        const auto value = [&values](int i) { return values.value(i).toInt(); };
        const int nNumber = sKey.toInt();
        if (sWord.endsWith('+') || sWord.endsWith('-')) {
            m_pState->Switch({sWord[0] == 'p', sWord.mid(1).chopped(1).toInt()}, sWord.endsWith('+'));
        } else if (sKey.startsWith("rgb")) {
            m_pState->Take(Color{value(0), value(1), value(2), value(3), false, !values.isEmpty()});
        } else if (sKey.startsWith('c')) {
            m_pState->Hold({sKey.mid(1).toInt() - 1, 0, value(0), !values.isEmpty()});
        } else if (sWord == "still" || sWord == "moving") {
            return m_pPlayback->IsMoving(m_nNowMs) ? "moving" : "still";
        } else if (sWord[0].isDigit() && values.isEmpty()) {
            m_nNowMs = nNumber;
        } else if (sWord[0].isDigit()) {
            Render();
            QStringList levels;
            for (int i = 0; i < values.size(); ++i) {
                levels += QString::number(m_levels[Universes::At(0, nNumber - 1 + i)]);
            }
            return sKey + '=' + levels.join(',');
        } else {
            const QString sMember = QString(R"({"%1":%2})").arg(sKey, values.value(0, "1"));
            Command command = m_pState->CurrentCommand();
            readInto(JSONDocument(sMember.toUtf8()).Root(), command);
            m_pState->Take(command);
            return QString("dim speed hold bo white next prev").contains(sKey) ? sWord : "no such word";
        }
        return sWord;
    }

    void Play(const QString& sScript) {
        for (const QString& sWord : sScript.simplified().split(' ')) {
            const QString sHolds = Obey(sWord);
            QVERIFY2(sHolds == sWord,
                     qPrintable(QString("%1, not %2, at %3").arg(sHolds, sWord).arg(m_nNowMs)));
        }
    }

private slots:
    void init() {
        m_nNowMs = 0;
        Begin(Rig());
    }

    void rules_data() {
        QTest::addColumn<QString>("script");
        for (const QStringList& row : Table(R"(
crossfade => s1+ 31=0 500 31=100,50 1000 31=200,100 still s2+ moving 31=200,100 2000 31=200,50,50
    s1+ 31=200,50,50 2500 31=200,75,25 s2+ 31=200,75,25 4500 31=200,0,100 still
scene stops => s1+ 1000 s2- 31=200,100 s1- 31=200,100 1500 31=100,50 2000 31=0,0 still
scene starts twice and stops half-way => s1+ 300 s1+ 500 s1- 31=100 1000 31=50 1500 31=0 still
scene of a day => s9+ 86400000 1=1,2,3,4,255,0,7,8
without lamps => s1+ 1000 s3+ 31=0,0 still s3- still s99+ p99+ s99- p5+ still 31=0 next still 31=0
highest => s1+ 1000 s4+ 31=200,100,0,50 s1- 1500 31=150,50,0,50 2000 31=150,0,0,50 s4- 31=0,0,0,0 still
latest => s6+ 500 21=50 1000 21=100 s7+ 21=100 2000 21=150 3000 21=200 23=100 still
    s7- 21=200 4000 21=150 5000 21=100 still
latest dropped by its area => s5+ 21=60,125 s4+ 21=60,0 s5+ 21=60,125
latest in a program => p3+ 1000 21=0 2500 21=50 hold=1 9000 21=50 next 9500 21=25
program takes what it comes to => p6+ 1999 21=0 2500 21=50 3000 21=100 4500 21=100 6500 21=100 p6- 9000 21=100
program takes over when it comes to it => s7+ 2000 p6+ 3999 21=200 4500 21=150 hold=1 9000 21=150 hold=0 9500 21=100
    p6- 10000 21=150 10500 21=200 p6+ 11000 next 11500 21=150 s6+ 21=150 12000 21=125 12500 21=100
program takes over and goes on => s7+ 2000 p6+ 9000 21=100 p6- 10000 21=200
program takes and gives back => s7+ 2000 p3+ 2500 21=100 3000 21=0 5000 21=100 p3- 5500 21=150 6000 21=200 still
back to a program => p3+ 3000 21=100 s7+ 4000 21=150 5000 21=200 s7- 6000 21=100 7000 21=100 8500 21=50
gives back at its speed => s7+ 2000 speed=75 p3+ 2500 21=0 2700 p3- 2950 21=100 3200 21=200
next takes nothing => p3+ 500 s7+ 2500 21=200 next 9000 21=200
submaster and dimmer => s5+ 11=100,100 1=100 21=60,125 dim=50 11=50,100 1=50 21=60,63 dim=0 11=0,100 1=0
    dim=-5 1=0 dim=1000 1=100
colour => s8+ 11=0,1,2,3,4 rgb=9,8,7 1=9,8,7,0,9,8,7,0 11=255,9,8,7,0 31=0 22=0 51=255,0
    rgb=9,8,7,6 1=9,8,7,6 11=255,9,8,7,6 51=255,6 dim=50 1=5 11=128,9 rgb dim=100 1=10,20,30,40 11=0,1,2,3,4
    rgb=999,-9,256 1=255,0,255
colour released => rgb=90,80,70 s1- 1=90 s1+ 1=90,80 31=0 moving 500 1=45,40 31=100 rgb 750 1=23 bo=1 1=0 bo=0 1000 1=0
    still rgb=90,80,70 p1- 1=90 p1+ 1500 1=45 2000 1=0 rgb=90 s3+ 1=0
colour, then the same => rgb=255,0,0 s11+ 1=255,0 300 1=255,0 500 1=255,0 1000 1=255,0 still
colour, then another => rgb=255,0,0 s12+ 1=255,0,0 500 1=128,0,128 s11+ 1=128,0,128 1000 1=191,0,64 1500 1=255,0,0 still
    rgb=0,200,0 s11+ 1=0,200 2000 1=128,100,0 rgb=9,8,7 1=9,8,7 9000 1=9,8,7
white => s5+ white=1 1=255,255,255,255 11=255,255,255,255,255 21=60,255 31=255 dim=50 1=128 11=128,255
    bo=1 1=0 bo=0 white=0 dim=100 1=100,0 31=0
blackout => s5+ rgb=1,2,3 bo=1 1=0,0 11=0,0 21=60,0 bo=0 1=1,2,3 21=60,125
other light => s10+ 1000 61=10,20,30,40 rgb=1,2,3 61=1,2,3,0 white=1 61=255,255,255,255 white=0 dim=50 61=1,1,2,0
    rgb 61=5,10,15,20 bo=1 61=0,0,0,0
fine => s10+ 500 71=164,82 73=50,25 1000 71=200,100 73=100,50 dim=50 73=50,25 71=200,100 white=1 73=128,0
    dim=100 73=255,255 c74=3 73=255,3 c74 bo=1 73=0,0 71=200,100
independent => s10+ 1000 81=70,80 rgb=1,2,3 81=70,80 white=1 dim=50 81=70,80 white=0 bo=1 81=70,80 s10- 2000 81=0,0
default => 71=128,64 s10+ 1000 71=200,100 s10- 71=200,100 1999 71=200,100 moving 2000 71=128,64 still rgb=1 71=128,64
held => c1=5 1=5 c1 c31=77 31=77 bo=1 31=77 white=1 31=77 c21=5 21=5 c31=0 31=0 bo=0 31=0 c31 31=255 c500=9 500=9 c500 500=0
program => p1+ 500 31=50 1999 31=100 2500 31=50,50 4500 31=50,50 moving p1- 5000 31=25,25 5500 31=0 still
program's level, with a hole => p7+ 31=20,0,10,0
program for ten days => p1+ 864000500 31=50,50 864001500 31=100,0 next 864002000 31=50,50
program of no time => p22+ 34=10 still 9000 34=10 next 34=20 next next 34=10 prev 34=30 hold=1 prev 34=20
    hold=0 34=20 p22- 34=0
program with one step of no time => p4+ 31=10 499 31=10,0,0 500 31=0,0,30 23=77 1000 31=10,0,0
pause => p1+ 500 s4+ hold=1 still 32=0 9000 34=50 s4- 31=50 s1+ moving 9500 32=50 s3+ hold=0 moving 9750 31=75
started while paused => hold=1 p1+ 500 31=50 5000 31=100 still hold=0 5999 31=100 6500 31=50,50
stopped while paused => p1+ 1500 hold=1 p1- 2000 31=50 2500 31=0 still hold=0 still
next => p1+ 500 next 31=50,0 1000 31=25,50 2499 31=0,100 next 31=0,100 2999 31=50,50 4498 31=100,0 4999 31=50,50
next while paused => p1+ 1500 hold=1 next moving 2000 31=50,50 9000 31=0,100 still next 9500 31=50,50
previous => p1+ 1500 prev 2000 31=50,50 2500 31=0,100 prev 3000 31=50,50
speed => p1+ 500 31=50 speed=75 31=50 750 31=100 1250 31=100 1500 31=50,50 speed=25 31=50,50 2500 31=0,100
speed to its ends => speed=100 s6+ p1+ 125 31=50 500 31=100 21=50 speed=0 2500 31=50,50 speed=999 2625 31=0,100
)")) {
            QTest::newRow(qPrintable(row[0])) << row[1];
        }
    }

    void rules() {
        QFETCH(QString, script);
        Play(script);
    }

    /// The place of a mistake, what is said of it, and a scene, a step, a fixture or a whole show that has
    /// it.
    void mistakes() {
        const QString sRig =
            "\n{ 'name': 'Par', 'universe': 1, 'channel': 1, 'layout': 'rgbw', 'count': 2 },"
            "{ 'name': 'Dim', 'universe': 2, 'channel': 512, 'layout': 'i' } ] }";
        const QMap<QString, QString> members{
            {"show", "%1"},
            {"scene", "{\n'scenes': [ { 'id': 1, 'name': 'S',\n %1 } ], 'fixtures': [" + sRig},
            {"nameless", "{\n'scenes': [\n{ 'id': 1, %1 } ], 'fixtures': [" + sRig},
            {"step",
             "{\n'programs': [ { 'id': 1, 'name': 'P', 'steps': [\n{ %1 } ] } ], 'fixtures': [" + sRig},
            {"fixture", "{\n'fixtures': [\n{ 'name': 'A', 'universe': 1, %1 }," + sRig},
            {"namesake", "{\n'fixtures': [\n{ 'name': 'Par 2', 'universe': 1, %1 }," + sRig}};
        QCOMPARE(Complaint(members["scene"].arg("'levels': { 'Dim': [255] }")), QString());
        for (const QStringList& row : Table(R"(
3: there is no fixture "Pra" => scene 'levels': { 'Pra': [1] }
3: there is no fixture => scene 'levels': { 'Par 3': [1, 2, 3, 4] }
3: "Par" takes 4 or 8 levels, not 3 => scene 'levels': { 'Par': [1, 2, 3] }
3: "Par 1" takes 4 levels, not 5 => scene 'levels': { 'Par 1': [1, 2, 3, 4, 5] }
3: "Dim" takes 1 level, not 0 => scene 'levels': { 'Dim': [] }
4: a level must be from 0 to 255, not 256 => scene 'levels': { 'Dim':\n [256] }
4: "level" must be from 0 to 255 => scene 'levels': {},\n'level': 256
3: "fade" must be a number of seconds => scene 'fade': -1
3: "fade" must be => scene 'fade': 1e300
3: a scene has no key "hold" => scene 'hold': 1
3: "area" must be 0 or more, not -1 => scene 'area': -1
3: a scene must have "name" => nameless 'area': 0
2: another scene of area 7 runs => show {'scenes':[{'id':1,'name':'A','area':7,'state':true},
    \n{'id':2,'name':'B','area':7,'state':true}]}
4: "fade" stands twice in a scene => scene 'fade': 1,\n'fade': 1
3: "Dim" stands twice in "levels" => scene 'levels': { 'Dim': [1], 'Par': [1, 2, 3, 4], 'Dim': [1] }
3: not JSON: a number with a comma => scene 'fade': 1,5
3: not JSON: a comment => scene 'fade': 1, // soft
4: not JSON: texts stand in straight double quotes => scene 'levels':\n{ \u201cDim\u201d: [1] }
4: not JSON: a , too many => scene 'levels': {}\n,
4: not JSON: a , or a closing } or ] is missing => scene 'fade': 1\n'area': 1
3: not JSON: a text does not end => scene 'fade': 'x\n
3: "serial" must be of 0 to 100 characters => show {\n\n'serial':'%200'}
3: a step must have "levels" => step 'fade': 1
2: "universe" must be from 1 to 32 => show {'fixtures':[{'name':'A',\n'universe':33}]}
3: "channel" must be => fixture 'channel': 0
3: a fixture must have "layout" => fixture 'channel': 9
3: "layout" must be => fixture 'channel': 9, 'layout': 'rgbq'
3: an f of "layout" must follow => fixture 'channel': 9, 'layout': 'fi'
3: an f of "layout" must follow => fixture 'channel': 9, 'layout': 'xff'
3: "default" takes 2 or 4 levels, not 3 => fixture 'channel': 9, 'layout': 'xi', 'count': 2, 'default': [1, 0, 1]
3: the default of light is 0 => fixture 'channel': 9, 'layout': 'xfi', 'default': [1, 2, 3]
3: "A" reaches channel 513, past 512 => fixture 'channel': 510, 'layout': 'rgbw'
3: "count" must be => fixture 'channel': 1, 'layout': 'i', 'count': 513
4: "Par" overlaps "A" at universe 1 channel 8 => fixture 'channel': 8, 'layout': 'x'
4: the name "Par 2" stands for a fixture already => namesake 'channel': 9, 'layout': 'x'
1:  => show
3: not JSON => show {\n'scenes': [\n{'id':1}
1: a show must stand in => show []
3: a show has no key "scnes" => show {\n\n'scnes': []}
2: "scenes" must => show {'scenes':\n{}}
2: a program must have "id" => show {'programs':[{'id':1,'name':'x'},\n{'name':\n'x'}]}
3: the id 1 stands => show {'scenes':[\n{'id':1,'name':'x'},\n{'id':1,'name':'y'}]}
2: "id" must be => show {'scenes':[{\n'id':'1'}]}
2: "id" must be => show {'scenes':[{\n'id':3000000000}]}
2: a program has no => show {'programs':[{'id':1,\n'area':1}]}
2: "serial" must be a text => show {\n'serial':5}
)")) {
            QString sBad = row[1];
            sBad.replace("\\n", "\n").replace("\\u201c", "\u201c").replace("%200", QString(200, 'x'));
            const QString sSaid = Complaint(members[sBad.section(' ', 0, 0)].arg(sBad.section(' ', 1)));
            QVERIFY2(sSaid.startsWith("rig: line " + row[0]), qPrintable(row.join(": ") + ": " + sSaid));
        }
    }

    /// The rig of docs/lamps.md is one, and its patch sheet is the one shown there.
    void documentedRig() {
        const QString sText = TextOf(DOCS_FOLDER "/lamps.md");
        const Show show = ReadShow(
            "lamps.md", "\xEF\xBB\xBF" + sText.section("```json show\n", 1).section("\n```", 0, 0).toUtf8());
        QVERIFY(sText.contains("    " + PatchSheet(show).join("\n    ") + "\n"));
        Begin(show);
        Play("s1+ 1500 1=128,70,10,60");
    }

    /// The built-in show lights something, whatever is pressed first, and all of it on universe 1.
    void builtIn() {
        QCOMPARE(m_pPlayback->Patched().to_ulong(), 5UL);
        const Show show = Show::BuiltIn();
        for (const auto& [pEntries, pStart] : {std::pair{&show.scenes, "s%1+"}, {&show.programs, "p%1+"}}) {
            for (const Scene& entry : *pEntries) {
                Begin(show);
                Play("0 s1- s9- " + QString(pStart).arg(entry.id) + " 60000");
                Render();
                const bool bLit = std::any_of(m_levels.begin(), m_levels.end(), [](int n) { return n > 0; });
                QVERIFY2(bLit != (entry.name == "House out" || entry.name == "Blackbox"), entry.name.c_str());
            }
        }
        QCOMPARE(m_pPlayback->Patched().to_ulong(), 1UL);
    }

    /// However many steps there are, only what they name takes room, and there is an end to that.
    void manySteps() {
        const auto show = [](int nSteps, const char* pStep) {
            return R"({'programs':[{'id':1,'name':'P','state':true,'steps':[)" +
                   QStringList(QVector<QString>(nSteps, pStep).toList()).join(",\n") +
                   R"(]}],'fixtures':[{'name':'A','universe':1,'channel':1,'layout':'i','count':512}]})";
        };
        const QString sMany = show(100000, "{'levels':{'A 9':[7]},'fade':1}").replace('\'', '"');
        Begin(ReadShow("many", sMany.toUtf8()));
        Play("0 9=0 500 9=4 1000 9=7 99999999 8=0,7");
        QCOMPARE(Complaint(show(30000, "{'levels':{'A':[7]}}")),
                 QString("rig: line 19532: here the show comes to have more than 10000000 levels"));
    }
};

QTEST_GUILESS_MAIN(TestPlayback)
#include "tst_playback.moc"
