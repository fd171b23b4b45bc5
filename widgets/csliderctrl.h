#pragma once

#include "widgets/cslider.h"
#include "widgets/paintedwidget.h"

#include <QPixmap>

/// A level with its caption, a button for full and, if wished, one for half.
class CSliderCtrl : public PaintedWidget {
    Q_OBJECT

signals:
    /// A level the user chose, with the bar or a button, even the one it had.
    void valueChanged(int value);

public:
    CSliderCtrl(eSliderLevelClr color, bool bDefault, QWidget* parent);

    /// The level, 0 to 255 where the user set it.
    int Value() const { return m_pSlider->Level(); }
    /// Shows a level without telling anyone.
    void SetValue(int nValue);
    /// Captions in percent (as at first) or as the level itself.
    void SetShowPercent(bool bPercent);
    /// Puts a picture beside the caption.
    void SetIcon(const QPixmap& icon);

    static QRect GetMaxRect();
    QRect GetDefaultRect() const;
    CSlider* Slider() const { return m_pSlider; }

    int PartCount() const override { return m_bDefault ? 2 : 1; }
    PaintedPart Part(int iPart) const override;
    QRect PartRect(int iPart) const override { return iPart == 0 ? GetMaxRect() : GetDefaultRect(); }
    PaintedPart Whole() const override;

public slots:
    void OnSliderValueChanged(int value);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QString Caption() const;

    bool m_bShowPercent = true;
    bool m_bDefault;
    QPixmap m_icon;
    CSlider* m_pSlider;
};
