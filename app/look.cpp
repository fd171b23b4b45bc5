#include "app/look.h"

#include <QApplication>
#include <QFontDatabase>
#include <QFontInfo>
#include <QMenu>
#include <QPalette>
#include <QProxyStyle>
#include <QStyleOptionMenuItem>

#include <algorithm>

namespace {

/// Fusion, with menus whose pictures are large enough to be told apart: many entries have nothing else.
class LookStyle : public QProxyStyle {
public:
    LookStyle() : QProxyStyle("fusion") {}

    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override {
        if (metric == PM_SmallIconSize && qobject_cast<const QMenu*>(widget) != nullptr) {
            return MenuIconSize;
        }
        return QProxyStyle::pixelMetric(metric, option, widget);
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
        }
        return contents;
    }

private:
    static constexpr int MenuIconSize = 32;
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
    // Where no font is called so, numbers take the family of the names beside them: the nearest that the
    // system would find may be much wider than the place they are drawn in.
    if (!QFontDatabase().hasFamily("Comic")) {
        QFont::insertSubstitution("Comic", QFontInfo(QFont("Arial")).family());
    }
}
