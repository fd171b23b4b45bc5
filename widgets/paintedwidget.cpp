#include "widgets/paintedwidget.h"

#include "widgets/focusring.h"
#include "widgets/paintedaccess.h"

#include <QApplication>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QToolTip>

#include <cstdlib>
#include <limits>
#include <utility>

namespace {

bool IsArrow(int nKey) {
    return nKey == Qt::Key_Left || nKey == Qt::Key_Right || nKey == Qt::Key_Up || nKey == Qt::Key_Down;
}

bool IsPress(int nKey) {
    return nKey == Qt::Key_Space || nKey == Qt::Key_Return || nKey == Qt::Key_Enter || nKey == Qt::Key_Select;
}

}  // namespace

bool PaintedPart::IsControl() const {
    return role == QAccessible::Button || role == QAccessible::CheckBox || role == QAccessible::PageTab ||
           role == QAccessible::Slider || role == QAccessible::ColorChooser;
}

QAccessible::State CheckState(bool bOn) {
    QAccessible::State state;
    state.checkable = true;
    state.checked = bOn;
    return state;
}

PaintedWidget::PaintedWidget(QWidget* parent, Qt::WindowFlags flags) : QWidget(parent, flags) {
    paintedaccess::Install();
    setFocusPolicy(Qt::TabFocus);
}

/// Whoever asks for the widget from now on finds a bare one.
PaintedWidget::~PaintedWidget() {
    for (const auto& [iPart, told] : m_told) {
        QAccessible::deleteAccessibleInterface(told.id);
    }
    if (m_whole) {
        QAccessible::deleteAccessibleInterface(
            QAccessible::uniqueId(QAccessible::queryAccessibleInterface(this)));
    }
}

int PaintedWidget::PartAt(const QPoint& position) const {
    int iPart = PartCount() - 1;
    while (iPart >= 0 && !PartRect(iPart).contains(position)) {
        --iPart;
    }
    return iPart;
}

void PaintedWidget::ShowParts() {
    update();
    TellParts();
}

void PaintedWidget::TellParts() {
    if (!isVisible()) {
        return;  // no one wants to hear of a page that is not there
    }
    if (m_whole) {
        const PaintedPart before = *std::exchange(m_whole, Whole());
        paintedaccess::TellChange(QAccessible::queryAccessibleInterface(this), before, *m_whole);
    }
    for (auto& [iPart, told] : m_told) {
        const Told before = std::exchange(told, {Part(iPart), !PartRect(iPart).isNull(), told.id});
        if (before.bThere != told.bThere) {
            paintedaccess::TellEvent(Access(iPart),
                                     told.bThere ? QAccessible::ObjectShow : QAccessible::ObjectHide);
        }
        paintedaccess::TellChange(Access(iPart), before.part, told.part);
    }
}

bool PaintedWidget::IsInReach() const {
    return isVisible() && isEnabled() && QApplication::activeModalWidget() == nullptr;
}

void PaintedWidget::Click(const QRect& rect, Qt::MouseButton button) {
    if (rect.isNull() || !IsInReach()) {
        return;
    }
    const QPoint at = rect.center();
    const QPoint onScreen = mapToGlobal(at);
    const QPointer<QWidget> widget(this);
    QMouseEvent press(QEvent::MouseButtonPress, at, onScreen, button, button, {});
    QCoreApplication::sendEvent(widget, &press);
    if (widget != nullptr) {
        QMouseEvent release(QEvent::MouseButtonRelease, at, onScreen, button, {}, {});
        QCoreApplication::sendEvent(widget, &release);
    }
}

QAccessibleInterface* PaintedWidget::Access(int iPart) {
    Told& told = m_told[iPart];
    if (told.id == 0) {
        told = {Part(iPart), !PartRect(iPart).isNull(), paintedaccess::RegisterPart(*this, iPart)};
    }
    return QAccessible::accessibleInterface(told.id);
}

void PaintedWidget::ForgetParts() {
    for (auto told = m_told.begin(); told != m_told.end(); told = m_told.erase(told)) {
        paintedaccess::TellEvent(Access(told->first), QAccessible::ObjectDestroyed);
        QAccessible::deleteAccessibleInterface(told->second.id);
    }
}

bool PaintedWidget::event(QEvent* event) {
    if (event->type() == QEvent::WindowBlocked || event->type() == QEvent::Hide) {
        LetGo();
    } else if (event->type() == QEvent::Show) {
        TellParts();
    } else if (event->type() == QEvent::ToolTip) {
        const auto* pHelp = dynamic_cast<QHelpEvent*>(event);
        const int iPart = PartAt(pHelp->pos());
        if (iPart >= 0) {
            QToolTip::showText(pHelp->globalPos(), PartTip(iPart), this, PartRect(iPart));
            return true;
        }
    } else if (event->type() == QEvent::Resize || event->type() == QEvent::Move) {
        PlaceRing();
    }
    return QWidget::event(event);
}

