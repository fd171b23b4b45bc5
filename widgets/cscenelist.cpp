#include "widgets/cscenelist.h"

#include "settings/cinifile.h"
#include "widgets/artwork.h"
#include "widgets/fonts.h"
#include "widgets/iconcatalogue.h"
#include "widgets/outline.h"
#include "widgets/qtversions.h"

#include <QAction>
#include <QColorDialog>
#include <QInputDialog>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>

#include <algorithm>
#include <array>

namespace {

constexpr int RowHeight = 53;
constexpr int Columns = 2;
/// How much of a name is offered to be changed, and how much is spoken.
constexpr int MaxRenamed = 1000;
constexpr int MaxSpoken = 256;

QFont NameFont() {
    return fonts::Bold("Arial", 14);
}

QRect NameRect(const QRect& tile) {
    return {tile.topLeft() + QPoint(60, 0), tile.bottomRight() - QPoint(40, 0)};
}

void PaintIcon(QPainter& painter, const QPixmap& pixmap, const QPoint& corner) {
    constexpr int nShown = 40;
    const QSize size = artwork::LogicalSize(pixmap);
    if (size.height() > nShown) {
        const QSize shown(size.width() * nShown / size.height(), nShown);
        painter.drawPixmap(QRect(corner + QPoint(0, 6), shown), pixmap);
    } else {
        painter.drawPixmap(corner + QPoint(0, (RowHeight - size.height()) / 2), pixmap);
    }
}

}  // namespace

CSceneList::CSceneList(bool bScenes, QWidget* parent) : PaintedWidget(parent), m_bScenes(bScenes) {
    setAccessibleName(bScenes ? tr("Scenes") : tr("Programs"));
}

void CSceneList::Update(const QList<Scene>& scenes, const CIniFile& settings) {
    // The context menu or one of its dialogs may be open: what it acts on must stay the same scene.
    const int nContextId = m_items.value(m_iContext).id;
    const int nRingId = m_items.value(RingPart()).id;
    const QString& sDefaultIcon = catalogue::IconLists()[0][m_bScenes ? 0 : 1];

    ForgetParts();
    m_items.clear();
    m_firstOfId.clear();
    m_items.reserve(scenes.size());
    for (const Scene& scene : scenes) {
        SceneItem item{QString::fromStdString(scene.name),
                       sDefaultIcon,
                       QColor(120, 120, 120),
                       {},
                       scene.id,
                       scene.area,
                       scene.level,
                       scene.state};
        if (m_bScenes) {
            settings.SetSceneParams(item.id, item.name, item.icon, item.color);
        } else {
            settings.SetProgramParams(item.id, item.name, item.icon, item.color);
        }
        item.pixmap = artwork::Picture(item.icon);
        if (!m_firstOfId.contains(item.id)) {
            m_firstOfId.insert(item.id, PartCount());
        }
        m_items.append(item);
    }
    m_iContext = Follow(m_iContext, nContextId);
    setFocusPolicy(m_items.isEmpty() ? Qt::NoFocus : Qt::TabFocus);
    UpdateRects();
    SetRing(Follow(RingPart(), nRingId));
}

int CSceneList::Follow(int iItem, int nId) const {
    const bool bSamePlace = iItem >= 0 && iItem < m_items.size() && m_items[iItem].id == nId;
    return iItem < 0 || bSamePlace ? iItem : m_firstOfId.value(nId, -1);
}

void CSceneList::Update(const Scene& scene, bool bExclusive) {
    const int iItem = m_firstOfId.value(scene.id, -1);
    if (iItem < 0) {
        return;
    }
    if (bExclusive) {
        Switch(iItem, scene.state);
        TellParts();
    } else {
        m_items[iItem].state = scene.state;
    }
}

void CSceneList::ResetState() {
    for (SceneItem& item : m_items) {
        item.state = false;
    }
}

void CSceneList::ShowRunning(const QList<Scene>& running) {
    ResetState();
    for (Scene scene : running) {
        scene.state = true;
        Update(scene, false);
    }
    ShowParts();
}

void CSceneList::UpdateRects() {
    setMinimumHeight(m_items.isEmpty() ? 0 : PartRect(PartCount() - 1).bottom());
    update();
}

void CSceneList::SetSceneIcon(const QString& sIcon) {
    SceneItem* pItem = ContextItem();
    if (pItem != nullptr) {
        pItem->icon = sIcon;
        pItem->pixmap = artwork::Picture(sIcon);
        Repaint(m_iContext);
        emit iconChanged(pItem->id, sIcon);
    }
}

