#include "widgets/cslider.h"

#include "widgets/artwork.h"

#include <QHash>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <utility>

namespace {

constexpr int Width = 34;
constexpr int CursorHeight = 34;
constexpr int EndHeight = 11;  ///< of the pictures at the track's lower end

}  // namespace

CSlider::CSlider(eSliderLevelClr color, QWidget* parent) : PaintedWidget(parent) {
    setFixedWidth(Width);
    SetLevelColor(color);
}

void CSlider::SetLevelColor(eSliderLevelClr color) {
    const QHash<int, std::pair<const char*, QColor>> themes{
        {slcRed, {"Red", Qt::red}}, {slcGreen, {"Green", Qt::green}}, {slcBlue, {"Blue", Qt::blue}}};
    const auto [pName, caption] = themes.value(color, {"Grey", QColor(100, 100, 100)});
    const QString sName(pName);
    m_theme = {caption, artwork::Named("Max" + sName), artwork::Named("slider" + sName + "Center"),
               artwork::Named("slider" + sName + "Bot")};
    update();
}

void CSlider::SetLevel(int nLevel) {
    const QRect before = CursorRect();
    m_nLevel = nLevel;
    // The track looks the same all along, so only what the cursor passed over changes.
    update(before.united(CursorRect()));
    TellParts();
}

QRect CSlider::GetSliderRect() const {
    return {QPoint(0, 18), QPoint(width() - 1, height() - 17)};
}

/// The cursor's picture at the level shown, which is one of the track's.
QRect CSlider::CursorRect() const {
    const QRect track = GetSliderRect();
    const int nY = track.bottom() - track.height() * std::clamp(m_nLevel, 0, 256) / 255;
    return {0, nY - CursorHeight / 2, Width, CursorHeight};
}

void CSlider::UpdateValue(int y) {
    const QRect track = GetSliderRect();
    // A row above the track is full already, one below it nothing.
    ChooseLevel(std::clamp((track.bottom() - y) * 255 / std::max(1, track.height()), 0, 255));
}

void CSlider::ChooseLevel(int nLevel) {
    SetLevel(nLevel);
    emit valueChanged(m_nLevel);
}

/// Goes by the name of the control around it.
PaintedPart CSlider::Whole() const {
    const QString sName = parentWidget() != nullptr ? parentWidget()->accessibleName() : QString();
    return {sName, QAccessible::Slider, {}, {}, std::clamp(m_nLevel, 0, 255)};
}

bool CSlider::Steer(int nKey) {
    constexpr int nPage = 26;
    const QHash<int, int> ways{{Qt::Key_Up, m_nStep},    {Qt::Key_Right, m_nStep}, {Qt::Key_Down, -m_nStep},
                               {Qt::Key_Left, -m_nStep}, {Qt::Key_PageUp, nPage},  {Qt::Key_PageDown, -nPage},
                               {Qt::Key_Home, -2 * 256}, {Qt::Key_End, 2 * 256}};
    if (ways.contains(nKey)) {
        ChooseLevel(std::clamp(m_nLevel + ways[nKey], 0, 255));
    }
    return ways.contains(nKey);
}

void CSlider::mousePressEvent(QMouseEvent* event) {
    m_bPressed = true;
    grabMouse();
    UpdateValue(event->pos().y());
}

void CSlider::LetGo() {
    if (m_bPressed) {
        m_bPressed = false;
        releaseMouse();
    }
}

void CSlider::mouseMoveEvent(QMouseEvent* event) {
    if (m_bPressed) {
        UpdateValue(event->pos().y());
    }
}

void CSlider::paintEvent(QPaintEvent*) {
    const QRect cursorRect = CursorRect();
    const int nY = cursorRect.top() + CursorHeight / 2;
    static const auto track = artwork::All({"sliderTop", "sliderCenter", "sliderBot", "sliderCursor"});

    QPainter painter(this);
    painter.drawPixmap(0, 0, track[0]);
    painter.drawPixmap(QRect(0, 10, width(), height() - 20), track[1]);
    painter.drawPixmap(0, height() - EndHeight, track[2]);
    if (m_nLevel > 0) {
        painter.drawPixmap(QRect(0, nY, Width, height() - 10 - nY), m_theme.center);
        painter.drawPixmap(0, height() - EndHeight, m_theme.bottom);
    }
    painter.drawPixmap(cursorRect.topLeft(), track[3]);
}
