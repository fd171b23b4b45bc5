#include "device/messages.h"
#include "server/lamps/playback.h"
#include "server/record.h"
#include "server/remotes/server.h"
#include "server/show/showfile.h"
#include "tests/files.h"

#include <QtTest>

#include <sys/stat.h>
#include <unistd.h>

/// A show that becomes another one while it is played: recorded into, or edited.
class TestRecord : public QObject {
    Q_OBJECT

    const QTemporaryDir m_folder;
    const QString m_sPath = m_folder.filePath("show.json");
    QRandomGenerator m_random{1};
    qint64 m_nNowMs = 0;

    int Any(int nEnd) { return m_random.bounded(nEnd); }

    /// Fixtures of all letters, with scenes and programs that light some of them.
    QByteArray AnyShow() {
        const QByteArray fixtures = R"([
{ "name": "A", "universe": 2, "channel": 1, "layout": "i", "count": 3 },
{ "name": "B", "universe": 2, "channel": 41, "layout": "rgbw", "count": 2, "independent": @ },
{ "name": "C", "universe": 2, "channel": 81, "layout": "xfxxifrgb", "independent": @ },
{ "name": "D", "universe": 2, "channel": 121, "layout": "aai" },
{ "name": "E", "universe": 2, "channel": 161, "layout": "rfgfbf", "count": 3, "independent": @ },
{ "name": "F", "universe": 2, "channel": 181, "layout": "xx", "count": 2, "default": [9, 0] }])";
        const QVector<std::pair<QString, int>> lamps{{"A", 1},   {"A 2", 1}, {"B", 4},  {"B 1", 4},
                                                     {"B 2", 4}, {"C", 9},   {"D", 3},  {"E", 6},
                                                     {"E 3", 6}, {"F", 2},   {"F 1", 2}};
        const auto look = [&] {
            QJsonObject levels;
            for (int i = 0; i < 3; ++i) {
                const auto& [sName, nLevels] = lamps[Any(11)];
                QJsonArray list;
                while (list.size() < nLevels) {
                    list.append(Any(3) > 0 ? Any(256) : 0);
                }
                levels[sName] = list;
            }
            return QJsonObject{{"fade", Any(3)}, {"levels", levels}};
        };
        QJsonArray scenes;
        QJsonArray programs;
        for (int i = 1; i < 9; ++i) {
            QJsonObject scene = look();
            scene["id"] = i;
            scene["name"] = "S";
            scene["area"] = Any(4);
            scenes.append(scene);
            programs.append(QJsonObject{{"id", i}, {"name", "P"}, {"steps", QJsonArray{look(), look()}}});
        }
        return "{ \"fixtures\": " + QByteArray(fixtures).replace('@', Any(4) > 0 ? "false" : "true") +
               ",\n  \"scenes\": " + QJsonDocument(scenes).toJson() +
               ", \"programs\": " + QJsonDocument(programs).toJson() + "}\n";
    }

    std::unique_ptr<State> m_pState;
    std::unique_ptr<Playback> m_pPlayback;

    void Begin(const Show& show) {
        m_pPlayback.reset();
        m_pState = std::make_unique<State>(show);
        const auto play = [this] {
            return std::make_unique<Playback>(*m_pState, [this] { return m_nNowMs; });
        };
        m_pPlayback = play();
        auto pOpen = std::make_shared<Levels>();
        connect(m_pState.get(), &State::showLeaves, [=] { *pOpen = m_pPlayback->OpenLevels(m_nNowMs); });
        connect(m_pState.get(), &State::showReplaced, [=] {
            auto pPlayback = play();
            pPlayback->TakeOver(*m_pPlayback, *pOpen, m_nNowMs);
            m_pPlayback = std::move(pPlayback);
        });
    }

    /// Some of universe 2, or what a script wants of universe 1.
    QByteArray Shown(qint64 nAfterMs, int nUniverse = 1, int nCount = 200) {
        m_nNowMs += nAfterMs;
        Levels levels;
        m_pPlayback->Render(m_nNowMs, levels);
        return QByteArray(reinterpret_cast<const char*>(&levels[Universes::At(nUniverse, 0)]), nCount);
    }

    void DoSomething() {
        m_nNowMs += Any(1500);
        const int nWhat = Any(5);
        nWhat == 0   ? m_pState->Take(Color{Any(256), Any(256), Any(256), Any(256), false, Any(2) > 0})
        : nWhat == 1 ? m_pState->Hold({40 * Any(5), 1, Any(256), Any(4) > 0})
        : nWhat == 2 ? m_pState->Take(Command{Any(5) == 0, false, false, Any(5) == 0, false, 100, 50})
                     : void(m_pState->Switch({nWhat == 3, 1 + Any(8)}, Any(4) > 0));
    }

