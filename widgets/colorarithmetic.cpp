#include "widgets/colorarithmetic.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double Pi = 3.141592653589793;

/// Toward zero.
int Trunc(double value) {
    return static_cast<int>(value);
}

}  // namespace

RGBColor HSVColor::toRGB() const {
    const double c = saturation * value / 255.0;
    const double m = value - c;
    const double sixth = hue / 60.0;
    // The first sector and the fifth are one degree wider than the others: so it is on every remote there is.
    if (hue <= 60) {
        return {value, Trunc(sixth * c + m), Trunc(m)};
    }
    if (hue < 120) {
        return {Trunc(m - (sixth - 2.0) * c), value, Trunc(m)};
    }
    if (hue < 180) {
        return {Trunc(m), value, Trunc((sixth - 2.0) * c + m)};
    }
    if (hue < 240) {
        return {Trunc(m), Trunc(m - (sixth - 4.0) * c), value};
    }
    if (hue <= 300) {
        return {Trunc((sixth - 4.0) * c + m), Trunc(m), value};
    }
    return {value, Trunc(m), Trunc(m - (hue - 360.0) / 60.0 * c)};
}

HSVColor RGBColor::toHSV() const {
    const int nMax = std::max({red, green, blue});
    const int nMin = std::min({red, green, blue});
    const double delta = nMax - nMin;
    if (nMax == nMin) {
        return {0, 0, nMax};
    }
    double sixth = 0.0;
    if (red == nMax) {
        sixth = (green - blue) / delta;
    } else if (green == nMax) {
        sixth = (blue - red) / delta + 2.0;
    } else {
        sixth = (red - green) / delta + 4.0;
    }
    double degrees = sixth * 60.0;
    if (degrees < 0.0) {
        degrees += 360.0;
    }
    return {degrees == 360.0 ? 0 : Trunc(degrees), Trunc(255.0 * (delta / nMax)), nMax};
}

int Distance(const QPoint& a, const QPoint& b) {
    const int nX = a.x() - b.x();
    const int nY = a.y() - b.y();
    return Trunc(std::sqrt(static_cast<double>(nX * nX) + static_cast<double>(nY * nY)));
}

double AngleFromPoint(const QPoint& point, const QPoint& centre) {
    return std::atan2(centre.y() - point.y(), point.x() - centre.x());
}

HSVColor HSVFromPoint(const QPoint& point, const QPoint& centre, int nRadius) {
    const int nDegrees = Trunc(AngleFromPoint(point, centre) * 180.0 / Pi);
    const int nSaturation = Trunc(Distance(point, centre) * 255.0 / nRadius);
    return {nDegrees < 0 ? nDegrees + 360 : nDegrees, std::min(255, nSaturation), 255};
}

QPoint PtFromAngle(double angle, double scale, int nLength, const QPoint& centre) {
    const double radians = angle * Pi / 180.0;
    const double radius = nLength * scale / 255.0;
    return {centre.x() + Trunc(radius * std::cos(radians)), centre.y() - Trunc(radius * std::sin(radians))};
}

int GetWValue(unsigned char ucR, unsigned char ucG, unsigned char ucB, eWChanMode mode) {
    const HSVColor hsv = RGBColor{ucR, ucG, ucB}.toHSV();
    const float paleness = static_cast<float>((255 - hsv.saturation) * hsv.value) / 65025.0F;
    int nLevel = 0;
    switch (mode) {
        case wcmThreshold:
            nLevel = paleness < 0.5F ? 0 : static_cast<int>((paleness - 0.5F) * 255.0F * 2.0F);
            break;
        case wcmExponential:
            nLevel = Trunc(std::exp(6.0 * static_cast<double>(paleness) - 6.0) * 255.0);
            break;
        default:
            nLevel = static_cast<int>(paleness * 255.0F);
            break;
    }
    return std::clamp(nLevel, 0, 255);
}

int GetWValue(const QColor& color, eWChanMode mode) {
    return GetWValue(static_cast<unsigned char>(color.red()), static_cast<unsigned char>(color.green()),
                     static_cast<unsigned char>(color.blue()), mode);
}
