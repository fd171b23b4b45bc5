#include "app/cpopuptab.h"

#include "widgets/artwork.h"

#include <QMouseEvent>
#include <QPainter>

CPopupTab::CPopupTab(QWidget* parent) : PaintedWidget(parent) {
    setToolTip(tr("Pages"));
    setAccessibleName(tr("Pages"));
}

void CPopupTab::paintEvent(QPaintEvent*) {
    static const QPixmap tabPicture = artwork::Named("MenuTab");
    QPainter(this).drawPixmap(0, 0, tabPicture);
}

void CPopupTab::mousePressEvent(QMouseEvent* event) {
    if (rect().contains(event->pos())) {
        emit tabPressed();
    }
}
