#pragma once

#include <QByteArray>

#include <cstring>

/// How long the text in these bytes is: it ends at its first NUL. (QByteArray::indexOf takes ten times as
/// long.)
inline QByteArray::size_type TextSize(const QByteArray& bytes) {
    const void* const pEnd = std::memchr(bytes.constData(), 0, static_cast<std::size_t>(bytes.size()));
    return pEnd == nullptr
               ? bytes.size()
               : static_cast<QByteArray::size_type>(static_cast<const char*>(pEnd) - bytes.constData());
}
