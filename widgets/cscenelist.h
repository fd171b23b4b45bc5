#pragma once

#include "device/scene.h"
#include "widgets/paintedwidget.h"

#include <QColor>
#include <QHash>
#include <QList>
#include <QPixmap>
#include <QRect>
#include <QString>
#include <QVector>

class CIniFile;
class QPainter;

/// A two-column grid of tiles, one for each of the server's scenes or programs. A click switches a tile, a
/// right click offers to rename it, recolour it or give it another icon.
///
/// What the server reports enters through Update() and ResetState() and emits nothing; the signals tell what
/// the user's hand did.
class CSceneList : public PaintedWidget {
    Q_OBJECT

signals:
    /// Any press, before anything else happens.
    void mousePressed();
    void stateChanged(int iArea, int nId, bool bState);
    void nameChanged(int nId, QString sName);
    void iconChanged(int nId, QString sIcon);
    void colorChanged(int nId, QColor color);

public:
    /// One tile.
    struct SceneItem {
        QString name;
        QString icon;    ///< resource path
        QColor color;    ///< of the name while the tile is off
        QPixmap pixmap;  ///< the icon's picture
        int id = 0;
        int group = -1;  ///< the scene's area: scenes of one group exclude each other
        int level = 0;
        bool state = false;
    };

    /// `bScenes` chooses scenes (true) or programs, which exclude nothing.
    CSceneList(bool bScenes, QWidget* parent);

    /// Replaces all tiles, under the user's names, icons and colours.
    void Update(const QList<Scene>& scenes, const CIniFile& settings);
    /// Shows one running state; an id that no tile has changes nothing. With `bExclusive` the others of its
    /// group go off and what changed is repainted, else both are the caller's business.
    void Update(const Scene& scene, bool bExclusive);
    /// Switches every tile off, without repainting.
    void ResetState();
    /// Shows what runs: whatever the list leaves out is off.
    void ShowRunning(const QList<Scene>& running);
    /// Lays the tiles out over the widget's width.
    void UpdateRects();
    /// Gives the tile last right-clicked another icon.
    void SetSceneIcon(const QString& sIcon);

    const QVector<SceneItem>& Items() const { return m_items; }

    int PartCount() const override { return static_cast<int>(m_items.size()); }
    PaintedPart Part(int iPart) const override;
    QRect PartRect(int iPart) const override;

public slots:
    void OnRename();
    void OnColor();
    void OnDefaultIcon() { ChooseIcon(0); }
    void OnIcon1() { ChooseIcon(1); }
    void OnIcon2() { ChooseIcon(2); }
    void OnIcon3() { ChooseIcon(3); }
    void OnIcon4() { ChooseIcon(4); }
    void OnIcon5() { ChooseIcon(5); }

protected:
    /// Of a name that is cut off.
    QString PartTip(int iPart) const override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent*) override { UpdateRects(); }
    void mousePressEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    static QString Number(const SceneItem& item);
    /// Where a tile that was at a place stands now, -1 for gone.
    int Follow(int iItem, int nId) const;
    void PaintItem(QPainter& painter, int iItem) const;
    /// A scene that is switched on switches off whatever it excludes.
    void Switch(int iItem, bool bState);
    void Repaint(int iItem);
    void OpenMenu(const QPoint& position);
    /// Of a list of the catalogue; the action that was chosen knows its place there.
    void ChooseIcon(std::size_t iList);
    SceneItem* ContextItem();

    bool m_bScenes;
    int m_iContext = -1;  ///< tile last right-clicked
    QVector<SceneItem> m_items;
    QHash<int, int> m_firstOfId;  ///< where the first tile of an id stands
};
