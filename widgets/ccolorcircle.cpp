#include "widgets/ccolorcircle.h"

#include "widgets/artwork.h"
#include "widgets/csliderctrl.h"

#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>

CColorCircle::CColorCircle(CSliderCtrl* pRed, CSliderCtrl* pGreen, CSliderCtrl* pBlue, QWidget* parent)
    : QWidget(parent), PaintedParts(this), m_pRed(pRed), m_pGreen(pGreen), m_pBlue(pBlue) {
    setFixedSize(420, 420);
    setAccessibleName(tr("Color wheel"));
    UpdateRects();
}

void CColorCircle::UpdateRects() {
    const int nW = width();
    const int nH = height();
    m_centre = {nW / 2, nH / 2};
    m_wheelRect = QRect(m_centre - QPoint(Radius, Radius), m_centre + QPoint(Radius - 1, Radius - 1));
    m_switchRect = QRect(QPoint(10, 10), QPoint(79, 35));
    m_previewRect = QRect(QPoint(nW - 71, 10), QPoint(nW - 12, 69));
    m_slidersRect = QRect(QPoint(10, nH - 46), QPoint(69, nH - 12));
    m_commandsRect = QRect(QPoint(nW - 71, nH - 46), QPoint(nW - 12, nH - 12));
    ComputeRects();
}

void CColorCircle::ComputeRects() {
    UpdateShown();
    m_marker = PtFromAngle(m_hsv.hue, m_hsv.saturation, Radius, m_centre);
    UpdateShown();
}

bool CColorCircle::InCircle(const QPoint& point) const {
    return Distance(point, m_centre) <= Radius;
}

void CColorCircle::TrackPoint(const QPoint& point) {
    if (!m_bTracking) {
        return;
    }
    const int nDegrees = static_cast<int>(AngleFromPoint(point, m_centre) * 180.0 / M_PI);
    m_hsv.hue = nDegrees < 0 ? nDegrees + 360 : nDegrees;
    m_hsv.saturation = std::min(255, static_cast<int>(Distance(point, m_centre) * 255.0 / Radius));
    m_hsv.value = m_nBrightness;
    m_rgb = m_hsv.toRGB();
    SetRGBValues(false);
    ComputeRects();
}

void CColorCircle::SetBright(int nValue) {
    m_nBrightness = std::clamp(nValue, 0, 255);
    m_hsv.value = m_nBrightness;
    m_rgb = m_hsv.toRGB();
    SetRGBValues(false);
    UpdateShown();
}

void CColorCircle::SetColor(const QColor& color, bool bQuiet) {
    m_rgb = {color.red(), color.green(), color.blue()};
    m_hsv = m_rgb.toHSV();
    SetRGBValues(bQuiet);
    ComputeRects();
}

void CColorCircle::SetRGBValues(bool bQuiet) {
    m_pRed->SetValue(m_rgb.red);
    m_pGreen->SetValue(m_rgb.green);
    m_pBlue->SetValue(m_rgb.blue);
    if (!bQuiet) {
        if (!m_bOn) {
            SwitchState(false);
        }
        Send();
    }
}

void CColorCircle::SwitchState(bool bNotify) {
    m_bOn = !m_bOn;
    update(m_switchRect);
    TellParts();
    if (!bNotify) {
        return;
    }
    if (m_bOn) {
        Send();
    } else {
        emit colorStateChanged(false);
    }
}

void CColorCircle::Send() {
    emit colorPicked(static_cast<unsigned char>(m_rgb.red), static_cast<unsigned char>(m_rgb.green),
                     static_cast<unsigned char>(m_rgb.blue));
}

QRect CColorCircle::MarkerRect() const {
    return {m_marker - QPoint(4, 4), m_marker + QPoint(3, 3)};
}

