<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es" sourcelanguage="en">
<context>
    <name>CChannelSlider</name>
    <message>
        <source>OK</source>
        <translation>Aceptar</translation>
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
        <translation>Círculo cromático</translation>
    </message>
    <message>
        <source>Color on or off</source>
        <translation>Activar o desactivar el color</translation>
    </message>
    <message>
        <source>Levels of the color</source>
        <translation>Niveles del color</translation>
    </message>
    <message>
        <source>Commands, dimmer and speed</source>
        <translation>Comandos, dimmer y velocidad</translation>
    </message>
    <message>
        <source>red %1, green %2, blue %3</source>
        <translation>rojo %1, verde %2, azul %3</translation>
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
        <translation>Velocidad</translation>
    </message>
    <message>
        <source>Red</source>
        <translation>Rojo</translation>
    </message>
    <message>
        <source>Green</source>
        <translation>Verde</translation>
    </message>
    <message>
        <source>Blue</source>
        <translation>Azul</translation>
    </message>
    <message>
        <source>White</source>
        <translation>Blanco</translation>
    </message>
</context>
<context>
    <name>CCommandWnd</name>
    <message>
        <source>Commands</source>
        <translation>Comandos</translation>
    </message>
    <message>
        <source>White</source>
        <translation>Blanco</translation>
    </message>
    <message>
        <source>Black</source>
        <translation>Blackout</translation>
    </message>
    <message>
        <source>Next</source>
        <translation>Siguiente</translation>
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
        <translation>Interfaz de red</translation>
    </message>
    <message>
        <source>Auto</source>
        <translation>Auto</translation>
    </message>
    <message>
        <source>Localhost : 127.0.0.1</source>
        <translation>Este equipo : 127.0.0.1</translation>
    </message>
    <message>
        <source>Select Network Interface :</source>
        <translation>Elegir la interfaz de red:</translation>
    </message>
</context>
<context>
    <name>CParamsCtrl</name>
    <message>
        <source>Scenes page in the menu</source>
        <translation>Página de escenas en el menú</translation>
    </message>
    <message>
        <source>Programs page in the menu</source>
        <translation>Página de programas en el menú</translation>
    </message>
    <message>
        <source>Color page in the menu</source>
        <translation>Página de color en el menú</translation>
    </message>
    <message>
        <source>Channels page in the menu</source>
        <translation>Página de canales en el menú</translation>
    </message>
    <message>
        <source>Own names of scenes and programs</source>
        <translation>Nombres personalizados de escenas y programas</translation>
    </message>
    <message>
        <source>Own icons of scenes and programs</source>
        <translation>Iconos personalizados de escenas y programas</translation>
    </message>
    <message>
        <source>Own colors of scenes and programs</source>
        <translation>Colores personalizados de escenas y programas</translation>
    </message>
    <message>
        <source>Server</source>
        <translation>Servidor</translation>
    </message>
    <message>
        <source>Address of the server</source>
        <translation>Dirección del servidor</translation>
    </message>
    <message>
        <source>Address of the server, field %1 of 4</source>
        <translation>Dirección del servidor, campo %1 de 4</translation>
    </message>
    <message>
        <source>Connect again</source>
        <translation>Reconectar</translation>
    </message>
    <message>
        <source>Password of this page</source>
        <translation>Contraseña de esta página</translation>
    </message>
    <message>
        <source>Lock this page with the password</source>
        <translation>Bloquear esta página con la contraseña</translation>
    </message>
    <message>
        <source>Lock</source>
        <translation>Bloqueo</translation>
    </message>
    <message>
        <source>Application for your phone or tablet</source>
        <translation>Aplicación para teléfono o tableta</translation>
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
        <translation>Páginas</translation>
    </message>
    <message>
        <source>Scenes</source>
        <translation>Escenas</translation>
    </message>
    <message>
        <source>Programs</source>
        <translation>Programas</translation>
    </message>
    <message>
        <source>Color</source>
        <translation>Color</translation>
    </message>
    <message>
        <source>Channels</source>
        <translation>Canales</translation>
    </message>
    <message>
        <source>Parameters</source>
        <translation>Ajustes</translation>
    </message>
    <message>
        <source>Connect again</source>
        <translation>Reconectar</translation>
    </message>
