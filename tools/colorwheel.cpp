// Draws the colour wheel at build time, with the arithmetic that picks from it: the pixel under the pointer
// is the colour that a click sends.
//
//   colorwheel FILE.png SCALE

#include "widgets/colorarithmetic.h"

#include <QImage>

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace {

constexpr int Radius = 190;

QImage DrawWheel(int nScale) {
    const QPoint centre(Radius, Radius);
    QImage wheel(2 * Radius * nScale, 2 * Radius * nScale, QImage::Format_ARGB32);
    for (int y = 0; y < wheel.height(); ++y) {
        for (int x = 0; x < wheel.width(); ++x) {
            // A click falls on whole logical pixels: at a higher density the sharper rim is all there is to
            // gain.
            const QPoint point(x / nScale, y / nScale);
            const RGBColor color = HSVFromPoint(point, centre, Radius).toRGB();
            const double reach = Radius * nScale - std::hypot(x - Radius * nScale, y - Radius * nScale);
            const int nAlpha = static_cast<int>(255.0 * std::clamp(reach, 0.0, 1.0));
            wheel.setPixel(x, y, qRgba(color.red, color.green, color.blue, nAlpha));
        }
    }
    return wheel;
}

}  // namespace

int main(int argc, char* argv[]) {
    const int nScale = argc == 3 ? QString(argv[2]).toInt() : 0;
    if (nScale < 1 || nScale > 8) {
        std::fputs("usage: colorwheel FILE.png SCALE (1 to 8)\n", stderr);
        return 2;
    }
    if (!DrawWheel(nScale).save(argv[1], "PNG")) {
        std::fprintf(stderr, "colorwheel: cannot write %s\n", argv[1]);
        return 1;
    }
    return 0;
}
