#pragma once

#include <QFont>
#include <QString>

/// The fonts of painted texts, whatever a machine has installed.
namespace fonts {

/// A bold font of a family, or the nearest without serifs where that is missing.
QFont Bold(const QString& sFamily, int nPoints);

/// The font, condensed where a text would be wider than its place: half a number is another number.
QFont Fitting(const QFont& font, const QString& sText, int nWidth);

}  // namespace fonts
