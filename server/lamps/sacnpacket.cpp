#include "server/lamps/sacnpacket.h"

#include <QtEndian>

#include <algorithm>

namespace {

constexpr int NameSize = 64;
constexpr quint32 DataVector = 4;
constexpr quint32 ExtendedVector = 8;
constexpr quint32 FramingVector = 2;  ///< of data, and of a discovery
constexpr quint32 UniverseListVector = 1;
constexpr quint8 SetPropertyVector = 2;
constexpr quint8 AddressAndDataType = 0xA1;
constexpr quint8 StreamTerminated = 0x40;

/// Numbers as they are sent, each in as many bytes as its type has.
template <typename... Numbers>
QByteArray Bytes(Numbers... numbers) {
    QByteArray bytes;
    const auto append = [&bytes](auto number) {
        number = qToBigEndian(number);
        bytes.append(reinterpret_cast<const char*>(&number), sizeof number);
    };
    (append(numbers), ...);
    return bytes;
}

/// A layer, which reaches to the packet's end, behind its flags and its length.
QByteArray Layer(const QByteArray& content) {
    return Bytes(static_cast<quint16>(0x7000 | (content.size() + 2))) + content;
}

/// What all packets share: the root layer, and in it the framing layer.
QByteArray Packet(const sacn::Source& source, quint32 nVector, const QByteArray& content) {
    const QByteArray name = QByteArray::fromStdString(source.name);
    auto nEnd = std::min<QByteArray::size_type>(name.size(), NameSize - 1);
    while (nEnd > 0 && nEnd < name.size() && (name.at(nEnd) & 0xC0) == 0x80) {
        --nEnd;
    }
    const QByteArray framing =
        Layer(Bytes(FramingVector) + name.left(nEnd).leftJustified(NameSize, '\0') + content);
    return Bytes(quint16{0x0010}, quint16{0}) + QByteArray("ASC-E1.17\0\0\0", 12) +
           Layer(Bytes(nVector) + source.cid.toRfc4122() + framing);
}

}  // namespace

namespace sacn {

QByteArray Data(const Source& source, int nUniverse, quint8 ucNumber, const QByteArray& levels,
                bool bTerminated) {
    constexpr quint16 NoSynchronization = 0;
    const quint8 ucOptions = bTerminated ? StreamTerminated : 0;
    const QByteArray properties =
        Layer(Bytes(SetPropertyVector, AddressAndDataType, quint16{0} /* first */, quint16{1} /* step */,
                    quint16{1 + SlotCount}, quint8{0} /* start code */) +
              levels);
    return Packet(source, DataVector,
                  Bytes(static_cast<quint8>(source.priority), NoSynchronization, ucNumber, ucOptions,
                        static_cast<quint16>(nUniverse)) +
                      properties);
}

QByteArray Discovery(const Source& source, const std::vector<int>& universes) {
    QByteArray list = Bytes(UniverseListVector, quint8{0}, quint8{0});  // this page and the last one
    for (const int nUniverse : universes) {
        list += Bytes(static_cast<quint16>(nUniverse));
    }
    return Packet(source, ExtendedVector, Bytes(quint32{0}) + Layer(list));
}

}  // namespace sacn
