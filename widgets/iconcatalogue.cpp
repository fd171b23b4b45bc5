#include "widgets/iconcatalogue.h"

namespace catalogue {

namespace {

QStringList Paths(const QString& sFolder, const QStringList& names) {
    QStringList paths;
    for (const QString& sName : names) {
        paths.append(":/Corvane/Images/" + sFolder + sName + ".png");
    }
    return paths;
}

}  // namespace

const QStringList& DefaultIconList() {
    static const QStringList list = Paths("", {"SceneIcon", "ProgramIcon"});
    return list;
}

const QStringList& IconList1() {
    static const QStringList list =
        Paths("Icons/Eclairage/", {"LampeBureau", "Laser", "LED", "Lyre", "Projecteur", "Scanner"});
    return list;
}

const QStringList& IconList2() {
    static const QStringList list = Paths(
        "Icons/Exterieur/", {"Fontaine", "Jacuzzi", "Jardin", "Monument", "Palmiers", "Piscine", "Statue"});
    return list;
}

const QStringList& IconList3() {
    static const QStringList list =
        Paths("Icons/Interieur/", {"Balcon", "Bar", "Bibliotheque", "Canape", "Chambre", "Cuisine", "Entree",
                                   "Escalier", "Facade", "Fenetre", "Garage", "Immeuble", "Maison", "Plafond",
                                   "SalleDeBain", "Salon", "Table", "Toiture", "WC"});
    return list;
}

const QStringList& IconList4() {
    static const QStringList list =
        Paths("Icons/Music/", {"Classic", "Concert", "Disco", "HipHop", "Jazz", "Music", "Piano",
                               "PisteDanse", "Rnb", "Rock", "Techno"});
    return list;
}

const QStringList& IconList5() {
    static const QStringList list =
        Paths("Icons/Periode/", {"ApresMidi", "Arret", "Debut", "Matin", "Midi", "Nuit", "Soir"});
    return list;
}

}  // namespace catalogue
