#include "widgets/cscenelistwnd.h"

#include "widgets/cscenelist.h"
#include "widgets/focusring.h"

#include <QHBoxLayout>
#include <QScrollArea>

CSceneListWnd::CSceneListWnd(bool bScenes, QWidget* parent)
    : QWidget(parent), m_pList(new CSceneList(bScenes, nullptr)) {
    auto* pArea = new QScrollArea(this);
    pArea->setFrameShape(QFrame::NoFrame);
    pArea->setWidgetResizable(true);
    pArea->setAlignment(Qt::AlignCenter);
    pArea->setWidget(m_pList);
    // The keys are the list's: it would scroll on arrows.
    pArea->setFocusPolicy(Qt::NoFocus);
    connect(m_pList, &CSceneList::ringMoved, pArea,
            [this, pArea] { pArea->ensureWidgetVisible(m_pList, 0, FocusRing::Width); });

    auto* pLayout = new QHBoxLayout(this);
    pLayout->setContentsMargins(0, 0, 0, 0);
    pLayout->addWidget(pArea);
}
