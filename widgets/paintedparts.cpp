#include "widgets/paintedparts.h"

#include <QAccessibleWidget>
#include <QApplication>
#include <QHelpEvent>
#include <QMouseEvent>
#include <QPointer>
#include <QToolTip>
#include <QWidget>

#include <algorithm>
#include <memory>
#include <utility>

namespace {

/// Not every desktop passes values on, but all pass descriptions.
QString TextOf(const PaintedPart& part, QAccessible::Text kind) {
    if (kind == QAccessible::Name) {
        return part.name;
    }
    const bool bDescribed = kind == QAccessible::Description && part.role != QAccessible::Slider;
    return kind == QAccessible::Value || bDescribed ? part.value : QString();
}

QStringList ActionsOf(const PaintedPart& part) {
    if (part.role == QAccessible::CheckBox) {
        return {QAccessibleActionInterface::toggleAction()};
    }
    const bool bPressed = part.role == QAccessible::Button || part.role == QAccessible::PageTab;
    return bPressed ? QStringList(QAccessibleActionInterface::pressAction()) : QStringList();
}

/// One painted control.
class PartAccess : public QAccessibleInterface, public QAccessibleActionInterface {
public:
    PartAccess(const PaintedParts* pParts, int iPart) : m_pParts(pParts), m_iPart(iPart) {}

    const PaintedParts* Parts() const { return m_pParts; }
    int Place() const { return m_iPart; }

    bool isValid() const override { return true; }
    QObject* object() const override { return nullptr; }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    QAccessibleInterface* parent() const override {
        return QAccessible::queryAccessibleInterface(m_pParts->Widget());
    }
    QAccessibleInterface* child(int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    void setText(QAccessible::Text, const QString&) override {}
    QAccessible::Role role() const override { return Part().role; }
    QString text(QAccessible::Text kind) const override { return TextOf(Part(), kind); }

    QRect rect() const override {
        const QRect area = Part().rect;
        return {m_pParts->Widget()->mapToGlobal(area.topLeft()), area.size()};
    }

    QAccessible::State state() const override {
        const PaintedPart part = Part();
        QAccessible::State state = part.state;
        state.invisible = part.rect.isNull() || !m_pParts->Widget()->isVisible();
        state.offscreen = !m_pParts->Widget()->visibleRegion().intersects(part.rect);
        return state;
    }

    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ActionInterface && !actionNames().isEmpty()
                   ? static_cast<QAccessibleActionInterface*>(this)
                   : nullptr;
    }

    QStringList actionNames() const override { return ActionsOf(Part()); }
    QStringList keyBindingsForAction(const QString&) const override { return {}; }

    void doAction(const QString& sAction) override {
        if (actionNames().contains(sAction)) {
            m_pParts->Click(Part().rect);
        }
    }

private:
    PaintedPart Part() const { return m_pParts->Part(m_iPart); }

    const PaintedParts* m_pParts;
    int m_iPart;
};

/// The widget, with its painted controls as children behind those that are widgets.
class WholeAccess : public QAccessibleWidget, public QAccessibleValueInterface {
public:
    explicit WholeAccess(PaintedParts& parts) : QAccessibleWidget(parts.Widget()), m_parts(parts) {
        parts.TellWhole();
        // An alert must be able to tell that it has come, asked for or not.
        for (int i = 0; i < parts.PartCount(); ++i) {
            if (parts.Part(i).role == QAccessible::AlertMessage) {
                parts.Access(i);
            }
        }
    }

    QAccessible::Role role() const override { return Whole().role; }

    QString text(QAccessible::Text kind) const override {
        const QString sOwn = TextOf(Whole(), kind);
        const QString sText = sOwn.isEmpty() ? QAccessibleWidget::text(kind) : sOwn;
        // Most tool tips are the name.
        return kind == QAccessible::Description && sText == text(QAccessible::Name) ? QString() : sText;
    }

    QRect rect() const override {
        const QRect area = Whole().rect;
        return area.isNull() ? QAccessibleWidget::rect()
                             : QRect(widget()->mapToGlobal(area.topLeft()), area.size());
    }

