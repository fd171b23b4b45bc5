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

/// Every address of this machine whose text passes.
template <typename Passes>
QList<InterfaceAddress> Addresses(Passes passes) {
    QList<InterfaceAddress> addresses;
    const QList<QNetworkInterface> interfaces = QNetworkInterface::allInterfaces();
    for (const QNetworkInterface& interface : interfaces) {
        const QList<QNetworkAddressEntry> entries = interface.addressEntries();
        for (const QNetworkAddressEntry& entry : entries) {
            const QString sAddress = entry.ip().toString();
            if (passes(interface.name(), sAddress)) {
                addresses.append({interface.humanReadableName(), sAddress, entry.broadcast().toString()});
            }
        }
    }
    return addresses;
}

const QRegularExpression& FourNumbers() {
    static const QRegularExpression fourNumbers(R"(^\d+(\.\d+){3}$)");
    return fourNumbers;
}

}  // namespace

QList<InterfaceAddress> LightingAddresses() {
    return Addresses([](const QString&, const QString& sAddress) { return IsLightingAddress(sAddress); });
}

bool IsNetwork(const QString& sNetwork) {
    // The system's own limits for a name, and no name that is a mistyped address.
    static const QRegularExpression name(R"(^(?![\d.]+$)[^\s/:-][^\s/:]{0,14}$)");
    const bool bAddress = sNetwork.contains(FourNumbers()) && !QHostAddress(sNetwork).isNull();
    return bAddress || sNetwork.contains(name);
}

std::optional<InterfaceAddress> FindNetwork(const QString& sNetwork) {
    if (sNetwork == "auto") {
        const QList<InterfaceAddress> own = LightingAddresses();
        return InterfaceAddress{sNetwork, "Auto", own.isEmpty() ? "127.0.0.1" : own.first().broadcast};
    }
    const QList<InterfaceAddress> found =
        Addresses([&sNetwork](const QString& sName, const QString& sAddress) {
            return sAddress.contains(FourNumbers()) && (sName == sNetwork || sAddress == sNetwork);
        });
    if (found.isEmpty()) {
        return std::nullopt;
    }
    // Who has none is alone, as this computer is with itself.
    const QString& sBroadcast = found.first().broadcast;
    return InterfaceAddress{sNetwork, found.first().address,
                            sBroadcast.isEmpty() ? found.first().address : sBroadcast};
}
