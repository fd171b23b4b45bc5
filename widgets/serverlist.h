#pragma once

#include <QCoreApplication>
#include <QStringList>

/// The servers that have answered, sorted by the label a user knows them by.
class ServerList {
    Q_DECLARE_TR_FUNCTIONS(ServerList)

public:
    /// More than a network of lights has, and few enough to be listed at once.
    static constexpr int MaxServers = 256;
    /// How much of a serial a label shows.
    static constexpr int MaxLabel = 64;

    /// Adds the server of a serial at an address. Its label is the serial, or tells the address where the
    /// serial tells nothing ("0000" or none). Returns the place it took, -1 if the address is known already
    /// or the list is full.
    int Add(const QString& sSerial, const QString& sAddress);

    bool IsEmpty() const { return m_addresses.isEmpty(); }
    const QStringList& Addresses() const { return m_addresses; }
    const QStringList& Labels() const { return m_labels; }

private:
    QStringList m_addresses;
    QStringList m_labels;
};
