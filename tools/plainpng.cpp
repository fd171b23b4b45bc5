#include "tools/plainpng.h"

#include <QFile>
#include <QtEndian>

namespace {

QByteArray BigEndian(quint32 nValue) {
    const quint32 nBytes = qToBigEndian(nValue);
    return QByteArray(reinterpret_cast<const char*>(&nBytes), sizeof nBytes);
}

quint32 Checksum(const QByteArray& bytes) {
    quint32 nSum = 0xffffffffU;
    for (const char c : bytes) {
        nSum ^= static_cast<unsigned char>(c);
        for (int i = 0; i < 8; ++i) {
            nSum = (nSum >> 1U) ^ ((nSum & 1U) != 0 ? 0xedb88320U : 0U);
        }
    }
    return ~nSum;
}

QByteArray Chunk(const QByteArray& type, const QByteArray& data) {
    return BigEndian(static_cast<quint32>(data.size())) + type + data + BigEndian(Checksum(type + data));
}

}  // namespace

bool SavePlain(const QImage& picture, const QString& sPath) {
    const QImage pixels = picture.convertToFormat(QImage::Format_RGBA8888);
    QByteArray rows;
    for (int y = 0; y < pixels.height(); ++y) {
        rows.append('\0');  // the row's filter: none
        rows.append(reinterpret_cast<const char*>(pixels.constScanLine(y)), 4 * pixels.width());
    }
    const QByteArray format("\x08\x06\x00\x00\x00", 5);  // 8 bits, red, green, blue and alpha
    const QByteArray header = BigEndian(static_cast<quint32>(pixels.width())) +
                              BigEndian(static_cast<quint32>(pixels.height())) + format;
    const QByteArray file =
        "\x89PNG\r\n\x1a\n" + Chunk("IHDR", header) +
        Chunk("IDAT", qCompress(rows, 9).mid(4)) +  // Qt puts the size before zlib's stream
        Chunk("IEND", {});
    QFile out(sPath);
    return out.open(QIODevice::WriteOnly) && out.write(file) == file.size() && out.flush();
}
