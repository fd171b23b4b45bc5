#pragma once

#include <QWidget>

class CSliderCtrl;

/// The editor of one channel: a level, "OK" and "Off".
class CChannelSlider : public QWidget {
    Q_OBJECT

signals:
    /// The user keeps the level.
    void ok(int nLevel);
    /// The user releases the channel.
    void off();

public:
    explicit CChannelSlider(QWidget* parent);

    /// The channel's number, from 1.
    int Channel() const { return m_nChannel; }
    /// Takes up a channel at its level.
    void Edit(int nChannel, int nLevel);
    CSliderCtrl* Control() const { return m_pControl; }

public slots:
    void OnSliderOk();
    void OnSliderOff() { emit off(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    int m_nChannel = 1;
    CSliderCtrl* m_pControl;
};
