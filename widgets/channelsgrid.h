#pragma once

#include "device/universes.h"
#include "widgets/paintedwidget.h"

#include <QRect>

#include <array>

class CChannelSlider;
class QPainter;
struct DmxChan;

/// The channels page: 32 channels of one universe at a time, each with its level or "Off". A press on one
/// opens its editor, and until that closes the grid ignores presses.
///
/// It holds the levels and hold flags of all universes. What the server reports is shown and told to no one.
class ChannelsGrid : public PaintedWidget {
    Q_OBJECT

signals:
    /// Any press, before anything else happens.
    void mousePressed();

public:
    static constexpr int Rows = 4;
    static constexpr int Columns = 8;
    static constexpr int Cells = Rows * Columns;

    explicit ChannelsGrid(QWidget* parent);

    /// Lays everything out over the widget's size.
    void UpdateRects();
    /// Repaints if that universe is on screen.
    void Update(int nUniverse);
    void Update(const DmxChan& channel);
    /// Holds a whole universe at a level, or releases it.
    void Update(int nUniverse, unsigned char ucLevel, bool bState);
    /// Puts a colour on a run of fixtures from channel index `nStart` on.
    void Update(int nUniverse, int nStart, int nCount, unsigned char ucR, unsigned char ucG,
                unsigned char ucB, unsigned char ucW, bool bRgbw);
    /// Zeroes and releases every channel, without repainting.
    void ReleaseChannels();

    /// For the reader of universe messages, which fills them in place and then calls Update().
    Universes& Tables() { return m_universes; }

    int CurrentUniverse() const { return m_nUniverse; }
    int FirstChannel() const { return m_nFirstChannel; }
    /// Index, 0 to 511, of the channel in the editor: what messages call it.
    int SelectedChannel() const;
    CChannelSlider* Editor() const { return m_pEditor; }
    /// Closes the editor with its level as it stands, which the server has been told; false if it is closed.
    bool LeaveEditor();

    /// What stands above the cells, from left to right; the cells follow.
    enum BarPart { LeftArrow, UnivLess, UnivBox, UnivPlus, RightArrow, BarParts };

    QRect CellRect(int iCell) const { return PartRect(BarParts + iCell); }

    int PartCount() const override { return BarParts + Cells; }
    PaintedPart Part(int iPart) const override;
    QRect PartRect(int iPart) const override { return m_rects.at(static_cast<std::size_t>(iPart)); }

public slots:
    void OnSliderOk(int) { CloseEditor(true); }
    /// The level stays while the channel is off.
    void OnSliderOff() { CloseEditor(false); }

protected:
    /// A cell says all of itself.
    QString PartTip(int iPart) const override { return iPart < BarParts ? Part(iPart).name : QString(); }
    void mousePressEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    /// Users count channels from 1, tables and messages from 0.
    static constexpr int IndexOf(int nNumber) { return nNumber - 1; }

    void PressBar(int iPart);
    void OpenEditor(int iCell);
    void CloseEditor(bool bState);
    void HideEditor();
    void PaintCell(QPainter& painter, int iCell) const;
    std::size_t TableIndex(int iCell) const;
    QString LevelText(int iCell) const;

    int m_nUniverse = 0;
    int m_nFirstChannel = 1;  ///< number of the first cell's channel
    Universes m_universes;
    std::array<QRect, BarParts + Cells> m_rects;
    CChannelSlider* m_pEditor;
    bool m_bMoved = false;  ///< the user has moved the editor's level
};
