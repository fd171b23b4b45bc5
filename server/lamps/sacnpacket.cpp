#include "server/lamps/sacnpacket.h"

#include <QDataStream>
#include <QIODevice>

#include <algorithm>

namespace {

constexpr int DataSize = 638;
constexpr int DiscoverySize = 120;  ///< without universes
constexpr int NameSize = 64;
constexpr int RootAt = 16;
constexpr int FramingAt = 38;
constexpr int SequenceAt = 111;
constexpr int OptionsAt = 112;
constexpr int DmpAt = 115;
constexpr int UniverseListAt = 112;
constexpr int SlotsAt = 126;

constexpr quint32 DataVector = 4;
constexpr quint32 ExtendedVector = 8;
constexpr quint32 DataFramingVector = 2;
constexpr quint32 DiscoveryFramingVector = 2;
constexpr quint32 UniverseListVector = 1;
constexpr quint8 SetPropertyVector = 2;
constexpr quint8 AddressAndDataType = 0xA1;
constexpr char StreamTerminated = 0x40;

/// Flags and length of the layer that begins at `nAt` and reaches to the end.
quint16 Length(int nSize, int nAt) {
    return static_cast<quint16>(0x7000 | (nSize - nAt));
}

/// The root layer and the framing layer's head, which all packets share.
void Begin(QDataStream& stream, int nSize, quint32 nVector, quint32 nFramingVector,
           const sacn::Source& source) {
    stream << quint16{0x0010} << quint16{0};
    stream.writeRawData("ASC-E1.17\0\0\0", 12);
    stream << Length(nSize, RootAt) << nVector;
    stream.writeRawData(source.cid.toRfc4122().constData(), 16);
    stream << Length(nSize, FramingAt) << nFramingVector;
    std::string sName = source.name;
    if (sName.size() >= NameSize) {
        std::size_t nEnd = NameSize - 1;
        while (nEnd > 0 && (static_cast<unsigned char>(sName[nEnd]) & 0xC0U) == 0x80U) {
            --nEnd;
        }
        sName.resize(nEnd);
    }
    sName.resize(NameSize);
    stream.writeRawData(sName.data(), NameSize);
}

}  // namespace

namespace sacn {

DataPacket::DataPacket(const Source& source, int nUniverse) {
    QDataStream stream(&m_bytes, QIODevice::WriteOnly);
    Begin(stream, DataSize, DataVector, DataFramingVector, source);
    stream << static_cast<quint8>(source.priority) << quint16{0} /* no synchronization */;
    stream << quint8{0} << quint8{0} << static_cast<quint16>(nUniverse);
    stream << Length(DataSize, DmpAt) << SetPropertyVector << AddressAndDataType;
    stream << quint16{0} /* first */ << quint16{1} /* step */ << quint16{1 + SlotCount} << quint8{0};
    m_bytes.resize(DataSize);
    std::fill_n(Slots(), SlotCount, static_cast<unsigned char>(0));
}

const QByteArray& DataPacket::Next(bool bTerminated) {
    m_bytes[SequenceAt] = static_cast<char>(m_bytes.at(SequenceAt) + 1);
    m_bytes[OptionsAt] = bTerminated ? StreamTerminated : '\0';
    return m_bytes;
}

unsigned char* DataPacket::Slots() {
    return reinterpret_cast<unsigned char*>(m_bytes.data() + SlotsAt);
}

const unsigned char* DataPacket::Slots() const {
    return reinterpret_cast<const unsigned char*>(m_bytes.constData() + SlotsAt);
}

QByteArray Discovery(const Source& source, const std::vector<int>& universes) {
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    const int nSize = DiscoverySize + 2 * static_cast<int>(universes.size());
    Begin(stream, nSize, ExtendedVector, DiscoveryFramingVector, source);
    stream << quint32{0} << Length(nSize, UniverseListAt) << UniverseListVector;
    stream << quint8{0} << quint8{0};  // this page and the last one
    for (const int nUniverse : universes) {
        stream << static_cast<quint16>(nUniverse);
    }
    return bytes;
}

}  // namespace sacn
