<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr" sourcelanguage="en">
<context>
    <name>CChannelSlider</name>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>Off</translation>
    </message>
    <message>
        <source>Channel %1</source>
        <translation>Canal %1</translation>
    </message>
</context>
<context>
    <name>CColorCircle</name>
    <message>
        <source>Color wheel</source>
        <translation>Roue chromatique</translation>
    </message>
    <message>
        <source>Color on or off</source>
        <translation>Activer ou couper la couleur</translation>
    </message>
    <message>
        <source>Levels of the color</source>
        <translation>Niveaux de la couleur</translation>
    </message>
    <message>
        <source>Commands, dimmer and speed</source>
        <translation>Commandes, intensité et vitesse</translation>
    </message>
    <message>
        <source>red %1, green %2, blue %3</source>
        <translation>rouge %1, vert %2, bleu %3</translation>
    </message>
</context>
<context>
    <name>CColorPicker</name>
    <message>
        <source>Dimmer</source>
        <translation>Intensité</translation>
    </message>
    <message>
        <source>Speed</source>
        <translation>Vitesse</translation>
    </message>
    <message>
        <source>Red</source>
        <translation>Rouge</translation>
    </message>
    <message>
        <source>Green</source>
        <translation>Vert</translation>
    </message>
    <message>
        <source>Blue</source>
        <translation>Bleu</translation>
    </message>
    <message>
        <source>White</source>
        <translation>Blanc</translation>
    </message>
</context>
<context>
    <name>CCommandWnd</name>
    <message>
        <source>Commands</source>
        <translation>Commandes</translation>
    </message>
    <message>
        <source>White</source>
        <translation>Blanc</translation>
    </message>
    <message>
        <source>Black</source>
        <translation>Noir</translation>
    </message>
    <message>
        <source>Next</source>
        <translation>Suivant</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>Pause</translation>
    </message>
</context>
<context>
    <name>CGetNiDlg</name>
    <message>
        <source>Network Interface</source>
        <translation>Réseau</translation>
    </message>
    <message>
        <source>Auto</source>
        <translation>Auto</translation>
    </message>
    <message>
        <source>Localhost : 127.0.0.1</source>
        <translation>Cet ordinateur : 127.0.0.1</translation>
    </message>
    <message>
        <source>Select Network Interface :</source>
        <translation>Choisir le réseau :</translation>
    </message>
</context>
<context>
    <name>CParamsCtrl</name>
    <message>
        <source>Scenes page in the menu</source>
        <translation>Page des scènes dans le menu</translation>
    </message>
    <message>
        <source>Programs page in the menu</source>
        <translation>Page des programmes dans le menu</translation>
    </message>
    <message>
        <source>Color page in the menu</source>
        <translation>Page de la couleur dans le menu</translation>
    </message>
    <message>
        <source>Channels page in the menu</source>
        <translation>Page des canaux dans le menu</translation>
    </message>
    <message>
        <source>Own names of scenes and programs</source>
        <translation>Noms personnalisés des scènes et programmes</translation>
    </message>
    <message>
        <source>Own icons of scenes and programs</source>
        <translation>Icônes personnalisées des scènes et programmes</translation>
    </message>
    <message>
        <source>Own colors of scenes and programs</source>
        <translation>Couleurs personnalisées des scènes et programmes</translation>
    </message>
    <message>
        <source>Server</source>
        <translation>Serveur</translation>
    </message>
    <message>
        <source>Address of the server</source>
        <translation>Adresse du serveur</translation>
    </message>
    <message>
        <source>Address of the server, field %1 of 4</source>
        <translation>Adresse du serveur, champ %1 sur 4</translation>
    </message>
    <message>
        <source>Connect again</source>
        <translation>Se reconnecter</translation>
    </message>
    <message>
        <source>Password of this page</source>
        <translation>Mot de passe de cette page</translation>
    </message>
    <message>
        <source>Lock this page with the password</source>
        <translation>Verrouiller cette page avec le mot de passe</translation>
    </message>
    <message>
        <source>Lock</source>
        <translation>Verrou</translation>
    </message>
    <message>
        <source>Application for your phone or tablet</source>
        <translation>Application pour téléphone ou tablette</translation>
    </message>
    <message>
        <source>Google play</source>
        <translation>Google play</translation>
    </message>
    <message>
        <source>iTunes</source>
        <translation>iTunes</translation>
    </message>
</context>
<context>
    <name>CPopupMenu</name>
    <message>
        <source>Pages</source>
        <translation>Pages</translation>
    </message>
    <message>
        <source>Scenes</source>
        <translation>Scènes</translation>
    </message>
    <message>
        <source>Programs</source>
        <translation>Programmes</translation>
    </message>
    <message>
        <source>Color</source>
        <translation>Couleur</translation>
    </message>
    <message>
        <source>Channels</source>
        <translation>Canaux</translation>
    </message>
    <message>
        <source>Parameters</source>
        <translation>Paramètres</translation>
    </message>
    <message>
        <source>Connect again</source>
        <translation>Se reconnecter</translation>
    </message>
