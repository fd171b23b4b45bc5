#include "widgets/serverlist.h"

#include <QWheelEvent>

bool ServerList::Add(const QString& sSerial, const QString& sAddress) {
    if (count() == MaxServers || findData(sAddress) >= 0) {
        return false;
    }
    QString sLabel = sSerial.left(MaxLabel);
    if (sSerial.isEmpty()) {
        sLabel = sAddress;
    } else if (sSerial == "0000") {
        sLabel = tr("Server - ") + sAddress;
    }
    int iPlace = 0;
    while (iPlace < count() && itemText(iPlace) <= sLabel) {
        ++iPlace;
    }
    insertItem(iPlace, sLabel, sAddress);
    return true;
}

void ServerList::wheelEvent(QWheelEvent* event) {
    event->ignore();
}
