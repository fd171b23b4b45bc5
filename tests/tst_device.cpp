#include "device/fragments.h"
#include "device/readers.h"
#include "settings/cinifile.h"
#include "tests/files.h"

#include <QTemporaryDir>
#include <QtTest>

#include <csignal>
#include <malloc.h>
#include <memory>
#include <sched.h>
#include <stdexcept>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

/// What comes from outside: texts from the network, and the settings file.
class TestDevice : public QObject {
    Q_OBJECT

    QTemporaryDir m_folder;

    CIniFile Load(const QByteArray& text) {
        CIniFile settings;
        settings.path = WriteFile(m_folder.filePath("Corvane.ini"), text);
        settings.Read();
        settings.Read();  // replaces what was read before
        return settings;
    }

    static QByteArray Saved(const CIniFile& settings) {
        settings.Write();
        return TextOf(settings.path);
    }

private slots:
    /// A value, and what it is as a number, as a boolean and as a text.
    void conversions() {
        for (const QString sRow :
             {"7 = 7 1 7", "-1.9 = -1 1 -1.9", "0.2 = 0 1 0.2", "2147483648 = 2147483647 1 2147483648",
              "-9e99 = -2147483648 1 -9e+99", "18446744073709551615 = 2147483647 1 18446744073709551615",
              "true = 1 1 ", "false = 0 0 ", "null = 0 0 ", "[1] = 0 0 ", R"({"a":1} = 0 0 )",
              R"("12" = 12 1 12)", R"("-3.7" = -3 1 -3.7)", R"("0" = 0 0 0)", R"("12px" = 0 0 12px)",
              R"("nan" = 0 0 nan)", R"("a\u0000b" = 0 0 a)", R"("\u00e9" = 0 0 é)"}) {
            QString sRead = sRow.section(" = ", 0, 0);
            const JSONDocument document("{\"x\":" + sRead.toUtf8() + '}');
            document.Root().ForEachMember("x", [&sRead](const JSONNode& node) {
                const QString sText = QString::fromStdString(node.AsText());
                sRead += QString(" = %1 %2 %3").arg(node.AsInt()).arg(node.AsBool()).arg(sText);
            });
            QCOMPARE(sRead, sRow);
        }
    }

    void oddTexts() {
        for (const QByteArray& text :
             {QByteArray(), QByteArray("\0{}", 3), QByteArray(R"({"typ":)"), QByteArray("{}{}"),
              QByteArray(R"({"a":0.00000000000000000000000001e-2147483639x})"),
              QByteArray(R"({"a":99999999999999999999})"), QByteArray(65, '[') + QByteArray(65, ']'),
              QByteArray(1000000, '[')}) {
            QVERIFY_EXCEPTION_THROWN(JSONDocument{text}, std::invalid_argument);
        }
        QVERIFY(JSONDocument(QByteArray(60, '[') + QByteArray(60, ']')).Root().IsArray());
        QVERIFY(JSONDocument(R"({"a":0.00000000000000000000000001e-2147483639})").Root().IsObject());
        QVERIFY(JSONDocument(QByteArray("{}\0rubbish", 10)).Root().IsObject());
    }

    void universeContents() {
        // Universe, then what became of channel 3 of universe 2, where 50 stood, held.
        for (const auto& [pContent, pResult] :
             {std::pair{R"({"universe":2,"channels":[{"c":3,"l":10,"s":true}]})", "2: 10 held"},
              {R"({"universe":2,"channels":[{"c":3,"l":257}]})", "2: 1"},
              {R"({"universe":2,"channels":[{"l":10,"c":3}]})", "2: 50"},
              {R"({"universe":2,"channels":[]})", "2: 50"},
              {R"({"universe":2,"channels":{}})", "2: 50 held"},
              {R"({"channels":[{"c":3,"l":10}],"universe":2})", "2: 50 held"},
              {R"({"universe":32,"channels":[{"c":0,"l":10}]})", "32: 50 held"},
              {R"({"universe":-1,"channels":[{"c":3,"l":10}]})", "-1: 50 held"},
              {R"({"universe":1,"channels":[{"c":515,"l":9},{"c":-1,"l":9}]})", "1: 50 held"}}) {
            const auto universes = std::make_unique<Universes>();
            universes->Set(2, 3, 50, true);
            const int nUniverse = readInto(JSONDocument(QByteArray(pContent)).Root(), *universes);
            const auto at = Universes::At(2, 3);
            QCOMPARE(QString("%1: %2").arg(nUniverse).arg(universes->levels[at]) +
                         (universes->states[at] ? " held" : ""),
                     QString(pResult));
        }
    }

