#include "widgets/focusring.h"

#include <QPainter>

void FocusRing::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setPen(QPen(QColor(100, 160, 255), 2, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
    painter.drawRect(rect().adjusted(1, 1, -1, -1));
    painter.setPen(QPen(Qt::white, 1, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
    painter.drawRect(rect().adjusted(2, 2, -3, -3));
}
