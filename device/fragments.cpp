#include "device/fragments.h"

#include "device/text.h"

#include <algorithm>
#include <utility>

std::optional<QByteArray> Fragments::Join(const QByteArray& datagram) {
    const QByteArray text = datagram.left(TextSize(datagram));
    if (!text.endsWith(Marker)) {
        return text;
    }
    const int nPiece = text.size() - static_cast<int>(sizeof Marker - 1);
    if (m_buffer.size() + nPiece > MaxSize) {
        Clear();
        return std::nullopt;
    }
    m_buffer.append(text.constData(), nPiece);
    m_nOpen += static_cast<int>(std::count(text.begin(), text.end(), '{') -
                                std::count(text.begin(), text.end(), '}'));
    if (m_nOpen != 0) {
        return std::nullopt;
    }
    return std::exchange(m_buffer, {});
}

void Fragments::Clear() {
    m_buffer.clear();
    m_nOpen = 0;
}
