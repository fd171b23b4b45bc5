#pragma once

#include <QFont>
#include <QString>

/// The font, condensed where a text would be wider than its place: half a number is another number.
QFont FittingFont(const QFont& font, const QString& sText, int nWidth);
