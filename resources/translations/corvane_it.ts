<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="it" sourcelanguage="en">
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
        <translation>Canale %1</translation>
    </message>
</context>
<context>
    <name>CColorCircle</name>
    <message>
        <source>Color wheel</source>
        <translation>Ruota dei colori</translation>
    </message>
    <message>
        <source>Color on or off</source>
        <translation>Attiva o disattiva il colore</translation>
    </message>
    <message>
        <source>Levels of the color</source>
        <translation>Livelli del colore</translation>
    </message>
    <message>
        <source>Commands, dimmer and speed</source>
        <translation>Comandi, dimmer e velocità</translation>
    </message>
    <message>
        <source>red %1, green %2, blue %3</source>
        <translation>rosso %1, verde %2, blu %3</translation>
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
        <translation>Velocità</translation>
    </message>
    <message>
        <source>Red</source>
        <translation>Rosso</translation>
    </message>
    <message>
        <source>Green</source>
        <translation>Verde</translation>
    </message>
    <message>
        <source>Blue</source>
        <translation>Blu</translation>
    </message>
    <message>
        <source>White</source>
        <translation>Bianco</translation>
    </message>
</context>
<context>
    <name>CCommandWnd</name>
    <message>
        <source>Commands</source>
        <translation>Comandi</translation>
    </message>
    <message>
        <source>White</source>
        <translation>Bianco</translation>
    </message>
    <message>
        <source>Black</source>
        <translation>Blackout</translation>
    </message>
    <message>
        <source>Next</source>
        <translation>Successivo</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>Pausa</translation>
    </message>
</context>
<context>
    <name>CGetNiDlg</name>
    <message>
        <source>Network Interface</source>
        <translation>Rete</translation>
    </message>
    <message>
        <source>Auto</source>
        <translation>Auto</translation>
    </message>
    <message>
        <source>Localhost : 127.0.0.1</source>
        <translation>Questo computer : 127.0.0.1</translation>
    </message>
    <message>
        <source>Select Network Interface :</source>
        <translation>Scegli la rete:</translation>
    </message>
</context>
<context>
    <name>CParamsCtrl</name>
    <message>
        <source>Scenes page in the menu</source>
        <translation>Pagina delle scene nel menu</translation>
    </message>
    <message>
        <source>Programs page in the menu</source>
        <translation>Pagina dei programmi nel menu</translation>
    </message>
    <message>
        <source>Color page in the menu</source>
        <translation>Pagina del colore nel menu</translation>
    </message>
    <message>
        <source>Channels page in the menu</source>
        <translation>Pagina dei canali nel menu</translation>
    </message>
    <message>
        <source>Own names of scenes and programs</source>
        <translation>Nomi personalizzati di scene e programmi</translation>
    </message>
    <message>
        <source>Own icons of scenes and programs</source>
        <translation>Icone personalizzate di scene e programmi</translation>
    </message>
    <message>
        <source>Own colors of scenes and programs</source>
        <translation>Colori personalizzati di scene e programmi</translation>
    </message>
    <message>
        <source>Server</source>
        <translation>Server</translation>
    </message>
    <message>
        <source>Address of the server</source>
        <translation>Indirizzo del server</translation>
    </message>
    <message>
        <source>Address of the server, field %1 of 4</source>
        <translation>Indirizzo del server, campo %1 di 4</translation>
    </message>
    <message>
        <source>Connect again</source>
        <translation>Riconnetti</translation>
    </message>
    <message>
        <source>Password of this page</source>
        <translation>Password di questa pagina</translation>
    </message>
    <message>
        <source>Lock this page with the password</source>
        <translation>Blocca questa pagina con la password</translation>
    </message>
    <message>
        <source>Lock</source>
        <translation>Blocco</translation>
    </message>
    <message>
        <source>Application for your phone or tablet</source>
        <translation>App per telefono o tablet</translation>
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
        <translation>Pagine</translation>
    </message>
    <message>
        <source>Scenes</source>
        <translation>Scene</translation>
    </message>
    <message>
        <source>Programs</source>
        <translation>Programmi</translation>
    </message>
    <message>
        <source>Color</source>
        <translation>Colore</translation>
    </message>
    <message>
        <source>Channels</source>
        <translation>Canali</translation>
    </message>
    <message>
        <source>Parameters</source>
        <translation>Impostazioni</translation>
    </message>
    <message>
        <source>Connect again</source>
        <translation>Riconnetti</translation>
    </message>
