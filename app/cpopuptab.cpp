#include "app/cpopuptab.h"

#include "widgets/artwork.h"

#include <QMouseEvent>
#include <QPainter>

CPopupTab::CPopupTab(QWidget* parent) : PaintedWidget(parent) {
    setToolTip(tr("Pages"));
    setAccessibleName(tr("Pages"));
}

void CPopupTab::paintEvent(QPaintEvent*) {
    static const QPixmap tabPicture = artwork::Picture(":/Corvane/Images/MenuTab.png");
    QPainter(this).drawPixmap(0, 0, tabPicture);
}

void CPopupTab::mousePressEvent(QMouseEvent* event) {
    if (rect().contains(event->pos())) {
        emit tabPressed();
    }
}
