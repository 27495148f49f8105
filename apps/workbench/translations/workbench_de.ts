<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name></name>
    <message id="qelworkbench-above-blank">
        <source></source>
        <translation>%1 über Leerwert</translation>
    </message>
    <message id="qelworkbench-action-find">
        <source></source>
        <translation>Im Verlauf suchen</translation>
    </message>
    <message id="qelworkbench-action-folder">
        <source></source>
        <translation>Ordner für Ergebnisse wählen …</translation>
    </message>
    <message id="qelworkbench-action-quit">
        <source></source>
        <translation>Beenden</translation>
    </message>
    <message id="qelworkbench-all-wells">
        <source></source>
        <translation>Alle Kavitäten</translation>
    </message>
    <message id="qelworkbench-blank-tip">
        <source></source>
        <translation>Zeigt die Werte abzüglich des mittleren Leerwerts. Gespeichert bleibt, was gemessen wurde.</translation>
    </message>
    <message id="qelworkbench-cancel">
        <source></source>
        <translation>Abbrechen</translation>
    </message>
    <message id="qelworkbench-delivered-kept">
        <source></source>
        <translation>Was das Gerät geliefert hat, steht im Ordner als „%1“.</translation>
    </message>
    <message id="qelworkbench-cancelled">
        <source></source>
        <translation>Abgebrochen. Was zu Ende gemessen war, ist gespeichert.</translation>
    </message>
    <message id="qelworkbench-cannot-read">
        <source></source>
        <translation>Die Datei „%1“ lässt sich nicht lesen: %2.</translation>
    </message>
    <message id="qelworkbench-cannot-write">
        <source></source>
        <translation>Die Datei „%1“ lässt sich nicht schreiben: %2.</translation>
    </message>
    <message id="qelworkbench-close-anyway">
        <source></source>
        <translation>Schließen</translation>
    </message>
    <message id="qelworkbench-close-busy">
        <source></source>
        <translation>Es wird gerade gemessen. Wenn Sie das Fenster schließen, endet die Messung; was fertig gemessen ist, bleibt gespeichert.</translation>
    </message>
    <message id="qelworkbench-close-stay">
        <source></source>
        <translation>Weiter messen</translation>
    </message>
    <message id="qelworkbench-close-unkept">
        <source></source>
        <translation>%1 fertige Messungen konnten nicht gespeichert werden. Wenn Sie das Fenster schließen, gehen sie verloren.</translation>
    </message>
    <message id="qelworkbench-column-column">
        <source></source>
        <translation>Spalte</translation>
    </message>
    <message id="qelworkbench-column-content">
        <source></source>
        <translation>Inhalt</translation>
    </message>
    <message id="qelworkbench-column-file">
        <source></source>
        <translation>Datei</translation>
    </message>
    <message id="qelworkbench-column-instrument">
        <source></source>
        <translation>Gerät</translation>
    </message>
    <message id="qelworkbench-column-library">
        <source></source>
        <translation>Bibliothek</translation>
    </message>
    <message id="qelworkbench-column-maximum">
        <source></source>
        <translation>Grenze des Detektors</translation>
    </message>
    <message id="qelworkbench-column-measurement">
        <source></source>
        <translation>Messung</translation>
    </message>
    <message id="qelworkbench-column-name">
        <source></source>
        <translation>Name</translation>
    </message>
    <message id="qelworkbench-column-note">
        <source></source>
        <translation>Notiz</translation>
    </message>
    <message id="qelworkbench-column-read">
        <source></source>
        <translation>Lesung</translation>
    </message>
    <message id="qelworkbench-column-remark">
        <source></source>
        <translation>Bemerkung</translation>
    </message>
    <message id="qelworkbench-column-row">
        <source></source>
        <translation>Zeile</translation>
    </message>
    <message id="qelworkbench-column-run">
        <source></source>
        <translation>Durchgang</translation>
    </message>
    <message id="qelworkbench-column-serial">
        <source></source>
        <translation>Seriennummer</translation>
    </message>
    <message id="qelworkbench-column-settings">
        <source></source>
        <translation>Einstellungen</translation>
    </message>
    <message id="qelworkbench-column-temperature">
        <source></source>
        <translation>Temperatur, °C</translation>
    </message>
    <message id="qelworkbench-column-time">
        <source></source>
        <translation>Zeit</translation>
    </message>
    <message id="qelworkbench-column-unit">
        <source></source>
        <translation>Einheit</translation>
    </message>
    <message id="qelworkbench-column-value">
        <source></source>
        <translation>Wert</translation>
    </message>
    <message id="qelworkbench-column-well">
        <source></source>
        <translation>Kavität</translation>
    </message>
    <message id="qelworkbench-compare-difference">
        <source></source>
        <translation>B minus A. %1. %2</translation>
    </message>
    <message id="qelworkbench-compare-nothing">
        <source></source>
        <translation>Diese beiden lassen sich nicht vergleichen: Sie haben keine Lesung einer Platte gemeinsam.</translation>
    </message>
    <message id="qelworkbench-compare-plate">
        <source></source>
        <translation>Platte %1</translation>
    </message>
    <message id="qelworkbench-compare-run">
        <source></source>
        <translation>Durchgang %1</translation>
    </message>
    <message id="qelworkbench-compare-sizes">
        <source></source>
        <translation>Zwischen einer Platte mit %1 und einer mit %2 Kavitäten gibt es keine Differenz.</translation>
    </message>
    <message id="qelworkbench-compare-units">
        <source></source>
        <translation>Zwischen Werten in %1 und in %2 gibt es keine Differenz.</translation>
    </message>
    <message id="qelworkbench-confirm">
        <source></source>
        <translation>Erledigt, weiter</translation>
    </message>
    <message id="qelworkbench-content-blank">
        <source></source>
        <translation>Leerwert</translation>
    </message>
    <message id="qelworkbench-content-control">
        <source></source>
        <translation>Kontrolle</translation>
    </message>
    <message id="qelworkbench-content-sample">
        <source></source>
        <translation>Probe</translation>
    </message>
    <message id="qelworkbench-content-standard">
        <source></source>
        <translation>Standard</translation>
    </message>
    <message id="qelworkbench-copied">
        <source></source>
        <translation>Kopiert. Fügen Sie die Platte in eine Tabelle ein.</translation>
    </message>
    <message id="qelworkbench-copy">
        <source></source>
        <translation>Kopieren</translation>
    </message>
    <message id="qelworkbench-copy-tip">
        <source></source>
        <translation>Kopiert die Platte als Tabelle für eine Tabellenkalkulation</translation>
    </message>
    <message id="qelworkbench-curve-time">
        <source></source>
        <translation>Zeit, s</translation>
    </message>
    <message id="qelworkbench-days">
        <source></source>
        <translation>Wann</translation>
    </message>
    <message id="qelworkbench-days-all">
        <source></source>
        <translation>Jederzeit</translation>
    </message>
    <message id="qelworkbench-days-month">
        <source></source>
        <translation>Letzte 31 Tage</translation>
    </message>
    <message id="qelworkbench-days-today">
        <source></source>
        <translation>Heute</translation>
    </message>
    <message id="qelworkbench-days-week">
        <source></source>
        <translation>Letzte 7 Tage</translation>
    </message>
    <message id="qelworkbench-days-yesterday">
        <source></source>
        <translation>Gestern</translation>
    </message>
    <message id="qelworkbench-details">
        <source></source>
        <translation>Misst mit Plattenlesegeräten.</translation>
    </message>
    <message id="qelworkbench-done">
        <source></source>
        <translation>Erledigt.</translation>
    </message>
    <message id="qelworkbench-drivers">
        <source></source>
        <translation>Treiber auf diesem Computer</translation>
    </message>
    <message id="qelworkbench-drivers-loaded">
        <source></source>
        <translation>Geladene Treiber: %1</translation>
    </message>
    <message id="qelworkbench-export">
        <source></source>
        <translation>Exportieren</translation>
    </message>
    <message id="qelworkbench-export-json">
        <source></source>
        <translation>JSON für Programme …</translation>
    </message>
    <message id="qelworkbench-export-plate">
        <source></source>
        <translation>Platte als CSV …</translation>
    </message>
    <message id="qelworkbench-export-png">
        <source></source>
        <translation>Bild als PNG …</translation>
    </message>
    <message id="qelworkbench-export-svg">
        <source></source>
        <translation>Bild als SVG …</translation>
    </message>
    <message id="qelworkbench-export-tidy">
        <source></source>
        <translation>Eine Zeile je Kavität als CSV …</translation>
    </message>
    <message id="qelworkbench-export-xlsx">
        <source></source>
        <translation>Tabelle (Excel) …</translation>
    </message>
    <message id="qelworkbench-exported">
        <source></source>
        <translation>Gespeichert als %1</translation>
    </message>
    <message id="qelworkbench-fact-driver">
        <source></source>
        <translation>Treiber: %1</translation>
    </message>
    <message id="qelworkbench-fact-firmware">
        <source></source>
        <translation>Firmware: %1</translation>
    </message>
    <message id="qelworkbench-fact-location">
        <source></source>
        <translation>Ort: %1 (%2)</translation>
    </message>
    <message id="qelworkbench-fact-name">
        <source></source>
        <translation>Name: %1</translation>
    </message>
    <message id="qelworkbench-fact-plugin">
        <source></source>
        <translation>Plugin: %1, Version %2, von %3</translation>
    </message>
    <message id="qelworkbench-fact-serial">
        <source></source>
        <translation>Seriennummer: %1</translation>
    </message>
    <message id="qelworkbench-fact-state">
        <source></source>
        <translation>Zustand: %1</translation>
    </message>
    <message id="qelworkbench-feature">
        <source></source>
        <translation>Messung:</translation>
    </message>
    <message id="qelworkbench-feature-absorbance-measurement">
        <source></source>
        <translation>Absorption</translation>
    </message>
    <message id="qelworkbench-feature-ambient-temperature">
        <source></source>
        <translation>Temperatur im Gerät</translation>
    </message>
    <message id="qelworkbench-feature-calibration">
        <source></source>
        <translation>Kalibrieren</translation>
    </message>
    <message id="qelworkbench-feature-firmware-info">
        <source></source>
        <translation>Firmware-Version</translation>
    </message>
    <message id="qelworkbench-feature-firmware-update">
        <source></source>
        <translation>Firmware aktualisieren</translation>
    </message>
    <message id="qelworkbench-feature-led-bar-effect">
        <source></source>
        <translation>Lichteffekt</translation>
    </message>
    <message id="qelworkbench-feature-luminescence-measurement">
        <source></source>
        <translation>Lumineszenz</translation>
    </message>
    <message id="qelworkbench-feature-orientation">
        <source></source>
        <translation>Lage</translation>
    </message>
    <message id="qelworkbench-feature-parts-aligned">
        <source></source>
        <translation>Sind die Teile ausgerichtet?</translation>
    </message>
    <message id="qelworkbench-feature-plate-detection">
        <source></source>
        <translation>Ist eine Platte eingelegt?</translation>
    </message>
    <message id="qelworkbench-feature-reference-number">
        <source></source>
        <translation>Referenznummer</translation>
    </message>
    <message id="qelworkbench-folder">
        <source></source>
        <translation>Ordner …</translation>
    </message>
    <message id="qelworkbench-held-up">
        <source></source>
        <translation>Der Treiber „%1“ hält das Fenster %2 s lang auf, wenn er nach Geräten sucht</translation>
    </message>
    <message id="qelworkbench-history-hint">
        <source></source>
        <translation>Wählen Sie eine Messung, um sie zu sehen, oder mit Strg zwei, um sie zu vergleichen.</translation>
    </message>
    <message id="qelworkbench-inspect">
        <source></source>
        <translation>Erneut prüfen</translation>
    </message>
    <message id="qelworkbench-instrument">
        <source></source>
        <translation>Gerät</translation>
    </message>
    <message id="qelworkbench-instrument-tip">
        <source></source>
        <translation>%1
