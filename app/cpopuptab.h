#pragma once

#include "widgets/paintedwidget.h"

/// The handle that stands for the closed page menu.
class CPopupTab : public PaintedWidget {
    Q_OBJECT

signals:
    void tabPressed();

public:
    explicit CPopupTab(QWidget* parent);

    PaintedPart Whole() const override { return {}; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
};
