#include "widgets/csliderctrl.h"

#include "widgets/artwork.h"
#include "widgets/fonts.h"

#include <QMouseEvent>
#include <QPainter>
#include <QVBoxLayout>

#include <algorithm>

namespace {

constexpr int Width = 54;
/// Where the level stands in figures, beside the icon if there is one.
constexpr QRect CaptionRect(QPoint(0, 0), QPoint(Width - 1, 19));

}  // namespace

CSliderCtrl::CSliderCtrl(eSliderLevelClr color, bool bDefault, QWidget* parent)
    : PaintedWidget(parent), m_bDefault(bDefault), m_pSlider(new CSlider(color, this)) {
    setFixedWidth(Width);
    connect(m_pSlider, &CSlider::valueChanged, this, &CSliderCtrl::OnSliderValueChanged);

    auto* pLayout = new QVBoxLayout(this);
    pLayout->setContentsMargins(0, 0, 0, 0);
    pLayout->setSpacing(0);
    pLayout->addSpacing(GetMaxRect().bottom() + 10);
    pLayout->addWidget(m_pSlider, 0, Qt::AlignHCenter);
    if (m_bDefault) {
        pLayout->addSpacing(60);
    }
}

void CSliderCtrl::SetValue(int nValue) {
    if (nValue == m_pSlider->Level()) {
        return;
    }
    m_pSlider->SetLevel(nValue);
    update(CaptionRect);
    TellParts();
}

void CSliderCtrl::SetShowPercent(bool bPercent) {
    m_bShowPercent = bPercent;
    update();
}

void CSliderCtrl::SetIcon(const QPixmap& icon) {
    m_icon = icon;
    update();
}

QRect CSliderCtrl::GetMaxRect() {
    return {QPoint(7, 25), QPoint(45, 44)};
}

QRect CSliderCtrl::GetDefaultRect() const {
    return {QPoint(7, height() - 50), QPoint(45, height() - 31)};
}

void CSliderCtrl::OnSliderValueChanged(int value) {
    update(CaptionRect);
    TellParts();
    emit valueChanged(value);
}

void CSliderCtrl::mousePressEvent(QMouseEvent* event) {
    const int iPart = PartAt(event->pos());
    if (iPart >= 0) {
        SetValue(iPart == 0 ? 255 : 128);
        emit valueChanged(Value());
    }
}

PaintedPart CSliderCtrl::Part(int iPart) const {
    const QString sName = iPart == 0 ? tr("%1 max") : tr("%1 50%");
    return {sName.arg(accessibleName())};
}

PaintedPart CSliderCtrl::Whole() const {
    return {{}, QAccessible::Grouping, m_bShowPercent ? tr("%1%").arg(Caption()) : Caption()};
}

/// A level from the server may be anything; a caption must stay one.
QString CSliderCtrl::Caption() const {
    const int nLevel = std::clamp(Value(), 0, 256);
    return QString("%1").arg(m_bShowPercent ? nLevel * 100 / 255 : nLevel);
}

void CSliderCtrl::paintEvent(QPaintEvent*) {
    static const QFont captionFont = fonts::Bold("Comic", 12);

    QPainter painter(this);
    painter.setPen(m_pSlider->LevelTheme().caption);
    QRect captionRect = CaptionRect;
    if (!m_icon.isNull()) {
        painter.drawPixmap(0, 0, m_icon);
        captionRect.setLeft(20);
    }
    const QString sCaption = Caption();
    painter.setFont(fonts::Fitting(captionFont, sCaption, captionRect.width()));
    painter.drawText(captionRect, Qt::AlignCenter, sCaption);
    painter.drawPixmap(GetMaxRect().topLeft(), m_pSlider->LevelTheme().full);
    if (m_bDefault) {
        painter.setFont(captionFont);
        painter.drawPixmap(GetDefaultRect().topLeft(), m_pSlider->LevelTheme().full);
        painter.drawText(GetDefaultRect().translated(0, 25), Qt::AlignCenter, tr("50%"));
    }
}
