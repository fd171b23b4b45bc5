#pragma once

#include <QComboBox>
#include <QCoreApplication>

/// The servers that have answered, sorted by the label a user knows them by.
class ServerList : public QComboBox {
    Q_DECLARE_TR_FUNCTIONS(ServerList)

public:
    /// More than a network of lights has, and few enough to be listed at once.
    static constexpr int MaxServers = 256;
    /// How much of a serial a label shows.
    static constexpr int MaxLabel = 64;

    /// Adds the server of a serial at an address. Its label is the serial, or tells the address where the
    /// serial tells nothing ("0000" or none). False if the address is known already or the list is full.
    bool Add(const QString& sSerial, const QString& sAddress);

    /// The address at a place; empty for a place that is none.
    QString Address(int iPlace) const { return itemData(iPlace).toString(); }

protected:
    /// Turned over the closed list, the wheel would leave one server for another.
    void wheelEvent(QWheelEvent* event) override;
};
