#pragma once

#include "app/corvane.h"
#include "app/cpopupmenu.h"
#include "app/cpopuptab.h"
#include "device/messages.h"
#include "tests/files.h"
#include "tests/peer.h"
#include "tests/support.h"
#include "widgets/cchannelslider.h"
#include "widgets/ccolorcircle.h"
#include "widgets/ccolorpicker.h"
#include "widgets/ccommandwnd.h"
#include "widgets/channelsgrid.h"
#include "widgets/cparamsctrl.h"
#include "widgets/csliderctrl.h"
#include "widgets/serverlist.h"

/// A new window on the screen, on the interface whose entry begins so, with this text in its settings file.
inline std::unique_ptr<Corvane> OpenRemote(const QByteArray& settings = {},
                                           const QString& sInterface = "Auto") {
    WriteFile(CIniFile().path, settings);
    ChooseInterface(sInterface);
    auto pWindow = std::make_unique<Corvane>();
    pWindow->show();
    return pWindow;
}