void CSceneList::OnRename() {
    const SceneItem* pContext = ContextItem();
    if (pContext == nullptr) {
        return;
    }
    const QString sName =
        CIniFile::OneLine(QInputDialog::getText(this, tr("Rename"), tr("Name :"), QLineEdit::Normal,
                                                CIniFile::OneLine(pContext->name.left(MaxRenamed))));
    // Empty if cancelled. The list may have been rebuilt meanwhile: look the tile up again.
    SceneItem* pItem = ContextItem();
    if (pItem != nullptr && !sName.isEmpty()) {
        pItem->name = sName;
        Repaint(m_iContext);
        TellParts();
        emit nameChanged(pItem->id, sName);
    }
}

void CSceneList::OnColor() {
    const SceneItem* pContext = ContextItem();
    if (pContext == nullptr) {
        return;
    }
    const QColor color = QColorDialog::getColor(pContext->color, this);
    SceneItem* pItem = ContextItem();
    if (pItem != nullptr && color.isValid()) {
        pItem->color = color;
        Repaint(m_iContext);
        emit colorChanged(pItem->id, color);
    }
}

PaintedPart CSceneList::Part(int iPart) const {
    const SceneItem& item = m_items[iPart];
    return {item.name.isEmpty() ? Number(item) : item.name.left(MaxSpoken), QAccessible::CheckBox,
            Number(item), CheckState(item.state)};
}

QRect CSceneList::PartRect(int iPart) const {
    const int nHalf = width() / 2;
    const int nTop = RowHeight * (iPart / Columns);
    const int nLeft = iPart % Columns == 0 ? 0 : nHalf - 1;
    return {QPoint(nLeft, nTop), QPoint(nLeft + nHalf - 2, nTop + RowHeight - 1)};
}

QString CSceneList::PartTip(int iPart) const {
    const int nWidth = NameRect(PartRect(iPart)).width();
    const QString& sName = m_items[iPart].name;
    const bool bCut = QFontMetrics(NameFont()).horizontalAdvance(sName.left(nWidth)) > nWidth;
    return bCut ? sName.left(MaxSpoken) : QString();
}

QString CSceneList::Number(const SceneItem& item) {
    return item.group < 0 ? tr("#%1").arg(item.id) : tr("#%1.%2").arg(qint64{item.group} + 1).arg(item.id);
}

void CSceneList::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    const int nFirstRow = std::max(0, event->rect().top() - 1) / RowHeight;
    const int nLastRow = event->rect().bottom() / RowHeight;
    const int nEnd = std::min(PartCount(), (nLastRow + 1) * Columns);
    for (int i = nFirstRow * Columns; i < nEnd; ++i) {
        if (event->region().intersects(WithOutline(PartRect(i)))) {
            PaintItem(painter, i);
        }
    }
}

void CSceneList::mousePressEvent(QMouseEvent* event) {
    emit mousePressed();
    const int iItem = PartAt(event->pos());
    if (iItem < 0) {
        return;
    }
    if (event->button() == Qt::RightButton) {
        m_iContext = iItem;
        OpenMenu(qtversions::GlobalPosition(*event));
        return;
    }
    Switch(iItem, !m_items[iItem].state);
    TellParts();
    const SceneItem& item = m_items[iItem];
    emit stateChanged(item.group, item.id, item.state);
}

void CSceneList::keyPressEvent(QKeyEvent* event) {
    const bool bShift = event->modifiers() == Qt::ShiftModifier;
    if (HasRing() && (event->key() == Qt::Key_Menu || (event->key() == Qt::Key_F10 && bShift))) {
        Click(PartRect(RingPart()), Qt::RightButton);
    } else {
        PaintedWidget::keyPressEvent(event);
    }
}

