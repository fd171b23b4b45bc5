#pragma once

#include <QByteArray>
#include <QUuid>

#include <string>
#include <vector>

/// The packets of streaming ACN (ANSI E1.31), as bytes. Universes count from 1 here, as on the network.
namespace sacn {

constexpr quint16 Port = 5568;
/// The universe whose group hears which universes there are.
constexpr int DiscoveryUniverse = 64214;
constexpr int SlotCount = 512;

/// Whose packets they are.
struct Source {
    QUuid cid;           ///< the same for as long as the source exists
    std::string name;    ///< UTF-8; what goes beyond 63 bytes is cut off between two characters
    int priority = 100;  ///< 0 to 200; of several sources of a universe the highest is obeyed
};

/// The levels of one universe, 512 of them. Each packet's number is one higher than that of the one before.
QByteArray Data(const Source& source, int nUniverse, quint8 ucNumber, const QByteArray& levels,
                bool bTerminated = false);

/// Tells receivers that a source sends these universes, which are sorted and at most 512.
QByteArray Discovery(const Source& source, const std::vector<int>& universes);

/// The multicast group of a universe, 239.255.high.low, as a number.
constexpr quint32 GroupOf(int nUniverse) {
    return 0xEFFF0000U | static_cast<quint32>(nUniverse);
}

}  // namespace sacn
