#pragma once

#include <QString>

/// Under whose name the program appears. One profile for each application type lies in the resources.
class Branding {
public:
    /// The type this program is built for.
    static constexpr int ApplicationType = 4;
    /// The type whose users get no links to the mobile stores.
    static constexpr int TypeWithoutStores = 5;

    /// Loads the compiled-in profile of a type. A missing or broken one, or one of another type, gives false
    /// and leaves the profile as it was.
    bool Load(int nType);
    /// The same from any file.
    bool Load(const QString& sPath, int nType);

    int type = 0;
    QString name;          ///< of the application
    QString icon;          ///< resource path
    QString androidStore;  ///< web address of the mobile application
    QString iosStore;
};
