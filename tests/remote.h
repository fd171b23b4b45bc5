#pragma once

#include "app/corvane.h"
#include "app/cpopupmenu.h"
#include "app/cpopuptab.h"
#include "device/messages.h"
#include "tests/peer.h"
#include "tests/support.h"
#include "widgets/cchannelslider.h"
#include "widgets/ccolorcircle.h"
#include "widgets/ccolorpicker.h"
#include "widgets/ccommandwnd.h"
#include "widgets/channelsgrid.h"
#include "widgets/cparamsctrl.h"
#include "widgets/cscenelist.h"
#include "widgets/csliderctrl.h"

#include <QtTest>

#include <memory>

/// A new window, on the interface whose entry begins so, with this text in its settings file.
inline std::unique_ptr<Corvane> OpenRemote(const QByteArray& settings = {},
                                           const QString& sInterface = "Auto") {
    QFile file(CIniFile().path);
    if (!file.open(QIODevice::WriteOnly) || file.write(settings) != settings.size()) {
        qFatal("cannot write %s", qPrintable(file.fileName()));
    }
    file.close();
    ChooseInterface(sInterface);
    return std::make_unique<Corvane>();
}
