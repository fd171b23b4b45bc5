#include "widgets/outline.h"

#include <QPainter>

void PaintOutline(QPainter& painter, const QRect& area, const QColor& color) {
    const QSize across(area.width() + 1, 1);
    const QSize down(1, area.height() + 1);
    painter.fillRect(QRect(area.topLeft(), across), color);
    painter.fillRect(QRect(area.bottomLeft() + QPoint(0, 1), across), color);
    painter.fillRect(QRect(area.topLeft(), down), color);
    painter.fillRect(QRect(area.topRight() + QPoint(1, 0), down), color);
}

QRect WithOutline(const QRect& area) {
    return area.adjusted(0, 0, 1, 1);
}
