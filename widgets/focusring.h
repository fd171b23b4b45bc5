#pragma once

#include <QFocusFrame>

/// What shows which painted control the keys work: two pixels of the accent colour with a white line inside,
/// for what is on is filled with that colour. It lets the mouse through and says nothing to screen readers.
class FocusRing : public QFocusFrame {
public:
    /// How far it reaches beyond the control.
    static constexpr int Width = 3;

    using QFocusFrame::QFocusFrame;

protected:
    void paintEvent(QPaintEvent* event) override;
};