private slots:
    /// Whatever is lit is recorded, no lamp moves, then or later, and it is the same when the file is read
    /// again: which has a scene more, and nothing less. Twice, the second time over the first.
    void looks() {
        for (int nRound = 0; nRound < 100; ++nRound) {
            ShowFile file(WriteFile(m_sPath, AnyShow()));
            Begin(file.Load());
            for (int i = 0; i < 12; ++i) {
                DoSomething();
                if (i % 6 < 5) {
                    continue;
                }
                const QByteArray text = TextOf(m_sPath);
                const QByteArray shown = Shown(0);
                const Levels open = m_pPlayback->OpenLevels(m_nNowMs);
                try {
                    Record(*m_pState, open, file, {"Now", Any(5) - 1, 1500, ""});
                } catch (const std::runtime_error& error) {
                    QCOMPARE(error.what(), "nothing is lit");
                    continue;
                }
                QCOMPARE(Shown(0).toHex(), shown.toHex());
                QCOMPARE(Shown(5000).toHex(), shown.toHex());
                const QByteArray now = TextOf(m_sPath);
                const auto same = static_cast<int>(
                    std::mismatch(text.begin(), text.end(), now.begin()).first - text.begin());
                QVERIFY(i > 5 || now.endsWith(text.mid(same)));
                Begin(file.Load());
                m_pState->Switch({false, 9}, true);
                QVERIFY(std::equal(&open[512], &open[712], Shown(1500).begin(),
                                   [](int nOpen, char cNow) { return nOpen == (cNow & 255); }));
            }
        }
    }

    /// A saved edit, a clock, and levels: what runs goes on, what is gone fades out in its own time, a level
    /// that differs is reached in one second, and Black is black at once.
    void edits() {
        const QByteArray text = R"({ "fixtures": [
{ "name": "D", "universe": 1, "channel": 1, "layout": "i", "count": 4 }, { "name": "X", "universe": 1, "channel": 5, "layout": "x" } ],
"scenes": [ { "id": 1, "name": "A", "area": 1, "fade": 4, "levels": { "D 1": [200] } },
            { "id": 2, "name": "B", "area": 2, "fade": 4, "levels": { "D 2": [200], "X": [80] } } ],
