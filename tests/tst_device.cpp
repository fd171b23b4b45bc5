#include "device/fragments.h"
#include "device/readers.h"

#include <QtTest>

#include <memory>
#include <stdexcept>

class TestDevice : public QObject {
    Q_OBJECT

private slots:
    void conversions() {
        const struct {
            const char* pValue;
            int number;
            bool boolean;
            const char* pText;
        } rows[] = {
            {"7", 7, true, ""},
            {"-1.9", -1, true, ""},
            {"0.2", 0, true, ""},
            {"2147483648", INT_MAX, true, ""},
            {"-9e99", INT_MIN, true, ""},
            {"18446744073709551615", INT_MAX, true, ""},
            {"true", 1, true, ""},
            {"false", 0, false, ""},
            {"null", 0, false, ""},
            {"[1]", 0, false, ""},
            {"{\"a\":1}", 0, false, ""},
            {"\"12\"", 12, true, "12"},
            {"\"-3.7\"", -3, true, "-3.7"},
            {"\"0\"", 0, false, "0"},
            {"\"12px\"", 0, false, "12px"},
            {"\"nan\"", 0, false, "nan"},
            {"\"a\\u0000b\"", 0, false, "a"},
            {"\"\\u00e9\"", 0, false, "\xC3\xA9"},
        };
        for (const auto& row : rows) {
            const JSONDocument document(QByteArray("{\"x\":") + row.pValue + "}");
            int nMet = 0;
            document.Root().ForEachMember("x", [&](const JSONNode& node) {
                nMet += node.AsInt() == row.number && node.AsBool() == row.boolean ? 1 : 0;
                QCOMPARE(QString::fromStdString(std::string(node.AsText())), QString(row.pText));
            });
            QVERIFY2(nMet == 1, row.pValue);
        }
    }

    void badTexts() {
        const QByteArray texts[] = {"",
                                    QByteArray("\0{}", 3),
                                    R"({"typ":)",
                                    "{}{}",
                                    R"({"a":0.00000000000000000000000001e-2147483639x})",
                                    R"({"a":99999999999999999999})",
                                    QByteArray(65, '[') + QByteArray(65, ']'),
                                    QByteArray(1000000, '[')};
        for (const QByteArray& text : texts) {
            QVERIFY_EXCEPTION_THROWN(JSONDocument{text}, std::invalid_argument);
        }
    }

    void oddTextsThatParse() {
        for (const QByteArray& text :
             {QByteArray(R"({"a":0.00000000000000000000000001e-2147483639})"),
              QByteArray(60, '[') + QByteArray(60, ']'), QByteArray("{}\0rubbish", 10)}) {
            const JSONDocument document(text);
            QVERIFY(document.Root().IsObject() || document.Root().IsArray());
        }
        const JSONDocument document(QByteArray("{\"n\":\"caf\xE9\",\"id\":4}"));
        Scene scene;
        readInto(document.Root(), scene);
        QCOMPARE(QString::fromStdString(scene.name), QString("caf\uFFFD"));
        QCOMPARE(scene.id, 4);
    }

    void missingKeysLeaveFields() {
        Command command{true, false, false, true, false, 40, 50};
        readInto(JSONDocument(QByteArray(R"({"dim":7,"bo":0,"unknown":1})")).Root(), command);
        QVERIFY(command.dim == 7 && !command.bo && command.white && command.speed == 50);
    }

    void universeContents() {
        const struct {
            const char* pContent;
            int universe;
            int level;  // of universe 2, channel 3, where 50 stood, held
            bool held;
        } rows[] = {
            {R"({"universe":2,"channels":[{"c":3,"l":10,"s":true}]})", 2, 10, true},
            {R"({"universe":2,"channels":[{"c":3,"l":257}]})", 2, 1, false},
            {R"({"universe":2,"channels":[{"l":10,"c":3}]})", 2, 50, false},
            {R"({"universe":2,"channels":[]})", 2, 50, false},
            {R"({"universe":2,"channels":{}})", 2, 50, true},
            {R"({"channels":[{"c":3,"l":10}],"universe":2})", 2, 50, true},
            {R"({"universe":32,"channels":[{"c":0,"l":10}]})", 32, 50, true},
            {R"({"universe":-1,"channels":[{"c":3,"l":10}]})", -1, 50, true},
            {R"({"universe":1,"channels":[{"c":515,"l":9},{"c":-1,"l":9}]})", 1, 50, true},
        };
        for (const auto& row : rows) {
            const auto universes = std::make_unique<Universes>();
            universes->Set(2, 3, 50, true);
            const int nUniverse = readInto(JSONDocument(QByteArray(row.pContent)).Root(), *universes);
            const auto at = Universes::At(2, 3);
            QVERIFY2(nUniverse == row.universe && universes->levels[at] == row.level &&
                         universes->states[at] == row.held,
                     row.pContent);
        }
    }

    void fragments() {
        Fragments fragments;
        QVERIFY(!fragments.Join("{\"typ\":8,\"con!#("));
        // A whole message in between goes its own way.
        QCOMPARE(*fragments.Join("{}"), QByteArray("{}"));
        QVERIFY(!fragments.Join(QByteArray("tent\":{\"id\":1}!#(\0tail", 22)));
        QCOMPARE(*fragments.Join("}!#("), QByteArray(R"({"typ":8,"content":{"id":1}})"));
        // Nothing of it is left behind.
        QCOMPARE(*fragments.Join("{}!#("), QByteArray("{}"));
        QVERIFY(!fragments.Join("{!#("));
        fragments.Clear();
        QCOMPARE(*fragments.Join("{}!#("), QByteArray("{}"));
    }

    void fragmentsAreBoundedAndLinear() {
        Fragments fragments;
        const QByteArray piece = QByteArray(60000, '{') + "!#(";
        for (int i = 0; i < 5000; ++i) {
            QVERIFY(!fragments.Join(piece));
        }
        fragments.Clear();
        QElapsedTimer timer;
        timer.start();
        for (int i = 0; i < 1000000; ++i) {
            fragments.Join("{!#(");
        }
        QVERIFY2(timer.elapsed() < 5000, qPrintable(QString::number(timer.elapsed()) + " ms"));
    }
};

QTEST_APPLESS_MAIN(TestDevice)
#include "tst_device.moc"
