#pragma once

#include <QGuiApplication>
#include <QMouseEvent>

/// What Qt 5 and Qt 6 call by different names.
namespace qtversions {

/// To be called before the application is made: drawn and laid out at the density of the display. Qt 6 does
/// so by itself.
inline void EnableHighDensity() {
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
#endif
    // Else letters alone would grow on displays between one and two, and be cut.
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
}

/// Where on the screen the pointer was at this event.
inline QPoint GlobalPosition(const QMouseEvent& event) {
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    return event.globalPos();
#else
    return event.globalPosition().toPoint();
#endif
}

}  // namespace qtversions
