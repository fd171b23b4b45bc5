#pragma once

class QColor;
class QPainter;
class QRect;

/// Draws a line of one pixel round an area; on the right and below it lies just outside. Much cheaper than a
/// pen, for which Qt paints upright lines pixel by pixel.
void PaintOutline(QPainter& painter, const QRect& area, const QColor& color);

/// An area together with its outline.
QRect WithOutline(const QRect& area);
