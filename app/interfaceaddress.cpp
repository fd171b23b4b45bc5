#include "app/interfaceaddress.h"

#include <QHostAddress>
#include <QNetworkInterface>
#include <QRegularExpression>

bool IsLightingAddress(const QString& sAddress) {
    static const QRegularExpression filter(
        QRegularExpression::anchoredPattern(R"(((192|172|10|2)(\.|$))(([0-2]?[0-9][0-9]?)(\.|$)){3})"));
    return filter.match(sAddress).hasMatch();
}

namespace {

/// Every IPv4 address of this machine that passes.
template <typename Passes>
QList<InterfaceAddress> Addresses(Passes passes) {
    QList<InterfaceAddress> addresses;
    for (const QNetworkInterface& interface : QNetworkInterface::allInterfaces()) {
        for (const QNetworkAddressEntry& entry : interface.addressEntries()) {
            const InterfaceAddress own{interface.humanReadableName(), entry.ip().toString(),
                                       entry.broadcast().toString()};
            if (entry.ip().protocol() == QAbstractSocket::IPv4Protocol && passes(own)) {
                addresses.append(own);
            }
        }
    }
    return addresses;
}

}  // namespace

QList<InterfaceAddress> LightingAddresses() {
    return Addresses([](const InterfaceAddress& own) { return IsLightingAddress(own.address); });
}

bool IsNetwork(const QString& sNetwork) {
    static const QRegularExpression fourNumbers(R"(^\d+(\.\d+){3}$)");
    // The system's own limits for a name, and no name that is a mistyped address.
    static const QRegularExpression name(R"(^(?![\d.]+$)[^\s/:-][^\s/:]{0,14}$)");
    const bool bAddress = sNetwork.contains(fourNumbers) && !QHostAddress(sNetwork).isNull();
    return bAddress || sNetwork.contains(name);
}

std::optional<InterfaceAddress> FindNetwork(const QString& sNetwork) {
    if (sNetwork == "auto") {
        const QList<InterfaceAddress> own = LightingAddresses();
        return InterfaceAddress{sNetwork, "Auto", own.isEmpty() ? "127.0.0.1" : own.first().broadcast};
    }
    const QList<InterfaceAddress> found = Addresses(
        [&sNetwork](const InterfaceAddress& own) { return own.name == sNetwork || own.address == sNetwork; });
    if (found.isEmpty()) {
        return std::nullopt;
    }
    // Who has none is alone, as this computer is with itself.
    const QString& sBroadcast = found.first().broadcast;
    return InterfaceAddress{sNetwork, found.first().address,
                            sBroadcast.isEmpty() ? found.first().address : sBroadcast};
}
