#include "app/corvane.h"
#include "app/cpopupmenu.h"
#include "app/cpopuptab.h"
#include "widgets/ccolorpicker.h"
#include "widgets/channelsgrid.h"
#include "widgets/cparamsctrl.h"
#include "widgets/cscenelistwnd.h"

#include <QHBoxLayout>

CSceneList* Corvane::SceneList() const {
    return m_pSceneWnd->List();
}

CSceneList* Corvane::ProgramList() const {
    return m_pProgramWnd->List();
}

void Corvane::ShowPopupTab() {
    m_pMenu->hide();
    if (!m_pTab->isVisible()) {
        m_pTab->setGeometry(Border, height() - 118, 14, 50);
        m_pTab->show();
    }
}

void Corvane::ShowPopupMenu() {
    m_pTab->hide();
    if (!m_pMenu->isVisible()) {
        m_pMenu->setGeometry(Border, Border, CPopupMenu::Width, height() - 2 * Border);
        m_pMenu->show();
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
    m_iCurrentPage = iMenu;
    if (m_pPage != nullptr) {
        m_pLayout->removeWidget(m_pPage);
        m_pPage->hide();
    }
    m_pPage = PageWidget(iMenu);
    if (m_pPage == nullptr) {
        return;
    }
    if (m_pPage != m_pParams) {
        LeaveParams();
    }
    m_pLayout->addWidget(m_pPage);
    m_pPage->show();
    ShowPopupTab();
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
    while (iPage < 4 && !IsOffered(iPage)) {
        ++iPage;
    }
    return iPage;
}

/// Whether the settings let the user see page 0 to 3.
bool Corvane::IsOffered(int iPage) const {
    return m_settings.menuVisible.at(static_cast<std::size_t>(iPage));
}

QWidget* Corvane::PageWidget(int iPage) const {
    switch (iPage) {
        case 0:
            return m_pSceneWnd;
        case 1:
            return m_pProgramWnd;
        case 2:
            return m_pPicker;
        case 3:
            return m_pGrid;
        case 4:
            return m_pParams;
        default:
            return nullptr;
    }
}
