#include "widgets/iconcatalogue.h"

#include "widgets/artwork.h"

namespace catalogue {

namespace {

QStringList Paths(const QString& sFolder, const QStringList& names) {
    QStringList paths;
    for (const QString& sName : names) {
        paths.append(artwork::PathOf(sFolder + sName));
    }
    return paths;
}

}  // namespace

const std::array<QStringList, 6>& IconLists() {
    static const std::array<QStringList, 6> lists{
        Paths("", {"SceneIcon", "ProgramIcon"}),
        Paths("Icons/Eclairage/", {"LampeBureau", "Laser", "LED", "Lyre", "Projecteur", "Scanner"}),
        Paths("Icons/Exterieur/",
              {"Fontaine", "Jacuzzi", "Jardin", "Monument", "Palmiers", "Piscine", "Statue"}),
        Paths("Icons/Interieur/", {"Balcon", "Bar", "Bibliotheque", "Canape", "Chambre", "Cuisine", "Entree",
                                   "Escalier", "Facade", "Fenetre", "Garage", "Immeuble", "Maison", "Plafond",
                                   "SalleDeBain", "Salon", "Table", "Toiture", "WC"}),
        Paths("Icons/Music/", {"Classic", "Concert", "Disco", "HipHop", "Jazz", "Music", "Piano",
                               "PisteDanse", "Rnb", "Rock", "Techno"}),
        Paths("Icons/Periode/", {"ApresMidi", "Arret", "Debut", "Matin", "Midi", "Nuit", "Soir"})};
    return lists;
}

}  // namespace catalogue
