#include "app/corvane.h"
#include "app/cpopupmenu.h"
#include "app/cpopuptab.h"
#include "widgets/ccolorpicker.h"
#include "widgets/channelsgrid.h"
#include "widgets/cparamsctrl.h"

#include <QHBoxLayout>

#include <utility>

void Corvane::ShowPopupTab() {
    TakePlace(m_pTab, {Border, height() - 118, 14, 50}, m_pMenu);
}

void Corvane::ShowPopupMenu() {
    TakePlace(m_pMenu, {Border, Border, CPopupMenu::Width, height() - 2 * Border}, m_pTab);
}

/// Hides the other, whose keys go on here.
void Corvane::TakePlace(QWidget* pHost, const QRect& place, QWidget* pOther) {
    const bool bKeys = HasKeys(pOther);
    pOther->hide();
    pHost->setGeometry(place);
    pHost->show();
    if (bKeys) {
        GiveKeys(pHost);
    }
}

void Corvane::OnMenuChanged(int iMenu) {
    if (iMenu == CPopupMenu::Refresh) {
        Refresh();
        return;
    }
    bool bKeys = HasKeys(m_pMenu);
    if (QWidget* pLeft = m_pages.value(std::exchange(m_iCurrentPage, iMenu))) {
        bKeys = bKeys || HasKeys(pLeft);
        m_pLayout->removeWidget(pLeft);
        if (pLeft->isAncestorOf(focusWidget())) {
            setFocus();  // what is hidden must not go on taking keys
        }
        pLeft->hide();
    }
    QWidget* pPage = m_pages.value(iMenu);
    if (pPage == nullptr) {
        return;
    }
    if (pPage != m_pParams) {
        LeaveParams();
    }
    m_pLayout->addWidget(pPage);
    pPage->show();
    ShowPopupTab();
    if (bKeys) {
        GiveKeys(pPage);
    }
}

/// Whether the keys are working something there.
bool Corvane::HasKeys(const QWidget* pHost) const {
    return testAttribute(Qt::WA_KeyboardFocusChange) && pHost->isAncestorOf(focusWidget());
}

/// To its first control.
void Corvane::GiveKeys(QWidget* pHost) {
    pHost->setFocus((pHost->focusPolicy() & Qt::TabFocus) != 0 ? Qt::TabFocusReason : Qt::OtherFocusReason);
    if (pHost->focusPolicy() == Qt::NoFocus) {
        focusNextPrevChild(true);
    }
}

/// Takes over the password as it was left and locks the page behind the user.
void Corvane::LeaveParams() {
    if (m_pParams->IsLocked()) {
        return;
    }
    m_settings.pwdValue = m_pParams->GetPassWord();
    m_pParams->SetStoredPassWord(m_settings.pwdValue);
    if (m_settings.pwdState) {
        m_pParams->Lock();
    }
}

/// Shows a page that the window chose itself.
void Corvane::GoToPage(int iPage) {
    OnMenuChanged(iPage);
    m_pMenu->SetSelected(iPage);
}

/// The first page that the settings let the user see; with none, the parameters, where that can be changed.
int Corvane::FirstOffered() const {
    int iPage = 0;
    while (!IsOffered(iPage)) {
        ++iPage;
    }
    return iPage;
}

/// Whether the settings let the user see a page.
bool Corvane::IsOffered(int iPage) const {
    return iPage == ParamsPage || m_settings.menuVisible.at(static_cast<std::size_t>(iPage));
}
