#include "app/cpopupmenu.h"

#include "widgets/artwork.h"

#include <QMouseEvent>
#include <QPainter>

CPopupMenu::CPopupMenu(QWidget* parent) : PaintedWidget(parent) {
    setFixedWidth(Width);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
    setAccessibleName(tr("Pages"));
    UpdateRects();
}

void CPopupMenu::ShowMenu(int iMenu, bool bShow) {
    if (iMenu < 0 || iMenu >= Refresh) {
        return;
    }
    m_shown.at(static_cast<std::size_t>(iMenu)) = bShow;
    UpdateRects();
    ShowParts();
}

void CPopupMenu::SetSelected(int iMenu) {
    m_iSelected = iMenu;
    ShowParts();
}

PaintedPart CPopupMenu::Part(int iPart) const {
    const std::array<QString, Entries> names{tr("Scenes"),   tr("Programs"),   tr("Color"),
                                             tr("Channels"), tr("Parameters"), tr("Connect again")};
    PaintedPart part{names.at(static_cast<std::size_t>(iPart)),
                     iPart == Refresh ? QAccessible::Button : QAccessible::PageTab};
    part.state.selectable = iPart != Refresh;
    part.state.selected = iPart == m_iSelected;
    return part;
}

void CPopupMenu::paintEvent(QPaintEvent*) {
    static const QPixmap backPicture = artwork::Named("MenuBack");
    static const auto pictures =
        artwork::All({"MenuButScene", "MenuButProg", "MenuButColor", "MenuButChan", "MenuButParams",
                      "MenuButRefresh", "MenuButSceneSel", "MenuButProgSel", "MenuButColorSel",
                      "MenuButChanSel", "MenuButParamsSel", "MenuButRefreshSel"});

    QPainter painter(this);
    painter.drawPixmap(rect(), backPicture);
    for (std::size_t i = 0; i < m_rects.size(); ++i) {
        // Parameters and "connect again" are always drawn.
        if (m_shown.at(i) || i >= ParamsPage) {
            const bool bSelected = static_cast<int>(i) == m_iSelected;
            painter.drawPixmap(m_rects.at(i).topLeft(), pictures.at(bSelected ? i + Entries : i));
        }
    }
}

void CPopupMenu::mousePressEvent(QMouseEvent* event) {
    const int iMenu = PartAt(event->pos());
    if (iMenu < 0 || iMenu == m_iSelected) {
        return;
    }
    m_iPrevious = m_iSelected;
    SetSelected(iMenu);
    emit menuChanged(iMenu);
}

/// The refresh entry is lit only while it is held; the menu goes on showing the page the user is on.
void CPopupMenu::LetGo() {
    if (m_iSelected == Refresh) {
        SetSelected(m_iPrevious);
    }
}

void CPopupMenu::UpdateRects() {
    int nTop = 10;
    for (std::size_t i = 0; i < m_rects.size(); ++i) {
        m_rects.at(i) = m_shown.at(i) ? QRect(QPoint(6, nTop), QPoint(55, nTop + 38)) : QRect();
        nTop += m_shown.at(i) ? 52 : 0;
    }
}