    void fragments() {
        Fragments fragments;
        // What comes out of each piece, "-" for nothing yet.
        const auto join = [&fragments](std::initializer_list<QByteArray> pieces, int nSender = 0) {
            QByteArray joined;
            for (const QByteArray& piece : pieces) {
                joined += fragments.Join(piece, QString::number(nSender)).value_or("-");
            }
            return joined;
        };
        // A whole message in between goes its own way, and so do a stranger's pieces.
        QCOMPARE(join({"{\"typ\":8,\"con!#(", "{}"}), QByteArray("-{}"));
        QCOMPARE(join({"{{!#("}, 1) + join({"{}!#("}, 2), QByteArray("-{}"));
        // The end comes in its turn, and nothing of all that is left behind.
        QCOMPARE(join({QByteArray("tent\":{\"id\":1}!#(\0tail", 22), "}!#(", "{}!#(", "{!#("}),
                 QByteArray(R"(-{"typ":8,"content":{"id":1}}{}-)"));
        fragments.Clear();
        QCOMPARE(join({"{}!#(", "{!#("}), QByteArray("{}-"));
        // Who was heard longest ago gives way.
        for (int i = 1; i <= 8; ++i) {
            join({"{!#("}, i);
        }
        QCOMPARE(join({"}!#("}), QByteArray("-"));
        // Who fills the room for all loses what is his.
        for (const int nSize : {4194304, 4194305}) {
            fragments.Clear();
            QCOMPARE(join({'{' + QByteArray(nSize - 2, ' ') + "!#(", "}!#("}).endsWith('}'),
                     nSize == 4194304);
        }
    }

    /// What one long text took is given back.
    void longTextsTakeNothingForGood() {
        const auto used = [] { return mallinfo2().uordblks + mallinfo2().hblkhd; };
        const auto nBefore = used();
        for (const int nSize : {100, 1000000, 100}) {
            const JSONDocument document('[' + QByteArray(nSize, ' ') + ']');
        }
        QVERIFY(used() < nBefore + 500000);
    }

    void bytes() {
        const QByteArray head = "PwdState=0\nPwdValue=\nMenuVisible=1|1|1|1\nSceneParams=1|1|1\n";
        const QByteArray full =
            "PwdState=1\nPwdValue=a=b \nMenuVisible=1|0|0|1\nSceneParams=0|1|0\n"
            "Scenes=3;Party;;-1|7;;:/x.png;255|-2;\xC3\xA9;;13172735\nPrograms=3;Loop;;0\n";
        const std::pair<QByteArray, QByteArray> rows[] = {
            {"", head},
            {full, full},
            {QByteArray(full).replace("\n", "\r\n"), full},
            // Flags of other counts and values, keys that are none.
            {"MenuVisible=0|0|0\nSceneParams=0|0|0|0\n", head},
            {"PwdState=true\nMenuVisible=2|x||01\n", QByteArray(head).replace("1|1|1|1", "0|0|0|1")},
            {"PwdState =1\n pwdstate=1\npwdstate=1\n=1\nPwdState\nOther=1\n", head},
            // Wrong records go alone, a key twice appends.
            {"Scenes=1;a;;-1|2;b|3;c;;;|x;d;;red\n", head + "Scenes=1;a;;-1|0;d;;0\n"},
            {"Scenes=1;a;;-1\nScenes=1;b;;-5\n", head + "Scenes=1;a;;-1|1;b;;-1\n"},
            {"Scenes=\nPrograms=;;\n", head},
            {"PwdValue=x", QByteArray(head).replace("Value=", "Value=x")},  // no line end
        };
        for (const auto& [read, written] : rows) {
            QCOMPARE(Saved(Load(read)), written);
        }
    }

    /// What is kept of a scene lies over what the server calls it, where that is wanted.
    void overlaying() {
        CIniFile settings = Load("Scenes=7;Bar;:/x.png;255|7;Other;;0\n");
        for (const QString sRow : {"Bar i #0000ff", "n :/x.png #0000ff", "n i #ff0000"}) {
            settings.sceneParams = {sRow[0] == 'B', sRow[2] == ':', sRow.endsWith("ff0000")};
            QString sName = "n";
            QString sIcon = "i";
            QColor color = Qt::blue;
            settings.SetProgramParams(7, sName, sIcon, color);
            QCOMPARE(sName + sIcon + color.name(), QString("ni#0000ff"));
            settings.SetSceneParams(7, sName, sIcon, color);
            QCOMPARE(sName + ' ' + sIcon + ' ' + color.name(), sRow);
        }
    }

    /// However the program is killed while it writes, the file is the old one or the new one, whole.
    void killedWhileWriting() {
        CIniFile settings = Load("PwdValue=old\n");
        settings.scenes = QVector<SceneParam>(500, {1, "A name", "", Qt::red}).toList();
        const QByteArray old = Saved(settings);
        CIniFile changed = settings;
        changed.pwdValue = "new";
        const QByteArray next = Saved(changed);
        for (int i = 0; i < 100; ++i) {
            const pid_t writer = fork();
            if (writer == 0) {
                for (;; settings.Write()) {
                    changed.Write();
                }
            }
            QTest::qSleep(2 + i / 25);
            QVERIFY(::kill(writer, SIGKILL) == 0 && ::waitpid(writer, nullptr, 0) == writer);
            const QByteArray found = TextOf(settings.path);
            QVERIFY2(found == old || found == next, found);
        }
    }

