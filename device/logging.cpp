#include "device/logging.h"

#include <QStringList>

#include <cstdlib>
#include <unistd.h>

Q_LOGGING_CATEGORY(logNet, "corvane.net", QtWarningMsg)
Q_LOGGING_CATEGORY(logWire, "corvane.wire", QtWarningMsg)
Q_LOGGING_CATEGORY(logDrop, "corvane.drop", QtWarningMsg)

namespace {

/// A message handler is a function and no more.
logging::Session* pSession = nullptr;

}  // namespace

namespace logging {

Session::Session() : m_errors(STDERR_FILENO) {
    if (!qEnvironmentVariableIsSet("QT_MESSAGE_PATTERN")) {
        qSetMessagePattern("%{if-category}%{time HH:mm:ss.zzz} %{category} %{endif}%{message}");
    }
    pSession = this;
    qInstallMessageHandler(&Session::Take);
}

Session::~Session() {
    qInstallMessageHandler(nullptr);
    pSession = nullptr;
}

void Session::Take(QtMsgType type, const QMessageLogContext& context, const QString& sText) {
    const std::lock_guard lock(pSession->m_mutex);  // any thread may have something to say
    pSession->m_errors.Write(qFormatLogMessage(type, context, sText));
    if (type == QtFatalMsg) {
        pSession->m_errors.Finish();
    }
}

QString Summary(const QByteArray& datagram) {
    static const QStringList names{
        "type",          "alive",  "too many clients", "goodbye", "",        "address",   "state?",
        "state",         "scene",  "program",          "color",   "command", "channel",   "universe",
        "who is there?", "serial", "universe color",   "scenes?", "scenes",  "commands?", "channels?"};
    const QByteArray key = "\"typ\"";
    const auto nKey = datagram.indexOf(key);
    const auto nColon = nKey < 0 ? nKey : datagram.indexOf(':', nKey);
    QString sKind = "piece";
    if (nColon >= 0) {
        const int nType = std::atoi(datagram.mid(nColon + 1, 20).constData());
        sKind = QString("%1 (%2)").arg(names.value(nType, "type")).arg(nType);
    }
    return QString("%1, %2 bytes").arg(sKind).arg(datagram.size());
}

}  // namespace logging
