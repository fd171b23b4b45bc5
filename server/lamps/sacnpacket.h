#pragma once

#include <QByteArray>
#include <QUuid>

#include <array>
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

/// The levels of one universe, to be filled in and sent over and over.
class DataPacket {
public:
    /// All slots are 0.
    DataPacket(const Source& source, int nUniverse);

    /// The bytes to send, 638 of them. Each call is a new packet, its sequence number one higher.
    const QByteArray& Next(bool bTerminated = false);
    unsigned char* Slots();
    const unsigned char* Slots() const;

private:
    QByteArray m_bytes;
};

/// Tells receivers that a source sends these universes, which are sorted and at most 512.
QByteArray Discovery(const Source& source, const std::vector<int>& universes);

/// The multicast group of a universe, 239.255.high.low, as a number.
constexpr quint32 GroupOf(int nUniverse) {
    return 0xEFFF0000U | static_cast<quint32>(nUniverse);
}

}  // namespace sacn
