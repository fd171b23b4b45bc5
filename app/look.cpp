#include "app/look.h"

#include <QApplication>
#include <QFontDatabase>
#include <QFontInfo>
#include <QMenu>
#include <QPainter>
#include <QPalette>
#include <QProxyStyle>
#include <QPushButton>
#include <QStyleOptionMenuItem>
#include <QToolTip>

#include <algorithm>

namespace {

const QColor Rim(185, 192, 202);

/// Flat, with round corners and a rim, which is blue where the keys go.
void Panel(QPainter* painter, const QStyleOption* option, const QColor& ground) {
    const bool bFocus = (option->state & QStyle::State_HasFocus) != 0;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(QPen(bFocus ? option->palette.color(QPalette::Highlight) : Rim, bFocus ? 2 : 1));
    painter->setBrush(ground);
    const qreal nInset = bFocus ? 1 : 0.5;
    painter->drawRoundedRect(QRectF(option->rect).adjusted(nInset, nInset, -nInset, -nInset), 6, 6);
    painter->restore();
}

/// Fusion with the forms of the painted controls, and with menus whose pictures are large enough to be told
/// apart: many entries have nothing else.
class LookStyle : public QProxyStyle {
public:
    LookStyle() : QProxyStyle("fusion") {}

    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override {
        if (metric == PM_SmallIconSize && qobject_cast<const QMenu*>(widget) != nullptr) {
            return MenuIconSize;
        }
        if (metric == PM_ScrollBarSliderMin) {
            return ScrollBarSliderMin;
        }
        return metric == PM_ScrollBarExtent ? ScrollBarWidth
                                            : QProxyStyle::pixelMetric(metric, option, widget);
    }

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override {
        const QPalette& palette = option->palette;
        const auto* pFrame = qstyleoption_cast<const QStyleOptionFrame*>(option);
        if (element == PE_PanelButtonCommand) {
            const bool bDown = (option->state & (State_Sunken | State_On)) != 0;
            Panel(painter, option, bDown ? Rim : palette.color(QPalette::Button));
        } else if (element == PE_PanelLineEdit && pFrame != nullptr && pFrame->lineWidth > 0) {
            Panel(painter, option, palette.color(QPalette::Base));
        } else if (element != PE_FrameFocusRect || qobject_cast<const QPushButton*>(widget) == nullptr) {
            QProxyStyle::drawPrimitive(element, option, painter, widget);
        }
    }

    /// A link has no panel to show where the keys go; a list that is too narrow leaves out the middle, for
    /// both ends of a network's name and address tell it.
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override {
        const auto* pButton = qstyleoption_cast<const QStyleOptionButton*>(option);
        if (element == CE_PushButtonBevel && pButton != nullptr &&
            (pButton->features & QStyleOptionButton::CommandLinkButton) != 0 &&
            (pButton->state & State_HasFocus) != 0) {
            Panel(painter, option, Qt::transparent);
        }
        const auto* pList = qstyleoption_cast<const QStyleOptionComboBox*>(option);
        if (element == CE_ComboBoxLabel && pList != nullptr) {
            QStyleOptionComboBox shorter(*pList);
            const int nWidth = subControlRect(CC_ComboBox, pList, SC_ComboBoxEditField, widget).width() - 2;
            shorter.currentText = pList->fontMetrics.elidedText(pList->currentText, Qt::ElideMiddle, nWidth);
            QProxyStyle::drawControl(element, &shorter, painter, widget);
            return;
        }
        QProxyStyle::drawControl(element, option, painter, widget);
    }

    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                            const QWidget* widget) const override {
        const auto* pList = qstyleoption_cast<const QStyleOptionComboBox*>(option);
        if (control == CC_ScrollBar) {
            const QRectF slider = subControlRect(control, option, SC_ScrollBarSlider, widget);
            painter->save();
            painter->fillRect(option->rect, option->palette.window());
            painter->setRenderHint(QPainter::Antialiasing);
            painter->setPen(Qt::NoPen);
            painter->setBrush((option->state & State_Sunken) != 0 ? option->palette.color(QPalette::Highlight)
                                                                  : Rim);
            painter->drawRoundedRect(slider.adjusted(2, 2, -2, -2), 3, 3);
            painter->restore();
        } else if (control == CC_ComboBox && pList != nullptr && !pList->editable) {
            Panel(painter, option, option->palette.color(QPalette::Base));
            QStyleOption arrow(*option);
            arrow.rect = QStyle::alignedRect(option->direction, Qt::AlignCenter, QSize(8, 8),
                                             subControlRect(control, option, SC_ComboBoxArrow, widget));
            QProxyStyle::drawPrimitive(PE_IndicatorArrowDown, &arrow, painter, widget);
        } else {
            QProxyStyle::drawComplexControl(control, option, painter, widget);
        }
    }

