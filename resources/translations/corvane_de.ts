<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>CChannelSlider</name>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>Aus</translation>
    </message>
    <message>
        <source>Channel %1</source>
        <translation>Kanal %1</translation>
    </message>
</context>
<context>
    <name>CColorCircle</name>
    <message>
        <source>Color wheel</source>
        <translation>Farbkreis</translation>
    </message>
    <message>
        <source>Color on or off</source>
        <translation>Farbe ein/aus</translation>
    </message>
    <message>
        <source>Levels of the color</source>
        <translation>Farbregler (RGBW)</translation>
    </message>
    <message>
        <source>Commands, dimmer and speed</source>
        <translation>Befehle, Dimmer und Geschwindigkeit</translation>
    </message>
    <message>
        <source>red %1, green %2, blue %3</source>
        <translation>Rot %1, Grün %2, Blau %3</translation>
    </message>
</context>
<context>
    <name>CColorPicker</name>
    <message>
        <source>Dimmer</source>
        <translation>Dimmer</translation>
    </message>
    <message>
        <source>Speed</source>
        <translation>Geschwindigkeit</translation>
    </message>
    <message>
        <source>Red</source>
        <translation>Rot</translation>
    </message>
    <message>
        <source>Green</source>
        <translation>Grün</translation>
    </message>
    <message>
        <source>Blue</source>
        <translation>Blau</translation>
    </message>
    <message>
        <source>White</source>
        <translation>Weiß</translation>
    </message>
</context>
<context>
    <name>CCommandWnd</name>
    <message>
        <source>Commands</source>
        <translation>Befehle</translation>
    </message>
    <message>
        <source>White</source>
        <translation>Weiß</translation>
    </message>
    <message>
        <source>Black</source>
        <translation>Blackout</translation>
    </message>
    <message>
        <source>Next</source>
        <translation>Nächster Schritt</translation>
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
        <translation>Netzwerk</translation>
    </message>
    <message>
        <source>Auto</source>
        <translation>Auto</translation>
    </message>
    <message>
        <source>Localhost : 127.0.0.1</source>
        <translation>Dieser Rechner : 127.0.0.1</translation>
    </message>
    <message>
        <source>Select Network Interface :</source>
        <translation>Netzwerk wählen:</translation>
    </message>
</context>
<context>
    <name>CParamsCtrl</name>
    <message>
        <source>Scenes page in the menu</source>
        <translation>Seite „Szenen“ im Menü</translation>
    </message>
    <message>
        <source>Programs page in the menu</source>
        <translation>Seite „Programme“ im Menü</translation>
    </message>
    <message>
        <source>Color page in the menu</source>
        <translation>Seite „Farbe“ im Menü</translation>
    </message>
    <message>
        <source>Channels page in the menu</source>
        <translation>Seite „Kanäle“ im Menü</translation>
    </message>
    <message>
        <source>Own names of scenes and programs</source>
        <translation>Eigene Namen für Szenen und Programme</translation>
    </message>
    <message>
        <source>Own icons of scenes and programs</source>
        <translation>Eigene Symbole für Szenen und Programme</translation>
    </message>
    <message>
        <source>Own colors of scenes and programs</source>
        <translation>Eigene Farben für Szenen und Programme</translation>
    </message>
    <message>
        <source>Server</source>
        <translation>Server</translation>
    </message>
    <message>
        <source>Address of the server</source>
        <translation>Adresse des Servers</translation>
    </message>
    <message>
        <source>Address of the server, field %1 of 4</source>
        <translation>Adresse des Servers, Feld %1 von 4</translation>
    </message>
    <message>
        <source>Connect again</source>
        <translation>Neu verbinden</translation>
    </message>
    <message>
        <source>Password of this page</source>
        <translation>Passwort dieser Seite</translation>
    </message>
    <message>
        <source>Lock this page with the password</source>
        <translation>Diese Seite mit dem Passwort sperren</translation>
    </message>
    <message>
        <source>Lock</source>
        <translation>Sperre</translation>
    </message>
    <message>
        <source>Application for your phone or tablet</source>
        <translation>App für Telefon oder Tablet</translation>
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
        <translation>Seiten</translation>
    </message>
    <message>
        <source>Scenes</source>
        <translation>Szenen</translation>
    </message>
    <message>
        <source>Programs</source>
        <translation>Programme</translation>
    </message>
    <message>
        <source>Color</source>
        <translation>Farbe</translation>
    </message>
    <message>
        <source>Channels</source>
        <translation>Kanäle</translation>
    </message>
    <message>
        <source>Parameters</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Connect again</source>
        <translation>Neu verbinden</translation>
    </message>
