#include "widgets/ccolorcircle.h"

#include "widgets/artwork.h"
#include "widgets/csliderctrl.h"

#include <QHash>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>

#include <algorithm>
#include <array>

namespace {

constexpr int Size = 420;
constexpr int Radius = 190;
constexpr QPoint Centre(Size / 2, Size / 2);
constexpr QRect PreviewRect(QPoint(Size - 71, 10), QPoint(Size - 12, 69));

/// The outline reaches a pixel beyond the area.
constexpr QRect Outlined(const QRect& disc) {
    return disc.adjusted(-1, -1, 1, 1);
}

}  // namespace

CColorCircle::CColorCircle(CSliderCtrl* pRed, CSliderCtrl* pGreen, CSliderCtrl* pBlue, QWidget* parent)
    : PaintedWidget(parent), m_pRed(pRed), m_pGreen(pGreen), m_pBlue(pBlue) {
    setFixedSize(Size, Size);
    setAccessibleName(tr("Color wheel"));
    ComputeRects();
}

void CColorCircle::ComputeRects() {
    UpdateShown();
    m_marker = PtFromAngle(m_hsv.hue, m_hsv.saturation, Radius, Centre);
    UpdateShown();
    PlaceRing();
}

bool CColorCircle::InCircle(const QPoint& point) const {
    return Distance(point, Centre) <= Radius;
}

void CColorCircle::TrackPoint(const QPoint& point) {
    if (!m_bPressed) {
        return;
    }
    const HSVColor picked = HSVFromPoint(point, Centre, Radius);
    Pick(picked.hue, picked.saturation);
}

void CColorCircle::Pick(int nHue, int nSaturation) {
    m_hsv = {nHue, nSaturation, m_nBrightness};
    m_rgb = m_hsv.toRGB();
    SetRGBValues(false);
}

void CColorCircle::SetBright(int nValue) {
    m_nBrightness = std::clamp(nValue, 0, 255);
    Pick(m_hsv.hue, m_hsv.saturation);
}

void CColorCircle::SetColor(const QColor& color, bool bQuiet) {
    m_rgb = {color.red(), color.green(), color.blue()};
    m_hsv = m_rgb.toHSV();
    SetRGBValues(bQuiet);
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
    ComputeRects();
}

void CColorCircle::SwitchState(bool bNotify) {
    m_bOn = !m_bOn;
    update(PartRect(OnOff));
    TellParts();
    if (bNotify && m_bOn) {
        Send();
    } else if (bNotify) {
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

/// Repaints what shows the current colour, and no more: a drag over the wheel does this on every move.
void CColorCircle::UpdateShown() {
    update(Outlined(PreviewRect));
    update(Outlined(MarkerRect()));
    TellParts();
}

PaintedPart CColorCircle::Part(int iPart) const {
    switch (iPart) {
        case OnOff:
            return {tr("Color on or off"), QAccessible::CheckBox, {}, CheckState(m_bOn)};
        case Sliders:
            return {tr("Levels of the color"), QAccessible::Button, {}, CheckState(m_bSliders)};
        default:
            return {tr("Commands, dimmer and speed"), QAccessible::Button, {}, CheckState(!m_bSliders)};
    }
}

QRect CColorCircle::PartRect(int iPart) const {
    static constexpr std::array<QRect, Buttons> rects{
        QRect(QPoint(10, 10), QPoint(79, 35)), QRect(QPoint(10, Size - 46), QPoint(69, Size - 12)),
        QRect(QPoint(Size - 71, Size - 46), QPoint(Size - 12, Size - 12))};
    return rects.at(static_cast<std::size_t>(iPart));
}

PaintedPart CColorCircle::Whole() const {
    const QString sColor = tr("red %1, green %2, blue %3").arg(m_rgb.red).arg(m_rgb.green).arg(m_rgb.blue);
    return {{}, QAccessible::ColorChooser, sColor};
}

/// On the wheel arrows pick, so that Tab leads on to the buttons.
bool CColorCircle::focusNextPrevChild(bool bNext) {
    const int iPart = RingPart() + (bNext ? 1 : -1);
    if (!HasRing() || !isVisible() || iPart < Self || iPart >= Buttons) {
        return PaintedWidget::focusNextPrevChild(bNext);
    }
    SetRing(iPart);
    return true;
}

QRect CColorCircle::RingRect() const {
    return RingPart() == Self ? Outlined(MarkerRect()) : PaintedWidget::RingRect();
}

bool CColorCircle::Steer(int nKey) {
    constexpr int nHueStep = 3;
    const QHash<int, int> turns{{Qt::Key_Left, nHueStep}, {Qt::Key_Right, -nHueStep}};
    const QHash<int, int> ways{{Qt::Key_Up, 5},         {Qt::Key_Down, -5},   {Qt::Key_PageUp, 26},
                               {Qt::Key_PageDown, -26}, {Qt::Key_Home, -255}, {Qt::Key_End, 255}};
    if (RingPart() != Self || (!turns.contains(nKey) && !ways.contains(nKey))) {
        return false;
    }
    Pick((m_hsv.hue + turns.value(nKey) + 360) % 360,
         std::clamp(m_hsv.saturation + ways.value(nKey), 0, 255));
    return true;
}

void CColorCircle::mousePressEvent(QMouseEvent* event) {
    emit mousePressed();
    const int iPart = PartAt(event->pos());
    m_bPressed = iPart < 0 && InCircle(event->pos());
    if (iPart == OnOff) {
        SwitchState(true);
    } else if (iPart >= 0) {
        m_bSliders = !m_bSliders;
        ShowParts();
        emit modePressed();
    }
    TrackPoint(event->pos());
}

void CColorCircle::mouseMoveEvent(QMouseEvent* event) {
    TrackPoint(event->pos());
}

void CColorCircle::paintEvent(QPaintEvent* event) {
    static const QPixmap wheel = artwork::Named("ColorPicker");
    static const auto pictures =
        artwork::All({"SwitchOff", "RGBSliders", "CommandsSel", "SwitchOn", "RGBSlidersSel", "Commands"});
    // The painter is clipped to what is asked for, so each picture costs only its part of that.
    const QRegion& asked = event->region();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.drawPixmap(Centre - QPoint(Radius, Radius), wheel);
    for (int i = 0; i < Buttons; ++i) {
        if (asked.intersects(PartRect(i))) {
            const bool bSecond = i == OnOff ? m_bOn : m_bSliders;
            painter.drawPixmap(PartRect(i).topLeft(),
                               pictures.at(static_cast<std::size_t>(bSecond ? i + Buttons : i)));
        }
    }
    painter.setPen(QColor(50, 50, 50));
    painter.setBrush(GetColor());
    for (const QRect& disc : {PreviewRect, MarkerRect()}) {
        if (asked.intersects(Outlined(disc))) {
            painter.drawEllipse(disc);
        }
    }
}
