#pragma once

#include <QImage>
#include <QString>

/// Writes a picture as PNG without filters, so that a program reads it in half the time; drawings such as
/// ours take no more room for that. False when the file cannot be written.
bool SavePlain(const QImage& picture, const QString& sPath);