</context>
<context>
    <name>CPopupTab</name>
    <message>
        <source>Pages</source>
        <translation>Seiten</translation>
    </message>
</context>
<context>
    <name>CSceneList</name>
    <message>
        <source>Icons|Scene|Program</source>
        <translation>Symbole|Szene|Programm</translation>
    </message>
    <message>
        <source>Lighting|Desk lamp|Laser|LED|Moving head|Spotlight|Scanner</source>
        <translation>Beleuchtung|Schreibtischlampe|Laser|LED|Moving Head|Scheinwerfer|Scanner</translation>
    </message>
    <message>
        <source>Outdoors|Fountain|Hot tub|Garden|Monument|Palm trees|Pool|Statue</source>
        <translation>Außen|Brunnen|Whirlpool|Garten|Denkmal|Palmen|Schwimmbad|Statue</translation>
    </message>
    <message>
        <source>Indoors|Balcony|Bar|Library|Sofa|Bedroom|Kitchen|Entrance|Stairs|Facade</source>
        <translation>Innen|Balkon|Bar|Bibliothek|Sofa|Schlafzimmer|Küche|Eingang|Treppe|Fassade</translation>
    </message>
    <message>
        <source>Window|Garage|Building|House|Ceiling|Bathroom|Living room|Table|Roof|Toilet</source>
        <translation>Fenster|Garage|Gebäude|Haus|Decke|Bad|Wohnzimmer|Tisch|Dach|Toilette</translation>
    </message>
    <message>
        <source>Music|Classical|Concert|Disco|Hip hop|Jazz|Music|Piano|Dance floor|RnB|Rock|Techno</source>
        <translation>Musik|Klassik|Konzert|Disco|Hip-Hop|Jazz|Musik|Klavier|Tanzfläche|RnB|Rock|Techno</translation>
    </message>
    <message>
        <source>Time of day|Afternoon|Stop|Start|Morning|Noon|Night|Evening</source>
        <translation>Tageszeit|Nachmittag|Stopp|Start|Morgen|Mittag|Nacht|Abend</translation>
    </message>
    <message>
        <source>Scenes</source>
        <translation>Szenen</translation>
    </message>
    <message>
        <source>Programs</source>
        <translation>Programme</translation>
    </message>
    <message>
        <source>Rename</source>
        <translation>Umbenennen</translation>
    </message>
    <message>
        <source>Name :</source>
        <translation>Name:</translation>
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
        <translation>Namensfarbe</translation>
    </message>
</context>
<context>
    <name>CSliderCtrl</name>
    <message>
        <source>%1 max</source>
        <translation>%1 Maximum</translation>
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
        <translation>Kanäle</translation>
    </message>
    <message>
        <source>Previous channels</source>
        <translation>Vorherige Kanäle</translation>
    </message>
    <message>
        <source>Previous universe</source>
        <translation>Vorheriges Universum</translation>
    </message>
    <message>
        <source>Universe %1</source>
        <translation>Universum %1</translation>
    </message>
    <message>
        <source>Next universe</source>
        <translation>Nächstes Universum</translation>
    </message>
    <message>
        <source>Next channels</source>
        <translation>Nächste Kanäle</translation>
    </message>
    <message>
        <source>Channel %1</source>
        <translation>Kanal %1</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>Aus</translation>
    </message>
</context>
<context>
    <name>Corvane</name>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>The server does not answer</source>
        <translation>Der Server antwortet nicht</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>Number of users max exceeded</source>
        <translation>Zu viele Benutzer am Server</translation>
    </message>
    <message>
        <source>Cannot connect to the Network Interface</source>
        <translation>Keine Verbindung über dieses Netzwerk möglich</translation>
    </message>
</context>
<context>
    <name>QObject</name>
    <message>
        <source>ERROR</source>
        <translation>FEHLER</translation>
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
        <translation>Server - </translation>
    </message>
</context>
</TS>
