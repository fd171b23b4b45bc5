#include "app/interfaceaddress.h"

#include <QNetworkInterface>
#include <QRegularExpression>

bool IsLightingAddress(const QString& sAddress) {
    static const QRegularExpression filter(
        QRegularExpression::anchoredPattern(R"(((192|172|10|2)(\.|$))(([0-2]?[0-9][0-9]?)(\.|$)){3})"));
    return filter.match(sAddress).hasMatch();
}

QList<InterfaceAddress> LightingAddresses() {
    QList<InterfaceAddress> addresses;
    const QList<QNetworkInterface> interfaces = QNetworkInterface::allInterfaces();
    for (const QNetworkInterface& interface : interfaces) {
        const QList<QNetworkAddressEntry> entries = interface.addressEntries();
        for (const QNetworkAddressEntry& entry : entries) {
            const QString sAddress = entry.ip().toString();
            if (IsLightingAddress(sAddress)) {
                addresses.append({interface.humanReadableName(), sAddress, entry.broadcast().toString()});
            }
        }
    }
    return addresses;
}
