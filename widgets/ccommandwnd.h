#pragma once

#include "widgets/paintedwidget.h"

#include <QRect>

#include <array>

struct Command;

/// The buttons white, black, next and pause. White and black exclude each other; next is lit only while it is
/// held.
class CCommandWnd : public PaintedWidget {
    Q_OBJECT

signals:
    /// Any press, before anything else happens.
    void mousePressed();
    void whiteChanged(bool bWhite);
    void blackChanged(bool bBlack);
    void nextChanged(bool bNext);
    void pauseChanged(bool bPause);

public:
    enum Button { White, Black, Next, Pause, Buttons };

    explicit CCommandWnd(QWidget* parent);

    /// Shows the server's flags; next is the user's alone.
    void Update(const Command& command);
    /// Shows white, black and pause as off.
    void ReleaseCommands();

    bool IsOn(Button button) const { return m_on.at(button); }

    int PartCount() const override { return Buttons; }
    PaintedPart Part(int iPart) const override;
    QRect PartRect(int iPart) const override { return {QPoint(25, 10 + 80 * iPart), QSize(60, 60)}; }

protected:
    void LetGo() override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent*) override { LetGo(); }
    void paintEvent(QPaintEvent* event) override;

private:
    std::array<bool, Buttons> m_on{};
};