</context>
<context>
    <name>CPopupTab</name>
    <message>
        <source>Pages</source>
        <translation>Páginas</translation>
    </message>
</context>
<context>
    <name>CSceneList</name>
    <message>
        <source>Icons|Scene|Program</source>
        <translation>Iconos|Escena|Programa</translation>
    </message>
    <message>
        <source>Lighting|Desk lamp|Laser|LED|Moving head|Spotlight|Scanner</source>
        <translation>Iluminación|Lámpara de mesa|Láser|LED|Cabeza móvil|Foco|Escáner</translation>
    </message>
    <message>
        <source>Outdoors|Fountain|Hot tub|Garden|Monument|Palm trees|Pool|Statue</source>
        <translation>Exterior|Fuente|Jacuzzi|Jardín|Monumento|Palmeras|Piscina|Estatua</translation>
    </message>
    <message>
        <source>Indoors|Balcony|Bar|Library|Sofa|Bedroom|Kitchen|Entrance|Stairs|Facade</source>
        <translation>Interior|Balcón|Bar|Biblioteca|Sofá|Dormitorio|Cocina|Entrada|Escalera|Fachada</translation>
    </message>
    <message>
        <source>Window|Garage|Building|House|Ceiling|Bathroom|Living room|Table|Roof|Toilet</source>
        <translation>Ventana|Garaje|Edificio|Casa|Techo|Baño|Salón|Mesa|Tejado|Aseo</translation>
    </message>
    <message>
        <source>Music|Classical|Concert|Disco|Hip hop|Jazz|Music|Piano|Dance floor|RnB|Rock|Techno</source>
        <translation>Música|Clásica|Concierto|Disco|Hip hop|Jazz|Música|Piano|Pista de baile|RnB|Rock|Techno</translation>
    </message>
    <message>
        <source>Time of day|Afternoon|Stop|Start|Morning|Noon|Night|Evening</source>
        <translation>Hora del día|Tarde|Parada|Inicio|Mañana|Mediodía|Noche|Anochecer</translation>
    </message>
    <message>
        <source>Scenes</source>
        <translation>Escenas</translation>
    </message>
    <message>
        <source>Programs</source>
        <translation>Programas</translation>
    </message>
    <message>
        <source>Rename</source>
        <translation>Cambiar nombre</translation>
    </message>
    <message>
        <source>Name :</source>
        <translation>Nombre:</translation>
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
        <translation>Color del nombre</translation>
    </message>
</context>
<context>
    <name>CSliderCtrl</name>
    <message>
        <source>%1 max</source>
        <translation>%1 máx.</translation>
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
        <translation>Canales</translation>
    </message>
    <message>
        <source>Previous channels</source>
        <translation>Canales anteriores</translation>
    </message>
    <message>
        <source>Previous universe</source>
        <translation>Universo anterior</translation>
    </message>
    <message>
        <source>Universe %1</source>
        <translation>Universo %1</translation>
    </message>
    <message>
        <source>Next universe</source>
        <translation>Universo siguiente</translation>
    </message>
    <message>
        <source>Next channels</source>
        <translation>Canales siguientes</translation>
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
        <translation>Cerrar</translation>
    </message>
    <message>
        <source>The server does not answer</source>
        <translation>El servidor no responde</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Error</translation>
    </message>
    <message>
        <source>Number of users max exceeded</source>
        <translation>Número máximo de usuarios alcanzado</translation>
    </message>
    <message>
        <source>Cannot connect to the Network Interface</source>
        <translation>No se puede conectar a través de esta red</translation>
    </message>
</context>
<context>
    <name>QObject</name>
    <message>
        <source>ERROR</source>
        <translation>ERROR</translation>
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
        <translation>Servidor - </translation>
    </message>
</context>
</TS>
