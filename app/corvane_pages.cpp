#include "app/corvane.h"
#include "widgets/cscenelistwnd.h"

#include <QHBoxLayout>

CSceneList* Corvane::SceneList() const {
    return m_pSceneWnd->List();
}

CSceneList* Corvane::ProgramList() const {
    return m_pProgramWnd->List();
}

void Corvane::OnMenuChanged(int iMenu) {
    m_iCurrentPage = iMenu;
    QWidget* pPage = PageWidget(iMenu);
    if (pPage == nullptr || pPage == m_pPage) {
        return;
    }
    if (m_pPage != nullptr) {
        m_pLayout->removeWidget(m_pPage);
        m_pPage->hide();
    }
    m_pPage = pPage;
    m_pLayout->addWidget(m_pPage);
    m_pPage->show();
}

/// The first page that the settings let the user see; the scenes when they hide every one there is.
int Corvane::FirstPage() const {
    for (int iPage = 0; iPage < 4; ++iPage) {
        if (m_settings.menuVisible[static_cast<std::size_t>(iPage)] && PageWidget(iPage) != nullptr) {
            return iPage;
        }
    }
    return 0;
}

QWidget* Corvane::PageWidget(int iPage) const {
    switch (iPage) {
        case 0:
            return m_pSceneWnd;
        case 1:
            return m_pProgramWnd;
        default:
            return nullptr;
    }
}
