#pragma once

#include <QtNetwork>
#include <QtTest>

/// The server as a program, running.
struct Program {
    QByteArray log;
    QProcess program;

    explicit Program(const QStringList& arguments = {}) {
        QObject::connect(&program, &QProcess::readyReadStandardOutput,
                         [this] { log += program.readAllStandardOutput(); });
        program.start(SERVER_PROGRAM, arguments + QStringList("--verbose"));
        QVERIFY(
            QTest::qWaitFor([this] { return log.contains("listens") || log.contains("waits for"); }, 20000));
    }
    /// As by a crash.
    ~Program() { program.close(); }
};

/// Sends a message to the server of this computer: its type and content, without the brackets.
inline void Tell(const QByteArray& message) {
    QUdpSocket().writeDatagram("{\"typ\":" + message + '}', QHostAddress::LocalHost, 8093);
}
