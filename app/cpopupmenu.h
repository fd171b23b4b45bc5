#pragma once

#include "widgets/paintedparts.h"

#include <QRect>
#include <QString>
#include <QWidget>

#include <array>

/// The page menu: a column of picture buttons, one for each page and one that connects again.
class CPopupMenu : public QWidget, public PaintedParts {
    Q_OBJECT

signals:
    /// The user chose an entry that was not selected.
    void menuChanged(int iMenu);

public:
    static constexpr int Width = 62;
    static constexpr int Entries = 6;
    static constexpr int Refresh = 5;  ///< the entry that is no page

    explicit CPopupMenu(QWidget* parent);

    /// Puts entry 0 to 4 into the menu or takes it out; the others close up. Any other index is ignored.
    void ShowMenu(int iMenu, bool bShow);

    int Selected() const { return m_iSelected; }
    /// Selects an entry without telling anyone.
    void SetSelected(int iMenu);

    /// Where an entry stands; null while it is not in the menu.
    QRect EntryRect(int iMenu) const { return m_rects.at(static_cast<std::size_t>(iMenu)); }

    int PartCount() const override { return Entries; }
    PaintedPart Part(int iPart) const override;
    PaintedPart Whole() const override { return {{}, QAccessible::PageTabList}; }

protected:
    bool event(QEvent* event) override;
    void LetGo() override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    void UpdateRects();

    int m_iSelected = 2;
    int m_iPrevious = 2;
    std::array<QRect, Entries> m_rects;
    std::array<bool, Entries> m_shown{true, true, true, true, true, true};
};