void CSceneList::PaintItem(QPainter& painter, int iItem) const {
    static const QColor outlineColor(180, 180, 180);
    static const QPen selectedPen(Qt::white);
    static const QColor sceneColor(100, 160, 255);
    static const QColor programColor(Qt::green);
    static const QFont nameFont = NameFont();
    static const QFontMetrics nameMetrics(nameFont);
    static const QFont idFont = fonts::Bold("Comic", 12);
    static const auto boxes = artwork::All({"CheckBox", "CheckBoxSel"});

    const SceneItem& item = m_items[iItem];
    const QRect tile = PartRect(iItem);
    const QPoint topLeft = tile.topLeft();
    const QPoint bottomRight = tile.bottomRight();
    const QColor& onColor = m_bScenes ? sceneColor : programColor;

    PaintOutline(painter, tile, outlineColor);
    if (item.state) {
        painter.fillRect(QRect(topLeft + QPoint(1, 1), bottomRight), onColor);
    }

    const QRect nameRect = NameRect(tile);
    painter.setPen(item.state ? selectedPen : QPen(item.color));
    painter.setFont(nameFont);
    // No letter is narrower than a pixel: what follows these cannot be seen, and laying it out takes long.
    QString sSeen = item.name.left(nameRect.width());
    sSeen.replace(QChar::LineSeparator, ' ')
        .replace(QChar::ParagraphSeparator, ' ');  // the rest stays on one line
    painter.drawText(nameRect, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                     nameMetrics.elidedText(sSeen, Qt::ElideRight, nameRect.width()));

    painter.drawPixmap(QPoint(bottomRight.x() - 30, topLeft.y() + 6), boxes[item.state ? 1 : 0]);

    const QString sId = Number(item);
    painter.setPen(item.state ? selectedPen : QPen(onColor));
    const QRect idRect(bottomRight - QPoint(40, 21), bottomRight - QPoint(1, 2));
    painter.setFont(fonts::Fitting(idFont, sId, idRect.width()));
    painter.drawText(idRect, Qt::AlignCenter, sId);

    PaintIcon(painter, item.pixmap, topLeft + QPoint(10, 0));
}

void CSceneList::Switch(int iItem, bool bState) {
    if (m_items[iItem].state != bState) {
        m_items[iItem].state = bState;
        Repaint(iItem);
    }
    for (int i = 0; m_bScenes && bState && i < PartCount(); ++i) {
        if (i != iItem && m_items[i].group == m_items[iItem].group) {
            Switch(i, false);
        }
    }
}

void CSceneList::Repaint(int iItem) {
    update(WithOutline(PartRect(iItem)));
}

void CSceneList::OpenMenu(const QPoint& position) {
    constexpr std::array choices{&CSceneList::OnDefaultIcon, &CSceneList::OnIcon1, &CSceneList::OnIcon2,
                                 &CSceneList::OnIcon3,       &CSceneList::OnIcon4, &CSceneList::OnIcon5};
    // The family's name, then those of its pictures.
    const std::array<QString, choices.size()> names{
        tr("Icons|Scene|Program"),
        tr("Lighting|Desk lamp|Laser|LED|Moving head|Spotlight|Scanner"),
        tr("Outdoors|Fountain|Hot tub|Garden|Monument|Palm trees|Pool|Statue"),
        tr("Indoors|Balcony|Bar|Library|Sofa|Bedroom|Kitchen|Entrance|Stairs|Facade") + '|' +
            tr("Window|Garage|Building|House|Ceiling|Bathroom|Living room|Table|Roof|Toilet"),
        tr("Music|Classical|Concert|Disco|Hip hop|Jazz|Music|Piano|Dance floor|RnB|Rock|Techno"),
        tr("Time of day|Afternoon|Stop|Start|Morning|Noon|Night|Evening")};
    QMenu menu(this);
    menu.addAction(artwork::Named("Text"), tr("Rename"), this, &CSceneList::OnRename);
    menu.addAction(artwork::Named("Color"), tr("Color"), this, &CSceneList::OnColor);
    menu.addSeparator();
    for (std::size_t iList = 0; iList < choices.size(); ++iList) {
        const QStringList& icons = catalogue::IconLists().at(iList);
        QMenu* pMenu = iList == 0 ? &menu : menu.addMenu(artwork::Picture(icons.first()), QString());
        const QStringList words = names.at(iList).split('|');
        pMenu->menuAction()->setToolTip(words[0]);
        pMenu->setToolTipsVisible(true);
        for (int i = 0; i < icons.size(); ++i) {
            QAction* pAction =
                pMenu->addAction(artwork::Picture(icons[i]), QString(), this, choices.at(iList));
            pAction->setData(i);
            pAction->setToolTip(words.value(i + 1));
        }
    }
    menu.exec(position);
}

void CSceneList::ChooseIcon(std::size_t iList) {
    const QStringList& icons = catalogue::IconLists().at(iList);
    const auto* pAction = qobject_cast<QAction*>(sender());
    const int i = pAction != nullptr ? pAction->data().toInt() : -1;
    if (i >= 0 && i < icons.size()) {
        SetSceneIcon(icons[i]);
    }
}

CSceneList::SceneItem* CSceneList::ContextItem() {
    return m_iContext >= 0 && m_iContext < m_items.size() ? &m_items[m_iContext] : nullptr;
}
