#pragma once

#include <QColor>
#include <QList>
#include <QWidget>

#include <array>

class CColorCircle;
class CCommandWnd;
class CSliderCtrl;
struct Color;
struct Command;

/// The colour page: the wheel, and beside it the levels of red, green, blue and white or, in command mode,
/// the command buttons with dimmer and speed.
///
/// A server with white lamps of its own has the white control set them; else it dims the colour.
class CColorPicker : public QWidget {
    Q_OBJECT

signals:
    /// A colour the user chose.
    void colorChanged(unsigned char ucR, unsigned char ucG, unsigned char ucB, unsigned char ucW);

public:
    explicit CColorPicker(QWidget* parent);

    /// Swaps the levels for the commands or back.
    void SwitchCmdMode();
    /// Takes a colour from the wheel and tells it.
    void SetColorValue(unsigned char ucR, unsigned char ucG, unsigned char ucB);
    /// Shows the server's state and tells nothing. Levels and percents out of range are clamped.
    void Update(const Color& color, const Command& command);
    /// Releases the colour, which is told, and the command buttons, which is not.
    void ReleaseCommands();

    CColorCircle* Wheel() const { return m_pWheel; }
    CCommandWnd* Commands() const { return m_pCommands; }
    CSliderCtrl* Red() const { return m_levels[0]; }
    CSliderCtrl* Green() const { return m_levels[1]; }
    CSliderCtrl* Blue() const { return m_levels[2]; }
    CSliderCtrl* White() const { return m_levels[3]; }
    CSliderCtrl* Dimmer() const { return m_pDimmer; }
    CSliderCtrl* Speed() const { return m_pSpeed; }

public slots:
    void OnRValueChanged(int value) { SetPart(&QColor::setRed, value); }
    void OnGValueChanged(int value) { SetPart(&QColor::setGreen, value); }
    void OnBValueChanged(int value) { SetPart(&QColor::setBlue, value); }
    void OnWValueChanged(int value);

private:
    CSliderCtrl* PercentControl(const QString& sPicture, const QString& sPurpose);
    void SetPart(void (QColor::*set)(int), int nLevel);

    bool m_bWhiteMode = false;    ///< the server has a white channel
    unsigned char m_ucWhite = 0;  ///< the last white level; sent even after white mode has gone off
    std::array<CSliderCtrl*, 4> m_levels{};  ///< red, green, blue, white
    CColorCircle* m_pWheel;
    CCommandWnd* m_pCommands;
    CSliderCtrl* m_pDimmer;
    CSliderCtrl* m_pSpeed;
    QList<QWidget*> m_beside;  ///< what stands beside the wheel
    QList<QWidget*> m_aside;   ///< what does in the other mode
};
