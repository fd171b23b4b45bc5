#pragma once

#include "widgets/colorarithmetic.h"
#include "widgets/paintedwidget.h"

#include <QRect>

class CSliderCtrl;

/// The colour wheel: hue is the angle, saturation the distance from the centre. Around it a switch for the
/// colour, a preview and the two buttons that choose what stands beside the wheel.
class CColorCircle : public PaintedWidget {
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
    /// Tells the current colour, to be sent.
    void Send();
    /// A press that began on the wheel goes on: moves pick.
    bool IsPressed() const { return m_bPressed; }

    QPoint Marker() const { return m_marker; }

    enum Button { OnOff, Sliders, Commands, Buttons };

    int PartCount() const override { return Buttons; }
    PaintedPart Part(int iPart) const override;
    QRect PartRect(int iPart) const override;
    PaintedPart Whole() const override;

protected:
    bool focusNextPrevChild(bool bNext) override;
    /// The point of the wheel, then the buttons.
    int EntryPart(bool bForward) const override { return bForward ? Self : Buttons - 1; }
    QRect RingRect() const override;
    bool Steer(int nKey) override;
    void LetGo() override { m_bPressed = false; }
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent*) override { LetGo(); }
    void mouseMoveEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void Pick(int nHue, int nSaturation);
    void SetRGBValues(bool bQuiet);
    QRect MarkerRect() const;
    void UpdateShown();

    bool m_bPressed = false;
    bool m_bSliders = true;  ///< the sliders stand beside the wheel, else the commands
    int m_nBrightness = 255;
    QPoint m_marker;
    CSliderCtrl* m_pRed;
    CSliderCtrl* m_pGreen;
    CSliderCtrl* m_pBlue;
    bool m_bOn = false;
    RGBColor m_rgb{255, 255, 255};
    HSVColor m_hsv = m_rgb.toHSV();
};