    /// A scroll bar is all groove: who wants a step has the wheel and the keys. The buttons are there, but
    /// lie beyond its ends.
    QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                         const QWidget* widget) const override {
        const auto* pBar = qstyleoption_cast<const QStyleOptionSlider*>(option);
        if (control != CC_ScrollBar || pBar == nullptr) {
            return QProxyStyle::subControlRect(control, option, part, widget);
        }
        const QPoint button =
            pBar->orientation == Qt::Vertical ? QPoint(0, ScrollBarWidth) : QPoint(ScrollBarWidth, 0);
        QStyleOptionSlider longer(*pBar);
        longer.rect.setBottomRight(pBar->rect.bottomRight() + 2 * button);
        return QProxyStyle::subControlRect(control, &longer, part, widget).translated(-button) & pBar->rect;
    }

    /// The icons of standard buttons come from the desktop's theme. To search for them takes longer than all
    /// else that the start does, and they would look different on each desktop.
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* answer) const override {
        return hint == SH_DialogButtonBox_ButtonsHaveIcons
                   ? 0
                   : QProxyStyle::styleHint(hint, option, widget, answer);
    }

    QIcon standardIcon(StandardPixmap icon, const QStyleOption* option,
                       const QWidget* widget) const override {
        return icon == SP_CommandLink ? QIcon() : QProxyStyle::standardIcon(icon, option, widget);
    }

    /// Qt's own measure of an entry goes by the size that icons have elsewhere.
    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                           const QWidget* widget) const override {
        QSize contents = QProxyStyle::sizeFromContents(type, option, size, widget);
        const auto* pEntry = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
        if (type == CT_MenuItem && pEntry != nullptr && !pEntry->icon.isNull()) {
            contents.setHeight(std::max(contents.height(), MenuIconSize + 4));
            if (pEntry->text.isEmpty() && pEntry->menuItemType == QStyleOptionMenuItem::Normal) {
                contents.setWidth(MenuIconSize + 12);
            }
        }
        return contents;
    }

private:
    static constexpr int MenuIconSize = 32;
    static constexpr int ScrollBarWidth = 10;
    static constexpr int ScrollBarSliderMin = 24;
};

QPalette LightPalette() {
    const QColor page(242, 243, 245);
    const QColor ink(47, 52, 60);
    const QColor faded(96, 102, 112);
    QPalette palette(page);
    palette.setColor(QPalette::Window, page);
    palette.setColor(QPalette::Button, QColor(230, 233, 238));
    palette.setColor(QPalette::Base, Qt::white);
    palette.setColor(QPalette::AlternateBase, page);
    palette.setColor(QPalette::ToolTipBase, Qt::white);
    palette.setColor(QPalette::Highlight, QColor(31, 95, 208));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, QColor(31, 95, 208));
    for (const auto role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText}) {
        palette.setColor(role, ink);
        palette.setColor(QPalette::Disabled, role, faded);
    }
    return palette;
}

}  // namespace

void ApplyLook() {
    QApplication::setStyle(new LookStyle);  // the application owns it
    QApplication::setPalette(LightPalette());
    QToolTip::setPalette(LightPalette());  // a dark desktop gives these one of their own
    // Where no font is called so, numbers take the family of the names beside them: the nearest that the
    // system would find may be much wider than the place they are drawn in.
    if (!QFontDatabase().hasFamily("Comic")) {
        QFont::insertSubstitution("Comic", QFontInfo(QFont("Arial")).family());
    }
}