/// Repaints what shows the current colour, and no more: a drag over the wheel does this on every move. The
/// outlines reach a pixel beyond their areas.
void CColorCircle::UpdateShown() {
    update(m_previewRect.adjusted(-1, -1, 1, 1));
    update(MarkerRect().adjusted(-1, -1, 1, 1));
    TellParts();
}

PaintedPart CColorCircle::Part(int iPart) const {
    switch (iPart) {
        case 0:
            return {tr("Color on or off"), QAccessible::CheckBox, m_switchRect, {}, CheckState(m_bOn)};
        case 1:
            return {
                tr("Levels of the color"), QAccessible::Button, m_slidersRect, {}, CheckState(m_bSliders)};
        default:
            return {tr("Commands, dimmer and speed"),
                    QAccessible::Button,
                    m_commandsRect,
                    {},
                    CheckState(!m_bSliders)};
    }
}

PaintedPart CColorCircle::Whole() const {
    const QString sColor = tr("red %1, green %2, blue %3").arg(m_rgb.red).arg(m_rgb.green).arg(m_rgb.blue);
    return {{}, QAccessible::ColorChooser, {}, sColor};
}

bool CColorCircle::event(QEvent* event) {
    LetGoIfCutOff(event);
    return ShowToolTip(event) || QWidget::event(event);
}

void CColorCircle::mousePressEvent(QMouseEvent* event) {
    emit mousePressed();
    m_bPressed = true;
    m_bTracking = false;
    const QPoint position = event->pos();
    if (m_switchRect.contains(position)) {
        SwitchState(true);
    } else if (m_slidersRect.contains(position) || m_commandsRect.contains(position)) {
        m_bSliders = !m_bSliders;
        ShowParts();
        emit modePressed();
    } else if (m_wheelRect.contains(position)) {
        m_bTracking = InCircle(position);
        TrackPoint(position);
    }
}

void CColorCircle::mouseReleaseEvent(QMouseEvent*) {
    LetGo();
}

void CColorCircle::mouseMoveEvent(QMouseEvent* event) {
    if (m_bPressed) {
        TrackPoint(event->pos());
    }
}

void CColorCircle::paintEvent(QPaintEvent* event) {
    static const QPixmap wheel = artwork::Picture(":/Corvane/Images/ColorPicker.png");
    static const QPixmap switchOn = artwork::Picture(":/Corvane/Images/SwitchOn.png");
    static const QPixmap switchOff = artwork::Picture(":/Corvane/Images/SwitchOff.png");
    static const QPixmap sliders = artwork::Picture(":/Corvane/Images/RGBSliders.png");
    static const QPixmap slidersSel = artwork::Picture(":/Corvane/Images/RGBSlidersSel.png");
    static const QPixmap commands = artwork::Picture(":/Corvane/Images/Commands.png");
    static const QPixmap commandsSel = artwork::Picture(":/Corvane/Images/CommandsSel.png");

    // The painter is clipped to what is asked for, so each picture costs only its part of that.
    const QRegion& asked = event->region();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.drawPixmap(m_wheelRect.topLeft(), wheel);
    if (asked.intersects(m_switchRect)) {
        painter.drawPixmap(m_switchRect.topLeft(), m_bOn ? switchOn : switchOff);
    }
    painter.setPen(QColor(50, 50, 50));
    painter.setBrush(GetColor());
    if (asked.intersects(m_previewRect.adjusted(-1, -1, 1, 1))) {
        painter.drawEllipse(m_previewRect);
    }
    if (asked.intersects(m_slidersRect)) {
        painter.drawPixmap(m_slidersRect.topLeft(), m_bSliders ? slidersSel : sliders);
    }
    if (asked.intersects(m_commandsRect)) {
        painter.drawPixmap(m_commandsRect.topLeft(), m_bSliders ? commands : commandsSel);
    }
    if (asked.intersects(MarkerRect().adjusted(-1, -1, 1, 1))) {
        painter.drawEllipse(MarkerRect());
    }
}

void CColorCircle::resizeEvent(QResizeEvent*) {
    UpdateRects();
}
