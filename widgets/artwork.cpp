#include "widgets/artwork.h"

#include <QFile>
#include <QGuiApplication>
#include <QHash>

#include <algorithm>

/// The collection lies in a static library, which the linker would otherwise leave out.
static void InitCollection() {
    Q_INIT_RESOURCE(corvane);
}

namespace artwork {

void OpenCollection() {
    InitCollection();
}

namespace {

QPixmap Load(const QString& sPath) {
    OpenCollection();
    const qreal ratio = qGuiApp->devicePixelRatio();
    QString sSharp = sPath;
    sSharp.replace(QLatin1String(".png"), QLatin1String("@2x.png"));
    if (ratio <= 1.0 || !QFile::exists(sSharp)) {
        return QPixmap(sPath);
    }
    QImage sharp(sSharp);
    if (ratio < sharp.devicePixelRatio()) {
        // Painting would pick pixels each time.
        const QSizeF size = QSizeF(sharp.size()) * ratio / sharp.devicePixelRatio();
        sharp = sharp.scaled(size.toSize(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        sharp.setDevicePixelRatio(ratio);
    }
    return QPixmap::fromImage(sharp);
}

}  // namespace

QPixmap Picture(const QString& sPath) {
    static QHash<QString, QPixmap> pictures;
    if (sPath.startsWith(":/") && !pictures.contains(sPath)) {
        pictures.insert(sPath, Load(sPath));
    }
    return pictures.value(sPath);
}

QString PathOf(const QString& sName) {
    return ":/Corvane/Images/" + sName + ".png";
}

QPixmap Named(const QString& sName) {
    return Picture(PathOf(sName));
}

std::vector<QPixmap> All(std::initializer_list<const char*> names) {
    std::vector<QPixmap> pictures(names.size());
    std::transform(names.begin(), names.end(), pictures.begin(), Named);
    return pictures;
}

QBitmap Shape(const QString& sPath) {
    const QPixmap picture = Picture(sPath);
    return picture.devicePixelRatio() > 1.0 ? QPixmap(sPath).mask() : picture.mask();
}

QSize LogicalSize(const QPixmap& picture) {
    return (QSizeF(picture.size()) / picture.devicePixelRatio()).toSize();
}

}  // namespace artwork