"programs": [ { "id": 1, "name": "P", "steps": [ { "fade": 1, "hold": 9, "levels": { "D 3": [100] } },
                                                 { "fade": 1, "hold": 9, "levels": { "D 4": [100] } } ] } ] })";
        Begin(ReadShow("rig", text));
        const auto shows = [this](qint64 nAfterMs, const std::vector<unsigned char>& levels) {
            const QByteArray shown = Shown(nAfterMs, 0, 5);
            return std::vector<unsigned char>(shown.begin(), shown.end()) == levels;
        };
        const auto edit = [&](const char* pOld, const char* pNew) {
            m_pState->Replace(ReadShow("rig", QByteArray(text).replace(pOld, pNew)), m_pState->Runs(), {},
                              {});
        };
        m_pState->Switch({false, 1}, true);
        m_pState->Switch({false, 2}, true);
        m_pState->Switch({true, 1}, true);
        QVERIFY(shows(2000, {100, 100, 100, 0, 40}));  // half-way
        edit(R"("D 3": [100])", R"("D 3": [50])");
        QVERIFY(shows(0, {100, 100, 100, 0, 40}) && shows(500, {125, 125, 75, 0, 50}));
        QVERIFY(shows(1500, {200, 200, 50, 0, 80}) && shows(6500, {200, 200, 25, 50, 80}));
        edit(R"({ "id": 2, "name": "B", "area": 2, "fade": 4, "levels": { "D 2": [200], "X": [80] } })",
             R"({ "id": 7, "name": "C", "area": 2, "levels": { "D 4": [9] } })");
        QVERIFY(m_pState->Runs().size() == 2 && shows(1000, {200, 150, 0, 100, 80}));
        m_pState->Take(Command{true, false, false, false, false, 100, 50});
        QVERIFY(shows(0, {0, 0, 0, 0, 80}));
    }

    /// Saved in place or by another file's renaming, it is told once; a file that goes is none; what the
    /// server writes itself is not told, and leaves a link a link, a file of two names one, and rights as
    /// they are.
    void file() {
        WriteFile(m_sPath, "{}");
        const QString sLink = m_folder.filePath("link");
        QVERIFY(QFile::link(m_sPath, sLink) && ::chmod(qPrintable(m_sPath), 0640) == 0);
        ShowFile file(sLink);
        file.Load();
        file.Watch();
        QSignalSpy edited(&file, &ShowFile::edited);
        file.Save("{ }");
        QVERIFY(QFileInfo(sLink).isSymLink() && TextOf(m_sPath) == "{ }");
        QVERIFY((QFileInfo(m_sPath).permissions() & QFile::ReadGroup) &&
                !(QFileInfo(m_sPath).permissions() & QFile::ReadOther));
        QVERIFY(!edited.wait(1000));
        WriteFile(m_sPath, "{  }");
        QVERIFY(edited.wait());
        QVERIFY(std::rename(qPrintable(WriteFile(m_sPath + '~', "{}")), qPrintable(m_sPath)) == 0 &&
                edited.wait());
        QVERIFY(::link(qPrintable(m_sPath), qPrintable(sLink + '2')) == 0);
        file.Save("{   }");
        QCOMPARE(TextOf(sLink + '2'), QByteArray("{   }"));
        QVERIFY(QFile::remove(m_sPath) && !edited.wait(1000) && edited.size() == 2);
    }

    /// Recorded anew in part, a scene that is off would bring up what else it has: that is refused.
    void inPart() {
        const QByteArray text =
            R"({ "fixtures": [ { "name": "D", "universe": 1, "channel": 1, "layout": "i", "count": 2 } ],
"scenes": [ { "id": 1, "name": "A", "levels": { "D": [200, 100] } } ] })";
        ShowFile file(WriteFile(m_sPath, text));
        Begin(file.Load());
        m_pState->Hold({0, 0, 50, true});
        const auto record = [&] {
            Record(*m_pState, m_pPlayback->OpenLevels(m_nNowMs), file, {"A", -1, 0, "D 1"});
        };
        QVERIFY_EXCEPTION_THROWN(record(), std::runtime_error);
        QVERIFY(TextOf(m_sPath) == text && Shown(0, 0, 2) == QByteArray::fromHex("3200"));
        m_pState->Switch({false, 1}, true);
        record();
        QVERIFY(TextOf(m_sPath) != text && Shown(0, 0, 2) == QByteArray::fromHex("3264"));
    }

    /// A question from elsewhere is not obeyed.
    void hostile() {
        State state{Show()};
        QStringList log;
        Server server(state, {}, [&log](const QString& sLine) { log += sLine; });
        server.SetRecorder([&log](const Recording& wanted) {
            return log += "recorded", QString::fromStdString(wanted.name);
        });
        for (const char* pAddress : {"192.0.2.1", "127.0.0.1"}) {
            server.ReadMessage(QByteArray::fromStdString(messages::Record({"X", 0, 0, ""})),
                               QHostAddress(pAddress), 9);
            QCOMPARE(log.contains("recorded"), QHostAddress(pAddress).isLoopback());
        }
    }
};

QTEST_GUILESS_MAIN(TestRecord)
#include "tst_record.moc"