Seriennummer: %2
%3</translation>
    </message>
    <message id="qelworkbench-instruments">
        <source></source>
        <translation>Geräte</translation>
    </message>
    <message id="qelworkbench-keep-again">
        <source></source>
        <translation>Erneut versuchen</translation>
    </message>
    <message id="qelworkbench-kept">
        <source></source>
        <translation>Gemessen und gespeichert in %1</translation>
    </message>
    <message id="qelworkbench-layout">
        <source></source>
        <translation>Belegung</translation>
    </message>
    <message id="qelworkbench-layout-concentration">
        <source></source>
        <translation>Konzentration:</translation>
    </message>
    <message id="qelworkbench-layout-content">
        <source></source>
        <translation>Die Belegung nennt „%2“ in Kavität %1; bekannt sind sample, blank, control, standard und standard mit einer Zahl.</translation>
    </message>
    <message id="qelworkbench-layout-csv">
        <source></source>
        <translation>Aus einer CSV-Datei …</translation>
    </message>
    <message id="qelworkbench-layout-last">
        <source></source>
        <translation>Wie beim letzten Mal</translation>
    </message>
    <message id="qelworkbench-layout-nothing">
        <source></source>
        <translation>Nichts</translation>
    </message>
    <message id="qelworkbench-layout-painting">
        <source></source>
        <translation>Ziehen setzt: %1 – beenden</translation>
    </message>
    <message id="qelworkbench-layout-painting-tip">
        <source></source>
        <translation>Die Kavitäten, über die Sie ziehen, enthalten das. Auch Escape beendet es.</translation>
    </message>
    <message id="qelworkbench-layout-shape">
        <source></source>
        <translation>Zeile %1 der Belegung passt nicht zu einer Platte mit %2 × %3 Kavitäten: Erwartet wird ein Gitter mit nummerierten Spalten und Buchstaben für die Zeilen.</translation>
    </message>
    <message id="qelworkbench-layout-standard">
        <source></source>
        <translation>Standard …</translation>
    </message>
    <message id="qelworkbench-legend-not-measured">
        <source></source>
        <translation>⊗ %1 nicht gemessen</translation>
    </message>
    <message id="qelworkbench-legend-saturated">
        <source></source>
        <translation>▲ %1 übersteuert</translation>
    </message>
    <message id="qelworkbench-log">
        <source></source>
        <translation>Meldungen</translation>
    </message>
    <message id="qelworkbench-menu-file">
        <source></source>
        <translation>&amp;Datei</translation>
    </message>
    <message id="qelworkbench-menu-language">
        <source></source>
        <translation>&amp;Sprache</translation>
    </message>
    <message id="qelworkbench-menu-view">
        <source></source>
        <translation>&amp;Ansicht</translation>
    </message>
    <message id="qelworkbench-no">
        <source></source>
        <translation>Nein</translation>
    </message>
    <message id="qelworkbench-no-blank-tip">
        <source></source>
        <translation>Benennen Sie zuerst Leerwerte („Belegung“); ein übersteuerter Leerwert hat keinen Wert.</translation>
    </message>
    <message id="qelworkbench-no-device">
        <source></source>
        <translation>Der Treiber „%1“ gibt keinen Zugang zu diesem Gerät.</translation>
    </message>
    <message id="qelworkbench-no-drivers-in">
        <source></source>
        <translation>%1: keine Treiber</translation>
    </message>
    <message id="qelworkbench-no-folder">
        <source></source>
        <translation>Der Ordner „%1“ lässt sich nicht anlegen.</translation>
    </message>
    <message id="qelworkbench-no-instrument">
        <source></source>
        <translation>Kein Gerät ausgewählt</translation>
    </message>
    <message id="qelworkbench-no-instruments">
        <source></source>
        <translation>Keine Geräte gefunden. Schließen Sie eines an und schalten Sie es ein; es erscheint hier von selbst.</translation>
    </message>
    <message id="qelworkbench-no-result">
        <source></source>
        <translation>Legen Sie eine Platte ein und drücken Sie „Start“.
