#include "widgets/cchannelslider.h"

#include "widgets/artwork.h"
#include "widgets/csliderctrl.h"
#include "widgets/fonts.h"
#include "widgets/outline.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>

CChannelSlider::CChannelSlider(QWidget* parent)
    : QWidget(parent), m_pControl(new CSliderCtrl(slcBlue, false, this)) {
    m_pControl->SetShowPercent(false);
    auto* pOk = new QPushButton(tr("OK"));
    auto* pOff = new QPushButton(tr("Off"));
    for (QPushButton* pButton : {pOk, pOff}) {
        pButton->setFocusPolicy(Qt::TabFocus);
    }
    connect(pOk, &QPushButton::pressed, this, &CChannelSlider::OnSliderOk);
    connect(pOff, &QPushButton::pressed, this, &CChannelSlider::OnSliderOff);

    auto* pColumn = new QVBoxLayout;
    pColumn->setContentsMargins(0, 0, 0, 0);
    pColumn->addSpacing(10);
    pColumn->addWidget(m_pControl, 0, Qt::AlignHCenter);
    pColumn->addSpacing(10);
    pColumn->addWidget(pOk);
    pColumn->addWidget(pOff);
    auto* pLayout = new QHBoxLayout(this);
    pLayout->addLayout(pColumn);
}

void CChannelSlider::Edit(int nChannel, int nLevel) {
    m_nChannel = nChannel;
    setAccessibleName(tr("Channel %1").arg(nChannel));
    m_pControl->setAccessibleName(accessibleName());
    m_pControl->SetValue(nLevel);
    update();
}

void CChannelSlider::OnSliderOk() {
    emit ok(m_pControl->Value());
}

void CChannelSlider::paintEvent(QPaintEvent*) {
    static const QFont channelFont = fonts::Bold("Arial", 12);
    QPainter painter(this);
    static const QPixmap back = artwork::Named("MenuBack");
    painter.drawPixmap(rect(), back);
    PaintOutline(painter, rect().adjusted(0, 0, -1, -1), QColor(60, 60, 60));
    painter.setFont(channelFont);
    painter.setPen(Qt::red);
    painter.drawText(QRect(QPoint(6, 6), QPoint(width() - 1, height() - 1)), Qt::AlignLeft | Qt::AlignTop,
                     QString("#%1").arg(m_nChannel));
}
