#include "widgets/channelsgrid.h"

#include "device/dmxchan.h"
#include "widgets/artwork.h"
#include "widgets/cchannelslider.h"
#include "widgets/csliderctrl.h"
#include "widgets/fonts.h"
#include "widgets/outline.h"

#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>

ChannelsGrid::ChannelsGrid(QWidget* parent) : PaintedWidget(parent), m_pEditor(new CChannelSlider(this)) {
    setAccessibleName(tr("Channels"));
    connect(m_pEditor, &CChannelSlider::ok, this, &ChannelsGrid::OnSliderOk);
    connect(m_pEditor, &CChannelSlider::off, this, &ChannelsGrid::OnSliderOff);
    connect(m_pEditor->Control(), &CSliderCtrl::valueChanged, this, [this] { m_bMoved = true; });
    m_pEditor->hide();
}

void ChannelsGrid::UpdateRects() {
    const int nW = width();
    const int nGroup = (nW - 140) / 2;
    m_rects[LeftArrow] = QRect(QPoint(10, 10), QPoint(41, 41));
    m_rects[UnivLess] = QRect(QPoint(nGroup + 10, 10), QPoint(nGroup + 41, 41));
    m_rects[UnivBox] = QRect(QPoint(nGroup + 42, 10), QPoint(nGroup + 97, 41));
    m_rects[UnivPlus] = QRect(QPoint(nW - 43 - nGroup, 10), QPoint(nW - 12 - nGroup, 41));
    m_rects[RightArrow] = QRect(QPoint(nW - 43, 10), QPoint(nW - 12, 41));
    const QSize cell(nW / Columns, (height() - 52) / Rows);
    for (int i = 0; i < Cells; ++i) {
        const QPoint corner(1 + i % Columns * cell.width(), 53 + i / Columns * cell.height());
        m_rects.at(std::size_t{BarParts} + static_cast<std::size_t>(i)) = QRect(corner, cell);
    }
}

void ChannelsGrid::Update(int nUniverse) {
    if (nUniverse == m_nUniverse) {
        ShowParts();
    }
}

void ChannelsGrid::Update(const DmxChan& channel) {
    m_universes.Set(channel.univ, channel.chan, channel.level, channel.state);
    if (channel.univ != m_nUniverse || !Universes::HasChannel(channel.chan)) {
        return;
    }
    const int iCell = channel.chan - IndexOf(m_nFirstChannel);
    if (iCell >= 0 && iCell < Cells) {
        update(WithOutline(CellRect(iCell)));
        TellParts();
    }
}

void ChannelsGrid::Update(int nUniverse, unsigned char ucLevel, bool bState) {
    m_universes.SetAll(nUniverse, ucLevel, bState);
    Update(nUniverse);
}

void ChannelsGrid::Update(int nUniverse, int nStart, int nCount, unsigned char ucR, unsigned char ucG,
                          unsigned char ucB, unsigned char ucW, bool bRgbw) {
    m_universes.SetRun(nUniverse, nStart, nCount, Color{ucR, ucG, ucB, ucW, bRgbw, true});
    Update(nUniverse);
}

void ChannelsGrid::ReleaseChannels() {
    m_universes = Universes();
}

int ChannelsGrid::SelectedChannel() const {
    return IndexOf(m_pEditor->Channel());
}

void ChannelsGrid::CloseEditor(bool bState) {
    m_universes.Set(m_nUniverse, SelectedChannel(), m_pEditor->Control()->Value(), bState);
    HideEditor();
}

bool ChannelsGrid::LeaveEditor() {
    if (!m_pEditor->isVisible()) {
        return false;
    }
    m_bMoved ? CloseEditor(true) : HideEditor();
    return true;
}

/// Back to the cell, if it was the keys that worked the editor; else to no control at all.
void ChannelsGrid::HideEditor() {
    const bool bKeys = m_pEditor->isAncestorOf(window()->focusWidget()) &&
                       window()->testAttribute(Qt::WA_KeyboardFocusChange);
    setFocusPolicy(Qt::TabFocus);
    m_pEditor->hide();
    if (bKeys) {
        setFocus(Qt::TabFocusReason);
    }
    ShowParts();
}

void ChannelsGrid::mousePressEvent(QMouseEvent* event) {
    emit mousePressed();
    if (m_pEditor->isVisible()) {
        return;
    }
    const int iPart = PartAt(event->pos());
    if (iPart >= BarParts) {
        OpenEditor(iPart - BarParts);
    } else {
        PressBar(iPart);
    }
}

