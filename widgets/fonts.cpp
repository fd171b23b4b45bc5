#include "widgets/fonts.h"

#include <QFontMetrics>

namespace fonts {

QFont Bold(const QString& sFamily, int nPoints) {
    QFont font(sFamily, nPoints, QFont::Bold);
    font.setStyleHint(QFont::SansSerif);
    return font;
}

QFont Fitting(const QFont& font, const QString& sText, int nWidth) {
    const int nTextWidth = QFontMetrics(font).horizontalAdvance(sText);
    QFont fitting = font;
    if (nTextWidth > nWidth) {
        fitting.setStretch(100 * nWidth / nTextWidth);
    }
    return fitting;
}

}  // namespace fonts