    QAccessible::State state() const override {
        const QAccessible::State own = Whole().state;
        QAccessible::State state = QAccessibleWidget::state();
        state.checkable = own.checkable;
        state.checked = own.checked;
        return state;
    }

    int childCount() const override { return QAccessibleWidget::childCount() + m_parts.PartCount(); }

    QAccessibleInterface* child(int index) const override {
        const int iPart = index - QAccessibleWidget::childCount();
        if (iPart < 0) {
            return QAccessibleWidget::child(index);
        }
        return iPart < m_parts.PartCount() ? m_parts.Access(iPart) : nullptr;
    }

    int indexOfChild(const QAccessibleInterface* pChild) const override {
        const auto* pPart = dynamic_cast<const PartAccess*>(pChild);
        if (pPart == nullptr) {
            return QAccessibleWidget::indexOfChild(pChild);
        }
        return pPart->Parts() == &m_parts ? QAccessibleWidget::childCount() + pPart->Place() : -1;
    }

    /// Passes over pages that are not shown.
    QAccessibleInterface* childAt(int x, int y) const override {
        const QPoint position = widget()->mapFromGlobal(QPoint(x, y));
        QWidget* pChild = widget()->childAt(position);
        while (pChild != nullptr && pChild->parentWidget() != widget()) {
            pChild = pChild->parentWidget();
        }
        if (pChild != nullptr) {
            return QAccessible::queryAccessibleInterface(pChild);
        }
        const int iPart = m_parts.PartAt(position);
        return iPart < 0 ? nullptr : m_parts.Access(iPart);
    }

    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ValueInterface && role() == QAccessible::Slider
                   ? static_cast<QAccessibleValueInterface*>(this)
                   : QAccessibleWidget::interface_cast(type);
    }

    QStringList actionNames() const override { return ActionsOf(Whole()) + QAccessibleWidget::actionNames(); }

    void doAction(const QString& sAction) override {
        const PaintedPart whole = Whole();
        if (ActionsOf(whole).contains(sAction)) {
            m_parts.Click(whole.rect);
        } else {
            QAccessibleWidget::doAction(sAction);
        }
    }

    QVariant currentValue() const override { return Whole().value.toInt(); }
    QVariant minimumValue() const override { return 0; }
    QVariant maximumValue() const override { return 255; }
    QVariant minimumStepSize() const override { return 1; }

    void setCurrentValue(const QVariant& value) override {
        if (m_parts.IsInReach()) {
            m_parts.ChooseLevel(std::clamp(value.toInt(), 0, 255));
        }
    }

private:
    PaintedPart Whole() const { return m_parts.Whole(); }

    PaintedParts& m_parts;
};

QAccessibleInterface* CreateAccess(const QString&, QObject* pObject) {
    auto* pParts = dynamic_cast<PaintedParts*>(pObject);
    return pParts != nullptr ? std::make_unique<WholeAccess>(*pParts).release() : nullptr;
}

template <typename Event, typename... Arguments>
void Tell(QAccessibleInterface* pAccess, Arguments... arguments) {
    Event event(pAccess, arguments...);
    QAccessible::updateAccessibility(&event);
}

void TellChange(QAccessibleInterface* pAccess, const PaintedPart& before, const PaintedPart& now) {
    if (now.rect.isNull() != before.rect.isNull()) {
        Tell<QAccessibleEvent>(pAccess,
                               now.rect.isNull() ? QAccessible::ObjectHide : QAccessible::ObjectShow);
    }
    if (now.name != before.name) {
        Tell<QAccessibleEvent>(pAccess, QAccessible::NameChanged);
    }
    if (now.value != before.value && now.role == QAccessible::Slider) {
        Tell<QAccessibleValueChangeEvent>(pAccess, QVariant(now.value.toInt()));
    } else if (now.value != before.value) {
        Tell<QAccessibleEvent>(pAccess, QAccessible::DescriptionChanged);
    }
    if (!(now.state == before.state)) {
        QAccessible::State changed;
        changed.checked = before.state.checked != now.state.checked;
        changed.selected = before.state.selected != now.state.selected;
        changed.disabled = before.state.disabled != now.state.disabled;
        Tell<QAccessibleStateChangeEvent>(pAccess, changed);
    }
}

}  // namespace

