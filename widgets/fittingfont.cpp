#include "widgets/fittingfont.h"

#include <QFontMetrics>

QFont FittingFont(const QFont& font, const QString& sText, int nWidth) {
    const int nTextWidth = QFontMetrics(font).horizontalAdvance(sText);
    QFont fitting = font;
    if (nTextWidth > nWidth) {
        fitting.setStretch(100 * nWidth / nTextWidth);
    }
    return fitting;
}