Das Ergebnis erscheint hier.</translation>
    </message>
    <message id="qelworkbench-no-run">
        <source></source>
        <translation>Die Datei „%1“ enthält keine Messung. %2</translation>
    </message>
    <message id="qelworkbench-no-spreadsheet">
        <source></source>
        <translation>Die Tabelle lässt sich nicht erstellen: %1.</translation>
    </message>
    <message id="qelworkbench-not-measured">
        <source></source>
        <translation>nicht gemessen</translation>
    </message>
    <message id="qelworkbench-not-usable">
        <source></source>
        <translation>nicht verwendbar</translation>
    </message>
    <message id="qelworkbench-open-again">
        <source></source>
        <translation>Verbinden</translation>
    </message>
    <message id="qelworkbench-option-folder">
        <source></source>
        <translation>Ergebnisse in DIR aufbewahren.</translation>
    </message>
    <message id="qelworkbench-option-help">
        <source></source>
        <translation>Diese Hilfe zeigen.</translation>
    </message>
    <message id="qelworkbench-option-lang">
        <source></source>
        <translation>Deutsch oder Englisch sprechen.</translation>
    </message>
    <message id="qelworkbench-option-plugins">
        <source></source>
        <translation>Auch in DIR nach Treibern suchen.</translation>
    </message>
    <message id="qelworkbench-option-scenario">
        <source></source>
        <translation>Die simulierten Geräte öffnen, die FILE beschreibt, zum Üben.</translation>
    </message>
    <message id="qelworkbench-option-version">
        <source></source>
        <translation>Die Version zeigen.</translation>
    </message>
    <message id="qelworkbench-other-folder">
        <source></source>
        <translation>Anderer Ordner …</translation>
    </message>
    <message id="qelworkbench-pick-file">
        <source></source>
        <translation>Wählen …</translation>
    </message>
    <message id="qelworkbench-pick-wells">
        <source></source>
        <translation>Auswählen …</translation>
    </message>
    <message id="qelworkbench-pick-wells-hint">
        <source></source>
        <translation>Ziehen Sie mit der Maus über die Kavitäten oder nehmen Sie Pfeil- und Leertaste.</translation>
    </message>
    <message id="qelworkbench-preset">
        <source></source>
        <translation>Vorlage:</translation>
    </message>
    <message id="qelworkbench-preset-name">
        <source></source>
        <translation>Name der Vorlage:</translation>
    </message>
    <message id="qelworkbench-preset-none">
        <source></source>
        <translation>Keine</translation>
    </message>
    <message id="qelworkbench-preset-save">
        <source></source>
        <translation>Merken …</translation>
    </message>
    <message id="qelworkbench-progress">
        <source></source>
        <translation>Fortschritt</translation>
    </message>
    <message id="qelworkbench-read">
        <source></source>
        <translation>Lesung:</translation>
    </message>
    <message id="qelworkbench-read-firmware">
        <source></source>
        <translation>Firmware auslesen</translation>
    </message>
    <message id="qelworkbench-refuse">
        <source></source>
        <translation>Das geht nicht</translation>
    </message>
    <message id="qelworkbench-report">
        <source></source>
        <translation>Bericht für den Support speichern …</translation>
    </message>
    <message id="qelworkbench-run-count">
        <source></source>
        <translation>%1 Messungen</translation>
    </message>
    <message id="qelworkbench-run-name">
        <source></source>
        <translation>Name (darf leer bleiben):</translation>
    </message>
    <message id="qelworkbench-run-name-hint">
        <source></source>
        <translation>Platte 17, zweiter Versuch</translation>
    </message>
    <message id="qelworkbench-run-of">
        <source></source>
        <translation>Durchgang %1 von %2:</translation>
    </message>
    <message id="qelworkbench-saturated">
        <source></source>
        <translation>übersteuert: so viel oder mehr</translation>
    </message>
    <message id="qelworkbench-search">
        <source></source>
        <translation>Suchen: Name, Notiz, Gerät, Datum</translation>
    </message>
    <message id="qelworkbench-searching">
        <source></source>
        <translation>Sucht Geräte: fragt die Treiber %1 …</translation>
    </message>
    <message id="qelworkbench-series">
        <source></source>
        <translation>Wiederholen</translation>
    </message>
    <message id="qelworkbench-series-count">
        <source></source>
        <translation>Durchgänge:</translation>
    </message>
    <message id="qelworkbench-series-interval">
        <source></source>
        <translation>Einer alle:</translation>
    </message>
    <message id="qelworkbench-series-of">
        <source></source>
        <translation>%1, %2 Durchgänge</translation>
    </message>
    <message id="qelworkbench-setting-accelerationX">
        <source></source>
        <translation>Nach rechts, m/s²</translation>
    </message>
    <message id="qelworkbench-setting-accelerationY">
        <source></source>
        <translation>Nach hinten, m/s²</translation>
    </message>
    <message id="qelworkbench-setting-accelerationZ">
        <source></source>
        <translation>Nach oben, m/s²</translation>
    </message>
    <message id="qelworkbench-setting-bootloader">
        <source></source>
        <translation>Bootloader</translation>
    </message>
    <message id="qelworkbench-setting-calibratedAt">
        <source></source>
        <translation>Kalibriert</translation>
    </message>
    <message id="qelworkbench-setting-color">
        <source></source>
        <translation>Farbe</translation>
    </message>
    <message id="qelworkbench-setting-date">
        <source></source>
        <translation>Datum</translation>
    </message>
    <message id="qelworkbench-setting-effect">
        <source></source>
        <translation>Effekt</translation>
    </message>
    <message id="qelworkbench-setting-image">
        <source></source>
        <translation>Firmware-Datei</translation>
    </message>
    <message id="qelworkbench-setting-integrationTime">
        <source></source>
        <translation>Zeit je Kavität</translation>
    </message>
    <message id="qelworkbench-setting-mode">
        <source></source>
        <translation>Ablauf</translation>
    </message>
    <message id="qelworkbench-setting-rapidMode">
        <source></source>
        <translation>Schnellmodus (ungenauer)</translation>
    </message>
    <message id="qelworkbench-setting-selectedWells">
        <source></source>
        <translation>Kavitäten</translation>
    </message>
    <message id="qelworkbench-setting-state">
        <source></source>
        <translation>Stelle</translation>
    </message>
    <message id="qelworkbench-setting-topSide">
        <source></source>
        <translation>Obere Seite</translation>
    </message>
    <message id="qelworkbench-setting-version">
        <source></source>
        <translation>Version</translation>
    </message>
    <message id="qelworkbench-setting-wavelengths">
        <source></source>
        <translation>Wellenlängen (keine: alle)</translation>
    </message>
    <message id="qelworkbench-sheet-layout">
        <source></source>
        <translation>Belegung</translation>
    </message>
    <message id="qelworkbench-sheet-metadata">
        <source></source>
        <translation>Zu den Messungen</translation>
    </message>
    <message id="qelworkbench-sheet-plates">
        <source></source>
        <translation>Platten</translation>
    </message>
    <message id="qelworkbench-sheet-values">
        <source></source>
        <translation>Werte</translation>
    </message>
    <message id="qelworkbench-start">
        <source></source>
        <translation>Start</translation>
    </message>
    <message id="qelworkbench-state-closed">
        <source></source>
        <translation>Nicht verbunden</translation>
    </message>
    <message id="qelworkbench-state-gone">
        <source></source>
        <translation>Abgesteckt oder ausgeschaltet</translation>
    </message>
    <message id="qelworkbench-state-measuring">
        <source></source>
        <translation>%1, seit %2 min</translation>
    </message>
    <message id="qelworkbench-state-needs-user">
        <source></source>
        <translation>Braucht Sie</translation>
    </message>
    <message id="qelworkbench-state-opening">
        <source></source>
        <translation>Wird verbunden …</translation>
    </message>
    <message id="qelworkbench-state-pausing">
        <source></source>
        <translation>%1, nächster um %2</translation>
    </message>
    <message id="qelworkbench-state-ready">
        <source></source>
        <translation>Bereit</translation>
    </message>
    <message id="qelworkbench-state-series">
        <source></source>
        <translation>%1, Durchgang %2 von %3</translation>
    </message>
    <message id="qelworkbench-state-stopping">
        <source></source>
        <translation>Wird beendet …</translation>
    </message>
    <message id="qelworkbench-statistics-all">
        <source></source>
        <translation>Alle %1 Kavitäten:</translation>
    </message>
    <message id="qelworkbench-statistics-deviation">
        <source></source>
        <translation>SD %1 %2</translation>
    </message>
    <message id="qelworkbench-statistics-mean">
        <source></source>
        <translation>Mittelwert %1 %2</translation>
    </message>
    <message id="qelworkbench-statistics-selected">
        <source></source>
        <translation>%1 gewählte Kavitäten:</translation>
    </message>
    <message id="qelworkbench-statistics-variation">
        <source></source>
        <translation>VK %1 %</translation>
    </message>
    <message id="qelworkbench-subtract-blanks">
        <source></source>
        <translation>Ohne Leerwert</translation>
    </message>
    <message id="qelworkbench-tab-curves">
        <source></source>
        <translation>Kurven</translation>
    </message>
    <message id="qelworkbench-tab-difference">
        <source></source>
        <translation>Differenz</translation>
    </message>
    <message id="qelworkbench-tab-history">
        <source></source>
        <translation>Verlauf</translation>
    </message>
    <message id="qelworkbench-tab-instrument">
        <source></source>
        <translation>Gerät und Treiber</translation>
    </message>
    <message id="qelworkbench-tab-measure">
        <source></source>
        <translation>Messen</translation>
    </message>
    <message id="qelworkbench-tab-plate">
        <source></source>
        <translation>Platte</translation>
    </message>
    <message id="qelworkbench-tab-side-by-side">
        <source></source>
        <translation>Nebeneinander</translation>
    </message>
    <message id="qelworkbench-tab-table">
        <source></source>
        <translation>Tabelle</translation>
    </message>
    <message id="qelworkbench-time-format">
        <source></source>
        <translation>dd.MM.yyyy HH:mm:ss</translation>
    </message>
    <message id="qelworkbench-time-left">
        <source></source>
        <translation>Noch etwa %1 s</translation>
    </message>
    <message id="qelworkbench-title">
        <source></source>
        <translation>Plattenleser</translation>
    </message>
    <message id="qelworkbench-title-simulated">
        <source></source>
        <translation>Plattenleser – SIMULIERTE GERÄTE, zum Üben</translation>
    </message>
    <message id="qelworkbench-try">
        <source></source>
        <translation>Probeweise laden</translation>
    </message>
    <message id="qelworkbench-try-busy">
        <source></source>
        <translation>Treiber werden nicht probiert, während ein Gerät misst: Es könnte gestört werden.</translation>
    </message>
    <message id="qelworkbench-try-tip">
        <source></source>
        <translation>Lädt jeden Treiber in einem eigenen Prozess und fragt ihn nach seinen Geräten. Einer, der abstürzt oder hängt, fällt so auf und richtet nichts an.</translation>
    </message>
    <message id="qelworkbench-trying">
        <source></source>
        <translation>Die Treiber werden probeweise geladen …</translation>
    </message>
    <message id="qelworkbench-unexpected-argument">
        <source></source>
        <translation>Das Argument „%1“ ist unverständlich; --help zeigt, was geht.</translation>
    </message>
    <message id="qelworkbench-unkept">
        <source></source>
        <translation>%1 fertige Messungen sind noch nicht auf der Platte.</translation>
    </message>
    <message id="qelworkbench-usable">
        <source></source>
        <translation>verwendbar</translation>
    </message>
    <message id="qelworkbench-usable-with-warnings">
        <source></source>
        <translation>verwendbar, aber siehe unten</translation>
    </message>
    <message id="qelworkbench-waiting">
        <source></source>
        <translation>Wartet auf den Treiber „%1“ …</translation>
    </message>
    <message id="qelworkbench-well-hint">
        <source></source>
        <translation>Zeigen Sie auf Kavitäten oder ziehen Sie darüber.</translation>
    </message>
    <message id="qelworkbench-well-no-difference">
        <source></source>
        <translation>%1: nicht bekannt, auf einer der Platten gesättigt</translation>
    </message>
    <message id="qelworkbench-well-not-measured">
        <source></source>
        <translation>%1: nicht gemessen</translation>
    </message>
    <message id="qelworkbench-well-saturated">
        <source></source>
        <translation>%1: %2 oder mehr, übersteuert</translation>
    </message>
    <message id="qelworkbench-well-value">
        <source></source>
        <translation>%1: %2</translation>
    </message>
    <message id="qelworkbench-yes">
        <source></source>
        <translation>Ja</translation>
    </message>
</context>
</TS>
