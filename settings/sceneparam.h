#pragma once

#include <QColor>
#include <QString>

/// What the user made of one scene or program.
struct SceneParam {
    int id = 0;      ///< the server's id of it
    QString name;    ///< empty: no name of the user's own
    QString icon;    ///< resource path of a picture; empty: none
    QColor color{};  ///< invalid: none
};
