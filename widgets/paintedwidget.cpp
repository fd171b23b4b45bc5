#include "widgets/paintedwidget.h"

#include "widgets/paintedaccess.h"

#include <QApplication>
#include <QHelpEvent>
#include <QMouseEvent>
#include <QPointer>
#include <QToolTip>

#include <utility>

QAccessible::State CheckState(bool bOn) {
    QAccessible::State state;
    state.checkable = true;
    state.checked = bOn;
    return state;
}

PaintedWidget::PaintedWidget(QWidget* parent, Qt::WindowFlags flags) : QWidget(parent, flags) {
    paintedaccess::Install();
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

void PaintedWidget::Click(const QRect& rect) {
    if (rect.isNull() || !IsInReach()) {
        return;
    }
    const QPoint at = rect.center();
    const QPoint onScreen = mapToGlobal(at);
    const QPointer<QWidget> widget(this);
    QMouseEvent press(QEvent::MouseButtonPress, at, onScreen, Qt::LeftButton, Qt::LeftButton, {});
    QCoreApplication::sendEvent(widget, &press);
    if (widget != nullptr) {
        QMouseEvent release(QEvent::MouseButtonRelease, at, onScreen, Qt::LeftButton, {}, {});
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
    } else if (event->type() == QEvent::ToolTip) {
        const auto* pHelp = dynamic_cast<QHelpEvent*>(event);
        const int iPart = PartAt(pHelp->pos());
        if (iPart >= 0) {
            QToolTip::showText(pHelp->globalPos(), PartTip(iPart), this, PartRect(iPart));
            return true;
        }
    }
    return QWidget::event(event);
}
