#include "widgets/paintedaccess.h"

#include "widgets/paintedwidget.h"

#include <QAccessibleWidget>

#include <algorithm>
#include <memory>

namespace {

/// Not every desktop passes values on, but all pass descriptions.
QString TextOf(const PaintedPart& part, QAccessible::Text kind) {
    if (kind == QAccessible::Name) {
        return part.name;
    }
    if (kind == QAccessible::Value && part.role == QAccessible::Slider) {
        return QString::number(part.level);
    }
    return kind == QAccessible::Value || kind == QAccessible::Description ? part.value : QString();
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
    PartAccess(PaintedWidget& widget, int iPart) : m_widget(widget), m_iPart(iPart) {}

    int Place() const { return m_iPart; }

    bool isValid() const override { return true; }
    QObject* object() const override { return nullptr; }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    QAccessibleInterface* parent() const override { return QAccessible::queryAccessibleInterface(&m_widget); }
    QAccessibleInterface* child(int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    void setText(QAccessible::Text, const QString&) override {}
    QAccessible::Role role() const override { return Part().role; }
    QString text(QAccessible::Text kind) const override { return TextOf(Part(), kind); }

    QRect rect() const override {
        const QRect area = Area();
        return {m_widget.mapToGlobal(area.topLeft()), area.size()};
    }

    QAccessible::State state() const override {
        QAccessible::State state = Part().state;
        state.invisible = Area().isNull() || !m_widget.isVisible();
        state.offscreen = !m_widget.visibleRegion().intersects(Area());
        state.focusable = Part().IsControl();
        state.focused = m_widget.HasRing() && m_widget.RingPart() == m_iPart;
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
            m_widget.Click(Area());
        }
    }

private:
    PaintedPart Part() const { return m_widget.Part(m_iPart); }
    QRect Area() const { return m_widget.PartRect(m_iPart) & m_widget.rect(); }

    PaintedWidget& m_widget;
    int m_iPart;
};

/// The widget, with its painted controls as children behind those that are widgets.
class WholeAccess : public QAccessibleWidget, public QAccessibleValueInterface {
public:
    explicit WholeAccess(PaintedWidget& widget) : QAccessibleWidget(&widget), m_widget(widget) {
        widget.TellWhole();
        // An alert must be able to tell that it has come, asked for or not.
        for (int i = 0; i < widget.PartCount(); ++i) {
            if (widget.Part(i).role == QAccessible::AlertMessage) {
                widget.Access(i);
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
        const QRect area = m_widget.WholeRect();
        return {m_widget.mapToGlobal(area.topLeft()), area.size()};
    }

    QAccessible::State state() const override {
        const QAccessible::State own = Whole().state;
        QAccessible::State state = QAccessibleWidget::state();
        state.checkable = own.checkable;
        state.checked = own.checked;
        state.focused = state.focused && RingPart() == nullptr;
        return state;
    }

    QAccessibleInterface* focusChild() const override {
        return RingPart() != nullptr ? RingPart() : QAccessibleWidget::focusChild();
    }

    int childCount() const override { return QAccessibleWidget::childCount() + m_widget.PartCount(); }

    QAccessibleInterface* child(int index) const override {
        const int iPart = index - QAccessibleWidget::childCount();
        if (iPart < 0) {
            return QAccessibleWidget::child(index);
        }
        return iPart < m_widget.PartCount() ? m_widget.Access(iPart) : nullptr;
    }

    int indexOfChild(const QAccessibleInterface* pChild) const override {
        const auto* pPart = dynamic_cast<const PartAccess*>(pChild);
        if (pPart == nullptr) {
            return QAccessibleWidget::indexOfChild(pChild);
        }
        return pPart->parent() == this ? QAccessibleWidget::childCount() + pPart->Place() : -1;
    }

    /// Passes over pages that are not shown.
    QAccessibleInterface* childAt(int x, int y) const override {
        const QPoint position = m_widget.mapFromGlobal(QPoint(x, y));
        QWidget* pChild = m_widget.childAt(position);
        while (pChild != nullptr && pChild->parentWidget() != &m_widget) {
            pChild = pChild->parentWidget();
        }
        if (pChild != nullptr) {
            return QAccessible::queryAccessibleInterface(pChild);
        }
        const int iPart = m_widget.PartAt(position);
        return iPart < 0 ? nullptr : m_widget.Access(iPart);
    }

    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ValueInterface && role() == QAccessible::Slider
                   ? static_cast<QAccessibleValueInterface*>(this)
                   : QAccessibleWidget::interface_cast(type);
    }

    QStringList actionNames() const override { return ActionsOf(Whole()) + QAccessibleWidget::actionNames(); }

    void doAction(const QString& sAction) override {
        if (ActionsOf(Whole()).contains(sAction)) {
            m_widget.Click(m_widget.WholeRect());
        } else {
            QAccessibleWidget::doAction(sAction);
        }
    }

    QVariant currentValue() const override { return Whole().level; }
    QVariant minimumValue() const override { return 0; }
    QVariant maximumValue() const override { return 255; }
    QVariant minimumStepSize() const override { return 1; }

    void setCurrentValue(const QVariant& value) override {
        if (m_widget.IsInReach()) {
            m_widget.ChooseLevel(std::clamp(value.toInt(), 0, 255));
        }
    }

private:
    PaintedPart Whole() const { return m_widget.Whole(); }

    /// The painted control that the keys work, if it is one of the children.
    QAccessibleInterface* RingPart() const {
        const bool bPart = m_widget.HasRing() && m_widget.RingPart() != PaintedWidget::Self;
        return bPart ? m_widget.Access(m_widget.RingPart()) : nullptr;
    }

    PaintedWidget& m_widget;
};

QAccessibleInterface* CreateAccess(const QString&, QObject* pObject) {
    auto* pWidget = qobject_cast<PaintedWidget*>(pObject);
    return pWidget != nullptr ? std::make_unique<WholeAccess>(*pWidget).release() : nullptr;
}

template <typename Event, typename... Arguments>
void Tell(QAccessibleInterface* pAccess, Arguments... arguments) {
    Event event(pAccess, arguments...);
    QAccessible::updateAccessibility(&event);
}

}  // namespace

namespace paintedaccess {

void Install() {
    static const bool bInstalled = (QAccessible::installFactory(CreateAccess), true);
    Q_UNUSED(bInstalled)
}

QAccessible::Id RegisterPart(PaintedWidget& widget, int iPart) {
    return QAccessible::registerAccessibleInterface(std::make_unique<PartAccess>(widget, iPart).release());
}

void TellEvent(QAccessibleInterface* pAccess, QAccessible::Event event) {
    Tell<QAccessibleEvent>(pAccess, event);
}

void TellChange(QAccessibleInterface* pAccess, const PaintedPart& before, const PaintedPart& now) {
    if (now.name != before.name) {
        TellEvent(pAccess, QAccessible::NameChanged);
    }
    if (now.level != before.level) {
        Tell<QAccessibleValueChangeEvent>(pAccess, QVariant(now.level));
    }
    if (now.value != before.value) {
        TellEvent(pAccess, QAccessible::DescriptionChanged);
    }
    if (!(now.state == before.state)) {
        QAccessible::State changed;
        changed.checked = before.state.checked != now.state.checked;
        changed.selected = before.state.selected != now.state.selected;
        changed.disabled = before.state.disabled != now.state.disabled;
        Tell<QAccessibleStateChangeEvent>(pAccess, changed);
    }
}

}  // namespace paintedaccess
