#include "widgets/ccommandwnd.h"

#include "device/command.h"
#include "widgets/artwork.h"

#include <QHelpEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>

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

CCommandWnd::CCommandWnd(QWidget* parent) : QWidget(parent) {
    setFixedSize(110, 320);
    setAccessibleName(tr("Commands"));
}

void CCommandWnd::Update(const Command& command) {
    m_on = {command.white, command.bo, m_on[Next], command.hold};
    update();
}

void CCommandWnd::ReleaseCommands() {
    m_on = {false, false, m_on[Next], false};
    update();
}

QRect CCommandWnd::ButtonRect(int iButton) {
    return {QPoint(25, 10 + 80 * iButton), QSize(60, 60)};
}

int CCommandWnd::ButtonAt(const QPoint& position) {
    for (int i = 0; i < Buttons; ++i) {
        if (ButtonRect(i).contains(position)) {
            return i;
        }
    }
    return -1;
}

bool CCommandWnd::event(QEvent* event) {
    if (event->type() == QEvent::ToolTip) {
        const auto* pHelp = dynamic_cast<QHelpEvent*>(event);
        const std::array<QString, Buttons> names{tr("White"), tr("Black"), tr("Next"), tr("Pause")};
        const int iButton = ButtonAt(pHelp->pos());
        QToolTip::showText(pHelp->globalPos(),
                           iButton < 0 ? QString() : names.at(static_cast<std::size_t>(iButton)), this);
        return true;
    }
    return QWidget::event(event);
}

void CCommandWnd::mousePressEvent(QMouseEvent* event) {
    emit mousePressed();
    switch (ButtonAt(event->localPos().toPoint())) {
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
    update();
}

/// The server takes next as one event, so that letting go says nothing.
void CCommandWnd::mouseReleaseEvent(QMouseEvent*) {
    if (m_on[Next]) {
        m_on[Next] = false;
        update();
    }
}

void CCommandWnd::paintEvent(QPaintEvent*) {
    static const auto offPictures = ButtonPictures("");
    static const auto onPictures = ButtonPictures("Sel");
    QPainter painter(this);
    for (std::size_t i = 0; i < m_on.size(); ++i) {
        painter.drawPixmap(ButtonRect(static_cast<int>(i)).topLeft(),
                           (m_on.at(i) ? onPictures : offPictures).at(i));
    }
}