    /// No text, wherever it comes from, begins a line of its own.
    void lineBreaks() {
        CIniFile settings = Load("");
        settings.pwdValue = "\nx\nPwdState=1\r\n";
        settings.SaveProgramParams(1, "Fog\r\n\tMenuVisible=0|0|0|0\x1b\u0085\u2028;e", "", {});
        const QByteArray saved = Saved(settings);
        QVERIFY2(saved.startsWith("PwdState=0\nPwdValue=x PwdState=1\nMenuVisible=1|1|1|1\n"), saved);
        QVERIFY2(saved.endsWith("Programs=1;Fog   MenuVisible=0|0|0|0   ;e;;-1\n"), saved);
    }

    /// What is no settings file is neither read nor written; a new one is its owner's alone.
    void oddFiles() {
        const QByteArray large = "PwdState=1\n" + QByteArray(16 * 1024 * 1024 - 11, '\n');
        QVERIFY(Load(large).pwdState && !Load(large + '\n').pwdState);
        QCOMPARE(Saved(Load(large + '\n')).size(), large.size() + 1);  // nor lost
        CIniFile settings = Load("");
        const auto rightsAfter = [&settings](bool bReady) {
            settings.Write();
            struct stat status {};
            return bReady && ::stat(qPrintable(settings.path), &status) == 0 ? status.st_mode : 0;
        };
        const auto removed = [&settings] { return QFile::remove(settings.path); };
        for (const mode_t old : {0644U, 0660U}) {
            QCOMPARE(rightsAfter(::chmod(qPrintable(settings.path), old) == 0), S_IFREG | old);
        }
        QCOMPARE(rightsAfter(removed()), mode_t{S_IFREG | 0600});
        QCOMPARE(rightsAfter(removed() && ::mkfifo(qPrintable(settings.path), 0600) == 0),
                 mode_t{S_IFIFO | 0600});
        settings.Read();
        QVERIFY(removed());
        // Without a file the flags stay; without a folder there is silence.
        settings = Load("PwdState=1\nScenes=1;a;;-1\n");
        QVERIFY(removed());
        settings.Read();
        QVERIFY(settings.pwdState && settings.scenes.isEmpty());
        const QString sTarget = m_folder.filePath("target.ini");
        QVERIFY(QFile::link(sTarget, settings.path));
        settings.Write();
        QVERIFY(QFileInfo(settings.path).isSymLink() && TextOf(sTarget).startsWith("PwdState=1"));
        settings.path = m_folder.filePath("no/such/folder/Corvane.ini");
        settings.Write();
    }

    /// A file that can be written but not replaced: mounted where it is, or linked to in a folder that takes
    /// no new one.
    void inPlace() {
        if (::unshare(CLONE_NEWNS) != 0) {
            QSKIP("needs mounts: run in scripts/private-network");
        }
        ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr);  // a chroot has none of its own
        const QString sFolder = m_folder.filePath("mounts");
        QVERIFY(QDir().mkpath(sFolder));
        CIniFile settings = Load(QByteArray(1000, '\n'));
        const QString sMounted = sFolder + "/Corvane.ini";
        const auto bind = [](const QString& sWhat, const QString& sWhere, unsigned long nMore = 0) {
            return ::mount(qPrintable(sWhat), qPrintable(sWhere), nullptr, MS_BIND | nMore, nullptr) == 0;
        };
        QVERIFY(QFile::copy(settings.path, sMounted) && bind(sFolder, sFolder));
        QVERIFY(bind(settings.path, sMounted));
        settings.path = sMounted;
        const QByteArray first = Saved(settings);
        settings.path = m_folder.filePath("Link.ini");
        settings.pwdValue = "linked";
        QVERIFY(bind(sFolder, sFolder, MS_REMOUNT | MS_RDONLY) && QFile::link(sMounted, settings.path));
        const QByteArray second = Saved(settings);
        QVERIFY(::umount2(qPrintable(sMounted), 0) == 0 && ::umount2(qPrintable(sFolder), 0) == 0);
        QCOMPARE(first, QByteArray("PwdState=0\nPwdValue=\nMenuVisible=1|1|1|1\nSceneParams=1|1|1\n"));
        QCOMPARE(second, QByteArray(first).replace("Value=", "Value=linked"));
        QVERIFY(QFileInfo(settings.path).isSymLink());
    }
};

QTEST_GUILESS_MAIN(TestDevice)
#include "tst_device.moc"
