#include "device/fragments.h"

#include "device/logging.h"
#include "device/text.h"

#include <algorithm>
#include <numeric>

std::optional<QByteArray> Fragments::Join(const QByteArray& datagram, const QString& sSender) {
    const QByteArray text = datagram.left(TextSize(datagram));
    if (!text.endsWith(Marker)) {
        return text;
    }
    const auto nPiece = text.size() - static_cast<QByteArray::size_type>(sizeof Marker - 1);
    Pieces& pieces = Of(sSender);
    pieces.text.append(text.constData(), nPiece);
    pieces.nOpen += static_cast<int>(std::count(text.begin(), text.end(), '{') -
                                     std::count(text.begin(), text.end(), '}'));
    if (Size() > MaxSize && DropLongest() == sSender) {
        return std::nullopt;
    }
    if (pieces.nOpen != 0) {
        return std::nullopt;
    }
    const QByteArray message = pieces.text;
    Clear(sSender);
    return message;
}

void Fragments::Clear() {
    for (const Pieces& pieces : m_waiting) {
        LogDrop(pieces, "their rest had not come before the next question");
    }
    m_waiting.clear();
}

void Fragments::Clear(const QString& sSender) {
    m_waiting.remove_if([&](const Pieces& pieces) { return pieces.sender == sSender; });
}

/// Of all that waits.
QByteArray::size_type Fragments::Size() const {
    return std::accumulate(m_waiting.begin(), m_waiting.end(), QByteArray::size_type{0},
                           [](auto nSize, const Pieces& pieces) { return nSize + pieces.text.size(); });
}

/// The pieces of a sender, who becomes the one heard last.
Fragments::Pieces& Fragments::Of(const QString& sSender) {
    const auto known = std::find_if(m_waiting.begin(), m_waiting.end(),
                                    [&](const Pieces& pieces) { return pieces.sender == sSender; });
    if (known != m_waiting.end()) {
        m_waiting.splice(m_waiting.begin(), m_waiting, known);
        return m_waiting.front();
    }
    if (m_waiting.size() == MaxSenders) {
        LogDrop(m_waiting.back(), "too many senders");
        m_waiting.pop_back();
    }
    m_waiting.push_front({sSender, {}, 0});
    return m_waiting.front();
}

void Fragments::LogDrop(const Pieces& pieces, const char* pReason) {
    qCInfo(logDrop).nospace() << "pieces of " << pieces.sender << ", " << pieces.text.size()
                              << " bytes: " << pReason;
}

/// Returns whose they were.
QString Fragments::DropLongest() {
    const auto longest =
        std::max_element(m_waiting.begin(), m_waiting.end(),
                         [](const Pieces& a, const Pieces& b) { return a.text.size() < b.text.size(); });
    LogDrop(*longest, "too much waits");
    const QString sender = longest->sender;
    Clear(sender);
    return sender;
}
