#include "device/fragments.h"
#include "device/readers.h"

#include <QtTest>

#include <memory>
#include <stdexcept>

class TestDevice : public QObject {
    Q_OBJECT

private slots:
    void conversions_data() {
        QTest::addColumn<QByteArray>("value");
        QTest::addColumn<int>("number");
        QTest::addColumn<bool>("boolean");
        QTest::addColumn<QString>("text");
        const auto row = [](const char* pValue, int nNumber, bool b, const char* pText = "") {
            QTest::newRow(pValue) << QByteArray(pValue) << nNumber << b << QString(pText);
        };
        row("7", 7, true);
        row("-1.9", -1, true);
        row("0.2", 0, true);
        row("2147483648", INT_MAX, true);
        row("-9e99", INT_MIN, true);
        row("18446744073709551615", INT_MAX, true);
        row("true", 1, true);
        row("false", 0, false);
        row("null", 0, false);
        row("[1]", 0, false);
        row("{\"a\":1}", 0, false);
        row("\"12\"", 12, true, "12");
        row("\"-3.7\"", -3, true, "-3.7");
        row("\"0\"", 0, false, "0");
        row("\"12px\"", 0, false, "12px");
        row("\"nan\"", 0, false, "nan");
        row("\"a\\u0000b\"", 0, false, "a");
        row("\"\\u00e9\"", 0, false, "\xC3\xA9");
    }

    void conversions() {
        QFETCH(QByteArray, value);
        const JSONDocument document("{\"x\":" + value + "}");
        bool bMet = false;
        document.Root().ForEachMember("x", [&](const JSONNode& node) {
            bMet = true;
            QTEST(node.AsInt(), "number");
            QTEST(node.AsBool(), "boolean");
            const QByteArray text(node.AsText().data(), static_cast<int>(node.AsText().size()));
            QTEST(QString::fromUtf8(text), "text");
        });
        QVERIFY(bMet);
    }

    void membersKeepOrderAndRepeat() {
        const JSONDocument document(R"({"b":1,"a":2,"b":3})");
        QByteArray walk;
        document.Root().ForEachMember([&walk](std::string_view sName, const JSONNode& value) {
            walk +=
                QByteArray(sName.data(), static_cast<int>(sName.size())) + QByteArray::number(value.AsInt());
        });
        QCOMPARE(walk, QByteArray("b1a2b3"));
    }

    void badTexts_data() {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("NUL first") << QByteArray("\0{}", 3);
        QTest::newRow("cut") << QByteArray(R"({"typ":)");
        QTest::newRow("more after the end") << QByteArray("{}{}");
        QTest::newRow("tiny exponent") << QByteArray(R"({"a":0.00000000000000000000000001e-2147483639x})");
        QTest::newRow("beyond 64 bits") << QByteArray(R"({"a":99999999999999999999})");
        QTest::newRow("65 levels") << QByteArray(65, '[') + QByteArray(65, ']');
        QTest::newRow("a million brackets") << QByteArray(1000000, '[');
    }

    void badTexts() {
        QFETCH(QByteArray, text);
        QVERIFY_EXCEPTION_THROWN(JSONDocument{text}, std::invalid_argument);
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
        QCOMPARE(command.dim, 7);
        QCOMPARE(command.bo, false);
        QCOMPARE(command.white, true);
        QCOMPARE(command.speed, 50);
    }

    void universeContents_data() {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<int>("universe");
        QTest::addColumn<int>("level");  // of universe 2, channel 3, where 50 stood, held
        QTest::addColumn<bool>("held");
        QTest::newRow("set") << QByteArray(R"({"universe":2,"channels":[{"c":3,"l":10,"s":true}]})") << 2
                             << 10 << true;
        QTest::newRow("8 bits") << QByteArray(R"({"universe":2,"channels":[{"c":3,"l":257}]})") << 2 << 1
                                << false;
        QTest::newRow("level before channel")
            << QByteArray(R"({"universe":2,"channels":[{"l":10,"c":3}]})") << 2 << 50 << false;
        QTest::newRow("no elements") << QByteArray(R"({"universe":2,"channels":[]})") << 2 << 50 << false;
        QTest::newRow("no list") << QByteArray(R"({"universe":2,"channels":{}})") << 2 << 50 << true;
        QTest::newRow("channels first")
            << QByteArray(R"({"channels":[{"c":3,"l":10}],"universe":2})") << 2 << 50 << true;
        QTest::newRow("universe 32") << QByteArray(R"({"universe":32,"channels":[{"c":0,"l":10}]})") << 32
                                     << 50 << true;
        QTest::newRow("universe -1") << QByteArray(R"({"universe":-1,"channels":[{"c":3,"l":10}]})") << -1
                                     << 50 << true;
        QTest::newRow("bad channel") << QByteArray(
                                            R"({"universe":1,"channels":[{"c":515,"l":9},{"c":-1,"l":9}]})")
                                     << 1 << 50 << true;
    }

    void universeContents() {
        QFETCH(QByteArray, content);
        const auto universes = std::make_unique<Universes>();
        universes->levels[Universes::At(2, 3)] = 50;
        universes->states[Universes::At(2, 3)] = true;
        QTEST(readInto(JSONDocument(content).Root(), *universes), "universe");
        QTEST(int{universes->levels[Universes::At(2, 3)]}, "level");
        QTEST(bool{universes->states[Universes::At(2, 3)]}, "held");
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