QAccessible::State CheckState(bool bOn) {
    QAccessible::State state;
    state.checkable = true;
    state.checked = bOn;
    return state;
}

PaintedParts::PaintedParts(QWidget* pWidget) : m_pWidget(pWidget) {
    static const bool bInstalled = (QAccessible::installFactory(CreateAccess), true);
    Q_UNUSED(bInstalled)
}

/// Whoever asks for the widget from now on finds a bare one.
PaintedParts::~PaintedParts() {
    for (const auto& [iPart, told] : m_told) {
        const bool bWhole = iPart == WholePart;
        QAccessible::deleteAccessibleInterface(
            bWhole ? QAccessible::uniqueId(QAccessible::queryAccessibleInterface(m_pWidget)) : told.id);
    }
}

int PaintedParts::PartAt(const QPoint& position) const {
    int iPart = PartCount() - 1;
    while (iPart >= 0 && !Part(iPart).rect.contains(position)) {
        --iPart;
    }
    return iPart;
}

void PaintedParts::ShowParts() {
    m_pWidget->update();
    TellParts();
}

void PaintedParts::TellParts() {
    for (auto& [iPart, told] : m_told) {
        const PaintedPart before = std::exchange(told.part, iPart == WholePart ? Whole() : Part(iPart));
        TellChange(Access(iPart), before, told.part);
    }
}

bool PaintedParts::IsInReach() const {
    return m_pWidget->isVisible() && m_pWidget->isEnabled() && QApplication::activeModalWidget() == nullptr;
}

void PaintedParts::Click(const QRect& rect) const {
    if (rect.isNull() || !IsInReach()) {
        return;
    }
    const QPoint at = rect.center();
    const QPoint onScreen = m_pWidget->mapToGlobal(at);
    const QPointer<QWidget> widget(m_pWidget);
    QMouseEvent press(QEvent::MouseButtonPress, at, onScreen, Qt::LeftButton, Qt::LeftButton, {});
    QCoreApplication::sendEvent(widget, &press);
    if (widget != nullptr) {
        QMouseEvent release(QEvent::MouseButtonRelease, at, onScreen, Qt::LeftButton, {}, {});
        QCoreApplication::sendEvent(widget, &release);
    }
}

QAccessibleInterface* PaintedParts::Access(int iPart) {
    if (iPart == WholePart) {
        return QAccessible::queryAccessibleInterface(m_pWidget);
    }
    Told& told = m_told[iPart];
    if (told.id == 0) {
        told.part = Part(iPart);
        told.id =
            QAccessible::registerAccessibleInterface(std::make_unique<PartAccess>(this, iPart).release());
    }
    return QAccessible::accessibleInterface(told.id);
}

void PaintedParts::ForgetParts() {
    for (auto told = m_told.upper_bound(WholePart); told != m_told.end(); told = m_told.erase(told)) {
        Tell<QAccessibleEvent>(Access(told->first), QAccessible::ObjectDestroyed);
        QAccessible::deleteAccessibleInterface(told->second.id);
    }
}

void PaintedParts::LetGoIfCutOff(QEvent* event) {
    if (event->type() == QEvent::WindowBlocked || event->type() == QEvent::Hide) {
        LetGo();
    }
}

bool PaintedParts::ShowToolTip(QEvent* event) const {
    if (event->type() != QEvent::ToolTip) {
        return false;
    }
    const auto* pHelp = dynamic_cast<QHelpEvent*>(event);
    const int iPart = PartAt(pHelp->pos());
    QToolTip::showText(pHelp->globalPos(), iPart < 0 ? QString() : Part(iPart).name, m_pWidget);
    return true;
}