</context>
<context>
    <name>CPopupTab</name>
    <message>
        <source>Pages</source>
        <translation>Pagine</translation>
    </message>
</context>
<context>
    <name>CSceneList</name>
    <message>
        <source>Icons|Scene|Program</source>
        <translation>Icone|Scena|Programma</translation>
    </message>
    <message>
        <source>Lighting|Desk lamp|Laser|LED|Moving head|Spotlight|Scanner</source>
        <translation>Illuminazione|Lampada da tavolo|Laser|LED|Testa mobile|Proiettore|Scanner</translation>
    </message>
    <message>
        <source>Outdoors|Fountain|Hot tub|Garden|Monument|Palm trees|Pool|Statue</source>
        <translation>Esterno|Fontana|Vasca idromassaggio|Giardino|Monumento|Palme|Piscina|Statua</translation>
    </message>
    <message>
        <source>Indoors|Balcony|Bar|Library|Sofa|Bedroom|Kitchen|Entrance|Stairs|Facade</source>
        <translation>Interno|Balcone|Bar|Biblioteca|Divano|Camera da letto|Cucina|Ingresso|Scale|Facciata</translation>
    </message>
    <message>
        <source>Window|Garage|Building|House|Ceiling|Bathroom|Living room|Table|Roof|Toilet</source>
        <translation>Finestra|Garage|Palazzo|Casa|Soffitto|Bagno|Soggiorno|Tavolo|Tetto|Toilette</translation>
    </message>
    <message>
        <source>Music|Classical|Concert|Disco|Hip hop|Jazz|Music|Piano|Dance floor|RnB|Rock|Techno</source>
        <translation>Musica|Classica|Concerto|Disco|Hip hop|Jazz|Musica|Pianoforte|Pista da ballo|RnB|Rock|Techno</translation>
    </message>
    <message>
        <source>Time of day|Afternoon|Stop|Start|Morning|Noon|Night|Evening</source>
        <translation>Momento del giorno|Pomeriggio|Arresto|Inizio|Mattina|Mezzogiorno|Notte|Sera</translation>
    </message>
    <message>
        <source>Scenes</source>
        <translation>Scene</translation>
    </message>
    <message>
        <source>Programs</source>
        <translation>Programmi</translation>
    </message>
    <message>
        <source>Rename</source>
        <translation>Rinomina</translation>
    </message>
    <message>
        <source>Name :</source>
        <translation>Nome:</translation>
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
        <translation>Colore del nome</translation>
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
        <translation>Canali</translation>
    </message>
    <message>
        <source>Previous channels</source>
        <translation>Canali precedenti</translation>
    </message>
    <message>
        <source>Previous universe</source>
        <translation>Universo precedente</translation>
    </message>
    <message>
        <source>Universe %1</source>
        <translation>Universo %1</translation>
    </message>
    <message>
        <source>Next universe</source>
        <translation>Universo successivo</translation>
    </message>
    <message>
        <source>Next channels</source>
        <translation>Canali successivi</translation>
    </message>
    <message>
        <source>Channel %1</source>
        <translation>Canale %1</translation>
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
        <translation>Chiudi</translation>
    </message>
    <message>
        <source>The server does not answer</source>
        <translation>Il server non risponde</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Errore</translation>
    </message>
    <message>
        <source>Number of users max exceeded</source>
        <translation>Numero massimo di utenti raggiunto</translation>
    </message>
    <message>
        <source>Cannot connect to the Network Interface</source>
        <translation>Impossibile connettersi tramite questa rete</translation>
    </message>
</context>
<context>
    <name>QObject</name>
    <message>
        <source>ERROR</source>
        <translation>ERRORE</translation>
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
