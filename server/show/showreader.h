#pragma once

#include "server/show/show.h"

#include <QByteArray>
#include <QString>

/// Reads the text of a show; `sPath` is what complaints call it. See Show::Load.
Show ReadShow(const QString& sPath, const QByteArray& text);
