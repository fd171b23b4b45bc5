#include "widgets/cswitchctrl.h"

#include "widgets/artwork.h"

#include <QMouseEvent>
#include <QPainter>

namespace {

constexpr QSize SwitchSize(70, 26);

}  // namespace

CSwitchCtrl::CSwitchCtrl(QWidget* parent)
    : CSwitchCtrl(false, SwitchSize, QRect(QPoint(0, 0), SwitchSize), parent) {}

CSwitchCtrl::CSwitchCtrl(bool bState, const QSize& size, const QRect& switchRect, QWidget* parent)
    : PaintedWidget(parent), m_bState(bState), m_switchRect(switchRect) {
    setFixedSize(size);
}

void CSwitchCtrl::SetState(bool bState) {
    m_bState = bState;
    ShowParts();
}

PaintedPart CSwitchCtrl::Whole() const {
    return {{}, QAccessible::CheckBox, {}, CheckState(m_bState)};
}

void CSwitchCtrl::mousePressEvent(QMouseEvent* event) {
    if (!m_switchRect.contains(event->pos())) {
        event->ignore();
        return;
    }
    m_bState = !m_bState;
    ShowParts();
    emit stateChanged(m_bState);
}

void CSwitchCtrl::paintEvent(QPaintEvent*) {
    static const auto pictures = artwork::All({"SwitchOff", "SwitchOn"});
    QPainter(this).drawPixmap(m_switchRect.topLeft(), pictures[m_bState ? 1 : 0]);
}
