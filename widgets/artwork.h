#pragma once

#include <QBitmap>
#include <QPixmap>
#include <QString>

#include <initializer_list>
#include <vector>

/// The compiled-in pictures, under ":/Corvane/Images/". Each exists at 1x and 2x; the density follows the
/// sharpest screen, between the two by scaling the larger. A path that leads to no picture gives a null one.
namespace artwork {

/// Makes the collection, which holds more than pictures, readable by its paths.
void OpenCollection();

/// A picture of the resource collection, decoded once and shared from then on. A path outside of it, as
/// settings may hold one, gives none and is not opened.
QPixmap Picture(const QString& sPath);

/// The path of a picture by its name alone, such as "SwitchOn".
QString PathOf(const QString& sName);

/// The picture of a name, or those of several.
QPixmap Named(const QString& sName);
std::vector<QPixmap> All(std::initializer_list<const char*> names);

/// The opaque pixels of a picture, in logical pixels whatever the density: a window's shape.
QBitmap Shape(const QString& sPath);

/// Size of a picture on screen, in logical pixels.
QSize LogicalSize(const QPixmap& picture);

}  // namespace artwork
