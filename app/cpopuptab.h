#pragma once

#include <QWidget>

/// The handle that stands for the closed page menu.
class CPopupTab : public QWidget {
    Q_OBJECT

signals:
    void tabPressed();

public:
    explicit CPopupTab(QWidget* parent);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
};
