#include "widgets/serverlist.h"

#include <QtTest>

class TestServerList : public QObject {
    Q_OBJECT

private slots:
    void sortedByLabel() {
        ServerList servers;
        QCOMPARE(servers.Add("Beta", "10.0.0.2"), 0);
        QCOMPARE(servers.Add("Alpha", "10.0.0.9"), 0);
        QCOMPARE(servers.Add("Gamma", "10.0.0.1"), 2);
        QCOMPARE(servers.Add("Beta", "10.0.0.3"), 2);
        QCOMPARE(servers.Add("Omega", "10.0.0.9"), -1);
        QCOMPARE(servers.Addresses(), QStringList({"10.0.0.9", "10.0.0.2", "10.0.0.3", "10.0.0.1"}));
        QCOMPARE(servers.Add("0000", "10.0.0.4"), 4);
        QCOMPARE(servers.Add("", "10.0.0.5"), 0);
        QCOMPARE(servers.Labels(),
                 QStringList({"10.0.0.5", "Alpha", "Beta", "Beta", "Gamma", "Server - 10.0.0.4"}));
    }
};

QTEST_APPLESS_MAIN(TestServerList)
#include "tst_serverlist.moc"