bool PaintedWidget::IsStop(int iPart) const {
    if (iPart == Self) {
        return Whole().IsControl();
    }
    return iPart < PartCount() && !PartRect(iPart).isNull() && Part(iPart).IsControl();
}

void PaintedWidget::ShowRing() {
    for (int iPart = Self; !IsStop(m_iRing) && iPart < PartCount(); ++iPart) {
        m_iRing = iPart;
    }
    if (!IsStop(m_iRing)) {
        return;
    }
    // What Qt draws shows its focus by the same rule.
    window()->setAttribute(Qt::WA_KeyboardFocusChange);
    if (m_ring == nullptr) {
        // Where the widget is nothing but its control, there is only room beside it.
        const bool bBeside = PartCount() == 0 && parentWidget() != nullptr;
        m_ring = new FocusRing(bBeside ? parentWidget() : this);
    }
    SetRing(m_iRing);
}

void PaintedWidget::HideRing() {
    delete m_ring;
}

void PaintedWidget::SetRing(int iPart) {
    const bool bMoved = std::exchange(m_iRing, iPart) != iPart;
    if (m_ring == nullptr) {
        return;
    }
    if (!IsStop(iPart)) {
        HideRing();
        return;
    }
    PlaceRing();
    // Qt tells of the widget's own focus, after this.
    if (bMoved || iPart != Self) {
        QMetaObject::invokeMethod(this, &PaintedWidget::TellRing, Qt::QueuedConnection);
    }
    emit ringMoved();
}

void PaintedWidget::PlaceRing() {
    if (m_ring != nullptr) {
        constexpr int nOut = FocusRing::Width;
        const QWidget* pHost = m_ring->parentWidget();
        const QRect area = RingRect().adjusted(-nOut, -nOut, nOut, nOut);
        m_ring->setGeometry(area.translated(pHost == this ? QPoint() : pos()) & pHost->rect());
        m_ring->raise();
        m_ring->show();
    }
}

void PaintedWidget::TellRing() {
    if (HasRing() && m_whole) {
        paintedaccess::TellEvent(
            m_iRing == Self ? QAccessible::queryAccessibleInterface(this) : Access(m_iRing),
            QAccessible::Focus);
    }
}

/// To the nearest control in a direction; those beside the way are as good as far.
bool PaintedWidget::MoveRing(int nKey) {
    const QPoint from = RingRect().center();
    const bool bAcross = nKey == Qt::Key_Left || nKey == Qt::Key_Right;
    const int nSign = nKey == Qt::Key_Left || nKey == Qt::Key_Up ? -1 : 1;
    int iNearest = Self;
    int nLeast = std::numeric_limits<int>::max();
    for (int i = 0; i < PartCount(); ++i) {
        const QPoint way = PartRect(i).center() - from;
        const int nAhead = nSign * (bAcross ? way.x() : way.y());
        const int nFar = nAhead + 4 * std::abs(bAcross ? way.y() : way.x());
        if (nAhead > 0 && nFar < nLeast && IsStop(i)) {
            iNearest = i;
            nLeast = nFar;
        }
    }
    if (iNearest != Self) {
        SetRing(iNearest);
    }
    return iNearest != Self;
}

void PaintedWidget::keyPressEvent(QKeyEvent* event) {
    event->ignore();
    const int nKey = event->key();
    // What a child ignores comes here, too.
    if (!hasFocus() || (event->modifiers() & ~Qt::KeyboardModifiers(Qt::KeypadModifier)) != 0) {
        return;
    }
    if (!HasRing()) {
        if (IsArrow(nKey)) {
            ShowRing();
            event->accept();
        }
    } else if (IsPress(nKey)) {
        event->accept();
        const QAccessible::Role role = (m_iRing == Self ? Whole() : Part(m_iRing)).role;
        // On a level or the wheel a press is at a place, which a key has not.
        if (!event->isAutoRepeat() && role != QAccessible::Slider && role != QAccessible::ColorChooser) {
            Click(m_iRing == Self ? WholeRect() : PartRect(m_iRing));
        }
    } else if (Steer(nKey) || (IsArrow(nKey) && MoveRing(nKey))) {
        event->accept();
    }
}

void PaintedWidget::focusInEvent(QFocusEvent* event) {
    if (event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason) {
        m_iRing = EntryPart(event->reason() == Qt::TabFocusReason);
        ShowRing();
    }
}

/// It waits for the window's menus and boxes, and for the window.
void PaintedWidget::focusOutEvent(QFocusEvent* event) {
    if (event->reason() != Qt::PopupFocusReason && event->reason() != Qt::ActiveWindowFocusReason) {
        HideRing();
    }
}

/// Where scroll areas and magnifiers look.
QVariant PaintedWidget::inputMethodQuery(Qt::InputMethodQuery query) const {
    return query == Qt::ImCursorRectangle ? RingRect() : QWidget::inputMethodQuery(query);
}
