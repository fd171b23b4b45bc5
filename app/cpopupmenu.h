#pragma once

#include "app/page.h"
#include "widgets/paintedwidget.h"

#include <QRect>
#include <QString>

#include <array>

/// The page menu: a column of picture buttons, one for each page and one that connects again.
class CPopupMenu : public PaintedWidget {
    Q_OBJECT

signals:
    /// The user chose an entry that was not selected.
    void menuChanged(int iMenu);

public:
    static constexpr int Width = 62;
    static constexpr int Refresh = Pages;  ///< the entry that is no page
    static constexpr int Entries = Pages + 1;

    explicit CPopupMenu(QWidget* parent);

    /// Puts a page into the menu or takes it out; the others close up. Any other index is ignored.
    void ShowMenu(int iMenu, bool bShow);

    int Selected() const { return m_iSelected; }
    /// Selects an entry without telling anyone.
    void SetSelected(int iMenu);

    int PartCount() const override { return Entries; }
    PaintedPart Part(int iPart) const override;
    QRect PartRect(int iPart) const override { return m_rects.at(static_cast<std::size_t>(iPart)); }
    PaintedPart Whole() const override { return {{}, QAccessible::PageTabList}; }

protected:
    int EntryPart(bool) const override { return m_iSelected; }
    void LetGo() override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent*) override { LetGo(); }

private:
    void UpdateRects();

    int m_iSelected = ColorPage;
    int m_iPrevious = ColorPage;
    std::array<QRect, Entries> m_rects;
    std::array<bool, Entries> m_shown{true, true, true, true, true, true};
};
