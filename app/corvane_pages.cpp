#include "app/corvane.h"
#include "app/cpopupmenu.h"
#include "app/cpopuptab.h"
#include "widgets/ccolorpicker.h"
#include "widgets/channelsgrid.h"
#include "widgets/cparamsctrl.h"
#include "widgets/cscenelistwnd.h"

#include <QHBoxLayout>

#include <utility>

CSceneList* Corvane::SceneList() const {
    return m_pSceneWnd->List();
}

CSceneList* Corvane::ProgramList() const {
    return m_pProgramWnd->List();
}

void Corvane::ShowPopupTab() {
    const bool bKeys = HasKeys(m_pMenu);
    m_pMenu->hide();
    if (!m_pTab->isVisible()) {
        m_pTab->setGeometry(Border, height() - 118, 14, 50);
        m_pTab->show();
    }
    if (bKeys) {
        GiveKeys(m_pTab);
    }
}

void Corvane::ShowPopupMenu() {
    const bool bKeys = HasKeys(m_pTab);
    m_pTab->hide();
    if (!m_pMenu->isVisible()) {
        m_pMenu->setGeometry(Border, Border, CPopupMenu::Width, height() - 2 * Border);
        m_pMenu->show();
    }
    if (bKeys) {
        GiveKeys(m_pMenu);
    }
}

void Corvane::OnTabPressed() {
    ShowPopupMenu();
}

void Corvane::OnHideMenu() {
    ShowPopupTab();
}

void Corvane::OnMenuChanged(int iMenu) {
    if (iMenu == CPopupMenu::Refresh) {
        Refresh();
        return;
    }
    bool bKeys = HasKeys(m_pMenu);
    if (QWidget* pLeft = PageWidget(std::exchange(m_iCurrentPage, iMenu))) {
        bKeys = bKeys || HasKeys(pLeft);
        m_pLayout->removeWidget(pLeft);
        if (pLeft->isAncestorOf(focusWidget())) {
            setFocus();  // what is hidden must not go on taking keys
        }
        pLeft->hide();
    }
    QWidget* pPage = PageWidget(iMenu);
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

QWidget* Corvane::PageWidget(int iPage) const {
    return iPage >= 0 && iPage < Pages ? m_pages.at(static_cast<std::size_t>(iPage)) : nullptr;
}
