#include "widgets/cslider.h"

#include "widgets/artwork.h"

#include <QHash>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>

namespace {

constexpr int Width = 34;
constexpr int CursorHeight = 34;
constexpr int EndHeight = 11;  ///< of the pictures at the track's lower end

QString ThemeName(eSliderLevelClr color) {
    switch (color) {
        case slcRed:
            return "Red";
        case slcGreen:
            return "Green";
        case slcBlue:
            return "Blue";
        default:
            return "Grey";
    }
}

}  // namespace

CSlider::CSlider(eSliderLevelClr color, QWidget* parent) : PaintedWidget(parent) {
    setFixedWidth(Width);
    SetLevelColor(color);
}

void CSlider::SetLevelColor(eSliderLevelClr color) {
    const QString sTheme = ":/Corvane/Images/slider" + ThemeName(color);
    m_fillBottom = artwork::Picture(sTheme + "Bot.png");
    m_fillCenter = artwork::Picture(sTheme + "Center.png");
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
    if (y < track.top()) {
        ChooseLevel(255);
    } else if (y > track.bottom()) {
        ChooseLevel(0);
    } else {
        ChooseLevel((track.bottom() - y) * 255 / track.height());
    }
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

void CSlider::mouseReleaseEvent(QMouseEvent*) {
    LetGo();
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
    static const QPixmap top = artwork::Picture(":/Corvane/Images/sliderTop.png");
    static const QPixmap bottom = artwork::Picture(":/Corvane/Images/sliderBot.png");
    static const QPixmap center = artwork::Picture(":/Corvane/Images/sliderCenter.png");
    static const QPixmap cursor = artwork::Picture(":/Corvane/Images/sliderCursor.png");

    const QRect cursorRect = CursorRect();
    const int nY = cursorRect.top() + CursorHeight / 2;

    QPainter painter(this);
    painter.drawPixmap(0, 0, top);
    painter.drawPixmap(QRect(0, 10, width(), height() - 20), center);
    painter.drawPixmap(0, height() - EndHeight, bottom);
    if (m_nLevel > 0) {
        painter.drawPixmap(QRect(0, nY, Width, height() - 10 - nY), m_fillCenter);
        painter.drawPixmap(0, height() - EndHeight, m_fillBottom);
    }
    painter.drawPixmap(cursorRect.topLeft(), cursor);
}
