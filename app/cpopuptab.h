#pragma once

#include "widgets/paintedparts.h"

#include <QWidget>

/// The handle that stands for the closed page menu.
class CPopupTab : public QWidget, public PaintedParts {
    Q_OBJECT

signals:
    void tabPressed();

public:
    explicit CPopupTab(QWidget* parent);

    PaintedPart Whole() const override { return {{}, QAccessible::Button, rect()}; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
};
