<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr" sourcelanguage="en">
<context>
    <name>QPlatformTheme</name>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
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
        <translation>&amp;Annuler</translation>
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
        <translation>Choisir une couleur</translation>
    </message>
    <message>
        <source>&amp;Basic colors</source>
        <translation>Couleurs de &amp;base</translation>
    </message>
    <message>
        <source>&amp;Custom colors</source>
        <translation>&amp;Couleurs personnalisées</translation>
    </message>
    <message>
        <source>&amp;Add to Custom Colors</source>
        <translation>A&amp;jouter aux couleurs personnalisées</translation>
    </message>
    <message>
        <source>&amp;Pick Screen Color</source>
        <translation>&amp;Prélever une couleur à l’écran</translation>
    </message>
    <message>
        <source>Hu&amp;e:</source>
        <translation>&amp;Teinte :</translation>
    </message>
    <message>
        <source>&amp;Sat:</source>
        <translation>&amp;Saturation :</translation>
    </message>
    <message>
        <source>&amp;Val:</source>
        <translation>&amp;Luminosité :</translation>
    </message>
    <message>
        <source>&amp;Red:</source>
        <translation>&amp;Rouge :</translation>
    </message>
    <message>
        <source>&amp;Green:</source>
        <translation>&amp;Vert :</translation>
    </message>
    <message>
        <source>Bl&amp;ue:</source>
        <translation>Ble&amp;u :</translation>
    </message>
    <message>
        <source>A&amp;lpha channel:</source>
        <translation>Ca&amp;nal alpha :</translation>
    </message>
    <message>
        <source>&amp;HTML:</source>
        <translation>&amp;HTML :</translation>
    </message>
    <message>
        <source>Cursor at %1, %2
Press ESC to cancel</source>
        <translation>Pointeur en %1, %2
Échap pour annuler</translation>
    </message>
</context>
<context>
    <name>QLineEdit</name>
    <message>
        <source>&amp;Undo</source>
        <translation>&amp;Annuler</translation>
    </message>
    <message>
        <source>&amp;Redo</source>
        <translation>&amp;Rétablir</translation>
    </message>
    <message>
        <source>Cu&amp;t</source>
        <translation>Co&amp;uper</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Copier</translation>
    </message>
    <message>
        <source>&amp;Paste</source>
        <translation>C&amp;oller</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Supprimer</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>Tout sélectionner</translation>
    </message>
</context>
<context>
    <name>QAbstractSpinBox</name>
    <message>
        <source>&amp;Select All</source>
        <translation>Tout &amp;sélectionner</translation>
    </message>
    <message>
        <source>&amp;Step up</source>
        <translation>Au&amp;gmenter</translation>
    </message>
    <message>
        <source>Step &amp;down</source>
        <translation>&amp;Diminuer</translation>
    </message>
</context>
<context>
    <name>QScrollBar</name>
    <message>
        <source>Scroll here</source>
        <translation>Défiler jusqu’ici</translation>
    </message>
    <message>
        <source>Top</source>
        <translation>Début</translation>
    </message>
    <message>
        <source>Bottom</source>
        <translation>Fin</translation>
    </message>
    <message>
        <source>Page up</source>
        <translation>Page précédente</translation>
    </message>
    <message>
        <source>Page down</source>
        <translation>Page suivante</translation>
    </message>
    <message>
        <source>Scroll up</source>
        <translation>Vers le haut</translation>
    </message>
    <message>
        <source>Scroll down</source>
        <translation>Vers le bas</translation>
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
        <translation>Maj</translation>
    </message>
    <message>
        <source>Del</source>
        <translation>Suppr</translation>
    </message>
</context>
</TS>
