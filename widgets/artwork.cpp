#include "widgets/artwork.h"

#include <QFile>
#include <QGuiApplication>
#include <QHash>

/// The collection lies in a static library, which the linker would otherwise leave out.
static void InitCollection() {
    Q_INIT_RESOURCE(corvane);
}

namespace artwork {

void OpenCollection() {
    static const bool bOpen = (InitCollection(), true);
    Q_UNUSED(bOpen)
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

QHash<QString, QPixmap>& Pictures() {
    static QHash<QString, QPixmap> pictures;
    return pictures;
}

}  // namespace

QPixmap Picture(const QString& sPath) {
    if (!sPath.startsWith(":/")) {
        return {};
    }
    const auto known = Pictures().constFind(sPath);
    return known != Pictures().constEnd() ? *known : *Pictures().insert(sPath, Load(sPath));
}

QIcon Icon(const QString& sPath) {
    return QIcon(Picture(sPath));
}

QBitmap Shape(const QString& sPath) {
    const QPixmap picture = Picture(sPath);
    return picture.devicePixelRatio() > 1.0 ? QPixmap(sPath).mask() : picture.mask();
}

QSize LogicalSize(const QPixmap& picture) {
    return (QSizeF(picture.size()) / picture.devicePixelRatio()).toSize();
}

}  // namespace artwork
