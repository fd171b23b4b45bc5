#pragma once

#include "widgets/cswitchctrl.h"

#include <QPixmap>

/// A picture that tells what is switched, and the switch at the right; only the switch can be pressed.
class CSwitchIconCtrl : public CSwitchCtrl {
    Q_OBJECT

public:
    /// On at first, 320 x 32. A picture higher than that is cut.
    CSwitchIconCtrl(const QString& sIcon, QWidget* parent);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QPixmap m_icon;
};
