#pragma once

#include <QList>
#include <QString>

#include <optional>

/// One IPv4 address of one network interface of this machine.
struct InterfaceAddress {
    QString name;       ///< the interface, as a user knows it
    QString address;    ///< a.b.c.d
    QString broadcast;  ///< a.b.c.d, or empty where the interface has none
};

/// Whether a lighting network can be expected behind an address: an IPv4 address that begins with 192, 172,
/// 10 or 2. Any other text, IPv6 included, is refused.
bool IsLightingAddress(const QString& sAddress);

/// Whether a text names a network: "auto", an address a.b.c.d, or what an interface may be called.
bool IsNetwork(const QString& sNetwork);

/// The network of that name as it is now, if it is there: "Auto" for any.
std::optional<InterfaceAddress> FindNetwork(const QString& sNetwork);

/// The addresses of this machine that pass, in the system's order, whether their interface is up or
/// not.
QList<InterfaceAddress> LightingAddresses();
