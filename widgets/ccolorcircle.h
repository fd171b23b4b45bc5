#pragma once

#include "widgets/colorarithmetic.h"
#include "widgets/paintedparts.h"

#include <QRect>
#include <QWidget>

class CSliderCtrl;

/// The colour wheel: hue is the angle, saturation the distance from the centre. Around it a switch for the
/// colour, a preview and the two buttons that choose what stands beside the wheel.
class CColorCircle : public QWidget, public PaintedParts {
    Q_OBJECT

signals:
    /// Any press, before anything else happens.
    void mousePressed();
    /// The user released the colour; never emitted with true, for switching on is told by the colour itself.
    void colorStateChanged(bool bState);
    /// A colour to be sent: picked, or switched on.
    void colorPicked(unsigned char ucR, unsigned char ucG, unsigned char ucB);
    /// One of the two mode buttons was pressed, even that of the mode it is in.
    void modePressed();

public:
    /// The three controls, owned elsewhere, follow the wheel.
    CColorCircle(CSliderCtrl* pRed, CSliderCtrl* pGreen, CSliderCtrl* pBlue, QWidget* parent);

    /// Lays the areas out.
    void UpdateRects();
    /// Moves the marker to the current colour.
    void ComputeRects();
    bool InCircle(const QPoint& point) const;
    /// Picks the colour under a point, if the press began on the wheel; beyond the rim the colour is fully
    /// saturated.
    void TrackPoint(const QPoint& point);
    /// How bright picked colours are, 0 to 255, and the current one; other values are clamped.
    void SetBright(int nValue);
    /// Shows a colour; unless `bQuiet`, switches it on and sends it.
    void SetColor(const QColor& color, bool bQuiet);
    /// Switches the colour on or off; with `bNotify` tells so.
    void SwitchState(bool bNotify);

    QColor GetColor() const { return {m_rgb.red, m_rgb.green, m_rgb.blue}; }
    int Value() const { return m_hsv.value; }
    bool IsOn() const { return m_bOn; }
    bool IsPressed() const { return m_bPressed; }

    QPoint Centre() const { return m_centre; }
    QPoint Marker() const { return m_marker; }
    QRect SwitchRect() const { return m_switchRect; }
    QRect PreviewRect() const { return m_previewRect; }
    QRect SlidersRect() const { return m_slidersRect; }
    QRect CommandsRect() const { return m_commandsRect; }

    int PartCount() const override { return 3; }
    PaintedPart Part(int iPart) const override;
    PaintedPart Whole() const override;

protected:
    bool event(QEvent* event) override;
    void LetGo() override { m_bPressed = false; }
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void SetRGBValues(bool bQuiet);
    void Send();
    QRect MarkerRect() const;
    void UpdateShown();

    static constexpr int Radius = 190;

    bool m_bTracking = false;  ///< the press began on the wheel: moves pick
    bool m_bPressed = false;
    bool m_bSliders = true;  ///< the sliders stand beside the wheel, else the commands
    int m_nBrightness = 255;
    QPoint m_centre;
    QPoint m_marker;
    QRect m_wheelRect;
    QRect m_switchRect;
    QRect m_previewRect;
    QRect m_slidersRect;
    QRect m_commandsRect;
    CSliderCtrl* m_pRed;
    CSliderCtrl* m_pGreen;
    CSliderCtrl* m_pBlue;
    bool m_bOn = false;
    RGBColor m_rgb{255, 255, 255};
    HSVColor m_hsv = m_rgb.toHSV();
};
