#include "widgets/ccommandwnd.h"

#include "device/command.h"
#include "widgets/artwork.h"

#include <QMouseEvent>
#include <QPainter>

CCommandWnd::CCommandWnd(QWidget* parent) : PaintedWidget(parent) {
    setFixedSize(110, 320);
    setAccessibleName(tr("Commands"));
}

void CCommandWnd::Update(const Command& command) {
    m_on = {command.white, command.bo, m_on[Next], command.hold};
    ShowParts();
}

void CCommandWnd::ReleaseCommands() {
    m_on = {false, false, m_on[Next], false};
    ShowParts();
}

PaintedPart CCommandWnd::Part(int iPart) const {
    const auto i = static_cast<std::size_t>(iPart);
    const std::array<QString, Buttons> names{tr("White"), tr("Black"), tr("Next"), tr("Pause")};
    const auto role = iPart == Next ? QAccessible::Button : QAccessible::CheckBox;
    return {names.at(i), role, {}, CheckState(m_on.at(i))};
}

void CCommandWnd::mousePressEvent(QMouseEvent* event) {
    constexpr std::array changed{&CCommandWnd::whiteChanged, &CCommandWnd::blackChanged,
                                 &CCommandWnd::nextChanged, &CCommandWnd::pauseChanged};
    emit mousePressed();
    const int iPart = PartAt(event->pos());
    if (iPart < 0) {
        return;
    }
    const auto i = static_cast<std::size_t>(iPart);
    m_on.at(i) = iPart == Next || !m_on.at(i);
    if (m_on.at(i) && iPart <= Black) {
        m_on.at(iPart == White ? Black : White) = false;
    }
    emit(this->*changed.at(i))(m_on.at(i));
    ShowParts();
}

/// The server takes next as one event, so that letting go says nothing.
void CCommandWnd::LetGo() {
    if (m_on[Next]) {
        m_on[Next] = false;
        ShowParts();
    }
}

void CCommandWnd::paintEvent(QPaintEvent*) {
    static const auto pictures =
        artwork::All({"White", "Black", "Next", "Pause", "WhiteSel", "BlackSel", "NextSel", "PauseSel"});
    QPainter painter(this);
    for (std::size_t i = 0; i < m_on.size(); ++i) {
        painter.drawPixmap(PartRect(static_cast<int>(i)).topLeft(),
                           pictures.at(m_on.at(i) ? i + m_on.size() : i));
    }
}
