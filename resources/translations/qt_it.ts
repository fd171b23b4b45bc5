<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="it" sourcelanguage="en">
<context>
    <name>QPlatformTheme</name>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annulla</translation>
    </message>
</context>
<context>
    <name>QGnomeTheme</name>
    <message>
        <source>&amp;OK</source>
        <translation>&amp;OK</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>&amp;Annulla</translation>
    </message>
</context>
<context>
    <name>QDialogButtonBox</name>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
</context>
<context>
    <name>QColorDialog</name>
    <message>
        <source>Select Color</source>
        <translation>Scegli un colore</translation>
    </message>
    <message>
        <source>&amp;Basic colors</source>
        <translation>Colori di &amp;base</translation>
    </message>
    <message>
        <source>&amp;Custom colors</source>
        <translation>&amp;Colori personalizzati</translation>
    </message>
    <message>
        <source>&amp;Add to Custom Colors</source>
        <translation>A&amp;ggiungi ai colori personalizzati</translation>
    </message>
    <message>
        <source>&amp;Pick Screen Color</source>
        <translation>&amp;Preleva un colore dallo schermo</translation>
    </message>
    <message>
        <source>Hu&amp;e:</source>
        <translation>&amp;Tonalità:</translation>
    </message>
    <message>
        <source>&amp;Sat:</source>
        <translation>&amp;Saturazione:</translation>
    </message>
    <message>
        <source>&amp;Val:</source>
        <translation>&amp;Luminosità:</translation>
    </message>
    <message>
        <source>&amp;Red:</source>
        <translation>&amp;Rosso:</translation>
    </message>
    <message>
        <source>&amp;Green:</source>
        <translation>&amp;Verde:</translation>
    </message>
    <message>
        <source>Bl&amp;ue:</source>
        <translation>Bl&amp;u:</translation>
    </message>
    <message>
        <source>A&amp;lpha channel:</source>
        <translation>Canale al&amp;fa:</translation>
    </message>
    <message>
        <source>&amp;HTML:</source>
        <translation>&amp;HTML:</translation>
    </message>
    <message>
        <source>Cursor at %1, %2
Press ESC to cancel</source>
        <translation>Puntatore a %1, %2
ESC per annullare</translation>
    </message>
</context>
<context>
    <name>QLineEdit</name>
    <message>
        <source>&amp;Undo</source>
        <translation>&amp;Annulla</translation>
    </message>
    <message>
        <source>&amp;Redo</source>
        <translation>&amp;Ripeti</translation>
    </message>
    <message>
        <source>Cu&amp;t</source>
        <translation>&amp;Taglia</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Copia</translation>
    </message>
    <message>
        <source>&amp;Paste</source>
        <translation>&amp;Incolla</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Elimina</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>Seleziona tutto</translation>
    </message>
</context>
<context>
    <name>QAbstractSpinBox</name>
    <message>
        <source>&amp;Select All</source>
        <translation>&amp;Seleziona tutto</translation>
    </message>
    <message>
        <source>&amp;Step up</source>
        <translation>Au&amp;menta</translation>
    </message>
    <message>
        <source>Step &amp;down</source>
        <translation>&amp;Diminuisci</translation>
    </message>
</context>
<context>
    <name>QScrollBar</name>
    <message>
        <source>Scroll here</source>
        <translation>Scorri fin qui</translation>
    </message>
    <message>
        <source>Top</source>
        <translation>Inizio</translation>
    </message>
    <message>
        <source>Bottom</source>
        <translation>Fine</translation>
    </message>
    <message>
        <source>Page up</source>
        <translation>Pagina precedente</translation>
    </message>
    <message>
        <source>Page down</source>
        <translation>Pagina successiva</translation>
    </message>
    <message>
        <source>Scroll up</source>
        <translation>Verso l’alto</translation>
    </message>
    <message>
        <source>Scroll down</source>
        <translation>Verso il basso</translation>
    </message>
</context>
<context>
    <name>QShortcut</name>
    <message>
        <source>Ctrl</source>
        <translation>Ctrl</translation>
    </message>
    <message>
        <source>Shift</source>
        <translation>Maiusc</translation>
    </message>
    <message>
        <source>Del</source>
        <translation>Canc</translation>
    </message>
</context>
</TS>
