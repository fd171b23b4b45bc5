#include "app/branding.h"

#include "widgets/artwork.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

bool Branding::Load(int nType) {
    artwork::OpenCollection();
    return Load(QString(":/Corvane/Branding/%1.json").arg(nType), nType);
}

bool Branding::Load(const QString& sPath, int nType) {
    QFile file(sPath);
    if (!file.open(QIODevice::ReadOnly)) {
        return false;
    }
    const QJsonObject profile = QJsonDocument::fromJson(file.readAll()).object();
    Branding loaded;
    loaded.type = profile["type"].toInt();
    loaded.name = profile["name"].toString();
    loaded.icon = profile["icon"].toString();
    loaded.androidStore = profile["androidStore"].toString();
    loaded.iosStore = profile["iosStore"].toString();
    if (loaded.type != nType || loaded.name.isEmpty() || loaded.icon.isEmpty()) {
        return false;
    }
    *this = loaded;
    return true;
}
