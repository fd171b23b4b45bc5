#include "device/logging.h"

#include <QStringList>

#include <cstdlib>

Q_LOGGING_CATEGORY(logNet, "corvane.net", QtWarningMsg)
Q_LOGGING_CATEGORY(logWire, "corvane.wire", QtWarningMsg)
Q_LOGGING_CATEGORY(logDrop, "corvane.drop", QtWarningMsg)

namespace logging {

void SetPattern() {
    if (!qEnvironmentVariableIsSet("QT_MESSAGE_PATTERN")) {
        qSetMessagePattern("%{if-category}%{time HH:mm:ss.zzz} %{category} %{endif}%{message}");
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

QString Summary(const std::string& sText) {
    return Summary(QByteArray::fromStdString(sText));
}

}  // namespace logging
