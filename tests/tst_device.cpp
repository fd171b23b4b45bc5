#include "device/fragments.h"
#include "device/readers.h"

#include <QtTest>

#include <malloc.h>
#include <memory>
#include <stdexcept>

class TestDevice : public QObject {
    Q_OBJECT

private slots:
    /// A value, and what it is as a number, as a boolean and as a text.
    void conversions() {
        for (const QString sRow :
             {"7 = 7 1 7", "-1.9 = -1 1 -1.9", "0.2 = 0 1 0.2", "2147483648 = 2147483647 1 2147483648",
              "-9e99 = -2147483648 1 -9e+99", "18446744073709551615 = 2147483647 1 18446744073709551615",
              "true = 1 1 ", "false = 0 0 ", "null = 0 0 ", "[1] = 0 0 ", R"({"a":1} = 0 0 )",
              R"("12" = 12 1 12)", R"("-3.7" = -3 1 -3.7)", R"("0" = 0 0 0)", R"("12px" = 0 0 12px)",
              R"("nan" = 0 0 nan)", R"("a\u0000b" = 0 0 a)", R"("\u00e9" = 0 0 é)"}) {
            const QString sValue = sRow.section(" = ", 0, 0);
            QString sRead;
            const JSONDocument document(QString("{\"x\":%1}").arg(sValue).toUtf8());
            document.Root().ForEachMember("x", [&](const JSONNode& node) {
                const QString sText = QString::fromStdString(node.AsText());
                sRead += QString("%1 %2 %3").arg(node.AsInt()).arg(node.AsBool()).arg(sText);
            });
            QCOMPARE(sValue + " = " + sRead, sRow);
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
        for (const QByteArray& text :
             {QByteArray(R"({"a":0.00000000000000000000000001e-2147483639})"),
              QByteArray(60, '[') + QByteArray(60, ']'), QByteArray("{}\0rubbish", 10)}) {
            QCOMPARE(JSONDocument(text).Root().IsArray(), text.startsWith('['));
        }
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
            const QString sResult = QString("%1: %2").arg(nUniverse).arg(universes->levels[at]);
            QCOMPARE(sResult + (universes->states[at] ? " held" : ""), QString(pResult));
        }
    }

    void fragments() {
        Fragments fragments;
        const auto join = [&fragments](const QByteArray& piece, const char* pSender = "server") {
            return fragments.Join(piece, pSender).value_or("nothing");
        };
        QCOMPARE(join("{\"typ\":8,\"con!#("), QByteArray("nothing"));
        // A whole message in between goes its own way, and so do a stranger's pieces.
        QCOMPARE(join("{}"), QByteArray("{}"));
        QCOMPARE(join("{{!#(", "stranger"), QByteArray("nothing"));
        QCOMPARE(join("{}!#(", "other"), QByteArray("{}"));
        QCOMPARE(join(QByteArray("tent\":{\"id\":1}!#(\0tail", 22)), QByteArray("nothing"));
        QCOMPARE(join("}!#("), QByteArray(R"({"typ":8,"content":{"id":1}})"));
        // Nothing of it is left behind.
        QCOMPARE(join("{}!#("), QByteArray("{}"));
        QCOMPARE(join("{!#("), QByteArray("nothing"));
        fragments.Clear();
        QCOMPARE(join("{}!#("), QByteArray("{}"));
        // Who fills the room for all loses what is his; so does who was heard longest ago.
        QCOMPARE(join("{!#("), QByteArray("nothing"));
        for (int i = 0; i < 100; ++i) {
            join(QByteArray(60000, '{') + "!#(", "stranger");
        }
        QCOMPARE(join("}!#("), QByteArray("{}"));
        join("{!#(");
        for (int i = 0; i < Fragments::MaxSenders; ++i) {
            join("{!#(", std::to_string(i).c_str());
        }
        QCOMPARE(join("}!#("), QByteArray("nothing"));
    }

    void fragmentsAreBoundedAndLinear() {
        Fragments fragments;
        for (const int nSize : {Fragments::MaxSize, Fragments::MaxSize + 1}) {
            QVERIFY(!fragments.Join('{' + QByteArray(nSize - 2, ' ') + "!#(", {}));
            QCOMPARE(fragments.Join("}!#(", {}).has_value(), nSize == Fragments::MaxSize);
            fragments.Clear();
        }
        const auto took = [&fragments](int nPieces) {
            QElapsedTimer timer;
            timer.start();
            for (int i = 0; i < nPieces; ++i) {
                fragments.Join("{!#(", {});
            }
            fragments.Clear();
            return timer.nsecsElapsed();
        };
        QVERIFY(took(400000) < 50 * std::max({took(40000), took(40000), took(40000)}));
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
};

QTEST_APPLESS_MAIN(TestDevice)
#include "tst_device.moc"
