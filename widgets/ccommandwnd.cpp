#include "widgets/ccommandwnd.h"

#include "device/command.h"
#include "widgets/artwork.h"

#include <QMouseEvent>
#include <QPainter>

namespace {

std::array<QPixmap, CCommandWnd::Buttons> ButtonPictures(const QString& sSuffix) {
    const std::array<const char*, CCommandWnd::Buttons> names{"White", "Black", "Next", "Pause"};
    std::array<QPixmap, CCommandWnd::Buttons> pictures;
    for (std::size_t i = 0; i < names.size(); ++i) {
        pictures.at(i) = artwork::Picture(QString(":/Corvane/Images/%1%2.png").arg(names.at(i), sSuffix));
    }
    return pictures;
}

}  // namespace

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
    emit mousePressed();
    switch (PartAt(event->pos())) {
        case White:
            m_on[White] = !m_on[White];
            m_on[Black] = m_on[Black] && !m_on[White];
            emit whiteChanged(m_on[White]);
            break;
        case Black:
            m_on[Black] = !m_on[Black];
            m_on[White] = m_on[White] && !m_on[Black];
            emit blackChanged(m_on[Black]);
            break;
        case Next:
            m_on[Next] = true;
            emit nextChanged(true);
            break;
        case Pause:
            m_on[Pause] = !m_on[Pause];
            emit pauseChanged(m_on[Pause]);
            break;
        default:
            return;
    }
    ShowParts();
}

void CCommandWnd::mouseReleaseEvent(QMouseEvent*) {
    LetGo();
}

/// The server takes next as one event, so that letting go says nothing.
void CCommandWnd::LetGo() {
    if (m_on[Next]) {
        m_on[Next] = false;
        ShowParts();
    }
}

void CCommandWnd::paintEvent(QPaintEvent*) {
    static const auto offPictures = ButtonPictures("");
    static const auto onPictures = ButtonPictures("Sel");
    QPainter painter(this);
    for (std::size_t i = 0; i < m_on.size(); ++i) {
        painter.drawPixmap(PartRect(static_cast<int>(i)).topLeft(),
                           (m_on.at(i) ? onPictures : offPictures).at(i));
    }
}