/// Pages and universes go round.
void ChannelsGrid::PressBar(int iPart) {
    if (iPart == LeftArrow) {
        m_nFirstChannel = m_nFirstChannel < 2 ? Universes::Channels - Cells + 1 : m_nFirstChannel - Cells;
    } else if (iPart == RightArrow) {
        m_nFirstChannel = m_nFirstChannel > Universes::Channels - Cells ? 1 : m_nFirstChannel + Cells;
    } else if (iPart == UnivLess) {
        m_nUniverse = m_nUniverse < 1 ? Universes::Count - 1 : m_nUniverse - 1;
    } else if (iPart == UnivPlus) {
        m_nUniverse = m_nUniverse > Universes::Count - 2 ? 0 : m_nUniverse + 1;
    } else {
        return;
    }
    ShowParts();
}

void ChannelsGrid::OpenEditor(int iCell) {
    const int nNumber = m_nFirstChannel + iCell;
    m_pEditor->Edit(nNumber, m_universes.levels.at(TableIndex(iCell)));
    m_pEditor->setGeometry(QRect(QPoint(width() / 2 - 50, height() / 2 - 200), QSize(100, 400)));
    m_pEditor->show();
    m_bMoved = false;
    setFocusPolicy(Qt::NoFocus);  // until it closes
    if (HasRing()) {
        m_pEditor->Control()->Slider()->setFocus(Qt::TabFocusReason);
    }
    TellParts();
}

PaintedPart ChannelsGrid::Part(int iPart) const {
    const int iCell = iPart - BarParts;
    PaintedPart part;
    if (iCell >= 0) {
        part.name = tr("Channel %1").arg(m_nFirstChannel + iCell);
        part.value = LevelText(iCell);
        part.state.checked = m_universes.states.at(TableIndex(iCell));
    } else {
        const std::array<QString, BarParts> names{tr("Previous channels"), tr("Previous universe"),
                                                  tr("Universe %1").arg(m_nUniverse + 1), tr("Next universe"),
                                                  tr("Next channels")};
        part.name = names.at(static_cast<std::size_t>(iPart));
        part.role = iPart == UnivBox ? QAccessible::StaticText : QAccessible::Button;
    }
    part.state.disabled = !m_pEditor->isHidden();
    return part;
}

std::size_t ChannelsGrid::TableIndex(int iCell) const {
    return Universes::At(m_nUniverse, IndexOf(m_nFirstChannel + iCell));
}

QString ChannelsGrid::LevelText(int iCell) const {
    const std::size_t at = TableIndex(iCell);
    return m_universes.states.at(at) ? QString("%1").arg(m_universes.levels.at(at)) : tr("Off");
}

void ChannelsGrid::paintEvent(QPaintEvent* event) {
    static const auto bar = artwork::All({"Left", "Less", "UnivBox", "Plus", "Right"});
    static const QFont universeFont = fonts::Bold("Arial", 10);

    QPainter painter(this);
    for (int i = 0; i < BarParts; ++i) {
        painter.drawPixmap(PartRect(i).topLeft(), bar.at(static_cast<std::size_t>(i)));
    }
    painter.setFont(universeFont);
    painter.setPen(Qt::white);
    painter.drawText(PartRect(UnivBox).adjusted(20, 0, 0, 0), Qt::AlignCenter,
                     QString("%1").arg(m_nUniverse + 1));
    for (int i = 0; i < Cells; ++i) {
        if (event->region().intersects(WithOutline(CellRect(i)))) {
            PaintCell(painter, i);
        }
    }
}

void ChannelsGrid::PaintCell(QPainter& painter, int iCell) const {
    static const QColor outlineColor(160, 160, 160);
    static const QPen levelPen(QColor(80, 80, 80));
    static const QColor heldColor(100, 160, 255);
    static const QColor releasedColor(200, 200, 200);
    static const QFont levelFont = fonts::Bold("Arial", 16);
    static const QFont channelFont = fonts::Bold("Arial", 12);

    const QRect cell = CellRect(iCell);
    const int nNumber = m_nFirstChannel + iCell;
    const int nLevel = m_universes.levels.at(TableIndex(iCell));
    const bool bHeld = m_universes.states.at(TableIndex(iCell));

    PaintOutline(painter, cell, outlineColor);
    const int nBar = nLevel * cell.height() / 255;
    const QRect bar(QPoint(cell.left() + 1, cell.bottom() + 2 - nBar), cell.bottomRight());
    if (bar.isValid()) {
        painter.fillRect(bar, bHeld ? heldColor : releasedColor);
    }
    const QString sLevel = LevelText(iCell);
    const QRect levelRect = cell.adjusted(0, 0, -6, -4);
    painter.setFont(fonts::Fitting(levelFont, sLevel, levelRect.width()));
    painter.setPen(levelPen);
    painter.drawText(levelRect, Qt::AlignRight | Qt::AlignBottom, sLevel);
    painter.setFont(channelFont);
    painter.setPen(Qt::red);
    painter.drawText(cell.adjusted(6, 6, 0, 0), Qt::AlignLeft | Qt::AlignTop, QString("#%1").arg(nNumber));
}

void ChannelsGrid::resizeEvent(QResizeEvent*) {
    UpdateRects();
    update();
}
