#pragma once

#include <QColor>
#include <QPoint>

struct HSVColor;

/// A colour by its levels, each 0 to 255.
struct RGBColor {
    int red = 0;
    int green = 0;
    int blue = 0;

    /// The same by hue; a grey has hue 0 and saturation 0.
    HSVColor toHSV() const;
};

/// A colour by its place on the wheel.
///
/// Conversions truncate and never round: that decides which hue a pixel of the wheel stands for, and so what
/// the lights do.
struct HSVColor {
    int hue = 0;         ///< degrees, 0 to 360, counter-clockwise: 0 red, 120 green, 240 blue
    int saturation = 0;  ///< 0 grey to 255
    int value = 0;       ///< 0 to 255: the largest of red, green and blue

    RGBColor toRGB() const;
};

/// How the level of a white lamp follows from a colour's paleness. Any value but the last two is linear.
enum eWChanMode : int { wcmLinear = 0, wcmLinearToo = 1, wcmThreshold = 2, wcmExponential = 3 };

/// Distance of two points in pixels, truncated.
int Distance(const QPoint& a, const QPoint& b);

/// Angle in radians, -pi to pi, counter-clockwise from the right, at which a point is seen from the centre; 0
/// for the centre itself.
double AngleFromPoint(const QPoint& point, const QPoint& centre);

/// What a point of a wheel stands for, beyond its rim fully saturated and everywhere at full value.
HSVColor HSVFromPoint(const QPoint& point, const QPoint& centre, int nRadius);

/// The point at an angle in degrees and at scale / 255 of a length from the centre.
QPoint PtFromAngle(double angle, double scale, int nLength, const QPoint& centre);

/// The level, 0 to 255, of a white lamp beside the coloured ones; 0 for a pure colour, 255 for white.
int GetWValue(unsigned char ucR, unsigned char ucG, unsigned char ucB, eWChanMode mode);
int GetWValue(const QColor& color, eWChanMode mode);