</context>
<context>
    <name>CPopupTab</name>
    <message>
        <source>Pages</source>
        <translation>Pages</translation>
    </message>
</context>
<context>
    <name>CSceneList</name>
    <message>
        <source>Icons|Scene|Program</source>
        <translation>Icônes|Scène|Programme</translation>
    </message>
    <message>
        <source>Lighting|Desk lamp|Laser|LED|Moving head|Spotlight|Scanner</source>
        <translation>Éclairage|Lampe de bureau|Laser|LED|Lyre|Projecteur|Scanner</translation>
    </message>
    <message>
        <source>Outdoors|Fountain|Hot tub|Garden|Monument|Palm trees|Pool|Statue</source>
        <translation>Extérieur|Fontaine|Jacuzzi|Jardin|Monument|Palmiers|Piscine|Statue</translation>
    </message>
    <message>
        <source>Indoors|Balcony|Bar|Library|Sofa|Bedroom|Kitchen|Entrance|Stairs|Facade</source>
        <translation>Intérieur|Balcon|Bar|Bibliothèque|Canapé|Chambre|Cuisine|Entrée|Escalier|Façade</translation>
    </message>
    <message>
        <source>Window|Garage|Building|House|Ceiling|Bathroom|Living room|Table|Roof|Toilet</source>
        <translation>Fenêtre|Garage|Immeuble|Maison|Plafond|Salle de bain|Salon|Table|Toiture|WC</translation>
    </message>
    <message>
        <source>Music|Classical|Concert|Disco|Hip hop|Jazz|Music|Piano|Dance floor|RnB|Rock|Techno</source>
        <translation>Musique|Classique|Concert|Disco|Hip-hop|Jazz|Musique|Piano|Piste de danse|RnB|Rock|Techno</translation>
    </message>
    <message>
        <source>Time of day|Afternoon|Stop|Start|Morning|Noon|Night|Evening</source>
        <translation>Moment de la journée|Après-midi|Arrêt|Début|Matin|Midi|Nuit|Soir</translation>
    </message>
    <message>
        <source>Scenes</source>
        <translation>Scènes</translation>
    </message>
    <message>
        <source>Programs</source>
        <translation>Programmes</translation>
    </message>
    <message>
        <source>Rename</source>
        <translation>Renommer</translation>
    </message>
    <message>
        <source>Name :</source>
        <translation>Nom :</translation>
    </message>
    <message>
        <source>#%1</source>
        <translation>#%1</translation>
    </message>
    <message>
        <source>#%1.%2</source>
        <translation>#%1.%2</translation>
    </message>
    <message>
        <source>Color</source>
        <translation>Couleur du nom</translation>
    </message>
</context>
<context>
    <name>CSliderCtrl</name>
    <message>
        <source>%1 max</source>
        <translation>%1 max</translation>
    </message>
    <message>
        <source>%1 50%</source>
        <translation>%1 50%</translation>
    </message>
    <message>
        <source>%1%</source>
        <translation>%1%</translation>
    </message>
    <message>
        <source>50%</source>
        <translation>50%</translation>
    </message>
</context>
<context>
    <name>ChannelsGrid</name>
    <message>
        <source>Channels</source>
        <translation>Canaux</translation>
    </message>
    <message>
        <source>Previous channels</source>
        <translation>Canaux précédents</translation>
    </message>
    <message>
        <source>Previous universe</source>
        <translation>Univers précédent</translation>
    </message>
    <message>
        <source>Universe %1</source>
        <translation>Univers %1</translation>
    </message>
    <message>
        <source>Next universe</source>
        <translation>Univers suivant</translation>
    </message>
    <message>
        <source>Next channels</source>
        <translation>Canaux suivants</translation>
    </message>
    <message>
        <source>Channel %1</source>
        <translation>Canal %1</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>Off</translation>
    </message>
</context>
<context>
    <name>Corvane</name>
    <message>
        <source>Close</source>
        <translation>Fermer</translation>
    </message>
    <message>
        <source>The server does not answer</source>
        <translation>Le serveur ne répond pas</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Erreur</translation>
    </message>
    <message>
        <source>Number of users max exceeded</source>
        <translation>Nombre maximal d’utilisateurs atteint</translation>
    </message>
    <message>
        <source>Cannot connect to the Network Interface</source>
        <translation>Connexion impossible sur ce réseau</translation>
    </message>
</context>
<context>
    <name>QObject</name>
    <message>
        <source>ERROR</source>
        <translation>ERREUR</translation>
    </message>
    <message>
        <source>OEM</source>
        <translation>OEM</translation>
    </message>
</context>
<context>
    <name>ServerList</name>
    <message>
        <source>Server - </source>
        <translation>Serveur - </translation>
    </message>
</context>
</TS>
