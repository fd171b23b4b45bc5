#include "widgets/cswitchiconctrl.h"

#include "widgets/artwork.h"

#include <QPainter>

CSwitchIconCtrl::CSwitchIconCtrl(const QString& sIcon, QWidget* parent)
    : CSwitchCtrl(true, QSize(320, 32), QRect(QPoint(250, 0), QPoint(319, 25)), parent),
      m_icon(artwork::Picture(sIcon)) {}

void CSwitchIconCtrl::paintEvent(QPaintEvent* event) {
    QPainter(this).drawPixmap(0, 0, m_icon);
    CSwitchCtrl::paintEvent(event);
}
