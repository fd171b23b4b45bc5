#pragma once

#include <QByteArray>

#include <cstring>

/// How long the text in these bytes is: it ends at its first NUL. (QByteArray::indexOf takes ten times as
/// long.)
inline QByteArray::size_type TextSize(const QByteArray& bytes) {
    return static_cast<QByteArray::size_type>(
        ::strnlen(bytes.constData(), static_cast<std::size_t>(bytes.size())));
}
