#include "app/popupmenuaccess.h"

#include "app/cpopupmenu.h"

#include <QAccessibleWidget>
#include <QPointer>

#include <array>
#include <memory>

namespace {

/// One entry of the menu.
class EntryAccess : public QAccessibleInterface, public QAccessibleActionInterface {
public:
    EntryAccess(CPopupMenu* pMenu, int iMenu) : m_pMenu(pMenu), m_iMenu(iMenu) {}

    bool isValid() const override { return !m_pMenu.isNull(); }
    QObject* object() const override { return nullptr; }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    QAccessibleInterface* parent() const override { return QAccessible::queryAccessibleInterface(m_pMenu); }
    QAccessibleInterface* child(int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    void setText(QAccessible::Text, const QString&) override {}
    QAccessible::Role role() const override { return QAccessible::Button; }

    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Name ? CPopupMenu::EntryName(m_iMenu) : QString();
    }

    QRect rect() const override {
        const QRect entry = m_pMenu->EntryRect(m_iMenu);
        return {m_pMenu->mapToGlobal(entry.topLeft()), entry.size()};
    }

    QAccessible::State state() const override {
        QAccessible::State state;
        state.invisible = !m_pMenu->isVisible() || m_pMenu->EntryRect(m_iMenu).isNull();
        state.selectable = true;
        state.selected = m_pMenu->Selected() == m_iMenu;
        return state;
    }

    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                    : nullptr;
    }

    QStringList actionNames() const override { return {pressAction()}; }
    QStringList keyBindingsForAction(const QString&) const override { return {}; }

    void doAction(const QString& sAction) override {
        if (sAction == pressAction() && !m_pMenu->EntryRect(m_iMenu).isNull()) {
            m_pMenu->Press(m_iMenu);
            m_pMenu->Release();
        }
    }

private:
    QPointer<CPopupMenu> m_pMenu;
    int m_iMenu;
};

/// The menu, with its entries as children. Qt deletes it with the menu, and each entry's interface by its id.
class MenuAccess : public QAccessibleWidget {
public:
    explicit MenuAccess(CPopupMenu* pMenu) : QAccessibleWidget(pMenu, QAccessible::PopupMenu) {
        for (int i = 0; i < CPopupMenu::Entries; ++i) {
            m_ids.at(static_cast<std::size_t>(i)) =
                QAccessible::registerAccessibleInterface(std::make_unique<EntryAccess>(pMenu, i).release());
        }
    }

    ~MenuAccess() override {
        for (const QAccessible::Id id : m_ids) {
            QAccessible::deleteAccessibleInterface(id);
        }
    }

    MenuAccess(const MenuAccess&) = delete;
    MenuAccess& operator=(const MenuAccess&) = delete;
    MenuAccess(MenuAccess&&) = delete;
    MenuAccess& operator=(MenuAccess&&) = delete;

    int childCount() const override { return CPopupMenu::Entries; }

    QAccessibleInterface* child(int index) const override {
        return index >= 0 && index < CPopupMenu::Entries
                   ? QAccessible::accessibleInterface(m_ids.at(static_cast<std::size_t>(index)))
                   : nullptr;
    }

    int indexOfChild(const QAccessibleInterface* pChild) const override {
        for (int i = 0; i < CPopupMenu::Entries; ++i) {
            if (child(i) == pChild) {
                return i;
            }
        }
        return -1;
    }

private:
    std::array<QAccessible::Id, CPopupMenu::Entries> m_ids{};
};

QAccessibleInterface* CreateMenuAccess(const QString&, QObject* pObject) {
    auto* pMenu = qobject_cast<CPopupMenu*>(pObject);
    return pMenu != nullptr ? std::make_unique<MenuAccess>(pMenu).release() : nullptr;
}

}  // namespace

void InstallPopupMenuAccess() {
    static const bool bInstalled = (QAccessible::installFactory(CreateMenuAccess), true);
    Q_UNUSED(bInstalled)
}
