#pragma once

#include "widgets/paintedwidget.h"

#include <QRect>

/// An on/off switch. A press of any button toggles it; SetState() moves it quietly.
class CSwitchCtrl : public PaintedWidget {
    Q_OBJECT

signals:
    void stateChanged(bool bState);

public:
    /// Off at first, 70 x 26.
    explicit CSwitchCtrl(QWidget* parent);

    bool State() const { return m_bState; }
    void SetState(bool bState);

    PaintedPart Whole() const override;
    QRect WholeRect() const override { return m_switchRect; }

protected:
    /// A switch that is one part of a larger control.
    CSwitchCtrl(bool bState, const QSize& size, const QRect& switchRect, QWidget* parent);

    void mousePressEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    bool m_bState;
    QRect m_switchRect;  ///< where it is drawn and can be pressed
};
