#pragma once

#include "widgets/paintedwidget.h"

#include <QColor>
#include <QPixmap>
#include <QRect>

/// The colour of a level's fill, caption and button; any other value is grey.
enum eSliderLevelClr : int { slcGrey = 0, slcRed = 1, slcGreen = 2, slcBlue = 3 };

/// A vertical bar that sets a level from 0 to 255 by pointing and dragging. The track's top is a shade under
/// full: full is a drag past it, which the grab of the mouse allows.
class CSlider : public PaintedWidget {
    Q_OBJECT

signals:
    /// The user points at a level, the same or another.
    void valueChanged(int value);

public:
    /// What depends on the colour: that of the caption, and pictures, of the button beside the caption and of
    /// the track up to the cursor.
    struct Theme {
        QColor caption;
        QPixmap full;
        QPixmap center;
        QPixmap bottom;
    };

    CSlider(eSliderLevelClr color, QWidget* parent);

    void SetLevelColor(eSliderLevelClr color);
    const Theme& LevelTheme() const { return m_theme; }
    int Level() const { return m_nLevel; }
    /// Shows a level without telling anyone. 256, the 100 percent of a server, is drawn a shade higher than
    /// 255; one beyond 0 to 256 is kept and drawn as the nearest.
    void SetLevel(int nLevel);
    /// How far a key moves it.
    void SetStep(int nStep) { m_nStep = nStep; }
    /// The track, in widget coordinates.
    QRect GetSliderRect() const;
    /// Sets the level that the height `y` stands for, and tells it.
    void UpdateValue(int y);

    PaintedPart Whole() const override;
    void ChooseLevel(int nLevel) override;

protected:
    void LetGo() override;
    bool Steer(int nKey) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent*) override { LetGo(); }
    void mouseMoveEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QRect CursorRect() const;

    bool m_bPressed = false;
    int m_nLevel = 0;
    int m_nStep = 1;
    Theme m_theme;
};
